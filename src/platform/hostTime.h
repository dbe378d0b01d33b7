// The host's monotonic time and its form in the host's calls.
#pragma once

#include "platform/types.h"

#include <ctime>

namespace ied {

inline constexpr u64 nsPerSecond = 1'000'000'000;

// Nanoseconds of the host's monotonic clock, whatever clockOps holds.
u64 hostMonotonicNs();

inline u64 toNs(const timespec &time) {
    return static_cast<u64>(time.tv_sec) * nsPerSecond + static_cast<u64>(time.tv_nsec);
}

inline timespec toTimespec(u64 ns) {
    timespec time{};
    time.tv_sec = static_cast<time_t>(ns / nsPerSecond);
    time.tv_nsec = static_cast<long>(ns % nsPerSecond);
    return time;
}

} // namespace ied
