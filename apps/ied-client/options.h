// The command line: ied-client HOST[:PORT] COMMAND ...
#pragma once

#include "ied-client/connection.h"
#include "ied-client/report.h"

#include <optional>
#include <string>
#include <vector>

namespace ied::client {

enum class Command {
    identify,
    devices,
    tree,
    find,
    read,
    write,
    datasets,
    dataset,
    reports,
    report
};

struct Options {
    std::string host;
    u16 port = 102;
    Command command = Command::identify;
    std::vector<std::string> arguments; // references, a pattern, a value: as the command has them
    bool json = false;
    bool plain = false;     // as if the output were no terminal
    bool watch = false;     // read again and again
    bool values = false;    // dataset: with the values of its members
    f64 interval = 1;       // seconds between the rounds of --watch
    u32 rounds = 0;         // --watch ends after so many; 0: never
    int depth = maxNesting; // levels that tree shows below its start
    f64 timeout = 10;       // seconds for each answer
    // report: attributes to write before enabling; empty: left as they are
    std::string trgOps;  // bits
    std::string optFlds; // bits
    std::optional<u32> bufTm;
    std::optional<u32> intgPd;
    bool gi = false;
    bool purge = false;
    std::vector<EntryPoint> resume; // none, or one for each argument
    u32 count = 0;                  // report: ends after so many; 0: never
    f64 span = 0;                   // report: seconds until it ends; 0: never
};

// Options, or the status to leave with: 0 after --help or --version, 2 for what cannot be.
std::optional<Options> parseOptions(int argc, char **argv, int &status);

// HOST, HOST:PORT, ADDRESS6 or [ADDRESS6]:PORT; false for an empty host or a port beyond 1 to 65535.
bool splitServer(const std::string &text, std::string &host, u16 &port);

} // namespace ied::client
