#include "ied-device/voltageEvents.h"

#include "ied-device/actions.h"
#include "ied-device/eventRings.h"
#include "ied-device/parameters.h"

#include <algorithm>
#include <numbers>

namespace ied::instrument {

namespace {

constexpr f64 hysteresis = 2; // percent of the rated voltage
constexpr u32 msPerTick = 1000 / ticksPerSecond;

VariationLimits variationLimits(Region region) {
    static const Parameter enabled = findParameter("SET.sys.VarEna");
    static const Parameter swell = findParameter("SET.sys.SwlStrVar");
    static const Parameter dip = findParameter("SET.sys.DipStrVar");
    static const Parameter interruption = findParameter("SET.sys.IntrStrVar");
    return {inForce(region, enabled) == 1, inForce(region, swell), inForce(region, dip),
            inForce(region, interruption)};
}

struct EntryTypes {
    PqSubType start;
    PqSubType end;
};

EntryTypes entryTypes(Variation kind) {
    switch (kind) {
    case Variation::Swell:
        return {SwellStart, SwellEnd};
    case Variation::Interruption:
        return {InterruptionStart, InterruptionEnd};
    default:
        return {DipStart, DipEnd};
    }
}

struct Families {
    Parameter variation, transient;
};

const Families &families() {
    static const Families all{findParameter("SET.sys.VarTrg1"), findParameter("SET.sys.TransTrg1")};
    return all;
}

// Ends what is over, begins what is new.
void follow(Instrument *instrument, RunningVariation *running, Variation kind, f64 percent) {
    if (kind == running->kind) {
        const bool further = (kind == Variation::Swell) == (percent > running->extreme);
        running->extreme = further ? percent : running->extreme;
        return;
    }
    if (running->kind != Variation::None) {
        const u32 duration = static_cast<u32>(instrument->ticks - running->since) * msPerTick;
        appendPqEntry(*instrument, {PqVariation, entryTypes(running->kind).end, running->extreme, duration});
    }
    const bool wasActive = running->kind != Variation::None;
    *running = {kind, instrument->ticks, percent};
    if (kind != Variation::None) {
        appendPqEntry(*instrument, {PqVariation, entryTypes(kind).start, percent, 0});
    }
    if (!wasActive) {
        act(instrument, families().variation);
    }
}

} // namespace

Variation judgeHigh(Variation before, f64 highest, const VariationLimits &limits) {
    const f64 slack = before == Variation::Swell ? hysteresis : 0;
    return limits.enabled && highest > limits.swell - slack ? Variation::Swell : Variation::None;
}

Variation judgeLow(Variation before, f64 lowest, f64 highest, const VariationLimits &limits) {
    if (!limits.enabled) {
        return Variation::None;
    }
    const auto slack = [before](Variation kind) { return before == kind ? hysteresis : 0; };
    if (highest < limits.interruption + slack(Variation::Interruption)) {
        return Variation::Interruption;
    }
    return lowest < limits.dip + slack(Variation::Dip) ? Variation::Dip : Variation::None;
}

void watchVoltages(Instrument *instrument) {
    const VariationLimits limits = variationLimits(instrument->shared.region);
    const Method &method = instrument->method;
    const f64 *volts = method.delta ? instrument->lineVolts : instrument->phaseVolts;
    const f64 rated = method.ratedVolts * (method.delta ? std::numbers::sqrt3 : 1);
    const f64 lowest = *std::min_element(volts, volts + 3) / rated * 100;
    const f64 highest = *std::max_element(volts, volts + 3) / rated * 100;
    VoltageEvents &events = instrument->voltageEvents;
    follow(instrument, &events.high, judgeHigh(events.high.kind, highest, limits), highest);
    follow(instrument, &events.low, judgeLow(events.low.kind, lowest, highest, limits), lowest);
}

void watchTransients(Instrument *instrument) {
    static const Parameter enabled = findParameter("SET.sys.TransEna");
    static const Parameter threshold = findParameter("SET.sys.TransStrVar");
    instrument->voltageEvents.transient = false;
    if (instrument->disturbances.transients.empty()) {
        return;
    }
    const Region region = instrument->shared.region;
    for (const Transient &transient : takeTransients(&instrument->disturbances, instrument->ticks)) {
        const f64 percent = transient.level * 100;
        if (inForce(region, enabled) != 1 || percent < inForce(region, threshold)) {
            continue;
        }
        appendPqEntry(*instrument, {PqTransient, 0, percent, transient.microseconds});
        instrument->voltageEvents.transient = true;
        act(instrument, families().transient);
    }
}

u32 outputsOfVoltageEvents(const Instrument &instrument) {
    const Region region = instrument.shared.region;
    const VoltageEvents &events = instrument.voltageEvents;
    u32 outputs = 0;
    if (events.high.kind != Variation::None || events.low.kind != Variation::None) {
        outputs |= outputsCalledFor(region, families().variation);
    }
    if (events.transient) {
        outputs |= outputsCalledFor(region, families().transient);
    }
    return outputs;
}

} // namespace ied::instrument
