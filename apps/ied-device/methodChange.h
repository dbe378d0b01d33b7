// What a change of the parameters of the measurement does to the meaning of its values.
#pragma once

#include "ied-device/quantities.h"

namespace ied::instrument {

// Whether a value means something else under the one method than under the other, so that the two
// cannot be compared or averaged. The wiring is left out: it changes the values that exist, and
// which of them is a phase's and which a line's (isGiven, isTwofold).
bool meansOther(int quantity, const Method &before, const Method &after);

} // namespace ied::instrument
