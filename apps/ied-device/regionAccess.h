// Typed reads and writes of the shared region by the instrument's side: each is one indivisible
// access of the field's own width. What a counter publishes is written before the counter.
#pragma once

#include "device/regionLayout.h"

namespace ied::instrument {

// The mapped region; `base` has regionSize octets.
struct Region {
    u8 *base;
};

// A value at an offset that comes from a table of this program.
template <class T> T loadAt(Region region, u32 offset) {
    return loadShared(*reinterpret_cast<const T *>(region.base + offset));
}
template <class T> void storeAt(Region region, u32 offset, std::type_identity_t<T> value) {
    storeShared(*reinterpret_cast<T *>(region.base + offset), value);
}

template <class T> T load(Region region, const RegionField<T> &field, u32 index = 0) {
    return loadAt<T>(region, field.at(index));
}
template <class T>
void store(Region region, const RegionField<T> &field, std::type_identity_t<T> value, u32 index = 0) {
    storeAt<T>(region, field.at(index), value);
}

inline void store(Region region, const RegionTime &field, const TimeStamp &time, u32 index = 0) {
    store(region, field.sec, time.sec, index);
    store(region, field.ms, time.ms, index);
    store(region, field.tq, time.tq, index);
}

// Time at an offset, laid out as RegionTime.
inline void storeTimeAt(Region region, u32 offset, const TimeStamp &time) {
    storeAt<u32>(region, offset, time.sec);
    storeAt<u32>(region, offset + 4, time.ms);
    storeAt<u8>(region, offset + 8, time.tq);
}

// One more on a change counter: everything written before is published by it.
inline void raise(Region region, const RegionField<u32> &counter, u32 index = 0) {
    u32 *word = regionPlace(region.base, counter, index);
    publish(*word, loadShared(*word) + 1);
}

// Now, from the clock device.
TimeStamp instrumentTime();

} // namespace ied::instrument
