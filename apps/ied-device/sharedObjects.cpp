#include "device/peerInterface.h"
#include "ied-device/instrument.h"

namespace ied::instrument {

const char *openSharedObjects(SharedObjects *shared) {
    shared->commands = peer::openCommandQueue();
    if (shared->commands == nullptr) {
        return "command queue";
    }
    shared->watchdog = peer::openWatchdogQueue();
    if (shared->watchdog == nullptr) {
        return "watchdog queue";
    }
    shared->mutex = peer::openMutex();
    if (shared->mutex == nullptr) {
        return "mutex";
    }
    shared->region.base = peer::openRegion();
    return shared->region.base == nullptr ? "region" : nullptr;
}

TimeStamp instrumentTime() {
    TimeStamp now{};
    clockDeviceRead(clockDeviceOpen(peer::clockName), &now);
    return now;
}

} // namespace ied::instrument
