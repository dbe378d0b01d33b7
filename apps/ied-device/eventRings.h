// The rings in which the instrument keeps its events: digital inputs, outputs, setpoints, logic groups
// and the log of power quality events.
#pragma once

#include "ied-device/instrument.h"

namespace ied::instrument {

// Time of what happens now: that of the running tick of the instrument's clock, or of the clock device
// between two ticks.
TimeStamp eventTime(const Instrument &instrument);

// One more entry: the slot first, then the counter that shows it.
template <class State>
void appendEntry(const Instrument &instrument, const region::RegionRing<State> &ring, State state) {
    const Region region = instrument.shared.region;
    const u32 slot = load(region, ring.counter) % ring.slots;
    store(region, ring.time, eventTime(instrument), slot);
    store(region, ring.state, state, slot);
    raise(region, ring.counter);
}

// State that the newest entry of a ring shows, 0 for an empty ring.
template <class State> State newestState(Region region, const region::RegionRing<State> &ring) {
    const u32 count = load(region, ring.counter);
    return count == 0 ? State{0} : load(region, ring.state, (count - 1) % ring.slots);
}

enum PqType : u8 {
    PqVariation = 1,
    PqTransient = 2,
};
// Of a variation; 0 stands for a transient.
enum PqSubType : u8 {
    SwellStart = 1,
    SwellEnd = 2,
    DipStart = 3,
    DipEnd = 4,
    InterruptionStart = 5,
    InterruptionEnd = 6,
};
struct PqEntry {
    PqType type;
    u8 subType;
    f64 percent;  // of the rated voltage
    u32 duration; // ms of a variation, microseconds of a transient
};
void appendPqEntry(const Instrument &instrument, const PqEntry &entry);

} // namespace ied::instrument
