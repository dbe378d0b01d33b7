// The change detector over the leaves of a data set: the records that report and log control
// blocks keep one of each.
#pragma once

#include "basicInterface/cdcRecord.h"
#include "basicInterface/nodeTree.h"

namespace ied {

struct DataSet;

// Triggers that a monitor sees: a changed value or quality, an object that was updated.
inline constexpr u8 valueTriggers = TrgDchg | TrgQchg;
inline constexpr u8 changeTriggers = valueTriggers | TrgDupd;

// How a monitored value is compared: by its width in octets, or as a vector array.
enum MonCompare : u8 {
    MonCounter = 0, // by its object's updateCount alone
    MonByte = 1,
    MonHalf = 2,
    MonWord = 4,
    MonMagArray = 100,
    MonVecArray = 101,
    MonNever = 255
};

// One monitored leaf.
struct MonDAI {
    u16 memberIndex;     // member of the data set that holds the leaf
    GenNode *memberNode; // node of that member
    GenNode *leaf;
    u8 trgOps;  // of the leaf: TrgOpsBit, from dchg to dupd
    u16 vecLen; // elements of a vector array
    u8 cmpKind; // MonCompare
    union {
        u32 oldValue;     // value at the last compare
        Vector *oldArray; // private copy of a vector array's pairs, for MonMagArray and MonVecArray
    };
    u32 *updCntAddr; // updateCount of the object's record, for dupd; null where there is none
    u32 oldUpdCnt;   // counter at the last compare
    u8 reason;       // pending TrgOpsBit, cleared by the consumer
};

struct DsMonitor {
    u16 num;      // monitored leaves
    MonDAI *list; // num records; room for daiNum of the data set
};

// Builds the monitor of a data set: one entry for each leaf with triggers, in the order of the
// members and of their leaves, with the present values as the old ones. False for null.
bool dsMonitorInit(const DataSet *dataSet, DsMonitor *monitor);
// Gives back what dsMonitorInit took and empties the record.
void dsMonitorFree(DsMonitor *monitor);
// Compares every leaf that has one of the triggers `trgOps` with its old value. A changed one gains
// its reason, which stays until the consumer clears it. True if any changed. Takes no lock, allocates
// nothing. A null monitor ends the process.
bool dsMonitor(DsMonitor *monitor, u8 trgOps);
// Takes over into `copy` what differs of `count` pairs, of the angles only `withAngle`. TrgDchg if
// anything did, else 0. Floats within 10 units in the last place are the same.
u8 CmpVecArray(const Vector *values, Vector *copy, bool withAngle, u32 count);

} // namespace ied
