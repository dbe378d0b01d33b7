// What the host says of a process: the CPU time of one thread.
#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace ied::bench {

// Thread of the process with this name; throws if there is none.
pid_t threadNamed(pid_t process, const std::string &name);
// Nanoseconds that a thread, which must be waiting, has spent on a CPU.
std::uint64_t cpuNs(pid_t process, pid_t thread);
// Binds a thread to a CPU of the host; without effect where the host has no such CPU.
void bindTo(pid_t thread, int cpu);

} // namespace ied::bench
