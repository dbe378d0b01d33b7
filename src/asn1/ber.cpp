// Errors, tags and lengths (ISO 8825-1 8.1).
#include "asn1/ber.h"

#include "asn1/berCoding.h"
#include "platform/shared.h"

namespace ied {

Asn1ErrorHandler asn1CurrentErrorHandler = Asn1DefaultErrorHandler;

void Asn1DefaultErrorHandler(const char *) {}

void Asn1Error(const char *text) {
    loadShared(asn1CurrentErrorHandler)(text);
}

Asn1ErrorHandler Asn1InstallErrorHandler(Asn1ErrorHandler handler) {
    Asn1ErrorHandler before = loadShared(asn1CurrentErrorHandler);
    storeShared(asn1CurrentErrorHandler, handler ? handler : Asn1DefaultErrorHandler);
    return before;
}

void berFail(i32 code, const char *text) {
    if (text) {
        Asn1Error(text);
    }
    throw BerError{code};
}

u32 BEncTag(GenBuf *gen, u32 tag) {
    const u32 octets = asn::tagOctets(tag);
    for (u32 i = octets; i-- > 0;) {
        asn::putOctet(gen, static_cast<u8>(tag >> (24 - 8 * i)));
    }
    return octets;
}

u32 BEncDefLen(GenBuf *gen, u32 len) {
    if (len < 0x80) {
        asn::putOctet(gen, static_cast<u8>(len));
        return 1;
    }
    const u32 octets = len < 0x100 ? 1 : len < 0x10000 ? 2 : len < 0xFFFFA6 ? 3 : 4;
    for (u32 i = 0; i < octets; ++i) {
        asn::putOctet(gen, static_cast<u8>(len >> (8 * i)));
    }
    asn::putOctet(gen, static_cast<u8>(0x80 | octets));
    return octets + 1;
}

namespace asn {

u32 readLongTag(Reader &reader) {
    ExpBuf *block = reader.block;
    u32 tag = 0;
    for (u32 shift = 32; shift > 0;) {
        if (block->curr == block->dataEnd) {
            break;
        }
        const u8 octet = *block->curr++;
        shift -= 8;
        tag |= static_cast<u32>(octet) << shift;
        if (shift == 24 ? (octet & 0x1F) != 0x1F : !(octet & 0x80)) {
            return tag;
        }
    }
    berFail(-74, "BDecTag: ERROR - decoded past the end of data\n");
}

u32 readLongLen(Reader &reader) {
    ExpBuf *block = reader.block;
    if (block->curr == block->dataEnd) {
        berFail(-41, "BDecLen: ERROR - decoded past end of data\n");
    }
    const u8 first = *block->curr++;
    if (first < 0x80) {
        return first;
    }
    if (first == 0x80) {
        return berIndefinite;
    }
    u32 octets = first & 0x7F;
    if (octets > 4) {
        berFail(-42, "BDecLen: ERROR - length overflow\n");
    }
    if (octets > left(reader)) {
        berFail(-43, "BDecLen: ERROR - decoded past end of data\n");
    }
    u32 len = 0;
    for (; octets; --octets) {
        len = len << 8 | *block->curr++;
    }
    if (len == berIndefinite) { // a definite length, but the number that means the other form
        berFail(-42, "BDecLen: ERROR - length overflow\n");
    }
    return len;
}

} // namespace asn

namespace {

// Runs `read` on the buffer and adds what it consumed to the caller's counter.
template <class Read> u32 counted(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *env, Read read) {
    asn::Reader reader{*gen->bufInfo, env};
    const u8 *start = reader.block->curr;
    const u32 result = read(reader);
    *bytesDecoded += static_cast<u32>(reader.block->curr - start);
    return result;
}

} // namespace

u32 BDecTag(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *env) {
    return counted(gen, bytesDecoded, env, asn::readTag);
}

u32 BDecLen(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *env) {
    return counted(gen, bytesDecoded, env, asn::readLen);
}

void BDecEoc(GenBuf *gen, u32 *bytesDecoded, DecodeEnv *) {
    for (int i = 0; i < 2; ++i) {
        const u8 octet = gen->ops->BufGetByte(gen->bufInfo);
        if (octet != 0 || gen->ops->BufReadError(gen->bufInfo)) {
            berFail(-44, "BDecEoc: ERROR - non zero byte in EOC or end of data reached\n");
        }
    }
    *bytesDecoded += 2;
}

} // namespace ied
