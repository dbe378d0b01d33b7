#include "ied-device/instrument.h"

namespace ied::instrument {

const char *openSharedObjects(SharedObjects *shared) {
    constexpr u32 createMode = 0x10000000;
    constexpr u32 sharedMode = 0x50000000;
    shared->commands = msgQOpen("/msgqDataManager", 80, 20, 0, createMode, 0);
    if (shared->commands == nullptr) {
        return "command queue";
    }
    shared->watchdog = msgQOpen("/wdtMsgQ", 100, 52, 0, sharedMode, 0);
    if (shared->watchdog == nullptr) {
        return "watchdog queue";
    }
    shared->mutex = semOpen("/mutexCommomData", semTypeMutex, semFull, semQPriority, sharedMode);
    if (shared->mutex == nullptr) {
        return "mutex";
    }
    shared->region.base = static_cast<u8 *>(sdOpen("/sd_commdata", 1, createMode, regionSize, 0, 219));
    return shared->region.base == nullptr ? "region" : nullptr;
}

TimeStamp instrumentTime() {
    TimeStamp now{};
    clockDeviceRead(clockDeviceOpen("/unix"), &now);
    return now;
}

} // namespace ied::instrument
