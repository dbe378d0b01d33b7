#include "ied-device/disturbances.h"

#include <algorithm>
#include <cmath>

namespace ied::instrument {

void shareVoltages(Disturbances *disturbances, u64 tick, const f64 *volts, f64 rated, f64 *shares) {
    std::vector<Disturbance> &list = disturbances->variations;
    std::erase_if(list, [tick](const Disturbance &d) { return d.end <= tick; });
    for (u32 p = 0; p < 3; p++) {
        shares[p] = 1;
        for (const Disturbance &d : list) {
            if ((d.phases >> p & 1) != 0 && d.first <= tick && volts[p] > 0) {
                shares[p] = d.level * rated / volts[p];
            }
        }
        disturbances->squares[p] += shares[p] * shares[p];
    }
}

void finishShares(Disturbances *disturbances, f64 *shares) {
    for (u32 p = 0; p < 3; p++) {
        shares[p] = std::sqrt(disturbances->squares[p] / ticksPerSecond);
        disturbances->squares[p] = 0;
    }
}

std::vector<Transient> takeTransients(Disturbances *disturbances, u64 tick) {
    std::vector<Transient> over;
    std::vector<Transient> &list = disturbances->transients;
    std::copy_if(list.begin(), list.end(), std::back_inserter(over),
                 [tick](const Transient &t) { return t.end <= tick; });
    std::erase_if(list, [tick](const Transient &t) { return t.end <= tick; });
    return over;
}

} // namespace ied::instrument
