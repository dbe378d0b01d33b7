#include "basicInterface/memory.h"

#include "platform/platform.h"
#include "platform/shared.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ied {

u32 allocBytes;

namespace {

[[noreturn]] void endWithoutMemory() {
    std::fputs("alloc errror", stdout);
    processExit(1);
}

} // namespace

void *Malloc(std::size_t size) {
    // A block of its own for 0 octets too: no caller tests the result.
    void *block = std::calloc(1, std::max<std::size_t>(size, 1));
    if (block == nullptr) {
        std::fputs("out of memory! bye!\n", stderr);
        std::fprintf(stderr, "tried to allocate %d byes,total:%d\n", static_cast<int>(size),
                     static_cast<int>(loadShared(allocBytes)));
        endWithoutMemory();
    }
    storeShared(allocBytes, loadShared(allocBytes) + static_cast<u32>(size));
    return block;
}

void *Realloc(void *block, std::size_t size) {
    void *resized = std::realloc(block, std::max<std::size_t>(size, 1));
    if (resized == nullptr) {
        std::fputs("out of memory! bye!\n", stderr);
        std::fprintf(stderr, "tried to reallocate %d byes\n", static_cast<int>(size));
        endWithoutMemory();
    }
    return resized;
}

void Free(void *block) {
    std::free(block);
}

char *getSring(const char *text) {
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<char *>(std::memcpy(Malloc(size), text, size));
}

} // namespace ied
