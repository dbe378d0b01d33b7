#include "ied-device/instrument.h"

#include "ied-device/actions.h"
#include "ied-device/chance.h"
#include "ied-device/harmonics.h"
#include "ied-device/measuring.h"
#include "ied-device/state.h"

#include <algorithm>
#include <iterator>

namespace ied::instrument {

namespace {

constexpr u32 slowPace = 5; // seconds between updates of energy and predicted demand
constexpr u32 statisticsPace = 10;

// Meters at the inputs 7 and 8 give a pulse for each unit of imported energy.
void countMetered(Instrument *instrument, const Energies &before) {
    constexpr EnergyRegister metered[] = {EDmdWh, EDmdVArh};
    for (u32 i = 0; i < 2; i++) {
        const u32 pulses = registerContent(instrument->energies.value[metered[i]]) -
                           registerContent(before.value[metered[i]]);
        if (pulses != 0) {
            countPulses(instrument, 6 + i, pulses);
        }
    }
}

} // namespace

void refreshRealTime(Instrument *instrument) {
    const Region region = instrument->shared.region;
    const Method method = methodOf(region);
    if (instrument->held) {
        instrument->methodTouched |= method != instrument->method;
        return;
    }
    const bool isNew = adoptMethod(instrument, method);
    const Quantities quantities = measureAt(*instrument, method, instrument->seconds);
    updateRealTime(instrument, quantities);
    if (isNew) {
        addToMonth(instrument);
        addSample(&instrument->demand.running, demandSample(quantities));
        showNewMethod(instrument);
        readState(region, &instrument->state);
    }
}

namespace {

// The voltages of a tick: those of the last second, less what a disturbance takes.
void lookAtVoltages(Instrument *instrument) {
    f64 undisturbed[3];
    f64 shares[3];
    Phasor phases[3];
    for (int p = 0; p < 3; p++) {
        undisturbed[p] = std::abs(instrument->undisturbed[p]);
    }
    shareVoltages(&instrument->disturbances, instrument->ticks, undisturbed, instrument->method.ratedVolts,
                  shares);
    for (int p = 0; p < 3; p++) {
        phases[p] = instrument->undisturbed[p] * shares[p];
        instrument->phaseVolts[p] = undisturbed[p] * shares[p];
    }
    for (int p = 0; p < 3; p++) {
        instrument->lineVolts[p] = std::abs(phases[p] - phases[(p + 1) % 3]);
    }
}

void liveSecond(Instrument *instrument) {
    const Region region = instrument->shared.region;
    const Method method = methodOf(region);
    instrument->seconds += 1;
    instrument->steps++;
    finishShares(&instrument->disturbances, instrument->grid.share);
    const bool isNew = adoptMethod(instrument, method);
    const Quantities quantities = measureAt(*instrument, method, instrument->seconds);
    const Energies before = instrument->energies;
    integrate(&instrument->energies, quantities, 1);
    countMetered(instrument, before);
    updateRealTime(instrument, quantities);
    addToMonth(instrument);
    addFlicker(instrument, instrument->seconds);
    if (instrument->flicker.samples >= shortTermLength) {
        finishShortTerm(instrument);
    }
    addSample(&instrument->demand.running, demandSample(quantities));
    const DemandSettings settings = demandSettings(region);
    if (instrument->demand.running.count >= settings.length) {
        finishDemand(instrument, settings.periods);
    }
    if (instrument->steps % slowPace == 0) {
        writeEnergies(instrument);
        predictDemand(instrument);
    }
    if (instrument->steps % statisticsPace == 0 && instrument->extremesMoved) {
        writeThisMonth(instrument);
    }
    if (isNew) {
        showNewMethod(instrument);
    }
    readState(region, &instrument->state);
    lookAtMains(instrument);
}

} // namespace

void addVariation(Instrument *instrument, u8 phases, f64 level, u64 length) {
    const u64 first = instrument->ticks;
    instrument->disturbances.variations.push_back({phases, level, first, first + length});
}

void lookAtMains(Instrument *instrument) {
    Grid plain = instrument->grid;
    std::fill(std::begin(plain.share), std::end(plain.share), 1.0);
    const Phasors phasors = phasorsAt(plain, instrument->seconds, false);
    for (int p = 0; p < 3; p++) {
        instrument->undisturbed[p] =
            std::polar(rms(phasors.voltage[p]), std::arg(phasors.voltage[p].order[1]));
    }
}

bool tickInstrument(Instrument *instrument, u64 lateNs) {
    instrument->lateNs = lateNs;
    takeChances(instrument);
    lookAtVoltages(instrument);
    watchVoltages(instrument);
    watchTransients(instrument);
    endPulses(instrument);
    instrument->ticks++;
    const bool isSecond = instrument->ticks % ticksPerSecond == 0;
    if (isSecond) {
        liveSecond(instrument);
    }
    watchSetPoints(instrument);
    watchLogicGroups(instrument);
    releaseOutputs(instrument);
    instrument->lateNs = 0;
    return isSecond;
}

void stepInstrument(Instrument *instrument) {
    for (u32 left = ticksPerSecond; left > 0; left--) {
        tickInstrument(instrument, (left - 1) * tickNs);
    }
}

} // namespace ied::instrument
