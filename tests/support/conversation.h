// A client's side of a conversation with one slot, without sockets: octets in, octets out, on a held
// clock. Texts are hexadecimal digits; blanks between them are for the eye. Also builders of the
// frames that a client sends, each layer around the one inside.
#pragma once

#include "proto-process/c/client.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ied::test {

std::vector<u8> octets(std::string_view hex);
// Upper-case digits without blanks.
std::string hexText(std::span<const u8> data);
// The text without blanks, in upper case, so that expectations compare.
std::string plain(std::string_view hex);

// --------------------------------------------------------------------- frames, inner to outer

// A BER value: `tag` as digits, definite length of the least form.
std::string tlv(std::string_view tag, std::string_view content);
// A TPKT frame around a TPDU.
std::string tpkt(std::string_view tpdu);
// A TPKT frame with a whole TSDU in one DT, or a piece of one.
std::string frame(std::string_view tsdu, bool endOfTsdu = true);
// Session data with one fully encoded value.
std::string dataFrame(std::string_view mmsPdu, std::string_view context = "020103");
// A session CONNECT around a CP-type.
std::string connectSpdu(std::string_view cpType);
// A CP-type around an ACSE APDU.
std::string cpType(std::string_view acseApdu);
// An AARQ; `fields` stand between the application context name and the user information.
std::string aarq(std::string_view mmsPdu, std::string_view fields = "");
// The whole connect frame.
std::string connectFrame(std::string_view mmsPdu);
// A session FINISH around an RLRQ.
std::string releaseFrame();
// A confirmed-RequestPDU in a frame; `service` with its tag.
std::string request(u8 invokeID, std::string_view service);

extern const char *const crFrame;         // a CR without parameters, source reference 1
extern const char *const ccFrame;         // its CC
extern const char *const initiateRequest; // 65000 octets, 5, 5, nesting 10
extern const char *const connectReply;    // what a connect frame with it gets
extern const char *const abortFrame;
extern const char *const abortReply;
extern const char *const releaseReply;
extern const char *const identify; // request of the service
// A frame that answers a request to identify.
std::string identifyReply(u8 invokeID);

// ------------------------------------------------------------------------------- conversation

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
