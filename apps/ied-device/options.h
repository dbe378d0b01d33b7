// The command line of ied-device.
#pragma once

#include "platform/types.h"

#include <string>

namespace ied::instrument {

struct Options {
    std::string script;    // file of commands that are done before those of the standard input
    std::string stateFile; // rewritten with the state at every update
    f64 speed = 1;         // seconds of the instrument a second
    bool spy = false;
    bool showQueues = false;
    bool remove = false; // removes the shared objects and ends
};

// Reads the command line into `options` and platformOptions. Returns -1 when the process is to go on,
// else the status to exit with: 0 after --help or --version, 2 after a usage error.
int readOptions(int argc, const char *const *argv, Options *options);

} // namespace ied::instrument
