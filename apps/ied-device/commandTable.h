// A line command: its name, its arguments and what it does.
#pragma once

#include "ied-device/commandArguments.h"
#include "ied-device/console.h"

#include <span>

namespace ied::instrument {

// False: the arguments do not fit.
using Command = bool (*)(Instrument *, Arguments &, Reply *);

struct CommandRow {
    const char *name;
    const char *arguments;
    const char *effect;
    Command run;
};

// The reply of a line that cannot be done; `text` comes without a line end.
inline void refuse(Reply *reply, const std::string &text) {
    reply->text = text + "\n";
    reply->failed = true;
}

// Commands on the mains and the load.
std::span<const CommandRow> gridCommands();
// Commands that make events.
std::span<const CommandRow> eventCommands();
// Commands on parameters and on the instrument as a whole.
std::span<const CommandRow> generalCommands();

} // namespace ied::instrument
