// The mirror of device data: one static block with one record for each leaf of the address tree.
// Short addresses that the code itself uses are resolved, and their type is checked, when it is
// compiled.
#pragma once

#include "device/addressTree.h"
#include "platform/shared.h"

namespace ied {

inline constexpr u32 protoDataSize = mapTableBase.size;
alignas(8) extern u8 protoData[protoDataSize];

// Place of a record of type T in the mirror, from its short address.
template <class T> struct MirrorPath {
    u32 offset;

    consteval MirrorPath(const char *sAddr) : offset(resolveSAddr(sAddr).offset) {
        if (!isRecordOf<T>(resolveSAddr(sAddr).nodeType)) {
            throw "no leaf of that type";
        }
    }
};

// The record of that short address.
template <class T> T &mirror(MirrorPath<T> path) {
    return *reinterpret_cast<T *>(protoData + path.offset);
}

// The `count` records from that short address on; numbered leaves of one table lie in a row.
template <class T> T *mirrorRow(MirrorPath<T> first) {
    return &mirror<T>(first);
}

// Record `index` of a group that repeats: the same leaf of the first and the second group are given.
template <class T> T &mirrorOf(MirrorPath<T> first, MirrorPath<T> second, u32 index) {
    return *reinterpret_cast<T *>(protoData + first.offset + index * (second.offset - first.offset));
}

// Gives a record its time and quality; a reader may see either before the other.
template <class T> void storeStamp(T &record, u16 q, const TimeStamp &time) {
    storeShared(record.t, time);
    storeShared(record.q, q);
}

// Gives a record of a state its value with time and quality. Records of states name these alike.
template <class T> void storeState(T &record, decltype(T::stVal) value, u16 q, const TimeStamp &time) {
    storeShared(record.stVal, value);
    storeStamp(record, q, time);
}

} // namespace ied
