#include "platform/sharedObject.h"

#include "platform/platform.h"
#include "platform/shared.h"
#include "platform/uninterrupted.h"
#include "platform/waiting.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ied {

namespace {

// Objects that this process has open, never given back.
struct OpenObject {
    OpenObject *next;
    dev_t device;
    ino_t inode;
    SharedHead *head;
};

struct OpenObjects {
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    OpenObject *first = nullptr;
};
OpenObjects openObjects;

constexpr int attempts = 200; // a race lost that often is no race
constexpr u64 retryNs = 5'000'000;

void pauseBriefly() {
    const timespec pause{0, retryNs};
    nanosleep(&pause, nullptr);
}

bool isRemoved(int fd) {
    struct stat info {};
    return fstat(fd, &info) != 0 || info.st_nlink == 0;
}

// Whether nobody else uses the object: then the exclusive side of its file lock is this process's.
bool isAlone(int fd) {
    return flock(fd, LOCK_EX | LOCK_NB) == 0;
}

void lockInit(pthread_mutex_t *lock) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(lock, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

SharedHead *mapObject(int fd, std::size_t size) {
    void *base = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    return base == MAP_FAILED ? nullptr : static_cast<SharedHead *>(base);
}

std::size_t sizeOf(int fd) {
    struct stat info {};
    return fstat(fd, &info) == 0 ? static_cast<std::size_t>(info.st_size) : 0;
}

struct Wanted {
    SharedKind kind;
    u32 size;
    SharedLayout layout;
    const void *context;
};

bool isLaidOut(const SharedHead *head, const Wanted &wanted, std::size_t size) {
    return loadPublished(head->ready) == 1 && head->magic == sharedMagic && head->kind == wanted.kind &&
           head->size == size;
}

// What the last users left is kept when it is whole; their lock is not, for one of them may have
// died in it, and nobody else can hold it.
bool layOutAlone(int fd, const Wanted &wanted) {
    std::size_t size = sizeOf(fd);
    if (size >= sizeof(SharedHead)) {
        SharedHead *head = mapObject(fd, size);
        const bool whole = head != nullptr && isLaidOut(head, wanted, size);
        if (whole) {
            lockInit(&head->lock);
        }
        const bool another = head != nullptr && head->magic != 0 && head->magic != sharedMagic;
        if (head != nullptr) {
            munmap(head, size);
        }
        if (whole || another) {
            return whole;
        }
    }
    // The space is taken now, so that a full host is an error here and no signal later.
    if (ftruncate(fd, 0) != 0 || posix_fallocate(fd, 0, wanted.size) != 0) {
        return false;
    }
    SharedHead *head = mapObject(fd, wanted.size);
    if (head == nullptr) {
        return false;
    }
    head->magic = sharedMagic;
    head->kind = wanted.kind;
    head->size = wanted.size;
    lockInit(&head->lock);
    wanted.layout(head, wanted.context);
    publish(head->ready, 1U);
    munmap(head, wanted.size);
    return true;
}

SharedHead *findOpen(int fd) {
    struct stat info {};
    if (fstat(fd, &info) != 0) {
        return nullptr;
    }
    for (OpenObject *o = openObjects.first; o != nullptr; o = o->next) {
        if (o->device == info.st_dev && o->inode == info.st_ino) {
            return o->head;
        }
    }
    return nullptr;
}

SharedHead *remember(int fd, SharedHead *head) {
    struct stat info {};
    fstat(fd, &info);
    openObjects.first = new OpenObject{openObjects.first, info.st_dev, info.st_ino, head};
    return head;
}

enum class Outcome : u8 {
    Done,
    Again,
    Failed,
};

// One attempt to join the users of `fd`, with this process's list locked.
Outcome join(int fd, const Wanted &wanted, SharedHead **head) {
    *head = findOpen(fd);
    if (*head != nullptr) {
        close(fd); // the lock of the first opening stands
        const bool another = (*head)->kind != wanted.kind;
        *head = another ? nullptr : *head;
        return another ? Outcome::Failed : Outcome::Done;
    }
    if (isAlone(fd) && !isRemoved(fd) && !layOutAlone(fd, wanted)) {
        close(fd);
        return Outcome::Failed;
    }
    if (!sharedFileJoin(fd)) {
        close(fd);
        return Outcome::Again;
    }
    const std::size_t size = sizeOf(fd);
    SharedHead *mapped = size >= sizeof(SharedHead) ? mapObject(fd, size) : nullptr;
    if (mapped != nullptr && isLaidOut(mapped, wanted, size)) {
        *head = remember(fd, mapped); // the descriptor stays open: it holds the file lock
        return Outcome::Done;
    }
    const bool another = mapped != nullptr && loadPublished(mapped->ready) == 1;
    if (mapped != nullptr) {
        munmap(mapped, size);
    }
    close(fd);
    return another ? Outcome::Failed : Outcome::Again;
}

} // namespace

std::string sharedName(const char *name) {
    return platformOptions.instance.empty() ? std::string(name)
                                            : std::string(name) + "." + platformOptions.instance;
}

int sharedFileOpen(const std::string &name) {
    // Without O_CREAT first: hosts with protected_regular refuse it for an object of another user.
    for (int i = 0; i < attempts; i++) {
        int fd = shm_open(name.c_str(), O_RDWR | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != ENOENT) {
            return fd;
        }
        fd = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) {
            return fd;
        }
    }
    return -1;
}

bool sharedFileJoin(int fd) {
    return uninterrupted([fd] { return flock(fd, LOCK_SH); }) == 0 && !isRemoved(fd);
}

SharedHead *sharedObjectOpen(const char *name, SharedKind kind, u32 size, SharedLayout layout,
                             const void *context) {
    const std::string shared = sharedName(name);
    const Wanted wanted{kind, size, layout, context};
    pthread_mutex_lock(&openObjects.lock);
    SharedHead *head = nullptr;
    Outcome outcome = Outcome::Again;
    for (int i = 0; i < attempts && outcome == Outcome::Again; i++) {
        if (i > 0) {
            pauseBriefly();
        }
        const int fd = sharedFileOpen(shared);
        outcome = fd < 0 ? Outcome::Failed : join(fd, wanted, &head);
    }
    pthread_mutex_unlock(&openObjects.lock);
    return head;
}

bool sharedLockTake(SharedHead *head, int ticks, bool *recovered) {
    int result = pthread_mutex_trylock(&head->lock);
    if (result == EBUSY && ticks == WAIT_FOREVER) {
        result = pthread_mutex_lock(&head->lock);
    } else if (result == EBUSY && ticks > 0) {
        // The timed forms go by a clock that can be set, or are unknown to the thread checker.
        const Deadline deadline = deadlineInTicks(ticks);
        const timespec moment{0, 500'000};
        while (result == EBUSY && !isPast(deadline)) {
            nanosleep(&moment, nullptr);
            result = pthread_mutex_trylock(&head->lock);
            if (result == EBUSY) {
                passSlice(deadline);
            }
        }
    }
    const bool dead = result == EOWNERDEAD;
    if (dead) {
        pthread_mutex_consistent(&head->lock);
    }
    if (recovered != nullptr) {
        *recovered = dead;
    }
    return result == 0 || dead;
}

bool sharedLockGive(SharedHead *head) {
    return pthread_mutex_unlock(&head->lock) == 0;
}

} // namespace ied
