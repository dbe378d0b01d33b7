// What waiting needs to know of the clock that tests hold.
#pragma once

#include "platform/types.h"

namespace ied {

// True when clockOps gives the host's own clock.
bool clockIsHost();
// True when the clock is held and a wait of any task moves it.
bool heldClockMovesItself();
// Moves the held clock on to `ns`, never back.
void heldClockMoveTo(u64 ns);

} // namespace ied
