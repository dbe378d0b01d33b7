// The pieces of the instrument's work that its start and its daily life share. Each writes its block
// and raises the counter.
#pragma once

#include "ied-device/instrument.h"

namespace ied::instrument {

inline constexpr u32 minute = 60; // seconds
inline constexpr u32 shortTermLength = 10 * minute;

struct DemandSettings {
    u32 periods; // of the window
    u32 length;  // of a period, seconds
    f64 weight;  // of the present value in a prediction
};
DemandSettings demandSettings(Region region);

// What the instrument would measure at a moment.
Quantities measureAt(const Instrument &instrument, const Method &method, f64 seconds);

// Takes up the voltages that the ticks of the next second begin with.
void lookAtMains(Instrument *instrument);

void updateRealTime(Instrument *instrument, const Quantities &quantities);
// Takes over a method. True if it is another than the one before: the demand window and, after a
// change of the wiring, the flicker are empty then, and extremes that mean something else have been
// forgotten.
bool adoptMethod(Instrument *instrument, const Method &method);
// Writes all that adoptMethod has begun anew; the demand window holds a sample again.
void showNewMethod(Instrument *instrument);
// One more second of the running ten minutes.
void addFlicker(Instrument *instrument, f64 seconds);
void finishShortTerm(Instrument *instrument);
void finishDemand(Instrument *instrument, u32 periods);
void predictDemand(Instrument *instrument);
void addToMonth(Instrument *instrument);
void writeThisMonth(Instrument *instrument);
void writeLastMonth(Instrument *instrument);
void writeEnergies(Instrument *instrument);

} // namespace ied::instrument
