#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "device/watchdog.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/serverStart.h"

#include <cstring>

namespace ied {

namespace {

// The free slot of the lowest number, or clientNone.
u8 freeSlot() {
    for (u8 slot = 0; slot < externGlbCfg.maxClientNum; ++slot) {
        if (loadPublished(clientStat[slot].status) == CS_IDLE) {
            return slot;
        }
    }
    return clientNone;
}

// Waits for a free slot; it stays free, since no other task takes one. A slot without a task is
// never free, though it does not count as occupied.
u8 waitForRoom() {
    for (;;) {
        const u8 slot = freeSlot();
        if (slot != clientNone && loadPublished(clientNum) < externGlbCfg.maxClientNum) {
            return slot;
        }
        wdgFeedIfEnabled();
        sleepSeconds(1);
    }
}

// Hands the connection to the task of the slot.
void startClient(u8 slot, int fd, const ::sockaddr_storage &peer) {
    ClientStat *client = &clientStat[slot];
    storeShared(client->sockFd, fd);
    std::memcpy(client->peerAddr, &peer, sizeof client->peerAddr);
    storeShared(client->status, CS_TCP);
    storeShared(client->sendFail, 0);
    semGive(semClientStart[slot]);

    semTake(semClientNum, WAIT_FOREVER);
    const u8 count = static_cast<u8>(loadShared(clientNum) + 1);
    publish(clientNum, count);
    semGive(semClientNum);
    char name[clientTaskNameSize];
    clientTaskName(slot, name);
    dbInfo(DbSOC, DbCRI, "taskMain", "%s, client num: %u!", name, count);
    if (count >= externGlbCfg.maxClientNum) {
        dbInfo(DbOTH, DbCRI, "taskMain", "Max client num reached!");
    }
}

} // namespace

void acceptRound(int listenFd, const ::timeval &timeout) {
    const u8 slot = waitForRoom();
    ::fd_set readable;
    FD_ZERO(&readable);
    FD_SET(listenFd, &readable);
    ::timeval remaining = timeout;
    const int ready = socketOps.select(listenFd + 1, &readable, nullptr, nullptr, &remaining);
    wdgFeedIfEnabled();
    if (ready < 0) {
        dbInfo(DbOTH, DbSYS, "taskMain", "Aceept Select Faield!");
        return;
    }
    if (ready == 0) {
        return;
    }
    if (!FD_ISSET(listenFd, &readable)) {
        dbInfo(DbSOC, DbERR, "taskMain", "Aceept timeout!");
        return;
    }
    ::sockaddr_storage peer{};
    u32 length = sizeof clientStat->peerAddr;
    const int fd = socketOps.accept(listenFd, reinterpret_cast<::sockaddr *>(&peer), &length);
    if (fd < 0) {
        dbInfo(DbSOC, DbSYS, "taskMain", "Aceept Error!");
        return;
    }
    startClient(slot, fd, peer);
}

} // namespace ied
