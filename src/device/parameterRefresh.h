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

struct ParaMap {
    u16 protoType; // CDC of the record: CdcSPG, CdcING, CdcASG or CdcENG
    u16 dataType;  // ParaType
    u8 *modelAddr; // record of the mirror
    u32 srcOffset; // of the field in a parameter area
    i32 rangeMin;  // least and greatest value; equal ones name a special check
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

// The map of each group; a group whose map is empty is skipped.
extern std::span<const ParaMap> paraMapAddr[ParaGroupNum];

// Brings the parameters of a group (or ParaAll) from the live area into their records with
// ParaLiveToSG, where `list` is not used. 1 on success; a fault of the arguments or of a map ends
// the calling task after a message.
int dealParamProcess(u8 op, const AsnList *list, u8 group);

// Moves one parameter between its record and `field` of a parameter area. 1, or 0 after a message
// for a fault of the row.
int refreshPara(const ParaMap &row, const u8 *field, u8 op);

// Sections of relatedDataRefresh besides the groups above.
inline constexpr u8 relatedRatedCurrent = ParaGroupNum; // the first number behind them
// Brings up what hangs on the parameters of `group`: ParaBase, ParaDI, ParaDO, ParaSP or
// relatedRatedCurrent; with `force`, at start, everything.
void relatedDataRefresh(bool force, u8 group);

// Fixed values of the mirror.
void specDataInit();
// The name plates among them, which show numbers and versions of the instrument.
void namePlates();
// Zeroes elements 0 and 1 of the record's arrays, of the fourth one only with `hasNeut`.
void invalidHarDeal(HWYE *record, bool hasNeut);
// pulsQty 1.0 in every energy register.
void pulsQtyInit();
// First state of the whole mirror, once, before any other task. Returns 0.
int locDataInit();

} // namespace ied
