// Conversations with a server in hand-written octets: ISO 8073, 8327, 8823, 8650 and 9506 as hex
// texts. Only lengths are computed; nothing of the server's own codec has a part in it.
#pragma once

#include "tests/support/tcp.h"

#include <optional>
#include <string>
#include <vector>

namespace ied::test {

// One BER element as hex: tag, length in its shortest form, and the content texts.
std::string tlv(const std::string &tag, const std::string &content);
// A text as the hex of its characters.
std::string ascii(const std::string &text);

// TPKT around a TPDU; a DT with everything down to presentation user data around an MMS PDU.
std::string tpkt(const std::string &tpdu);
std::string dataFrame(const std::string &mmsPdu);

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
// The answer of a server with its built-in settings.
inline constexpr const char *associateResponseHex =
    "03 00 00 A3 02 F0 80"                               // TPKT, DT
    "0E 9A 05 06 13 01 00 16 01 02 14 02 00 02 C1 8C"    // session ACCEPT
    "31 81 89 A0 03 80 01 01 A2 81 81 83 04 00 00 00 01" // CPA
    "A5 12 30 07 80 01 00 81 02 51 01 30 07 80 01 00 81 02 51 01 88 02 06 00"
    "61 61 30 5F 02 01 01 A0 5A"
    "61 58 80 02 07 80 A1 07 06 05 28 CA 22 02 03 A2 03 02 01 00 A3 05 A1 03 02 01 00" // AARE
    "A4 07 06 05 29 01 87 67 01 A5 03 02 01 0C BE 2F 28 2D 02 01 03 A0 28"
    "A9 26 80 03 00 FD E8 81 01 01 82 01 05 83 01 05" // initiate-Response
    "A4 16 80 01 01 81 03 05 F1 00 82 0C 03 EE 0C 00 00 04 00 00 00 48 E5 18";
// What associate() expects; a suite whose server announces other services says so here.
inline std::string expectedAssociateResponse = associateResponseHex;
inline constexpr const char *concludeRequestHex = "8B 00"; // MMS PDUs
inline constexpr const char *concludeResponseHex = "8C 00";
inline constexpr const char *releaseRequestHex = // whole frames
    "03 00 00 19 02 F0 80 09 10 C1 0E 61 0C 30 0A 02 01 01 A0 05 62 03 80 01 00";
inline constexpr const char *releaseResponseHex =
    "03 00 00 19 02 F0 80 0A 10 C1 0E 61 0C 30 0A 02 01 01 A0 05 63 03 80 01 01";
// AARQ around another initiate-Request.
std::string associateRequest(const std::string &initiatePdu);

// Confirmed requests; the invoke id is one octet, below 128.
std::string confirmedRequest(int invokeId, const std::string &service);
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
