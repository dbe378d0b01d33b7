#include "basicInterface/clock.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/nodeTree.h"
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

} // namespace ied
