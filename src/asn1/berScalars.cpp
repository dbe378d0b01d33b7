// Boolean, integers, null and object identifiers (ISO 8825-1 8.2, 8.3, 8.8, 8.19).
#include "asn1/asnKinds.h"
#include "basicInterface/memory.h"

#include <cstring>

namespace ied::asn {

u32 Boolean::encode(GenBuf *gen, const AsnBool *value) {
    putOctet(gen, *value ? 1 : 0);
    return 1;
}

void Boolean::decode(Reader &reader, u32, u32 len, AsnBool *value) {
    if (len != 1) {
        berFail(-25, "BDecAsnBoolContent: ERROR - BOOLEAN length must be 1\n");
    }
    if (left(reader) == 0) {
        berFail(-26, "BDecAsnBoolContent: ERROR - decoded past end of data\n");
    }
    *value = *reader.block->curr++ != 0;
}

namespace {

// Writes the `octets` low octets of `value`.
u32 putBigEndian(GenBuf *gen, u32 value, u32 octets) {
    for (u32 i = 0; i < octets; ++i) {
        putOctet(gen, static_cast<u8>(value >> (8 * i)));
    }
    return octets;
}

u32 takeBigEndian(Reader &reader, u32 octets, u32 value) {
    for (; octets; --octets) {
        value = value << 8 | *reader.block->curr++;
    }
    return value;
}

} // namespace

u32 Integer::encode(GenBuf *gen, const AsnInt *value) {
    u32 octets = 1;
    while (octets < 4 && *value >> (8 * octets - 1) != *value >> 31) {
        ++octets;
    }
    return putBigEndian(gen, static_cast<u32>(*value), octets);
}

void Integer::decode(Reader &reader, u32, u32 len, AsnInt *value) {
    if (len > 4) {
        berFail(-34, "BDecAsnIntContent: ERROR - integer to big to decode.\n");
    }
    if (len == 0 || len > left(reader)) {
        berFail(-35, "BDecAsnIntContent: ERROR - decoded past end of data \n");
    }
    const u32 sign = *reader.block->curr & 0x80 ? 0xFFFFFFFF : 0;
    *value = static_cast<AsnInt>(takeBigEndian(reader, len, sign));
}

u32 Unsigned::encode(GenBuf *gen, const UAsnInt *value) {
    u32 octets = 1;
    while (octets < 4 && *value >> (8 * octets - 1) != 0) {
        ++octets;
    }
    putBigEndian(gen, *value, octets);
    if (octets < 4 || *value >> 31 == 0) {
        return octets;
    }
    putOctet(gen, 0);
    return octets + 1;
}

void Unsigned::decode(Reader &reader, u32, u32 len, UAsnInt *value) {
    if (len > 5) {
        berFail(-37, "BDecUAsnIntContent: ERROR - integer to big to decode.\n");
    }
    if (len == 0 || len > left(reader)) {
        berFail(-40, "BDecUIntegerContent: ERROR - decoded past end of data\n");
    }
    if (*reader.block->curr > 127) {
        berFail(-38, "BDecUAsnIntContent: ERROR - integer is negative.\n");
    }
    if (len == 5 && *reader.block->curr != 0) {
        berFail(-39, "BDecUAsnIntContent: ERROR - integer is negative.\n");
    }
    *value = takeBigEndian(reader, len, 0);
}

u32 Null::encode(GenBuf *, const AsnNull *) {
    return 0;
}

void Null::decode(Reader &, u32, u32 len, AsnNull *) {
    if (len != 0) {
        berFail(-52, "BDecAsnNullContent: ERROR - NULL type's len must be 0\n");
    }
}

u32 ObjectIdentifier::encode(GenBuf *gen, const AsnOid *value) {
    return putOctets(gen, value->octs, value->octs ? value->octetLen : 0);
}

void ObjectIdentifier::decode(Reader &reader, u32, u32 len, AsnOid *value) {
    if (len == berIndefinite) {
        berFail(-61, "BDecAsnOidContent: ERROR - indefinite length on primitive\n");
    }
    if (len > left(reader)) {
        berFail(-62, "BDecAsnOidContent: ERROR - decoded past end of data\n");
    }
    value->octs = static_cast<u8 *>(Malloc(len + std::size_t{1}));
    value->octetLen = len;
    std::memcpy(value->octs, reader.block->curr, len);
    reader.block->curr += len;
}

void ObjectIdentifier::release(AsnOid *value) {
    Free(value->octs);
    *value = {};
}

} // namespace ied::asn
