// Power quality events and wave records: what the instrument logs is played into the model edge by
// edge ("SOE", "RD").
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "device/dataRefresh.h"
#include "device/measRefresh.h"
#include "device/privateConfig.h"
#include "device/region.h"
#include "device/statusRefresh.h"

namespace ied {

namespace {

constexpr u8 typeVariation = 1;
constexpr u8 typeTransient = 2;
constexpr u32 entriesAtOnce = 100; // of the PQ log in one call
constexpr u8 unitNone = 1;
constexpr u8 unitVolt = 29;
constexpr u32 secondMs = 1000;

SPS &varStr = mirror<SPS>("SOE.VarStr");
MV &vVa = mirror<MV>("SOE.VVa");
MV &vVaTm = mirror<MV>("SOE.VVaTm");
SPS &transStr = mirror<SPS>("SOE.TransStr");
MV &maxVtrs = mirror<MV>("SOE.MaxVtrs");
MV &vtrsTm = mirror<MV>("SOE.VtrsTm");

// Since when a swell, dip or interruption is in progress; kept when it has ended.
struct EventStarts {
    TimeStamp swellTime;
    TimeStamp sagTime;
    TimeStamp interTime;
};
EventStarts starts;

// A kind of voltage variation: what its entries in the log are called, its state in the model, and
// its start.
struct Variation {
    u8 startEntry;
    u8 endEntry;
    SPS *state;
    TimeStamp *start;
};
const Variation variations[] = {
    {1, 2, &mirror<SPS>("SOE.SwlStr"), &starts.swellTime},
    {3, 4, &mirror<SPS>("SOE.DipStr"), &starts.sagTime},
    {5, 6, &mirror<SPS>("SOE.IntrStr"), &starts.interTime},
};

// One entry of the log.
struct PqEntry {
    u8 type;
    u8 subType;
    TimeStamp time;
    f32 mag;      // percent
    u32 duration; // ms of a variation, microseconds of a transient
};

PqEntry entryOf(u32 slot) {
    return {regionLoad(region::pqType, slot), regionLoad(region::pqSubType, slot),
            regionLoad(region::pqTime, slot), regionLoad(region::pqMag, slot),
            regionLoad(region::pqDuration, slot)};
}

template <class Record> void show(Record *record, decltype(Record::stVal) value, const TimeStamp &time) {
    storeShared(record->stVal, value);
    storeShared(record->t, time);
}

void edge(SPS *record, u8 value, const TimeStamp &time) {
    show(record, value, time);
    countShared(record->updateCount);
}

void measured(MV *record, f64 value) {
    storeShared(record->mag, static_cast<f32>(scaleValue(value, loadShared(record->units.multiplier))));
    countShared(record->updateCount);
}

bool anyInProgress() {
    for (const Variation &variation : variations) {
        if (loadShared(variation.state->stVal) == 1) {
            return true;
        }
    }
    return false;
}

// Magnitude of a voltage event in the form that the SCL file asks for.
f64 eventMagnitude(f32 percent) {
    const f64 ratio = f64{percent} / 100;
    if (localConfig == VvaVolts) {
        storeShared(vVa.units.SIUnit, unitVolt);
        return ratio * regionLoad(region::RtgVolt);
    }
    if (localConfig != VvaRatio) {
        dbInfo(DbUPD, DbERR, "SOEDataRefresh", "vvaFormat value error! Use default value!");
    }
    storeShared(vVa.units.SIUnit, unitNone);
    return ratio;
}

// Notes when a variation began. One that ended is shown: first its beginning with what was measured, then
// its end.
void voltageVariation(const PqEntry &entry) {
    bool ended = false;
    for (const Variation &variation : variations) {
        if (entry.subType == variation.startEntry) {
            *variation.start = entry.time;
        } else if (entry.subType == variation.endEntry) {
            edge(variation.state, 1, *variation.start);
            storeShared(vVa.t, *variation.start);
            storeShared(vVaTm.t, *variation.start);
            ended = true;
        }
    }
    if (anyInProgress()) {
        edge(&varStr, 1, loadShared(vVa.t));
    }
    if (!ended) {
        return;
    }
    measured(&vVa, eventMagnitude(entry.mag));
    measured(&vVaTm, entry.duration / 1000.0);
    waitForMon();
    if (!anyInProgress()) {
        return;
    }
    edge(&varStr, 0, entry.time);
    for (const Variation &variation : variations) {
        if (loadShared(variation.state->stVal) == 1) {
            edge(variation.state, 0, entry.time);
        }
    }
    waitForMon();
}

// The time `ms` milliseconds before another, not before the beginning of time.
TimeStamp earlier(const TimeStamp &time, u32 ms) {
    const u64 at = u64{time.sec} * secondMs + time.ms;
    const u64 before = at > ms ? at - ms : 0;
    return {static_cast<u32>(before / secondMs), static_cast<u32>(before % secondMs), time.tq};
}

void transient(const PqEntry &entry) {
    const TimeStamp start = earlier(entry.time, entry.duration / 1000);
    edge(&transStr, 1, start);
    for (MV *record : {&maxVtrs, &vtrsTm}) {
        storeShared(record->mag, 0.0F);
        storeShared(record->t, start);
        countShared(record->updateCount);
    }
    waitForMon();
    edge(&transStr, 0, entry.time);
    storeShared(maxVtrs.t, entry.time);
    storeShared(vtrsTm.t, entry.time);
    measured(&maxVtrs, f64{entry.mag} / 100);
    measured(&vtrsTm, entry.duration / 1000000.0);
    waitForMon();
}

// The three objects of a wave group.
struct WaveGroup {
    SPS *RcdStr;
    SPS *RcdMade;
    INS *FltNum;
};
const WaveGroup waveGroups[] = {
    {&mirror<SPS>("RD.RcdStr1"), &mirror<SPS>("RD.RcdMade1"), &mirror<INS>("RD.FltNum1")},
    {&mirror<SPS>("RD.RcdStr2"), &mirror<SPS>("RD.RcdMade2"), &mirror<INS>("RD.FltNum2")},
};

} // namespace

u32 SOEDataRefresh(u32 last) {
    const u32 now = regionLoadCounter(region::pqCounter);
    if (now < last) {
        if (now > entriesAtOnce) {
            dbInfo(DbUPD, DbCRI, "SOEDataRefresh", "PQ Ptr Overfollow!PtrNow:%u, PtrLast:%u", now, last);
            return now;
        }
        last = 0;
    } else if (now - last > entriesAtOnce) {
        last = now - entriesAtOnce;
    }
    for (; last != now; last++) {
        const PqEntry entry = entryOf(last % region::pqSlots);
        if (entry.type == typeVariation) {
            voltageVariation(entry);
        } else if (entry.type == typeTransient) {
            transient(entry);
        }
    }
    return last;
}

void RDDataInit() {
    TimeStamp now;
    getTimeStamp(&now);
    for (u32 i = 0; i < std::size(waveGroups); i++) {
        const WaveGroup &group = waveGroups[i];
        storeStamp(*group.RcdStr, qualityGood, now);
        storeStamp(*group.RcdMade, qualityGood, now);
        storeState(*group.FltNum, static_cast<i32>(regionLoad(region::waveStart, i)), qualityGood, now);
    }
}

u32 RDDataRefresh(u32 group) {
    const WaveGroup &records = waveGroups[group];
    const u32 count = regionLoadCounter(region::waveCount, group);
    TimeStamp now;
    if (count == 0) {
        dbInfo(DbUPD, DbCRI, "RDDataRefresh", "Wave%u Ptr clean out!", group + 1);
        getTimeStamp(&now);
        show(records.FltNum, 0, now);
        waitForMon();
        return 0;
    }
    const TimeStamp recorded = regionLoad(region::waveTime, group);
    show(records.RcdStr, 1, recorded);
    show(records.RcdMade, 0, recorded);
    waitForMon();
    getTimeStamp(&now);
    show(records.RcdStr, 0, now);
    show(records.RcdMade, 1, now);
    show(records.FltNum, static_cast<i32>(count), now);
    waitForMon();
    return count;
}

} // namespace ied
