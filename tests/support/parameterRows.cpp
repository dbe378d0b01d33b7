#include "tests/support/parameterRows.h"

#include "basicInterface/cdcRecord.h"

namespace ied::test {

namespace {

using Rows = std::vector<ParameterRow>;

const Rows baseRows = {
    {"SET.sys.TVMod", CdcING, ParaU16, 700, {0, 2}},
    {"SET.sys.TAPri", CdcING, ParaU32, 712, {1, 30000}},
    {"SET.sys.TASec", CdcING, ParaU32, 716, {1, 5}},
    {"SET.sys.TVPri", CdcING, ParaU32, 704, {1, 1000000}},
    {"SET.sys.TVSec", CdcING, ParaU32, 708, {1, 690}},
    {"SET.sys.I4Pri", CdcING, ParaU32, 728, {1, 30000}},
    {"SET.sys.I4Sec", CdcING, ParaU32, 732, {1, 5}},
    {"SET.sys.V4Pri", CdcING, ParaU32, 720, {1, 1000000}},
    {"SET.sys.V4Sec", CdcING, ParaU32, 724, {1, 400}},
    {"SET.sys.RtgFreq", CdcING, ParaU16, 736, {0, 1}},
    {"SET.sys.RtgVolt", CdcING, ParaU16, 738, {1, 700}},
    {"SET.sys.ClcHV", CdcING, ParaU16, 744, {0, 1}},
    {"SET.sys.ClcHA", CdcING, ParaU16, 746, {0, 1}},
    {"SET.sys.ClcHRat", CdcING, ParaU16, 748, {0, 1}},
    {"SET.sys.IaSign", CdcING, ParaU16, 770, {0, 1}},
    {"SET.sys.IbSign", CdcING, ParaU16, 772, {0, 1}},
    {"SET.sys.IcSign", CdcING, ParaU16, 774, {0, 1}},
    {"SET.sys.ClcTotVA", CdcENG, ParaU16, 742, RangeClcTotVA},
    {"SET.sys.PFSign", CdcENG, ParaU16, 740, RangePFSign},
    {"SET.sys.SettleTime", CdcING, ParaU16, 760, RangeSettleTime},
    {"SET.sys.TmOfsTmm", CdcING, ParaI16, 752, {0, 34}},
    {"SET.sys.IRIGOfsTmm", CdcING, ParaI16, 754, {-1440, 1440}},
    {"SET.sys.TmSrc", CdcING, ParaU16, 756, RangeTmSrc},
    {"SET.sys.SysLan", CdcING, ParaU16, 758, {0, 2}},
    {"SET.sys.BLTmm", CdcING, ParaU16, 750, {0, 60}},
};

const Rows demandRows = {
    {"SET.sys.DmdPeriod", CdcING, ParaU16, 818, {1, 60}},
    {"SET.sys.DmdNum", CdcING, ParaU16, 816, {1, 15}},
    {"SET.sys.PreDmdFac", CdcING, ParaU16, 820, {70, 99}},
    {"SET.sys.ClcDmd", CdcING, ParaU16, 822, {0, 1}},
};

const Rows transientRows = {
    {"SET.sys.TransEna", CdcSPG, ParaU16, 7340, {0, 1}},
    {"SET.sys.TransStrVar", CdcASG, ParaU16, 7342, {5, 500}},
    {"SET.sys.TransTrg1", CdcING, ParaU16, 7344, RangeTransTrg},
    {"SET.sys.TransTrg2", CdcING, ParaU16, 7346, RangeTransTrg},
};

const Rows swellRows = {
    {"SET.sys.VarEna", CdcSPG, ParaU16, 7320, {0, 1}},
    {"SET.sys.SwlStrVar", CdcASG, ParaU16, 7324, {101, 200}},
    {"SET.sys.DipStrVar", CdcASG, ParaU16, 7326, {1, 99}},
    {"SET.sys.IntrStrVar", CdcASG, ParaU16, 7328, RangeIntrStrVar},
    {"SET.sys.VarTrg1", CdcING, ParaU16, 7336, {0, 35}},
    {"SET.sys.VarTrg2", CdcING, ParaU16, 7338, {0, 35}},
};

const Rows energyRows = {
    {"SET.sys.EngPlsFac", CdcING, ParaU16, 904, RangeEngPlsFac},
    {"SET.sys.WhPlsMod", CdcING, ParaU16, 906, {0, 3}},
    {"SET.sys.VarhPlsMod", CdcING, ParaU16, 908, {0, 3}},
};

Rows inputRows() {
    Rows rows;
    for (u32 n = 1; n <= 8; n++) {
        const std::string number = std::to_string(n);
        const u32 shift = 8 * (n - 1);
        rows.push_back({"SET.IO.DIMod" + number, CdcING, ParaU16, 826 + shift, RangeDIMod});
        rows.push_back({"SET.IO.DIStaTmms" + number, CdcING, ParaU16, 824 + shift, {1, 1000}});
        rows.push_back({"SET.IO.DIPlsFac" + number, CdcING, ParaU32, 828 + shift, {1, 1000000}});
    }
    return rows;
}

const Rows outputRows = {
    {"SET.IO.DOMod1", CdcING, ParaU16, 890, {0, 6}},
    {"SET.IO.DOMod2", CdcING, ParaU16, 894, {0, 6}},
    {"SET.IO.DOPlsTm1", CdcING, ParaU16, 888, {0, 6000}},
    {"SET.IO.DOPlsTm2", CdcING, ParaU16, 892, {0, 6000}},
};

const Rows relayRows = {
    {"SET.IO.ROPlsTm1", CdcING, ParaU16, 896, {0, 6000}},
    {"SET.IO.ROPlsTm2", CdcING, ParaU16, 898, {0, 6000}},
    {"SET.IO.ROPlsTm3", CdcING, ParaU16, 900, {0, 6000}},
    {"SET.IO.ROPlsTm4", CdcING, ParaU16, 902, {0, 6000}},
};

Rows setpointRows() {
    Rows rows;
    for (u32 n = 1; n <= 32; n++) {
        const std::string group = "SET.setpoint" + std::to_string(n) + ".";
        const u32 shift = 20 * (n - 1);
        const i32 lastObject = n < 25 ? 162 : 18;
        rows.push_back({group + "TrgMod", CdcING, ParaU16, 5228 + shift, {0, 2}});
        rows.push_back({group + "MonObj", CdcING, ParaU16, 5230 + shift, {0, lastObject}});
        rows.push_back({group + "OvStrVar", CdcASG, ParaF32, 5240 + shift, RangeAny});
        rows.push_back({group + "UnStrVar", CdcASG, ParaF32, 5244 + shift, RangeAny});
        rows.push_back({group + "ActTm", CdcING, ParaU16, 5232 + shift, {0, 9999}});
        rows.push_back({group + "RetTm", CdcING, ParaU16, 5234 + shift, {0, 9999}});
        rows.push_back({group + "Trg1", CdcING, ParaU16, 5236 + shift, {0, 35}});
        rows.push_back({group + "Trg2", CdcING, ParaU16, 5238 + shift, {0, 35}});
    }
    return rows;
}

Rows logicRows() {
    Rows rows;
    for (u32 n = 1; n <= 8; n++) {
        const std::string group = "SET.logic" + std::to_string(n) + ".";
        const u32 shift = 20 * (n - 1);
        rows.push_back({group + "LogicEna", CdcSPG, ParaU16, 5868 + shift, {0, 1}});
        rows.push_back({group + "input1", CdcING, ParaU16, 5876 + shift, {0, 32}});
        rows.push_back({group + "input2", CdcING, ParaU16, 5878 + shift, {0, 32}});
        rows.push_back({group + "input3", CdcING, ParaU16, 5880 + shift, {0, 32}});
        rows.push_back({group + "input4", CdcING, ParaU16, 5882 + shift, {0, 32}});
        rows.push_back({group + "logic1", CdcING, ParaU16, 5870 + shift, {0, 3}});
        rows.push_back({group + "logic2", CdcING, ParaU16, 5872 + shift, {0, 3}});
        rows.push_back({group + "logic3", CdcING, ParaU16, 5874 + shift, {0, 3}});
        rows.push_back({group + "Trg1", CdcING, ParaU16, 5884 + shift, {0, 34}});
        rows.push_back({group + "Trg2", CdcING, ParaU16, 5886 + shift, {0, 34}});
    }
    return rows;
}

const Rows waveRows = {
    {"SET.wave1.MaxNumRcd", CdcING, ParaU16, 7280, RangeMaxNumRcd},
    {"SET.wave1.SmpRat", CdcING, ParaU16, 7282, {0, 5}},
    {"SET.wave1.PreCyc", CdcING, ParaU16, 7284, RangePreCyc1},
    {"SET.wave2.MaxNumRcd", CdcING, ParaU16, 7292, RangeMaxNumRcd},
    {"SET.wave2.SmpRat", CdcING, ParaU16, 7294, {0, 5}},
    {"SET.wave2.PreCyc", CdcING, ParaU16, 7296, RangePreCyc2},
};

Rows snapshotRows() {
    Rows rows;
    for (u32 n = 1; n <= 24; n++) {
        const std::string group = "SET.snap" + std::to_string(n) + ".";
        const u32 shift = 52 * (n - 1);
        const bool fast = n <= 8;
        const ParameterLimits logMod = fast ? ParameterLimits(RangeSnapLogMod) : ParameterLimits(0, 1);
        const ParameterLimits offset = fast ? ParameterLimits(0, 43200) : ParameterLimits(RangeSnapOfsTm);
        rows.push_back({group + "StrMod", CdcING, ParaU16, 6032 + shift, {0, 2}});
        rows.push_back({group + "LogMod", CdcING, ParaU16, 6034 + shift, logMod});
        rows.push_back({group + "LogNum", CdcING, ParaU16, 6036 + shift, {0, 65535}});
        rows.push_back({group + "LogIntv", CdcING, ParaU32, 6040 + shift, {1, fast ? 60 : 3456000}});
        rows.push_back({group + "OfsTm", CdcING, ParaU16, 6076 + shift, offset});
        rows.push_back({group + "VarNum", CdcING, ParaU16, 6038 + shift, {0, 16}});
        for (u32 i = 1; i <= 16; i++) {
            rows.push_back({group + "var" + std::to_string(i),
                            CdcING,
                            ParaU16,
                            6044 + 2 * (i - 1) + shift,
                            {0, fast ? 31 : 1743}});
        }
    }
    return rows;
}

const Rows energyBillRows = {
    {"SET.EngBill.LogMod", CdcING, ParaU16, 7936, {0, 2}},
    {"SET.EngBill.LogNum", CdcING, ParaU16, 7938, {0, 65535}},
    {"SET.EngBill.VarNum", CdcING, ParaU16, 7948, {0, 5}},
    {"SET.EngBill.var1", CdcING, ParaU16, 7950, {0, 4}},
    {"SET.EngBill.var2", CdcING, ParaU16, 7952, {0, 4}},
    {"SET.EngBill.var3", CdcING, ParaU16, 7954, {0, 4}},
    {"SET.EngBill.var4", CdcING, ParaU16, 7956, {0, 4}},
    {"SET.EngBill.var5", CdcING, ParaU16, 7958, {0, 4}},
    {"SET.EngBill.StrTmYear", CdcING, ParaU8, 7943, {0, 99}},
    {"SET.EngBill.StrTmMon", CdcING, ParaU8, 7942, {0, 12}},
    {"SET.EngBill.StrTmDay", CdcING, ParaU8, 7945, {0, 31}},
    {"SET.EngBill.StrTmHour", CdcING, ParaU8, 7944, {0, 23}},
    {"SET.EngBill.StrTmMin", CdcING, ParaU8, 7947, {0, 59}},
    {"SET.EngBill.StrTmSec", CdcING, ParaU8, 7946, {0, 59}},
};

} // namespace

const std::vector<ParameterMap> &parameterMaps() {
    static const std::vector<ParameterMap> maps = {
        {"baseParaMap", baseRows},          {"dmdParaMap", demandRows},    {"transParaMap", transientRows},
        {"swellParaMap", swellRows},        {"energyParaMap", energyRows}, {"DIParaMap", inputRows()},
        {"DOParaMap", outputRows},          {"ROParaMap", relayRows},      {"SPParaMap", setpointRows()},
        {"LGParaMap", logicRows()},         {"waveParaMap", waveRows},     {"snapParaMap", snapshotRows()},
        {"engbillParaMap", energyBillRows},
    };
    return maps;
}

std::vector<ParameterEdge> parameterEdges(const ParameterRow &row) {
    const std::string interval = row.sAddr.substr(0, row.sAddr.rfind('.')) + ".LogIntv";
    const u32 intervalAt = row.source - 6076 + 6040;
    const auto otherOf = [&](const char *one, const char *two) { return row.sAddr == one ? two : one; };
    const f64 least = row.limits.least, greatest = row.limits.greatest;
    if (!row.limits.isCheck()) {
        return {{{}, {least, greatest}, {least - 1, greatest + 1}}};
    }
    switch (row.limits.least) {
    case RangeSettleTime:
        return {{{},
                 {0, 100, 123, 2800, 2823, 65535},
                 {-1, 1, 5, 23, 124, 199, 2824, 2900, 65534, 65536, 131071}}};
    case RangeAny:
        return {{{}, {-3e38, -0.5, 0, 0.5, 3e38}, {}}};
    case RangeMaxNumRcd: {
        const char *other = otherOf("SET.wave1.MaxNumRcd", "SET.wave2.MaxNumRcd");
        return {{{{other, 0}}, {0, 128}, {-1, 129}},
                {{{other, 100}}, {28}, {29, 2147483647}},
                {{{other, -1}}, {}, {0}}};
    }
    case RangePreCyc1:
    case RangePreCyc2: {
        const char *own = row.limits.least == RangePreCyc1 ? "SET.wave1.SmpRat" : "SET.wave2.SmpRat";
        const char *other = row.limits.least == RangePreCyc1 ? "SET.wave2.SmpRat" : "SET.wave1.SmpRat";
        std::vector<ParameterEdge> edges = {{{{own, -1}}, {2, 60000}, {1}}, {{{own, 6}}, {2, 60000}, {1}}};
        f64 code = 0;
        for (const f64 most : {192, 96, 48, 24, 12, 6}) {
            edges.push_back({{{own, code++}, {other, 0}}, {2, most}, {-1, 1, most + 1}});
        }
        return edges;
    }
    case RangeSnapLogMod:
        return {{{}, {0}, {-1, 1}}};
    case RangeClcTotVA:
        return {{{}, {1, 2}, {0, 3}}};
    case RangePFSign:
        return {{{}, {1, 3}, {0, 4}}};
    case RangeIntrStrVar:
        return {{{{"SET.sys.DipStrVar", 99}}, {0, 50}, {-1, 50.5, 51}},
                {{{"SET.sys.DipStrVar", 30}}, {29}, {30}}};
    case RangeDIMod: {
        const char *other = otherOf("SET.IO.DIMod1", "SET.IO.DIMod8");
        return {{{}, {0, 1, 2, 3}, {-1, 4, 65537}}, {{{other, 2}}, {3}, {2}}, {{{other, 3}}, {2}, {3}}};
    }
    case RangeTransTrg:
        return {{{}, {0, 6, 31, 35}, {-1, 7, 30, 36}}};
    case RangeEngPlsFac:
        return {{{{"SET.sys.RtgVolt", 100}}, {0, 4}, {-1, 5}}, {{{"SET.sys.RtgVolt", 101}}, {2}, {3}},
                {{{"SET.sys.RtgVolt", 138}}, {2}, {3}},        {{{"SET.sys.RtgVolt", 139}}, {1}, {2}},
                {{{"SET.sys.RtgVolt", 380}}, {1}, {2}},        {{{"SET.sys.RtgVolt", 381}}, {0}, {1}},
                {{{"SET.sys.RtgVolt", 13108}}, {4}, {5}}}; // times 5 A no longer fits 16 bits
    case RangeTmSrc:
        return {{{}, {0, 1, 3}, {-1, 2, 4}}};
    case RangeSnapOfsTm:
        return {{{{interval, 1}}, {0, 43200}, {-1, 43201}, {{intervalAt, 50000}}},
                {{{interval, 1}}, {0, 43200}, {43201}, {{intervalAt, 43200}}},
                {{{interval, 50000}}, {4464}, {4465}, {{intervalAt, 70000}}}}; // 4464 in its low half
    }
    return {};
}

} // namespace ied::test
