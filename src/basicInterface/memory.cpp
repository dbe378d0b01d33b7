#include "basicInterface/memory.h"

#include "platform/platform.h"
#include "platform/shared.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace ied {

u32 allocBytes;

namespace {

[[noreturn]] void endWithoutMemory() {
    std::fputs("alloc errror", stdout);
    processExit(1);
}

thread_local Arena *taskArena; // of the ArenaScope that lives, or null

// A zeroed block of the task's arena; null where there is none or no room.
void *fromArena(std::size_t size) {
    constexpr std::size_t unit = alignof(std::max_align_t);
    Arena *arena = taskArena;
    if (arena == nullptr) {
        return nullptr;
    }
    if (size > arena->size - arena->used) {
        arena->full = true;
        return nullptr;
    }
    void *block = arena->base + arena->used;
    arena->used = std::min(arena->used + std::max(size + unit - 1, unit) / unit * unit, arena->size);
    return block;
}

bool isOfArena(const void *block) {
    const Arena *arena = taskArena;
    const auto *place = static_cast<const u8 *>(block);
    return arena != nullptr && std::greater_equal<>()(place, arena->base) &&
           std::less<>()(place, arena->base + arena->size);
}

} // namespace

void *Malloc(std::size_t size) {
    if (void *block = fromArena(size)) {
        return block;
    }
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
    if (isOfArena(block)) {
        std::fputs("a block of an arena cannot be resized\n", stderr);
        processExit(1);
    }
    void *resized = std::realloc(block, std::max<std::size_t>(size, 1));
    if (resized == nullptr) {
        std::fputs("out of memory! bye!\n", stderr);
        std::fprintf(stderr, "tried to reallocate %d byes\n", static_cast<int>(size));
        endWithoutMemory();
    }
    return resized;
}

void Free(void *block) {
    if (!isOfArena(block)) {
        std::free(block);
    }
}

void arenaInit(Arena *arena, std::size_t size) {
    *arena = {static_cast<u8 *>(Malloc(size)), size, 0, false};
}

ArenaScope::ArenaScope(Arena *arena) {
    taskArena = arena;
}

ArenaScope::~ArenaScope() {
    std::memset(taskArena->base, 0, taskArena->used);
    taskArena->used = 0;
    taskArena->full = false;
    taskArena = nullptr;
}

char *getSring(const char *text) {
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<char *>(std::memcpy(Malloc(size), text, size));
}

} // namespace ied
