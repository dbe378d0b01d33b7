#include "proto-process/c/packet.h"

#include <initializer_list>

namespace ied {

namespace {

// SPDU identifiers (ISO 8327 clause 8); Data Transfer and Give Tokens share theirs.
constexpr u8 siGiveTokens = 1;
constexpr u8 siFinish = 9;
constexpr u8 siDisconnect = 10;
constexpr u8 siConnect = 13;
constexpr u8 siAccept = 14;
constexpr u8 siAbort = 25;
constexpr u8 siAbortReceived = 100; // the form in which peers of this profile send an abort

// Parameter identifiers.
constexpr u8 pgiConnectItem = 5;
constexpr u8 piTransportDisconnect = 17;
constexpr u8 piProtocolOptions = 19;
constexpr u8 piUserRequirements = 20;
constexpr u8 piVersionNumber = 22;
constexpr u8 piReflectParameters = 49;
constexpr u8 piCallingSelector = 0x33;
constexpr u8 piCalledSelector = 0x34;
constexpr u8 piUserData = 0xC1;

constexpr u8 headOctets = 2; // identifier and length
constexpr u8 itemOctets = 8; // Connect/Accept Item with both its parameters
constexpr u8 requirementsOctets = 4;

// Octets of one SPDU, taken in order. Once something is missing, or a length points beyond the
// frame, it stays failed and every further octet reads as 0.
struct SpduReader {
    const u8 *data;
    u32 len;
    u32 pos = 0;
    bool ok = true;

    bool next(u8 code) const { return ok && pos < len && data[pos] == code; }

