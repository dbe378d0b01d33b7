// The checked heap of the whole system: zero-filled blocks, and the end of the process when there
// are none left, so that no caller tests a result.
#pragma once

#include "platform/types.h"

namespace ied {

// Bytes handed out by Malloc since start; never lowered. A statistic.
extern u32 allocBytes;

// A zeroed block of `size` bytes, owned by the caller, given back by Free. Never null: without
// memory the process ends with status 1 and a message on the standard error stream.
void *Malloc(std::size_t size);
// A block of `size` bytes that begins with the content of `block`. Never null. The part that is
// new is not zeroed.
void *Realloc(void *block, std::size_t size);
// Gives a block back; does nothing for null.
void Free(void *block);

// A private copy of `text`, owned by the caller.
char *getSring(const char *text);

// One zeroed T from the heap.
template <class T> T *MallocOf() {
    return static_cast<T *>(Malloc(sizeof(T)));
}
// `count` zeroed T from the heap.
template <class T> T *MallocArray(std::size_t count) {
    return static_cast<T *>(Malloc(sizeof(T) * count));
}

} // namespace ied
