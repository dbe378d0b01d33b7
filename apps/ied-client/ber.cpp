#include "ied-client/ber.h"

namespace ied::client {

namespace {

void appendBigEndian(Bytes &out, u64 value) {
    int shift = 56;
    while (shift > 0 && (value >> shift) == 0) {
        shift -= 8;
    }
    for (; shift >= 0; shift -= 8) {
        out.push_back(static_cast<u8>(value >> shift));
    }
}

Element fail(Reader &reader) {
    reader.failed = true;
    reader.rest = {};
    return {};
}

} // namespace

void appendHeader(Bytes &out, u32 tag, std::size_t contentLength) {
    appendBigEndian(out, tag);
    if (contentLength < 128) {
        out.push_back(static_cast<u8>(contentLength));
        return;
    }
    Bytes length;
    appendBigEndian(length, contentLength);
    out.push_back(static_cast<u8>(0x80 | length.size()));
    appendTo(out, View(length));
}

Bytes integerContent(i64 value) {
    Bytes out;
    for (int shift = 56; shift >= 0; shift -= 8) {
        out.push_back(static_cast<u8>(static_cast<u64>(value) >> shift));
    }
    std::size_t skip = 0;
    while (skip < 7 &&
           ((out[skip] == 0x00 && out[skip + 1] < 0x80) || (out[skip] == 0xFF && out[skip + 1] >= 0x80))) {
        ++skip;
    }
    out.erase(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(skip));
    return out;
}

Element next(Reader &reader) {
    const View in = reader.rest;
    std::size_t at = 0;
    if (in.empty()) {
        return fail(reader);
    }
    u32 tag = in[at++];
    if ((tag & 0x1F) == 0x1F) {
        do {
            if (at >= in.size() || at >= 4) {
                return fail(reader);
            }
            tag = tag << 8 | in[at];
        } while (in[at++] & 0x80);
    }
    if (at >= in.size()) {
        return fail(reader);
    }
    std::size_t length = in[at++];
    if (length >= 0x80) {
        std::size_t count = length & 0x7F;
        if (count == 0 || count > 4 || count > in.size() - at) {
            return fail(reader);
        }
        for (length = 0; count > 0; --count) {
            length = length << 8 | in[at++];
        }
    }
    if (length > in.size() - at) {
        return fail(reader);
    }
    reader.rest = in.subspan(at + length);
    return {tag, in.subspan(at, length)};
}

std::optional<Element> take(Reader &reader, u32 tag) {
    Reader ahead = reader;
    if (!more(reader)) {
        return std::nullopt;
    }
    const Element element = next(ahead);
    if (!ahead.failed && element.tag != tag) {
        return std::nullopt;
    }
    reader = ahead;
    if (ahead.failed) {
        return std::nullopt;
    }
    return element;
}

View expect(Reader &reader, u32 tag) {
    const Element element = next(reader);
    if (reader.failed || element.tag != tag) {
        return fail(reader).content;
    }
    return element.content;
}

std::optional<i64> toInteger(View content) {
    if (content.empty() || content.size() > 8) {
        return std::nullopt;
    }
    u64 value = content[0] & 0x80 ? ~0ULL : 0;
    for (u8 octet : content) {
        value = value << 8 | octet;
    }
    return static_cast<i64>(value);
}

std::optional<u64> toUnsigned(View content) {
    if (content.empty() || content.size() > 9 || (content.size() == 9 && content[0] != 0)) {
        return std::nullopt;
    }
    u64 value = 0;
    for (u8 octet : content) {
        value = value << 8 | octet;
    }
    return value;
}

} // namespace ied::client
