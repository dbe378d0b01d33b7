#include "device/region.h"

namespace ied {

u8 *comdata;

TimeStamp regionLoad(const RegionTime &time, u32 index) {
    return {regionLoad(time.sec, index), regionLoad(time.ms, index), regionLoad(time.tq, index)};
}

TimeStamp regionLoadCounter(const RegionTime &time, u32 index) {
    return {regionLoadCounter(time.sec, index), regionLoadCounter(time.ms, index),
            regionLoadCounter(time.tq, index)};
}

TimeStamp regionTimeAt(const u8 *address) {
    const auto *words = reinterpret_cast<const u32 *>(address);
    return {loadShared(words[0]), loadShared(words[1]), loadShared(address[8])};
}

u16 regionWiring() {
    const u16 wiring = regionLoad(region::TVMod);
    return wiring == 2 ? u16{0} : wiring;
}

u16 regionRatedAmperes() {
    constexpr u16 ampStep[] = {5, 1}; // any code but 1, and code 1
    return ampStep[regionLoad(region::ratedCurrent) == 1 ? 1 : 0];
}

} // namespace ied
