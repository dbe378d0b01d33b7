#include "platform/waiting.h"

#include "platform/heldClock.h"
#include "platform/hostTime.h"
#include "platform/platform.h"

#include <algorithm>

namespace ied {

namespace {

// Under a replaced clock nobody wakes a waiter when time moves, so it looks again this often.
constexpr u64 replacedClockSliceNs = 200'000;

} // namespace

Deadline deadlineInTicks(int ticks) {
    if (ticks == WAIT_FOREVER) {
        return {true, 0};
    }
    return {false, tickEdgeNs(static_cast<u64>(std::max(ticks, 0)))};
}

bool isPast(const Deadline &deadline) {
    return !deadline.forever && monotonicNs() >= deadline.ns;
}

u64 waitSliceNs(const Deadline &deadline) {
    if (!clockIsHost()) {
        return replacedClockSliceNs;
    }
    const u64 now = monotonicNs();
    return deadline.ns > now ? deadline.ns - now : 1;
}

void passSlice(const Deadline &deadline) {
    if (!deadline.forever && heldClockMovesItself()) {
        heldClockMoveTo(deadline.ns);
    }
}

void conditionInit(Condition *condition) {
    pthread_mutex_init(&condition->lock, nullptr);
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&condition->changed, &attributes);
    pthread_condattr_destroy(&attributes);
}

void conditionDestroy(Condition *condition) {
    pthread_cond_destroy(&condition->changed);
    pthread_mutex_destroy(&condition->lock);
}

bool conditionWait(Condition *condition, const Deadline &deadline) {
    if (deadline.forever) {
        pthread_cond_wait(&condition->changed, &condition->lock);
        return true;
    }
    if (isPast(deadline)) {
        return false;
    }
    const timespec end = toTimespec(hostMonotonicNs() + waitSliceNs(deadline));
    if (pthread_cond_timedwait(&condition->changed, &condition->lock, &end) != 0) {
        passSlice(deadline);
    }
    return !isPast(deadline);
}

} // namespace ied
