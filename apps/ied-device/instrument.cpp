#include "ied-device/instrument.h"

#include "ied-device/measuring.h"
#include "ied-device/state.h"

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

void stepInstrument(Instrument *instrument) {
    const Region region = instrument->shared.region;
    const Method method = methodOf(region);
    instrument->seconds += 1;
    instrument->steps++;
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
}

} // namespace ied::instrument
