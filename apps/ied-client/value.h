// Values and types of MMS (ISO 9506-2 Data, TypeSpecification) in the client's own form: a value
// is a tree, and the type tree beside it gives the names that a value does not carry.
#pragma once

#include "ied-client/ber.h"

#include <optional>
#include <string>
#include <vector>

namespace ied::client {

enum class Kind {
    array,
    structure,
    boolean,
    bitString,
    integer,
    unsignedInt,
    floating,
    octetString,
    visibleString,
    binaryTime,
    mmsString,
    utcTime,
};

struct Value {
    Kind kind = Kind::boolean;
    std::vector<Value> items; // array, structure
    i64 integer = 0;          // boolean, integer
    u64 unsignedInt = 0;      // unsigned
    f64 real = 0;             // floating point
    bool single = true;       // the float came with four octets
    std::string octets;       // strings and times: content; bit string: '0' and '1'
};

struct Type {
    Kind kind = Kind::boolean;
    int size = 0;                   // bits or octets; negative: at most so many
    u32 count = 0;                  // elements of an array
    std::vector<std::string> names; // structure: names of `parts`
    std::vector<Type> parts;        // structure: components; array: one, the element
};

// Decode one Data element, one TypeSpecification. Nothing for an encoding that is malformed, nested
// deeper than maxNesting, or of a kind without a place above.
std::optional<Value> decodeValue(const Element &element, int depth = 0);
std::optional<Type> decodeType(const Element &element, int depth = 0);

// Encode a value as a Data element; a structure or array with all its items.
Bytes encodeValue(const Value &value);

// Value of a simple type from what a person writes: true/false/1/0, decimal numbers, text as it
// is, a bit string as 0s and 1s, octets as pairs of hex digits, UTC time as seconds since 1970 with
// a fraction. Nothing if the text does not fit the type; `why` then says what does.
std::optional<Value> parseValue(const std::string &text, const Type &type, std::string &why);

// Short name of a type for people: "FLOAT32", "BIT STRING(13)", "structure", "array[64]".
std::string typeName(const Type &type);

// Upper bound of the octets that a value of this type takes as an element of its own.
std::size_t encodedSize(const Type &type);

// Component of a structure by name, or null.
const Type *component(const Type &type, const std::string &name);

} // namespace ied::client
