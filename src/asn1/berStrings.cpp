// Bit, octet and character strings, primitive and constructed (ISO 8825-1 8.6, 8.7, 8.23).
#include "asn1/asnKinds.h"
#include "basicInterface/memory.h"

#include <cstring>

namespace ied::asn {

namespace {

constexpr const char *invalidBitLen = "BDecAsnBitsContent: ERROR - invalid length on primitive BIT STRING\n";

u8 *newOctets(u32 len) {
    return static_cast<u8 *>(Malloc(len + std::size_t{1}));
}

// The segments of one constructed string, all nested levels, in order.
struct Segments {
    u32 octets; // of content, so far
    u32 unused; // bits at the end of the last segment
    u8 *to;     // where the content goes; null while it is only measured
};

struct SegmentRules {
    u32 tag; // of a primitive segment
    bool bits;
    i32 pastEnd, otherTag;
    const char *pastEndText, *otherTagText;
};

constexpr SegmentRules octetRules = {
    OctetString::tag,
    false,
    -56,
    -57,
    "BDecConsOctetString: ERROR - attempt to decode past end of data\n",
    "BDecConsOctetString: ERROR - decoded non-OCTET STRING tag inside a constructed OCTET STRING\n"};

constexpr SegmentRules bitRules = {
    BitString::tag,
    true,
    -17,
    -18,
    "FillBitStringStk: ERROR - expecting more data\n",
    "FillBitStringStk: ERROR - decoded non-BIT STRING tag inside a constructed BIT STRING\n"};

// Takes the unused-bits octet at the start of a bit string of `len` octets, which are there.
u32 takeUnusedBits(Reader &reader, u32 len) {
    const u8 unused = *reader.block->curr++;
    if (unused > 7 || (unused > 0 && len == 1)) {
        berFail(-14);
    }
    return unused;
}

void takeSegment(Reader &reader, u32 len, const SegmentRules &rules, Segments &segments) {
    if (len > left(reader)) {
        berFail(rules.pastEnd, rules.pastEndText);
    }
    if (rules.bits) {
        if (len == 0) {
            berFail(-20, invalidBitLen);
        }
        if (segments.unused) {
            berFail(-16, "FillBitStringStk: ERROR - a component of a constructed BIT STRING that is not "
                         "the last has non-zero unused bits\n");
        }
        segments.unused = takeUnusedBits(reader, len);
        --len;
    }
    if (segments.to && len) {
        std::memcpy(segments.to + segments.octets, reader.block->curr, len);
    }
    segments.octets += len;
    reader.block->curr += len;
}

void takeSegments(Reader &reader, u32 len, const SegmentRules &rules, Segments &segments, u32 depth) {
    const Nesting nesting(depth);
    Scope scope(reader, len, rules.pastEnd);
    while (const u32 tag = scope.nextTag()) {
        const u32 segmentLen = readLen(reader);
        if (tag == rules.tag) {
            takeSegment(reader, segmentLen, rules, segments);
        } else if (tag == (rules.tag | constructedBit)) {
            takeSegments(reader, segmentLen, rules, segments, depth);
        } else {
            berFail(rules.otherTag, rules.otherTagText);
        }
    }
    scope.close();
}

// Joins the segments into one new block, which `block` holds: they are measured first, so that the
// block costs no more than what came.
Segments joinSegments(Reader &reader, u32 len, const SegmentRules &rules, u8 *&block) {
    u8 *const start = reader.block->curr;
    Segments measured{};
    takeSegments(reader, len, rules, measured, 0);
    block = newOctets(measured.octets);
    reader.block->curr = start;
    Segments joined{0, 0, block};
    takeSegments(reader, len, rules, joined, 0);
    return joined;
}

bool isVisible(const AsnOcts &text) {
    for (u32 i = 0; i < text.octetLen; ++i) {
        if (text.octs[i] > 128) {
            return false;
        }
    }
    return true;
}

// Octets that follow a lead octet of UTF-8 in its original form of up to six octets; -1 for an
// octet that leads nothing.
int utf8Followers(u8 lead) {
    constexpr struct {
        u8 mask, value;
    } leads[] = {{0x80, 0x00}, {0xE0, 0xC0}, {0xF0, 0xE0}, {0xF8, 0xF0}, {0xFC, 0xF8}, {0xFE, 0xFC}};
    for (int i = 0; i < 6; ++i) {
        if ((lead & leads[i].mask) == leads[i].value) {
            return i;
        }
    }
    return -1;
}

bool isUtf8(const AsnOcts &text) {
    int followers = 0;
    for (u32 i = 0; i < text.octetLen; ++i) {
        const u8 octet = text.octs[i];
        if (followers > 0 && (octet & 0xC0) != 0x80) {
            return false;
        }
        followers = followers > 0 ? followers - 1 : utf8Followers(octet);
        if (followers < 0) {
            return false;
        }
    }
    return followers == 0;
}

// Encodes text; one that is not what its type allows marks the buffer and goes out all the same.
u32 encodeText(GenBuf *gen, const AsnOcts *value, bool allowed(const AsnOcts &)) {
    if (value->octs && !allowed(*value)) {
        gen->ops->BufSetWriteError(gen->bufInfo, 1);
    }
    return OctetString::encode(gen, value);
}

} // namespace

u32 BitString::encode(GenBuf *gen, const AsnBits *value) {
    const u32 bits = value->bits ? value->bitLen : 0;
    const u32 octets = bits / 8 + (bits % 8 != 0);
    putOctets(gen, value->bits, octets);
    putOctet(gen, static_cast<u8>(octets * 8 - bits));
    return octets + 1;
}

void BitString::decode(Reader &reader, u32 tagRead, u32 len, AsnBits *value) {
    if (isConstructed(tagRead)) {
        const Segments joined = joinSegments(reader, len, bitRules, value->bits);
        value->bitLen = joined.octets * 8 - joined.unused;
        return;
    }
    if (len == berIndefinite) {
        berFail(-19, "BDecAsnBitsContent: ERROR - indefinite length on primitive\n");
    }
    if (len == 0) {
        berFail(-15, invalidBitLen);
    }
    if (len > left(reader)) {
        berFail(-21, "BDecAsnBitsContent: ERROR - decoded past end of data\n");
    }
    const u32 unused = takeUnusedBits(reader, len);
    value->bits = newOctets(len - 1);
    value->bitLen = (len - 1) * 8 - unused;
    std::memcpy(value->bits, reader.block->curr, len - 1);
    reader.block->curr += len - 1;
}

void BitString::release(AsnBits *value) {
    Free(value->bits);
    *value = {};
}

u32 OctetString::encode(GenBuf *gen, const AsnOcts *value) {
    return putOctets(gen, value->octs, value->octs ? value->octetLen : 0);
}

void OctetString::decode(Reader &reader, u32 tagRead, u32 len, AsnOcts *value) {
    if (isConstructed(tagRead)) {
        value->octetLen = joinSegments(reader, len, octetRules, value->octs).octets;
        return;
    }
    if (len == berIndefinite) {
        berFail(-58, "BDecAsnOctsContent: ERROR - indefinite length on primitive\n");
    }
    if (len > left(reader)) {
        berFail(-59, "BDecAsnOctsContent: ERROR - decoded past end of data\n");
    }
    value->octs = newOctets(len);
    value->octetLen = len;
    std::memcpy(value->octs, reader.block->curr, len);
    reader.block->curr += len;
}

void OctetString::release(AsnOcts *value) {
    Free(value->octs);
    *value = {};
}

u32 Visible::encode(GenBuf *gen, const AsnOcts *value) {
    return encodeText(gen, value, isVisible);
}

void Visible::decode(Reader &reader, u32 tagRead, u32 len, AsnOcts *value) {
    OctetString::decode(reader, tagRead, len, value);
    if (!isVisible(*value)) {
        berFail(-93, "BDecVisibleStringContent: ERROR - Format Error");
    }
}

u32 Utf8::encode(GenBuf *gen, const AsnOcts *value) {
    return encodeText(gen, value, isUtf8);
}

void Utf8::decode(Reader &reader, u32 tagRead, u32 len, AsnOcts *value) {
    OctetString::decode(reader, tagRead, len, value);
    if (!isUtf8(*value)) {
        berFail(-91, "BDecUTF8StringContent: ERROR - Invalid UTF-8 Encoding");
    }
}

} // namespace ied::asn
