#include "platform/platform.h"
#include "platform/sharedObject.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ied {

namespace {

// The other side may have made the object by any means and at any size: it grows to what is
// needed and never shrinks, and its new octets are zero and take no memory.
bool growTo(int fd, u32 size) {
    struct stat info {};
    return fstat(fd, &info) == 0 && (info.st_size >= size || ftruncate(fd, size) == 0);
}

} // namespace

void *sdOpen(const char *name, int /*options*/, u32 /*mode*/, u32 size, u64 /*physicalAddress*/,
             u32 /*attributes*/) {
    const std::string shared = sharedName(name);
    constexpr int attempts = 100; // a sweep may take the object away between opening and joining
    for (int i = 0; i < attempts; i++) {
        const int fd = sharedFileOpen(shared);
        if (fd < 0) {
            return nullptr;
        }
        if (!sharedFileJoin(fd)) {
            close(fd);
            continue;
        }
        void *base =
            growTo(fd, size) ? mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0) : MAP_FAILED;
        if (base == MAP_FAILED) {
            close(fd);
            return nullptr;
        }
        return base; // the descriptor stays open: it holds the file lock that tells a sweep of this user
    }
    return nullptr;
}

} // namespace ied
