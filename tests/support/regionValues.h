// Values of a region as the instrument keeps them, at a place of its memory in host byte order.
#pragma once

#include "platform/types.h"

#include <cstring>

namespace ied::test {

// Values lie at multiples of their width wherever the server looks; a word is stored and loaded whole.
template <class T> void storeValue(u8 *place, T value) {
    static_assert(sizeof(T) <= sizeof(u32));
    if constexpr (sizeof(T) == sizeof(u32)) {
        u32 word = 0;
        std::memcpy(&word, &value, sizeof word);
        __atomic_store_n(reinterpret_cast<u32 *>(place), word, __ATOMIC_RELEASE);
    } else {
        std::memcpy(place, &value, sizeof value);
    }
}
template <class T> T loadValue(const u8 *place) {
    T value;
    if constexpr (sizeof(T) == sizeof(u32)) {
        const u32 word = __atomic_load_n(reinterpret_cast<const u32 *>(place), __ATOMIC_ACQUIRE);
        std::memcpy(&value, &word, sizeof value);
    } else {
        std::memcpy(&value, place, sizeof value);
    }
    return value;
}
// Raises a change counter behind what it announces.
inline void raiseCounter(u8 *place) {
    __atomic_fetch_add(reinterpret_cast<u32 *>(place), 1U, __ATOMIC_RELEASE);
}

} // namespace ied::test
