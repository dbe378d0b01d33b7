// Setpoints: each watches one quantity or input and raises an alarm.
#pragma once

#include "platform/types.h"

namespace ied::instrument {

struct Instrument;

inline constexpr u32 setPointCount = 32;
inline constexpr u32 firstFastSetPoint = 24; // from 0; these few objects are watched in every tick

struct SetPoints {
    u32 active = 0;                 // bit i: alarm of setpoint i + 1
    u32 waited[setPointCount] = {}; // ticks for which its condition has differed from the alarm
};

// One look at all setpoints, with the entry in the ring and the actions that follow. What a setpoint
// does stands in the live area:
//   TrgMod  0 off, 1 alarm above OvStrVar or with a closed input, 2 alarm below UnStrVar or with an
//           open one
//   OvStrVar, UnStrVar  the limits: an alarm of too high a value is over below UnStrVar, one of too low
//           a value above OvStrVar; of several phases the one furthest out counts
//   ActTm, RetTm  time in hundredths of a second, which are ticks, for which the condition has to hold
//           until the alarm comes, and to be gone until it goes
//   Trg1, Trg2  what to do with it (see actions.h)
void watchSetPoints(Instrument *instrument);

// Bits of the outputs that an alarm calls for.
u32 outputsOfSetPoints(const Instrument &instrument);

} // namespace ied::instrument
