// Frames as a client and a server send them, in hexadecimal: each layer of ISO 8073, 8327, 8823, 8650
// and 9506 around the one inside. Only lengths are computed; nothing of the server's own codec has a
// part in it.
#pragma once

#include "tests/support/hex.h"

namespace ied::test {

// A BER element: `tag` as digits, definite length of the least form.
std::string tlv(std::string_view tag, std::string_view content);
// A TPKT frame around a TPDU.
std::string tpkt(std::string_view tpdu);
// A TPKT frame with a whole TSDU in one DT, or a piece of one.
std::string frame(std::string_view tsdu, bool endOfTsdu = true);
// A TSDU of session data with one fully encoded value, and a frame with it.
std::string dataTsdu(std::string_view mmsPdu, std::string_view context = "020103");
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
// A confirmed-RequestPDU; `service` with its tag. The invoke id is one octet, below 128.
std::string confirmedRequest(int invokeId, std::string_view service);
// The same in a frame.
std::string request(int invokeId, std::string_view service);

inline constexpr const char *crFrame = "0300000B 06E0 0000 0001 00"; // no parameters, source reference 1
inline constexpr const char *ccFrame = "0300000B06D00001140000";     // its CC
// 65000 octets, 5, 5, nesting 10
inline constexpr const char *initiateRequest = "A826 800300FDE8 810105 820105 83010A"
                                               "A416 800101 810305F100 820C03EE1C000004080000 79EF18";
// The answer of a server with its built-in settings to a connect frame with an initiate request.
inline constexpr const char *connectReply =
    "030000A3 02F080"                                // TPKT, DT
    "0E9A 0506130100160102 14020002 C18C"            // session ACCEPT
    "318189 A003800101 A28181 830400000001"          // CPA
    "A512 3007 800100 81025101 3007 800100 81025101" // result of both contexts
    "88020600 6161 305F 020101 A05A"
    "6158 80020780 A107060528CA220203 A203020100 A305A103020100" // AARE
    "A40706052901876701 A50302010C BE2F 282D 020103 A028"
    "A926 800300FDE8 810101 820105 830105" // initiate-Response
    "A416 800101 810305F100 820C03EE0C00000400000048E518";
inline constexpr const char *abortFrame = "0300000C 02F080 6403800100";
inline constexpr const char *abortReply = "0300001002F080190711010531023210";
inline constexpr const char *releaseReply = "0300001902F0800A10C10E610C300A020101A0056303800101";
inline constexpr const char *identify = "8200"; // request of the service
// A frame that answers a request to identify.
std::string identifyReply(int invokeId);

} // namespace ied::test
