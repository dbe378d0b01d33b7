// TCP servers that answer with given octets and do nothing else: what moving them costs at least.
// Each is a process of its own that serves one connection after the other.
#pragma once

#include "platform/types.h"

#include <cstdint>
#include <sys/types.h>
#include <vector>

namespace ied::bench {

// What an echo server does for a request beside receiving and sending.
enum class EchoKind {
    bare,  // nothing
    paced, // select before the receive, a rest to the next tick behind the answer
};

// An exchange: a request of `requestOctets` is answered with `frames`, a send each.
struct Exchange {
    std::size_t requestOctets;
    std::vector<std::vector<u8>> frames;
};

struct EchoServer {
    EchoServer(EchoKind kind, const Exchange &exchange);
    EchoServer(const EchoServer &) = delete;
    EchoServer &operator=(const EchoServer &) = delete;
    ~EchoServer(); // ends the process
    pid_t pid = -1;
    std::uint16_t port = 0;
};

} // namespace ied::bench
