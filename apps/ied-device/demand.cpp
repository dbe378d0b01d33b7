#include "ied-device/demand.h"

#include <algorithm>

namespace ied::instrument {

DemandSample demandSample(const Quantities &quantities) {
    DemandSample sample;
    std::copy_n(quantities.value, QuantityCount, sample.begin());
    for (int c = 0; c < channels; c++) {
        std::copy_n(quantities.spectrum[c], orders, sample.begin() + demandPlace(c, 0));
    }
    return sample;
}

void addSample(DemandPeriod *period, const DemandSample &sample) {
    const bool first = period->count++ == 0;
    for (std::size_t i = 0; i < sample.size(); i++) {
        period->sum[i] += sample[i];
        period->lowest[i] = first ? sample[i] : std::min(period->lowest[i], sample[i]);
        period->highest[i] = first ? sample[i] : std::max(period->highest[i], sample[i]);
    }
}

void addPeriod(DemandPeriod *period, const DemandPeriod &other) {
    if (other.count == 0) {
        return;
    }
    if (period->count == 0) {
        *period = other;
        return;
    }
    period->count += other.count;
    for (std::size_t i = 0; i < period->sum.size(); i++) {
        period->sum[i] += other.sum[i];
        period->lowest[i] = std::min(period->lowest[i], other.lowest[i]);
        period->highest[i] = std::max(period->highest[i], other.highest[i]);
    }
}

f64 periodMean(const DemandPeriod &period, int index) {
    return period.count == 0 ? 0 : period.sum[static_cast<std::size_t>(index)] / period.count;
}

DemandPeriod finishPeriod(DemandWindow *window, u32 periods) {
    window->periods[window->finished++ % longestWindow] = window->running;
    window->running = {};
    DemandPeriod all;
    const u32 present = std::min({periods, window->finished, u32{longestWindow}});
    for (u32 i = 1; i <= present; i++) {
        addPeriod(&all, window->periods[(window->finished - i) % longestWindow]);
    }
    return all;
}

f64 predictedMean(const DemandWindow &window, u32 periods, u32 length, int index, f64 now, f64 weight) {
    const auto place = static_cast<std::size_t>(index);
    const u32 earlier = std::min(std::min(periods, u32{longestWindow}) - 1, window.finished);
    f64 sum = window.running.sum[place];
    u32 count = window.running.count;
    for (u32 i = 1; i <= earlier; i++) {
        const DemandPeriod &period = window.periods[(window.finished - i) % longestWindow];
        sum += period.sum[place];
        count += period.count;
    }
    if (window.running.count < length) {
        const u32 rest = length - window.running.count;
        const f64 mean = window.running.count == 0 ? now : periodMean(window.running, index);
        sum += rest * (weight * now + (1 - weight) * mean);
        count += rest;
    }
    return count == 0 ? 0 : sum / count;
}

} // namespace ied::instrument
