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

template <class Visit>
void forEachAction(Region region, const Parameter &family, u32 groups, const Visit &visit) {
    for (u32 group = 0; group < family.row->groups; group++) {
        for (u32 i = 0; (groups >> group & 1) != 0 && i < family.row->members; i++) {
            visit(static_cast<u32>(inForce(region, family, group, i)));
        }
    }
}

} // namespace

void act(Instrument *instrument, const Parameter &family, u32 groups) {
    forEachAction(instrument->shared.region, family, groups, [&](u32 action) {
        if (closesOutput(action)) {
            operateOutput(instrument, action - firstOutput, true);
        } else if (action >= firstRecorder && action < firstRecorder + region::waveCount.count) {
            startRecord(instrument, action - firstRecorder);
        }
    });
}

u32 outputsCalledFor(Region region, const Parameter &family, u32 groups) {
    u32 outputs = 0;
    forEachAction(region, family, groups,
                  [&](u32 action) { outputs |= closesOutput(action) ? 1u << (action - firstOutput) : 0; });
    return outputs;
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
