#include "ied-device/actions.h"

#include "ied-device/eventRings.h"
#include "ied-device/parameters.h"

namespace ied::instrument {

namespace {

constexpr u32 firstOutput = 1;
constexpr u32 firstRecorder = 31;

bool closesOutput(u32 action) {
    return action >= firstOutput && action < firstOutput + region::outputClose.count;
}

} // namespace

void act(Instrument *instrument, u32 action) {
    if (closesOutput(action)) {
        operateOutput(instrument, action - firstOutput, true);
    } else if (action >= firstRecorder && action < firstRecorder + region::waveCount.count) {
        startRecord(instrument, action - firstRecorder);
    }
}

u32 outputOfAction(u32 action) {
    return closesOutput(action) ? 1u << (action - firstOutput) : 0;
}

void releaseOutputs(Instrument *instrument) {
    const u32 before = instrument->calledFor;
    instrument->calledFor = outputsOfSetPoints(*instrument) | outputsOfLogicGroups(*instrument) |
                            outputsOfVoltageEvents(*instrument);
    for (u32 output = 0; output < region::outputClose.count; output++) {
        const bool isReleased = ((before & ~instrument->calledFor) >> output & 1) != 0;
        if (isReleased && instrument->openAt[output] == 0) {
            operateOutput(instrument, output, false);
        }
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
