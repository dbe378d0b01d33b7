// The primitive kinds of ASN.1 values: the universal tag, the forms a tag may take, and the rules
// of the content. A kind has
//   Value       the C++ type that holds a value
//   tag         its universal identifier octets, 0 for a kind that brings its tags along
//   form        primitive, constructed, or either (strings, on decoding)
//   encode      writes the content; decode reads it; release frees what hangs from the value.
#pragma once

#include "asn1/berCoding.h"

namespace ied::asn {

enum class Form {
    primitive,
    constructed,
    either
};

struct Boolean {
    using Value = AsnBool;
    static constexpr u32 tag = 0x01000000;
    static constexpr Form form = Form::primitive;
    static u32 encode(GenBuf *gen, const AsnBool *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnBool *value);
    static void release(AsnBool *) {}
};

struct Integer {
    using Value = AsnInt;
    static constexpr u32 tag = 0x02000000;
    static constexpr Form form = Form::primitive;
    static u32 encode(GenBuf *gen, const AsnInt *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnInt *value);
    static void release(AsnInt *) {}
};

struct Unsigned {
    using Value = UAsnInt;
    static constexpr u32 tag = 0x02000000;
    static constexpr Form form = Form::primitive;
    static u32 encode(GenBuf *gen, const UAsnInt *value);
    static void decode(Reader &reader, u32 tag, u32 len, UAsnInt *value);
    static void release(UAsnInt *) {}
};

struct Null {
    using Value = AsnNull;
    static constexpr u32 tag = 0x05000000;
    static constexpr Form form = Form::primitive;
    static u32 encode(GenBuf *gen, const AsnNull *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnNull *value);
    static void release(AsnNull *) {}
};

struct Real {
    using Value = AsnReal;
    static constexpr u32 tag = 0x09000000;
    static constexpr Form form = Form::primitive;
    static u32 encode(GenBuf *gen, const AsnReal *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnReal *value);
    static void release(AsnReal *) {}
};

struct BitString {
    using Value = AsnBits;
    static constexpr u32 tag = 0x03000000;
    static constexpr Form form = Form::either;
    static u32 encode(GenBuf *gen, const AsnBits *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnBits *value);
    static void release(AsnBits *value);
};

struct ObjectIdentifier {
    using Value = AsnOid;
    static constexpr u32 tag = 0x06000000;
    static constexpr Form form = Form::primitive;
    static u32 encode(GenBuf *gen, const AsnOid *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnOid *value);
    static void release(AsnOid *value);
};

struct OctetString {
    using Value = AsnOcts;
    static constexpr u32 tag = 0x04000000;
    static constexpr Form form = Form::either;
    static u32 encode(GenBuf *gen, const AsnOcts *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnOcts *value);
    static void release(AsnOcts *value);
};

// The kinds of text differ from an octet string in their tag and in the octets they allow.
struct Visible {
    using Value = AsnOcts;
    static constexpr u32 tag = 0x1A000000;
    static constexpr Form form = Form::either;
    static u32 encode(GenBuf *gen, const AsnOcts *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnOcts *value);
    static void release(AsnOcts *value) { OctetString::release(value); }
};

struct Utf8 {
    using Value = AsnOcts;
    static constexpr u32 tag = 0x0C000000;
    static constexpr Form form = Form::either;
    static u32 encode(GenBuf *gen, const AsnOcts *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnOcts *value);
    static void release(AsnOcts *value) { OctetString::release(value); }
};

struct Graphic {
    using Value = AsnOcts;
    static constexpr u32 tag = 0x19000000;
    static constexpr Form form = Form::either;
    static u32 encode(GenBuf *gen, const AsnOcts *value) { return OctetString::encode(gen, value); }
    static void decode(Reader &reader, u32 tagRead, u32 len, AsnOcts *value) {
        OctetString::decode(reader, tagRead, len, value);
    }
    static void release(AsnOcts *value) { OctetString::release(value); }
};

// ANY whose type nobody registered: the element as it came, with its tag. Only the last component
// of a sequence is one, and it is there when a tag is.
struct Any {
    using Value = AsnAny;
    static constexpr u32 tag = 0;
    static constexpr Form form = Form::either;
    static bool matches(u32 tagRead) { return tagRead != 0; }
    static u32 encode(GenBuf *gen, const AsnAny *value);
    static void decode(Reader &reader, u32 tag, u32 len, AsnAny *value);
    static void release(AsnAny *value);
};

// An element that is known by its tag alone. Its structure is checked down to the primitives:
// every tag, every length of either form, to the depth limit.
struct Undecoded {
    using Value = AsnOcts;
    static constexpr u32 tag = 0;
    static constexpr Form form = Form::either;
    static bool matches(u32 tagRead) { return tagRead != 0; }
    static u32 encode(GenBuf *gen, const AsnOcts *value) { return OctetString::encode(gen, value); }
    static void decode(Reader &reader, u32 tag, u32 len, AsnOcts *value);
    static void release(AsnOcts *value) { OctetString::release(value); }
};

// The same for a type that has no primitive form.
struct UndecodedConstructed : Undecoded {
    static constexpr Form form = Form::constructed;
};

} // namespace ied::asn
