// Child processes of the tests. Their output goes to files, so that none ever waits for a reader;
// a child dies with its test.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ied::test {

using Milliseconds = std::chrono::milliseconds;

// Waits of the tests: they end as soon as their condition holds, and fail after this long.
constexpr Milliseconds generous{60000};

// Polls until the condition holds; false when it still does not after `limit`.
bool waitUntil(const std::function<bool()> &condition, Milliseconds limit = generous);

// A folder that is removed with everything in it at the end of the object.
struct TempFolder {
    TempFolder();
    TempFolder(const TempFolder &) = delete;
    TempFolder &operator=(const TempFolder &) = delete;
    ~TempFolder();
    std::string path;
};

std::string readFile(const std::string &path);
void writeFile(const std::string &path, const std::string &content);

struct Process {
    Process() = default;
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;
    ~Process(); // kills what still runs
    pid_t pid = -1;
    int input = -1; // write end of the child's standard input, or -1
    TempFolder folder;
    std::optional<int> status; // exit status, negative: the signal that ended it
};

// Starts `arguments[0]` (a path) with these arguments and additions NAME=VALUE to the environment.
// Standard input is a pipe with `withInput`, else empty.
void start(Process &process, const std::vector<std::string> &arguments,
           const std::vector<std::string> &environment = {}, bool withInput = false);

// What the child has written so far to its standard output, and to its standard error stream.
std::string output(const Process &process);
std::string errors(const Process &process);

bool running(Process &process);
// Exit status (negative: signal), or nothing if it still runs after `limit`.
std::optional<int> waitExit(Process &process, Milliseconds limit = generous);
// SIGTERM, then what waitExit gives.
std::optional<int> stop(Process &process);
// Writes a line to the child's standard input.
void writeLine(Process &process, const std::string &line);

// One run to the end.
struct RunResult {
    std::optional<int> status;
    std::string out;
    std::string err;
};
RunResult run(const std::vector<std::string> &arguments, const std::vector<std::string> &environment = {});

// Path of a binary of the build: "ied-server".
std::string binary(const std::string &name);

// A name that no other test process uses.
std::string uniqueName();

} // namespace ied::test
