// Line commands that change the physical state, the inputs and the parameters, and show the state.
#pragma once

#include "ied-device/instrument.h"

#include <string>

namespace ied::instrument {

enum class After : u8 {
    GoOn,
    Wait, // `waitSeconds` of host time before the next line of the same source
    Quit,
};

struct Reply {
    std::string text; // what to print, with its line ends; "ok" where a command has nothing to say
    bool failed = false;
    After after = After::GoOn;
    f64 waitSeconds = 0;
};

// The list of all commands, a line each.
std::string commandHelp();

// Does one line. A word that begins with "#" and all behind it is a remark; a line without other words
// does nothing and has no reply.
Reply executeLine(Instrument *instrument, const std::string &line);

} // namespace ied::instrument
