// Start of the process, its listening socket and the accept loop.
#pragma once

#include "platform/platform.h"

namespace ied {

// Brings everything up in order and serves; never returns.
[[noreturn]] void taskMain();
// One round of the accept loop: waits at most `timeout`, hands a new connection to a free slot.
void acceptRound(int listenFd, const ::timeval &timeout);
// Creates the directories of a device path below an existing device. False, after a message on the
// standard error stream, when one cannot be made. Null and empty paths and unknown devices succeed.
bool dirInit(const char *path);
// Opens the listening socket. A failure ends the process with its message; with dbHook set, which
// takes that message, it returns false.
bool socketInit(int *listenFd);
// Turns keep-alive on. A failure closes `fd` and ends the process with its message.
void activeKeepAlive(int fd);
// `idle` and `intvl` in seconds. A failure is logged only.
void setKeepAliveParams(int fd, u32 idle, u32 cnt, u32 intvl);
// A configured time in milliseconds as select takes it.
::timeval splitTimeout(u32 milliseconds);

} // namespace ied
