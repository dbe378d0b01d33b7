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

} // namespace ied
