// The change detector over the leaves of a data set: the records that report and log control
// blocks keep one of each.
#pragma once

#include "basicInterface/nodeTree.h"

namespace ied {

// How a monitored value is compared: by its width in octets, or as a vector array.
enum MonCompare : u8 {
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
        u32 oldValue;  // value at the last compare
        f32 *oldArray; // private copy of a vector array's magnitude and angle pairs
    };
    u32 *updCntAddr; // updateCount of the object's record, for dupd; null where there is none
    u32 oldUpdCnt;   // counter at the last compare
    u8 reason;       // pending TrgOpsBit, cleared by the consumer
};

struct DsMonitor {
    u16 num;      // monitored leaves
    MonDAI *list; // num records
};

} // namespace ied
