// Logic groups: each combines up to four setpoint alarms.
#pragma once

#include "platform/types.h"

namespace ied::instrument {

struct Instrument;

inline constexpr u32 logicGroupCount = 8;

struct LogicGroups {
    u32 active = 0; // bit i: output of group i + 1
};

// One look at all groups, with the entry in the ring and the actions that follow. What a group does
// stands in the live area:
//   LogicEna         0 off
//   input1 to input4 numbers of setpoints, 0 for an input that is not used
//   logic1 to logic3 operators between them, from the left: 0 and, 1 or, 2 nand, 3 nor; the one before
//                    an unused input is passed over
//   Trg1, Trg2       what to do with it (see actions.h)
void watchLogicGroups(Instrument *instrument);

// Bits of the outputs that a group calls for.
u32 outputsOfLogicGroups(const Instrument &instrument);

} // namespace ied::instrument
