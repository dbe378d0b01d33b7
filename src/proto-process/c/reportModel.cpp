#include "proto-process/c/reportModel.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "basicInterface/memory.h"
#include "basicInterface/sharedText.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/sclFault.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportEncode.h"

#include <algorithm>
#include <cstring>

namespace ied {

RCB *aRCBObj;
RCBStat *aRCBStat;

namespace {

constexpr u32 lockOptions = semQPriority | semDeleteSafe | semInversionSafe;

// Copies a text into an array of characters, cut to what it holds.
template <std::size_t n> void copyText(char (&target)[n], const char *text) {
    const std::size_t length = text == nullptr ? 0 : std::min(std::strlen(text), n - 1);
    std::memcpy(target, text == nullptr ? "" : text, length);
    target[length] = '\0';
}

// The device named by the text of a reference before its "/".
GenNode *deviceOf(const char *reference) {
    char name[66] = {};
    const std::size_t length = std::strcspn(reference, "/");
    GenNode *ld = nullptr;
    if (length >= sizeof name) {
        return nullptr;
    }
    std::memcpy(name, reference, length);
    return searchLdByStr(name, &ld) ? ld : nullptr;
}

// One attribute of a block and its field.
struct RcbAttribute {
    const char *name;
    void *(*field)(RCB *rcb);
};
constexpr RcbAttribute attributes[] = {
    {"RptID", [](RCB *rcb) -> void * { return rcb->RptID; }},
    {"RptEna", [](RCB *rcb) -> void * { return &rcb->RptEna; }},
    {"Resv", [](RCB *rcb) -> void * { return &rcb->Resv; }},
    {"DatSet", [](RCB *rcb) -> void * { return rcb->DatSet; }},
    {"ConfRev", [](RCB *rcb) -> void * { return &rcb->ConfRev; }},
    {"OptFlds", [](RCB *rcb) -> void * { return &rcb->OptFlds; }},
    {"BufTm", [](RCB *rcb) -> void * { return &rcb->BufTm; }},
    {"SqNum",
     [](RCB *rcb) {
         return rcb->buffered != 0 ? static_cast<void *>(&rcb->SqNum) : static_cast<void *>(&rcb->SqNum8);
     }},
    {"TrgOps", [](RCB *rcb) -> void * { return &rcb->TrgOps; }},
    {"IntgPd", [](RCB *rcb) -> void * { return &rcb->IntgPd; }},
    {"GI", [](RCB *rcb) -> void * { return &rcb->GI; }},
    {"PurgeBuf", [](RCB *rcb) -> void * { return &rcb->PurgeBuf; }},
    {"EntryID", [](RCB *rcb) -> void * { return rcb->EntryID; }},
    {"TimeOfEntry", [](RCB *rcb) -> void * { return &rcb->TimeOfEntry; }},
};

// Makes record number `index` from its entry; false, after a message where there is one, on a fault.
bool initBlock(u32 index, const ReportCfg *entry) {
    constexpr const char *function = "rptModelInit";
    if (index >= gCBNum.rcbNum) {
        dbInfo(DbRPT, DbPAN, function, "gCBNum.rcbNum(%x) error!", gCBNum.rcbNum);
    }
    RCB *rcb = &aRCBObj[index];
    if (!rcbCfgInit(rcb, entry)) {
        dbInfo(DbRPT, DbERR, function, "Fail to init config of RCB: %s!", shownText(entry->name));
        return false;
    }
    GenNode *node = nullptr;
    if (!searchNodeByFullStr(entry->name, &node) || node->child == nullptr) {
        faultDetail(entry->line, "ReportControl \"%.100s\": the model has no node for it", entry->name);
        return false;
    }
    mapRCB2Model(rcb, node);
    rcb->pStat = &aRCBStat[index];
    return true;
}

} // namespace

RcbLock::RcbLock(const RCB *rcb) : sem_(rcb->pStat->sem) {
    semTake(sem_, WAIT_FOREVER);
}

RcbLock::~RcbLock() {
    semGive(sem_);
}

bool rcbCfgInit(RCB *rcb, const ReportCfg *cfgEntry) {
    constexpr const char *function = "rcbCfgInit";
    *rcb = {};
    rcb->buffered = cfgEntry->buffered;
    copyText(rcb->RptID, cfgEntry->rtpID);
    if (cfgEntry->dsName == nullptr || !searchDsByStr(cfgEntry->dsName, &rcb->pDataSet)) {
        faultDetail(cfgEntry->line,
                    "ReportControl \"%.100s\": the device has no DataSet \"%.100s\"; add it there or change "
                    "datSet",
                    shownText(cfgEntry->name), shownText(cfgEntry->dsName));
        dbInfo(DbRPT, DbPAN, function, "The data set of \"%s\" is not exist!", shownText(cfgEntry->name));
    }
    copyText(rcb->DatSet, cfgEntry->dsName);
    rcb->IntgPd = cfgEntry->intgPd;
    if (rcb->IntgPd != 0 && rcb->IntgPd < externGlbCfg.minIntgPd) {
        dbInfo(DbRPT, DbERR, function, "IntgPd of \"%s\" is smaller than %d!", cfgEntry->name,
               static_cast<int>(externGlbCfg.minIntgPd));
        rcb->IntgPd = externGlbCfg.minIntgPd;
    }
    rcb->ConfRev = std::max<u32>(cfgEntry->confRev, 1);
    rcb->BufTm = cfgEntry->bufTm;
    rcb->TrgOps = cfgEntry->trgOps;
    rcb->OptFlds = cfgEntry->optFlds & optFldsMask(rcb);
    copyText(rcb->rcbRef, cfgEntry->name);
    rcb->pLd = deviceOf(rcb->rcbRef);
    if (rcb->pLd == nullptr) {
        dbInfo(DbRPT, DbERR, function, "Can't find logic device \"%.*s\"!",
               static_cast<int>(std::strcspn(rcb->rcbRef, "/")), rcb->rcbRef);
        return false;
    }
    rcb->clientId = clientNone;
    return true;
}

void mapRCB2Model(RCB *rcb, GenNode *rcbNode) {
    publish(rcbNode->data, static_cast<void *>(rcb));
    rcbNode->nodeType = CdcRCB;
    for (GenNode *child = rcbNode->child; child != nullptr; child = child->sibling) {
        const auto *row = std::ranges::find_if(
            attributes, [child](const RcbAttribute &a) { return std::strcmp(a.name, child->name) == 0; });
        if (row == std::end(attributes)) {
            dbInfo(DbRPT, DbERR, "mapRCB2Model", "Unkonwn attribute \"%s\"!", child->name);
            continue;
        }
        publish(child->data, row->field(rcb));
        if (std::strcmp(child->name, "SqNum") == 0) {
            child->nodeType = rcb->buffered != 0 ? TypeInt16U : TypeInt8U;
        }
    }
}

bool rcbStatInit(RCBStat *stat, RCB *rcb) {
    *stat = {};
    stat->sem = semMCreate(lockOptions);
    if (stat->sem == nullptr) {
        dbInfo(DbRPT, DbERR, "rcbStatInit", "Fail to create the lock of RCB: %s!", rcb->rcbRef);
        return false;
    }
    stat->lastRptEna = rcb->RptEna;
    stat->lastTrgOps = rcb->TrgOps;
    stat->lastBufTm = rcb->BufTm;
    stat->lastIntgPd = rcb->IntgPd;
    stat->resendPos = resendNone;
    stat->bufLen = rcb->bufLen;
    if (!dsMonitorInit(rcb->pDataSet, &stat->monitor)) {
        dbInfo(DbRPT, DbERR, "rcbStatInit", "Fail to init data set monitor of RCB: %s!", rcb->rcbRef);
        return false;
    }
    if (!rptDataBufInit(rcb)) {
        dbInfo(DbRPT, DbERR, "rcbStatInit", "Fail to alloc memory for RCB: %s!", rcb->rcbRef);
        return false;
    }
    return true;
}

bool rptModelInit() {
    if (externGlbCfg.maxRptBufNum < externGlbCfg.minRptBufNum) {
        dbInfo(DbRPT, DbPAN, "rptModelInit",
               "src/proto-process/c/reportModel:1321 RPT_MAX_BUFLEN >= RPT_MIN_BUFLEN");
    }
    if (gCBNum.rcbNum == 0) {
        return true;
    }
    aRCBObj = MallocArray<RCB>(gCBNum.rcbNum);
    aRCBStat = MallocArray<RCBStat>(gCBNum.rcbNum);
    u32 index = 0;
    for (const ReportCfg &entry : records<&ReportCfg::link>(ReportCfgHead)) {
        if (!initBlock(index++, &entry)) {
            return false;
        }
    }
    if (!rptBufLenInit(rptMemoryLimit())) {
        return false;
    }
    for (u32 i = 0; i < gCBNum.rcbNum; i++) {
        if (!rcbStatInit(&aRCBStat[i], &aRCBObj[i])) {
            return false;
        }
    }
    nameOversizedBlocks();
    return true;
}

} // namespace ied
