#include "platform/heldClock.h"

#include "platform/hostTime.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "platform/waiting.h"

#include <algorithm>
#include <pthread.h>

namespace ied {

namespace {

// The clock that stands still. `lock` guards the words; `moved` wakes the tasks that sleep by it.
struct HeldClock {
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t moved = PTHREAD_COND_INITIALIZER;
    bool held = false;
    bool movesItself = false;
    u64 nowNs = 0;    // monotonic
    u64 startNs = 0;  // monotonic instant of `utcStart`
    u32 utcStart = 0; // seconds
    ClockOps host{};
};
HeldClock clock;

struct Guard {
    Guard() { pthread_mutex_lock(&clock.lock); }
    ~Guard() { pthread_mutex_unlock(&clock.lock); }
    Guard(const Guard &) = delete;
    Guard &operator=(const Guard &) = delete;
};

void moveTo(u64 ns) {
    clock.nowNs = std::max(clock.nowNs, ns);
    pthread_cond_broadcast(&clock.moved);
}

u64 heldMonotonicNs() {
    const Guard guard;
    return clock.nowNs;
}

void heldRealTime(TimeStamp *out) {
    const Guard guard;
    const u64 elapsed = clock.nowNs - clock.startNs;
    *out = {clock.utcStart + static_cast<u32>(elapsed / nsPerSecond),
            static_cast<u32>(elapsed % nsPerSecond / 1'000'000), 10};
}

void heldSleepUntilNs(u64 deadline) {
    const Guard guard;
    if (clock.movesItself) {
        moveTo(deadline);
    }
    while (clock.held && clock.nowNs < deadline) {
        pthread_cond_wait(&clock.moved, &clock.lock);
    }
}

void install(const ClockOps &ops) {
    storeShared(clockOps.monotonicNs, ops.monotonicNs);
    storeShared(clockOps.realTime, ops.realTime);
    storeShared(clockOps.sleepUntilNs, ops.sleepUntilNs);
}

} // namespace

bool heldClockMovesItself() {
    const Guard guard;
    return clock.held && clock.movesItself;
}

void heldClockMoveTo(u64 ns) {
    const Guard guard;
    if (clock.held) {
        moveTo(ns);
    }
}

void heldClockStart(u32 utcSeconds, bool movesItself) {
    heldClockStop();
    const u64 edge = tickEdgeNs(1); // a tick begins as the clock stops, so delays are whole ticks
    const Guard guard;
    clock.host = clockOps;
    clock.nowNs = edge;
    clock.startNs = edge;
    clock.movesItself = movesItself;
    clock.utcStart = utcSeconds;
    clock.held = true;
    install({heldMonotonicNs, heldRealTime, heldSleepUntilNs});
}

void heldClockAdvance(u64 milliseconds) {
    const Guard guard;
    moveTo(clock.nowNs + milliseconds * 1'000'000);
}

void heldClockStop() {
    const Guard guard;
    if (clock.held) {
        clock.held = false;
        install(clock.host);
        pthread_cond_broadcast(&clock.moved);
    }
}

} // namespace ied
