// The instrument's parameters in the mirror ("SET"), what hangs on them, and the first state of the
// whole mirror.
#pragma once

#include "asn1/berTypes.h"
#include "device/protoData.h"

#include <span>

namespace ied {

// Types of a field in a parameter area, values of `dataType`.
enum ParaType : u16 {
    ParaU8,
    ParaU16,
    ParaU32,
    ParaI8,
    ParaI16,
    ParaI32,
    ParaF32
};

// Special checks of a value, which equal limits of a row name. Other parameters that a check looks at
// are taken as they stand under edit (FC SE).
enum ParaRange : i32 {
    RangeFirst = 1,
    RangeSettleTime = RangeFirst, // day 100 + hour: 65535, or up to 2823, and 0 days only with hour 0
    RangeAny,                     // passes
    RangeMaxNumRcd,               // the records of both wave groups together
    RangePreCyc1,                 // cycles before the trigger, by the sampling rate of wave group 1
    RangePreCyc2,                 // and 2
    RangeSnapLogMod,              // only 0
    RangeClcTotVA,                // 1 or 2, one more than in the region
    RangePFSign,                  // 1 to 3, one more than in the region
    RangeIntrStrVar,              // 0 to 50, below SET.sys.DipStrVar
    RangeDIMod,                   // 0 to 3; 2 and 3 in one input each
    RangeTransTrg,                // 0 to 6 or 31 to 35
    RangeEngPlsFac,               // by the rated power
    RangeTmSrc,                   // by the device's variant of time sources
    RangeSnapOfsTm,               // 0 to 43200, not above the low 16 bits of the group's LogIntv
    RangeLast = RangeSnapOfsTm
};

struct ParaMap {
    u16 protoType; // CDC of the record: CdcSPG, CdcING, CdcASG or CdcENG
    u16 dataType;  // ParaType
    u8 *modelAddr; // record of the mirror
    u32 srcOffset; // of the field in a parameter area
    i32 rangeMin;  // least and greatest value; equal ones are a special check (ParaRange)
    i32 rangeMax;
};

// Parameter groups: indices of paraMapAddr.
enum ParaGroup : u8 {
    ParaBase,
    ParaDemand,
    ParaTrans,
    ParaSwell,
    ParaEnergy,
    ParaDI,
    ParaDO,
    ParaRO,
    ParaSP,
    ParaLG,
    ParaWave,
    ParaSnap,
    ParaEngBill,
    ParaGroupNum,
    ParaAll,
};

// Directions, values of `op`.
enum ParaOp : u8 {
    ParaEditToSE, // edit area to the FC SE fields: an edit opens
    ParaLiveToSG, // live area to the FC SG fields: a group changed, or start-up
    ParaSEToEdit, // FC SE fields to the edit area, with range check: an edit is confirmed
};

// The map of each group; an empty one is skipped.
extern std::span<const ParaMap> paraMapAddr[ParaGroupNum];

// Moves parameters in the direction `op` (ParaOp). With ParaLiveToSG these are the parameters of
// `group`, a ParaGroup or ParaAll, and `list` is not used. Else they are those of the nodes that `list`
// (pointers to GenNode, not null) holds, in the edit area, whatever the group.
//
// 1 when all are moved. 0 with ParaSEToEdit when a value is out of range: the rest has not been moved,
// and the log names the node. A fault of the arguments, of a map, or a node that no map holds is
// logged and ends the task (endTaskOnFault); in a client's task the result is then 0.
int dealParamProcess(u8 op, const AsnList *list, u8 group);

// Results of refreshPara.
enum ParaResult : u8 {
    ParaFault,      // the record takes no such field, after a message
    ParaMoved,      // all is well
    ParaOutOfRange, // with ParaSEToEdit only
};

// Moves one parameter between its record and `field` of a parameter area, which is aligned for the
// row's type. With ParaSEToEdit the whole value, not what the field can hold of it, is then held
// against the row's limits. A value with a fraction never gets to a field of whole numbers. ParaResult.
int refreshPara(const ParaMap &row, u8 *field, u8 op);

// Sections of relatedDataRefresh besides the groups above.
inline constexpr u8 relatedRatedCurrent = ParaGroupNum; // the first number behind them
// Brings up what hangs on the parameters of `group`: ParaBase, ParaDI, ParaDO, ParaSP or
// relatedRatedCurrent; with `force`, at start, everything.
void relatedDataRefresh(bool force, u8 group);

// Fixed values of the mirror.
void specDataInit();
// The name plates among them, which show numbers and versions of the instrument.
void namePlates();
// What the mirror holds of the region before the refresh task begins: the parameters and what hangs on
// them, the first states, the numbers of records.
void regionFirstRead();
// Zeroes elements 0 and 1 of the record's arrays, of the fourth one only with `hasNeut`.
void invalidHarDeal(HWYE *record, bool hasNeut);
// pulsQty 1.0 in every energy register.
void pulsQtyInit();
// First state of the whole mirror, once, before any other task. Returns 0.
int locDataInit();

} // namespace ied
