// The parameter maps as they are written: one line a parameter, with its place in a parameter area
// and the values it may have. parameterMaps.cpp makes rows of them when it is compiled. The CDC of a
// parameter follows from its short address.
#pragma once

#include "device/parameterRefresh.h"

#include <string_view>

namespace ied::paraLines {

// Least and greatest value, or twice the number of a special check.
struct Limits {
    i32 least = 0;
    i32 greatest = 0;

    constexpr Limits() = default;
    constexpr Limits(i32 from, i32 to) : least(from), greatest(to) {}
    constexpr Limits(ParaRange check) : least(check), greatest(check) {}
};

// One parameter. With a `count` there are that many, numbered from 1, each `step` octets behind the
// one before.
struct ParaLine {
    std::string_view name;
    ParaType type;
    u32 offset; // of the first one, in the block's first group
    Limits limits;
    u8 count = 0;
    u32 step = 0;
    Limits laterLimits = {}; // of the groups from the block's `laterFrom` on; none for the same
};

// Parameters with one prefix of their short addresses. With `groups`, the prefix is followed by each
// number from 1, a group lies `stride` octets behind the one before, and the lines repeat whole.
struct ParaBlock {
    std::string_view prefix;
    std::span<const ParaLine> lines;
    u8 groups = 0;
    u32 stride = 0;
    u8 laterFrom = 0; // 0: all groups have the same limits
};

inline constexpr ParaLine baseLines[] = {
    {"TVMod", ParaU16, 700, {0, 2}},       {"TAPri", ParaU32, 712, {1, 30000}},
    {"TASec", ParaU32, 716, {1, 5}},       {"TVPri", ParaU32, 704, {1, 1000000}},
    {"TVSec", ParaU32, 708, {1, 690}},     {"I4Pri", ParaU32, 728, {1, 30000}},
    {"I4Sec", ParaU32, 732, {1, 5}},       {"V4Pri", ParaU32, 720, {1, 1000000}},
    {"V4Sec", ParaU32, 724, {1, 400}},     {"RtgFreq", ParaU16, 736, {0, 1}},
    {"RtgVolt", ParaU16, 738, {1, 700}},   {"ClcHV", ParaU16, 744, {0, 1}},
    {"ClcHA", ParaU16, 746, {0, 1}},       {"ClcHRat", ParaU16, 748, {0, 1}},
    {"IaSign", ParaU16, 770, {0, 1}},      {"IbSign", ParaU16, 772, {0, 1}},
    {"IcSign", ParaU16, 774, {0, 1}},      {"ClcTotVA", ParaU16, 742, RangeClcTotVA},
    {"PFSign", ParaU16, 740, RangePFSign}, {"SettleTime", ParaU16, 760, RangeSettleTime},
    {"TmOfsTmm", ParaI16, 752, {0, 34}},   {"IRIGOfsTmm", ParaI16, 754, {-1440, 1440}},
    {"TmSrc", ParaU16, 756, RangeTmSrc},   {"SysLan", ParaU16, 758, {0, 2}},
    {"BLTmm", ParaU16, 750, {0, 60}},
};
inline constexpr ParaBlock basePara = {"SET.sys", baseLines};

inline constexpr ParaLine dmdLines[] = {
    {"DmdPeriod", ParaU16, 818, {1, 60}},
    {"DmdNum", ParaU16, 816, {1, 15}},
    {"PreDmdFac", ParaU16, 820, {70, 99}},
    {"ClcDmd", ParaU16, 822, {0, 1}},
};
inline constexpr ParaBlock dmdPara = {"SET.sys", dmdLines};

inline constexpr ParaLine transLines[] = {
    {"TransEna", ParaU16, 7340, {0, 1}},
    {"TransStrVar", ParaU16, 7342, {5, 500}},
    {"TransTrg", ParaU16, 7344, RangeTransTrg, 2, 2},
};
inline constexpr ParaBlock transPara = {"SET.sys", transLines};

inline constexpr ParaLine swellLines[] = {
    {"VarEna", ParaU16, 7320, {0, 1}},        {"SwlStrVar", ParaU16, 7324, {101, 200}},
    {"DipStrVar", ParaU16, 7326, {1, 99}},    {"IntrStrVar", ParaU16, 7328, RangeIntrStrVar},
    {"VarTrg", ParaU16, 7336, {0, 35}, 2, 2},
};
inline constexpr ParaBlock swellPara = {"SET.sys", swellLines};

inline constexpr ParaLine energyLines[] = {
    {"EngPlsFac", ParaU16, 904, RangeEngPlsFac},
    {"WhPlsMod", ParaU16, 906, {0, 3}},
    {"VarhPlsMod", ParaU16, 908, {0, 3}},
};
inline constexpr ParaBlock energyPara = {"SET.sys", energyLines};

inline constexpr ParaLine diLines[] = {
    {"DIMod", ParaU16, 826, RangeDIMod, 8, 8},
    {"DIStaTmms", ParaU16, 824, {1, 1000}, 8, 8},
    {"DIPlsFac", ParaU32, 828, {1, 1000000}, 8, 8},
};
inline constexpr ParaBlock diPara = {"SET.IO", diLines};

inline constexpr ParaLine doLines[] = {
    {"DOMod", ParaU16, 890, {0, 6}, 2, 4},
    {"DOPlsTm", ParaU16, 888, {0, 6000}, 2, 4},
};
inline constexpr ParaBlock doPara = {"SET.IO", doLines};

inline constexpr ParaLine roLines[] = {
    {"ROPlsTm", ParaU16, 896, {0, 6000}, 4, 2},
};
inline constexpr ParaBlock roPara = {"SET.IO", roLines};

inline constexpr ParaLine setPointLines[] = {
    {"TrgMod", ParaU16, 5228, {0, 2}},     {"MonObj", ParaU16, 5230, {0, 162}, 0, 0, {0, 18}},
    {"OvStrVar", ParaF32, 5240, RangeAny}, {"UnStrVar", ParaF32, 5244, RangeAny},
    {"ActTm", ParaU16, 5232, {0, 9999}},   {"RetTm", ParaU16, 5234, {0, 9999}},
    {"Trg", ParaU16, 5236, {0, 35}, 2, 2},
};
inline constexpr ParaBlock setPointPara = {"SET.setpoint", setPointLines, 32, 20, 25};

inline constexpr ParaLine logicLines[] = {
    {"LogicEna", ParaU16, 5868, {0, 1}},
    {"input", ParaU16, 5876, {0, 32}, 4, 2},
    {"logic", ParaU16, 5870, {0, 3}, 3, 2},
    {"Trg", ParaU16, 5884, {0, 34}, 2, 2},
};
inline constexpr ParaBlock logicPara = {"SET.logic", logicLines, 8, 20};

inline constexpr ParaLine waveLines[] = {
    {"MaxNumRcd", ParaU16, 7280, RangeMaxNumRcd},
    {"SmpRat", ParaU16, 7282, {0, 5}},
    {"PreCyc", ParaU16, 7284, RangePreCyc1, 0, 0, RangePreCyc2},
};
inline constexpr ParaBlock wavePara = {"SET.wave", waveLines, 2, 12, 2};

// One of a group's parameters is held against another one.
inline constexpr u32 snapLogIntv = 6040;
inline constexpr u32 snapOfsTm = 6076;
inline constexpr ParaLine snapLines[] = {
    {"StrMod", ParaU16, 6032, {0, 2}},
    {"LogMod", ParaU16, 6034, RangeSnapLogMod, 0, 0, {0, 1}},
    {"LogNum", ParaU16, 6036, {0, 65535}},
    {"LogIntv", ParaU32, snapLogIntv, {1, 60}, 0, 0, {1, 3456000}},
    {"OfsTm", ParaU16, snapOfsTm, {0, 43200}, 0, 0, RangeSnapOfsTm},
    {"VarNum", ParaU16, 6038, {0, 16}},
    {"var", ParaU16, 6044, {0, 31}, 16, 2, {0, 1743}},
};
inline constexpr ParaBlock snapPara = {"SET.snap", snapLines, 24, 52, 9};

inline constexpr ParaLine engbillLines[] = {
    {"LogMod", ParaU16, 7936, {0, 2}},    {"LogNum", ParaU16, 7938, {0, 65535}},
    {"VarNum", ParaU16, 7948, {0, 5}},    {"var", ParaU16, 7950, {0, 4}, 5, 2},
    {"StrTmYear", ParaU8, 7943, {0, 99}}, {"StrTmMon", ParaU8, 7942, {0, 12}},
    {"StrTmDay", ParaU8, 7945, {0, 31}},  {"StrTmHour", ParaU8, 7944, {0, 23}},
    {"StrTmMin", ParaU8, 7947, {0, 59}},  {"StrTmSec", ParaU8, 7946, {0, 59}},
};
inline constexpr ParaBlock engbillPara = {"SET.EngBill", engbillLines};

} // namespace ied::paraLines
