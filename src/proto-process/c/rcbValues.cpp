// Writes of a client to the attributes of report control blocks (IEC 61850-7-2 17.2.3 and 17.2.5): who
// may write what when, and what a write sets off.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "basicInterface/complexData.h"
#include "basicInterface/sharedText.h"
#include "basicInterface/simpleData.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportModel.h"
#include "proto-process/c/services.h"

#include <algorithm>
#include <cstring>

namespace ied {

namespace {

constexpr u16 brcbOptions = 0x7FC0;
constexpr u16 urcbOptions = 0x7CC0; // neither buffer-overflow nor entryID
constexpr u8 reservedTrigger = 0x80;
constexpr u32 bufTmMax = 3600000; // ms

constexpr const char *setter = "setRCBValues"; // in messages

// A write of one attribute.
struct RcbWrite {
    const Data *data;
    GenNode *node;
    i8 *error;
    u8 clientId;
};

bool refuse(const RcbWrite &write, DataAccessError error) {
    *write.error = error;
    return false;
}

bool isOn(const RcbWrite &write) {
    return write.data->bool_ != 0;
}

bool isBuffered(const RCB *rcb) {
    return rcb->buffered != 0;
}

void own(RCB *rcb, u8 clientId) {
    storeShared(rcb->clientId, clientId);
}

void release(RCB *rcb, const char *function) {
    storeShared(rcb->RptEna, 0);
    storeShared(rcb->clientId, clientNone);
    if (!isBuffered(rcb)) {
        storeShared(rcb->Resv, 0);
    }
    dbInfo(DbRPT, DbINF, function, "Release RCB \"%s\"!", rcb->rcbRef);
}

// What was asked for and gathered before belongs to no report of an unbuffered block's new owner.
void endGathering(RCB *rcb) {
    storeShared(rcb->GI, 0);
    stopGathering(rcb->pStat);
}

bool writeRptEna(RCB *rcb, const RcbWrite &write) {
    if (rcb->DatSet[0] == '\0' || rcb->pDataSet == nullptr) {
        return refuse(write, DaeObjectAccessDenied);
    }
    const bool enable = isOn(write);
    if (enable == (rcb->RptEna != 0)) {
        return true;
    }
    if (!enable) {
        release(rcb, setter);
        return true;
    }
    own(rcb, write.clientId);
    storeShared(rcb->RptEna, 1);
    if (!isBuffered(rcb)) {
        storeShared(rcb->Resv, 1);
    }
    dbInfo(DbRPT, DbINF, setter, "Enable RCB \"%s\"!", rcb->rcbRef);
    return true;
}

bool writeResv(RCB *rcb, const RcbWrite &write) {
    const bool reserve = isOn(write);
    if (reserve == (rcb->Resv != 0)) {
        return true;
    }
    if (!reserve) {
        release(rcb, setter);
        return true;
    }
    storeShared(rcb->Resv, 1);
    own(rcb, write.clientId);
    return true;
}

bool writeOptFlds(RCB *rcb, const RcbWrite &write) {
    if (!writeNodeData(write.data, write.node, write.error)) {
        return false;
    }
    storeShared(rcb->OptFlds, rcb->OptFlds & optFldsMask(rcb));
    return true;
}

bool writeTrgOps(RCB *rcb, const RcbWrite &write) {
    if (!writeNodeData(write.data, write.node, write.error)) {
        return false;
    }
    storeShared(rcb->TrgOps, static_cast<u8>(rcb->TrgOps & ~reservedTrigger));
    return true;
}

// Out of range, the field takes its limit all the same, so that a client reads back what holds.
bool writeBufTm(RCB *rcb, const RcbWrite &write) {
    storeShared(rcb->BufTm, std::min(write.data->uint_, bufTmMax));
    return write.data->uint_ <= bufTmMax || refuse(write, DaeObjectValueInvalid);
}

bool writeIntgPd(RCB *rcb, const RcbWrite &write) {
    const u32 value = write.data->uint_;
    const bool sound = value == 0 || value >= externGlbCfg.minIntgPd;
    storeShared(rcb->IntgPd, sound ? value : externGlbCfg.minIntgPd);
    return sound || refuse(write, DaeObjectValueInvalid);
}

bool writeGI(RCB *rcb, const RcbWrite &write) {
    const bool possible = rcb->RptEna == 1 && (!isOn(write) || (rcb->TrgOps & TrgGi) != 0);
    if (!possible) {
        return refuse(write, DaeTemporarilyUnavailable);
    }
    storeShared(rcb->GI, static_cast<u8>(isOn(write)));
    return true;
}

bool writePurgeBuf(RCB *, const RcbWrite &write) {
    return writeNodeData(write.data, write.node, write.error);
}

bool writeEntryID(RCB *rcb, const RcbWrite &write) {
    // The end of an owner that vanished takes effect only now; it must not take the new position along.
    updateRCBStat(rcb, rcb->pStat);
    if (write.data->choiceId != Data::octetString || !searchEntryID(rcb, write.data->octs)) {
        return refuse(write, DaeObjectValueInvalid);
    }
    u8 entryId[entryIdOctets] = {}; // a shorter one is all zero
    std::copy_n(write.data->octs->octs, write.data->octs->octetLen, entryId);
    storeSharedText(reinterpret_cast<char *>(rcb->EntryID), entryId, entryIdOctets);
    return true;
}

bool never(RCB *, const RcbWrite &write) {
    return refuse(write, DaeObjectAccessDenied);
}

enum BlockKind : u8 {
    anyBlock,
    brcbOnly,
    urcbOnly
};

// One attribute: which blocks have it, whether the configuration lets clients write it, whether it
// is locked while reports flow, and what a write does.
struct WriteRule {
    const char *name;
    BlockKind kind;
    const u8 *writable; // null: always
    bool onlyDisabled;
    bool (*write)(RCB *rcb, const RcbWrite &write);
};
constexpr WriteRule writeRules[] = {
    {"RptEna", anyBlock, nullptr, false, writeRptEna},
    {"Resv", urcbOnly, nullptr, true, writeResv},
    {"DatSet", anyBlock, nullptr, false, never},
    {"OptFlds", anyBlock, &externGlbCfg.rptOptFldsWritable, true, writeOptFlds},
    {"TrgOps", anyBlock, &externGlbCfg.rptTrgOpsWritable, true, writeTrgOps},
    {"BufTm", anyBlock, &externGlbCfg.rptBufTmWritable, true, writeBufTm},
    {"IntgPd", anyBlock, &externGlbCfg.rptIntgPdWritable, true, writeIntgPd},
    {"GI", anyBlock, nullptr, false, writeGI},
    {"PurgeBuf", brcbOnly, nullptr, true, writePurgeBuf},
    {"EntryID", brcbOnly, nullptr, true, writeEntryID},
    {"TimeOfEntry", brcbOnly, nullptr, false, never},
    {"ConfRev", anyBlock, nullptr, false, never},
    {"SqNum", anyBlock, nullptr, false, never},
    {"RptID", anyBlock, nullptr, false, never},
};

bool writeAttribute(RCB *rcb, const RcbWrite &write) {
    const auto *rule = std::ranges::find_if(
        writeRules, [&write](const WriteRule &r) { return std::strcmp(r.name, write.node->name) == 0; });
    if (rule == std::end(writeRules)) {
        dbInfo(DbRPT, DbERR, setter, "Unknown attribute %s!", write.node->name);
        return refuse(write, DaeObjectNonExistent);
    }
    if (rule->kind != anyBlock && (rule->kind == brcbOnly) != isBuffered(rcb)) {
        return refuse(write, DaeObjectNonExistent);
    }
    if (rule->writable != nullptr && *rule->writable == 0) {
        return refuse(write, DaeObjectAccessDenied);
    }
    if (rule->onlyDisabled && rcb->RptEna == 1) {
        return refuse(write, DaeTemporarilyUnavailable);
    }
    return rule->write(rcb, write);
}

void enabledChanged(RCB *rcb, RCBStat *stat) {
    const bool enabled = rcb->RptEna != 0;
    stat->enables += enabled ? 1 : 0;
    if (isBuffered(rcb)) {
        if (enabled) {
            storeShared(rcb->SqNum, 0);
        } else {
            stat->resendPos = resendNone;
        }
        return;
    }
    endGathering(rcb);
    if (enabled) {
        storeShared(rcb->SqNum8, 0);
        stat->writeCount = 0;
        stat->sendCount = 0;
        stat->recounts++;
        stat->intgStart = tickGet();
    }
}

} // namespace

u16 optFldsMask(const RCB *rcb) {
    return isBuffered(rcb) ? brcbOptions : urcbOptions;
}

bool setRCBValues(const Data *data, GenNode *node, i8 *error, u8 clientId) {
    const RcbWrite write{data, node, error, clientId};
    char path[maxPathText];
    if (node->level != LevelLeaf) {
        getAllPath(node, path, true);
        dbInfo(DbRPT, DbERR, setter, "\"%s\" layer is invalid!", path);
        return refuse(write, DaeObjectAccessDenied);
    }
    const GenNode *block = getFCDNode(node);
    auto *rcb = static_cast<RCB *>(block == nullptr ? nullptr : nodeData(block));
    if (rcb == nullptr) {
        getAllPath(node, path, true);
        dbInfo(DbRPT, DbERR, setter, "RCB \"%s\" is not mapped!", path);
        return refuse(write, DaeObjectAccessDenied);
    }
    const RcbLock lock(rcb);
    if (rcb->clientId < clientNone && rcb->clientId != clientId) {
        dbInfo(DbRPT, DbERR, setter, "%s is used by client%d!", rcb->rcbRef, rcb->clientId);
        return refuse(write, DaeObjectAccessDenied);
    }
    const bool written = writeAttribute(rcb, write);
    updateRCBStat(rcb, rcb->pStat);
    return written;
}

void updateRCBStat(RCB *rcb, RCBStat *stat) {
    if (rcb->TrgOps != stat->lastTrgOps) {
        dsMonitorFree(&stat->monitor);
        dsMonitorInit(rcb->pDataSet, &stat->monitor);
    }
    if (rcb->IntgPd != stat->lastIntgPd || ((rcb->TrgOps ^ stat->lastTrgOps) & TrgPeriod) != 0) {
        stat->intgStart = tickGet();
    }
    if (rcb->BufTm != stat->lastBufTm) {
        stat->bufTmStart = 0;
    }
    stat->lastTrgOps = rcb->TrgOps;
    stat->lastBufTm = rcb->BufTm;
    stat->lastIntgPd = rcb->IntgPd;
    if (rcb->PurgeBuf == 1) {
        purgeEntries(rcb, stat);
        storeShared(rcb->PurgeBuf, 0);
    }
    if (rcb->RptEna != stat->lastRptEna) {
        stat->lastRptEna = rcb->RptEna;
        enabledChanged(rcb, stat);
    }
}

void releaseClientRCB(u8 slot) {
    for (u32 i = 0; i < gCBNum.rcbNum && aRCBObj != nullptr; i++) {
        RCB *rcb = &aRCBObj[i];
        const RcbLock lock(rcb);
        if (rcb->clientId != slot) {
            continue;
        }
        release(rcb, "releaseClientRCB");
        if (!isBuffered(rcb)) {
            endGathering(rcb);
        }
    }
}

} // namespace ied
