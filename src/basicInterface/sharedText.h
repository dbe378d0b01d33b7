// Texts in data records that one task may be writing while another reads them: octet by octet, so
// that a reader sees old or new octets and always an end within the place.
#pragma once

#include "platform/shared.h"

#include <cstdint>
#include <cstring>

namespace ied {

// Octets before the NUL, at most `max`; 0 for null.
inline u32 sharedTextLength(const char *text, u32 max) {
    u32 length = 0;
    while (text != nullptr && length < max && loadShared(text[length]) != '\0') {
        ++length;
    }
    return length;
}

// Copies octets up to the NUL, at most `max`, without an end. Returns how many; 0 for null.
inline u32 copySharedText(u8 *out, const char *text, u32 max) {
    u32 length = 0;
    for (; text != nullptr && length < max; ++length) {
        const char c = loadShared(text[length]);
        if (c == '\0') {
            break;
        }
        out[length] = static_cast<u8>(c);
    }
    return length;
}

// Whether octets at that place are kept as one word: an identifier of 8 octets that is aligned is
// never seen half old and half new.
inline bool isSharedWord(const void *place, u32 length) {
    return length == sizeof(u64) && reinterpret_cast<std::uintptr_t>(place) % alignof(u64) == 0;
}

// Copies `length` octets of a place that has that many, NUL or not.
inline void copySharedOctets(u8 *out, const void *place, u32 length) {
    if (isSharedWord(place, length)) {
        const u64 word = loadShared(*static_cast<const u64 *>(place));
        std::memcpy(out, &word, sizeof word);
        return;
    }
    const auto *octets = static_cast<const u8 *>(place);
    for (u32 i = 0; i < length; ++i) {
        out[i] = loadShared(octets[i]);
    }
}

// Stores `length` octets and a NUL into a place that has room for one more.
inline void storeSharedText(char *place, const void *octets, u32 length) {
    const auto *from = static_cast<const char *>(octets);
    if (isSharedWord(place, length)) {
        u64 word = 0;
        std::memcpy(&word, octets, sizeof word);
        storeShared(*reinterpret_cast<u64 *>(place), word);
    } else {
        for (u32 i = 0; i < length; ++i) {
            storeShared(place[i], from[i]);
        }
    }
    storeShared(place[length], '\0');
}

} // namespace ied
