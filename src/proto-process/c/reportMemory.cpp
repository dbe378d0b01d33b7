// The division of the report memory among the blocks.
#include "DebugInfo/DebugInfo.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/sclFault.h"
#include "proto-process/c/reportModel.h"

#include <algorithm>
#include <span>

namespace ied {

namespace {

constexpr u32 urcbEntries = 5;

std::span<RCB> blocks() {
    return {aRCBObj, gCBNum.rcbNum};
}

// The BRCB with the smallest data set among those that have their least number of entries; on a tie
// the first. Null for none.
RCB *smallestWaiting() {
    RCB *smallest = nullptr;
    for (RCB &rcb : blocks()) {
        const bool waits = rcb.buffered != 0 && rcb.bufLen == externGlbCfg.minRptBufNum;
        if (waits && (smallest == nullptr || rcb.pDataSet->size < smallest->pDataSet->size)) {
            smallest = &rcb;
        }
    }
    return smallest;
}

bool sharesDataSet(const RCB &rcb, const RCB *other) {
    return rcb.buffered != 0 && rcb.pDataSet == other->pDataSet;
}

// Gives the BRCBs on the data set of `first` what they can have of the rest. Returns how many they
// are, 0 when not even one entry is left for each.
u32 deepen(const RCB *first, u64 limit, u64 *need) {
    const u32 size = first->pDataSet->size;
    dbInfo(DbRPT, DbDBG, "rptBufLenInit", "The min BRCB is: %s, data set size is %u!", first->rcbRef, size);
    const auto same = static_cast<u32>(
        std::ranges::count_if(blocks(), [first](const RCB &rcb) { return sharesDataSet(rcb, first); }));
    const u64 add = std::min<u64>((limit - *need) / same / size,
                                  u64{externGlbCfg.maxRptBufNum} - externGlbCfg.minRptBufNum);
    if (add == 0) {
        return 0;
    }
    for (RCB &rcb : blocks()) {
        if (sharesDataSet(rcb, first)) {
            rcb.bufLen += static_cast<u32>(add);
            *need += add * size;
        }
    }
    return same;
}

} // namespace

bool rptBufLenInit(u32 limitBytes) {
    constexpr const char *function = "rptBufLenInit";
    u64 need = 0;
    u64 urcbNeed = 0;
    for (RCB &rcb : blocks()) {
        rcb.bufLen = rcb.buffered != 0 ? externGlbCfg.minRptBufNum : urcbEntries;
        const u64 bytes = u64{rcb.bufLen} * rcb.pDataSet->size;
        need += bytes;
        urcbNeed += rcb.buffered != 0 ? 0 : bytes;
    }
    if (need > limitBytes) {
        faultDetail(
            0,
            "the report control blocks need %llu octets of %u: raise rptBufSpace, lower minRptBufNum, "
            "or give them fewer instances or smaller data sets",
            static_cast<unsigned long long>(need), limitBytes);
        dbInfo(DbRPT, DbPAN, function, "Mem limit(%u) for rpt buf is too small, need %u, URCB need %u!",
               limitBytes, static_cast<u32>(std::min<u64>(need, UINT32_MAX)),
               static_cast<u32>(std::min<u64>(urcbNeed, UINT32_MAX)));
    }
    const RCB *next = smallestWaiting();
    for (u32 done = 0; next != nullptr && done < gCBNum.brcbNum; next = smallestWaiting()) {
        const u32 same = deepen(next, limitBytes, &need);
        if (same == 0) {
            break;
        }
        done += same;
    }
    for (const RCB &rcb : blocks()) {
        if (rcb.buffered != 0) {
            dbInfo(DbRPT, DbINF, function, "Buf len of \"%s\" is %d!", rcb.rcbRef,
                   static_cast<int>(rcb.bufLen));
        }
    }
    dbInfo(DbRPT, DbINF, function, "Mem limit of rpt is %u, mem used is %u, mem used by URCB is %u!",
           limitBytes, static_cast<u32>(need), static_cast<u32>(urcbNeed));
    return true;
}

u32 rptMemoryLimit() {
    const u64 limit = (u64{externGlbCfg.rptBufSpace} << 20U) * (sizeof(void *) / 4);
    return static_cast<u32>(std::min<u64>(limit, UINT32_MAX));
}

} // namespace ied
