#include "basicInterface/memoryPool.h"

#include "basicInterface/memory.h"

#include <cstdio>

namespace ied {

u8 isWordAlign = 1;

void *mpAlloc(u32 size, MemoryPool *pool) {
    pool->base = static_cast<u8 *>(Malloc(size));
    pool->size = size;
    pool->used = 0;
    return pool->base;
}

void mpFree(MemoryPool *pool) {
    Free(pool->base);
    *pool = {};
}

void *allocInMp(u32 size, MemoryPool *pool) {
    if (u64{pool->used} + size > pool->size) {
        std::fputs("There's no space in the memory pool!\r\n", stderr);
        throw PoolFull{};
    }
    void *block = pool->base + pool->used;
    pool->used += isWordAlign != 0 ? roundToWord(size) : size;
    return block;
}

u32 roundToWord(u32 size) {
    constexpr u32 word = sizeof(void *);
    return (size + word - 1) / word * word;
}

} // namespace ied
