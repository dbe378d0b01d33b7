#include "ied-device/parameters.h"

namespace ied::instrument {

namespace {

using namespace region;

constexpr u8 bill = 0; // no change counter: the block itself is compared

// clang-format off
//   name, type, offset, first group, groups, stride, members, stride, low, high, initial, counter
constexpr ParamRow rows[] = {
    {"SET.sys.TVMod", ParamU16, 700, 1, 1, 0, 1, 0, 0, 2, 0, ArmBase},
    {"SET.sys.TVPri", ParamU32, 704, 1, 1, 0, 1, 0, 1, 1000000, 400, ArmBase},
    {"SET.sys.TVSec", ParamU32, 708, 1, 1, 0, 1, 0, 1, 690, 400, ArmBase},
    {"SET.sys.TAPri", ParamU32, 712, 1, 1, 0, 1, 0, 1, 30000, 200, ArmBase},
    {"SET.sys.TASec", ParamU32, 716, 1, 1, 0, 1, 0, 1, 5, 5, ArmBase},
    {"SET.sys.V4Pri", ParamU32, 720, 1, 1, 0, 1, 0, 1, 1000000, 400, ArmBase},
    {"SET.sys.V4Sec", ParamU32, 724, 1, 1, 0, 1, 0, 1, 400, 400, ArmBase},
    {"SET.sys.I4Pri", ParamU32, 728, 1, 1, 0, 1, 0, 1, 30000, 200, ArmBase},
    {"SET.sys.I4Sec", ParamU32, 732, 1, 1, 0, 1, 0, 1, 5, 5, ArmBase},
    {"SET.sys.RtgFreq", ParamU16, 736, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.RtgVolt", ParamU16, 738, 1, 1, 0, 1, 0, 1, 700, 230, ArmBase},
    {"SET.sys.PFSign", ParamU16, 740, 1, 1, 0, 1, 0, 0, 2, 0, ArmBase},
    {"SET.sys.ClcTotVA", ParamU16, 742, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.ClcHV", ParamU16, 744, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.ClcHA", ParamU16, 746, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.ClcHRat", ParamU16, 748, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.BLTmm", ParamU16, 750, 1, 1, 0, 1, 0, 0, 60, 5, ArmBase},
    {"SET.sys.TmOfsTmm", ParamI16, 752, 1, 1, 0, 1, 0, 0, 34, 26, ArmBase},
    {"SET.sys.IRIGOfsTmm", ParamI16, 754, 1, 1, 0, 1, 0, -1440, 1440, 0, ArmBase},
    {"SET.sys.TmSrc", ParamU16, 756, 1, 1, 0, 1, 0, 0, 4, 1, ArmBase},
    {"SET.sys.SysLan", ParamU16, 758, 1, 1, 0, 1, 0, 0, 2, 1, ArmBase},
    {"SET.sys.SettleTime", ParamU16, 760, 1, 1, 0, 1, 0, 0, 65535, 65535, ArmBase},
    {"SET.sys.IaSign", ParamU16, 770, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.IbSign", ParamU16, 772, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.IcSign", ParamU16, 774, 1, 1, 0, 1, 0, 0, 1, 0, ArmBase},
    {"SET.sys.DmdNum", ParamU16, 816, 1, 1, 0, 1, 0, 1, 15, 15, ArmDemand},
    {"SET.sys.DmdPeriod", ParamU16, 818, 1, 1, 0, 1, 0, 1, 60, 1, ArmDemand},
    {"SET.sys.PreDmdFac", ParamU16, 820, 1, 1, 0, 1, 0, 70, 99, 90, ArmDemand},
    {"SET.sys.ClcDmd", ParamU16, 822, 1, 1, 0, 1, 0, 0, 1, 0, ArmDemand},
    {"SET.IO.DIStaTmms*", ParamU16, 824, 1, 1, 0, 8, 8, 1, 1000, 20, ArmDI},
    {"SET.IO.DIMod*", ParamU16, 826, 1, 1, 0, 8, 8, 0, 3, 0, ArmDI},
    {"SET.IO.DIPlsFac*", ParamU32, 828, 1, 1, 0, 8, 8, 1, 1000000, 1, ArmDI},
    {"SET.IO.DOPlsTm*", ParamU16, 888, 1, 1, 0, 2, 4, 0, 6000, 0, ArmDO},
    {"SET.IO.DOMod*", ParamU16, 890, 1, 1, 0, 2, 4, 0, 6, 0, ArmDO},
    {"SET.IO.ROPlsTm*", ParamU16, 896, 1, 1, 0, 4, 2, 0, 6000, 0, ArmRO},
    {"SET.sys.EngPlsFac", ParamU16, 904, 1, 1, 0, 1, 0, 0, 4, 1, ArmEnergy},
    {"SET.sys.WhPlsMod", ParamU16, 906, 1, 1, 0, 1, 0, 0, 3, 1, ArmEnergy},
    {"SET.sys.VarhPlsMod", ParamU16, 908, 1, 1, 0, 1, 0, 0, 3, 2, ArmEnergy},
    {"SET.setpoint#.TrgMod", ParamU16, 5228, 1, 32, 20, 1, 0, 0, 2, 0, ArmSetPoint1},
    {"SET.setpoint#.MonObj", ParamU16, 5230, 1, 24, 20, 1, 0, 0, 162, 0, ArmSetPoint1},
    {"SET.setpoint#.MonObj", ParamU16, 5710, 25, 8, 20, 1, 0, 0, 18, 0, ArmSetPoint1},
    {"SET.setpoint#.ActTm", ParamU16, 5232, 1, 32, 20, 1, 0, 0, 9999, 10, ArmSetPoint1},
    {"SET.setpoint#.RetTm", ParamU16, 5234, 1, 32, 20, 1, 0, 0, 9999, 10, ArmSetPoint1},
    {"SET.setpoint#.Trg*", ParamU16, 5236, 1, 32, 20, 2, 2, 0, 35, 0, ArmSetPoint1},
    {"SET.setpoint#.OvStrVar", ParamF32, 5240, 1, 32, 20, 1, 0, 0, 0, 0, ArmSetPoint1},
    {"SET.setpoint#.UnStrVar", ParamF32, 5244, 1, 32, 20, 1, 0, 0, 0, 0, ArmSetPoint1},
    {"SET.logic#.LogicEna", ParamU16, 5868, 1, 8, 20, 1, 0, 0, 1, 0, ArmLogic1},
    {"SET.logic#.logic*", ParamU16, 5870, 1, 8, 20, 3, 2, 0, 3, 0, ArmLogic1},
    {"SET.logic#.input*", ParamU16, 5876, 1, 8, 20, 4, 2, 0, 32, 0, ArmLogic1},
    {"SET.logic#.Trg*", ParamU16, 5884, 1, 8, 20, 2, 2, 0, 34, 0, ArmLogic1},
    {"SET.snap#.StrMod", ParamU16, 6032, 1, 24, 52, 1, 0, 0, 2, 0, ArmSnap1},
    {"SET.snap#.LogMod", ParamU16, 6034, 1, 8, 52, 1, 0, 0, 0, 0, ArmSnap1},
    {"SET.snap#.LogMod", ParamU16, 6450, 9, 16, 52, 1, 0, 0, 1, 0, ArmSnap1},
    {"SET.snap#.LogNum", ParamU16, 6036, 1, 24, 52, 1, 0, 0, 65535, 100, ArmSnap1},
    {"SET.snap#.VarNum", ParamU16, 6038, 1, 24, 52, 1, 0, 0, 16, 4, ArmSnap1},
    {"SET.snap#.LogIntv", ParamU32, 6040, 1, 8, 52, 1, 0, 1, 60, 60, ArmSnap1},
    {"SET.snap#.LogIntv", ParamU32, 6456, 9, 16, 52, 1, 0, 1, 3456000, 900, ArmSnap1},
    {"SET.snap#.var*", ParamU16, 6044, 1, 8, 52, 16, 2, 0, 31, 1, ArmSnap1},
    {"SET.snap#.var*", ParamU16, 6460, 9, 16, 52, 16, 2, 0, 1743, 1, ArmSnap1},
    {"SET.snap#.OfsTm", ParamU16, 6076, 1, 24, 52, 1, 0, 0, 43200, 0, ArmSnap1},
    {"SET.wave#.MaxNumRcd", ParamU16, 7280, 1, 2, 12, 1, 0, 0, 128, 32, ArmWave1},
    {"SET.wave#.SmpRat", ParamU16, 7282, 1, 2, 12, 1, 0, 0, 5, 2, ArmWave1},
    {"SET.wave#.PreCyc", ParamU16, 7284, 1, 2, 12, 1, 0, 2, 192, 6, ArmWave1},
    {"SET.sys.VarEna", ParamU16, 7320, 1, 1, 0, 1, 0, 0, 1, 1, ArmSwell},
    {"SET.sys.SwlStrVar", ParamU16, 7324, 1, 1, 0, 1, 0, 101, 200, 110, ArmSwell},
    {"SET.sys.DipStrVar", ParamU16, 7326, 1, 1, 0, 1, 0, 1, 99, 90, ArmSwell},
    {"SET.sys.IntrStrVar", ParamU16, 7328, 1, 1, 0, 1, 0, 0, 50, 10, ArmSwell},
    {"SET.sys.VarTrg*", ParamU16, 7336, 1, 1, 0, 2, 2, 0, 35, 0, ArmSwell},
    {"SET.sys.TransEna", ParamU16, 7340, 1, 1, 0, 1, 0, 0, 1, 1, ArmTrans},
    {"SET.sys.TransStrVar", ParamU16, 7342, 1, 1, 0, 1, 0, 5, 500, 100, ArmTrans},
    {"SET.sys.TransTrg*", ParamU16, 7344, 1, 1, 0, 2, 2, 0, 35, 0, ArmTrans},
    {"SET.EngBill.LogMod", ParamU16, 7936, 1, 1, 0, 1, 0, 0, 2, 0, bill},
    {"SET.EngBill.LogNum", ParamU16, 7938, 1, 1, 0, 1, 0, 0, 65535, 12, bill},
    {"SET.EngBill.StrTmMon", ParamU8, 7942, 1, 1, 0, 1, 0, 0, 12, 1, bill},
    {"SET.EngBill.StrTmYear", ParamU8, 7943, 1, 1, 0, 1, 0, 0, 99, 24, bill},
    {"SET.EngBill.StrTmHour", ParamU8, 7944, 1, 1, 0, 1, 0, 0, 23, 0, bill},
    {"SET.EngBill.StrTmDay", ParamU8, 7945, 1, 1, 0, 1, 0, 0, 31, 1, bill},
    {"SET.EngBill.StrTmSec", ParamU8, 7946, 1, 1, 0, 1, 0, 0, 59, 0, bill},
    {"SET.EngBill.StrTmMin", ParamU8, 7947, 1, 1, 0, 1, 0, 0, 59, 0, bill},
    {"SET.EngBill.VarNum", ParamU16, 7948, 1, 1, 0, 1, 0, 0, 5, 5, bill},
    {"SET.EngBill.var*", ParamU16, 7950, 1, 1, 0, 5, 2, 0, 4, 1, bill},
};
// clang-format on

} // namespace

std::span<const ParamRow> paramRows() {
    return rows;
}

} // namespace ied::instrument
