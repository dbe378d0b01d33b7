#include "ied-client/value.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ied::client {

namespace {

// Alternatives of TypeSpecification (ISO 9506-2) whose content is one size or nothing.
struct SimpleType {
    u32 tag;
    Kind kind;
    const char *name; // for people; null: the name is built from the size
};
constexpr SimpleType simpleTypes[] = {
    {0x83, Kind::boolean, "BOOLEAN"},     {0x84, Kind::bitString, nullptr},
    {0x85, Kind::integer, nullptr},       {0x86, Kind::unsignedInt, nullptr},
    {0xA7, Kind::floating, nullptr},      {0x89, Kind::octetString, nullptr},
    {0x8A, Kind::visibleString, nullptr}, {0x8C, Kind::binaryTime, "ENTRY TIME"},
    {0x90, Kind::mmsString, nullptr},     {0x91, Kind::utcTime, "TIMESTAMP"},
};

std::optional<Type> decodeArray(View content, int depth) {
    Type type;
    type.kind = Kind::array;
    Reader reader{content};
    take(reader, 0x80); // packed
    const std::optional<u64> count = toUnsigned(expect(reader, 0x81));
    Reader inner{expect(reader, 0xA2)};
    const Element element = next(inner);
    std::optional<Type> part = inner.failed ? std::nullopt : decodeType(element, depth + 1);
    if (reader.failed || !count || *count > 0xFFFFFFFF || !part) {
        return std::nullopt;
    }
    type.count = static_cast<u32>(*count);
    type.parts.push_back(std::move(*part));
    return type;
}

std::optional<Type> decodeStructure(View content, int depth) {
    Type type;
    type.kind = Kind::structure;
    Reader reader{content};
    take(reader, 0x80); // packed
    Reader components{expect(reader, 0xA1)};
    while (more(components) && !components.failed) {
        Reader one{expect(components, 0x30)};
        const std::optional<Element> name = take(one, 0x80);
        Reader inner{expect(one, 0xA1)};
        const Element element = next(inner);
        std::optional<Type> part = inner.failed ? std::nullopt : decodeType(element, depth + 1);
        if (!part) {
            return std::nullopt;
        }
        type.names.push_back(name ? toText(name->content) : "");
        type.parts.push_back(std::move(*part));
    }
    return reader.failed || components.failed ? std::nullopt : std::optional(std::move(type));
}

template <class Number> std::optional<Number> number(const std::string &text) {
    Number value{};
    const char *end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && at == end ? std::optional(value) : std::nullopt;
}

// Whether an integer fits in `bits` bits, as IEC 61850 types have them.
bool fits(i64 value, int bits) {
    return bits >= 64 || bits <= 0 || (value >= -(1LL << (bits - 1)) && value < 1LL << (bits - 1));
}

bool fits(u64 value, int bits) {
    return bits >= 64 || bits <= 0 || value < 1ULL << bits;
}

bool parseHex(const std::string &text, std::string &out) {
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned octet = 0;
        const std::string pair = text.substr(i, 2);
        const auto [at, error] = std::from_chars(pair.data(), pair.data() + pair.size(), octet, 16);
        if (error != std::errc() || pair.size() != 2 || at != pair.data() + 2) {
            return false;
        }
        out.push_back(static_cast<char>(octet));
    }
    return true;
}

// UtcTime of IEC 61850-8-1: seconds, a 24-bit fraction, an octet of time quality (10 bits valid).
std::string utcOctets(f64 seconds) {
    const u32 whole = static_cast<u32>(seconds);
    const u32 fraction = static_cast<u32>((seconds - whole) * 16777216.0);
    std::string out;
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<char>(whole >> shift));
    }
    for (int shift = 16; shift >= 0; shift -= 8) {
        out.push_back(static_cast<char>(fraction >> shift));
    }
    out.push_back(10);
    return out;
}

bool parseText(const std::string &text, const Type &type, std::string &out, std::string &why) {
    const std::size_t most = static_cast<std::size_t>(std::abs(type.size));
    out = text;
    why = "a text of at most " + std::to_string(most) + " octets";
    return most == 0 || text.size() <= most;
}

