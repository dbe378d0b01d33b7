// Commands on parameters and on the instrument as a whole.
#include "ied-device/commandTable.h"
#include "ied-device/parameterRules.h"
#include "ied-device/parameters.h"
#include "ied-device/state.h"

#include <functional>
#include <vector>

namespace ied::instrument {

namespace {

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

// Whether the parameters would still fit each other after a change; nothing is changed yet.
bool wouldFit(Region region, const std::function<void(Region)> &change) {
    std::vector<u8> draft(region.base, region.base + region::paramAreaSize);
    const Region changed{draft.data()};
    change(changed);
    return keepsFit(region, changed);
}

// What is wrong with a value for the parameter of that name, or nothing.
std::string objection(Region region, const std::string &name, f64 value) {
    const Parameter parameter = findParameter(name);
    if (parameter.row == nullptr) {
        return "no parameter " + name;
    }
    if (!parameterAllows(*parameter.row, value)) {
        return name + " takes " + std::to_string(parameter.row->low) + " to " +
               std::to_string(parameter.row->high);
    }
    const auto change = [&](Region draft) { storeParameter(draft, region::liveArea, parameter, value); };
    return wouldFit(region, change) ? "" : name + " would not fit the other parameters";
}

bool set(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const std::string name = arguments.text(1);
    const f64 value = arguments.number(2, -1e9, 1e9);
    if (!arguments.sound()) {
        return false;
    }
    const std::string wrong = objection(instrument->shared.region, name, value);
    if (wrong.empty()) {
        setParameter(instrument, findParameter(name), value);
    } else {
        refuse(reply, wrong);
    }
    return true;
}

// The code of the rated secondary current is no parameter, but has a change counter.
bool rated(Instrument *instrument, Arguments &arguments, Reply *reply) {
    const Region region = instrument->shared.region;
    const bool one = arguments.among(1, "1", "5");
    const auto change = [one](Region area) { store(area, region::ratedCurrent, one ? 1 : 0); };
    if (!arguments.sound()) {
        return false;
    }
    if (wouldFit(region, change)) {
        change(region);
        raise(region, region::armFlag, region::ArmRatedCurrent);
    } else {
        refuse(reply, "the rated current would not fit the other parameters");
    }
    return true;
}

bool hold(Instrument *instrument, Arguments &arguments, Reply *) {
    instrument->held = instrument->held || arguments.sound();
    return arguments.sound();
}

bool resume(Instrument *instrument, Arguments &arguments, Reply *) {
    instrument->held = instrument->held && !arguments.sound();
    return arguments.sound();
}

bool state(Instrument *instrument, Arguments &arguments, Reply *reply) {
    std::vector<std::string> prefixes;
    for (std::size_t i = 1; i < arguments.size(); i++) {
        prefixes.push_back(arguments.text(i));
    }
    reply->text = stateJson(*instrument, prefixes);
    return arguments.sound();
}

bool wait(Instrument *, Arguments &arguments, Reply *reply) {
    reply->waitSeconds = arguments.number(1, 0, 1e6);
    reply->after = After::Wait;
    return arguments.sound();
}

bool help(Instrument *, Arguments &arguments, Reply *reply) {
    reply->text = commandHelp();
    return arguments.sound();
}

bool quit(Instrument *, Arguments &arguments, Reply *reply) {
    reply->after = After::Quit;
    return arguments.sound();
}

constexpr CommandRow commands[] = {
    {"wiring", "wye|delta", "wiring mode", wiring},
    {"rated", "1|5", "rated secondary current in A", rated},
    {"set", "PARAMETER VALUE", "a parameter, as SET.sys.RtgVolt 220; clients read PFSign and ClcTotVA plus 1",
     set},
    {"hold", "", "stop all movement of the region", hold},
    {"resume", "", "go on", resume},
    {"state", "[PREFIX...]", "what the instrument holds, as JSON", state},
    {"wait", "SECONDS", "wait before the next line", wait},
    {"quit", "", "end", quit},
    {"help", "", "this list", help},
};

} // namespace

std::span<const CommandRow> generalCommands() {
    return commands;
}

} // namespace ied::instrument
