#include "tests/support/conversation.h"

#include "basicInterface/memory.h"
#include "device/externGlbCfg.h"

#include <cctype>
#include <stdexcept>

namespace ied::test {

namespace {

std::vector<u8> sent; // what the slot gave to its socket
SocketOps hostSockets;

long captureSend(int, const void *buffer, std::size_t length, int) {
    const auto *from = static_cast<const u8 *>(buffer);
    sent.insert(sent.end(), from, from + length);
    return static_cast<long>(length);
}

std::string twoDigits(std::size_t value) {
    const u8 octet = static_cast<u8>(value);
    return hexText({&octet, 1});
}

std::string berLength(std::size_t length) {
    if (length < 128) {
        return twoDigits(length);
    }
    return length < 256 ? "81" + twoDigits(length) : "82" + twoDigits(length >> 8) + twoDigits(length);
}

std::size_t count(std::string_view hex) {
    return plain(hex).size() / 2;
}

} // namespace

std::string plain(std::string_view hex) {
    std::string out;
    for (const char c : hex) {
        if (std::isspace(static_cast<unsigned char>(c)) == 0) {
            out += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    return out;
}

std::vector<u8> octets(std::string_view hex) {
    const std::string digits = plain(hex);
    if (digits.size() % 2 != 0) {
        throw std::invalid_argument("half an octet: " + digits);
    }
    std::vector<u8> out;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        out.push_back(static_cast<u8>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    return out;
}

std::string hexText(std::span<const u8> data) {
    static const char digits[] = "0123456789ABCDEF";
    std::string out;
    for (const u8 octet : data) {
        out += digits[octet >> 4];
        out += digits[octet & 15];
    }
    return out;
}

std::string tlv(std::string_view tag, std::string_view content) {
    return plain(tag) + berLength(count(content)) + plain(content);
}

std::string tpkt(std::string_view tpdu) {
    const std::size_t length = count(tpdu) + 4;
    return "0300" + twoDigits(length >> 8) + twoDigits(length) + plain(tpdu);
}

std::string frame(std::string_view tsdu, bool endOfTsdu) {
    return tpkt((endOfTsdu ? "02F080" : "02F000") + plain(tsdu));
}

std::string dataFrame(std::string_view mmsPdu, std::string_view context) {
    return frame("01000100" + tlv("61", tlv("30", plain(context) + tlv("A0", mmsPdu))));
}

std::string connectSpdu(std::string_view cpType) {
    const std::string body =
        "0506130100160102 14020002 33020001 34020001 C1" + twoDigits(count(cpType)) + plain(cpType);
    return "0D" + twoDigits(count(body)) + plain(body);
}

std::string cpType(std::string_view acseApdu) {
    const std::string contexts = tlv("A4", "300F 020101 0604 52010001 3004 0602 5101"
                                           "3010 020103 0605 28CA220201 3004 0602 5101");
    const std::string userData = tlv("61", tlv("30", "020101" + tlv("A0", acseApdu)));
    return tlv("31", "A003800101" + tlv("A2", "8104 00000001 8204 00000001" + contexts + userData));
}

std::string aarq(std::string_view mmsPdu, std::string_view fields) {
    const std::string external = tlv("28", "0602 5101 020103" + tlv("A0", mmsPdu));
    return tlv("60", "A107 0605 28CA220203" + std::string(fields) + tlv("BE", external));
}

std::string connectFrame(std::string_view mmsPdu) {
    return frame(connectSpdu(cpType(aarq(mmsPdu))));
}

std::string releaseFrame() {
    return frame("0910 C10E 610C 300A 020101 A005 6203 800100");
}

std::string request(u8 invokeID, std::string_view service) {
    return dataFrame(tlv("A0", "0201" + twoDigits(invokeID) + std::string(service)));
}

const char *const crFrame = "0300000B 06E0 0000 0001 00";
const char *const ccFrame = "0300000B06D00001140000";
const char *const initiateRequest = "A826 800300FDE8 810105 820105 83010A"
                                    "A416 800101 810305F100 820C03EE1C000004080000 79EF18";
const char *const connectReply = "030000A3 02F080 0E9A 0506130100160102 14020002 C18C"
                                 "318189 A003800101 A28181 830400000001"
                                 "A512 3007 800100 81025101 3007 800100 81025101 88020600"
                                 "6161 305F 020101 A05A 6158"
                                 "80020780 A107060528CA220203 A203020100 A305A103020100"
                                 "A40706052901876701 A50302010C BE2F 282D 020103 A028"
                                 "A926 800300FDE8 810101 820105 830105 A416 800101 810305F100"
                                 "820C03EE0C00000400000048E518";
const char *const abortFrame = "0300000C 02F080 6403800100";
const char *const abortReply = "0300001002F080190711010531023210";
const char *const releaseReply = "0300001902F0800A10C10E610C300A020101A0056303800101";
const char *const identify = "8200";

std::string identifyReply(u8 invokeID) {
    // vendor "ORV", model "QTM5-2", revision "V1.3150519"
    const std::string names = "80034F5256 810651544D352D32 820A56312E33313530353139";
    return dataFrame(tlv("A1", "0201" + twoDigits(invokeID) + tlv("A2", names)));
}

Conversation::Conversation(u8 clientSlot) : slot(clientSlot) {
    externGlbCfgInit();
    heldClockStart(1'600'000'000, true);
    clientStatInit();
    if (semSend == nullptr) {
        clientSemInit();
    }
    clientNum = 1;
    clientBufferInit(&pdu, &resBuf);
    hostSockets = socketOps;
    socketOps.send = captureSend;
    restart();
}

Conversation::~Conversation() {
    initPdu(&pdu, false);
    Free(pdu.cotp.reassemblyBuf);
    Free(resBuf.base);
    Free(resBuf.encBuf);
    socketOps = hostSockets;
    heldClockStop();
}

void Conversation::restart() {
    initPdu(&pdu, false);
    resBuf.count = 0;
    resBuf.broken = 0;
    clientStat[slot].status = CS_TCP;
    clientStat[slot].sendFail = 0;
    sent.clear();
}

std::string Conversation::sendOctets(std::span<const u8> segment) {
    sent.clear();
    // A copy of just that size, so that the sanitizers see a read beyond it.
    const std::vector<u8> copy(segment.begin(), segment.end());
    packetReply(&pdu, copy.data(), static_cast<u32>(copy.size()), &resBuf, slot);
    return hexText(sent);
}

void Conversation::give(std::span<const u8> segment) {
    sent.clear();
    packetReply(&pdu, segment.data(), static_cast<u32>(segment.size()), &resBuf, slot);
}

std::string Conversation::send(std::string_view hex) {
    return sendOctets(octets(hex));
}

std::string Conversation::sendSlowly(std::string_view hex) {
    std::string all;
    for (const u8 octet : octets(hex)) {
        all += sendOctets({&octet, 1});
    }
    return all;
}

void Conversation::associate() {
    if (send(crFrame) != ccFrame || send(connectFrame(initiateRequest)) != plain(connectReply)) {
        throw std::runtime_error("no association");
    }
}

void Conversation::reachData() {
    associate();
    if (send(request(1, identify)) != identifyReply(1)) {
        throw std::runtime_error("no reply to identify");
    }
}

u8 Conversation::status() const {
    return clientStat[slot].status;
}

} // namespace ied::test
