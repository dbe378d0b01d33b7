// Flicker severity of a periodic rectangular voltage change (IEC 61000-3-3, IEC 61000-4-15).
#pragma once

#include "platform/types.h"

#include <span>

namespace ied::instrument {

// Relative voltage change in percent that gives Pst = 1 at `rate` changes a minute; beyond the ends
// of the curve (0.1 and 2875) its last value.
f64 pstOneDepth(f64 rate);

// Short-term severity of changes of `depth` percent at `rate` changes a minute.
f64 shortTermSeverity(f64 depth, f64 rate);

// Long-term severity: the cubic mean of the short-term values (twelve of ten minutes each).
f64 longTermSeverity(std::span<const f64> pst);

} // namespace ied::instrument
