// The ring of report entries of a block: what the monitor task puts in, and where a client stands.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/sharedText.h"
#include "device/externGlbCfg.h"
#include "platform/shared.h"
#include "proto-process/c/reportModel.h"

#include <algorithm>
#include <cstring>

namespace ied {

namespace {

u32 ringSlots(const RCBStat *stat) {
    return stat->bufLen + 1; // the open entry never lies on the oldest one that waits
}

RptEntry *openEntry(const RCBStat *stat) {
    return entryAt(stat, stat->writeCount);
}

// Builds one member's value tree in every entry.
void allocRCBufData(RCBStat *stat, GenNode *memberNode, u32 memberIndex) {
    for (u32 i = 0; i < ringSlots(stat); i++) {
        allocNodeDataInMp(&stat->entries[i].data[memberIndex], memberNode, &stat->pool);
    }
}

// A BRCB gathers whether or not a client owns it; an unbuffered one only while it is enabled.
bool gathers(const RCB *rcb) {
    return rcb->buffered != 0 ? rcb->pDataSet != nullptr : rcb->RptEna == 1;
}

void clearEntry(const RCB *rcb, RptEntry *entry) {
    std::memset(entry->included, 0, rcb->pDataSet->memberNum);
    std::memset(entry->reasons, 0, rcb->pDataSet->memberNum);
}

// Takes the pending reasons into the open entry, each with its member's whole value, up to the first
// member that comes again within the buffer time. True when the entry is to be closed.
bool fillTrgData(const RCB *rcb, RCBStat *stat) {
    RptEntry *entry = openEntry(stat);
    bool close = false;
    bool fresh = false;
    std::memset(stat->touched, 0, rcb->pDataSet->memberNum);
    for (u32 i = 0; i < stat->monitor.num; i++) {
        MonDAI *leaf = &stat->monitor.list[i];
        if (leaf->reason == 0) {
            continue;
        }
        if (stat->bufTmRunning == 0 && !fresh) {
            clearEntry(rcb, entry);
            fresh = true;
            if (rcb->BufTm != 0) {
                stat->bufTmRunning = 1;
                stat->bufTmStart = tickGet();
            }
        }
        if (stat->bufTmRunning == 1 && entry->included[leaf->memberIndex] == 1) {
            stopGathering(stat);
            close = true;
            break;
        }
        if (stat->touched[leaf->memberIndex] == 0) {
            stat->touched[leaf->memberIndex] = 1;
            copyNodeData(&entry->data[leaf->memberIndex], leaf->memberNode);
        }
        entry->reasons[leaf->memberIndex] |= leaf->reason;
        leaf->reason = 0;
        close |= rcb->BufTm == 0;
    }
    for (u32 i = 0; i < rcb->pDataSet->memberNum; i++) {
        entry->included[i] |= stat->touched[i];
    }
    return close;
}

void fillAllData(const DataSet *dataSet, RptEntry *entry, u8 reason) {
    u32 i = 0;
    for (AsnListElement *element = dataSet->nodes->first; element != nullptr; element = element->next, i++) {
        copyNodeData(&entry->data[i], asnListValue<GenNode>(element));
        entry->included[i] = 1;
        entry->reasons[i] = reason;
    }
}

void closeGathered(RCB *rcb, RCBStat *stat, const TimeStamp *time) {
    stopGathering(stat);
    genRpt(rcb, stat, time);
}

// Closes what is gathered, then an entry of all members.
void reportAll(RCB *rcb, RCBStat *stat, const TimeStamp *time, u8 reason) {
    if (stat->bufTmRunning == 1) {
        closeGathered(rcb, stat, time);
    }
    fillAllData(rcb->pDataSet, openEntry(stat), reason);
    genRpt(rcb, stat, time);
}

void storeBig(u8 *out, u32 value, u32 octets) {
    for (u32 i = 0; i < octets; i++) {
        out[i] = static_cast<u8>(value >> (8 * (octets - 1 - i)));
    }
}

} // namespace

void stopGathering(RCBStat *stat) {
    stat->bufTmRunning = 0;
    stat->bufTmStart = 0;
}

RptEntry *entryAt(const RCBStat *stat, u64 count) {
    return &stat->entries[count % ringSlots(stat)];
}

bool rptDataBufInit(RCB *rcb) {
    RCBStat *stat = rcb->pStat;
    const DataSet *dataSet = rcb->pDataSet;
    if (dataSet == nullptr) {
        return false;
    }
    const u32 slots = ringSlots(stat);
    const u64 size = u64{slots} * dataSet->size;
    if (size > UINT32_MAX) {
        return false;
    }
    mpAlloc(static_cast<u32>(size), &stat->pool);
    stat->entries = allocInMpArray<RptEntry>(&stat->pool, slots);
    for (u32 i = 0; i < slots; i++) {
        RptEntry *entry = &stat->entries[i];
        entry->included = allocInMpArray<u8>(&stat->pool, dataSet->memberNum);
        entry->reasons = allocInMpArray<u8>(&stat->pool, dataSet->memberNum);
        entry->data = allocInMpArray<Data>(&stat->pool, dataSet->memberNum);
    }
    u32 member = 0;
    for (AsnListElement *element = dataSet->nodes->first; element != nullptr; element = element->next) {
        allocRCBufData(stat, asnListValue<GenNode>(element), member++);
    }
    stat->touched = MallocArray<u8>(std::max<u32>(dataSet->memberNum, 1));
    dbInfo(DbRPT, DbINF, "rptDataBufInit", "The length of memory pool of \"%s\" is %u, used %u!", rcb->rcbRef,
           stat->pool.size, stat->pool.used);
    return true;
}

bool monEventRpt(RCB *rcb, const TimeStamp *time) {
    RCBStat *stat = rcb->pStat;
    const RcbLock lock(rcb);
    if (!gathers(rcb) || (rcb->TrgOps & changeTriggers) == 0 || !dsMonitor(&stat->monitor, rcb->TrgOps)) {
        return false;
    }
    bool closed = false;
    while (fillTrgData(rcb, stat)) {
        closeGathered(rcb, stat, time);
        closed = true;
    }
    return closed;
}

bool monPeriodRpt(RCB *rcb, const TimeStamp *time) {
    RCBStat *stat = rcb->pStat;
    const RcbLock lock(rcb);
    if (!gathers(rcb)) {
        return false;
    }
    bool closed = false;
    if ((rcb->TrgOps & changeTriggers) != 0 && stat->bufTmRunning == 1 &&
        isTimeOut(stat->bufTmStart, rcb->BufTm)) {
        closeGathered(rcb, stat, time);
        closed = true;
    }
    if ((rcb->TrgOps & TrgPeriod) != 0 && rcb->IntgPd != 0 && isTimeOut(stat->intgStart, rcb->IntgPd)) {
        stat->intgStart = tickGet();
        reportAll(rcb, stat, time, TrgPeriod);
        closed = true;
    }
    const bool interrogated = (rcb->TrgOps & TrgGi) != 0 && rcb->GI == 1;
    storeShared(rcb->GI, 0);
    if (interrogated) {
        reportAll(rcb, stat, time, TrgGi);
        closed = true;
    }
    return closed;
}

void fillEntryID(u8 (&out)[9], const TimeStamp *time, u32 seq) {
    constexpr u32 secondsOfDay = 86400;
    constexpr u32 epochDay = 5113; // 1984-01-01, in days since 1970-01-01
    std::memset(out, 0, sizeof out);
    if (externGlbCfg.rptEntryIdSeq != 0) {
        storeBig(out + 4, seq, 4);
        return;
    }
    const u32 day = time->sec / secondsOfDay;
    if (day > epochDay) {
        storeBig(out, (time->sec % secondsOfDay * 1000 + time->ms) & 0x0FFFFFFF, 4);
        storeBig(out + 4, day - epochDay, 2);
    }
    storeBig(out + 6, seq & 0xFFFF, 2);
}

void genRpt(RCB *rcb, RCBStat *stat, const TimeStamp *time) {
    RptEntry *entry = openEntry(stat);
    stat->entrySeq++;
    entry->time = *time;
    fillEntryID(entry->entryId, time, stat->entrySeq);
    if (rcb->buffered != 0) {
        storeShared(rcb->TimeOfEntry, entry->time);
        storeSharedText(reinterpret_cast<char *>(rcb->EntryID), entry->entryId, entryIdOctets);
    }
    stat->writeCount++;
}

void purgeEntries(RCB *rcb, RCBStat *stat) {
    if (stat->bufTmRunning == 1) {
        std::swap(stat->entries[0], *openEntry(stat));
    }
    stat->entrySeq = 0;
    stat->writeCount = 0;
    stat->sendCount = 0;
    stat->recounts++;
    stat->resendPos = resendNone;
    const u8 none[entryIdOctets] = {};
    storeSharedText(reinterpret_cast<char *>(rcb->EntryID), none, entryIdOctets);
    storeShared(rcb->TimeOfEntry, TimeStamp{});
}

bool searchEntryID(RCB *rcb, const AsnOcts *entryId) {
    RCBStat *stat = rcb->pStat;
    if (entryId == nullptr || entryId->octs == nullptr || entryId->octetLen == 0) {
        dbInfo(DbRPT, DbERR, "searchEntryID", "%s EntryID is null!", rcb->rcbRef);
        return false;
    }
    if (stat->writeCount == 0) {
        dbInfo(DbRPT, DbINF, "searchEntryID", "%s no rpt buffered!", rcb->rcbRef);
        return false;
    }
    const u8 *octets = entryId->octs;
    const u32 length = entryId->octetLen;
    if (length <= entryIdOctets && std::all_of(octets, octets + length, [](u8 o) { return o == 0; })) {
        stat->resendPos = 0;
        return true;
    }
    const u64 kept = std::min<u64>(stat->writeCount, stat->bufLen);
    for (u64 p = stat->writeCount; p > stat->writeCount - kept; p--) {
        if (length == entryIdOctets && std::memcmp(entryAt(stat, p - 1)->entryId, octets, length) == 0) {
            stat->resendPos = p;
            return true;
        }
    }
    return false;
}

} // namespace ied
