#include "platform/platform.h"
#include "platform/shared.h"

#include <cerrno>
#include <cstring>

namespace ied {

namespace {

constexpr const char *clockDeviceName = "/unix";
constexpr int clockDeviceFd = 0x7FFF0001; // out of the host's reach

} // namespace

int clockDeviceOpen(const char *name) {
    if (std::strcmp(name, clockDeviceName) != 0) {
        errno = ENODEV;
        return ERROR;
    }
    return clockDeviceFd;
}

int clockDeviceRead(int fd, TimeStamp *out) {
    if (fd != clockDeviceFd) {
        errno = EBADF;
        return ERROR;
    }
    loadShared(clockOps.realTime)(out);
    return OK;
}

} // namespace ied
