// Events that nobody has called for.
#pragma once

#include "ied-device/instrument.h"

namespace ied::instrument {

// Lets happen what chance brings in one tick: an input changes, an output is operated at the device, the
// load of a phase changes, a dip, swell, interruption or transient of the mains.
void takeChances(Instrument *instrument);

} // namespace ied::instrument
