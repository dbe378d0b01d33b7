#include "ied-client/value.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <iterator>

namespace ied::client {

namespace {

// Primitive alternatives of Data that keep their content octets as they are.
struct OctetKind {
    u32 tag;
    Kind kind;
};
constexpr OctetKind octetKinds[] = {
    {0x89, Kind::octetString}, {0x8A, Kind::visibleString}, {0x8C, Kind::binaryTime},
    {0x90, Kind::mmsString},   {0x91, Kind::utcTime},
};

std::optional<Value> decodeItems(Kind kind, View content, int depth) {
    Value value;
    value.kind = kind;
    Reader reader{content};
    while (more(reader)) {
        const Element element = next(reader);
        std::optional<Value> item = reader.failed ? std::nullopt : decodeValue(element, depth + 1);
        if (!item) {
            return std::nullopt;
        }
        value.items.push_back(std::move(*item));
    }
    return value;
}

std::optional<Value> decodeBits(View content) {
    if (content.empty() || content[0] > 7 || (content.size() == 1 && content[0] != 0)) {
        return std::nullopt;
    }
    Value value;
    value.kind = Kind::bitString;
    const std::size_t count = (content.size() - 1) * 8 - content[0];
    for (std::size_t i = 0; i < count; ++i) {
        value.octets.push_back(content[1 + i / 8] >> (7 - i % 8) & 1 ? '1' : '0');
    }
    return value;
}

// ISO 9506-2 FloatingPoint: the exponent width, then an IEEE 754 single or double.
std::optional<Value> decodeFloat(View content) {
    Value value;
    value.kind = Kind::floating;
    const std::optional<u64> bits = content.size() > 1 ? toUnsigned(content.subspan(1)) : std::nullopt;
    if (content.size() == 5 && content[0] == 8) {
        value.real = std::bit_cast<f32>(static_cast<u32>(*bits));
    } else if (content.size() == 9 && content[0] == 11) {
        value.real = std::bit_cast<f64>(*bits);
        value.single = false;
    } else {
        return std::nullopt;
    }
    return value;
}

// Tag and length of an element, with room for servers that reckon more generously than they encode.
constexpr std::size_t elementHeader = 6;

std::string packBits(const std::string &bits) {
    std::string out(1, static_cast<char>((8 - bits.size() % 8) % 8));
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (i % 8 == 0) {
            out.push_back('\0');
        }
        if (bits[i] == '1') {
            out.back() = static_cast<char>(out.back() | 0x80 >> i % 8);
        }
    }
    return out;
}

} // namespace

std::optional<Value> decodeValue(const Element &element, int depth) {
    if (depth > maxNesting) {
        return std::nullopt;
    }
    Value value;
    switch (element.tag) {
    case 0xA1:
        return decodeItems(Kind::array, element.content, depth);
    case 0xA2:
        return decodeItems(Kind::structure, element.content, depth);
    case 0x83:
        if (element.content.size() != 1) {
            return std::nullopt;
        }
        value.integer = element.content[0] != 0;
        return value;
    case 0x84:
        return decodeBits(element.content);
    case 0x85: {
        const std::optional<i64> number = toInteger(element.content);
        value.kind = Kind::integer;
        value.integer = number.value_or(0);
        return number ? std::optional(value) : std::nullopt;
    }
    case 0x86: {
        const std::optional<u64> number = toUnsigned(element.content);
        value.kind = Kind::unsignedInt;
        value.unsignedInt = number.value_or(0);
        return number ? std::optional(value) : std::nullopt;
    }
    case 0x87:
        return decodeFloat(element.content);
    default:
        for (const OctetKind &row : octetKinds) {
            if (row.tag == element.tag) {
                value.kind = row.kind;
                value.octets = toText(element.content);
                return value;
            }
        }
        return std::nullopt;
    }
}

Bytes encodeValue(const Value &value) {
    Bytes content;
    switch (value.kind) {
    case Kind::array:
    case Kind::structure:
        for (const Value &item : value.items) {
            appendTo(content, View(encodeValue(item)));
        }
        return tlv(value.kind == Kind::array ? 0xA1 : 0xA2, content);
    case Kind::boolean:
        return tlv(0x83, Bytes{static_cast<u8>(value.integer ? 1 : 0)});
    case Kind::bitString:
        return tlv(0x84, packBits(value.octets));
    case Kind::integer:
        return integer(0x85, value.integer);
    case Kind::unsignedInt:
        content = integerContent(static_cast<i64>(value.unsignedInt));
        if (value.unsignedInt >> 63) {
            content.insert(content.begin(), 0);
        }
        return tlv(0x86, content);
    case Kind::floating: {
        const u32 bits = std::bit_cast<u32>(static_cast<f32>(value.real));
        content.push_back(8);
        for (int shift = 24; shift >= 0; shift -= 8) {
            content.push_back(static_cast<u8>(bits >> shift));
        }
        return tlv(0x87, content);
    }
    default:
        for (const OctetKind &row : octetKinds) {
            if (row.kind == value.kind) {
                return tlv(row.tag, value.octets);
            }
        }
        return content;
    }
}

std::size_t encodedSize(const Type &type) {
    std::size_t content = 0;
    switch (type.kind) {
    case Kind::structure:
        for (const Type &part : type.parts) {
            content += encodedSize(part);
        }
        break;
    case Kind::array:
        content = type.parts.empty() ? 0 : type.count * encodedSize(type.parts.front());
        break;
    case Kind::boolean:
        content = 1;
        break;
    case Kind::bitString:
        content = 1 + (static_cast<std::size_t>(std::abs(type.size)) + 7) / 8;
        break;
    case Kind::integer:
    case Kind::unsignedInt:
        content = 9;
        break;
    case Kind::floating:
        content = type.size > 32 ? 9 : 5;
        break;
    case Kind::utcTime:
    case Kind::binaryTime:
        content = 8;
        break;
    default:
        content = static_cast<std::size_t>(std::abs(type.size));
    }
    return content + elementHeader;
}

const Type *component(const Type &type, const std::string &name) {
    if (type.kind == Kind::structure) {
        for (std::size_t i = 0; i < type.names.size(); ++i) {
            if (type.names[i] == name) {
                return &type.parts[i];
            }
        }
    }
    return nullptr;
}

} // namespace ied::client