    u8 octet() {
        ok = ok && pos < len;
        return ok ? data[pos++] : u8{0};
    }
    // The length octet of what has `fixed` octets of it read here; all of it lies in the frame.
    u8 length() {
        const u8 value = octet();
        ok = ok && value <= len - pos;
        return value;
    }
    void expect(u8 code) { ok = octet() == code && ok; }
};

SessionParam8 param8(SpduReader &in, u8 code) {
    in.expect(code);
    const u8 length = in.length();
    return {code, length, in.octet(), u8{in.ok}};
}

SessionParam16 param16(SpduReader &in, u8 code) {
    in.expect(code);
    const u8 length = in.length();
    const u8 high = in.octet();
    const u8 low = in.octet();
    return {code, length, static_cast<u16>(high << 8 | low), u8{in.ok}};
}

void decConnect(Spdu8327 *rec, SpduReader &in) {
    rec->si = in.octet();
    rec->li = in.length();
    in.expect(pgiConnectItem);
    rec->itemCode = pgiConnectItem;
    rec->itemLength = in.length();
    rec->itemPresent = in.ok;
    rec->protocolOptions = param8(in, piProtocolOptions);
    rec->versionNumber = param8(in, piVersionNumber);
    rec->userRequirements = param16(in, piUserRequirements);
    rec->callingSelector = param16(in, piCallingSelector);
    rec->calledSelector = param16(in, piCalledSelector);
    in.expect(piUserData);
    rec->userDataCode = piUserData;
    rec->userDataLength = in.length();
    rec->userDataPresent = in.ok;
    rec->connectPresent = in.ok;
}

void decGiveTokens(Spdu8327 *rec, SpduReader &in) {
    rec->giveTokensSi = in.octet();
    rec->giveTokensLi = in.length();
    rec->giveTokensPresent = in.ok;
    if (in.next(siGiveTokens)) {
        rec->dataSi = in.octet();
        rec->dataLi = in.length();
        rec->dataPresent = in.ok;
    }
}

void decFinish(Spdu8327 *rec, SpduReader &in) {
    rec->finishSi = in.octet();
    rec->finishLi = in.length();
    rec->finishPresent = in.ok;
    if (in.next(piUserData)) {
        rec->finishDataCode = in.octet();
        rec->finishDataLength = in.length();
        rec->finishDataPresent = in.ok;
    }
}

void decAbort(Spdu8327 *rec, SpduReader &in) {
    in.octet();
    rec->abortLiReceived = in.length();
    in.expect(0x80);
    in.expect(1);
    rec->abortValue1 = in.octet();
    if (rec->abortLiReceived == 6) {
        in.expect(0x81);
        in.expect(1);
        rec->abortValue2 = in.octet();
    } else if (rec->abortLiReceived != 3) {
        in.ok = false;
    }
    rec->abortPresent = in.ok;
}

void acceptConnect(const Spdu8327 *request, Spdu8327 *reply) {
    reply->connectPresent = 1;
    reply->si = siAccept;
    reply->li = 0;
    reply->itemPresent = request->itemPresent;
    if (reply->itemPresent != 0) {
        reply->itemCode = pgiConnectItem;
        reply->itemLength = request->itemLength;
        reply->protocolOptions = {piProtocolOptions, 1, request->protocolOptions.value, 1};
        reply->versionNumber = {piVersionNumber, 1, request->versionNumber.value, 1};
        reply->li = itemOctets;
    }
    const SessionParam16 &requirements = request->userRequirements;
    reply->userRequirements = {piUserRequirements, 2, requirements.value, requirements.present};
    if (requirements.present != 0) {
        reply->li = static_cast<u8>(reply->li + requirementsOctets);
    }
    reply->userDataPresent = request->userDataPresent;
    if (reply->userDataPresent != 0) {
        reply->userDataCode = piUserData;
        reply->userDataLength = 0;
        reply->li = static_cast<u8>(reply->li + headOctets);
    }
    reply->encodedSize = static_cast<u16>(reply->li + headOctets);
}

void acceptFinish(const Spdu8327 *request, Spdu8327 *reply) {
    reply->finishPresent = 1;
    reply->finishSi = siDisconnect;
    reply->finishDataPresent = request->finishDataPresent;
    reply->finishDataCode = piUserData;
    reply->finishDataLength = 0;
    reply->finishLi = reply->finishDataPresent != 0 ? headOctets : u8{0};
    reply->encodedSize = static_cast<u16>(reply->finishLi + headOctets);
}

void answerAbort(Spdu8327 *reply) {
    reply->abortPresent = 1;
    reply->abortSi = siAbort;
    reply->abortLi = 7;
    reply->abortTransportDisconnect = 5;
    reply->abortReflect[0] = 0x32;
    reply->abortReflect[1] = 0x10;
    reply->abortReflectLength = 2;
    reply->encodedSize = static_cast<u16>(reply->abortLi + headOctets);
}

u8 *put(u8 *out, std::initializer_list<u8> octets) {
    for (const u8 octet : octets) {
        *out++ = octet;
    }
    return out;
}

u8 *encAccept(const Spdu8327 *rec, u8 *out) {
    out = put(out, {rec->si, rec->li});
    if (rec->itemPresent != 0) {
        out = put(out, {rec->itemCode, rec->itemLength});
        for (const SessionParam8 *p : {&rec->protocolOptions, &rec->versionNumber}) {
            out = put(out, {p->code, p->length, p->value});
        }
    }
    if (rec->userRequirements.present != 0) {
        const SessionParam16 &p = rec->userRequirements;
        out = put(out, {p.code, p.length, static_cast<u8>(p.value >> 8), static_cast<u8>(p.value)});
    }
    return rec->userDataPresent != 0 ? put(out, {rec->userDataCode, rec->userDataLength}) : out;
}

} // namespace

u32 dec_spdu_8327(Spdu8327 *rec, const u8 *data, u32 len, i32 *err) {
    *err = 0;
    SpduReader in{data, len};
    switch (len > 0 ? data[0] : 0) {
    case siConnect:
        decConnect(rec, in);
        break;
    case siGiveTokens:
        decGiveTokens(rec, in);
        break;
    case siFinish:
        decFinish(rec, in);
        break;
    case siAbortReceived:
        decAbort(rec, in);
        break;
    default:
        in.ok = false;
    }
    if (!in.ok) {
        *err = ErrSession;
        return 0;
    }
    return in.pos;
}

int process_spdu_8327(const Spdu8327 *request, Spdu8327 *reply) {
    if (request->connectPresent != 0) {
        acceptConnect(request, reply);
    } else if (request->giveTokensPresent != 0) {
        rpt_spdu_8327(reply);
        reply->dataPresent = request->dataPresent;
        reply->encodedSize = static_cast<u16>(request->dataPresent != 0 ? 2 * headOctets : headOctets);
    } else if (request->finishPresent != 0) {
        acceptFinish(request, reply);
    } else if (request->abortPresent != 0) {
        answerAbort(reply);
    }
    return 1;
}

u32 enc_spdu_8327(const Spdu8327 *rec, u8 *buf, u32 end) {
    u8 *out = buf + end - rec->encodedSize;
    if (rec->connectPresent != 0) {
        out = encAccept(rec, out);
    }
    if (rec->giveTokensPresent != 0) {
        out = put(out, {rec->giveTokensSi, rec->giveTokensLi});
    }
    if (rec->dataPresent != 0) {
        out = put(out, {rec->dataSi, rec->dataLi});
    }
    if (rec->finishPresent != 0) {
        out = put(out, {rec->finishSi, rec->finishLi});
        if (rec->finishDataPresent != 0) {
            out = put(out, {rec->finishDataCode, rec->finishDataLength});
        }
    }
    if (rec->abortPresent != 0) {
        put(out, {rec->abortSi, rec->abortLi, piTransportDisconnect, 1, rec->abortTransportDisconnect,
                  piReflectParameters, rec->abortReflectLength, rec->abortReflect[0], rec->abortReflect[1]});
    }
    return rec->encodedSize;
}

int rpt_spdu_8327(Spdu8327 *rec) {
    rec->giveTokensSi = siGiveTokens;
    rec->giveTokensLi = 0;
    rec->giveTokensPresent = 1;
    rec->dataSi = siGiveTokens;
    rec->dataLi = 0;
    rec->dataPresent = 1;
    rec->encodedSize = 2 * headOctets;
    return 2 * headOctets;
}

void init_spdu_8327(Spdu8327 *rec) {
    rec->itemPresent = 0;
    rec->protocolOptions.present = 0;
    rec->versionNumber.present = 0;
    rec->userRequirements.present = 0;
    rec->callingSelector.present = 0;
    rec->calledSelector.present = 0;
    rec->userDataPresent = 0;
    rec->connectPresent = 0;
    rec->giveTokensPresent = 0;
    rec->dataPresent = 0;
    rec->finishDataPresent = 0;
    rec->finishPresent = 0;
    rec->abortPresent = 0;
    rec->encodedSize = 0;
}

} // namespace ied
