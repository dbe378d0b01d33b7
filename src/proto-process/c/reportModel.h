// Report control blocks, buffered and unbuffered (IEC 61850-7-2 clause 17): the block as clients
// see it, its run-time state with the ring of entries, and the operations that other subjects call.
#pragma once

#include "basicInterface/memoryPool.h"
#include "model-gen/c/modelConfig.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/dsMonitor.h"

namespace ied {

// `resendPos` of a ring that nobody asked to be sent again.
inline constexpr u64 resendNone = ~u64{0};
inline constexpr u32 entryIdOctets = 8;

// Run-time state of a block. Everything in it, the entries included, is touched under `sem` alone, by
// the monitor task that fills the ring, by the report task that sends from it, and by the client
// that writes the block. The lock is never held across a send.
struct RCBStat {
    SemId sem;
    u8 lastRptEna; // values last acted on
    u8 lastTrgOps;
    u32 lastBufTm;
    u32 lastIntgPd;
    u8 bufTmRunning; // 1 while an entry is gathered under BufTm
    u32 bufTmStart;  // tick at which gathering began
    u32 intgStart;   // tick of the last integrity report
    DsMonitor monitor;
    u32 bufLen;      // entries of the ring that may wait; one slot more holds the open one
    u64 writeCount;  // entries closed so far; the open one is at entryAt(writeCount)
    u64 sendCount;   // next entry to send, in the same count
    u64 resendPos;   // position asked for by a write of EntryID, or resendNone
    u32 recounts;    // times that writeCount and sendCount began anew
    u32 enables;     // times that the block was enabled, and SqNum began anew
    MemoryPool pool; // holds entries and everything under them
    RptEntry *entries;
    u8 *touched;  // scratch of fillTrgData, one a member
    u32 entrySeq; // number of the last EntryID given out
};

// The block; leaves of its node in the model point at the fields, so that clients read them without
// the lock. They are written under it.
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
    alignas(8) u8 EntryID[entryIdOctets + 1]; // with a NUL; one word for those who read it
    TimeStamp TimeOfEntry;
    u8 bufOvfl; // 1 from an overflow until a report has told of it
    u8 buffered;
    DataSet *pDataSet;
    GenNode *pLd;
    u8 clientId; // slot that owns the block, clientNone for none
    RCBStat *pStat;
    u32 bufLen; // entries of the block's ring
};

extern RCB *aRCBObj;      // gCBNum.rcbNum records, in the order of ReportCfgHead; null for none
extern RCBStat *aRCBStat; // one for each, in the same order

// Holds the lock of a block.
class RcbLock {
  public:
    explicit RcbLock(const RCB *rcb);
    ~RcbLock();
    RcbLock(const RcbLock &) = delete;
    RcbLock &operator=(const RcbLock &) = delete;

  private:
    SemId sem_;
};

// ------------------------------------------------------------------------------------- start

// Makes the blocks of the SCL file, binds their nodes and divides the report memory. True on
// success; a fault ends the process or is logged with the block's name.
bool rptModelInit();
// Takes the block's configuration; false if its device is unknown.
bool rcbCfgInit(RCB *rcb, const ReportCfg *cfgEntry);
// Points the leaves of the block's node at its fields.
void mapRCB2Model(RCB *rcb, GenNode *rcbNode);
// Divides `limitBytes` of report memory among the blocks: each gets its `bufLen`. URCBs have a fixed
// number of entries; what BRCBs get beyond their least goes to small data sets first.
bool rptBufLenInit(u32 limitBytes);
// Report memory in bytes: rptBufSpace MiB for each 4 octets of a pointer.
u32 rptMemoryLimit();
// Names each block whose report with every member and option can grow larger than a packet. Called
// while the entries are empty, and leaves them so.
void nameOversizedBlocks();
// First state of a block with its monitor and its ring. False, after a message, without a data set.
bool rcbStatInit(RCBStat *stat, RCB *rcb);
// Makes the pool and the ring with the value trees of every entry. False without a data set, or when a ring
// would exceed the 32 bits of a pool.
bool rptDataBufInit(RCB *rcb);

// ---------------------------------------------------------------------------------- attributes

// Options that a block of its kind can hold.
u16 optFldsMask(const RCB *rcb);
// Brings the run-time state in line with the record: what changed since the last call takes effect.
// The lock is held.
void updateRCBStat(RCB *rcb, RCBStat *stat);
// Gives back every block that the client of `slot` owns.
void releaseClientRCB(u8 slot);

// ---------------------------------------------------------------------------------------- ring

// Fills entries of the block's ring from the changes since the last call, stamped with `time`.
// True if an entry was closed. Allocates nothing.
bool monEventRpt(RCB *rcb, const TimeStamp *time);
// The same for buffer time, integrity period and general interrogation.
bool monPeriodRpt(RCB *rcb, const TimeStamp *time);

// The functions of the ring want the lock of the block held.

// Entry of that count.
RptEntry *entryAt(const RCBStat *stat, u64 count);
// Writes the 8 octets of an EntryID and a 0. By number alone, or with the time before it when
// rptEntryIdSeq is 0.
void fillEntryID(u8 (&out)[9], const TimeStamp *time, u32 seq);
// Ends the gathering of the open entry under BufTm.
void stopGathering(RCBStat *stat);
// Closes the open entry: it gets its time and EntryID and is counted.
void genRpt(RCB *rcb, RCBStat *stat, const TimeStamp *time);
// Empties the ring; an entry that is being gathered stays.
void purgeEntries(RCB *rcb, RCBStat *stat);
// Sets the position behind the entry of that EntryID, or the oldest one for zeros, as where sending
// goes on. False if there is no such entry.
bool searchEntryID(RCB *rcb, const AsnOcts *entryId);
// The next entry to send. Skips, with BufOvfl, what the ring holds no more. False if there is none.
bool getSendData(RCB *rcb, RptEntry **entryOut);

// Sends at most one entry of each block to the client that owns it.
void sendRpt();

} // namespace ied
