// Octets in hexadecimal to and from values, for the tests of the codecs.
#pragma once

#include "asn1/ber.h"
#include "tests/support/frames.h"

#include <vector>

namespace ied::test {

// What `encode` writes for `value`, as hex.
template <class T> std::string encoded(u32 encode(GenBuf *, const T *), const T &value) {
    std::vector<u8> room(70000);
    BerBuf buf;
    berBufWrite(&buf, room.data(), static_cast<u32>(room.size()));
    const u32 count = encode(&buf.gen, &value);
    return hexText({buf.block.dataStart, count});
}

// Runs `decode(gen, &value, &bytesDecoded, env)` on `data`: 0 when it took every octet, 1 when some
// are left, otherwise the code it threw.
template <class T>
i32 decodeError(void decode(GenBuf *, T *, u32 *, DecodeEnv *), const std::vector<u8> &data, T &value,
                DecodeEnv env = {}) {
    BerBuf buf;
    berBufRead(&buf, data.data(), static_cast<u32>(data.size()));
    u32 bytesDecoded = 0;
    try {
        decode(&buf.gen, &value, &bytesDecoded, &env);
    } catch (const BerError &error) {
        return error.code;
    }
    return bytesDecoded == data.size() ? 0 : 1;
}

template <class T>
i32 decodeError(void decode(GenBuf *, T *, u32 *, DecodeEnv *), std::string_view hex, T &value,
                DecodeEnv env = {}) {
    return decodeError(decode, octets(hex), value, env);
}

// `content` wrapped `levels` times into the tag.
inline std::string wrapped(std::string_view tag, int levels, std::string content) {
    for (int i = 0; i < levels; ++i) {
        content = tlv(tag, content);
    }
    return content;
}

inline AsnOcts textOf(const char *text) {
    return {static_cast<u32>(std::string_view(text).size()),
            reinterpret_cast<u8 *>(const_cast<char *>(text))};
}

} // namespace ied::test
