// Log control blocks (IEC 61850-7-2 clause 17.3): the block as clients see it.
#pragma once

#include "proto-process/c/dataSet.h"
#include "proto-process/c/dsMonitor.h"

namespace ied {

struct LogObj; // a log with its store

struct LCB {
    char lcbRef[100]; // reference, from LCBHead
    GenNode *ldNode;
    u8 LogEna;
    u8 lastLogEna;    // value last acted on
    char LogRef[100]; // name of the log: IED name, logName, "/", logName
    LogObj *pLog;
    char DatSet[66];
    DataSet *dataSet;
    DsMonitor dsMonitor;
    TimeStamp OldEntrTm, NewEntrTm;
    u8 OldEntr[9], NewEntr[9]; // EntryID, 8 octets and a NUL
    u8 TrgOps;                 // TrgOpsBit, from dchg to period
    u8 lastTrgOps;
    u32 IntgPd; // milliseconds
    u32 lastIntgPd;
    u32 lastIntgTick; // tick of the last integrity entry
    u8 busy;          // 1 while a client writes an attribute
};

} // namespace ied
