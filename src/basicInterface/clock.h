// The clock device of the instrument, from which every time stamp of the server comes, and what is
// reckoned from stamps and ticks.
#pragma once

#include "platform/types.h"

namespace ied {

// Descriptor of the clock device, opened once at start; -1 before that.
extern int fdRtc;

// Fills `out` from the clock device; zero, after a message, if that fails.
void getTimeStamp(TimeStamp *out);

// True when at least `ms` milliseconds have passed since tick `startTick`.
bool isTimeOut(u32 startTick, u32 ms);
// Compares by seconds, then milliseconds; `result` -1, 0 or 1. False for a null argument.
bool timeStampCmp(const TimeStamp *a, const TimeStamp *b, int *result);

} // namespace ied
