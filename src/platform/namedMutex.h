// A mutex that processes share by name: recursive, and recovered when its holder dies.
#pragma once

#include "platform/types.h"

namespace ied {

struct NamedMutex;

// Opens the mutex `name` of this instance, or makes it free. The same handle for every opening of
// one object in this process; it lives as long as the process. Null on failure.
NamedMutex *namedMutexOpen(const char *name);
// Takes it within `ticks`; what a dead process held is taken over. False when the time is up.
bool namedMutexTake(NamedMutex *mutex, int ticks);
// False when the calling task does not hold it.
bool namedMutexGive(NamedMutex *mutex);

} // namespace ied
