#include "platform/messageRing.h"

#include "platform/hostTime.h"
#include "platform/platform.h"
#include "platform/shared.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ied {

namespace {

u64 slotSize(u64 maxLength) {
    return (sizeof(u32) + maxLength + 3) / 4 * 4;
}

u8 *slotAt(MessageRing *ring, u32 count) {
    u8 *slots = reinterpret_cast<u8 *>(ring + 1);
    return slots + slotSize(ring->maxLength) * (count % ring->maxMessages);
}

// A count and the next one. Counts run round at twice the slots: a full ring and an empty one differ.
u32 nextCount(const MessageRing *ring, u32 count) {
    return (count + 1) % (2 * ring->maxMessages);
}

u32 heldIn(const MessageRing *ring) {
    return (ring->sent + 2 * ring->maxMessages - ring->taken) % (2 * ring->maxMessages);
}

bool countsAreSound(const MessageRing *ring) {
    const u32 end = 2 * ring->maxMessages;
    return ring->sent < end && ring->taken < end && heldIn(ring) <= ring->maxMessages;
}

// How long the lock is waited for. A peer holds it for the copy of a record; one that was stopped
// in the middle of it must not stop this process too.
int lockTicks() {
    return static_cast<int>(sysClkRateGet()) / 10 + 1;
}

// Holds the ring's lock for a scope, if it can be had, and empties a ring that a dead process left
// in no sound state.
struct RingLock {
    explicit RingLock(MessageRing *r) : ring(r) {
        bool recovered = false;
        held = sharedLockTake(&ring->head, lockTicks(), &recovered);
        if (held && recovered && !countsAreSound(ring)) {
            publish(ring->taken, 0U);
            publish(ring->sent, 0U);
        }
    }
    ~RingLock() {
        if (held) {
            sharedLockGive(&ring->head);
        }
    }
    RingLock(const RingLock &) = delete;
    RingLock &operator=(const RingLock &) = delete;
    MessageRing *ring;
    bool held;
};

} // namespace

u32 ringSize(u32 maxMessages, u32 maxLength) {
    const u64 size = sizeof(MessageRing) + slotSize(maxLength) * maxMessages;
    return size > INT_MAX ? 0 : static_cast<u32>(size);
}

bool ringIsSound(const MessageRing *ring) {
    return ring->maxMessages > 0 && ring->maxLength > 0 &&
           ringSize(ring->maxMessages, ring->maxLength) == ring->head.size;
}

bool ringSend(MessageRing *ring, const void *record, u32 length) {
    if (length > ring->maxLength) {
        return false;
    }
    const RingLock lock(ring);
    if (!lock.held || heldIn(ring) >= ring->maxMessages) {
        return false;
    }
    u8 *slot = slotAt(ring, ring->sent);
    std::memcpy(slot, &length, sizeof length);
    std::memcpy(slot + sizeof length, record, length);
    publish(ring->sent, nextCount(ring, ring->sent));
    return true;
}

int ringReceive(MessageRing *ring, void *record, u32 maxLength) {
    const RingLock lock(ring);
    if (!lock.held || ring->sent == ring->taken) {
        return -1;
    }
    const u8 *slot = slotAt(ring, ring->taken);
    u32 length;
    std::memcpy(&length, slot, sizeof length);
    length = std::min({length, maxLength, ring->maxLength});
    std::memcpy(record, slot + sizeof length, length);
    publish(ring->taken, nextCount(ring, ring->taken));
    return static_cast<int>(length);
}

// The kernel's wait on a word, not a condition of the C library: a process that dies while it
// waits on a condition can leave its sender hanging.
void ringWait(const u32 *word, u32 seen, u64 ns) {
    const timespec time = toTimespec(ns);
    syscall(SYS_futex, word, FUTEX_WAIT, seen, &time, nullptr, 0);
}

void ringWake(const u32 *word) {
    syscall(SYS_futex, word, FUTEX_WAKE, 1, nullptr, nullptr, 0);
}

} // namespace ied