bool parseBits(const std::string &text, const Type &type, std::string &out, std::string &why) {
    out = text;
    why = std::to_string(std::abs(type.size)) + " binary digits";
    return text.size() == static_cast<std::size_t>(std::abs(type.size)) &&
           text.find_first_not_of("01") == std::string::npos;
}

} // namespace

std::optional<Type> decodeType(const Element &element, int depth) {
    if (depth > maxNesting) {
        return std::nullopt;
    }
    if (element.tag == 0xA1) {
        return decodeArray(element.content, depth);
    }
    if (element.tag == 0xA2) {
        return decodeStructure(element.content, depth);
    }
    for (const SimpleType &row : simpleTypes) {
        if (row.tag != element.tag) {
            continue;
        }
        Type type;
        type.kind = row.kind;
        std::optional<i64> size = 0;
        if (row.kind == Kind::floating) {
            Reader reader{element.content};
            size = toInteger(expect(reader, 0x02));
        } else if (!row.name) {
            size = toInteger(element.content);
        }
        if (!size || *size < -65535 || *size > 65535) {
            return std::nullopt;
        }
        type.size = static_cast<int>(*size);
        return type;
    }
    return std::nullopt;
}

std::optional<Value> parseValue(const std::string &text, const Type &type, std::string &why) {
    Value value;
    value.kind = type.kind;
    bool good = false;
    switch (type.kind) {
    case Kind::boolean:
        why = "true or false";
        value.integer = text == "true" || text == "1";
        good = value.integer || text == "false" || text == "0";
        break;
    case Kind::integer: {
        why = "a whole number of " + std::to_string(type.size) + " bits";
        const std::optional<i64> whole = number<i64>(text);
        good = whole && fits(*whole, type.size);
        value.integer = whole.value_or(0);
        break;
    }
    case Kind::unsignedInt: {
        why = "a whole number from 0, of " + std::to_string(type.size) + " bits";
        const std::optional<u64> whole = number<u64>(text);
        good = whole && fits(*whole, type.size);
        value.unsignedInt = whole.value_or(0);
        break;
    }
    case Kind::floating: {
        why = "a number";
        const std::optional<f64> real = number<f64>(text);
        good = real.has_value();
        value.real = real.value_or(0);
        break;
    }
    case Kind::bitString:
        good = parseBits(text, type, value.octets, why);
        break;
    case Kind::octetString:
        why = "pairs of hexadecimal digits";
        good = parseHex(text, value.octets);
        break;
    case Kind::visibleString:
    case Kind::mmsString:
        good = parseText(text, type, value.octets, why);
        break;
    case Kind::utcTime: {
        why = "seconds since 1970";
        const std::optional<f64> seconds = number<f64>(text);
        good = seconds && *seconds >= 0 && *seconds < 4294967296.0;
        if (good) {
            value.octets = utcOctets(*seconds);
        }
        break;
    }
    default:
        why = "nothing that can be written as text";
    }
    return good ? std::optional(value) : std::nullopt;
}

std::string typeName(const Type &type) {
    const std::string size = std::to_string(std::abs(type.size));
    switch (type.kind) {
    case Kind::array:
        return "array[" + std::to_string(type.count) + "]";
    case Kind::structure:
        return "structure";
    case Kind::bitString:
        return "BIT STRING(" + size + ")";
    case Kind::integer:
        return "INT" + size;
    case Kind::unsignedInt:
        return "INT" + size + "U";
    case Kind::floating:
        return "FLOAT" + size;
    case Kind::octetString:
        return "OCTET STRING(" + size + ")";
    case Kind::visibleString:
        return "VISIBLE STRING(" + size + ")";
    case Kind::mmsString:
        return "UNICODE STRING(" + size + ")";
    default:
        for (const SimpleType &row : simpleTypes) {
            if (row.kind == type.kind) {
                return row.name;
            }
        }
        return "?";
    }
}

} // namespace ied::client
