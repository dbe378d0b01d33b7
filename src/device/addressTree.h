// The tree of short addresses, and with it the layout of the mirror of device data: one record for
// each leaf, in the tree's order.
#pragma once

#include "device/mapLayout.h"

namespace ied {

namespace mapLines {

// clang-format off
inline constexpr MapLine RT[] = {
    {"PhV", CdcWYE}, {"AvgPhV", CdcMV}, {"PPV", CdcDEL}, {"AvgPPV", CdcMV}, {"A", CdcWYE}, {"AvgA", CdcMV},
    {"TotW TotVAr TotVA TotPF", CdcMV}, {"W VAr VA PF", CdcWYE}, {"Hz HzDev", CdcMV},
    {"PhVDev", CdcWYE}, {"PPVDev", CdcDEL}, {"seqV seqA", CdcSEQ}, {"ImbZrV ImbNgV ImbZrA ImbNgA", CdcMV},
    {"PhVPst", CdcWYE}, {"PPVPst", CdcDEL}, {"PhVPlt", CdcWYE}, {"PPVPlt", CdcDEL},
    {"DPhV", CdcWYE}, {"AvgDPhV", CdcMV}, {"DPPV", CdcDEL}, {"AvgDPPV", CdcMV}, {"DA", CdcWYE}, {"AvgDA", CdcMV},
    {"TotDW TotDVAr TotDVA TotDPF", CdcMV}, {"DW DVAr DVA DPF", CdcWYE}, {"HKf", CdcWYE},
    {"ThdPhV", CdcWYE}, {"ThdPPV", CdcDEL}, {"ThdA", CdcWYE},
    {"ThdOddPhV", CdcWYE}, {"ThdOddPPV", CdcDEL}, {"ThdOddA", CdcWYE},
    {"ThdEvnPhV", CdcWYE}, {"ThdEvnPPV", CdcDEL}, {"ThdEvnA", CdcWYE},
    {"HPhVArr", CdcHWYE}, {"HPPVArr", CdcHDEL}, {"HAArr", CdcHWYE},
    {"IThdPhV", CdcWYE}, {"IThdPPV", CdcDEL}, {"IThdA", CdcWYE},
    {"IThdOddPhV", CdcWYE}, {"IThdOddPPV", CdcDEL}, {"IThdOddA", CdcWYE},
    {"IThdEvnPhV", CdcWYE}, {"IThdEvnPPV", CdcDEL}, {"IThdEvnA", CdcWYE},
    {"IDPhVCon", CdcWYE}, {"IDPPVCon", CdcDEL}, {"IDACon", CdcWYE},
    {"IHPhVConArr", CdcHWYE}, {"IHPPVConArr", CdcHDEL}, {"IHAConArr", CdcHWYE},
};

inline constexpr MapLine DMD_DATA[] = {
    {"PhV", CdcWYE}, {"AvgPhV", CdcMV}, {"PPV", CdcDEL}, {"AvgPPV", CdcMV}, {"A", CdcWYE}, {"AvgA", CdcMV},
    {"TotW TotVAr TotVA TotPF", CdcMV}, {"W VAr VA PF", CdcWYE}, {"Hz HzDev", CdcMV},
    {"PhVDev", CdcWYE}, {"PPVDev", CdcDEL}, {"SeqV SeqA", CdcSEQ}, {"ImbZrV ImbNgV ImbZrA ImbNgA HHz", CdcMV},
    {"HKf", CdcWYE}, {"ThdPhV", CdcWYE}, {"ThdPPV", CdcDEL}, {"ThdA", CdcWYE},
    {"ThdOddPhV", CdcWYE}, {"ThdOddPPV", CdcDEL}, {"ThdOddA", CdcWYE},
    {"ThdEvnPhV", CdcWYE}, {"ThdEvnPPV", CdcDEL}, {"ThdEvnA", CdcWYE},
    {"HPhVArr", CdcHWYE}, {"HPPVArr", CdcHDEL}, {"HAArr", CdcHWYE},
};

inline constexpr MapLine DMD_PRE[] = {
    {"PhV", CdcWYE}, {"AvgPhV", CdcMV}, {"PPV", CdcDEL}, {"AvgPPV", CdcMV}, {"A", CdcWYE}, {"AvgA", CdcMV},
    {"TotW TotVAr TotVA TotPF", CdcMV}, {"W VAr VA PF", CdcWYE}, {"Hz", CdcMV},
};

inline constexpr MapLine DMD[] = {
    {"avg max min", &mapTableOf<DMD_DATA>},
    {"pre", &mapTableOf<DMD_PRE>},
};

inline constexpr MapLine STAT_RT_DATA[] = {
    {"PhV", CdcWYE}, {"AvgPhV", CdcMV}, {"PPV", CdcDEL}, {"AvgPPV", CdcMV}, {"A", CdcWYE}, {"AvgA", CdcMV},
    {"TotW TotVAr TotVA TotPF Hz", CdcMV}, {"SeqV SeqA", CdcSEQ}, {"ImbZrV ImbNgV ImbZrA ImbNgA HHz", CdcMV},
    {"HKf", CdcWYE}, {"ThdPhV", CdcWYE}, {"ThdPPV", CdcDEL}, {"ThdA", CdcWYE},
};
inline constexpr MapLine STAT_RT_DATA_CLASS[] = {{"max min", &mapTableOf<STAT_RT_DATA>}};
inline constexpr MapLine MON_STAT_RT_DATA[] = {{"now last", &mapTableOf<STAT_RT_DATA_CLASS>}};

inline constexpr MapLine STAT_DMD_DATA[] = {{"A", CdcWYE}, {"TotW TotVAr TotVA", CdcMV}};
inline constexpr MapLine STAT_DMD_DATA_CLASS[] = {{"max", &mapTableOf<STAT_DMD_DATA>}};
inline constexpr MapLine MON_STAT_DMD_DATA[] = {{"now last", &mapTableOf<STAT_DMD_DATA_CLASS>}};

inline constexpr MapLine MON[] = {
    {"rt", &mapTableOf<MON_STAT_RT_DATA>},
    {"dmd", &mapTableOf<MON_STAT_DMD_DATA>},
};

inline constexpr MapLine ENG[] = {
    {"PlsCnt", CdcBCR, 1, 8},
    {"DmdWh SupWh TotWh SumWh DmdVArh SupVArh TotVArh SumVArh TotVAh", CdcBCR},
    {"DmdWhD SupWhD DmdVArhD SupVArhD", CdcBCR},
    {"DmdWhHt SupWhHt DmdVArhHt SupVArhHt", CdcBCR},
    {"DmdWhH DmdVArhH", CdcBCR, 2, 31},
};

inline constexpr MapLine ST[] = {
    {"DI", CdcSPS, 1, 8}, {"SP", CdcSPS, 1, 32}, {"logic", CdcSPS, 1, 8},
    {"dspFlt adFlt batFlt pwrFlt flashFlt framFlt sysParaFlt spParaFlt snapParaFlt wavParaFlt", CdcSPS},
    {"pqParaFlt engParaFlt secParaFlt commParaFlt", CdcSPS},
};

inline constexpr MapLine SOE[] = {
    {"VarStr DipStr SwlStr IntrStr", CdcSPS}, {"VVa VVaTm", CdcMV}, {"TransStr", CdcSPS}, {"MaxVtrs VtrsTm", CdcMV},
};

inline constexpr MapLine RD[] = {
    {"RcdStr1 RcdMade1", CdcSPS}, {"FltNum1", CdcINS}, {"RcdStr2 RcdMade2", CdcSPS}, {"FltNum2", CdcINS},
};

inline constexpr MapLine SETSYS[] = {
    {"TVMod TVPri TVSec TAPri TASec I4Pri I4Sec V4Pri V4Sec RtgVolt RtgFreq", CdcING},
    {"DmdPeriod DmdNum PreDmdFac ClcDmd ClcHV ClcHA ClcHRat IaSign IbSign IcSign", CdcING},
    {"ClcTotVA PFSign", CdcENG},
    {"SettleTime TmOfsTmm IRIGOfsTmm TmSrc", CdcING},
    {"TransEna", CdcSPG}, {"TransStrVar", CdcASG}, {"TransTrg1 TransTrg2", CdcING},
    {"VarEna", CdcSPG}, {"DipStrVar SwlStrVar IntrStrVar", CdcASG}, {"VarTrg1 VarTrg2", CdcING},
    {"SysLan BLTmm EngPlsFac WhPlsMod VarhPlsMod", CdcING},
};

inline constexpr MapLine SETIO[] = {
    {"DIMod", CdcING, 1, 8}, {"DIStaTmms", CdcING, 1, 8}, {"DIPlsFac", CdcING, 1, 8},
    {"DOMod", CdcING, 1, 2}, {"DOPlsTm", CdcING, 1, 2}, {"ROPlsTm", CdcING, 1, 4},
};

inline constexpr MapLine SETSP[] = {
    {"TrgMod MonObj", CdcING}, {"OvStrVar UnStrVar", CdcASG}, {"ActTm RetTm Trg1 Trg2", CdcING},
};

inline constexpr MapLine SETLG[] = {
    {"LogicEna", CdcSPG}, {"input", CdcING, 1, 4}, {"logic", CdcING, 1, 3}, {"Trg1 Trg2", CdcING},
};

inline constexpr MapLine SETWAVE[] = {{"MaxNumRcd SmpRat PreCyc", CdcING}};

inline constexpr MapLine SETSNAP[] = {
    {"StrMod LogMod LogNum LogIntv OfsTm VarNum", CdcING}, {"var", CdcING, 1, 16},
};

inline constexpr MapLine SETENERGY[] = {
    {"LogMod LogNum LogIntv StrTmYear StrTmMon StrTmDay StrTmHour StrTmMin StrTmSec VarNum", CdcING},
    {"var", CdcING, 1, 5},
};

inline constexpr MapLine SET[] = {
    {"sys", &mapTableOf<SETSYS>},
    {"IO", &mapTableOf<SETIO>},
    {"setpoint", &mapTableOf<SETSP>, 1, 32},
    {"logic", &mapTableOf<SETLG>, 1, 8},
    {"wave", &mapTableOf<SETWAVE>, 1, 2},
    {"snap", &mapTableOf<SETSNAP>, 1, 24},
    {"EngBill", &mapTableOf<SETENERGY>},
};

inline constexpr MapLine CTL[] = {
    {"DO", CdcSPC, 1, 2}, {"RO", CdcSPC, 1, 4}, {"ClrDIPls", CdcSPC, 1, 8}, {"RcdTrg", CdcSPC, 1, 2},
    {"ClrRcd", CdcSPC, 1, 2}, {"ClrSnap", CdcSPC, 1, 24},
    {"ClrEngBill ClrMonRtNow ClrMonRtLast ClrMonDmdNow ClrMonDmdLast ClrAllLog", CdcSPC},
};

inline constexpr MapLine MICS[] = {
    {"NamPlt", CdcLPL}, {"Beh Health", CdcENS}, {"Mod", CdcENC}, {"PhyNam", CdcDPL}, {"PhyHealth", CdcENS},
    {"Proxy TmDT", CdcSPS}, {"TmUseDT", CdcSPG}, {"RtdVolt RtdCurr RtdI4", CdcINS},
};

inline constexpr MapLine Base[] = {
    {"RT", &mapTableOf<RT>},   {"DMD", &mapTableOf<DMD>}, {"MON", &mapTableOf<MON>}, {"ENG", &mapTableOf<ENG>},
    {"ST", &mapTableOf<ST>},   {"SOE", &mapTableOf<SOE>}, {"RD", &mapTableOf<RD>},   {"SET", &mapTableOf<SET>},
    {"CTL", &mapTableOf<CTL>}, {"MICS", &mapTableOf<MICS>},
};
// clang-format on

} // namespace mapLines

inline constexpr const MapTable &mapTableBase = mapTableOf<mapLines::Base>;

// Where a walk of the tree ended.
struct MapPlace {
    u32 offset;  // octets from the start of the mirror
    u8 nodeType; // CDC of the leaf, TypeFailure when the text names no leaf whole
};

// Index of the row of `table` with that name, or table.count.
constexpr u32 mapRowIndex(const MapTable &table, std::string_view name) {
    u32 index = 0;
    while (index < table.count && name != table.rows[index].name) {
        index++;
    }
    return index;
}

// Walks the tree by the items of a short address; names are compared whole and by case.
constexpr MapPlace resolveSAddr(std::string_view sAddr) {
    MapPlace place{0, TypeFailure};
    const MapTable *table = &mapTableBase;
    for (std::size_t at = 0;;) {
        const std::size_t end = sAddr.find('.', at);
        const bool last = end == std::string_view::npos;
        const u32 index = mapRowIndex(*table, sAddr.substr(at, last ? end : end - at));
        if (index == table->count) {
            return place;
        }
        const MapRow &row = table->rows[index];
        if (last == (row.nodeType == mapInner)) {
            return place;
        }
        place.offset += row.offset;
        if (last) {
            return {place.offset, row.nodeType};
        }
        table = row.next;
        at = end + 1;
    }
}

// Calls `leaf(text, row, offset)` for every leaf of the tree in its order.
using MapLeafFunction = void (*)(const char *sAddr, const MapRow &row, u32 offset, void *context);
void forEachLeaf(MapLeafFunction leaf, void *context);

} // namespace ied
