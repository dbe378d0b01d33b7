#include "ied-device/actions.h"

#include "ied-device/eventRings.h"
#include "ied-device/parameters.h"

namespace ied::instrument {

namespace {

constexpr u32 firstOutput = 1;
constexpr u32 firstRecorder = 31;

} // namespace

void act(Instrument *instrument, u32 action, bool active) {
    if (action >= firstOutput && action < firstOutput + region::outputClose.count) {
        operateOutput(instrument, action - firstOutput, active);
    } else if (active && action >= firstRecorder && action < firstRecorder + region::waveCount.count) {
        startRecord(instrument, action - firstRecorder);
    }
}

bool startRecord(Instrument *instrument, u32 group) {
    static const Parameter room = findParameter("SET.wave1.MaxNumRcd");
    const Region region = instrument->shared.region;
    if (inForce(region, room, group) == 0) {
        return false;
    }
    store(region, region::waveTime, eventTime(*instrument), group);
    raise(region, region::waveCount, group);
    return true;
}

} // namespace ied::instrument
