// Binary states, events and recorder states of the mirror ("ST", "SOE", "RD").
#pragma once

#include "device/protoData.h"

#include <array>

namespace ied {

// Records by bit of a ring's state field or of the self-check word; null where a bit has no object
// of the model.
extern const std::array<SPS *, 8> DISTAddrList;
extern const std::array<CtlObj *, 6> DOSTAddrList; // RO1 to RO4, DO1, DO2
extern const std::array<SPS *, 32> SPSTAddrList;
extern const std::array<SPS *, 8> LGSTAddrList;
extern const std::array<SPS *, 18> CHKSTAddrList;
inline constexpr u32 relayNum = 4;     // before DO1 in that list and in the output state word
inline constexpr u32 checkBattery = 2; // bit of ST.batFlt, which stays invalid

// First states of the "ST" and of the "RD" records.
void stDataInit();
void RDDataInit();

// Sources of binary states.
enum StType : u8 {
    StDI,
    StDO,
    StSP,
    StLG,
    StCheck
};
// Plays what is new of a source into the model, entry by entry, and waits after each for the monitor
// task. For a ring `last` is the read position and the result the new one; for StCheck the result is
// the self-check word. 0, after a message, for any other type.
u32 refreshSTData(u32 type, u32 last);
// The same for the log of voltage events and transients: `last` is the read position, the result the
// new one.
u32 SOEDataRefresh(u32 last);
// Shows a new record of wave group 0 or 1. The result is the group's counter.
u32 RDDataRefresh(u32 group);

} // namespace ied
