// Commands on the mains and the load.
#include "ied-device/commandTable.h"
#include "ied-device/parameters.h"

#include <cmath>
#include <numbers>

namespace ied::instrument {

namespace {

constexpr f64 quarter = std::numbers::pi / 2;
constexpr f64 percent = 0.01;

bool load(Instrument *instrument, Arguments &arguments, Reply *) {
    std::size_t at = 1;
    const u8 phases = arguments.phases(&at);
    const f64 amperes = arguments.number(at, -1e5, 1e5);
    const f64 factor = arguments.number(at + 1, 0, 1, 0.93);
    const bool leads = arguments.has(at + 2) && arguments.among(at + 2, "lead", "lag");
    if (!arguments.sound()) {
        return false;
    }
    const f64 angle = std::acos(factor) * (leads ? -1 : 1) + (amperes < 0 ? 2 * quarter : 0);
    for (int p = 0; p < 3; p++) {
        if ((phases >> p & 1) != 0) {
            instrument->grid.load[p] = {std::fabs(amperes), angle};
        }
    }
    return true;
}

bool voltage(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 level = arguments.number(1, 0, 200);
    instrument->grid.level = arguments.sound() ? level * percent : instrument->grid.level;
    return arguments.sound();
}

bool unbalance(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 negative = arguments.number(1, 0, 100);
    const f64 zero = arguments.number(2, 0, 100, instrument->grid.zeroSequence / percent);
    if (arguments.sound()) {
        instrument->grid.negativeSequence = negative * percent;
        instrument->grid.zeroSequence = zero * percent;
    }
    return arguments.sound();
}

bool harmonic(Instrument *instrument, Arguments &arguments, Reply *) {
    const bool isVoltage = arguments.among(1, "voltage", "current");
    const u32 order = arguments.whole(2, 2, orders - 1);
    const f64 ratio = arguments.number(3, 0, 200) * percent;
    const f64 angle = arguments.number(4, -360, 360, 0) / 90 * quarter;
    if (!arguments.sound()) {
        return false;
    }
    (isVoltage ? instrument->grid.voltage : instrument->grid.current)[order] = {ratio, angle};
    return true;
}

bool frequency(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 hertz = arguments.number(1, 40, 70);
    instrument->grid.hertz = arguments.sound() ? hertz : instrument->grid.hertz;
    return arguments.sound();
}

bool flicker(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 depth = arguments.number(1, 0, 50);
    const f64 rate = arguments.number(2, 0.1, 2875, instrument->grid.flickerRate);
    if (arguments.sound()) {
        instrument->grid.flickerDepth = depth;
        instrument->grid.flickerRate = rate;
    }
    return arguments.sound();
}

bool drift(Instrument *instrument, Arguments &arguments, Reply *) {
    const bool on = arguments.among(1, "on", "off");
    instrument->grid.drift = arguments.sound() ? on : instrument->grid.drift;
    return arguments.sound();
}

bool rotation(Instrument *instrument, Arguments &arguments, Reply *) {
    const bool reversed = arguments.among(1, "acb", "abc");
    instrument->grid.reversed = arguments.sound() ? reversed : instrument->grid.reversed;
    return arguments.sound();
}

constexpr CommandRow commands[] = {
    {"load", "[PHASES] AMPERES [PF [lead|lag]]", "current of the phases; negative exports: load C 170", load},
    {"voltage", "PERCENT", "level of the voltages", voltage},
    {"unbalance", "NEGATIVE [ZERO]", "sequence components of the voltage in percent", unbalance},
    {"rotation", "abc|acb", "phase sequence of the mains", rotation},
    {"harmonic", "voltage|current ORDER PERCENT [DEGREES]", "one harmonic, order 2 to 63", harmonic},
    {"frequency", "HERTZ", "frequency of the mains", frequency},
    {"flicker", "DEPTH [RATE]", "voltage changes: percent, changes a minute", flicker},
    {"drift", "on|off", "slow movement of all quantities", drift},
};

} // namespace

std::span<const CommandRow> gridCommands() {
    return commands;
}

} // namespace ied::instrument
