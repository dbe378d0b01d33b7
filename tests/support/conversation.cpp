#include "tests/support/conversation.h"

#include "basicInterface/memory.h"
#include "device/externGlbCfg.h"

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

} // namespace

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
    if (send(crFrame) != ccFrame || send(connectFrame(initiateRequest)) != canonical(connectReply)) {
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
