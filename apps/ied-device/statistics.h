// Extremes of a month with the moments at which they happened.
#pragma once

#include "ied-device/quantities.h"

namespace ied::instrument {

struct Extreme {
    f64 value;
    TimeStamp time;
};

struct MonthExtremes {
    bool any = false; // whether anything has been seen
    bool anyDemand = false;
    Extreme highest[QuantityCount];
    Extreme lowest[QuantityCount];
    Extreme demand[QuantityCount]; // highest demand
};

// Takes one more picture of all values. True if an extreme has moved.
bool addToExtremes(MonthExtremes *month, const f64 *values, const TimeStamp &time);
// The same for the means of a demand window.
bool addToDemands(MonthExtremes *month, const f64 *means, const TimeStamp &time);

// Number of the month of a time (UTC), counted from 1970.
int monthOf(u32 seconds);
// First second of that month.
u32 monthStart(int month);

} // namespace ied::instrument
