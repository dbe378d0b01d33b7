// What befalls the mains for a short time: dips, swells, interruptions and transients. They are part
// of the physical state; whether the instrument notices them is its own affair.
#pragma once

#include "platform/types.h"

#include <vector>

namespace ied::instrument {

inline constexpr u32 ticksPerSecond = 100; // the instrument looks at the mains every 10 ms
inline constexpr u64 tickNs = 10'000'000;

enum Phases : u8 {
    PhaseA = 1,
    PhaseB = 2,
    PhaseC = 4,
    AllPhases = 7,
};

// Phase voltages of `level`, as a ratio to the rated one, from tick `first` to before tick `end`.
struct Disturbance {
    u8 phases;
    f64 level;
    u64 first;
    u64 end;
};

// An impulse that is over at tick `end`.
struct Transient {
    f64 level; // peak, as a ratio to the rated peak
    u32 microseconds;
    u64 end;
};

struct Disturbances {
    std::vector<Disturbance> variations;
    std::vector<Transient> transients;
    f64 squares[3] = {}; // sum over the ticks of the running second of the squared shares
};

// Voltages of the phases at a tick, as shares of the undisturbed `volts`, where `rated` is the rated
// phase voltage. Of several disturbances of a phase the newest counts; those that are over are
// forgotten. The shares go into the running second too.
void shareVoltages(Disturbances *disturbances, u64 tick, const f64 *volts, f64 rated, f64 *shares);

// Ends the second: the shares that give its RMS values.
void finishShares(Disturbances *disturbances, f64 *shares);

// Takes the transients that are over at a tick out of the list.
std::vector<Transient> takeTransients(Disturbances *disturbances, u64 tick);

} // namespace ied::instrument
