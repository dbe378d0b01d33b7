#include "ied-device/console.h"

#include "ied-device/parameters.h"
#include "ied-device/state.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <numbers>
#include <sstream>
#include <vector>

namespace ied::instrument {

namespace {

using Words = std::vector<std::string>;

// A number that must be there and lie in a range; the first failure is kept.
class Arguments {
  public:
    explicit Arguments(const Words &words) : words_(words) {}
    bool has(std::size_t index) const { return index < words_.size(); }
    const std::string &text(std::size_t index) const { return words_[index]; }
    f64 number(std::size_t index, f64 low, f64 high) {
        char *end = nullptr;
        const char *begin = has(index) ? words_[index].c_str() : "";
        const f64 value = std::strtod(begin, &end);
        if (end == begin || *end != 0 || !(value >= low && value <= high)) {
            sound_ = false;
            return low;
        }
        return value;
    }
    f64 number(std::size_t index, f64 low, f64 high, f64 absent) {
        return has(index) ? number(index, low, high) : absent;
    }
    bool among(std::size_t index, const char *first, const char *second) {
        const bool known = has(index) && (words_[index] == first || words_[index] == second);
        sound_ = sound_ && known;
        return known && words_[index] == first;
    }
    std::size_t size() const { return words_.size(); }
    bool sound() const { return sound_; }

