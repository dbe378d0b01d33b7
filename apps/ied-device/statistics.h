// Extremes of a month with the moments at which they happened.
#pragma once

#include "ied-device/quantities.h"

namespace ied::instrument {

// A time of 0 seconds: nothing has been seen.
struct Extreme {
    f64 value;
    TimeStamp time;
};

// Values that are of phases in one wiring and of lines in the other have an extreme for each.
inline constexpr int extremePlaces = 2 * QuantityCount;
int extremePlace(int quantity, bool delta);

// Indexed by extremePlace.
struct MonthExtremes {
    Extreme highest[extremePlaces];
    Extreme lowest[extremePlaces];
    Extreme demand[extremePlaces]; // highest demand
};

// Takes one more picture of all values that the wiring gives. True if an extreme has moved.
bool addToExtremes(MonthExtremes *month, const f64 *values, bool delta, const TimeStamp &time);
// The same for the means of a demand window.
bool addToDemands(MonthExtremes *month, const f64 *means, bool delta, const TimeStamp &time);

// Forgets what can no longer be compared once `after` takes the place of `before`.
void restartExtremes(MonthExtremes *month, const Method &before, const Method &after);

// Number of the month of a time (UTC), counted from 1970.
int monthOf(u32 seconds);
// First second of that month.
u32 monthStart(int month);

} // namespace ied::instrument
