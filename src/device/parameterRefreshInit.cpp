// First state of the whole mirror: fixed values, records that nothing feeds, and everything that
// hangs on the parameters.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "basicInterface/sharedText.h"
#include "device/measTables.h"
#include "device/parameterMaps.h"
#include "device/parameterRefresh.h"
#include "device/privateConfig.h"
#include "device/region.h"
#include "device/statusRefresh.h"
#include "model-gen/c/sclRecords.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace ied {

namespace {

// Sets of the demand and classes of the statistics, which repeat evenly.
constexpr u32 demandSetNum = 3;
constexpr u32 statSetNum = 4;

void setSeqInvalid(SEQ &record) {
    for (CMV &component : record.c) {
        storeShared(component.q, qualityInvalid);
    }
}

// Records that no measurement table feeds.
void invalidateUnfed() {
    for (u32 set = 0; set < demandSetNum; set++) {
        setSeqInvalid(mirrorOf<SEQ>("DMD.avg.SeqA", "DMD.max.SeqA", set));
        setSeqInvalid(mirrorOf<SEQ>("DMD.avg.SeqV", "DMD.max.SeqV", set));
        storeShared(mirrorOf<MV>("DMD.avg.HHz", "DMD.max.HHz", set).q, qualityInvalid);
    }
    for (u32 set = 0; set < statSetNum; set++) {
        setSeqInvalid(mirrorOf<SEQ>("MON.rt.now.max.SeqA", "MON.rt.now.min.SeqA", set));
        setSeqInvalid(mirrorOf<SEQ>("MON.rt.now.max.SeqV", "MON.rt.now.min.SeqV", set));
        storeShared(mirrorOf<MV>("MON.rt.now.max.HHz", "MON.rt.now.min.HHz", set).q, qualityInvalid);
    }
}

// The groups above repeat evenly: avg, max, min; and the classes of both months.
static_assert(MirrorPath<MV>("DMD.min.HHz").offset - MirrorPath<MV>("DMD.max.HHz").offset ==
              MirrorPath<MV>("DMD.max.HHz").offset - MirrorPath<MV>("DMD.avg.HHz").offset);
static_assert(MirrorPath<MV>("MON.rt.last.min.HHz").offset - MirrorPath<MV>("MON.rt.now.max.HHz").offset ==
              3 * (MirrorPath<MV>("MON.rt.now.min.HHz").offset -
                   MirrorPath<MV>("MON.rt.now.max.HHz").offset));

// Reports may read the plates meanwhile.
[[gnu::format(printf, 2, 3)]] void printPlate(char (&plate)[256], const char *format, ...) {
    char text[sizeof plate];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    storeSharedText(plate, text, static_cast<u32>(std::strlen(text)));
}

// Versions are decimal digits aabbcc.
void printVersion(char (&plate)[256], u32 version) {
    printPlate(plate, "V%u.%02u.%02u", version / 10000, version % 10000 / 100, version % 100);
}

} // namespace

void namePlates() {
    LPL &device = mirror<LPL>("MICS.NamPlt");
    const u32 config = regionLoad(region::cfgVersion);
    const u32 software = regionLoad(region::swVersion);
    printPlate(device.vendor, "ORV");
    printPlate(device.ldNs, "IEC 61850-7-4:2003");
    printPlate(device.configRev, "V%02u.%02u", config % 10000 / 100, config % 100);
    printVersion(device.swRev, software);

    DPL &physical = mirror<DPL>("MICS.PhyNam");
    printPlate(physical.vendor, "ORV");
    printPlate(physical.serNum, "%010u", regionLoad(region::serialNumber));
    printVersion(physical.swRev, software);
    printVersion(physical.hwRev, regionLoad(region::hwVersion));
    printPlate(physical.model, "%s", IED.name != nullptr ? IED.name : "");
}

void invalidHarDeal(HWYE *record, bool hasNeut) {
    constexpr u32 noHarmonics = 2; // elements before the second harmonic
    const u32 arrays = hasNeut ? 4 : 3;
    for (u32 i = 0; i < arrays; i++) {
        for (u32 n = 0; record->har[i] != nullptr && n < noHarmonics && n < record->numHar; n++) {
            storeShared(record->har[i][n].mag, 0.0F);
        }
    }
}

void specDataInit() {
    TimeStamp now;
    getTimeStamp(&now);
    storeState(mirror<SPS>("MICS.Proxy"), 0, qualityGood, now);
    storeState(mirror<CtlObj>("MICS.Mod"), 1, qualityGood, now);
    storeState(mirror<SPS>("MICS.Beh"), 1, qualityGood, now);
    storeState(mirror<SPS>("MICS.Health"), 1, qualityGood, now);
    storeState(mirror<SPS>("MICS.PhyHealth"), 1, qualityGood, now);
    namePlates();
    storeState(mirror<CtlObj>("CTL.RcdTrg1"), 0, qualityGood, now);
    storeState(mirror<CtlObj>("CTL.RcdTrg2"), 0, qualityGood, now);
    storeState(mirror<SPS>("ST.batFlt"), 0, qualityInvalid, now);
    for (u32 set = 0; set < demandSetNum; set++) {
        invalidHarDeal(&mirrorOf<HWYE>("DMD.avg.HPhVArr", "DMD.max.HPhVArr", set), true);
        invalidHarDeal(&mirrorOf<HWYE>("DMD.avg.HPPVArr", "DMD.max.HPPVArr", set), false);
        invalidHarDeal(&mirrorOf<HWYE>("DMD.avg.HAArr", "DMD.max.HAArr", set), true);
    }
    invalidateUnfed();
}

void pulsQtyInit() {
    for (const MeasRow &row : measTable(MeasTableId::energy)) {
        storeShared(reinterpret_cast<BCR *>(row.modelAddr)->pulsQty, 1.0F);
    }
}

void regionFirstRead() {
    relatedDataRefresh(true, ParaBase);
    dealParamProcess(ParaLiveToSG, nullptr, ParaAll);
    stDataInit();
    RDDataInit();
}

int locDataInit() {
    if (localConfInit() == -1) {
        dbInfo(DbSET, DbERR, "locDataInit", "Failed to init localConfig!");
        return 0;
    }
    dataMapInit();
    specDataInit();
    regionFirstRead();
    pulsQtyInit();
    nameUnmappedSettings();
    return 0;
}

} // namespace ied
