// The quantities that a setpoint can watch, by the number of its parameter MonObj.
#pragma once

#include "ied-device/instrument.h"

#include <optional>

namespace ied::instrument {

inline constexpr u32 monitoredObjects = 163; // with 0, which is nothing

// A quantity of several phases has a lowest and a highest value; a state has 0 or 1 as both and needs
// no limits.
struct Monitored {
    f64 lowest;
    f64 highest;
    bool isState;
};

// What an object holds now, in base units (V, A, W, var, VA, Hz; ratios as such), or nothing if the
// wiring or the mode of the input does not give it. `fast` takes phase and line voltages of the running
// tick instead of those of the last second.
//   1 to 10   phase voltage, line voltage, phase current, neutral voltage, neutral current, deviation of
//             the frequency, total active, reactive, apparent power, total power factor
//   11 to 18  digital inputs 1 to 8
//   19 to 22  demand of the total powers and of the power factor, 23 to 26 as predicted
//   27 to 32  distortion of the voltage, by odd and by even orders, likewise of the current
//   33 to 36  negative and zero sequence of the voltage, likewise of the current, to the positive one
//   37, 38    deviation of the voltage, reverse phase sequence
//   39 on     harmonics of voltage and current by turns, from order 2 to 63
std::optional<Monitored> monitored(const Instrument &instrument, u32 object, bool fast);

} // namespace ied::instrument
