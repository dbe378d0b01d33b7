#include "ied-device/logicGroups.h"

#include "ied-device/actions.h"
#include "ied-device/eventRings.h"
#include "ied-device/parameters.h"

namespace ied::instrument {

namespace {

constexpr u32 inputs = 4;

struct Families {
    Parameter enabled, input, logic, action;
};

const Families &families() {
    static const Families all{findParameter("SET.logic1.LogicEna"), findParameter("SET.logic1.input1"),
                              findParameter("SET.logic1.logic1"), findParameter("SET.logic1.Trg1")};
    return all;
}

enum Operator : u8 {
    And,
    Or,
    Nand,
    Nor,
};

bool combined(bool left, u32 logic, bool right) {
    const bool isOr = logic == Or || logic == Nor;
    const bool negated = logic == Nand || logic == Nor;
    return (isOr ? left || right : left && right) != negated;
}

bool outputOf(Region region, u32 group, u32 alarms) {
    const Families &family = families();
    if (inForce(region, family.enabled, group) == 0) {
        return false;
    }
    bool output = false;
    bool isFirst = true;
    for (u32 i = 0; i < inputs; i++) {
        const u32 point = static_cast<u32>(inForce(region, family.input, group, i));
        if (point == 0 || point > setPointCount) {
            continue;
        }
        const bool alarm = (alarms >> (point - 1) & 1) != 0;
        output = isFirst
                     ? alarm
                     : combined(output, static_cast<u32>(inForce(region, family.logic, group, i - 1)), alarm);
        isFirst = false;
    }
    return output;
}

} // namespace

void watchLogicGroups(Instrument *instrument) {
    const Region region = instrument->shared.region;
    u32 outputs = 0;
    for (u32 group = 0; group < logicGroupCount; group++) {
        outputs |= u32{outputOf(region, group, instrument->setPoints.active)} << group;
    }
    const u32 changed = outputs ^ instrument->logicGroups.active;
    if (changed == 0) {
        return;
    }
    instrument->logicGroups.active = outputs;
    appendEntry(*instrument, region::lgRing, outputs);
    act(instrument, families().action, changed & outputs);
}

u32 outputsOfLogicGroups(const Instrument &instrument) {
    return outputsCalledFor(instrument.shared.region, families().action, instrument.logicGroups.active);
}

} // namespace ied::instrument
