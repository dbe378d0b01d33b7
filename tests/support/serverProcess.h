// A server of the build for a test: with an instance name, a port and a root folder of its own, and
// a region in which the test plays the instrument.
#pragma once

#include "tests/support/process.h"
#include "tests/support/regionValues.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ied::test {

// The shared region as the test sees it: mapped octets, written at the offsets of the instrument's
// map in host byte order. Removed, with the other objects of the instance, at the end.
struct Region {
    explicit Region(std::string instanceName);
    Region(const Region &) = delete;
    Region &operator=(const Region &) = delete;
    ~Region();
    std::string instance;
    int descriptor = -1;
    u8 *base = nullptr;
};

constexpr std::size_t regionSize = 37549884;
constexpr std::size_t readyWordAt = 37549840;
constexpr std::uint32_t readyWord = 43605;

template <class T> void put(Region &region, std::size_t offset, T value) {
    storeValue(region.base + offset, value);
}
template <class T> T get(const Region &region, std::size_t offset) {
    return loadValue<T>(region.base + offset);
}
inline void raise(Region &region, std::size_t offset) {
    raiseCounter(region.base + offset);
}
// Sets every change counter of parameters and measurements well above the server's start values,
// then the ready word.
void announceReady(Region &region);

struct ServerOptions {
    std::string icd;                    // empty: the instrument's own file
    std::vector<std::string> settings;  // FIELD=VALUE
    std::vector<std::string> arguments; // further arguments
    bool ready = true;                  // false: the region is there, but the instrument is not ready
};

struct ServerProcess {
    explicit ServerProcess(ServerOptions serverOptions = {});
    ServerOptions options;
    std::string instance;
    std::uint16_t port = 0;
    TempFolder root;
    Region region;
    Process process;
};

// Starts the process; the caller has filled the region before. Waits until it listens; false, with
// its output on the standard error stream, if it ends or never does.
bool startServer(ServerProcess &server);
// Starts it without waiting.
void launchServer(ServerProcess &server);
// Whether some process listens on this port; makes no connection.
bool listening(std::uint16_t port);

// Open descriptors and established sockets of a process.
std::size_t descriptorCount(pid_t pid);
std::size_t socketCount(pid_t pid);
// Resident octets that a process has written and shares with no other. What it has not written are pages
// of its file, shared with every other server that runs.
std::uint64_t privateOctets(pid_t pid);

// The instrument's own ICD file.
std::string fullIcd();

} // namespace ied::test
