// The simple types of the model's leaves: one row a type code says how a value is stored, what MMS
// Data carries it and how its type is described. Everything about a type derives from its row.
#pragma once

#include "asn1/mmsDataTypes.h"
#include "model-gen/c/genNode.h"

namespace ied {

// Form of a value in its data record.
enum class Stored : u8 {
    none,        // no simple value
    boolean,     // u8
    doublePoint, // u8, the value in the two low bits
    bits8,       // u8, bit 0 of the string at the top
    bits16,      // u16, likewise
    signedInt,   // i8, i16, i32
    unsignedInt, // u8, u16, u32
    enumeration, // i8, or i32 where isEnum32 says so
    float32,     // f32
    octets,      // a fixed number of octets
    text,        // up to a NUL
    utcTime,     // TimeStamp
    entryTime,   // TimeStamp
};

struct SimpleType {
    Stored stored;
    u16 place;     // octets of the place that it is stored in
    u8 width;      // octets of a number or of fixed octets
    u8 bits;       // length of a bit string
    u8 kind;       // choice of Data
    u16 maxLength; // octets that a written string may have; 0 for what no client writes
    u16 capacity;  // octets of the part that is kept for reuse
    u8 answer;     // choice of TypeSpecification
    i16 size;      // its size; negative is variable, up to that many
    u8 estimate;   // octets that a Read reckons for it; of a text 2 beside its length
};

// Row of a type code; one with Stored::none for a code that is no simple type.
const SimpleType &simpleType(u8 type);

} // namespace ied
