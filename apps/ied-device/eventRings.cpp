#include "ied-device/eventRings.h"

namespace ied::instrument {

TimeStamp eventTime(const Instrument &instrument) {
    constexpr u64 nsPerMs = 1'000'000;
    TimeStamp time = instrumentTime();
    const u64 ms = u64{time.sec} * 1000 + time.ms - instrument.lateNs / nsPerMs;
    time.sec = static_cast<u32>(ms / 1000);
    time.ms = static_cast<u32>(ms % 1000);
    return time;
}

void appendPqEntry(const Instrument &instrument, const PqEntry &entry) {
    const Region region = instrument.shared.region;
    const u32 slot = load(region, region::pqCounter) % region::pqSlots;
    store(region, region::pqType, entry.type, slot);
    store(region, region::pqSubType, entry.subType, slot);
    store(region, region::pqTime, eventTime(instrument), slot);
    store(region, region::pqMag, static_cast<f32>(entry.percent), slot);
    store(region, region::pqDuration, entry.duration, slot);
    raise(region, region::pqCounter);
}

} // namespace ied::instrument
