#include "ied-device/chance.h"

#include "ied-device/parameters.h"

namespace ied::instrument {

namespace {

constexpr f64 ticksPerMinute = 60.0 * ticksPerSecond;

// Number from 0 to below 1 (SplitMix64).
f64 draw(u64 *seed) {
    u64 z = *seed += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return static_cast<f64>((z ^ (z >> 31)) >> 11) / 9007199254740992.0;
}

u32 drawBelow(u64 *seed, u32 end) {
    return static_cast<u32>(draw(seed) * end);
}

void changeInput(Instrument *instrument, u64 *seed) {
    const Region region = instrument->shared.region;
    const u32 input = drawBelow(seed, region::DIMod.count);
    if (load(region, region::DIMod, input) == 0) {
        setInput(instrument, input, (load(region, region::diState) >> input & 1) == 0);
    }
}

void changeOutput(Instrument *instrument, u64 *seed) {
    const u32 output = drawBelow(seed, region::outputClose.count);
    const u16 state = load(instrument->shared.region, region::outputState);
    operateOutput(instrument, output, (state >> output & 1) == 0);
}

void changeLoad(Instrument *instrument, u64 *seed) {
    static const Parameter primary = findParameter("SET.sys.TAPri");
    const f64 rated = inForce(instrument->shared.region, primary);
    instrument->grid.load[drawBelow(seed, 3)].amperes = rated * (0.2 + 0.7 * draw(seed));
}

void vary(Instrument *instrument, u8 phases, f64 level, f64 seconds) {
    addVariation(instrument, phases, level, 1 + static_cast<u64>(seconds * ticksPerSecond));
}

u8 somePhases(u64 *seed) {
    return static_cast<u8>(1 + drawBelow(seed, AllPhases));
}

void dip(Instrument *instrument, u64 *seed) {
    vary(instrument, somePhases(seed), 0.15 + 0.7 * draw(seed), 0.02 + draw(seed));
}

void swell(Instrument *instrument, u64 *seed) {
    vary(instrument, somePhases(seed), 1.12 + 0.2 * draw(seed), 0.02 + draw(seed));
}

void interrupt(Instrument *instrument, u64 *seed) {
    vary(instrument, AllPhases, 0.03 * draw(seed), 0.1 + 3 * draw(seed));
}

void strike(Instrument *instrument, u64 *seed) {
    const u32 microseconds = 20 + drawBelow(seed, 4000);
    instrument->disturbances.transients.push_back({1 + 3 * draw(seed), microseconds, instrument->ticks + 1});
}

using Event = void (*)(Instrument *, u64 *);
constexpr Event events[] = {changeInput, changeInput, changeInput, changeOutput, changeLoad,
                            dip,         dip,         swell,       interrupt,    strike};

} // namespace

void takeChances(Instrument *instrument) {
    Chance &chance = instrument->chance;
    if (chance.rate > 0 && draw(&chance.seed) < chance.rate / ticksPerMinute) {
        events[drawBelow(&chance.seed, std::size(events))](instrument, &chance.seed);
    }
}

} // namespace ied::instrument
