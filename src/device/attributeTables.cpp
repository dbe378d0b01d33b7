#include "device/attributeTables.h"

#include "basicInterface/cdcRecord.h"
#include "proto-process/c/controlModel.h"
#include "proto-process/c/logModel.h"
#include "proto-process/c/reportModel.h"
#include "proto-process/c/settingGroup.h"
#include "proto-process/c/substitution.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace ied {

namespace {

constexpr AttrRow row(std::string_view path, u8 fc, std::size_t offset, std::size_t size,
                      bool isArray = false) {
    AttrRow out{};
    if (path.size() >= sizeof out.path) {
        throw "path too long";
    }
    path.copy(out.path, path.size());
    out.fc = fc;
    out.isArray = isArray;
    out.offset = static_cast<u16>(offset);
    out.size = static_cast<u16>(size);
    return out;
}

// Place and size of a field; no function can name a member of a member.
#define FIELD(record, member)                                                                                \
    offsetof(record, member), sizeof(static_cast<record *>(nullptr)->member),                                \
        std::is_pointer_v<std::remove_reference_t<decltype((static_cast<record *>(nullptr)->member))>>

template <std::size_t... N> constexpr auto join(const std::array<AttrRow, N> &...tables) {
    std::array<AttrRow, (N + ...)> out{};
    std::size_t at = 0;
    const auto add = [&](const auto &table) {
        for (const AttrRow &each : table) {
            out[at++] = each;
        }
    };
    (add(tables), ...);
    return out;
}

// Rows of a record that stands inside another one at `offset`, under `prefix`. Rows of FcSV keep
// their place: each component has a record of its own.
template <std::size_t N>
constexpr auto inside(std::string_view prefix, std::size_t offset, const std::array<AttrRow, N> &table) {
    std::array<AttrRow, N> out{};
    for (std::size_t i = 0; i < N; i++) {
        char path[sizeof AttrRow::path] = {};
        const std::string_view own = table[i].path;
        if (prefix.size() + own.size() >= sizeof path) {
            throw "path too long";
        }
        prefix.copy(path, prefix.size());
        own.copy(path + prefix.size(), own.size());
        out[i] = row(path, table[i].fc, table[i].offset + (table[i].fc == FcSV ? 0 : offset), table[i].size,
                     table[i].isArray);
    }
    return out;
}

constexpr std::array unitRows{
    row("SIUnit", FcCF, FIELD(Unit, SIUnit)),
    row("multiplier", FcCF, FIELD(Unit, multiplier)),
};

constexpr std::array rangeRows{
    row("hhLim.f", FcCF, FIELD(RangeConfig, hhLim)), row("hLim.f", FcCF, FIELD(RangeConfig, hLim)),
    row("lLim.f", FcCF, FIELD(RangeConfig, lLim)),   row("llLim.f", FcCF, FIELD(RangeConfig, llLim)),
    row("min.f", FcCF, FIELD(RangeConfig, min)),     row("max.f", FcCF, FIELD(RangeConfig, max)),
};

constexpr std::array subsRows{
    row("subEna", FcSV, FIELD(SubsObj, subEna)),
    row("subQ", FcSV, FIELD(SubsObj, subQ)),
    row("subID", FcSV, FIELD(SubsObj, subID)),
};
constexpr std::array subVal8Row{row("subVal", FcSV, FIELD(SubsObj, subVal8))};
constexpr std::array subVal32Row{row("subVal", FcSV, FIELD(SubsObj, subVal32))};

// --------------------------------------------------------------------------------------- status

constexpr std::array spsRows{
    row("stVal", FcST, FIELD(SPS, stVal)),
    row("q", FcST, FIELD(SPS, q)),
    row("t", FcST, FIELD(SPS, t)),
};
constexpr auto tableSPSDPS = join(spsRows, subsRows, subVal8Row);
constexpr auto tableENS = join(spsRows, subsRows, subVal32Row);

constexpr auto tableINS = join(
    std::array{
        row("stVal", FcST, FIELD(INS, stVal)),
        row("q", FcST, FIELD(INS, q)),
        row("t", FcST, FIELD(INS, t)),
    },
    subsRows, subVal32Row);

constexpr std::array tableACT{
    row("general", FcST, FIELD(ACT, general)),
    row("phsA", FcST, FIELD(ACT, phsA)),
    row("phsB", FcST, FIELD(ACT, phsB)),
    row("phsC", FcST, FIELD(ACT, phsC)),
    row("neut", FcST, FIELD(ACT, neut)),
    row("q", FcST, FIELD(ACT, q)),
    row("t", FcST, FIELD(ACT, t)),
};

constexpr std::array tableACD{
    row("general", FcST, FIELD(ACD, general)),
    row("dirGeneral", FcST, FIELD(ACD, dirGeneral)),
    row("phsA", FcST, FIELD(ACD, phsA)),
    row("dirPhsA", FcST, FIELD(ACD, dirPhsA)),
    row("phsB", FcST, FIELD(ACD, phsB)),
    row("dirPhsB", FcST, FIELD(ACD, dirPhsB)),
    row("phsC", FcST, FIELD(ACD, phsC)),
    row("dirPhsC", FcST, FIELD(ACD, dirPhsC)),
    row("neut", FcST, FIELD(ACD, neut)),
    row("dirNeut", FcST, FIELD(ACD, dirNeut)),
    row("q", FcST, FIELD(ACD, q)),
    row("t", FcST, FIELD(ACD, t)),
};

constexpr auto tableBCR = join(
    std::array{
        row("actVal", FcST, FIELD(BCR, actVal)),
        row("q", FcST, FIELD(BCR, q)),
        row("t", FcST, FIELD(BCR, t)),
        row("pulsQty", FcCF, FIELD(BCR, pulsQty)),
    },
    inside("units.", offsetof(BCR, units), unitRows));

// --------------------------------------------------------------------------------- measurements

constexpr auto tableMV = join(
    std::array{
        row("instMag.f", FcMX, FIELD(MV, instMag)),
        row("mag.f", FcMX, FIELD(MV, mag)),
        row("range", FcMX, FIELD(MV, range)),
        row("q", FcMX, FIELD(MV, q)),
        row("t", FcMX, FIELD(MV, t)),
        row("db", FcCF, FIELD(MV, db)),
        row("subMag.f", FcSV, FIELD(SubsObj, subMag)),
    },
    inside("units.", offsetof(MV, units), unitRows), inside("rangeC.", offsetof(MV, rangeC), rangeRows),
    subsRows);

constexpr auto tableCMV = join(
    std::array{
        row("instCVal.mag.f", FcMX, FIELD(CMV, instCVal.mag)),
        row("instCVal.ang.f", FcMX, FIELD(CMV, instCVal.ang)),
        row("cVal.mag.f", FcMX, FIELD(CMV, cVal.mag)),
        row("cVal.ang.f", FcMX, FIELD(CMV, cVal.ang)),
        row("range", FcMX, FIELD(CMV, range)),
        row("q", FcMX, FIELD(CMV, q)),
        row("t", FcMX, FIELD(CMV, t)),
        row("db", FcCF, FIELD(CMV, db)),
        row("subCVal.mag.f", FcSV, FIELD(SubsObj, subMag)),
        row("subCVal.ang.f", FcSV, FIELD(SubsObj, subAng)),
    },
    inside("units.", offsetof(CMV, units), unitRows), inside("rangeC.", offsetof(CMV, rangeC), rangeRows),
    subsRows);

constexpr auto tableWYE = join(inside("phsA.", offsetof(WYE, phs[PhsA]), tableCMV),
                               inside("phsB.", offsetof(WYE, phs[PhsB]), tableCMV),
                               inside("phsC.", offsetof(WYE, phs[PhsC]), tableCMV),
                               inside("neut.", offsetof(WYE, phs[PhsNeut]), tableCMV),
                               inside("res.", offsetof(WYE, phs[PhsRes]), tableCMV));

constexpr auto tableDEL = join(inside("phsAB.", offsetof(WYE, phs[PhsA]), tableCMV),
                               inside("phsBC.", offsetof(WYE, phs[PhsB]), tableCMV),
                               inside("phsCA.", offsetof(WYE, phs[PhsC]), tableCMV));

constexpr auto tableSEQ =
    join(inside("c1.", offsetof(SEQ, c[0]), tableCMV), inside("c2.", offsetof(SEQ, c[1]), tableCMV),
         inside("c3.", offsetof(SEQ, c[2]), tableCMV), std::array{row("seqT", FcMX, FIELD(SEQ, seqT))});

constexpr auto harRows = join(
    std::array{
        row("q", FcMX, FIELD(HWYE, q)),
        row("t", FcMX, FIELD(HWYE, t)),
        row("numHar", FcCF, FIELD(HWYE, numHar)),
        row("numCyc", FcCF, FIELD(HWYE, numCyc)),
        row("evalTm", FcCF, FIELD(HWYE, evalTm)),
        row("smpRate", FcCF, FIELD(HWYE, smpRate)),
        row("frequency", FcCF, FIELD(HWYE, frequency)),
        row("hvRef", FcCF, FIELD(HWYE, hvRef)),
        row("rmsCyc", FcCF, FIELD(HWYE, rmsCyc)),
    },
    inside("units.", offsetof(HWYE, units), unitRows));

constexpr auto tableHWYE = join(
    std::array{
        row("phsAHar", FcMX, FIELD(HWYE, har[PhsA])),
        row("phsBHar", FcMX, FIELD(HWYE, har[PhsB])),
        row("phsCHar", FcMX, FIELD(HWYE, har[PhsC])),
        row("neutHar", FcMX, FIELD(HWYE, har[PhsNeut])),
        row("resHar", FcMX, FIELD(HWYE, har[PhsRes])),
    },
    harRows);

constexpr auto tableHDEL = join(
    std::array{
        row("phsABHar", FcMX, FIELD(HWYE, har[PhsA])),
        row("phsBCHar", FcMX, FIELD(HWYE, har[PhsB])),
        row("phsCAHar", FcMX, FIELD(HWYE, har[PhsC])),
    },
    harRows);

constexpr auto tableHST = join(
    std::array{
        row("hstVal", FcST, FIELD(HST, hstVal)),
        row("q", FcST, FIELD(HST, q)),
        row("t", FcST, FIELD(HST, t)),
        row("numPts", FcCF, FIELD(HST, numPts)),
        row("hstRangeC", FcCF, FIELD(HST, hstRangeC)),
        row("maxPts", FcCF, FIELD(HST, maxPts)),
    },
    inside("xUnits.", offsetof(HST, xUnits), unitRows), inside("yUnits.", offsetof(HST, yUnits), unitRows));

// ------------------------------------------------------------------------------------- controls

constexpr std::array originRows{
    row("origin.orCat", FcCO, FIELD(CtlCommand, origin.orCat)),
    row("origin.orIdent", FcCO, FIELD(CtlCommand, origin.orIdent)),
    row("ctlNum", FcCO, FIELD(CtlCommand, ctlNum)),
    row("T", FcCO, FIELD(CtlCommand, T)),
    row("Test", FcCO, FIELD(CtlCommand, Test)),
};
constexpr auto cancel8Rows = join(std::array{row("ctlVal", FcCO, FIELD(CtlCommand, ctlVal8))}, originRows);
constexpr auto cancel32Rows = join(std::array{row("ctlVal", FcCO, FIELD(CtlCommand, ctlVal32))}, originRows);
constexpr std::array checkRow{row("Check", FcCO, FIELD(CtlCommand, Check))};

template <std::size_t N> constexpr auto commandRows(const std::array<AttrRow, N> &cancelRows) {
    const auto operRows = join(cancelRows, checkRow);
    return join(std::array{row("SBO", FcCO, FIELD(CtlObj, SBO))},
                inside("SBOw.", offsetof(CtlObj, SBOw), operRows),
                inside("Oper.", offsetof(CtlObj, Oper), operRows),
                inside("Cancel.", offsetof(CtlObj, Cancel), cancelRows));
}

constexpr std::array ctlRows{
    row("origin.orCat", FcST, FIELD(CtlObj, origin.orCat)),
    row("origin.orIdent", FcST, FIELD(CtlObj, origin.orIdent)),
    row("ctlNum", FcST, FIELD(CtlObj, ctlNum)),
    row("stSeld", FcST, FIELD(CtlObj, stSeld)),
    row("q", FcST, FIELD(CtlObj, q)),
    row("t", FcST, FIELD(CtlObj, t)),
    row("ctlModel", FcCF, FIELD(CtlObj, ctlModel)),
    row("sboTimeout", FcCF, FIELD(CtlObj, sboTimeout)),
    row("sboClass", FcCF, FIELD(CtlObj, sboClass)),
};
constexpr auto ctl8Rows =
    join(std::array{row("stVal", FcST, FIELD(CtlObj, stVal))}, ctlRows, commandRows(cancel8Rows));
constexpr auto tableSPCDPC = join(ctl8Rows, subsRows, subVal8Row);
constexpr auto tableENC = join(ctl8Rows, subsRows, subVal8Row);
constexpr auto tableINC = join(std::array{row("stVal", FcST, FIELD(CtlObj, stVal32))}, ctlRows,
                               commandRows(cancel32Rows), subsRows, subVal32Row);

// ------------------------------------------------------------------------------------- settings

constexpr std::array tableSPG{
    row("setVal", FcSP, FIELD(SPG, setVal[SetSP])),
    row("setVal", FcSG, FIELD(SPG, setVal[SetSG])),
    row("setVal", FcSE, FIELD(SPG, setVal[SetSE])),
};

constexpr std::array tableCURVE{
    row("setCharact", FcSP, FIELD(SPG, setVal[SetSP])),
    row("setCharact", FcSG, FIELD(SPG, setVal[SetSG])),
    row("setCharact", FcSE, FIELD(SPG, setVal[SetSE])),
};

constexpr std::array tableING{
    row("setVal", FcSP, FIELD(ING, setVal[SetSP])), row("setVal", FcSG, FIELD(ING, setVal[SetSG])),
    row("setVal", FcSE, FIELD(ING, setVal[SetSE])), row("minVal", FcCF, FIELD(ING, minVal)),
    row("maxVal", FcCF, FIELD(ING, maxVal)),        row("stepSize", FcCF, FIELD(ING, stepSize)),
};

constexpr std::array tableENG{
    row("setVal", FcSP, FIELD(ENG, setVal[SetSP])), row("setVal", FcSG, FIELD(ENG, setVal[SetSG])),
    row("setVal", FcSE, FIELD(ENG, setVal[SetSE])), row("minVal", FcCF, FIELD(ENG, minVal)),
    row("maxVal", FcCF, FIELD(ENG, maxVal)),        row("stepSize", FcCF, FIELD(ENG, stepSize)),
};

constexpr auto tableASG = join(
    std::array{
        row("setMag.f", FcSP, FIELD(ASG, setMag[SetSP])),
        row("setMag.f", FcSG, FIELD(ASG, setMag[SetSG])),
        row("setMag.f", FcSE, FIELD(ASG, setMag[SetSE])),
        row("minVal.f", FcCF, FIELD(ASG, minVal)),
        row("maxVal.f", FcCF, FIELD(ASG, maxVal)),
        row("stepSize.f", FcCF, FIELD(ASG, stepSize)),
    },
    inside("units.", offsetof(ASG, units), unitRows));

constexpr std::array tableORG{
    row("setSrcRef", FcSP, FIELD(ORG, setSrcRef[SetSP])),
    row("setSrcRef", FcSG, FIELD(ORG, setSrcRef[SetSG])),
    row("setSrcRef", FcSE, FIELD(ORG, setSrcRef[SetSE])),
};

// --------------------------------------------------------------------------------- descriptions

constexpr std::array tableDPL{
    row("vendor", FcDC, FIELD(DPL, vendor)), row("hwRev", FcDC, FIELD(DPL, hwRev)),
    row("swRev", FcDC, FIELD(DPL, swRev)),   row("serNum", FcDC, FIELD(DPL, serNum)),
    row("model", FcDC, FIELD(DPL, model)),   row("location", FcDC, FIELD(DPL, location)),
    row("cdcNs", FcEX, FIELD(DPL, cdcNs)),   row("cdcName", FcEX, FIELD(DPL, cdcName)),
    row("dataNs", FcEX, FIELD(DPL, dataNs)),
};

constexpr std::array tableLPL{
    row("vendor", FcDC, FIELD(LPL, vendor)),
    row("swRev", FcDC, FIELD(LPL, swRev)),
    row("d", FcDC, FIELD(LPL, d)),
    row("dU", FcDC, FIELD(LPL, dU)),
    row("configRev", FcDC, FIELD(LPL, configRev)),
    row("ldNs", FcEX, FIELD(LPL, ldNs)),
    row("lnNs", FcEX, FIELD(LPL, lnNs)),
    row("cdcNs", FcEX, FIELD(LPL, cdcNs)),
    row("cdcName", FcEX, FIELD(LPL, cdcName)),
    row("dataNs", FcEX, FIELD(LPL, dataNs)),
};

// ------------------------------------------------------------------------------- control blocks

constexpr std::array tableSGCB{
    row("NumOfSG", FcSP, FIELD(SGCB, NumOfSG)), row("ActSG", FcSP, FIELD(SGCB, ActSG)),
    row("EditSG", FcSP, FIELD(SGCB, EditSG)),   row("CnfEdit", FcSP, FIELD(SGCB, CnfEdit)),
    row("LActTm", FcSP, FIELD(SGCB, LActTm)),
};

constexpr auto rcbRows(u8 fc) {
    return std::array{
        row("RptID", fc, FIELD(RCB, RptID)),     row("RptEna", fc, FIELD(RCB, RptEna)),
        row("DatSet", fc, FIELD(RCB, DatSet)),   row("ConfRev", fc, FIELD(RCB, ConfRev)),
        row("OptFlds", fc, FIELD(RCB, OptFlds)), row("BufTm", fc, FIELD(RCB, BufTm)),
        row("TrgOps", fc, FIELD(RCB, TrgOps)),   row("IntgPd", fc, FIELD(RCB, IntgPd)),
        row("GI", fc, FIELD(RCB, GI)),
    };
}
constexpr auto tableRCB = join(rcbRows(FcRP), rcbRows(FcBR),
                               std::array{
                                   row("Resv", FcRP, FIELD(RCB, Resv)),
                                   row("SqNum", FcRP, FIELD(RCB, SqNum8)),
                                   row("SqNum", FcBR, FIELD(RCB, SqNum)),
                                   row("PurgeBuf", FcBR, FIELD(RCB, PurgeBuf)),
                                   row("EntryID", FcBR, FIELD(RCB, EntryID)),
                                   row("TimeOfEntry", FcBR, FIELD(RCB, TimeOfEntry)),
                               });

constexpr std::array tableLCB{
    row("LogEna", FcLG, FIELD(LCB, LogEna)),       row("LogRef", FcLG, FIELD(LCB, LogRef)),
    row("DatSet", FcLG, FIELD(LCB, DatSet)),       row("OldEntrTm", FcLG, FIELD(LCB, OldEntrTm)),
    row("NewEntrTm", FcLG, FIELD(LCB, NewEntrTm)), row("OldEntr", FcLG, FIELD(LCB, OldEntr)),
    row("NewEntr", FcLG, FIELD(LCB, NewEntr)),     row("TrgOps", FcLG, FIELD(LCB, TrgOps)),
    row("IntgPd", FcLG, FIELD(LCB, IntgPd)),
};

constexpr std::array<AttrRow, 0> tableGOCB{};

#undef FIELD

template <std::size_t N> constexpr AttrTable table(const std::array<AttrRow, N> &rows) {
    return {rows.data(), static_cast<u32>(N)};
}
constexpr AttrTable none{nullptr, 0};

} // namespace

