#include "ied-device/setpoints.h"

#include "ied-device/actions.h"
#include "ied-device/eventRings.h"
#include "ied-device/monitored.h"
#include "ied-device/parameters.h"

#include <algorithm>

namespace ied::instrument {

namespace {

enum TrgMod : u16 {
    TrgOff = 0,
    TrgOver = 1,
    TrgUnder = 2,
};

struct Families {
    Parameter over, under, delay, returnDelay, action;
};

const Families &families() {
    static const Families all{findParameter("SET.setpoint1.OvStrVar"),
                              findParameter("SET.setpoint1.UnStrVar"), findParameter("SET.setpoint1.ActTm"),
                              findParameter("SET.setpoint1.RetTm"), findParameter("SET.setpoint1.Trg1")};
    return all;
}

// Whether what is watched calls for the alarm, which may be there already.
bool isBeyond(const Monitored &now, u16 mode, f64 over, f64 under, bool active) {
    if (now.isState) {
        return (now.highest != 0) == (mode == TrgOver);
    }
    if (mode == TrgOver) {
        return active ? now.highest >= std::min(over, under) : now.highest > over;
    }
    return active ? now.lowest <= std::max(over, under) : now.lowest < under;
}

// Of a sequence there is only the wrong one, in either mode.
bool calls(const Instrument &instrument, u32 point, u16 mode, bool active) {
    constexpr u32 reverseSequence = 38;
    const Region region = instrument.shared.region;
    const u32 object = load(region, region::SPMonObj, point);
    const std::optional<Monitored> now = monitored(instrument, object, point >= firstFastSetPoint);
    if (!now.has_value()) {
        return false;
    }
    const Families &family = families();
    return isBeyond(*now, object == reverseSequence ? u16{TrgOver} : mode,
                    inForce(region, family.over, point), inForce(region, family.under, point), active);
}

// The alarm of a setpoint after one more tick.
bool nextAlarm(Instrument *instrument, u32 point) {
    const Region region = instrument->shared.region;
    const bool active = (instrument->setPoints.active >> point & 1) != 0;
    u32 &waited = instrument->setPoints.waited[point];
    const u16 mode = load(region, region::SPTrgMod, point);
    if (mode != TrgOver && mode != TrgUnder) {
        waited = 0;
        return false;
    }
    if (calls(*instrument, point, mode, active) == active) {
        waited = 0;
        return active;
    }
    const f64 delay = inForce(region, active ? families().returnDelay : families().delay, point);
    if (waited++ < delay) {
        return active;
    }
    waited = 0;
    return !active;
}

} // namespace

void watchSetPoints(Instrument *instrument) {
    u32 alarms = 0;
    for (u32 point = 0; point < setPointCount; point++) {
        alarms |= u32{nextAlarm(instrument, point)} << point;
    }
    const u32 changed = alarms ^ instrument->setPoints.active;
    if (changed == 0) {
        return;
    }
    instrument->setPoints.active = alarms;
    appendEntry(*instrument, region::spRing, alarms);
    act(instrument, families().action, changed & alarms);
}

u32 outputsOfSetPoints(const Instrument &instrument) {
    return outputsCalledFor(instrument.shared.region, families().action, instrument.setPoints.active);
}

} // namespace ied::instrument
