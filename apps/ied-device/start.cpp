#include "ied-device/actions.h"
#include "ied-device/eventRings.h"
#include "ied-device/measuring.h"
#include "ied-device/parameters.h"
#include "ied-device/regionWriter.h"
#include "ied-device/state.h"

#include <algorithm>

namespace ied::instrument {

namespace {

// What the instrument would have seen in the seconds from `first` to `last` of a month.
MonthExtremes pastExtremes(const Instrument &instrument, const Method &method, u32 first, u32 last) {
    constexpr u32 pictures = 200;
    constexpr u32 demands = 10;
    constexpr u32 window = 15; // minutes
    MonthExtremes month{};
    const auto see = [&](u32 at) {
        const Quantities quantities = measureAt(instrument, method, at);
        addToExtremes(&month, quantities.value, method.delta, {at, 0, 10});
        return quantities;
    };
    for (u32 i = 0; i < pictures; i++) {
        see(first + static_cast<u32>(u64{last - first} * i / pictures));
    }
    for (u32 i = 1; i <= demands; i++) {
        const u32 end = first + static_cast<u32>(u64{last - first} * i / demands);
        if (end - first < window * minute) {
            continue;
        }
        DemandPeriod period;
        f64 means[QuantityCount];
        for (u32 k = 0; k < window; k++) {
            addSample(&period, demandSample(see(end - k * minute)));
        }
        for (int q = 0; q < QuantityCount; q++) {
            means[q] = periodMean(period, q);
        }
        addToDemands(&month, means, method.delta, {end, 0, 10});
    }
    return month;
}

// A picture of a moment before the start, which its month has seen as well.
void addPast(Instrument *instrument, const Method &method, u32 at) {
    const Quantities quantities = measureAt(*instrument, method, at);
    MonthExtremes &month = monthOf(at) == instrument->month ? instrument->thisMonth : instrument->lastMonth;
    addSample(&instrument->demand.running, demandSample(quantities));
    addToExtremes(&month, quantities.value, method.delta, {at, 0, 10});
}

// The periods before the start, each from sixty pictures that stand for its seconds.
void fillDemand(Instrument *instrument, const Method &method, u32 start) {
    const DemandSettings settings = demandSettings(instrument->shared.region);
    const u32 each = settings.length / minute;
    for (u32 i = settings.periods; i > 0; i--) {
        for (u32 k = 0; k < minute; k++) {
            addPast(instrument, method, start - i * settings.length + k * each);
        }
        DemandPeriod &period = instrument->demand.running;
        period.count *= each;
        std::for_each(period.sum.begin(), period.sum.end(), [each](f64 &sum) { sum *= each; });
        if (i > 1) {
            finishPeriod(&instrument->demand, settings.periods);
        }
    }
    finishDemand(instrument, settings.periods);
}

void fillFlicker(Instrument *instrument) {
    for (u32 i = shortTerms; i > 0; i--) {
        addFlicker(instrument, instrument->seconds - static_cast<f64>(i) * shortTermLength);
        finishShortTerm(instrument);
    }
}

void fillFresh(Instrument *instrument) {
    constexpr u32 firstCount = 2000;
    const Region region = instrument->shared.region;
    fillParameters(region);
    for (u32 i = 0; i < region::dspFlag.count; i++) {
        store(region, region::dspFlag, firstCount + i, i);
    }
    store(region, region::statThisMonth, firstCount);
    store(region, region::statLastMonth, firstCount);
    store(region, region::checkTime, instrumentTime());
    store(region, region::ioTime, instrumentTime());
    for (u32 input = 6; input < 8; input++) {
        store(region, region::pulseCount, 5000 * input, input);
    }
}

void takeOver(Instrument *instrument) {
    const Region region = instrument->shared.region;
    instrument->energies = readEnergies(region);
    const bool delta = methodOf(region).delta;
    instrument->thisMonth = readExtremes(region, false, delta);
    instrument->lastMonth = readExtremes(region, true, delta);
    if (monthOf(instrument->thisMonth.highest[QHz].time.sec) != instrument->month) {
        instrument->lastMonth = instrument->thisMonth; // the month has turned meanwhile
        instrument->thisMonth = {};
    }
}

// Alarms go on as the rings show them; what the rings hold already is of the time before the start.
void takeUpEvents(Instrument *instrument) {
    const Region region = instrument->shared.region;
    instrument->setPoints.active = newestState(region, region::spRing);
    instrument->logicGroups.active = newestState(region, region::lgRing);
    releaseOutputs(instrument);
    store(region, region::pqStart, load(region, region::pqCounter));
    for (u32 group = 0; group < region::waveCount.count; group++) {
        store(region, region::waveStart, load(region, region::waveCount, group), group);
    }
}

} // namespace

void startInstrument(Instrument *instrument) {
    const Region region = instrument->shared.region;
    const bool isFresh = load(region, region::ready) != region::readyValue;
    const TimeStamp now = instrumentTime();
    instrument->seconds = now.sec;
    instrument->month = monthOf(now.sec);
    isFresh ? fillFresh(instrument) : takeOver(instrument);
    const Method method = methodOf(region);
    instrument->method = method;
    instrument->grid =
        usualGrid(method.ratedVolts * 1.005, method.ratedHertz,
                  0.55 * loadParameter(region, region::liveArea, findParameter("SET.sys.TAPri")));
    if (isFresh) {
        const u32 start = monthStart(instrument->month);
        instrument->lastMonth =
            pastExtremes(*instrument, method, monthStart(instrument->month - 1), start - 1);
        instrument->thisMonth = pastExtremes(*instrument, method, start, now.sec);
    }
    const Quantities quantities = measureAt(*instrument, method, instrument->seconds);
    updateRealTime(instrument, quantities);
    fillFlicker(instrument);
    fillDemand(instrument, method, now.sec);
    predictDemand(instrument);
    constexpr f64 hour = 3600;
    takeUpEvents(instrument);
    lookAtMains(instrument);
    integrate(&instrument->energies, quantities, isFresh ? 2000 * hour : 0); // registers of a used instrument
    writeEnergies(instrument);
    addToMonth(instrument);
    writeThisMonth(instrument);
    writeLastMonth(instrument);
    raise(region, region::dspFlag, region::DspPulse);
    readState(region, &instrument->state);
    instrument->stateBefore = instrument->state;
    publish(*regionPlace(region.base, region::ready), region::readyValue);
}

} // namespace ied::instrument
