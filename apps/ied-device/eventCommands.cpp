// Commands that make events.
#include "ied-device/actions.h"
#include "ied-device/commandTable.h"
#include "ied-device/selfCheck.h"

#include <algorithm>

namespace ied::instrument {

namespace {

constexpr u64 tickUs = tickNs / 1000;
constexpr u32 mostRepeats = 100'000;

u64 ticksOf(u64 microseconds) {
    return std::max<u64>(1, (microseconds + tickUs - 1) / tickUs);
}

// Voltages of a level between the limits in percent, for as long as the word behind it says.
bool vary(Instrument *instrument, Arguments &arguments, f64 low, f64 high) {
    std::size_t at = 1;
    const u8 phases = arguments.phases(&at);
    const f64 level = high > 0 ? arguments.ratio(at++, low, high) : 0;
    const u64 length = ticksOf(arguments.duration(at));
    if (arguments.sound()) {
        addVariation(instrument, phases, level, length);
    }
    return arguments.sound();
}

bool dip(Instrument *instrument, Arguments &arguments, Reply *) {
    return vary(instrument, arguments, 0, 100);
}

bool swell(Instrument *instrument, Arguments &arguments, Reply *) {
    return vary(instrument, arguments, 100, 300);
}

bool interruption(Instrument *instrument, Arguments &arguments, Reply *) {
    return vary(instrument, arguments, 0, 0);
}

bool transient(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 level = arguments.ratio(1, 0, 2000);
    const u64 length = arguments.duration(2);
    if (!arguments.sound() || length > 1'000'000) {
        return false;
    }
    instrument->disturbances.transients.push_back(
        {level, static_cast<u32>(length), instrument->ticks + length / tickUs});
    return true;
}

bool pulse(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const u32 input = arguments.whole(1, 1, region::DIMod.count);
    const u32 count = arguments.whole(2, 0, 1'000'000'000, 1);
    if (arguments.sound() && !countPulses(instrument, input - 1, count)) {
        const std::string number = std::to_string(input);
        refuse(reply, "input " + number + " does not count pulses: set SET.IO.DIMod" + number + " 1");
    }
    return arguments.sound();
}

// How often to set a state, and to which one: each time the other one for "toggle".
struct Wanted {
    bool toggles;
    bool closed;
    u32 times;
};

Wanted wanted(Arguments &arguments) {
    const std::size_t word = arguments.oneOf(2, {"0", "1", "toggle"});
    const bool toggles = word == 2;
    const u32 times = toggles ? arguments.whole(3, 1, mostRepeats, 1) : 1;
    return {toggles, word == 1, times};
}

bool input(Instrument *instrument, Arguments &arguments, Reply *) {
    const u32 number = arguments.whole(1, 1, region::DIMod.count) - 1;
    const Wanted want = wanted(arguments);
    if (!arguments.sound()) {
        return false;
    }
    for (u32 i = 0; i < want.times; i++) {
        const bool before = (load(instrument->shared.region, region::diState) >> number & 1) != 0;
        setInput(instrument, number, want.toggles ? !before : want.closed);
    }
    return true;
}

bool output(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const auto number = static_cast<u32>(arguments.oneOf(1, {"RO1", "RO2", "RO3", "RO4", "DO1", "DO2"}));
    const Wanted want = wanted(arguments);
    if (!arguments.sound()) {
        return false;
    }
    for (u32 i = 0; i < want.times; i++) {
        const bool before = (load(instrument->shared.region, region::outputState) >> number & 1) != 0;
        if (!operateOutput(instrument, number, want.toggles ? !before : want.closed)) {
            refuse(reply, arguments.text(1) + " is in use for something else: set SET.IO.DOMod" +
                              arguments.text(1).substr(2) + " 0");
            return true;
        }
    }
    return true;
}

bool record(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const u32 group = arguments.whole(1, 1, region::waveCount.count);
    if (arguments.sound() && !startRecord(instrument, group - 1)) {
        const std::string number = std::to_string(group);
        refuse(reply, "group " + number + " keeps no records: set SET.wave" + number + ".MaxNumRcd");
    }
    return arguments.sound();
}

bool check(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const std::string name = arguments.text(1);
    const bool faulty = arguments.among(2, "1", "0");
    if (!arguments.sound()) {
        return false;
    }
    std::string names;
    for (const CheckRow &row : checkRows()) {
        if (name == row.name) {
            setCheck(instrument, row.bit, faulty);
            return true;
        }
        names += std::string(" ") + row.name;
    }
    refuse(reply, "no flag " + name + "; there are" + names);
    return true;
}

bool reset(Instrument *instrument, Arguments &arguments, Reply *) {
    const Region region = instrument->shared.region;
    struct Row {
        RegionField<u32> counter;
        u32 index;
    };
    const Row rows[] = {{region::diRing.counter, 0}, {region::doRing.counter, 0}, {region::spRing.counter, 0},
                        {region::lgRing.counter, 0}, {region::pqCounter, 0},      {region::waveCount, 0},
                        {region::waveCount, 1}};
    const Row &row = rows[arguments.oneOf(1, {"di", "do", "sp", "lg", "pq", "wave1", "wave2"})];
    if (arguments.sound()) {
        publish(*regionPlace(region.base, row.counter, row.index), 0);
    }
    return arguments.sound();
}

bool chance(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 rate = arguments.number(1, 0, 6000);
    const bool seeded = arguments.has(2);
    const u32 seed = arguments.whole(2, 0, 1'000'000'000, 0);
    if (arguments.sound()) {
        instrument->chance.rate = rate;
        instrument->chance.seed = seeded ? seed : monotonicNs();
    }
    return arguments.sound();
}

constexpr CommandRow commands[] = {
    {"input", "INPUT 0|1|toggle [TIMES]", "a digital input opens, closes or changes", input},
    {"pulse", "INPUT [COUNT]", "pulses at an input that counts them", pulse},
    {"output", "RO1..RO4|DO1|DO2 0|1|toggle [TIMES]", "an output is operated at the device", output},
    {"dip", "[PHASES] PERCENT DURATION", "voltage down to so much of the rated one: dip A 40% 120ms", dip},
    {"swell", "[PHASES] PERCENT DURATION", "voltage up to so much: swell AB 120% 80ms", swell},
    {"interruption", "[PHASES] DURATION", "no voltage: interruption 2s", interruption},
    {"transient", "PERCENT DURATION", "an impulse of the voltage: transient 180% 500us", transient},
    {"record", "1|2", "a wave record of a group", record},
    {"check", "NAME 0|1",
     "a self-check flag, as flash (the server does not show battery); a wrong name lists all", check},
    {"reset", "di|do|sp|lg|pq|wave1|wave2", "begin a ring or a count of records at 0", reset},
    {"chance", "RATE [SEED]", "so many events a minute come by themselves", chance},
};

} // namespace

std::span<const CommandRow> eventCommands() {
    return commands;
}

} // namespace ied::instrument
