// Conversations with a server over TCP in hand-written octets.
#pragma once

#include "tests/support/frames.h"
#include "tests/support/tcp.h"

namespace ied::test {

// CR with a TPDU size of 1024 and both TSAPs; the CC that answers it.
inline constexpr const char *connectionRequestHex = "0300 0016 11E0 0000 0001 00 C0010A C1020001 C2020001";
inline constexpr const char *connectionConfirmHex = "0300 0016 11D0 0001 1400 00 C1020001 C2020001 C0010A";
// Session CONNECT, CP, AARQ and an initiate-Request that proposes 65000 octets, 1, 5 and 5 with all
// parameters.
inline constexpr const char *associateRequestHex =
    "03 00 00 A7 02 F0 80"                                                    // TPKT, DT
    "0D 9E 05 06 13 01 00 16 01 02 14 02 00 02 33 02 00 01 34 02 00 01 C1 88" // session CONNECT
    "31 81 85 A0 03 80 01 01 A2 7E 81 04 00 00 00 01 82 04 00 00 00 01"       // CP
    "A4 23 30 0F 02 01 01 06 04 52 01 00 01 30 04 06 02 51 01"                // context of ACSE
    "30 10 02 01 03 06 05 28 CA 22 02 01 30 04 06 02 51 01 88 02 06 00"       // context of MMS
    "61 47 30 45 02 01 01 A0 40 60 3E A1 07 06 05 28 CA 22 02 03"             // AARQ
    "BE 33 28 31 06 02 51 01 02 01 03 A0 28"
    "A8 26 80 03 00 FD E8 81 01 01 82 01 05 83 01 05 A4 16 80 01 01 81 03 05 F1 00" // initiate-Request
    "82 0C 03 EE 1C 00 00 04 08 00 00 79 EF 18";
// What associate() expects; a suite whose server announces other services says so here.
inline std::string expectedAssociateResponse = connectReply;
inline constexpr const char *concludeRequestHex = "8B 00"; // MMS PDUs
inline constexpr const char *concludeResponseHex = "8C 00";

// Confirmed requests.
std::string objectName(const std::string &domain, const std::string &item);
std::string getNameList(int invokeId, int objectClass, const std::string &domain,
                        const std::string &after = "");
std::string getTypeOf(int invokeId, const std::string &domain, const std::string &item);
// `access` is the alternate access of the variable, "" for none.
std::string read(int invokeId, const std::string &domain, const std::string &item,
                 const std::string &access = "");
std::string write(int invokeId, const std::string &domain, const std::string &item, const std::string &data);

// Connects and associates; false if the answers are not those expected.
bool associate(RawClient &client, std::uint16_t port, Milliseconds limit = generous);
// The same on a connection that stands.
bool associateOn(RawClient &client, Milliseconds limit = generous);
// Sends an MMS PDU and gives the MMS PDU of the answer, as hex; nothing if none came.
std::optional<std::string> ask(RawClient &client, const std::string &mmsPdu, Milliseconds limit = generous);
// Next message of the server, joined from its TPDUs and stripped down to its MMS PDU.
std::optional<std::string> receiveMms(RawClient &client, Milliseconds limit = generous);
// MMS PDU inside the frames of one message.
std::optional<std::string> mmsOf(const std::vector<std::string> &frames);
// Whether an honest client that connects afresh is served: it associates and gets an identify.
bool servesHonestClient(std::uint16_t port, Milliseconds limit = generous);

} // namespace ied::test
