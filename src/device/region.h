// Reads of the shared region through its map: each is one indivisible access of the field's own
// width, since the peer writes at the same time. Nothing here takes a lock.
#pragma once

#include "device/regionLayout.h"

namespace ied {

// Base of the mapped region, regionSize octets; set by sysInit before any other task starts.
extern u8 *comdata;

// Value `index` (below the field's count) of a field.
template <class T> T regionLoad(const RegionField<T> &field, u32 index = 0) {
    return loadShared(*regionPlace(comdata, field, index));
}

// The same for a change counter: what the peer wrote before it raised the counter is then seen. No
// load that follows is made before this one.
template <class T> T regionLoadCounter(const RegionField<T> &field, u32 index = 0) {
    return loadPublished(*regionPlace(comdata, field, index));
}

// Time `index` of a time field.
TimeStamp regionLoad(const RegionTime &time, u32 index = 0);
TimeStamp regionLoadCounter(const RegionTime &time, u32 index = 0);

// Time at an address of the region, laid out as RegionTime.
TimeStamp regionTimeAt(const u8 *address);

// Wiring mode of the measurement tables: 0 wye, 1 delta.
u16 regionWiring();
// Rated secondary current in amperes: 1 or 5.
u16 regionRatedAmperes();

} // namespace ied
