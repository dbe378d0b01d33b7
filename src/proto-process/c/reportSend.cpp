// The sending side of report control: from a block's ring to the client that owns it.
#include "DebugInfo/DebugInfo.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportEncode.h"
#include "proto-process/c/reportModel.h"

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

} // namespace ied
