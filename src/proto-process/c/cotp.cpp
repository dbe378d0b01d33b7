#include "proto-process/c/packet.h"

#include <cstring>

namespace ied {

namespace {

constexpr u8 codeConnectRequest = 0xE0;
constexpr u8 codeConnectConfirm = 0xD0;
constexpr u8 codeData = 0xF0;
constexpr u8 paramSize = 0xC0;
constexpr u8 paramCalling = 0xC1;
constexpr u8 paramCalled = 0xC2;
constexpr u8 endOfTsdu = 0x80;

constexpr u16 localReference = 0x1400;
constexpr u32 fixedOctets = 7; // CR and CC without parameters
constexpr u32 sizeOctets = 3;  // the TPDU size parameter
constexpr u32 tsapOctets = 4;  // a TSAP parameter of two octets

u32 fail(i32 *err, i32 code) {
    *err = code;
    return 0;
}

// Octets of the parameter at `data`, or 0 for one that is unknown or ends beyond `len`.
u32 decParameter(TpduCotp *rec, const u8 *data, u32 len) {
    const u32 size = data[0] == paramSize ? sizeOctets : tsapOctets;
    if (len < size || data[1] + 2U > len) {
        return 0;
    }
    switch (data[0]) {
    case paramSize:
        std::memcpy(rec->sizeParam, data, sizeOctets);
        rec->sizePresent = 1;
        return size;
    case paramCalling:
        rec->callingCode = data[0];
        rec->callingLen = data[1];
        rec->callingTsap = decShort(data + 2);
        rec->callingPresent = 1;
        return size;
    case paramCalled:
        rec->calledCode = data[0];
        rec->calledLen = data[1];
        rec->calledTsap = decShort(data + 2);
        rec->calledPresent = 1;
        return size;
    default:
        return 0;
    }
}

u32 decConnectRequest(TpduCotp *rec, const u8 *data, u32 len, i32 *err) {
    if (len < fixedOctets) {
        return fail(err, ErrUnknownTpdu);
    }
    rec->crPresent = 1;
    rec->dtPresent = 0;
    rec->callingPresent = rec->calledPresent = rec->sizePresent = 0;
    rec->li = data[0];
    rec->code = data[1];
    rec->dstRef = decShort(data + 2);
    rec->srcRef = decShort(data + 4);
    rec->classOption = data[6];
    u32 pos = fixedOctets;
    while (pos < rec->li) {
        const u32 size = decParameter(rec, data + pos, len - pos);
        if (size == 0) {
            return fail(err, ErrUnknownTpdu);
        }
        pos += size;
    }
    // A CR of class 0 has no user data. Octets behind it would be served before any association.
    return pos == len ? pos : fail(err, ErrUnknownTpdu);
}

u32 decData(TpduCotp *rec, const u8 *data, u32 len, i32 *err) {
    if (len < dtOctets) {
        return fail(err, ErrUnknownTpdu);
    }
    rec->dtPresent = 1;
    rec->dtLi = data[0];
    rec->dtCode = data[1];
    rec->dtEot = data[2];
    rec->eot = rec->dtEot >= endOfTsdu;
    if (rec->eot == 0) {
        rec->reassembling = 1;
    }
    if (rec->reassembling == 0) {
        return dtOctets;
    }
    const u32 payload = len - dtOctets;
    if (payload > rec->reassemblyCapacity - rec->reassemblyLen) {
        return fail(err, ErrOverflow);
    }
    if (payload > 0) {
        std::memcpy(rec->reassemblyBuf + rec->reassemblyLen, data + dtOctets, payload);
        rec->reassemblyLen += payload;
    }
    return len;
}

u8 *encTsap(u8 *out, u8 code, u8 length, u16 tsap) {
    out[0] = code;
    out[1] = length;
    encShort(out + 2, tsap);
    return out + tsapOctets;
}

} // namespace

u32 dec_tpdu_cotp(TpduCotp *rec, const u8 *data, u32 len, i32 *err) {
    *err = 0;
    if (len < 2 || data[0] + 1U > len) {
        return fail(err, ErrUnknownTpdu);
    }
    switch (data[1]) {
    case codeConnectRequest:
        return decConnectRequest(rec, data, len, err);
    case codeData:
        return decData(rec, data, len, err);
    default:
        return fail(err, ErrUnknownTpdu);
    }
}

int process_tpdu_cotp(const TpduCotp *request, TpduCotp *reply) {
    if (request->crPresent != 0) {
        reply->crPresent = 1;
        reply->code = codeConnectConfirm;
        reply->dstRef = request->srcRef;
        reply->srcRef = localReference;
        reply->classOption = 0;
        reply->li = fixedOctets - 1;
        // The parameters go back as they came, the selectors not exchanged, the size not reduced.
        reply->callingPresent = reply->calledPresent = request->callingPresent & request->calledPresent;
        if (reply->callingPresent != 0) {
            reply->callingCode = request->callingCode;
            reply->callingLen = request->callingLen;
            reply->callingTsap = request->callingTsap;
            reply->calledCode = request->calledCode;
            reply->calledLen = request->calledLen;
            reply->calledTsap = request->calledTsap;
            reply->li = static_cast<u8>(reply->li + 2 * tsapOctets);
        }
        reply->sizePresent = request->sizePresent;
        if (reply->sizePresent != 0) {
            std::memcpy(reply->sizeParam, request->sizeParam, sizeOctets);
            reply->li = static_cast<u8>(reply->li + sizeOctets);
        }
        reply->encodedSize = static_cast<u16>(reply->li + 1);
    }
    if (request->dtPresent != 0) {
        const u16 before = reply->encodedSize;
        rpt_tpdu_cotp(reply);
        reply->encodedSize = static_cast<u16>(before + dtOctets);
        reply->reassembling = 0;
    }
    return 1;
}

u32 enc_tpdu_cotp(const TpduCotp *rec, u8 *buf, u32 end) {
    u8 *out = buf + end - rec->encodedSize;
    if (rec->crPresent != 0) {
        out[0] = rec->li;
        out[1] = rec->code;
        encShort(out + 2, rec->dstRef);
        encShort(out + 4, rec->srcRef);
        out[6] = rec->classOption;
        out += fixedOctets;
        if (rec->callingPresent != 0) {
            out = encTsap(out, rec->callingCode, rec->callingLen, rec->callingTsap);
        }
        if (rec->calledPresent != 0) {
            out = encTsap(out, rec->calledCode, rec->calledLen, rec->calledTsap);
        }
        if (rec->sizePresent != 0) {
            std::memcpy(out, rec->sizeParam, sizeOctets);
            out += sizeOctets;
        }
    }
    if (rec->dtPresent != 0) {
        out[0] = rec->dtLi;
        out[1] = rec->dtCode;
        out[2] = rec->dtEot;
    }
    return rec->encodedSize;
}

int rpt_tpdu_cotp(TpduCotp *rec) {
    rec->dtLi = dtOctets - 1;
    rec->dtCode = codeData;
    rec->dtEot = endOfTsdu;
    rec->reassemblyLen = 0;
    rec->dtPresent = 1;
    rec->encodedSize = dtOctets;
    return dtOctets;
}

void init_tpdu_cotp(TpduCotp *rec, bool full) {
    rec->crPresent = 0;
    rec->reassemblyLen = 0;
    rec->reassembling = 0;
    rec->dtPresent = 0;
    rec->encodedSize = 0;
    if (full) {
        rec->reassemblyCapacity = 0;
        rec->reassemblyBuf = nullptr;
    }
}

} // namespace ied
