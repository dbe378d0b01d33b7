// What the instrument does by itself when a setpoint, a logic group or a voltage event tells it to.
#pragma once

#include "ied-device/instrument.h"
#include "ied-device/parameters.h"

namespace ied::instrument {

// Carries out the actions of a family, as SET.setpoint1.Trg1, for each of its groups that has become
// active, given as bits. Of the numbers of actions, 1 to 4 close the relays RO1 to RO4, 5 and 6 the outputs
// DO1 and DO2, 31 and 32 start a wave record of group 1 or 2; all other numbers do nothing.
void act(Instrument *instrument, const Parameter &family, u32 groups = 1);

// Bits of the outputs that these actions close, as in region::outputState.
u32 outputsCalledFor(Region region, const Parameter &family, u32 groups = 1);

// Opens the outputs that something active has called for until now and nothing calls for any more.
// One whose pulse runs stays closed until that is over.
void releaseOutputs(Instrument *instrument);

// Announces a wave record of a group (0 or 1). False if the group keeps no records.
bool startRecord(Instrument *instrument, u32 group);

} // namespace ied::instrument
