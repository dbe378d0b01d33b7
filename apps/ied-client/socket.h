// A TCP stream with deadlines, as plain calls over a non-blocking descriptor.
#pragma once

#include "ied-client/ber.h"

#include <chrono>
#include <string>

namespace ied::client {

using Clock = std::chrono::steady_clock;

// What `why` says when a deadline has passed.
inline constexpr const char *timedOut = "timed out";

// Connected non-blocking descriptor, or -1 with the reason in `why`.
int openStream(const std::string &host, u16 port, Clock::time_point deadline, std::string &why);

// All octets or false with the reason.
bool sendAll(int descriptor, View octets, Clock::time_point deadline, std::string &why);

// Appends what has arrived, at least one octet, or false with the reason.
bool receiveSome(int descriptor, Bytes &into, Clock::time_point deadline, std::string &why);

} // namespace ied::client
