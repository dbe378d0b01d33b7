#include "ied-device/instrument.h"

namespace ied::instrument {

namespace {

// The slot first, then the counter that shows it.
template <class State> void appendEntry(Region region, const region::RegionRing<State> &ring, State state) {
    const u32 slot = load(region, ring.counter) % ring.slots;
    store(region, ring.time, instrumentTime(), slot);
    store(region, ring.state, state, slot);
    raise(region, ring.counter);
}

template <class Word> Word withBit(Word word, u32 bit, bool set) {
    const u32 mask = 1u << bit;
    return static_cast<Word>(set ? word | mask : word & ~mask);
}

} // namespace

bool countPulses(Instrument *instrument, u32 input, u32 count) {
    const Region region = instrument->shared.region;
    if (load(region, region::DIMod, input) != 1) {
        return false;
    }
    store(region, region::ioTime, instrumentTime());
    store(region, region::pulseCount, load(region, region::pulseCount, input) + count, input);
    raise(region, region::dspFlag, region::DspPulse);
    return true;
}

void setInput(Instrument *instrument, u32 input, bool closed) {
    const Region region = instrument->shared.region;
    const u8 state = withBit(load(region, region::diState), input, closed);
    store(region, region::diState, state);
    appendEntry(region, region::diRing, state);
}

void setOutput(Instrument *instrument, u32 output, bool closed) {
    const Region region = instrument->shared.region;
    const u16 state = withBit(load(region, region::outputState), output, closed);
    store(region, region::outputState, state);
    appendEntry(region, region::doRing, state);
}

} // namespace ied::instrument
