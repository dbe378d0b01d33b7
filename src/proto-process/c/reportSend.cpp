// The sending side of report control: from a block's ring to the client that owns it.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/dataParts.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportEncode.h"
#include "proto-process/c/reportModel.h"

#include <cstring>

namespace ied {

namespace {

ReportMaker maker; // the report task's, from its first round on

// A report on its way: what must still hold when it is counted.
struct ReportUnderWay {
    u8 slot;
    u32 association; // of the slot when the report was made
    u32 recounts;    // of the block
    u32 enables;
    u32 length; // octets encoded
};

// Encodes the block's next entry. False if there is none to send.
bool encodeNext(RCB *rcb, ReportUnderWay *report) {
    const RcbLock lock(rcb);
    RptEntry *entry = nullptr;
    if (!isClientValid(rcb->clientId) || !getSendData(rcb, &entry)) {
        return false;
    }
    report->slot = rcb->clientId;
    report->association = loadPublished(clientStat[rcb->clientId].association);
    report->recounts = rcb->pStat->recounts;
    report->enables = rcb->pStat->enables;
    report->length = encodeReport(&maker, rcb, entry);
    if (report->length != 0) {
        return true;
    }
    dbInfo(DbRPT, DbERR, "sendRpt", "Report of \"%s\" exceeds sendBufSize %u, dropped!", rcb->rcbRef,
           externGlbCfg.sendBufSize);
    rcb->pStat->sendCount++;
    rcb->bufOvfl = 1;
    return false;
}

// Counts a report that went out, where the client did not set the count anew meanwhile.
void countSent(RCB *rcb, const ReportUnderWay &report) {
    const RcbLock lock(rcb);
    rcb->bufOvfl = 0; // only this task sets it, so that the report told of it
    if (rcb->pStat->recounts == report.recounts) {
        rcb->pStat->sendCount++;
    }
    if (rcb->pStat->enables == report.enables) {
        countShared(rcb->SqNum8);
        countShared(rcb->SqNum);
    }
}

// Gives all whole numbers of a value these values.
void setNumbers(Data *data, i32 integer, u32 unsignedInt, int depth = 0) {
    if (data->choiceId == Data::integer) {
        data->int_ = integer;
    } else if (data->choiceId == Data::unsignedInt) {
        data->uint_ = unsignedInt;
    } else if (isList(data) && depth < maxWalkDepth) {
        for (MemberCursor member = firstMember(data); member.value() != nullptr; member.advance()) {
            setNumbers(member.value(), integer, unsignedInt, depth + 1);
        }
    }
}

// Gives the first entry of a block every member with its longest encoding. Before it is filled, its
// strings have their full length already.
void widen(RptEntry *entry, u32 memberNum) {
    std::memset(entry->included, 1, memberNum);
    for (u32 member = 0; member < memberNum; member++) {
        setNumbers(&entry->data[member], INT32_MIN, UINT32_MAX);
    }
}
void empty(RptEntry *entry, u32 memberNum) {
    std::memset(entry->included, 0, memberNum);
    for (u32 member = 0; member < memberNum; member++) {
        setNumbers(&entry->data[member], 0, 0);
    }
}

} // namespace

bool getSendData(RCB *rcb, RptEntry **entryOut) {
    RCBStat *stat = rcb->pStat;
    if (rcb->RptEna == 0) {
        return false;
    }
    if (stat->resendPos != resendNone) {
        stat->sendCount = stat->writeCount < stat->resendPos ? 0 : stat->resendPos;
        stat->resendPos = resendNone;
    }
    if (stat->sendCount >= stat->writeCount) {
        return false;
    }
    if (stat->writeCount - stat->sendCount > stat->bufLen) {
        stat->sendCount = stat->writeCount - stat->bufLen;
        rcb->bufOvfl = 1;
        dbInfo(DbRPT, DbINF, "getSendData", "Buffer overflowed of %s!", rcb->rcbRef);
    }
    *entryOut = entryAt(stat, stat->sendCount);
    return true;
}

void sendRpt() {
    if (maker.buffer == nullptr) {
        reportMakerInit(&maker);
    }
    for (u32 i = 0; i < gCBNum.rcbNum && aRCBObj != nullptr; i++) {
        RCB *rcb = &aRCBObj[i];
        ReportUnderWay report{};
        if (encodeNext(rcb, &report) &&
            sendPacket(maker.buffer, report.length, report.slot, report.association)) {
            countSent(rcb, report);
        }
    }
}

void nameOversizedBlocks() {
    ReportMaker trial{};
    reportMakerInit(&trial);
    for (u32 i = 0; i < gCBNum.rcbNum; i++) {
        RCB widest = aRCBObj[i];
        widest.OptFlds = optFldsMask(&widest);
        widest.SqNum = UINT16_MAX;
        widest.SqNum8 = UINT8_MAX;
        RptEntry *entry = entryAt(widest.pStat, 0);
        widen(entry, widest.pDataSet->memberNum);
        if (encodeReport(&trial, &widest, entry) == 0) {
            dbInfo(
                DbRPT, DbERR, "rptModelInit",
                "Reports of \"%s\" can exceed sendBufSize %u and would be dropped: raise it or shorten the "
                "data set!",
                widest.rcbRef, externGlbCfg.sendBufSize);
        }
        empty(entry, widest.pDataSet->memberNum);
    }
    reportMakerFree(&trial);
}

} // namespace ied
