// Objects in the host's shared memory whose first user, whoever that is, lays them out, and that
// outlive any of their users: the record of a mutex, the ring of a queue, the region.
//
// Every user holds the shared side of the file lock of the object for as long as it lives; the
// kernel lets go of it when the process dies. Who gets the exclusive side is alone with the object:
// it may lay it out, or sweep it away.
#pragma once

#include "platform/types.h"

#include <pthread.h>
#include <string>

namespace ied {

// Head of an object that its first user lays out.
struct SharedHead {
    u32 magic;            // sharedMagic
    u32 kind;             // SharedKind
    u32 ready;            // 1 once laid out; published
    u32 size;             // octets of the whole object
    pthread_mutex_t lock; // robust, recursive, shared between processes
};

inline constexpr u32 sharedMagic = 0x4945444F;

enum SharedKind : u32 {
    SharedMutex = 1,
    SharedQueue = 2,
};

// Lays out the rest of an object of `head->size` octets behind its head; `context` is the caller's.
using SharedLayout = void (*)(SharedHead *head, const void *context);

// Opens the object `name` of this instance, or makes it with `size` octets; lays it out where
// nobody has. A user that died half way through the layout is followed by one that does it again.
// Returns its mapping, which stays for the life of the process (the same one for each opening), or
// null: no rights, no space, another kind of object under that name.
SharedHead *sharedObjectOpen(const char *name, SharedKind kind, u32 size, SharedLayout layout,
                             const void *context);

// Takes the object's lock, recovered from a dead holder, which `recovered` (may be null) tells. A
// `ticks` of WAIT_FOREVER, NO_WAIT or a time-out. False when it is not had in time.
bool sharedLockTake(SharedHead *head, int ticks, bool *recovered);
bool sharedLockGive(SharedHead *head);

// Descriptor of the object `name` (as sharedName gives it), made when it does not exist. Never
// fails because of a race with another who makes or removes it. -1 with errno on failure.
int sharedFileOpen(const std::string &name);
// Holds the shared side of the file lock of `fd`. False if the object was removed meanwhile.
bool sharedFileJoin(int fd);

} // namespace ied
