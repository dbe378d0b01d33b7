#include "basicInterface/clock.h"

#include "DebugInfo/DebugInfo.h"
#include "platform/platform.h"

namespace ied {

int fdRtc = -1;

void getTimeStamp(TimeStamp *out) {
    if (clockDeviceRead(fdRtc, out) == OK) {
        return;
    }
    dbInfo(DbOTH, DbERR, "getTimeStamp", "Failed to get time! init it by 0");
    *out = {};
}

bool isTimeOut(u32 startTick, u32 ms) {
    const u32 now = tickGet();
    const u32 elapsed = now >= startTick ? now - startTick : now + (~u32{0} - startTick); // wrapped
    return u64{elapsed} * 1000 / sysClkRateGet() >= ms;
}

bool timeStampCmp(const TimeStamp *a, const TimeStamp *b, int *result) {
    if (a == nullptr || b == nullptr) {
        return false;
    }
    const auto order = [](u32 x, u32 y) { return x < y ? -1 : static_cast<int>(x > y); };
    *result = a->sec != b->sec ? order(a->sec, b->sec) : order(a->ms, b->ms);
    return true;
}

} // namespace ied
