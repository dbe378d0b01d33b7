// Two octets as a number, high octet first: the order of the wire.
#pragma once

#include "platform/types.h"

namespace ied {

inline u16 dec_short(const u8 *bytes) {
    return static_cast<u16>(bytes[0] << 8 | bytes[1]);
}

inline void enc_short(u8 *bytes, u16 value) {
    bytes[0] = static_cast<u8>(value >> 8);
    bytes[1] = static_cast<u8>(value);
}

} // namespace ied
