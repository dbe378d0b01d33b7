// A client's side of a conversation with one slot, without sockets: octets in, octets out, on a held
// clock.
#pragma once

#include "proto-process/c/client.h"
#include "tests/support/frames.h"

namespace ied::test {

// One at a time. Starts the configuration's defaults and the tables of slots; the slot is in the
// state that a new connection has.
class Conversation {
  public:
    explicit Conversation(u8 clientSlot = 0);
    ~Conversation();
    Conversation(const Conversation &) = delete;
    Conversation &operator=(const Conversation &) = delete;

    // Gives the octets to the slot as one segment; returns what it sent, as digits.
    std::string send(std::string_view hex);
    std::string sendOctets(std::span<const u8> segment);
    // The same for a caller that does not look at what was sent; the octets are taken in place.
    void give(std::span<const u8> segment);
    // The same octet by octet; what was sent in all.
    std::string sendSlowly(std::string_view hex);
    // CR and connect frame, as an ordinary client.
    void associate();
    // One request to identify after the association, so that the state is that of data.
    void reachData();
    // As a new connection on the slot.
    void restart();

    u8 status() const;
    u32 held() const { return resBuf.count; }

    const u8 slot;
    PacketBuf pdu{};
    ResBuf resBuf{};
};

} // namespace ied::test
