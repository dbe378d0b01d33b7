#include "ied-device/statistics.h"

#include "ied-device/methodChange.h"
#include "ied-device/quantityTable.h"

#include <ctime>

namespace ied::instrument {

namespace {

bool exceed(Extreme *extreme, f64 value, bool upwards, const TimeStamp &time) {
    if (extreme->time.sec != 0 && (upwards ? value <= extreme->value : value >= extreme->value)) {
        return false;
    }
    *extreme = {value, time};
    return true;
}

} // namespace

int extremePlace(int quantity, bool delta) {
    return delta && isTwofold(quantity) ? QuantityCount + quantity : quantity;
}

bool addToExtremes(MonthExtremes *month, const f64 *values, bool delta, const TimeStamp &time) {
    bool moved = false;
    for (int q = 0; q < QuantityCount; q++) {
        if (isGiven(q, delta)) {
            const int place = extremePlace(q, delta);
            moved |= exceed(&month->highest[place], values[q], true, time);
            moved |= exceed(&month->lowest[place], values[q], false, time);
        }
    }
    return moved;
}

bool addToDemands(MonthExtremes *month, const f64 *means, bool delta, const TimeStamp &time) {
    bool moved = false;
    for (int q = 0; q < QuantityCount; q++) {
        if (isGiven(q, delta)) {
            moved |= exceed(&month->demand[extremePlace(q, delta)], means[q], true, time);
        }
    }
    return moved;
}

void restartExtremes(MonthExtremes *month, const Method &before, const Method &after) {
    for (int q = 0; q < QuantityCount; q++) {
        if (meansOther(q, before, after)) {
            for (const bool delta : {false, true}) {
                const int place = extremePlace(q, delta);
                month->highest[place] = month->lowest[place] = month->demand[place] = {};
            }
        }
    }
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
