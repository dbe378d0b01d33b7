// Entries of the instrument's status rings, written as the instrument does.
#pragma once

#include "tests/support/serverProcess.h"

namespace ied::test {

// A ring of the region: a counter and its slots.
struct Ring {
    std::size_t counterAt;
    u32 slots;
    u32 slotSize;
    u32 stateAt;
    u32 stateWidth;
    u32 bits; // that the instrument has
};
inline constexpr Ring inputRing = {20243936, 100, 16, 14, 1, 8};
inline constexpr Ring outputRing = {20245540, 100, 20, 14, 2, 6};
inline constexpr Ring setpointRing = {20247544, 100, 20, 16, 4, 32};
inline constexpr Ring logicRing = {20249548, 100, 20, 16, 4, 8};

inline constexpr u32 firstRingSecond = 1700000000;

// One more entry of a status ring: one bit of `state` changes, and the entry's number stands in its time.
inline void addState(Region &region, const Ring &ring, u32 number, u32 *state) {
    *state ^= 1U << (number % ring.bits);
    const std::size_t slot = ring.counterAt + 4 + std::size_t{number % ring.slots} * ring.slotSize;
    put<u32>(region, slot, firstRingSecond + number);
    put<u32>(region, slot + 4, 0);
    put<u8>(region, slot + 8, 10);
    if (ring.stateWidth == 1) {
        put<u8>(region, slot + ring.stateAt, static_cast<u8>(*state));
    } else if (ring.stateWidth == 2) {
        put<u16>(region, slot + ring.stateAt, static_cast<u16>(*state));
    } else {
        put<u32>(region, slot + ring.stateAt, *state);
    }
    raise(region, ring.counterAt);
}

} // namespace ied::test
