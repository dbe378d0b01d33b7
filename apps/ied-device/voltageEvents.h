// Detection of voltage dips, swells, interruptions and transients (IEC 61000-4-30 5.4 to 5.6) against
// the thresholds in force, which are percentages of the rated voltage.
#pragma once

#include "platform/types.h"

namespace ied::instrument {

struct Instrument;

// Thresholds as they stand in the live area.
struct VariationLimits {
    bool enabled;
    f64 swell; // percent of the rated voltage
    f64 dip;
    f64 interruption;
};

enum class Variation : u8 {
    None,
    Swell,
    Dip,
    Interruption,
};

// Too high and too low voltages are followed apart, since a fault may bring both at once.
struct RunningVariation {
    Variation kind = Variation::None;
    u64 since = 0;   // tick
    f64 extreme = 0; // percent
};
struct VoltageEvents {
    RunningVariation high;
    RunningVariation low;
    bool transient = false; // one was noticed in the running tick
};

// Which variation it is when the lowest and the highest of the measured voltages are so many percent
// of the rated one. A dip or swell begins with the first voltage beyond its threshold and ends when
// all are back by more than the hysteresis of 2 %; an interruption begins when all voltages are below
// its threshold and ends when one is back. `before` is what it was at the last look. A dip that
// deepens to an interruption ends there.
Variation judgeHigh(Variation before, f64 highest, const VariationLimits &limits);
Variation judgeLow(Variation before, f64 lowest, f64 highest, const VariationLimits &limits);

// One look at the voltages of the running tick, with the entries in the log and the actions that
// follow.
void watchVoltages(Instrument *instrument);
void watchTransients(Instrument *instrument);

// Bits of the outputs that a running variation, or a transient of this tick, calls for.
u32 outputsOfVoltageEvents(const Instrument &instrument);

} // namespace ied::instrument
