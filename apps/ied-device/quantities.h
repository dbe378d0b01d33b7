// What the instrument measures: every value once, in base units (V, A, W, var, VA, Hz; ratios as
// such, not in percent; degrees for angles), computed from the phasors.
#pragma once

#include "ied-device/grid.h"

namespace ied::instrument {

// Scalar values. A group of three or four is by phase (A, B, C, neutral; AB, BC, CA); QTotW and its
// like follow their phases.
enum Quantity : u16 {
    QPhV = 0,
    QAvgPhV = 4,
    QPPV = 5,
    QAvgPPV = 8,
    QA = 9,
    QAvgA = 13,
    QW = 14,
    QTotW = 17,
    QVAr = 18,
    QTotVAr = 21,
    QVA = 22,
    QTotVA = 25,
    QPF = 26,
    QTotPF = 29,
    QHz = 30,
    QHzDev = 31,
    QVDev = 32,
    QThdV = 35,
    QThdOddV = 39,
    QThdEvnV = 43,
    QThdA = 47,
    QThdOddA = 51,
    QThdEvnA = 55,
    QIThdV = 59,
    QIThdOddV = 63,
    QIThdEvnV = 67,
    QIThdA = 71,
    QIThdOddA = 75,
    QIThdEvnA = 79,
    QKf = 83,
    QDV = 87,
    QAvgDV = 91,
    QDA = 92,
    QAvgDA = 96,
    QDW = 97,
    QTotDW = 100,
    QDVAr = 101,
    QTotDVAr = 104,
    QDVA = 105,
    QTotDVA = 108,
    QDPF = 109,
    QTotDPF = 112,
    QImbNgV = 113,
    QImbZrV = 114,
    QImbNgA = 115,
    QImbZrA = 116,
    QSeqV = 117,
    QSeqA = 120, // positive, negative, zero
    QuantityCount = 123,
};

// Channels of spectra: voltages (A, B, C, neutral, or AB, BC, CA and nothing) and currents.
inline constexpr int channels = 8;

struct Quantities {
    f64 value[QuantityCount];
    f64 angle[channels];            // of the fundamental, degrees from 0 below 360; the first voltage is at 0
    f64 spectrum[channels][orders]; // index is the order; ratios, or volts and amperes
    f64 inter[channels][orders];    // interharmonic groups, likewise
    f64 harmonicW[orders];          // active power of each order, all phases
    f64 harmonicVAr[orders];
};

// The parameters that say how to measure.
struct Method {
    f64 ratedVolts; // phase to neutral
    f64 ratedHertz;
    bool delta;         // phase-to-phase voltages on three wires
    bool absoluteVolts; // voltage spectra in volts, not as ratios
    bool absoluteAmperes;
    bool rmsBase;        // ratios refer to the RMS value, not to the fundamental
    bool scalarPower;    // total apparent power is the sum of the phases' ones
    u16 powerFactorSign; // 0 sign of the active power, 1 negative when lagging, 2 the reverse of 1
    bool reversed[3];    // current transformers connected the wrong way round

    bool operator==(const Method &) const = default;
};

// Everything at once. Phase values that the wiring does not give are 0.
Quantities measure(const Phasors &phasors, const Method &method);

} // namespace ied::instrument
