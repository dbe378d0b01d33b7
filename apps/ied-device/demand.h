// Demand: mean, lowest and highest of every measured value over a window of several periods that
// slides on by one period at a time, and where the mean of the running window will end.
#pragma once

#include "ied-device/quantities.h"

#include <array>

namespace ied::instrument {

inline constexpr int longestWindow = 15; // periods

// Everything that a demand is made of: the scalar values, then the spectra from order 2 on.
inline constexpr int spectrumValues = channels * orders;
inline constexpr int demandValues = QuantityCount + spectrumValues;
using DemandSample = std::array<f64, demandValues>;

// Place of an order of a channel's spectrum in a sample.
constexpr int demandPlace(int channel, int order) {
    return QuantityCount + channel * orders + order;
}

DemandSample demandSample(const Quantities &quantities);

// Sums and extremes over a number of samples; count 0 is an empty one.
struct DemandPeriod {
    u32 count = 0;
    DemandSample sum{};
    DemandSample lowest{};
    DemandSample highest{};
};

void addSample(DemandPeriod *period, const DemandSample &sample);
// The samples of `other` as well.
void addPeriod(DemandPeriod *period, const DemandPeriod &other);
// Mean of value `index`, 0 for an empty period.
f64 periodMean(const DemandPeriod &period, int index);

struct DemandWindow {
    DemandPeriod periods[longestWindow]; // the finished ones, a ring
    u32 finished = 0;                    // number of periods ever finished
    DemandPeriod running;
};

// Ends the running period. The window of the last `periods` (1 to longestWindow) finished ones.
DemandPeriod finishPeriod(DemandWindow *window, u32 periods);

// Mean of value `index` of the window at the end of the running period of `length` samples, if from
// now on each sample is `now`, weighted by `weight` (0 to 1) against the period's mean so far.
f64 predictedMean(const DemandWindow &window, u32 periods, u32 length, int index, f64 now, f64 weight);

} // namespace ied::instrument
