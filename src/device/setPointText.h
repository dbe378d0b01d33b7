// Texts of the setpoint alarms, by the quantity that a setpoint watches.
#pragma once

#include "platform/types.h"

#include <array>

namespace ied {

inline constexpr u32 setPointStrNum = 163;

// Over and under texts of one quantity: the first two for dU (UTF-8), the last two for d.
struct SetPointStr {
    const char *text[4];
};

// By MonObj of the setpoint.
extern const std::array<SetPointStr, setPointStrNum> setPointStr;

} // namespace ied
