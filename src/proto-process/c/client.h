// Client slots: one record and one task each, the state that the last reply left, and the one way
// out to a client's socket.
#pragma once

#include "device/externGlbCfg.h"
#include "platform/platform.h"
#include "proto-process/c/packet.h"

namespace ied {

enum ClientState : u8 {
    CS_NONE = 0,
    CS_IDLE = 2,
    CS_TCP,
    CS_COTP,
    CS_ASSOCIATED,
    CS_DATA,
    CS_CONCLUDED,
    CS_RELEASED,
    CS_ABORTED,
};

// Slot number that means no client.
inline constexpr u8 clientNone = 255;

struct ClientStat {
    u8 status;          // ClientState; shared
    i32 sockFd;         // shared
    u32 association;    // raised, under semSend, when a connection of the slot ends; shared
    u8 peerAddr[16];    // as accept gave it
    u32 pduSize;        // negotiated MMS PDU size; 0 is no limit of the client's
    u32 sendFail;       // failed sends since the last good one; shared
    TaskId servingTask; // task that serves a connection now, taskNone for none; shared
    u8 faulted;         // the connection ends without another reply; of its task only
    u8 supportServ[serviceNum];
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
extern SemId *semSend;        // maxClientNum mutexes, one packet on a socket
extern SemId *semClientStart; // maxClientNum binary semaphores that wake a client task

// Bytes of one client task that did not decode yet, and where its replies are encoded.
struct ResBuf {
    u8 *base;   // recvBufSize octets
    u32 count;  // octets held
    u32 broken; // of these, octets at the front in whole frames that will never decode
    u8 *encBuf; // sendBufSize octets
};

// Makes the tables of slots, zeroed; with them standing, puts every slot back to zero.
void clientStatInit();
// Makes semClientNum and the semaphores of every slot; a failure ends the process.
void clientSemInit();

inline constexpr std::size_t clientTaskNameSize = 50;
// Name of a slot's task into `name`.
void clientTaskName(u8 slot, char (&name)[clientTaskNameSize]);

// Task body of a slot; never returns.
void clientProcess(TaskArgument slot);
// The buffers of one client task and its request record: allocated once, kept for ever.
void clientBufferInit(PacketBuf *pdu, ResBuf *resBuf);
// Serves the slot's socket until the connection ends, and gives the slot back. `recvBuf` has
// recvBufSize octets.
void serveConnection(PacketBuf *pdu, u8 *recvBuf, ResBuf *resBuf, u8 slot);
// Takes `len` (at most recvBufSize) received octets, answers each request that they complete and
// keeps what does not decode yet. Returns 1.
int packetReply(PacketBuf *pdu, const u8 *data, u32 len, ResBuf *resBuf, u8 slot);
// Ends the calling task after a fault that it cannot go on from, already logged. A client's task has to
// outlive its client, or the slot would be lost: there the call returns, the caller returns through
// whatever it holds, the request gets no reply, and the connection ends as any other. In every other
// task the call does not return (taskExit).
void endTaskOnFault();
// Gives the slot back: what the client held in the model, the socket, the count.
void releaseClient(u8 slot);

enum AccessType : u8 {
    AccessOther,
    AccessCotp,
    AccessInitiate,
    AccessMms,
    AccessConclude,
    AccessRelease,
    AccessAbort,
};
// Class of a decoded request (AccessType).
u8 getAccessType(const PacketBuf *pdu);
// State (ClientState) that a finished reply implies.
u8 getClientStatus(const PacketBuf *pdu);
// Whether spontaneous traffic may go to the slot: a client that has had an MMS reply and reads its
// socket. clientNone is not valid.
bool isClientValid(u8 slot);
// Sends a packet as encPacket left it in `buf` (sendBufSize octets), cut in place to frames of
// maxTpduSize. False when it did not go out whole; the association then ends by itself.
bool sendPacket(u8 *buf, u32 len, u8 slot);
// The same for what belongs to that association of the slot: nothing goes out once it has ended, so
// that the next client of the slot never gets it.
bool sendPacket(u8 *buf, u32 len, u8 slot, u32 association);

} // namespace ied