  private:
    const Words &words_;
    bool sound_ = true;
};

constexpr f64 quarter = std::numbers::pi / 2;
constexpr f64 percent = 0.01;

bool load(Instrument *instrument, Arguments &arguments, Reply *) {
    const std::string phases = "ABC";
    const bool one = arguments.has(1) && arguments.text(1).size() == 1 &&
                     phases.find(arguments.text(1)) != std::string::npos;
    const std::size_t at = one ? 2 : 1;
    const f64 amperes = arguments.number(at, -1e5, 1e5);
    const f64 factor = arguments.number(at + 1, 0, 1, 0.93);
    const bool leads = arguments.has(at + 2) && arguments.among(at + 2, "lead", "lag");
    if (!arguments.sound()) {
        return false;
    }
    const f64 angle = std::acos(factor) * (leads ? -1 : 1) + (amperes < 0 ? 2 * quarter : 0);
    for (std::size_t p = 0; p < 3; p++) {
        if (!one || phases.find(arguments.text(1)) == p) {
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
    const f64 order = arguments.number(2, 2, orders - 1);
    const f64 ratio = arguments.number(3, 0, 200) * percent;
    const f64 angle = arguments.number(4, -360, 360, 0) / 90 * quarter;
    if (!arguments.sound() || order != std::floor(order)) {
        return false;
    }
    (isVoltage ? instrument->grid.voltage : instrument->grid.current)[static_cast<int>(order)] = {ratio,
                                                                                                  angle};
    return true;
}

// A parameter comes with the values that follow from it, then its counter.
void setParameter(Instrument *instrument, const Parameter &parameter, f64 value) {
    const Region region = instrument->shared.region;
    storeParameter(region, region::liveArea, parameter, value);
    refreshRealTime(instrument);
    if (const u32 arm = paramArm(parameter)) {
        raise(region, region::armFlag, arm);
    }
}

bool wiring(Instrument *instrument, Arguments &arguments, Reply *) {
    const bool delta = arguments.among(1, "delta", "wye");
    if (arguments.sound()) {
        setParameter(instrument, findParameter("SET.sys.TVMod"), delta ? 1 : 0);
    }
    return arguments.sound();
}

bool pulse(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const f64 input = arguments.number(1, 1, 8);
    const f64 count = arguments.number(2, 0, 1e9, 1);
    if (!arguments.sound()) {
        return false;
    }
    if (!countPulses(instrument, static_cast<u32>(input) - 1, static_cast<u32>(count))) {
        reply->text = "input " + arguments.text(1) + " does not count pulses: set SET.IO.DIMod" +
                      arguments.text(1) + " 1\n";
        reply->failed = true;
    }
    return true;
}

bool input(Instrument *instrument, Arguments &arguments, Reply *) {
    const f64 number = arguments.number(1, 1, 8);
    const bool closed = arguments.among(2, "1", "0");
    if (arguments.sound()) {
        setInput(instrument, static_cast<u32>(number) - 1, closed);
    }
    return arguments.sound();
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

bool set(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const f64 value = arguments.number(2, -1e9, 1e9);
    if (!arguments.sound()) {
        return false;
    }
    const Parameter parameter = findParameter(arguments.text(1));
    if (parameter.row == nullptr || !parameterAllows(*parameter.row, value)) {
        reply->text = parameter.row == nullptr
                          ? "no parameter " + arguments.text(1) + "\n"
                          : arguments.text(1) + " takes " + std::to_string(parameter.row->low) + " to " +
                                std::to_string(parameter.row->high) + "\n";
        reply->failed = true;
        return true;
    }
    setParameter(instrument, parameter, value);
    return true;
}

bool hold(Instrument *instrument, Arguments &, Reply *) {
    instrument->held = true;
    return true;
}

bool resume(Instrument *instrument, Arguments &, Reply *) {
    instrument->held = false;
    return true;
}

bool state(Instrument *instrument, Arguments &arguments, Reply *reply) {
    std::vector<std::string> prefixes;
    for (std::size_t i = 1; i < arguments.size(); i++) {
        prefixes.push_back(arguments.text(i));
    }
    reply->text = stateJson(*instrument, prefixes);
    return true;
}

bool wait(Instrument *, Arguments &arguments, Reply *reply) {
    reply->waitSeconds = arguments.number(1, 0, 1e6);
    reply->after = After::Wait;
    return arguments.sound();
}

bool quit(Instrument *, Arguments &, Reply *reply) {
    reply->after = After::Quit;
    return true;
}

bool help(Instrument *, Arguments &, Reply *reply);

// False: the arguments do not fit.
using Command = bool (*)(Instrument *, Arguments &, Reply *);

struct CommandRow {
    const char *name;
    const char *arguments;
    const char *effect;
    Command run;
};

constexpr CommandRow commands[] = {
    {"load", "[A|B|C] AMPERES [PF [lead|lag]]", "current of all phases or of one; negative exports", load},
    {"voltage", "PERCENT", "level of the voltages", voltage},
    {"unbalance", "NEGATIVE [ZERO]", "sequence components of the voltage in percent", unbalance},
    {"harmonic", "voltage|current ORDER PERCENT [DEGREES]", "one harmonic, order 2 to 63", harmonic},
    {"wiring", "wye|delta", "wiring mode", wiring},
    {"pulse", "INPUT [COUNT]", "pulses at an input that counts them", pulse},
    {"input", "INPUT 0|1", "state of a digital input", input},
    {"frequency", "HERTZ", "frequency of the mains", frequency},
    {"flicker", "DEPTH [RATE]", "voltage changes: percent, changes a minute", flicker},
    {"drift", "on|off", "slow movement of all quantities", drift},
    {"set", "PARAMETER VALUE", "a parameter by its short address, as SET.sys.RtgVolt 220", set},
    {"hold", "", "stop all movement of the region", hold},
    {"resume", "", "go on", resume},
    {"state", "[PREFIX...]", "what the instrument holds, as JSON", state},
    {"wait", "SECONDS", "wait before the next line", wait},
    {"help", "", "this list", help},
    {"quit", "", "end", quit},
};

bool help(Instrument *, Arguments &, Reply *reply) {
    for (const CommandRow &row : commands) {
        std::string line = std::string(row.name) + " " + row.arguments;
        line.resize(std::max<std::size_t>(line.size() + 2, 52), ' ');
        reply->text += line + row.effect + "\n";
    }
    return true;
}

} // namespace

Reply executeLine(Instrument *instrument, const std::string &line) {
    std::istringstream stream(line);
    const Words words{std::istream_iterator<std::string>(stream), {}};
    Reply reply;
    if (words.empty() || words[0][0] == '#') {
        return reply;
    }
    for (const CommandRow &row : commands) {
        if (words[0] == row.name) {
            Arguments arguments(words);
            if (!row.run(instrument, arguments, &reply)) {
                return {std::string("usage: ") + row.name + " " + row.arguments + "\n", true, After::GoOn, 0};
            }
            if (reply.text.empty()) {
                reply.text = "ok\n";
            }
            return reply;
        }
    }
    return {"unknown command " + words[0] + "; \"help\" lists all\n", true, After::GoOn, 0};
}

} // namespace ied::instrument
