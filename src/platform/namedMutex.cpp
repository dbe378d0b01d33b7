#include "platform/namedMutex.h"

#include "platform/platform.h"
#include "platform/sharedObject.h"

namespace ied {

// The head's own lock is all that a named mutex is.
struct NamedMutex {
    SharedHead head;
};

NamedMutex *namedMutexOpen(const char *name) {
    const auto nothingMore = [](SharedHead *, const void *) {};
    SharedHead *head = sharedObjectOpen(name, SharedMutex, sizeof(NamedMutex), nothingMore, nullptr);
    return reinterpret_cast<NamedMutex *>(head);
}

bool namedMutexTake(NamedMutex *mutex, int ticks) {
    return sharedLockTake(&mutex->head, ticks, nullptr);
}

bool namedMutexGive(NamedMutex *mutex) {
    return sharedLockGive(&mutex->head);
}

} // namespace ied
