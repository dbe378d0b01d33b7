// Report control blocks, buffered and unbuffered (IEC 61850-7-2 clause 17): the block as clients
// see it, its run-time state with the ring of entries, and the operations that other subjects call.
#pragma once

#include "basicInterface/memoryPool.h"
#include "model-gen/c/modelConfig.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/dsMonitor.h"

namespace ied {

// `resendPos` of a ring that nobody asked to be sent again.
inline constexpr u32 resendNone = 0xFFFFFFFF;

// Run-time state of a block. The monitor task alone writes the entries, writeCount, bufTmRunning
// and entrySeq; the report task alone sendCount and resendPos.
struct RCBStat {
    u8 busy;       // 1 while a client writes the block: the tasks leave it alone
    u8 lastRptEna; // values last acted on
    u8 lastTrgOps;
    u32 lastBufTm;
    u32 lastIntgPd;
    u8 bufTmRunning; // 1 while an entry is gathered under BufTm
    u32 bufTmStart;  // tick at which gathering began
    u32 intgStart;   // tick of the last integrity report
    DsMonitor monitor;
    u32 bufLen;      // entries of the ring
    u32 writeCount;  // entries closed so far; the open one is writeCount modulo bufLen
    u32 sendCount;   // next entry to send, in the same count
    u32 resendPos;   // position asked for by a write of EntryID, or resendNone
    MemoryPool pool; // holds entries and everything under them
    RptEntry *entries;
    u32 entrySeq; // number of the last EntryID given out
};

// The block; leaves of its node in the model point at the fields.
struct RCB {
    char rcbRef[100]; // LD/LN$FC$name
    char RptID[66];
    u8 RptEna;
    u8 Resv;         // of an unbuffered block
    char DatSet[66]; // LD/LN$name
    u32 ConfRev;
    u32 BufTm;   // milliseconds
    u16 OptFlds; // OptFldsBit
    u16 SqNum;   // of a buffered block
    u32 IntgPd;  // milliseconds, 0 off
    u8 SqNum8;   // of an unbuffered block
    u8 TrgOps;   // TrgOpsBit
    u8 GI;
    u8 PurgeBuf;
    u8 EntryID[9]; // 8 octets and a NUL
    TimeStamp TimeOfEntry;
    u8 bufOvfl; // 1 from an overflow to the next report
    u8 buffered;
    DataSet *pDataSet;
    GenNode *pLd;
    u8 clientId; // slot that owns the block, clientNone for none
    RCBStat *pStat;
    u32 bufLen; // entries of the block's ring
};

extern RCB *aRCBObj;      // gCBNum.rcbNum records, in the order of ReportCfgHead; null for none
extern RCBStat *aRCBStat; // one for each, in the same order

// Makes the blocks of the SCL file, binds their nodes and divides the report memory. True on
// success; a fault ends the process or is logged with the block's name.
bool rptModelInit();
// Fills entries of the block's ring from the changes since the last call, stamped with `time`.
// True if an entry was closed.
bool monEventRpt(RCB *rcb, const TimeStamp *time);
// The same for buffer time, integrity period and general interrogation.
bool monPeriodRpt(RCB *rcb, const TimeStamp *time);
// Sends at most one entry of each block to the client that owns it.
void sendRpt();
// Gives back every block that the client of `slot` owns.
void releaseClientRCB(u8 slot);

} // namespace ied
