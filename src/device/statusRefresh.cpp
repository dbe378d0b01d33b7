#include "device/statusRefresh.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "device/dataRefresh.h"
#include "device/region.h"

namespace ied {

namespace {

template <std::size_t N> std::array<SPS *, N> numbered(MirrorPath<SPS> first) {
    std::array<SPS *, N> out{};
    for (std::size_t i = 0; i < N; i++) {
        out[i] = mirrorRow<SPS>(first) + i;
    }
    return out;
}

// An input or output in another mode than to show its state is not touched by its ring.
bool inputCounts(u32 row) {
    return regionLoad(region::DIMod, row) != 0;
}
bool outputIsLocal(u32 row) {
    return row >= relayNum && regionLoad(region::DOMod, row - relayNum) != 0;
}
bool never(u32) {
    return false;
}

// Gives a record the state that the instrument saw. The control objects have no updateCount.
template <class Record> void takeState(Record *record, u8 value, const TimeStamp &time) {
    if (loadShared(record->stVal) == value) {
        return;
    }
    storeState(*record, value, qualityGood, time);
    if constexpr (requires { record->updateCount; }) {
        countShared(record->updateCount);
    }
}

struct RingKind {
    const char *name;
    bool (*skips)(u32 row);
};

// Plays the entries of a ring from position `last` on into the records, each handed over before the
// next. Returns the new position. An entry that was overwritten during the walk ends it: the next walk
// goes on with the oldest one that the ring still holds. One that is being overwritten at this very moment
// is not told from a whole one.
template <class State, class Record, std::size_t N>
u32 walkRing(const region::RegionRing<State> &ring, const std::array<Record *, N> &list, const RingKind &kind,
             u32 last) {
    const u32 now = regionLoadCounter(ring.counter);
    if (now < last) {
        dbInfo(DbUPD, DbCRI, "refreshSTData", "%s Ptr Overfollow! PtrNow:%u, PtrLast:%u", kind.name, now,
               last);
        return now;
    }
    if (now - last > ring.slots) {
        last = now - ring.slots;
    }
    for (; last != now; last++) {
        const u32 slot = last % ring.slots;
        const u32 word = regionLoadCounter(ring.state, slot); // so that the counter is read after them
        const TimeStamp time = regionLoadCounter(ring.time, slot);
        if (regionLoadCounter(ring.counter) - last > ring.slots) {
            break;
        }
        for (u32 row = 0; row < N; row++) {
            if (!kind.skips(row)) {
                takeState(list[row], static_cast<u8>(word >> row & 1), time);
            }
        }
        waitForMon();
    }
    return last;
}

} // namespace

const std::array<SPS *, 8> DISTAddrList = numbered<8>("ST.DI1");
const std::array<CtlObj *, 6> DOSTAddrList = {
    &mirror<CtlObj>("CTL.RO1"), &mirror<CtlObj>("CTL.RO2"), &mirror<CtlObj>("CTL.RO3"),
    &mirror<CtlObj>("CTL.RO4"), &mirror<CtlObj>("CTL.DO1"), &mirror<CtlObj>("CTL.DO2"),
};
const std::array<SPS *, 32> SPSTAddrList = numbered<32>("ST.SP1");
const std::array<SPS *, 8> LGSTAddrList = numbered<8>("ST.logic1");
const std::array<SPS *, 18> CHKSTAddrList = {
    &mirror<SPS>("ST.dspFlt"),
    &mirror<SPS>("ST.adFlt"),
    &mirror<SPS>("ST.batFlt"),
    &mirror<SPS>("ST.pwrFlt"),
    &mirror<SPS>("ST.flashFlt"),
    &mirror<SPS>("ST.framFlt"),
    &mirror<SPS>("ST.sysParaFlt"),
    &mirror<SPS>("ST.spParaFlt"),
    &mirror<SPS>("ST.snapParaFlt"),
    &mirror<SPS>("ST.wavParaFlt"),
    &mirror<SPS>("ST.pqParaFlt"),
    &mirror<SPS>("ST.engParaFlt"),
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    &mirror<SPS>("ST.secParaFlt"),
    &mirror<SPS>("ST.commParaFlt"),
};

void stDataInit() {
    TimeStamp now;
    getTimeStamp(&now);
    for (u32 i = 0; i < DISTAddrList.size(); i++) {
        storeState(*DISTAddrList[i], 0, inputCounts(i) ? qualityInvalid : qualityGood, now);
    }
    for (u32 i = 0; i < DOSTAddrList.size(); i++) {
        storeState(*DOSTAddrList[i], 0, outputIsLocal(i) ? qualityInvalid : qualityGood, now);
    }
    for (SPS *record : SPSTAddrList) {
        storeState(*record, 0, qualityGood, now);
    }
    for (SPS *record : LGSTAddrList) {
        storeState(*record, 0, qualityGood, now);
    }
    const u32 word = regionLoad(region::checkWord);
    const TimeStamp wordTime = regionLoad(region::checkTime);
    for (u32 i = 0; i < CHKSTAddrList.size(); i++) {
        if (CHKSTAddrList[i] != nullptr && i != checkBattery) {
            storeState(*CHKSTAddrList[i], static_cast<u8>(word >> i & 1), qualityGood, wordTime);
        }
    }
}

namespace {

u32 refreshCheckWord() {
    const u32 word = regionLoadCounter(region::checkWord);
    const TimeStamp time = regionLoad(region::checkTime);
    for (u32 row = 0; row < CHKSTAddrList.size(); row++) {
        if (CHKSTAddrList[row] != nullptr && row != checkBattery) {
            takeState(CHKSTAddrList[row], static_cast<u8>(word >> row & 1), time);
        }
    }
    waitForMon();
    return word;
}

} // namespace

u32 refreshSTData(u32 type, u32 last) {
    switch (type) {
    case StDI:
        return walkRing(region::diRing, DISTAddrList, {"DI", inputCounts}, last);
    case StDO:
        return walkRing(region::doRing, DOSTAddrList, {"DO", outputIsLocal}, last);
    case StSP:
        return walkRing(region::spRing, SPSTAddrList, {"SP", never}, last);
    case StLG:
        return walkRing(region::lgRing, LGSTAddrList, {"LG", never}, last);
    case StCheck:
        return refreshCheckWord();
    default:
        dbInfo(DbUPD, DbERR, "refreshSTData", "Error ST Type %d!", static_cast<int>(type));
        return 0;
    }
}

} // namespace ied
