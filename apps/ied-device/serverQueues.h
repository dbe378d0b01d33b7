// What the server sends: commands for the device manager, messages for the watchdog.
#pragma once

#include "device/peerInterface.h"
#include "ied-device/instrument.h"

#include <string>

namespace ied::instrument {

// One line of JSON for a record, with its line end.
std::string commandLine(const manageMsg &message);
std::string watchdogLine(const WdgMessage &message);

// Writes a line to the standard output at once; the C library's lock of the stream keeps the lines of
// several tasks whole.
void print(const std::string &line);

// Does what a command asks for and acknowledges it: the counters of the edit area become those of
// the live area, a commit is answered by the done or the refused counter.
void executeCommand(Instrument *instrument, const manageMsg &message);

// Takes everything off both queues without waiting. With `show` each record is printed as its line.
void serveQueues(Instrument *instrument, bool show);

} // namespace ied::instrument
