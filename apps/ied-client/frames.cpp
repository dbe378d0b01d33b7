#include "ied-client/frames.h"

namespace ied::client {

namespace {

constexpr u8 transportConfirm = 0xD0;
constexpr u8 transportData = 0xF0;
constexpr std::size_t tpktHeader = 4;
constexpr std::size_t messageLimit = 1 << 20; // octets of one message, far above any agreed PDU size

// Object identifiers as content octets: the abstract syntaxes of ACSE (2.2.1.0.1) and MMS
// (1.0.9506.2.1), BER (2.1.1), the application context of MMS (1.0.9506.2.3).
const Bytes acseSyntax = {0x52, 0x01, 0x00, 0x01};
const Bytes mmsSyntax = {0x28, 0xCA, 0x22, 0x02, 0x01};
const Bytes berSyntax = {0x51, 0x01};
const Bytes mmsContext = {0x28, 0xCA, 0x22, 0x02, 0x03};
constexpr i64 acseContextId = 1;
constexpr i64 mmsContextId = 3;

void appendTpkt(Bytes &out, View tpdu) {
    const std::size_t length = tpdu.size() + tpktHeader;
    appendTo(out, View(Bytes{3, 0, static_cast<u8>(length >> 8), static_cast<u8>(length)}));
    appendTo(out, tpdu);
}

Bytes dataFrames(View userData) {
    constexpr std::size_t most = tpduSize - 3;
    Bytes out;
    do {
        const View part = userData.first(userData.size() < most ? userData.size() : most);
        userData = userData.subspan(part.size());
        appendTpkt(out, join(Bytes{2, transportData, static_cast<u8>(userData.empty() ? 0x80 : 0)}, part));
    } while (!userData.empty());
    return out;
}

// Fully-encoded-data with one value of a presentation context.
Bytes userData(i64 context, View value) {
    return tlv(0x61, tlv(0x30, integer(0x02, context), tlv(0xA0, value)));
}

Bytes presentationContext(i64 id, const Bytes &syntax) {
    return tlv(0x30, integer(0x02, id), tlv(0x06, syntax), tlv(0x30, tlv(0x06, berSyntax)));
}

Received failed(const char *reason) {
    return {Message::malformed, {}, reason};
}

// The value of fully-encoded-data: whatever stands in the first PDV list's single-ASN1-type.
Element presentationValue(View presentation) {
    Reader outer{presentation};
    Reader list{expect(outer, 0x61)};
    Reader pdv{expect(list, 0x30)};
    take(pdv, 0x06);
    expect(pdv, 0x02);
    Reader value{expect(pdv, 0xA0)};
    const Element element = next(value);
    return outer.failed || list.failed || pdv.failed || value.failed ? Element{} : element;
}

// Octets of an element that lies in `whole`, from its tag to its end.
Bytes wholeElement(const Element &element) {
    return tlv(element.tag, element.content);
}

Received acceptedAssociation(View presentation) {
    Reader outer{presentation};
    Reader set{expect(outer, 0x31)};
    take(set, 0xA0);
    Reader parameters{expect(set, 0xA2)};
    while (more(parameters) && parameters.rest[0] != 0x61 && !parameters.failed) {
        next(parameters);
    }
    const Element aare = presentationValue(parameters.rest);
    if (aare.tag != 0x61) {
        return failed("connect answer without an ACSE response");
    }
    Reader fields{aare.content};
    while (more(fields)) {
        const Element field = next(fields);
        if (field.tag == 0xA2) {
            Reader result{field.content};
            const std::optional<i64> code = toInteger(expect(result, 0x02));
            if (code != 0) {
                return {Message::refused, {}, "association rejected"};
            }
        }
        if (field.tag != 0xBE) {
            continue;
        }
        Reader external{field.content};
        Reader parts{expect(external, 0x28)};
        take(parts, 0x06);
        take(parts, 0x02);
        Reader value{expect(parts, 0xA0)};
        const Element mms = next(value);
        if (!value.failed) {
            return {Message::associated, wholeElement(mms), ""};
        }
    }
    return failed("connect answer without an MMS initiate response");
}

// Position of the presentation data behind an SPDU that carries User Data (ISO 8327, code 0xC1).
std::optional<View> sessionUserData(View spdu) {
    std::size_t at = 1;
    const auto length = [&]() -> std::size_t {
        if (at >= spdu.size()) {
            return spdu.size();
        }
        if (spdu[at] != 0xFF) {
            return spdu[at++];
        }
        if (at + 3 > spdu.size()) {
            return spdu.size();
        }
        at += 3;
        return static_cast<std::size_t>(spdu[at - 2] << 8 | spdu[at - 1]);
    };
    if (length() > spdu.size() - at) {
        return std::nullopt;
    }
    while (at < spdu.size()) {
        const u8 code = spdu[at++];
        const std::size_t size = length();
        if (at > spdu.size() || size > spdu.size() - at) {
            return std::nullopt;
        }
        if (code == 0xC1) {
            return spdu.subspan(at, size);
        }
        at += size;
    }
    return std::nullopt;
}

Received sessionMessage(View spdu) {
    if (spdu.size() < 2) {
        return failed("short session header");
    }
    switch (spdu[0]) {
    case 1: { // Give Tokens, Data Transfer
        if (spdu.size() < 4 || spdu[1] != 0 || spdu[2] != 1 || spdu[3] != 0) {
            return failed("session data header");
        }
        const Element value = presentationValue(spdu.subspan(4));
        if (value.tag == 0) {
            return failed("presentation user data");
        }
        return {Message::data, wholeElement(value), ""};
    }
    case 14: { // ACCEPT
        const std::optional<View> data = sessionUserData(spdu);
        return data ? acceptedAssociation(*data) : failed("session ACCEPT without user data");
    }
    case 10: // DISCONNECT
        return {Message::released, {}, ""};
    case 12: // REFUSE
        return {Message::refused, {}, "session refused"};
    case 25: // ABORT
        return {Message::aborted, {}, ""};
    default:
        return failed("unknown session PDU");
    }
}

} // namespace

Bytes connectionRequest() {
    Bytes out;
    appendTpkt(out, Bytes{17, 0xE0, 0, 0, 0, 1, 0,                     // CR, source reference 1, class 0
                          0xC0, 1, 13, 0xC1, 2, 0, 1, 0xC2, 2, 0, 1}); // TPDU size 8192, both TSAPs
    return out;
}

Bytes associationRequest(View initiateRequest) {
    const Bytes aarq = tlv(0x60, tlv(0xA1, tlv(0x06, mmsContext)),
                           tlv(0xBE, tlv(0x28, integer(0x02, mmsContextId), tlv(0xA0, initiateRequest))));
    const Bytes selector = {0, 0, 0, 1};
    const Bytes cp = tlv(0x31, tlv(0xA0, integer(0x80, 1)),
                         tlv(0xA2, tlv(0x81, selector), tlv(0x82, selector),
                             tlv(0xA4, presentationContext(acseContextId, acseSyntax),
                                 presentationContext(mmsContextId, mmsSyntax)),
                             tlv(0x88, Bytes{6, 0}), userData(acseContextId, aarq)));
    const Bytes parameters = join(Bytes{5,    6,
                                        0x13, 1,
                                        0,    0x16,
                                        1,    2, // connect item: no options, version 2
                                        0x14, 2,
                                        0,    2, // duplex
                                        0x33, 2,
                                        0,    1,
                                        0x34, 2,
                                        0,    1, // selectors
                                        0xC1, static_cast<u8>(cp.size())},
                                  cp);
    return dataFrames(join(Bytes{13, static_cast<u8>(parameters.size())}, parameters));
}

Bytes dataRequest(View mmsPdu) {
    return dataFrames(join(Bytes{1, 0, 1, 0}, userData(mmsContextId, mmsPdu)));
}

Bytes releaseRequest() {
    const Bytes rlrq = userData(acseContextId, tlv(0x62, integer(0x80, 0)));
    return dataFrames(
        join(Bytes{9, static_cast<u8>(rlrq.size() + 2), 0xC1, static_cast<u8>(rlrq.size())}, rlrq));
}

std::optional<Received> nextMessage(Assembler &assembler) {
    Bytes &stream = assembler.stream;
    while (stream.size() >= tpktHeader) {
        const std::size_t length = static_cast<std::size_t>(stream[2] << 8 | stream[3]);
        if (stream[0] != 3 || length < tpktHeader + 3) {
            return failed("TPKT header");
        }
        if (length > stream.size()) {
            return std::nullopt;
        }
        const Bytes frame(stream.begin() + tpktHeader, stream.begin() + static_cast<std::ptrdiff_t>(length));
        stream.erase(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length));
        if (frame[1] == transportConfirm) {
            return Received{Message::connectionConfirm, {}, ""};
        }
        if (frame[1] != transportData || frame[0] != 2) {
            return Received{Message::refused, {}, "transport connection refused"};
        }
        if (assembler.partial.size() + frame.size() > messageLimit) {
            return failed("message without an end");
        }
        appendTo(assembler.partial, View(frame).subspan(3));
        if (frame[2] & 0x80) {
            const Bytes spdu = std::move(assembler.partial);
            assembler.partial.clear();
            return sessionMessage(spdu);
        }
    }
    return std::nullopt;
}

} // namespace ied::client
