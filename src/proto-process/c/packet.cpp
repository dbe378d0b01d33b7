#include "proto-process/c/packet.h"

#include "DebugInfo/DebugInfo.h"
#include "asn1/mmsCodec.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/services.h"

namespace ied {

namespace {

constexpr u32 sessionLengthMax = 255; // of a length held in one octet

// Room for the headers of TPKT, COTP and session in front of the presentation data.
constexpr u32 headerRoom = 64;

// What a failed decode must not change: everything but the trees of the upper layers.
struct SavedState {
    TpduCotp cotp;
    u8 tpktPresent;
    u8 cotpPresent;
};

u32 decodeFailed(PacketBuf *pdu, const SavedState &saved) {
    init_spdu_8327(&pdu->spdu);
    initPpdu8823(&pdu->ppdu, false);
    pdu->cotp = saved.cotp;
    pdu->tpktPresent = saved.tpktPresent;
    pdu->cotpPresent = saved.cotpPresent;
    pdu->spduPresent = 0;
    pdu->ppduPresent = 0;
    return 0;
}

// Octets of a TSDU; the upper layers of one frame.
struct Tsdu {
    const u8 *data;
    u32 len;
};

// Decodes session and presentation. False, with *err, when one of them is broken.
bool decUpperLayers(PacketBuf *pdu, Tsdu tsdu, i32 *err) {
    const u32 headers = dec_spdu_8327(&pdu->spdu, tsdu.data, tsdu.len, err);
    if (headers == 0) {
        dbInfo(DbISO, DbERR, "dec_packet", "SPDU decode error!");
        return false;
    }
    pdu->spduPresent = 1;
    if (headers == tsdu.len) {
        return true;
    }
    const u32 decoded =
        decPpdu8823(&pdu->ppdu, tsdu.data + headers, tsdu.len - headers, getPresentType(&pdu->spdu), err);
    if (decoded == 0) {
        dbInfo(DbISO, DbERR, "dec_packet", "ASN.1 decode error!");
        return false;
    }
    pdu->ppduPresent = 1;
    dbInfo(DbISO, DbDBG, "dec_packet", "ASN.1 decode %u bytes!", decoded);
    return true;
}

bool refuse(const char *text) {
    dbInfo(DbSOC, DbERR, "packet_process", "%s", text);
    return false;
}

// Whether a decoded request has the layers that a reply needs; logs the first that is missing.
bool hasAllLayers(const PacketBuf *request) {
    if (request->tpktPresent == 0) {
        return refuse("pack pdu not contain tpkt");
    }
    if (request->cotpPresent == 0) {
        return refuse("pack pdu not contain cotp");
    }
    if (request->spduPresent != 0) {
        return request->ppduPresent != 0 || request->spdu.abortPresent != 0 ||
               refuse("pack pdu not contain ppdu");
    }
    const bool wholeData = request->cotp.dtPresent != 0 && request->cotp.eot != 0;
    return !wholeData || refuse("pack pdu not contain spdu");
}

// Adds the presentation data behind an SPDU to its lengths. False when they exceed an octet.
bool addUserData(u8 *li, u8 *userDataLength, u32 n) {
    if (*li + n > sessionLengthMax) {
        return false;
    }
    *li = static_cast<u8>(*li + n);
    *userDataLength = static_cast<u8>(*userDataLength + n);
    return true;
}

bool addUserData(Spdu8327 *spdu, u32 n) {
    if (spdu->connectPresent != 0 && spdu->userDataPresent != 0) {
        return addUserData(&spdu->li, &spdu->userDataLength, n);
    }
    if (spdu->finishPresent != 0 && spdu->finishDataPresent != 0) {
        return addUserData(&spdu->finishLi, &spdu->finishDataLength, n);
    }
    return true;
}

// The MMS PDU that a reply carries, in data or in the user information of an AARE; or null.
MMSpdu *replyMmsPdu(const PacketBuf *reply) {
    if (reply->ppdu.userDataPresent != 0) {
        return firstMmsPdu(&reply->ppdu.userData);
    }
    const CPA_PPDUSeq *parameters =
        reply->ppdu.cpaPresent != 0 ? reply->ppdu.cpa.normal_mode_parameters : nullptr;
    const ACSE_apdu *apdu = parameters != nullptr ? firstAcseApdu(parameters->user_data) : nullptr;
    return apdu != nullptr && apdu->choiceId == ACSE_apdu::aare
               ? firstUserInformation(apdu->aare_->user_information)
               : nullptr;
}

} // namespace

int getPresentType(const Spdu8327 *session) {
    if (session->connectPresent != 0) {
        return PresentConnect;
    }
    if (session->finishPresent != 0) {
        return PresentFinish;
    }
    return session->dataPresent != 0 ? PresentData : PresentNone;
}

u32 dec_packet(PacketBuf *pdu, const u8 *data, u32 len, i32 *err) {
    const SavedState saved{pdu->cotp, pdu->tpktPresent, pdu->cotpPresent};
    const u32 tpkt = dec_tpdu_tpkt(&pdu->tpkt, data, len, err);
    if (tpkt == 0) {
        dbInfo(DbISO, DbINF, "dec_packet", "TPKT decode error!");
        return decodeFailed(pdu, saved);
    }
    pdu->tpktPresent = 1;
    const u32 length = pdu->tpkt.length;
    if (length == tpkt) {
        return length;
    }
    const u32 cotp = dec_tpdu_cotp(&pdu->cotp, data + tpkt, length - tpkt, err);
    if (cotp == 0) {
        dbInfo(DbISO, DbERR, "dec_packet", "COTP decode error!");
        return decodeFailed(pdu, saved);
    }
    pdu->cotpPresent = 1;
    Tsdu tsdu{data + tpkt + cotp, length - tpkt - cotp};
    if (tsdu.len == 0) {
        if (pdu->cotp.dtPresent == 0 || pdu->cotp.eot == 0 || pdu->cotp.reassembling == 0) {
            return length;
        }
        dbInfo(DbISO, DbINF, "dec_packet", "Decode a reassembled COTP PDU!");
        tsdu = {pdu->cotp.reassemblyBuf, pdu->cotp.reassemblyLen};
    }
    return decUpperLayers(pdu, tsdu, err) ? length : decodeFailed(pdu, saved);
}

int packet_process(const PacketBuf *request, PacketBuf *reply, u8 slot, i32 err) {
    if (!hasAllLayers(request)) {
        return 0;
    }
    if (request->ppduPresent != 0 && err == 0) {
        reply->ppduPresent = 1;
        if (processPpdu8823(&request->ppdu, &reply->ppdu, getPresentType(&request->spdu), slot) == 0) {
            return 0;
        }
    }
    if (request->spduPresent != 0) {
        reply->spduPresent = 1;
        if (process_spdu_8327(&request->spdu, &reply->spdu) == 0) {
            return refuse("spdu process error");
        }
    }
    reply->cotpPresent = 1;
    if (process_tpdu_cotp(&request->cotp, &reply->cotp) == 0) {
        return refuse("cotp process error");
    }
    reply->tpktPresent = 1;
    return process_tpdu_tpkt(&request->tpkt, &reply->tpkt);
}

u32 encPacket(PacketBuf *reply, u8 *buf, u32 size) {
    const u32 end = size - 1;
    u32 n = 0;
    if (reply->ppduPresent != 0) {
        n = encPpdu8823(&reply->ppdu, buf, end);
        if (n == 0) {
            return 0;
        }
    }
    if (n + headerRoom > end) {
        return 0;
    }
    if (reply->spduPresent != 0) {
        if (!addUserData(&reply->spdu, n)) {
            return 0;
        }
        n += enc_spdu_8327(&reply->spdu, buf, end - n);
    }
    if (reply->cotpPresent != 0) {
        n += enc_tpdu_cotp(&reply->cotp, buf, end - n);
    }
    if (reply->tpktPresent != 0) {
        // A packet beyond 16 bits is cut to frames, each with a length of its own.
        reply->tpkt.length = static_cast<u16>(reply->tpkt.length + n);
        n += enc_tpdu_tpkt(&reply->tpkt, buf, end - n);
    }
    return n;
}

u8 *encodedPacket(u8 *buf, u32 len) {
    return buf + externGlbCfg.sendBufSize - len - 1;
}

bool replaceOversizedReply(PacketBuf *reply) {
    MMSpdu *mms = replyMmsPdu(reply);
    if (mms == nullptr || mms->choiceId != MMSpdu::confirmedResponsePDU) {
        return false;
    }
    const AsnInt invokeID = mms->confirmed_ResponsePDU->invokeID;
    FreeMMSpdu(mms);
    *mms = {};
    buildConfirmedError(mms, invokeID, accessDenied);
    return true;
}

void initPdu(PacketBuf *pdu, bool full) {
    pdu->tpktPresent = 0;
    pdu->cotpPresent = 0;
    pdu->spduPresent = 0;
    pdu->ppduPresent = 0;
    init_tpdu_cotp(&pdu->cotp, full);
    init_spdu_8327(&pdu->spdu);
    initPpdu8823(&pdu->ppdu, full);
}

} // namespace ied
