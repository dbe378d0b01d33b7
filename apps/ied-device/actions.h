// What the instrument does by itself when a setpoint, a logic group or a voltage event tells it to.
#pragma once

#include "ied-device/instrument.h"

namespace ied::instrument {

// Carries out an action by its number, when what calls for it becomes active: 1 to 4 close the relays
// RO1 to RO4, 5 and 6 the outputs DO1 and DO2, 31 and 32 start a wave record of group 1 or 2. All other
// numbers do nothing.
void act(Instrument *instrument, u32 action);

// Bit of the output that an action closes, as in region::outputState, or no bit.
u32 outputOfAction(u32 action);

// Opens the outputs that something active has called for until now and nothing calls for any more.
// One whose pulse runs stays closed until that is over.
void releaseOutputs(Instrument *instrument);

// Announces a wave record of a group (0 or 1). False if the group keeps no records.
bool startRecord(Instrument *instrument, u32 group);

} // namespace ied::instrument
