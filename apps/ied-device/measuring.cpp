#include "ied-device/measuring.h"

#include "ied-device/flicker.h"
#include "ied-device/parameters.h"
#include "ied-device/regionWriter.h"
#include "ied-device/state.h"

#include <algorithm>
#include <array>

namespace ied::instrument {

Method methodOf(Region region) {
    static const Parameter primary = findParameter("SET.sys.TVPri");
    static const Parameter secondary = findParameter("SET.sys.TVSec");
    static const Parameter rmsBase = findParameter("SET.sys.ClcHRat");
    static const Parameter total = findParameter("SET.sys.ClcTotVA");
    static const Parameter sign = findParameter("SET.sys.PFSign");
    static const Parameter reversed[3] = {findParameter("SET.sys.IaSign"), findParameter("SET.sys.IbSign"),
                                          findParameter("SET.sys.IcSign")};
    const auto value = [&](const Parameter &p) { return loadParameter(region, region::liveArea, p); };
    const f64 ratio = value(primary) / std::max(1.0, value(secondary));
    return {load(region, region::RtgVolt) * ratio,
            load(region, region::RtgFreq) == 1 ? 60.0 : 50.0,
            load(region, region::TVMod) == 1,
            load(region, region::ClcHV) == 1,
            load(region, region::ClcHA) == 1,
            value(rmsBase) == 1,
            value(total) == 1,
            static_cast<u16>(value(sign)),
            {value(reversed[0]) == 1, value(reversed[1]) == 1, value(reversed[2]) == 1}};
}

DemandSettings demandSettings(Region region) {
    static const Parameter num = findParameter("SET.sys.DmdNum");
    static const Parameter period = findParameter("SET.sys.DmdPeriod");
    static const Parameter factor = findParameter("SET.sys.PreDmdFac");
    const auto value = [&](const Parameter &p) { return loadParameter(region, region::liveArea, p); };
    return {std::clamp(static_cast<u32>(value(num)), 1u, u32{longestWindow}),
            std::max(1u, static_cast<u32>(value(period))) * minute, value(factor) / 100};
}

// What the instrument would measure at a moment.
Quantities measureAt(const Instrument &instrument, const Method &method, f64 seconds) {
    Phasors phasors = phasorsAt(instrument.grid, seconds, method.delta);
    for (int p = 0; p < 3; p++) {
        if (method.reversed[p]) {
            for (Phasor &order : phasors.current[p].order) {
                order = -order;
            }
        }
    }
    return measure(phasors, method);
}

void updateRealTime(Instrument *instrument, const Quantities &quantities) {
    const Region region = instrument->shared.region;
    instrument->quantities = quantities;
    writeRealTime(region, quantities, instrumentTime());
    instrument->stateBefore.swap(instrument->state);
    raise(region, region::dspFlag, region::DspRealTime);
    readState(region, &instrument->state);
}

namespace {

void showFlicker(Region region, const f64 *shortTerm, const f64 *longTerm) {
    const TimeStamp now = instrumentTime();
    writeShortTerm(region, shortTerm, now);
    raise(region, region::dspFlag, region::DspPst);
    writeLongTerm(region, longTerm, now);
    raise(region, region::dspFlag, region::DspPlt);
}

// Severity of each phase if it went on like this.
std::array<f64, 3> severityAt(const Instrument &instrument, f64 seconds) {
    const Phasors phasors = phasorsAt(instrument.grid, seconds, instrument.method.delta);
    std::array<f64, 3> severity;
    for (std::size_t p = 0; p < 3; p++) {
        severity[p] = shortTermSeverity(phasors.flickerDepth[p], phasors.flickerRate);
    }
    return severity;
}

// The mean of a window, which is a demand of the month as well.
void showDemand(Instrument *instrument, const DemandPeriod &window) {
    const Region region = instrument->shared.region;
    const TimeStamp now = instrumentTime();
    writeDemand(region, window, now);
    raise(region, region::dspFlag, region::DspDemand);
    f64 means[QuantityCount];
    for (int i = 0; i < QuantityCount; i++) {
        means[i] = periodMean(window, i);
    }
    instrument->extremesMoved |= addToDemands(&instrument->thisMonth, means, instrument->method.delta, now);
}

} // namespace

bool adoptMethod(Instrument *instrument, const Method &method) {
    const Method before = instrument->method;
    if (method == before && !instrument->methodTouched) {
        return false;
    }
    instrument->method = method;
    instrument->methodTouched = false;
    instrument->demand = {};
    restartExtremes(&instrument->thisMonth, before, method);
    if (method.delta != before.delta) {
        instrument->flicker = {};
    }
    return true;
}

void showNewMethod(Instrument *instrument) {
    const Region region = instrument->shared.region;
    if (instrument->flicker.finished == 0) {
        const std::array<f64, 3> severity = severityAt(*instrument, instrument->seconds);
        showFlicker(region, severity.data(), severity.data());
    } else {
        // The values stand; a reader that has dropped them in between takes them again.
        raise(region, region::dspFlag, region::DspPst);
        raise(region, region::dspFlag, region::DspPlt);
    }
    showDemand(instrument, instrument->demand.running);
    predictDemand(instrument);
    writeThisMonth(instrument);
    writeLastMonth(instrument);
}

void finishShortTerm(Instrument *instrument) {
    Flicker &flicker = instrument->flicker;
    f64 shortTerm[3];
    f64 longTerm[3];
    for (int p = 0; p < 3; p++) {
        shortTerm[p] = flicker.severity[p] / flicker.samples;
        flicker.history[p][flicker.finished % shortTerms] = shortTerm[p];
        flicker.severity[p] = 0;
        longTerm[p] = longTermSeverity({flicker.history[p], std::min<u32>(flicker.finished + 1, shortTerms)});
    }
    flicker.samples = 0;
    flicker.finished++;
    showFlicker(instrument->shared.region, shortTerm, longTerm);
}

void addFlicker(Instrument *instrument, f64 seconds) {
    const std::array<f64, 3> severity = severityAt(*instrument, seconds);
    for (std::size_t p = 0; p < 3; p++) {
        instrument->flicker.severity[p] += severity[p];
    }
    instrument->flicker.samples++;
}

void predictDemand(Instrument *instrument) {
    const Region region = instrument->shared.region;
    const DemandSettings settings = demandSettings(region);
    f64 means[QuantityCount];
    for (int i = 0; i < QuantityCount; i++) {
        means[i] = predictedMean(instrument->demand, settings.periods, settings.length, i,
                                 instrument->quantities.value[i], settings.weight);
    }
    writePredicted(region, means, instrumentTime());
    raise(region, region::dspFlag, region::DspPreDemand);
}

void finishDemand(Instrument *instrument, u32 periods) {
    showDemand(instrument, finishPeriod(&instrument->demand, periods));
}

void writeThisMonth(Instrument *instrument) {
    const Region region = instrument->shared.region;
    writeExtremes(region, instrument->thisMonth, false, instrument->method.delta);
    raise(region, region::statThisMonth);
    instrument->extremesMoved = false;
}

void writeLastMonth(Instrument *instrument) {
    const Region region = instrument->shared.region;
    writeExtremes(region, instrument->lastMonth, true, instrument->method.delta);
    raise(region, region::statLastMonth);
}

namespace {

void turnMonth(Instrument *instrument, int month) {
    instrument->month = month;
    instrument->lastMonth = instrument->thisMonth;
    instrument->thisMonth = {};
    writeLastMonth(instrument);
}

} // namespace

void addToMonth(Instrument *instrument) {
    const TimeStamp now = instrumentTime();
    if (monthOf(now.sec) != instrument->month) {
        turnMonth(instrument, monthOf(now.sec));
    }
    instrument->extremesMoved |=
        addToExtremes(&instrument->thisMonth, instrument->quantities.value, instrument->method.delta, now);
}

void writeEnergies(Instrument *instrument) {
    const Region region = instrument->shared.region;
    writeEnergy(region, instrument->energies, instrumentTime());
    raise(region, region::dspFlag, region::DspEnergy);
}

} // namespace ied::instrument
