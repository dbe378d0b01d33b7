#include "platform/namedMutex.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "platform/waiting.h"

#include <new>

namespace ied {

namespace {

enum class Kind : u8 {
    Mutex,
    Binary,
    ReaderWriter,
    Named,
};

} // namespace

// One record for all kinds; `condition` guards it.
struct Semaphore {
    Kind kind;
    Condition condition;
    TaskId owner;       // holder of a mutex or of the write side
    u32 depth;          // how often the owner holds it
    bool full;          // binary: may be taken
    int readers;        // reader-writer: read sides held
    int maxReaders;     // reader-writer
    NamedMutex *shared; // named: the lock itself, which guards owner and depth
    Semaphore *next;    // named: the one opened before
};

namespace {

// Named semaphores that are open, for the life of the process.
struct NamedSemaphores {
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    Semaphore *first = nullptr;
};
NamedSemaphores named;

SemId make(Kind kind) {
    auto *semaphore = new (std::nothrow) Semaphore{};
    if (semaphore == nullptr) {
        return nullptr;
    }
    semaphore->kind = kind;
    conditionInit(&semaphore->condition);
    return semaphore;
}

bool ownOrTake(Semaphore *s) {
    const TaskId task = taskIdSelf();
    if (s->owner != taskNone && s->owner != task) {
        return false;
    }
    s->owner = task;
    s->depth++;
    return true;
}

bool tryTake(Semaphore *s) {
    switch (s->kind) {
    case Kind::Mutex:
        return ownOrTake(s);
    case Kind::Binary: {
        const bool was = s->full;
        s->full = false;
        return was;
    }
    case Kind::ReaderWriter:
        return s->readers == 0 && ownOrTake(s);
    case Kind::Named:
        break;
    }
    return false;
}

bool tryRead(Semaphore *s) {
    if (s->owner != taskNone || s->readers >= s->maxReaders) {
        return false;
    }
    s->readers++;
    return true;
}

int takeBy(bool (*attempt)(Semaphore *), Semaphore *s, int ticks) {
    const ConditionLock lock(&s->condition);
    if (attempt(s)) {
        return OK;
    }
    if (ticks == NO_WAIT) {
        return ERROR;
    }
    const Deadline deadline = deadlineInTicks(ticks);
    while (conditionWait(&s->condition, deadline)) {
        if (attempt(s)) {
            return OK;
        }
    }
    return attempt(s) ? OK : ERROR;
}

int takeNamed(Semaphore *s, int ticks) {
    if (!namedMutexTake(s->shared, ticks)) {
        return ERROR;
    }
    storeShared(s->owner, taskIdSelf());
    s->depth++;
    return OK;
}

int giveNamed(Semaphore *s) {
    if (loadShared(s->owner) != taskIdSelf()) {
        return ERROR;
    }
    if (--s->depth == 0) {
        storeShared(s->owner, taskNone);
    }
    return namedMutexGive(s->shared) ? OK : ERROR;
}

bool giveOwned(Semaphore *s) {
    if (s->owner != taskIdSelf()) {
        return false;
    }
    if (--s->depth == 0) {
        s->owner = taskNone;
    }
    return true;
}

bool release(Semaphore *s) {
    switch (s->kind) {
    case Kind::Mutex:
        return giveOwned(s);
    case Kind::Binary:
        s->full = true;
        return true;
    case Kind::ReaderWriter:
        if (s->readers > 0) {
            s->readers--;
            return true;
        }
        return giveOwned(s);
    case Kind::Named:
        break;
    }
    return false;
}

} // namespace

SemId semMCreate(u32 /*options*/) {
    return make(Kind::Mutex);
}

SemId semBCreate(u32 /*options*/, int initialState) {
    SemId semaphore = make(Kind::Binary);
    if (semaphore != nullptr) {
        semaphore->full = initialState != semEmpty;
    }
    return semaphore;
}

SemId semRWCreate(u32 /*options*/, int maxReaders) {
    SemId semaphore = make(Kind::ReaderWriter);
    if (semaphore != nullptr) {
        semaphore->maxReaders = maxReaders;
    }
    return semaphore;
}

SemId semOpen(const char *name, int type, int /*initialState*/, u32 /*options*/, u32 /*mode*/) {
    NamedMutex *shared = type == semTypeMutex ? namedMutexOpen(name) : nullptr;
    if (shared == nullptr) {
        return nullptr;
    }
    pthread_mutex_lock(&named.lock);
    SemId semaphore = named.first;
    while (semaphore != nullptr && semaphore->shared != shared) {
        semaphore = semaphore->next;
    }
    if (semaphore == nullptr && (semaphore = make(Kind::Named)) != nullptr) {
        semaphore->shared = shared;
        semaphore->next = named.first;
        named.first = semaphore;
    }
    pthread_mutex_unlock(&named.lock);
    return semaphore;
}

int semTake(SemId semaphore, int ticks) {
    if (semaphore == nullptr) {
        return ERROR;
    }
    if (semaphore->kind == Kind::Named) {
        return takeNamed(semaphore, ticks);
    }
    return takeBy(tryTake, semaphore, ticks);
}

int semRTake(SemId semaphore, int ticks) {
    if (semaphore == nullptr || semaphore->kind != Kind::ReaderWriter) {
        return ERROR;
    }
    return takeBy(tryRead, semaphore, ticks);
}

int semWTake(SemId semaphore, int ticks) {
    if (semaphore == nullptr || semaphore->kind != Kind::ReaderWriter) {
        return ERROR;
    }
    return takeBy(tryTake, semaphore, ticks);
}

int semGive(SemId semaphore) {
    if (semaphore == nullptr) {
        return ERROR;
    }
    if (semaphore->kind == Kind::Named) {
        return giveNamed(semaphore);
    }
    const ConditionLock lock(&semaphore->condition);
    if (!release(semaphore)) {
        return ERROR;
    }
    // Readers and a writer may wait for the same give; whom it does not suit waits on.
    if (semaphore->kind == Kind::ReaderWriter) {
        pthread_cond_broadcast(&semaphore->condition.changed);
    } else {
        pthread_cond_signal(&semaphore->condition.changed);
    }
    return OK;
}

void semDelete(SemId semaphore) {
    if (semaphore != nullptr && semaphore->kind != Kind::Named) {
        conditionDestroy(&semaphore->condition);
        delete semaphore;
    }
}

} // namespace ied
