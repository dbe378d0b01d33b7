#include "platform/platform.h"
#include "platform/uninterrupted.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ied {

namespace {

int hostOpen(const char *path, int flags, unsigned mode) {
    const std::string host = hostPath(path);
    return uninterrupted([&] { return ::open(host.c_str(), flags | O_CLOEXEC, static_cast<mode_t>(mode)); });
}

long hostRead(int fd, void *buffer, std::size_t length) {
    return uninterrupted([&] { return ::read(fd, buffer, length); });
}

long hostWrite(int fd, const void *buffer, std::size_t length) {
    return uninterrupted([&] { return ::write(fd, buffer, length); });
}

i64 hostLseek(int fd, i64 offset, int whence) {
    return ::lseek(fd, offset, whence);
}

int hostClose(int fd) {
    return ::close(fd);
}

int hostIoctl(int fd, int code, i64 argument) {
    switch (code) {
    case FIOFLUSH:
        return uninterrupted([&] { return ::fsync(fd); });
    case FIOTRUNC:
        return uninterrupted([&] { return ::ftruncate(fd, argument); });
    case FIOCONTIG:
        return uninterrupted([&] { return ::fallocate(fd, FALLOC_FL_KEEP_SIZE, 0, argument); });
    default:
        errno = ENOTTY;
        return ERROR;
    }
}

int hostStat(const char *path, struct ::stat *out) {
    return ::stat(hostPath(path).c_str(), out);
}

int hostFstat(int fd, struct ::stat *out) {
    return ::fstat(fd, out);
}

int hostAccess(const char *path, int mode) {
    return ::access(hostPath(path).c_str(), mode);
}

int hostMkdir(const char *path, unsigned mode) {
    return ::mkdir(hostPath(path).c_str(), static_cast<mode_t>(mode));
}

int hostRemove(const char *path) {
    return std::remove(hostPath(path).c_str());
}

int hostRename(const char *from, const char *to) {
    return std::rename(hostPath(from).c_str(), hostPath(to).c_str());
}

} // namespace

FileOps fileOps = {hostOpen, hostRead,  hostWrite,  hostLseek, hostClose,  hostIoctl,
                   hostStat, hostFstat, hostAccess, hostMkdir, hostRemove, hostRename};

std::string hostPath(const char *devicePath) {
    return platformOptions.root + (devicePath[0] == '/' ? "" : "/") + devicePath;
}

} // namespace ied
