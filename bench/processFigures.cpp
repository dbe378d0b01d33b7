#include "bench/processFigures.h"

#include <filesystem>
#include <fstream>
#include <sched.h>
#include <stdexcept>

namespace ied::bench {

namespace {

std::string procPath(pid_t process, const std::string &rest) {
    return "/proc/" + std::to_string(process) + "/" + rest;
}

std::string firstLine(const std::string &path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace

pid_t threadNamed(pid_t process, const std::string &name) {
    for (const auto &entry : std::filesystem::directory_iterator(procPath(process, "task"))) {
        if (firstLine(entry.path().string() + "/comm") == name) {
            return static_cast<pid_t>(std::stol(entry.path().filename().string()));
        }
    }
    throw std::runtime_error("no thread " + name);
}

std::uint64_t cpuNs(pid_t process, pid_t thread) {
    const std::string line = firstLine(procPath(process, "task/" + std::to_string(thread) + "/schedstat"));
    if (line.empty()) {
        throw std::runtime_error("the host does not tell the CPU time of a thread");
    }
    return std::stoull(line);
}

void bindTo(pid_t thread, int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(static_cast<std::size_t>(cpu), &set);
    sched_setaffinity(thread, sizeof set, &set);
}

} // namespace ied::bench
