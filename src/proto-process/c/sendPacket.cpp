#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "device/externalInterface.h"
#include "device/watchdog.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace ied {

namespace {

constexpr int extraTakes = 60; // attempts of a second each behind the first
constexpr u32 headerOctets = tpktOctets + dtOctets;
constexpr u32 tpktLengthMax = 0xFFFF;
constexpr u32 eotOctet = 6;

// Messages of a send that gave up on a peer that does not read, and of one that failed at once.
struct SendMessages {
    const char *stalled;
    const char *failed;
};
constexpr SendMessages wholeMessages{"Send error 1!", "Send error 2!"};
constexpr SendMessages frameMessages{"Send error 3!", "Send error 4!"};

// A tenth of a second between attempts at a peer that does not read.
void pause() {
    taskDelay(std::max(static_cast<int>(sysClkRateGet() / 10), 1));
}

bool takeSocket(u8 slot) {
    const int second = static_cast<int>(sysClkRateGet());
    for (int attempt = 0; attempt <= extraTakes; ++attempt) {
        if (semTake(semSend[slot], second) == OK) {
            return true;
        }
        wdgFeedIfEnabled();
    }
    return false;
}

// After a send that took nothing: counts it, waits. False when the peer is given up.
bool waitForPeer(ClientStat *client, const SendMessages &messages) {
    countShared(client->sendFail);
    if (loadShared(client->sendFail) >= externGlbCfg.maxSendFail) {
        dbInfo(DbSOC, DbERR, "sendPacket", "%s", messages.stalled);
        return false;
    }
    wdgFeedIfEnabled();
    pause();
    return true;
}

bool sendPiece(ClientStat *client, const u8 *piece, u32 len, const SendMessages &messages) {
    while (loadShared(client->sendFail) < externGlbCfg.maxSendFail) {
        // The socket may be a blocking one: a peer that does not read must not hold the task.
        const long sent = socketOps.send(loadShared(client->sockFd), piece, len, MSG_DONTWAIT);
        if (sent == static_cast<long>(len)) {
            storeShared(client->sendFail, 0);
            ctlComLedFlash();
            return true;
        }
        if (sent > 0) {
            piece += sent;
            len -= static_cast<u32>(sent);
            pause();
        } else if (errno == EWOULDBLOCK || errno == EAGAIN) {
            if (!waitForPeer(client, messages)) {
                return false;
            }
        } else {
            dbInfo(DbSOC, DbSYS, "sendPacket", "%s", messages.failed);
            storeShared(client->sendFail, externGlbCfg.maxSendFail);
            return false;
        }
    }
    return false;
}

// Sends the packet as frames, each behind a copy of the packet's header that overwrites the end of
// the frame before.
bool sendFrames(ClientStat *client, u8 *packet, u32 len, u32 frameMax) {
    u8 header[headerOctets];
    std::memcpy(header, packet, headerOctets);
    u32 pos = 0;
    for (;;) {
        const bool last = len - pos <= frameMax;
        const u32 frameLen = last ? len - pos : frameMax;
        u8 *frame = packet + pos;
        std::memcpy(frame, header, headerOctets);
        frame[eotOctet] = last ? 0x80 : 0x00;
        encShort(frame + 2, static_cast<u16>(frameLen));
        if (!sendPiece(client, frame, frameLen, frameMessages)) {
            return false;
        }
        if (last) {
            return true;
        }
        pos += frameLen - headerOctets;
    }
}

} // namespace

bool sendPacket(u8 *buf, u32 len, u8 slot) {
    return sendPacket(buf, len, slot, loadShared(clientStat[slot].association));
}

bool sendPacket(u8 *buf, u32 len, u8 slot, u32 association) {
    if (!takeSocket(slot)) {
        return false;
    }
    ClientStat *client = &clientStat[slot];
    // The client may have left before the task had the socket.
    if (loadShared(client->sockFd) < 0 || loadShared(client->association) != association) {
        semGive(semSend[slot]);
        return false;
    }
    u8 *packet = encodedPacket(buf, len);
    const u32 frameMax = std::min(externGlbCfg.maxTpduSize, tpktLengthMax);
    const bool sent = len <= frameMax ? sendPiece(client, packet, len, wholeMessages)
                                      : sendFrames(client, packet, len, frameMax);
    semGive(semSend[slot]);
    return sent;
}

} // namespace ied
