#include "platform/heldClock.h"
#include "platform/hostTime.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "platform/waiting.h"

#include <cerrno>
#include <sched.h>

namespace ied {

namespace {

void hostRealTime(TimeStamp *out) {
    constexpr u8 clockQuality = 10; // accurate to 10 bits of the fraction, IEC 61850-7-2 table 8
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *out = {static_cast<u32>(now.tv_sec), static_cast<u32>(now.tv_nsec / 1'000'000), clockQuality};
}

void hostSleepUntilNs(u64 deadline) {
    const timespec until = toTimespec(deadline);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

// Ticks are counted from `startNs`, the instant at which the rate was set or first asked for.
u64 startNs;
u32 tickRate = 100;

u64 tickBaseNs() {
    u64 base = loadPublished(startNs);
    if (base == 0) {
        const u64 now = monotonicNs();
        // Whoever is first fixes the base for all.
        std::atomic_ref<u64>(startNs).compare_exchange_strong(base, now);
        base = loadPublished(startNs);
    }
    return base;
}

// Whole ticks since the base, without wrap. Seconds and their rest apart, so that no product
// leaves 64 bits at any rate.
u64 ticksSinceBase() {
    const u64 base = tickBaseNs();
    const u64 now = monotonicNs();
    const u64 elapsed = now > base ? now - base : 0;
    const u64 rate = loadShared(tickRate);
    return elapsed / nsPerSecond * rate + elapsed % nsPerSecond * rate / nsPerSecond;
}

} // namespace

u64 hostMonotonicNs() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return toNs(now);
}

ClockOps clockOps = {hostMonotonicNs, hostRealTime, hostSleepUntilNs};

bool clockIsHost() {
    return loadShared(clockOps.monotonicNs) == hostMonotonicNs;
}

u64 monotonicNs() {
    return loadShared(clockOps.monotonicNs)();
}

u32 tickGet() {
    return static_cast<u32>(ticksSinceBase());
}

void sysClkRateSet(u32 ticksPerSecond) {
    if (ticksPerSecond == 0) {
        return;
    }
    storeShared(tickRate, ticksPerSecond);
    publish(startNs, monotonicNs());
}

u32 sysClkRateGet() {
    return loadShared(tickRate);
}

u64 tickEdgeNs(u64 ticks) {
    const u64 rate = loadShared(tickRate);
    const u64 edge = ticksSinceBase() + ticks;
    const u64 rest = (edge % rate * nsPerSecond + rate - 1) / rate;
    return tickBaseNs() + edge / rate * nsPerSecond + rest;
}

void taskDelay(int ticks) {
    if (ticks <= 0) {
        sched_yield();
        return;
    }
    loadShared(clockOps.sleepUntilNs)(tickEdgeNs(static_cast<u64>(ticks)));
}

void sleepSeconds(unsigned seconds) {
    loadShared(clockOps.sleepUntilNs)(monotonicNs() + seconds * nsPerSecond);
}

} // namespace ied
