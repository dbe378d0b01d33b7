#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "device/watchdog.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"

#include <cstring>

namespace ied {

namespace {

// The octets that one call of packetReply works through.
struct Input {
    const u8 *data;
    u32 total;
    u32 off;
};

// Puts the new octets behind those that are held, as far as they fit. True if `in` is now both.
bool mergeReserve(PacketBuf *pdu, Input *in, ResBuf *resBuf) {
    if (resBuf->count == 0) {
        return false;
    }
    if (in->total > externGlbCfg.recvBufSize - resBuf->count) {
        initPdu(pdu, false);
        resBuf->count = 0;
        resBuf->broken = 0;
        dbInfo(DbSOC, DbERR, "packetReply", "Too many reserve bytes!");
        return false;
    }
    std::memcpy(resBuf->base + resBuf->count, in->data, in->total);
    resBuf->count += in->total;
    *in = {resBuf->base, resBuf->count, resBuf->broken};
    dbInfo(DbSOC, DbINF, "packetReply", "Merge reserve bytes, len: %u!", resBuf->count);
    return true;
}

// Decodes the new octets by themselves, as if nothing had been held. 0, with the fragments that
// were collected still there, if they make no frame either: a TPKT header alone proves nothing.
u32 retryAlone(PacketBuf *pdu, const Input &fresh, i32 *err) {
    const PacketBuf saved = *pdu;
    initPdu(pdu, false);
    dbInfo(DbSOC, DbINF, "packetReply", "Decode from TCP buf, retry!");
    i32 retryErr;
    const u32 n = dec_packet(pdu, fresh.data, fresh.total, &retryErr);
    if (n == 0 || pdu->cotpPresent == 0) {
        *pdu = saved;
        return 0;
    }
    *err = retryErr;
    return n;
}

// Offset of what follows the undecodable frame at the front of merged octets, `newOctets` of which
// have just come; 0 if nothing is known to follow. Behind a header that gives no length only the
// new octets can begin a frame.
u32 behindBroken(const Input &in, u32 newOctets) {
    const u32 rest = in.total - in.off;
    if (rest < tpktOctets) {
        return 0;
    }
    TpduTpkt tpkt;
    i32 err;
    if (dec_tpdu_tpkt(&tpkt, in.data + in.off, rest, &err) != 0) {
        return tpkt.length < rest ? in.off + tpkt.length : 0;
    }
    const bool incomplete = decShort(in.data + in.off + 2) > rest;
    return !incomplete && newOctets < rest ? in.total - newOctets : 0;
}

// Passes over frames at the front of merged octets that will never decode, so that what follows
// them is not held up. Returns the octets of the frame behind them that decodes, or 0.
u32 passBroken(PacketBuf *pdu, Input *in, ResBuf *resBuf, u32 newOctets, i32 *err) {
    u32 n = 0;
    for (u32 next = behindBroken(*in, newOctets); n == 0 && next != 0; next = behindBroken(*in, newOctets)) {
        if (*err != ErrIncomplete && *err != ErrUnknownTpdu) {
            initPdu(pdu, false); // what has been reassembled, too, for it ends with this frame
        }
        in->off = next;
        resBuf->broken = next;
        n = dec_packet(pdu, in->data + in->off, in->total - in->off, err);
    }
    return n;
}

// Keeps what is left of the input. Held octets that were merged into it are there already.
void keepRest(const Input &in, bool merged, ResBuf *resBuf, u32 newOctets) {
    const u32 rest = merged ? newOctets : in.total - in.off;
    if (!merged) {
        std::memmove(resBuf->base + resBuf->count, in.data + in.off, rest);
        resBuf->count += rest;
        resBuf->broken = 0;
    }
    dbInfo(DbSOC, DbINF, "packetReply", "Reserve %d bytes, the resBuf len is %d!", static_cast<int>(rest),
           static_cast<int>(resBuf->count));
}

// Whether the client's state admits the request; logs when it does not.
bool isAdmitted(const PacketBuf *pdu, u8 slot) {
    const u8 access = getAccessType(pdu);
    const u8 status = loadShared(clientStat[slot].status);
    dbInfo(DbISO, DbDBG, "packetReply", "Client status: %d, accessType: %d!", status, access);
    if (access == AccessInitiate && status != CS_COTP) {
        dbInfo(DbISO, DbERR, "packetReply", "Received a MMS init req before COTP init!");
        return false;
    }
    if (access >= AccessMms && status < CS_ASSOCIATED) {
        dbInfo(DbISO, DbERR, "packetReply", "Received a MMS normal req before MMS init!");
        return false;
    }
    return true;
}

void sendReply(PacketBuf *reply, u8 *encBuf, u8 slot) {
    u32 len = encPacket(reply, encBuf, externGlbCfg.sendBufSize);
    if (len == 0 && replaceOversizedReply(reply)) {
        len = encPacket(reply, encBuf, externGlbCfg.sendBufSize);
    }
    const u8 status = getClientStatus(reply);
    storeShared(clientStat[slot].status, status);
    dbInfo(DbSOC, DbDBG, "packetReply", "Current client status is: %d!", status);
    if (len != 0) {
        sendPacket(encBuf, len, slot);
    }
}

void answer(const PacketBuf *pdu, PacketBuf *reply, u8 *encBuf, u8 slot, i32 err) {
    if (packet_process(pdu, reply, slot, err) == 0) {
        dbInfo(DbSOC, DbERR, "packetReply", "process error or error not process!");
    } else if (clientStat[slot].faulted == 0) {
        sendReply(reply, encBuf, slot);
    }
}

// Handles the frame that was just decoded. After a fault of the task no more is said.
void handleFrame(PacketBuf *pdu, PacketBuf *reply, u8 *encBuf, u8 slot, i32 err) {
    if (pdu->cotp.dtPresent != 0 && pdu->cotp.eot == 0 && pdu->cotp.reassembling != 0) {
        dbInfo(DbISO, DbDBG, "packetReply", "This is a COTP fragment!");
        return; // the record carries the fragments over
    }
    if (!isAdmitted(pdu, slot)) {
        initPdu(pdu, false);
        return;
    }
    answer(pdu, reply, encBuf, slot, err);
    initPdu(pdu, false);
    initPdu(reply, false);
    wdgFeedClient();
    taskDelay(loadShared(clientNum));
}

} // namespace

int packetReply(PacketBuf *pdu, const u8 *data, u32 len, ResBuf *resBuf, u8 slot) {
    PacketBuf reply{};
    initPdu(&reply, true);
    Input in{data, len, 0};
    bool merged = mergeReserve(pdu, &in, resBuf);
    while (in.off < in.total && clientStat[slot].faulted == 0) {
        i32 err;
        u32 n = dec_packet(pdu, in.data + in.off, in.total - in.off, &err);
        if (n == 0 && merged) {
            n = retryAlone(pdu, {data, len, 0}, &err);
            if (n != 0) {
                in = {data, len, 0};
            } else {
                n = passBroken(pdu, &in, resBuf, len, &err);
            }
        }
        if (n == 0) {
            keepRest(in, merged, resBuf, len);
            return 1;
        }
        dbInfo(DbISO, DbDBG, "packetReply", "Decode %u bytes!", n);
        resBuf->count = 0;
        resBuf->broken = 0;
        merged = false;
        in.off += n;
        handleFrame(pdu, &reply, resBuf->encBuf, slot, err);
    }
    return 1;
}

} // namespace ied
