// One refresh a block of the region: its table, its time and what is its own.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "device/measRefresh.h"
#include "device/region.h"

namespace ied {

namespace {

MeasPass passOf(MeasTableId table, u8 mode) {
    MeasPass pass{};
    pass.table = table;
    pass.values = true;
    pass.elementStride = sizeof(f32);
    pass.wiring = regionWiring();
    pass.mode = mode;
    getTimeStamp(&pass.now);
    return pass;
}

int refreshBlock(MeasTableId table, const RegionTime &time, u8 mode) {
    MeasPass pass = passOf(table, mode);
    pass.blockTime = regionLoad(time);
    return walkMeasTable(measTable(table), pass);
}

int refreshFlicker(MeasTableId table, const RegionTime &time, u8 mode) {
    MeasPass pass = passOf(table, mode);
    pass.values = false;
    pass.blockTime = regionLoad(time);
    return walkMeasTable(measTable(table), pass);
}

// Takes a count into a counter's record.
void updateBCR(BCR *record, i32 count, const TimeStamp &time) {
    storeShared(record->actVal, count);
    countShared(record->updateCount);
    storeStamp(*record, qualityGood, time);
}

i32 loadCount(const MeasRow &row) {
    return static_cast<i32>(loadShared(*reinterpret_cast<const u32 *>(row.srcAddr)));
}

bool isCounter(const MeasRow &row, MeasTableId table) {
    if (row.prototype == ProtoBCR) {
        return true;
    }
    dbInfo(DbUPD, DbERR, "walkMeasTable", "No Such prototype in %s!", measTableName(table));
    return false;
}

constexpr u16 diPulseMode = 1;
constexpr i8 energyMultiplier = 3;
constexpr u32 demandFirstElement = 2; // the elements before it are no harmonics and stay 0

} // namespace

int refreshRt50Cycle(u8 mode) {
    return refreshBlock(MeasTableId::basic, region::realTimeTime, mode);
}

int refreshRtHarm(u8 mode) {
    MeasPass pass = passOf(MeasTableId::harmImBal, mode);
    pass.arrays = true;
    pass.blockTime = regionLoad(region::realTimeTime);
    return walkMeasTable(measTable(pass.table), pass);
}

int refreshRtPst(u8 mode) {
    return refreshFlicker(MeasTableId::pst, region::pstTime, mode);
}

int refreshRtPlt(u8 mode) {
    return refreshFlicker(MeasTableId::plt, region::pltTime, mode);
}

int refreshPreDemand(u8 mode) {
    return refreshBlock(MeasTableId::preDemand, region::preDemandTime, mode);
}

int refreshRtDemand(u8 mode) {
    MeasPass pass = passOf(MeasTableId::demand, mode);
    pass.arrays = true;
    pass.stopOnWrongArray = true;
    pass.firstElement = demandFirstElement;
    pass.elementStride = demandArrayStride;
    pass.blockTime = {regionLoad(region::demandTime.sec), 0, regionLoad(region::demandTime.tq)};
    for (const MeasSetShift &set : demandSets) {
        pass.targetShift = set.target;
        pass.sourceShift = set.source;
        if (walkMeasTable(measTable(pass.table), pass) == 0) {
            return 0;
        }
    }
    return 1;
}

int walkPulseTable(std::span<const MeasRow> rows, u8 mode) {
    const TimeStamp blockTime = regionLoad(region::ioTime);
    for (u32 i = 0; i < rows.size() && rows[i].srcAddr != nullptr; i++) {
        if (!isCounter(rows[i], MeasTableId::diCnt)) {
            return 0;
        }
        if (mode == RefreshInvalidate || i >= region::DIMod.count ||
            regionLoad(region::DIMod, i) != diPulseMode) {
            continue;
        }
        auto *record = reinterpret_cast<BCR *>(rows[i].modelAddr);
        const i32 count = loadCount(rows[i]);
        if (count == loadShared(record->actVal)) {
            continue;
        }
        storeShared(record->pulsQty, 1.0F);
        updateBCR(record, count, blockTime);
    }
    return 1;
}

int walkEnergyTable(std::span<const MeasRow> rows, u8 mode) {
    const TimeStamp blockTime = regionLoad(region::energyTime);
    for (const MeasRow &row : rows) {
        if (row.srcAddr == nullptr) {
            break;
        }
        if (!isCounter(row, MeasTableId::energy)) {
            return 0;
        }
        if (mode == RefreshInvalidate) {
            continue;
        }
        auto *record = reinterpret_cast<BCR *>(row.modelAddr);
        storeShared(record->units.multiplier, energyMultiplier);
        updateBCR(record, loadCount(row), blockTime);
    }
    return 1;
}

int refreshRtDiCnt(u8 mode) {
    return walkPulseTable(measTable(MeasTableId::diCnt), mode);
}

int refreshEnergy(u8 mode) {
    return walkEnergyTable(measTable(MeasTableId::energy), mode);
}

int refreshStatData(u8 month, u8 mode) {
    MeasPass pass = passOf(MeasTableId::rtStat, mode);
    pass.stampedSources = true;
    for (const MeasSetShift &set : rtStatSets[month]) {
        pass.targetShift = set.target;
        pass.sourceShift = set.source;
        if (walkMeasTable(measTable(pass.table), pass) == 0) {
            return 0;
        }
    }
    pass.table = MeasTableId::demandStat;
    pass.targetShift = demandStatSets[month].target;
    pass.sourceShift = demandStatSets[month].source;
    return walkMeasTable(measTable(pass.table), pass);
}

} // namespace ied
