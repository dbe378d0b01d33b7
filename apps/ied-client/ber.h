// BER (ISO 8825-1) as the client needs it: requests are put together from nested calls that read
// like the ASN.1 type, and what a peer sent is walked in place, without a copy. The client keeps
// to these few lines so that it judges a server by the standard and not by the server's own codec.
#pragma once

#include "platform/types.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ied::client {

using Bytes = std::vector<u8>;
using View = std::span<const u8>;

// Nesting that a decoder of the client follows before it calls a value malformed.
constexpr int maxNesting = 32;

// ---------------------------------------------------------------------------------- writing

// Identifier octets are written as the number that they form: 0xA1, 0x9F25, 0xBF48.
void appendHeader(Bytes &out, u32 tag, std::size_t contentLength);

inline void appendTo(Bytes &out, View octets) {
    out.insert(out.end(), octets.begin(), octets.end());
}
inline void appendTo(Bytes &out, std::string_view text) {
    out.insert(out.end(), text.begin(), text.end());
}

// One element: tag, definite length, and the parts (octets or text) one behind the other.
template <class... Parts> Bytes tlv(u32 tag, const Parts &...parts) {
    Bytes content;
    (appendTo(content, parts), ...);
    Bytes out;
    appendHeader(out, tag, content.size());
    appendTo(out, View(content));
    return out;
}

// The parts alone, one behind the other.
template <class... Parts> Bytes join(const Parts &...parts) {
    Bytes out;
    (appendTo(out, parts), ...);
    return out;
}

// Shortest two's complement content of an integer, and an element of it.
Bytes integerContent(i64 value);
inline Bytes integer(u32 tag, i64 value) {
    return tlv(tag, integerContent(value));
}

// ---------------------------------------------------------------------------------- reading

struct Element {
    u32 tag = 0; // identifier octets as a number
    View content;
};

// Walks the elements of a content. The first fault (a length beyond the content, the indefinite
// form, a tag or length of more than four octets) sets `failed` and empties the rest.
struct Reader {
    View rest;
    bool failed = false;
};

inline bool more(const Reader &reader) {
    return !reader.rest.empty();
}
// Next element; one of tag 0 after a fault or at the end, which is a fault here.
Element next(Reader &reader);
// Next element if it has this tag, else nothing, and the reader stays in front of it.
std::optional<Element> take(Reader &reader, u32 tag);
// Next element, which must have this tag.
View expect(Reader &reader, u32 tag);

// Content octets as numbers; an empty content, or one of more than 8 octets (9 with a leading zero
// for the unsigned form), is no number.
std::optional<i64> toInteger(View content);
std::optional<u64> toUnsigned(View content);
inline bool toBool(View content) {
    return !content.empty() && content[0] != 0;
}
inline std::string toText(View content) {
    return std::string(content.begin(), content.end());
}

} // namespace ied::client
