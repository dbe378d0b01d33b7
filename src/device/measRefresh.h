// Measurements from the region into the mirror, table by table. The refresh task alone runs this,
// without a lock: each field is one indivisible store, a reader may see fields of two refreshes.
#pragma once

#include "device/measTables.h"

namespace ied {

// What a refresh does with its table.
enum RefreshMode : u8 {
    RefreshAll,        // copies active rows, invalidates the others
    RefreshInvalidate, // after the wiring mode changed: only invalidates
};

// 10 to the power n; above 9 with a message, and never more than 10 to the power 19.
u64 calcMultiplier(u32 n);

// The device's value in the multiple that a record declares: f x 10^|m| for a negative multiplier,
// else f / 10^|m|, in the arithmetic of the value.
f32 scaleValue(f32 value, i8 multiplier);
f64 scaleValue(f64 value, i8 multiplier);

// Take the f32 at `source` into a record, with time and quality; raise the update counter of the
// record, or of the enclosing one (`fcdType`, `fcdRecord`).
void updateMV(MV *record, const TimeStamp &time, const u8 *source);
void updateCMV(CMV *record, const TimeStamp &time, const u8 *source, u16 fcdType, u8 *fcdRecord);
// Make a record invalid at `time` with magnitude 0, once.
void updateInvalidMV(MV *record, const TimeStamp &time);
void updateInvalidCMV(CMV *record, const TimeStamp &time);

// How one pass walks a table.
struct MeasPass {
    MeasTableId table;     // named in messages
    bool arrays;           // knows array rows
    bool values;           // knows MV rows
    bool stampedSources;   // a source carries its own time behind its value
    bool stopOnWrongArray; // a wrong array row ends the walk also when it is not active
    u32 firstElement;      // of array rows
    u32 elementStride;     // octets from one element of an array source to the next
    TimeStamp blockTime;
    TimeStamp now;
    u16 wiring;      // mode in force: 0 wye, 1 delta
    u8 mode;         // RefreshMode
    i32 targetShift; // octets added to the targets
    u32 sourceShift; // octets added to the sources
};

// 1, or 0 after a message when a row is faulty: what follows it is not refreshed then.
int walkMeasTable(std::span<const MeasRow> rows, const MeasPass &pass);

int refreshRt50Cycle(u8 mode);
int refreshRtHarm(u8 mode);
int refreshRtPst(u8 mode);
int refreshRtPlt(u8 mode);
int refreshRtDemand(u8 mode);
int refreshPreDemand(u8 mode);
// Pulse counters: only inputs in pulse mode, only on a change.
int refreshRtDiCnt(u8 mode);
int refreshEnergy(u8 mode);
// `month` 0 this month, 1 last month.
int refreshStatData(u8 month, u8 mode);

// The same walk over rows of counters, for tests of faulty tables.
int walkPulseTable(std::span<const MeasRow> rows, u8 mode);
int walkEnergyTable(std::span<const MeasRow> rows, u8 mode);

} // namespace ied
