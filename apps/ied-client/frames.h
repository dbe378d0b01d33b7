// The lower layers as the calling side of an MMS association speaks them: TPKT (RFC 1006), class 0
// transport (ISO 8073), session (ISO 8327), presentation (ISO 8823) and ACSE (ISO 8650). Octets in,
// octets out; nothing here touches a socket.
#pragma once

#include "ied-client/ber.h"

#include <optional>
#include <string>

namespace ied::client {

// Most octets of one TPDU that this side sends and announces (size code 13).
constexpr std::size_t tpduSize = 8192;

// Whole frames to send. A PDU that does not fit one TPDU is cut into several frames.
Bytes connectionRequest();
Bytes associationRequest(View initiateRequest);
Bytes dataRequest(View mmsPdu);
Bytes releaseRequest();

// What one whole message of the peer turns out to be.
enum class Message {
    connectionConfirm,
    associated,
    data,
    released,
    aborted,
    refused,
    malformed
};

struct Received {
    Message message = Message::malformed;
    Bytes mms;          // associated, data: the MMS PDU
    std::string reason; // refused, malformed: what for
};

// Cuts the octets of the stream into messages: collects frames, joins the TPDUs of one message.
struct Assembler {
    Bytes stream;  // received and not yet cut
    Bytes partial; // user data of the TPDUs so far
};

// Next whole message, or nothing while more octets are needed.
std::optional<Received> nextMessage(Assembler &assembler);

} // namespace ied::client
