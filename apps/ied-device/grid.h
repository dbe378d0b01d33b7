// The physical state of the mains and the load: what somebody has set, and the phasors of voltages
// and currents that follow from it at a moment. Everything that the instrument measures is computed
// from these phasors, so that its values agree with each other.
#pragma once

#include "platform/types.h"

#include <complex>

namespace ied::instrument {

using Phasor = std::complex<f64>; // RMS value and angle

inline constexpr int orders = 64;    // harmonic orders 0 (direct) to 63
inline constexpr int conductors = 4; // phases A, B, C and neutral

struct Harmonic {
    f64 ratio; // to the fundamental
    f64 angle; // radians, added to order times the phase's angle
};

struct Load {
    f64 amperes; // of the fundamental
    f64 angle;   // radians that the current lags the voltage; beyond a quarter turn it exports
};

// What can be set. Ratios are to the fundamental of the positive sequence.
struct Grid {
    f64 volts = 230.0; // phase voltage at level 1
    f64 hertz = 50.0;
    f64 level = 1.0; // of the voltage
    f64 negativeSequence = 0.004;
    f64 zeroSequence = 0.003;
    Load load[3];
    Harmonic voltage[orders]; // from order 2 on
    Harmonic current[orders];
    f64 interVoltage = 0.0004; // interharmonic group behind order 0; falls with the order
    f64 interCurrent = 0.002;
    f64 flickerDepth = 0.35;  // relative voltage change in percent
    f64 flickerRate = 110.0;  // changes a minute
    bool drift = true;        // slow movement of all of it
    bool reversed = false;    // phase sequence A, C, B
    f64 share[3] = {1, 1, 1}; // of the voltage that a disturbance leaves in each phase; loads follow it
};

// A grid with the usual pollution of a low-voltage network and a load of `amperes`.
Grid usualGrid(f64 volts, f64 hertz, f64 amperes);

// One channel: harmonics as phasors, interharmonic groups (group i lies between orders i and i + 1)
// as RMS values.
struct Spectrum {
    Phasor order[orders];
    f64 inter[orders];
};

struct Phasors {
    f64 hertz;
    Spectrum voltage[conductors]; // phase to neutral; the neutral's is that of the star point
    Spectrum current[conductors]; // the neutral's is the sum of the phases
    f64 flickerDepth[3];          // of each phase, percent
    f64 flickerRate;
};

// The phasors `seconds` after the epoch. The angle of a phase's voltage at time 0 is that of a
// symmetrical system with phase A at 0. With `threeWire` there is no neutral: neither voltages nor
// currents have a zero sequence.
Phasors phasorsAt(const Grid &grid, f64 seconds, bool threeWire);

} // namespace ied::instrument
