// Limits of parameters that depend on other parameters, or that are not a plain range.
#pragma once

#include "ied-device/parameters.h"

namespace ied::instrument {

// Whether a parameter, as it stands in the area that begins at `area` (region::liveArea or
// region::editArea), fits the others there. A parameter without such a limit always does.
bool fitsOthers(Region region, u32 area, const Parameter &parameter);

// Whether every parameter that fits the others in the live area of one region does so in that of another
// one too.
bool keepsFit(Region before, Region after);

} // namespace ied::instrument
