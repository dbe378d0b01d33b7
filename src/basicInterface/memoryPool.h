// Fixed memory pools: carved from one block, given back, if at all, in one piece. A pool is used
// by one task at a time.
#pragma once

#include "platform/types.h"

namespace ied {

struct MemoryPool {
    u8 *base;
    u32 size; // bytes of the block
    u32 used; // bytes handed out; may exceed size by the rounding of the last allocation
};

// Thrown by allocInMp when a pool is full. Caught by the user of that pool and nowhere else.
struct PoolFull {};

// Non-zero: each allocation is rounded up to the host's word, so that the next one is aligned.
extern u8 isWordAlign;

// Makes the pool's zeroed block of `size` bytes; returns it.
void *mpAlloc(u32 size, MemoryPool *pool);
// Gives the block back and empties the record.
void mpFree(MemoryPool *pool);
// `size` zeroed bytes of the pool. Throws PoolFull, after one line on the standard error stream,
// when they do not fit.
void *allocInMp(u32 size, MemoryPool *pool);

// One zeroed T of the pool.
template <class T> T *allocInMpOf(MemoryPool *pool) {
    return static_cast<T *>(allocInMp(static_cast<u32>(sizeof(T)), pool));
}
// `count` zeroed T of the pool; more than 32 bits of octets do not fit any.
template <class T> T *allocInMpArray(MemoryPool *pool, u32 count) {
    const u64 size = u64{sizeof(T)} * count;
    return static_cast<T *>(allocInMp(size > UINT32_MAX ? UINT32_MAX : static_cast<u32>(size), pool));
}

// `size` rounded up to the word that pools align to.
u32 roundToWord(u32 size);

} // namespace ied
