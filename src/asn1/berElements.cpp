// Whole elements that are kept as they came: ANY, and content whose type is not followed.
#include "asn1/asnKinds.h"
#include "basicInterface/memory.h"

#include <cstring>

namespace ied::asn {

namespace {

// Passes over `len` octets of a primitive.
void skipPrimitive(Reader &reader, u32 len) {
    if (len > left(reader)) { // the indefinite form, too
        berFail(-98, "ERROR - decoded past end of data\n");
    }
    reader.block->curr += len;
}

// Passes over the content of a constructed element and checks its structure. Returns its octets
// without an end-of-contents.
u32 skipElements(Reader &reader, u32 len, u32 depth) {
    const Nesting nesting(depth);
    const u8 *start = reader.block->curr;
    Scope scope(reader, len, -98);
    while (const u32 tag = scope.nextTag()) {
        const u32 elementLen = readLen(reader);
        if (isConstructed(tag)) {
            skipElements(reader, elementLen, depth);
        } else {
            skipPrimitive(reader, elementLen);
        }
    }
    scope.close();
    return static_cast<u32>(reader.block->curr - start) - (len == berIndefinite ? 2 : 0);
}

// Copies an element of `len` content octets, whose tag and length were read already, into a block
// of its own, with the length in its shortest form.
void keepElement(u32 tag, const u8 *content, u32 len, AsnOcts *value) {
    constexpr u32 headerRoom = 9; // a tag of four octets and a length of five
    value->octs = static_cast<u8 *>(Malloc(headerRoom + len + std::size_t{1}));
    BerBuf element;
    berBufWrite(&element, value->octs, headerRoom + len);
    putOctets(&element.gen, content, len);
    value->octetLen = putHeader(&element.gen, tag, len);
    std::memmove(value->octs, element.block.dataStart, value->octetLen);
    value->octs[value->octetLen] = 0;
}

} // namespace

void Undecoded::decode(Reader &reader, u32 tagRead, u32 len, AsnOcts *value) {
    const u8 *content = reader.block->curr;
    if (isConstructed(tagRead)) {
        len = skipElements(reader, len, 0);
    } else {
        skipPrimitive(reader, len);
    }
    keepElement(tagRead, content, len, value);
}

u32 Any::encode(GenBuf *gen, const AsnAny *value) {
    return value->value ? OctetString::encode(gen, value->value) : 0;
}

void Any::decode(Reader &reader, u32 tagRead, u32 len, AsnAny *value) {
    if (value->ai) {
        berFail(-13, "ERROR - ANY Decode routine is NULL\n");
    }
    if (len == berIndefinite) {
        berFail(-95, "BDecUnknownAsnAny: ERROR - indef length object found\n");
    }
    if (len > left(reader)) {
        berFail(-96, "BDecUnknownAsnAny: ERROR - decoded past end of data\n");
    }
    value->value = MallocOf<AsnOcts>();
    keepElement(tagRead, reader.block->curr, len, value->value);
    reader.block->curr += len;
}

void Any::release(AsnAny *value) {
    if (value->value) {
        OctetString::release(value->value);
    }
    Free(value->value);
    *value = {};
}

} // namespace ied::asn
