#include "DebugInfo/DebugInfo.h"
#include "basicInterface/memory.h"
#include "device/externGlbCfg.h"
#include "device/externalInterface.h"
#include "device/watchdog.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportModel.h"
#include "proto-process/c/serverStart.h"
#include "proto-process/c/settingGroup.h"
#include "proto-process/c/substitution.h"

#include <cstdio>

namespace ied {

namespace {

constexpr int releaseDelay = 10; // ticks in which the last reply leaves

// Why a connection ends.
struct End {
    DbLevel level;
    const char *message; // null: it does not end
};
constexpr End goesOn{DbDBG, nullptr};

// Waits for octets of the client and answers what they complete.
End receiveRound(PacketBuf *pdu, u8 *recvBuf, ResBuf *resBuf, u8 slot) {
    const int fd = loadShared(clientStat[slot].sockFd);
    ::fd_set readable;
    FD_ZERO(&readable);
    FD_SET(fd, &readable);
    ::timeval timeout = splitTimeout(externGlbCfg.recvTimeout);
    const int ready = socketOps.select(fd + 1, &readable, nullptr, nullptr, &timeout);
    wdgFeedClient();
    if (ready < 0) {
        return {DbSYS, "Receive select failed!"};
    }
    if (ready == 0 || !FD_ISSET(fd, &readable)) {
        return goesOn;
    }
    const long received = socketOps.recv(fd, recvBuf, externGlbCfg.recvBufSize, 0);
    if (received < 0) {
        return {DbSYS, "Receive Error!"};
    }
    if (received == 0) {
        return {DbCRI, "Receive 0 bytes!"};
    }
    ctlComLedFlash();
    dbInfo(DbSOC, DbDBG, "clientProcess", "Receive a packet, len: %d", static_cast<int>(received));
    packetReply(pdu, recvBuf, static_cast<u32>(received), resBuf, slot);
    return goesOn;
}

// Whether the state of the client ends the connection.
End checkClient(const ClientStat *client) {
    if (client->faulted != 0) {
        return {DbERR, "Client ended by a fault!"};
    }
    if (loadShared(client->sendFail) >= externGlbCfg.maxSendFail) {
        return {DbERR, "Send error!"};
    }
    const u8 status = loadShared(client->status);
    return status == CS_RELEASED || status == CS_ABORTED ? End{DbCRI, "Client quit!"} : goesOn;
}

// Closes the socket when no other task is in the middle of a packet on it: the number of a closed
// descriptor is soon another client's. The sender, if there is one, fails at once.
void closeSocket(u8 slot) {
    ClientStat *client = &clientStat[slot];
    const int fd = loadShared(client->sockFd);
    if (semTake(semSend[slot], NO_WAIT) != OK) {
        socketOps.shutdown(fd, SHUT_RDWR);
        semTake(semSend[slot], WAIT_FOREVER);
    }
    storeShared(client->sockFd, -1);
    publish(client->association, loadShared(client->association) + 1);
    socketOps.close(fd);
    semGive(semSend[slot]);
}

void waitForClient(u8 slot) {
    const int second = static_cast<int>(sysClkRateGet());
    bool started = false;
    while (!started) {
        started =
            semTake(semClientStart[slot], second) == OK && loadShared(clientStat[slot].status) == CS_TCP;
        wdgFeedClient();
    }
}

} // namespace

void clientTaskName(u8 slot, char (&name)[clientTaskNameSize]) {
    std::snprintf(name, sizeof name, "t61850Client%d", slot);
}

void clientBufferInit(PacketBuf *pdu, ResBuf *resBuf) {
    resBuf->base = MallocArray<u8>(externGlbCfg.recvBufSize);
    resBuf->count = 0;
    resBuf->broken = 0;
    resBuf->encBuf = MallocArray<u8>(externGlbCfg.sendBufSize);
    initPdu(pdu, true);
    pdu->cotp.reassemblyCapacity = externGlbCfg.recvBufSize;
    pdu->cotp.reassemblyBuf = MallocArray<u8>(externGlbCfg.recvBufSize);
}

void serveConnection(PacketBuf *pdu, u8 *recvBuf, ResBuf *resBuf, u8 slot) {
    resBuf->count = 0;
    resBuf->broken = 0;
    initPdu(pdu, false);
    clientStat[slot].faulted = 0;
    storeShared(clientStat[slot].servingTask, taskIdSelf());
    const int fd = loadShared(clientStat[slot].sockFd);
    activeKeepAlive(fd);
    setKeepAliveParams(fd, externGlbCfg.keepIdle, externGlbCfg.keepCnt, externGlbCfg.keepIntvl);
    End end = goesOn;
    while (end.message == nullptr) {
        end = receiveRound(pdu, recvBuf, resBuf, slot);
        if (end.message == nullptr) {
            end = checkClient(&clientStat[slot]);
        }
    }
    dbInfo(DbSOC, end.level, "clientProcess", "%s", end.message);
    storeShared(clientStat[slot].servingTask, taskNone);
    releaseClient(slot);
}

void endTaskOnFault() {
    const TaskId self = taskIdSelf();
    for (u8 slot = 0; clientStat != nullptr && slot < externGlbCfg.maxClientNum; slot++) {
        if (loadShared(clientStat[slot].servingTask) == self) {
            clientStat[slot].faulted = 1;
            return;
        }
    }
    taskExit(0);
}

void releaseClient(u8 slot) {
    releaseClientRCB(slot);
    releaseClientSGCB(slot);
    releaseClientSV(slot);
    taskDelay(releaseDelay);
    closeSocket(slot);
    publish(clientStat[slot].status, CS_IDLE);
    semTake(semClientNum, WAIT_FOREVER);
    publish(clientNum, static_cast<u8>(loadShared(clientNum) - 1));
    semGive(semClientNum);
}

void clientProcess(TaskArgument argument) {
    const u8 slot = static_cast<u8>(argument);
    PacketBuf pdu{};
    ResBuf resBuf{};
    clientBufferInit(&pdu, &resBuf);
    u8 *recvBuf = MallocArray<u8>(externGlbCfg.recvBufSize);
    if (wdgWatchesClients()) {
        wdgRegister(static_cast<i32>(externGlbCfg.wdgClientTimeout));
    }
    for (;;) {
        waitForClient(slot);
        serveConnection(&pdu, recvBuf, &resBuf, slot);
    }
}

} // namespace ied
