// The checked heap of the whole system: zero-filled blocks, and the end of the process when there
// are none left, so that no caller tests a result.
#pragma once

#include "platform/types.h"

namespace ied {

// Bytes that Malloc took from the heap since start; never lowered. A statistic.
extern u32 allocBytes;

// A zeroed block of `size` bytes, owned by the caller, given back by Free. Never null: without
// memory the process ends with status 1 and a message on the standard error stream.
void *Malloc(std::size_t size);
// A block of `size` bytes that begins with the content of `block`, which is no block of an arena. Never
// null. The part that is new is not zeroed.
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

// A block that everything is taken from which a task makes for one short purpose, such as a report: a
// Malloc is then a step of a pointer, and all of it is given back at once.
struct Arena {
    u8 *base; // zeroed from `used` on
    std::size_t size;
    std::size_t used;
    bool full; // something did not fit and came from the heap
};
// Takes `size` zeroed octets for it from the heap; `base` is given back by Free.
void arenaInit(Arena *arena, std::size_t size);

// While it lives, Malloc of this task takes from the arena as long as that has room, and Free of what
// came from it does nothing. Nothing made meanwhile may outlive it but what came from the heap. Not to
// be nested.
class ArenaScope {
  public:
    explicit ArenaScope(Arena *arena);
    ~ArenaScope();
    ArenaScope(const ArenaScope &) = delete;
    ArenaScope &operator=(const ArenaScope &) = delete;
};

} // namespace ied
