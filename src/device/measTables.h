// The measurement tables: for each value of the region the record of the mirror that shows it. A
// refresh walks the rows of a table in order (measRefresh.h).
#pragma once

#include "device/protoData.h"

#include <span>

namespace ied {

// Wiring modes in which a row is active.
enum Wiring : u8 {
    wye,
    delta,
    anyWiring,
    never
};

// Kinds of targets, values of `prototype`.
enum Prototype : u16 {
    ProtoBCR = CdcBCR,
    ProtoMV = CdcMV,
    ProtoCMV = CdcCMV,
    ProtoArray = TypeArrayVec
};

// Values of `angtype`.
enum AngType : u16 {
    AngNone,
    AngMagnitude,
    AngAngle
};

struct MeasRow {
    u16 prototype;
    u16 angtype;
    u8 *modelAddr;     // MV, CMV or BCR of the mirror, or the place of an array pointer
    u32 srcOffset;     // of the source in the region: f32; u16 of an angle in hundredths of a degree;
                       // u32 of a BCR; the first f32 of an array
    const u8 *srcAddr; // the source itself, once dataMapInit has run
    u16 wiring;
    u16 fcdType; // of the enclosing record: CdcWYE (DEL too), CdcSEQ, CdcHWYE, CdcHDEL, CdcBCR,
                 // mapInner for none
    u8 *fcdAddr; // enclosing record, null for none
};

// Arrays of the demand block: element i, from the second on, at 96 (i - 2).
inline constexpr u32 demandArrayStride = 96;

// A table that serves several sets of records names the first; the others lie apart from it.
struct MeasSetShift {
    i32 target; // octets from the record of the first set to that of this one
    u32 source; // octets added to the source
};
// Sets of the demand block: averages, minima, maxima.
extern const MeasSetShift demandSets[3];
// Classes of the statistics, from the maxima of this month on. A source is an f32 and its TimeStamp.
extern const MeasSetShift rtStatSets[2][2]; // by month (0 this, 1 last), then max and min
extern const MeasSetShift demandStatSets[2];

enum class MeasTableId : u8 {
    basic,
    harmImBal,
    pst,
    plt,
    diCnt,
    energy,
    demand,
    preDemand,
    rtStat,
    demandStat,
};
inline constexpr u32 measTableNum = static_cast<u32>(MeasTableId::demandStat) + 1;

std::span<const MeasRow> measTable(MeasTableId table);
// Its name in messages: "basicMeasTable", ..., "rtStatTable", "demandStatTable".
const char *measTableName(MeasTableId table);

// Points every row at its source in the region. Returns 1.
int dataMapInit();

} // namespace ied
