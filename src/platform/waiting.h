// Waiting with a time-out in ticks, by whichever clock clockOps holds.
#pragma once

#include "platform/types.h"

#include <pthread.h>

namespace ied {

// End of a wait on the monotonic clock.
struct Deadline {
    bool forever;
    u64 ns; // monotonic nanoseconds, when not forever
};

// The instant of the `ticks`-th tick edge from now; WAIT_FOREVER gives a deadline without end.
Deadline deadlineInTicks(int ticks);
// Monotonic nanoseconds of the `ticks`-th tick edge from now.
u64 tickEdgeNs(u64 ticks);
// False until the deadline has come.
bool isPast(const Deadline &deadline);

// Longest real time to wait before the deadline is looked at again, in nanoseconds: what is left
// of it by the host's clock, a moment under a replaced clock. At least 1.
u64 waitSliceNs(const Deadline &deadline);
// Under a held clock that moves by itself, moves it on to the deadline; called when a slice has
// passed and nothing happened.
void passSlice(const Deadline &deadline);

// A condition with its lock, on the monotonic clock.
struct Condition {
    pthread_mutex_t lock;
    pthread_cond_t changed;
};

void conditionInit(Condition *condition);
void conditionDestroy(Condition *condition);
// Waits, with `lock` held, for a change or the deadline; may return early. False once the deadline
// is past. The caller tests its predicate before and after.
bool conditionWait(Condition *condition, const Deadline &deadline);

// Holds a condition's lock for a scope.
struct ConditionLock {
    explicit ConditionLock(Condition *c) : condition(c) { pthread_mutex_lock(&c->lock); }
    ~ConditionLock() { pthread_mutex_unlock(&condition->lock); }
    ConditionLock(const ConditionLock &) = delete;
    ConditionLock &operator=(const ConditionLock &) = delete;
    Condition *condition;
};

} // namespace ied