constexpr AttrTable aDOTable[aDONum] = {
    table(tableSPSDPS), // SPS
    table(tableSPSDPS), // DPS
    table(tableINS),    // INS
    table(tableACT),    // ACT
    table(tableACD),    // ACD
    none,               // SEC
    table(tableBCR),    // BCR
    table(tableMV),     // MV
    table(tableCMV),    // CMV
    none,               // SAV
    table(tableWYE),    // WYE
    table(tableDEL),    // DEL
    table(tableSEQ),    // SEQ
    none,               // HMV
    table(tableHWYE),   // HWYE
    table(tableHDEL),   // HDEL
    table(tableSPCDPC), // SPC
    table(tableSPCDPC), // DPC
    table(tableINC),    // INC
    none,               // BSC
    none,               // ISC
    none,               // APC
    table(tableSPG),    // SPG
    table(tableING),    // ING
    table(tableASG),    // ASG
    table(tableCURVE),  // CURVE
    table(tableDPL),    // DPL
    table(tableLPL),    // LPL
    none,               // CSD
    table(tableSGCB),   // SGCB
    table(tableRCB),    // RCB
    table(tableLCB),    // LCB
    table(tableGOCB),   // GOCB
    table(tableHST),    // HST
    table(tableORG),    // ORG
    table(tableENS),    // ENS
    table(tableENG),    // ENG
    table(tableENC),    // ENC
};

const AttrRow *attrRow(u8 nodeType, const char *daPath, u8 fc) {
    if (nodeType >= aDONum) {
        return nullptr;
    }
    const AttrTable &attributes = aDOTable[nodeType];
    for (u32 i = 0; i < attributes.count; i++) {
        if (attributes.rows[i].fc == fc && std::strcmp(attributes.rows[i].path, daPath) == 0) {
            return &attributes.rows[i];
        }
    }
    return nullptr;
}

} // namespace ied
