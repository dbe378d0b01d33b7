#include "device/dataRefresh.h"

#include "DebugInfo/DebugInfo.h"
#include "device/measRefresh.h"
#include "device/parameterRefresh.h"
#include "device/region.h"
#include "device/statusRefresh.h"
#include "device/watchdog.h"
#include "proto-process/c/monitorTasks.h"

#include <algorithm>
#include <cstdio>

namespace ied {

RefreshState refreshState;

namespace {

constexpr int updatePriority = 210;
constexpr u32 updateStack = 0x200000;
constexpr i32 wdgTimeout = 600;
constexpr int paceTicks = 10;
constexpr int handOverTicks = 50;
constexpr u8 noGroup = 0xFF;

void report(const char *text) {
    if (text != nullptr) {
        dbInfo(DbUPD, DbDBG, "refreshLocalData", "%s", text);
    }
}

// What a change of the counters `first` to `last` brings up: a group of parameters and what hangs
// on it.
struct ParamRule {
    u8 first, last;
    u8 group;
    u8 related[2];
    const char *message;
};

using namespace region;
constexpr ParamRule ratedCurrentRule = {
    ArmRatedCurrent, ArmRatedCurrent, noGroup, {relatedRatedCurrent, noGroup}, nullptr};
constexpr ParamRule baseRule = {ArmBase, ArmBase, ParaBase, {ParaSP, ParaBase}, "Bace para is refreshed!"};
constexpr ParamRule groupRules[] = {
    {ArmDemand, ArmDemand, ParaDemand, {noGroup, noGroup}, "Demand para is refreshed!"},
    {ArmTrans, ArmTrans, ParaTrans, {noGroup, noGroup}, "Trans para is refreshed!"},
    {ArmSwell, ArmSwell, ParaSwell, {noGroup, noGroup}, "Swell para is refreshed!"},
    {ArmEnergy, ArmEnergy, ParaEnergy, {noGroup, noGroup}, "Energy para is refreshed!"},
    {ArmDI, ArmDI, ParaDI, {ParaDI, noGroup}, "DI para is refreshed!"},
    {ArmDO, ArmDO, ParaDO, {ParaDO, noGroup}, "DO para is refreshed!"},
    {ArmRO, ArmRO, ParaRO, {noGroup, noGroup}, "RO para is refreshed!"},
    {ArmSetPoint1, ArmSetPoint32, ParaSP, {ParaSP, noGroup}, "SP para is refreshed!"},
    {ArmLogic1, ArmLogic8, ParaLG, {noGroup, noGroup}, "Logic para is refreshed!"},
    {ArmWave1, ArmWave2, ParaWave, {noGroup, noGroup}, "Wave para is refreshed!"},
    {ArmSnap1, ArmSnap24, ParaSnap, {noGroup, noGroup}, "Snap para is refreshed!"},
};

void applyRule(RefreshState *state, const ParamRule &rule, const u32 *armFlag) {
    u32 *remembered = state->lastArmFlag + rule.first;
    const u32 *current = armFlag + rule.first;
    const std::size_t count = rule.last - rule.first + 1U;
    if (std::equal(current, current + count, remembered)) {
        return;
    }
    std::copy_n(current, count, remembered);
    if (rule.group != noGroup) {
        dealParamProcess(ParaLiveToSG, nullptr, rule.group);
    }
    for (const u8 group : rule.related) {
        if (group != noGroup) {
            relatedDataRefresh(false, group);
        }
    }
    report(rule.message);
    state->paramChanged = 1;
}

void loadFlags(const RegionField<u32> &field, u32 *flags) {
    for (u32 i = 0; i < field.count; i++) {
        flags[i] = regionLoadCounter(field, i);
    }
}

// The energy bill block has no counter: its parameters are compared themselves.
void refreshEnergyBill(RefreshState *state) {
    u8 block[energyBillSize];
    for (u32 i = 0; i < energyBillSize; i++) {
        block[i] = regionLoad(region::energyBill, i);
    }
    if (std::equal(block + energyBillHead, block + energyBillSize, state->energyBill + energyBillHead)) {
        return;
    }
    std::copy_n(block, energyBillSize, state->energyBill);
    dealParamProcess(ParaLiveToSG, nullptr, ParaEngBill);
    report("Energybill para is refreshed!");
    state->paramChanged = 1;
}

void refreshParameters(RefreshState *state) {
    u32 armFlag[armFlagNum];
    loadFlags(region::armFlag, armFlag);
    applyRule(state, ratedCurrentRule, armFlag);
    applyRule(state, baseRule, armFlag);
    if (state->feedCount > 1) {
        dealParamProcess(ParaLiveToSG, nullptr, ParaBase);
        state->feedCount = 0;
    }
    for (const ParamRule &rule : groupRules) {
        applyRule(state, rule, armFlag);
    }
    refreshEnergyBill(state);
    if (state->paramChanged == 0) {
        return;
    }
    waitForMon();
    state->paramChanged = 0;
    dbInfo(DbUPD, DbINF, "refreshLocalData", "All para is refreshed and processed!");
}

// -------------------------------------------------------------------------------- measurements

struct MeasRule {
    u8 index; // of dspFlag
    int (*run)(u8 mode);
    const char *message;
};
constexpr MeasRule measRules[] = {
    {DspPst, refreshRtPst, "Pst data is refreshed!"},
    {DspPlt, refreshRtPlt, "Plt data is refreshed!"},
    {DspPulse, refreshRtDiCnt, "DiCnt data is refreshed!"},
    {DspEnergy, refreshEnergy, "Energy data is refreshed!"},
    {DspDemand, refreshRtDemand, "Demand data is refreshed!"},
    {DspPreDemand, refreshPreDemand, "PreDemand data is refreshed!"},
};

// True, with the counter taken, when it moved.
bool takeCounter(u32 current, u32 *remembered) {
    if (current == *remembered) {
        return false;
    }
    *remembered = current;
    return true;
}

void refreshStatistics(RefreshState *state) {
    if (takeCounter(regionLoadCounter(region::statThisMonth), &state->lastFlagThisMonth)) {
        refreshStatData(0, RefreshAll);
        report("This month Stat data is refreshed!");
        state->measChanged = 1;
    }
    if (takeCounter(regionLoadCounter(region::statLastMonth), &state->lastFlagLastMonth)) {
        refreshStatData(1, RefreshAll);
        report("Last month Stat data is refreshed!");
        state->measChanged = 1;
    }
}

// Every counter but the first is read again just before it is compared: the blocks before it may
// have taken their time.
void refreshMeasurements(RefreshState *state) {
    if (takeCounter(regionLoadCounter(region::dspFlag, DspRealTime), &state->lastDspFlag[DspRealTime])) {
        refreshRt50Cycle(RefreshAll);
        report("50Cycle data is refreshed!");
        refreshRtHarm(RefreshAll);
        report("Harm , Imbal and seq data is refreshed!");
        state->measChanged = 1;
    }
    for (const MeasRule &rule : measRules) {
        if (!takeCounter(regionLoadCounter(region::dspFlag, rule.index), &state->lastDspFlag[rule.index])) {
            continue;
        }
        rule.run(RefreshAll);
        report(rule.message);
        state->measChanged = 1;
    }
    refreshStatistics(state);
    if (state->measChanged == 0) {
        return;
    }
    waitForMon();
    state->measChanged = 0;
    dbInfo(DbUPD, DbINF, "refreshLocalData", "All meas data is refreshed!");
}

} // namespace

void waitForMon() {
    semTake(semRefresh, NO_WAIT);
    const u32 number = handedOver + 1;
    publish(handedOver, number);
    const u32 start = tickGet();
    semGive(semMonitor);
    do {
        const int left = handOverTicks - static_cast<int>(tickGet() - start);
        if (left <= 0 || semTake(semRefresh, left) == ERROR) {
            dbInfo(DbUPD, DbERR, "waitForMon", "Fail to take semRefresh!");
            return;
        }
    } while (static_cast<i32>(loadPublished(lookedAt) - number) < 0);
}

void refreshStateInit(RefreshState *state) {
    *state = {};
    std::fill(std::begin(state->lastArmFlag) + 2, std::end(state->lastArmFlag), 1U);
    state->lastDspFlag[DspDemand] = 1;
    state->lastDspFlag[DspPreDemand] = 1;
    for (u32 i = 0; i < energyBillSize; i++) {
        state->energyBill[i] = regionLoad(region::energyBill, i);
    }
    state->lastChkSelfState = regionLoad(region::checkWord);
    state->lastPqLogPtr = regionLoad(region::pqStart);
    state->lastWaveRecPtr1 = regionLoad(region::waveStart, 0);
    state->lastWaveRecPtr2 = regionLoad(region::waveStart, 1);
}

void firstFilling() {
    refreshRt50Cycle(RefreshAll);
    refreshRtHarm(RefreshAll);
    refreshRtPst(RefreshAll);
    refreshRtPlt(RefreshAll);
    refreshRtDiCnt(RefreshAll);
    refreshEnergy(RefreshAll);
    refreshPreDemand(RefreshAll);
    refreshStatData(0, RefreshAll);
    refreshStatData(1, RefreshAll);
}

void refreshCycle(RefreshState *state) {
    if (wdgFeedWhenDue(&state->lastTick)) {
        state->feedCount++;
    }
    semTake(semRefresh, paceTicks);
    dbInfo(DbUPD, DbINF, "refreshLocalData", "Data refresh start!");
    refreshParameters(state);
    refreshMeasurements(state);
    refreshEvents(state);
    dbInfo(DbUPD, DbINF, "refreshLocalData", "All data refreshed");
}

void refreshLocalData(TaskArgument) {
    refreshStateInit(&refreshState);
    wdgRegister(wdgTimeout);
    firstFilling();
    for (;;) {
        refreshCycle(&refreshState);
    }
}

bool dataRefreshStart() {
    const int halfSecond = std::max(1, static_cast<int>(sysClkRateGet() / 2));
    bool waited = false;
    while (regionLoadCounter(region::ready) != region::readyValue) {
        if (!waited) {
            std::fprintf(stderr, "Waiting for the instrument: its shared region is not ready yet\n");
        }
        waited = true;
        taskDelay(halfSecond);
    }
    // The region may have been empty or half filled when it was read first, and not all of it hangs on a
    // change counter.
    namePlates();
    regionFirstRead();
    if (spawnTask("t61850Update", updatePriority, updateStack, refreshLocalData, 1) != taskNone) {
        return true;
    }
    dbInfo(DbOTH, DbSYS, "dataRefreshStart", "Spawn t61850Update failed!");
    return false;
}

} // namespace ied
