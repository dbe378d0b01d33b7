// Client slots: one record and one task each, the state that the last reply left, and the one way
// out to a client's socket.
#pragma once

#include "platform/platform.h"
#include "proto-process/c/packet.h"

namespace ied {

enum ClientState : u8 {
    CS_NONE = 0, CS_IDLE = 2, CS_TCP, CS_COTP, CS_ASSOCIATED, CS_DATA, CS_CONCLUDED, CS_RELEASED,
    CS_ABORTED,
};

// Slot number that means no client.
inline constexpr u8 clientNone = 255;

struct ClientStat {
    u8 status;       // ClientState; shared
    i32 sockFd;      // shared
    u8 peerAddr[16]; // as accept gave it
    u32 pduSize;     // negotiated MMS PDU size; 0 is no limit of the client's
    u32 sendFail;    // failed sends since the last good one; shared
    u8 supportServ[86];
};

// Record of a client's open file.
struct ClientFile {
    u8 inUse;
    int fd;
    u32 position;
    u32 size;
};

extern ClientStat *clientStat; // maxClientNum records
extern ClientFile *clientFile; // maxClientNum records
extern u8 clientNum;           // occupied slots; written under semClientNum
extern SemId semClientNum;
extern SemId *semSend;         // maxClientNum mutexes, one packet on a socket
extern SemId *semClientStart;  // maxClientNum binary semaphores that wake a client task

// Bytes of one client task that did not decode yet.
struct ResBuf {
    u8 *base;  // recvBufSize octets
    u32 count; // octets held
};

// Task body of a slot; never returns.
void clientProcess(TaskArgument slot);
// Takes `len` received octets, answers what they complete. Returns 1.
int packetReply(PacketBuf *pdu, const u8 *data, u32 len, ResBuf *resBuf, u8 slot);
void releaseClient(u8 slot);
// Classes of requests: 0 else, 1 CR, 2 AARQ, 3 MMS, 4 conclude, 5 RLRQ, 6 abort.
u8 getAccessType(const PacketBuf *pdu);
u8 getClientStatus(const PacketBuf *pdu);
bool isClientValid(u8 slot);
// Sends a packet as encPacket left it in `buf` (sendBufSize octets), cut to frames of maxTpduSize.
bool sendPacket(u8 *buf, u32 len, u8 slot);

// Start of the process: brings everything up in order and serves; never returns.
[[noreturn]] void taskMain();
bool dirInit(const char *path);
bool socketInit(int *listenFd);
void activeKeepAlive(int fd);
void setKeepAliveParams(int fd, u32 idle, u32 cnt, u32 intvl);
// What Initiate announced: zeroes a slot's record for tests and a fresh start.
void clientStatInit();

// Monitor and report tasks.
extern SemId semMonitor; // given by the refresh task when data were refreshed
extern SemId semRefresh; // given back by the monitor task when it has looked at them
bool monitorStart();
void taskObjMon(TaskArgument);
void taskInfoRpt(TaskArgument);

} // namespace ied
