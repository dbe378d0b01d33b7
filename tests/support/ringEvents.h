// Where the instrument tells of its states and events, and entries of its rings as it writes them.
#pragma once

#include "tests/support/serverProcess.h"

namespace ied::test {

// A ring of the region: a counter and its slots.
struct Ring {
    u32 counterAt;
    u32 slots;
    u32 slotSize;
    u32 stateAt; // in a slot
    u32 stateWidth;
    u32 bits; // that the instrument has
};
inline constexpr Ring inputRing = {20243936, 100, 16, 14, 1, 8};
inline constexpr Ring outputRing = {20245540, 100, 20, 14, 2, 6};
inline constexpr Ring setpointRing = {20247544, 100, 20, 16, 4, 32};
inline constexpr Ring logicRing = {20249548, 100, 20, 16, 4, 8};
inline constexpr Ring eventLog = {20199824, 1024, 36, 0, 0, 0}; // of voltage events

inline constexpr u32 inputStateAt = 16654038, outputStateAt = 16654118;
inline constexpr u32 checkTimeAt = 37514452, checkWordAt = 37514464;
inline constexpr u32 waveTimeAt[] = {37514484, 37514500}, waveCountAt[] = {37514496, 37514512};

// Where an entry begins that has that number, counted from 0.
constexpr u32 slotAt(const Ring &ring, u32 number) {
    return ring.counterAt + 4 + number % ring.slots * ring.slotSize;
}

// Writes the entry of a status ring that has that number: the state at a time. `put` takes a place in the
// region and a value.
template <class Put> void putState(const Put &put, const Ring &ring, u32 number, u32 state, u32 sec, u32 ms) {
    const u32 slot = slotAt(ring, number);
    put(slot, sec);
    put(slot + 4, ms);
    put(slot + 8, u8{10});
    if (ring.stateWidth == 1) {
        put(slot + ring.stateAt, static_cast<u8>(state));
    } else if (ring.stateWidth == 2) {
        put(slot + ring.stateAt, static_cast<u16>(state));
    } else {
        put(slot + ring.stateAt, state);
    }
    put(ring.counterAt, number + 1);
}

// An entry of the log of voltage events.
struct PqEntry {
    u8 type, subType;
    u32 sec, ms;
    f32 mag;      // percent
    u32 duration; // ms; of a transient, us
};
template <class Put> void putEvent(const Put &put, u32 number, const PqEntry &entry) {
    const u32 slot = slotAt(eventLog, number);
    put(slot + 2, entry.type);
    put(slot + 3, entry.subType);
    put(slot + 4, entry.sec);
    put(slot + 8, entry.ms);
    put(slot + 12, u8{10});
    put(slot + 16, entry.mag);
    put(slot + 20, entry.duration);
    put(eventLog.counterAt, number + 1);
}

inline auto putsInto(Region &region) {
    return [&region](u32 at, auto value) { put(region, at, value); };
}

inline constexpr u32 firstRingSecond = 1700000000;

// One more entry of a status ring: one bit of `state` changes, and the entry's number stands in its time.
inline void addState(Region &region, const Ring &ring, u32 number, u32 *state) {
    *state ^= 1U << (number % ring.bits);
    putState(putsInto(region), ring, number, *state, firstRingSecond + number, 0);
}

} // namespace ied::test
