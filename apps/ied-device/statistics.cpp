#include "ied-device/statistics.h"

#include <ctime>

namespace ied::instrument {

namespace {

bool exceed(Extreme *extreme, bool first, f64 value, bool upwards, const TimeStamp &time) {
    if (!first && (upwards ? value <= extreme->value : value >= extreme->value)) {
        return false;
    }
    *extreme = {value, time};
    return true;
}

} // namespace

bool addToExtremes(MonthExtremes *month, const f64 *values, const TimeStamp &time) {
    bool moved = false;
    for (int i = 0; i < QuantityCount; i++) {
        moved |= exceed(&month->highest[i], !month->any, values[i], true, time);
        moved |= exceed(&month->lowest[i], !month->any, values[i], false, time);
    }
    month->any = true;
    return moved;
}

bool addToDemands(MonthExtremes *month, const f64 *means, const TimeStamp &time) {
    bool moved = false;
    for (int i = 0; i < QuantityCount; i++) {
        moved |= exceed(&month->demand[i], !month->anyDemand, means[i], true, time);
    }
    month->anyDemand = true;
    return moved;
}

int monthOf(u32 seconds) {
    const std::time_t time = seconds;
    std::tm parts{};
    gmtime_r(&time, &parts);
    return (parts.tm_year - 70) * 12 + parts.tm_mon;
}

u32 monthStart(int month) {
    std::tm parts{};
    parts.tm_year = 70 + month / 12;
    parts.tm_mon = month % 12;
    parts.tm_mday = 1;
    return static_cast<u32>(timegm(&parts));
}

} // namespace ied::instrument
