// TCP ends of the tests that know octets only, as hex texts.
#pragma once

#include "tests/support/hex.h"
#include "tests/support/process.h"

#include <cstdint>
#include <optional>
#include <thread>

namespace ied::test {

// A port of this host that nothing listens on.
std::uint16_t freePort();

struct RawClient {
    RawClient() = default;
    RawClient(const RawClient &) = delete;
    RawClient &operator=(const RawClient &) = delete;
    RawClient(RawClient &&other) noexcept;
    RawClient &operator=(RawClient &&other) noexcept;
    ~RawClient();
    int socket = -1;
    std::vector<u8> pending; // received behind the frames given out
};

// Connects to a port of this host; waits until something listens there.
void connectTo(RawClient &client, std::uint16_t port, Milliseconds limit = generous);
void disconnect(RawClient &client);
// Closes with a reset instead of a FIN.
void vanish(RawClient &client);
void sendHex(RawClient &client, std::string_view hex);
bool sendOctets(RawClient &client, std::span<const u8> octets);
// Waits until the process at the other end, on this host, has taken all that was sent: what is sent
// next then reaches it in another receive. False if it never does.
bool takenByPeer(const RawClient &client, Milliseconds limit = generous);
// Next TPKT frame as hex; nothing after `limit` without one, or at the end of the stream.
std::optional<std::string> receiveFrame(RawClient &client, Milliseconds limit = generous);
// Whether the peer closes the connection (or has) within the limit; takes what it sends meanwhile.
bool closedByPeer(RawClient &client, Milliseconds limit = generous);

// A peer on a port of its own that serves one connection along a script: for each step it takes one
// frame, compares it with the expected hex ("" matches any), and sends an answer ("" is none).
struct ScriptStep {
    std::string expect;
    std::string answer;
};
struct ScriptedPeer {
    explicit ScriptedPeer(std::vector<ScriptStep> steps);
    ~ScriptedPeer();
    std::uint16_t port = 0;
    // Ends the conversation; what did not go along the script, or "".
    std::string finish();

  private:
    void serve();
    std::vector<ScriptStep> script;
    int listener = -1;
    std::string fault;
    std::thread thread;
};

} // namespace ied::test
