// What hangs on a parameter: validity of inputs, outputs and counters, texts and units of setpoints,
// rated values, units of harmonics.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "basicInterface/nodeTree.h"
#include "device/addressBinding.h"
#include "device/measRefresh.h"
#include "device/parameterRefresh.h"
#include "device/region.h"
#include "device/setPointText.h"
#include "device/statusRefresh.h"

#include <algorithm>

namespace ied {

namespace {

// SI units of IEC 61850-7-3 in use.
enum SiUnit : u8 {
    SiNone = 1,
    SiAmpere = 5,
    SiVolt = 29,
    SiHertz = 33,
    SiWatt = 62,
    SiVAr = 63,
    SiVA = 65
};

// Values last acted on; none at first.
struct RelatedState {
    i32 lastrateNormVolt = -1;
    i32 lastrateNormAmp = -1;
    i32 lastInMode = -1;
};
RelatedState state;

bool isBit(u32 word, u32 bit) {
    return (word >> bit & 1) != 0;
}

void ratedCurrent(bool, const TimeStamp &now) {
    const u16 code = regionLoad(region::ratedCurrent);
    if (code == state.lastrateNormAmp) {
        return;
    }
    state.lastrateNormAmp = code;
    const i32 ampere = regionRatedAmperes();
    storeState(mirror<INS>("MICS.RtdCurr"), ampere, qualityGood, now);
    storeState(mirror<INS>("MICS.RtdI4"), ampere, qualityGood, now);
}

// State of a channel that is valid only in `usable` mode: it takes `value` when it becomes valid,
// 0 when it stops to be. SPS and CtlObj name these fields alike.
template <class Record>
void channelState(Record &record, bool usable, bool value, bool force, const TimeStamp &now) {
    const u16 wanted = usable ? qualityGood : qualityInvalid;
    if (loadShared(record.q) == wanted && !force) {
        return;
    }
    storeState(record, static_cast<u8>(usable && value), wanted, now);
}

void outputs(bool force, const TimeStamp &now) {
    const u16 word = regionLoad(region::outputState);
    for (u32 i = 0; i < region::DOMod.count; i++) {
        const u32 bit = relayNum + i;
        channelState(*DOSTAddrList[bit], regionLoad(region::DOMod, i) == 0, isBit(word, bit), force, now);
    }
}

void pulseCounter(u32 i, bool counting, bool force, const TimeStamp &now) {
    BCR &record = mirrorRow<BCR>("ENG.PlsCnt1")[i];
    const u16 wanted = counting ? qualityGood : qualityInvalid;
    const bool turn = loadShared(record.q) != wanted || force;
    if (turn) {
        storeShared(record.actVal, counting ? static_cast<i32>(regionLoad(region::pulseCount, i)) : 0);
        storeStamp(record, wanted, now);
    }
    if (counting) {
        storeShared(record.pulsQty, 1.0F);
    } else if (turn) {
        storeShared(record.pulsQty, 0.0F);
    }
}

void inputs(bool force, const TimeStamp &now) {
    const u8 word = regionLoad(region::diState);
    for (u32 i = 0; i < region::DIMod.count; i++) {
        const u16 mode = regionLoad(region::DIMod, i);
        channelState(*DISTAddrList[i], mode == 0, isBit(word, i), force, now);
        pulseCounter(i, mode == 1, force, now);
    }
}

// ----------------------------------------------------------------------------------- setpoints

bool isText(const GenNode *node) {
    return node->nodeType >= TypeVisString32 && node->nodeType <= TypeUnicode255;
}

void setPointDescription(u32 i, u16 trgMod, u16 monObj) {
    const DescNodes &nodes = setPointDesc[i];
    if (nodes.dNode == nullptr || nodes.dUNode == nullptr || !isText(nodes.dNode) || !isText(nodes.dUNode)) {
        dbInfo(DbUPD, DbERR, "relatedDataRefresh", "Modefy SP%u dU info failed!", i + 1);
        return;
    }
    const u32 side = trgMod <= 1 ? 0 : 1; // over or under
    const SetPointStr &str = setPointStr[std::min<u32>(monObj, setPointStrNum - 1)];
    publish(nodes.dUNode->data, const_cast<char *>(str.text[side]));
    publish(nodes.dNode->data, const_cast<char *>(str.text[side + 2]));
}

// Units of the first quantities that a setpoint can watch, by their number; those behind have none.
constexpr u8 quantityUnits[] = {
    SiNone, SiVolt, SiVolt, SiAmpere, SiVolt, SiAmpere, SiHertz, SiWatt, SiVAr, SiVA,   SiNone, SiNone,
    SiNone, SiNone, SiNone, SiNone,   SiNone, SiNone,   SiWatt,  SiVAr,  SiVA,  SiWatt, SiVAr,  SiVA,
};

// Unit of the quantity that a setpoint watches; false for one that has none.
bool unitOf(u16 monObj, u8 *unit) {
    constexpr u16 harmonicFirst = 36;
    constexpr u16 harmonicLast = 159;
    if (monObj > harmonicLast) {
        return false;
    }
    if (monObj >= harmonicFirst) {
        if (monObj % 2 == 0) {
            *unit = regionLoad(region::ClcHV) != 0 ? SiVolt : SiNone;
        } else {
            *unit = regionLoad(region::ClcHA) != 0 ? SiAmpere : SiNone;
        }
        return true;
    }
    *unit = monObj < std::size(quantityUnits) ? quantityUnits[monObj] : u8{SiNone};
    return true;
}

void setPointUnit(u32 i, u16 monObj) {
    ASG &over = mirrorOf<ASG>("SET.setpoint1.OvStrVar", "SET.setpoint2.OvStrVar", i);
    ASG &under = mirrorOf<ASG>("SET.setpoint1.UnStrVar", "SET.setpoint2.UnStrVar", i);
    u8 unit;
    const bool known = unitOf(monObj, &unit);
    if (!known) {
        dbInfo(DbUPD, DbERR, "relatedDataRefresh", "SP%u Source Para Error!", i + 1);
    }
    for (ASG *record : {&over, &under}) {
        if (known) {
            storeShared(record->units.SIUnit, unit);
        }
        storeShared(record->units.multiplier, i8{0});
    }
}

void setPoints(bool, const TimeStamp &) {
    for (u32 i = 0; i < setPointNum; i++) {
        const u16 monObj = regionLoad(region::SPMonObj, i);
        setPointDescription(i, regionLoad(region::SPTrgMod, i), monObj);
        setPointUnit(i, monObj);
    }
}

// ------------------------------------------------------------------------- wiring and harmonics

HWYE *const voltageHarmonics[] = {
    &mirror<HWYE>("RT.HPhVArr"),      &mirror<HWYE>("RT.HPPVArr"),      &mirror<HWYE>("RT.IHPhVConArr"),
    &mirror<HWYE>("RT.IHPPVConArr"),  &mirror<HWYE>("DMD.avg.HPhVArr"), &mirror<HWYE>("DMD.avg.HPPVArr"),
    &mirror<HWYE>("DMD.max.HPhVArr"), &mirror<HWYE>("DMD.max.HPPVArr"), &mirror<HWYE>("DMD.min.HPhVArr"),
    &mirror<HWYE>("DMD.min.HPPVArr"),
};

HWYE *const currentHarmonics[] = {
    &mirror<HWYE>("RT.HAArr"),      &mirror<HWYE>("RT.IHAConArr"),  &mirror<HWYE>("DMD.avg.HAArr"),
    &mirror<HWYE>("DMD.max.HAArr"), &mirror<HWYE>("DMD.min.HAArr"),
};

void harmonicUnits(std::span<HWYE *const> records, u16 form, u8 unit) {
    if (form > 1) {
        return;
    }
    for (HWYE *record : records) {
        storeShared(record->units.SIUnit, form == 0 ? u8{SiNone} : unit);
    }
}

void harmonicFrequency(std::span<HWYE *const> records, bool sixtyHertz) {
    for (HWYE *record : records) {
        storeShared(record->frequency, sixtyHertz ? 60.0F : 50.0F);
        storeShared(record->evalTm, sixtyHertz ? u16{17} : u16{20});
    }
}

// Invalidates what the new wiring mode has no values for.
void wiringChanged() {
    refreshRt50Cycle(RefreshInvalidate);
    refreshRtHarm(RefreshInvalidate);
    refreshRtPst(RefreshInvalidate);
    refreshRtPlt(RefreshInvalidate);
    refreshRtDiCnt(RefreshInvalidate);
    refreshEnergy(RefreshInvalidate);
    refreshRtDemand(RefreshInvalidate);
    refreshPreDemand(RefreshInvalidate);
    refreshStatData(0, RefreshInvalidate);
}

void ratedValues(bool, const TimeStamp &now) {
    const u16 volt = regionLoad(region::RtgVolt);
    if (volt != state.lastrateNormVolt) {
        state.lastrateNormVolt = volt;
        storeState(mirror<INS>("MICS.RtdVolt"), volt, qualityGood, now);
    }
    const u16 inMode = regionLoad(region::TVMod);
    if (inMode != state.lastInMode) {
        state.lastInMode = inMode;
        wiringChanged();
    }
    harmonicUnits(voltageHarmonics, regionLoad(region::ClcHV), SiVolt);
    harmonicUnits(currentHarmonics, regionLoad(region::ClcHA), SiAmpere);
    const bool sixtyHertz = regionLoad(region::RtgFreq) == 1;
    harmonicFrequency(voltageHarmonics, sixtyHertz);
    harmonicFrequency(currentHarmonics, sixtyHertz);
}

// Sections in their order, each with the groups that it runs for.
struct Section {
    u8 groups[2];
    void (*run)(bool force, const TimeStamp &now);
};
constexpr Section sections[] = {
    {{relatedRatedCurrent, relatedRatedCurrent}, ratedCurrent},
    {{ParaDO, ParaDO}, outputs},
    {{ParaDI, ParaDI}, inputs},
    {{ParaSP, ParaBase}, setPoints},
    {{ParaBase, ParaBase}, ratedValues},
};

} // namespace

void relatedDataRefresh(bool force, u8 group) {
    TimeStamp now;
    getTimeStamp(&now);
    for (const Section &section : sections) {
        if (force || group == section.groups[0] || group == section.groups[1]) {
            section.run(force, now);
        }
    }
}

} // namespace ied
