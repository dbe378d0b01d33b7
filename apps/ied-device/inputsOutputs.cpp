#include "ied-device/eventRings.h"
#include "ied-device/instrument.h"
#include "ied-device/parameters.h"

namespace ied::instrument {

namespace {

constexpr u16 modeStatus = 0;
constexpr u16 modePulses = 1;
constexpr u32 relays = 4;

template <class Word> Word withBit(Word word, u32 bit, bool set) {
    const u32 mask = 1u << bit;
    return static_cast<Word>(set ? word | mask : word & ~mask);
}

void showOutput(Instrument *instrument, u32 output, bool closed) {
    const Region region = instrument->shared.region;
    const u16 before = load(region, region::outputState);
    const u16 state = withBit(before, output, closed);
    if (state != before) {
        store(region, region::outputState, state);
        appendEntry(*instrument, region::doRing, state);
    }
}

// Ticks that an output stays closed, 0 for no limit.
u64 pulseLength(Region region, u32 output) {
    static const Parameter relay = findParameter("SET.IO.ROPlsTm1");
    static const Parameter digital = findParameter("SET.IO.DOPlsTm1");
    const f64 length =
        output < relays ? inForce(region, relay, 0, output) : inForce(region, digital, 0, output - relays);
    return static_cast<u64>(length);
}

} // namespace

bool countPulses(Instrument *instrument, u32 input, u32 count) {
    const Region region = instrument->shared.region;
    if (load(region, region::DIMod, input) != modePulses) {
        return false;
    }
    store(region, region::ioTime, eventTime(*instrument));
    store(region, region::pulseCount, load(region, region::pulseCount, input) + count, input);
    raise(region, region::dspFlag, region::DspPulse);
    return true;
}

void setInput(Instrument *instrument, u32 input, bool closed) {
    const Region region = instrument->shared.region;
    const u8 before = load(region, region::diState);
    const u8 state = withBit(before, input, closed);
    if (state == before) {
        return;
    }
    store(region, region::diState, state);
    if (load(region, region::DIMod, input) == modeStatus) {
        appendEntry(*instrument, region::diRing, state);
    } else if (closed) {
        countPulses(instrument, input, 1);
    }
}

bool operateOutput(Instrument *instrument, u32 output, bool close) {
    const Region region = instrument->shared.region;
    if (output >= relays && load(region, region::DOMod, output - relays) != 0) {
        return false;
    }
    const u64 length = close ? pulseLength(region, output) : 0;
    instrument->openAt[output] = length == 0 ? 0 : instrument->ticks + length;
    showOutput(instrument, output, close);
    return true;
}

void endPulses(Instrument *instrument) {
    for (u32 output = 0; output < region::outputClose.count; output++) {
        u64 &openAt = instrument->openAt[output];
        if (openAt != 0 && openAt <= instrument->ticks) {
            openAt = 0;
            showOutput(instrument, output, false);
        }
    }
}

} // namespace ied::instrument
