// The cycle of the refresh task: what a change counter sets off, and the hand-over to the monitor.
#include "basicInterface/memory.h"
#include "device/dataRefresh.h"
#include "device/measRefresh.h"
#include "device/parameterRefresh.h"
#include "device/watchdog.h"
#include "proto-process/c/monitorTasks.h"
#include "tests/support/deviceModel.h"
#include "tests/support/ringEvents.h"
#include "tests/support/smallModel.h"

#include <cstdlib>
#include <new>
#include <vector>

using namespace ied;
using namespace ied::test;

namespace {

u64 allocations;

constexpr u32 armFlagAt = 12, dspFlagAt = 11808;

class DataRefresh : public testing::Test {
  protected:
    DataRefresh() {
        semMonitor = semBCreate(semQPriority, semEmpty);
        semRefresh = semBCreate(semQPriority, semFull);
        dataMapInit();
        for (u32 i = 2; i < 94; i++) {
            device.put<u32>(armFlagAt + 4 * i, 1);
        }
        device.put<u32>(dspFlagAt + 4 * 17, 1);
        device.put<u32>(dspFlagAt + 4 * 18, 1);
        refreshStateInit(&state);
    }
    ~DataRefresh() override {
        semDelete(semMonitor);
        semDelete(semRefresh);
        for (auto &map : paraMapAddr) {
            map = {};
        }
    }
    void raise(u32 offset) { device.raise(offset); }
    // One cycle; whether it woke the monitor.
    bool cycle() {
        refreshCycle(&state);
        const bool woken = semTake(semMonitor, NO_WAIT) == OK;
        semGive(semRefresh);
        return woken;
    }
    static int reports(const char *text) { return LogLines::count("UPD", "DBG", "refreshLocalData", text); }

    DeviceState device;
    RefreshState state;
};

TEST_F(DataRefresh, WithoutAChangeNothingIsWrittenAndTheMonitorSleeps) {
    const LogLines log;
    EXPECT_FALSE(cycle());
    EXPECT_FALSE(cycle());
    EXPECT_EQ(record<MV>("RT.Hz").updateCount, 0U);
    EXPECT_EQ(LogLines::count("UPD", "INF", "refreshLocalData", "Data refresh start!"), 2);
    EXPECT_EQ(LogLines::count("UPD", "INF", "refreshLocalData", "All data refreshed"), 2);
    EXPECT_EQ(LogLines::lines().size(), 4U);
}

struct Counter {
    const char *name;
    u32 offset;
    const char *message; // empty: none
    bool isParameter;
};

class Counters : public DataRefresh, public testing::WithParamInterface<Counter> {};

TEST_P(Counters, SetsOffItsWorkOnceAndWakesTheMonitor) {
    raise(GetParam().offset);
    const LogLines log;
    EXPECT_TRUE(cycle());
    EXPECT_TRUE(*GetParam().message == '\0' || reports(GetParam().message) == 1);
    EXPECT_EQ(LogLines::count("UPD", "INF", "refreshLocalData", "All para is refreshed and processed!"),
              GetParam().isParameter ? 1 : 0);
    EXPECT_EQ(LogLines::count("UPD", "INF", "refreshLocalData", "All meas data is refreshed!"),
              GetParam().isParameter ? 0 : 1);
    EXPECT_FALSE(cycle()) << "the counter has been taken";
}

constexpr u32 arm(u32 index) {
    return armFlagAt + 4 * index;
}
constexpr u32 dsp(u32 index) {
    return dspFlagAt + 4 * index;
}

INSTANTIATE_TEST_SUITE_P(
    DataRefresh, Counters,
    testing::Values(Counter{"ratedCurrent", arm(81), "", true},
                    Counter{"base", arm(1), "Bace para is refreshed!", true},
                    Counter{"demandPara", arm(5), "Demand para is refreshed!", true},
                    Counter{"trans", arm(14), "Trans para is refreshed!", true},
                    Counter{"swell", arm(13), "Swell para is refreshed!", true},
                    Counter{"energyPara", arm(6), "Energy para is refreshed!", true},
                    Counter{"DI", arm(4), "DI para is refreshed!", true},
                    Counter{"DO", arm(2), "DO para is refreshed!", true},
                    Counter{"RO", arm(3), "RO para is refreshed!", true},
                    Counter{"SP1", arm(41), "SP para is refreshed!", true},
                    Counter{"SP32", arm(72), "SP para is refreshed!", true},
                    Counter{"logic1", arm(73), "Logic para is refreshed!", true},
                    Counter{"logic8", arm(80), "Logic para is refreshed!", true},
                    Counter{"wave1", arm(9), "Wave para is refreshed!", true},
                    Counter{"wave2", arm(10), "Wave para is refreshed!", true},
                    Counter{"snap1", arm(17), "Snap para is refreshed!", true},
                    Counter{"snap24", arm(40), "Snap para is refreshed!", true},
                    Counter{"energyBill", 7956, "Energybill para is refreshed!", true},
                    Counter{"cycle", dsp(1), "50Cycle data is refreshed!", false},
                    Counter{"harmonics", dsp(1), "Harm , Imbal and seq data is refreshed!", false},
                    Counter{"pst", dsp(8), "Pst data is refreshed!", false},
                    Counter{"plt", dsp(9), "Plt data is refreshed!", false},
                    Counter{"diCnt", dsp(19), "DiCnt data is refreshed!", false},
                    Counter{"energy", dsp(14), "Energy data is refreshed!", false},
                    Counter{"demand", dsp(17), "Demand data is refreshed!", false},
                    Counter{"preDemand", dsp(18), "PreDemand data is refreshed!", false},
                    Counter{"thisMonth", 37549832, "This month Stat data is refreshed!", false},
                    Counter{"lastMonth", 37549836, "Last month Stat data is refreshed!", false}),
    [](const auto &param) { return std::string(param.param.name); });

// A parameter of each group, all in one field of the region, and the counter that brings it up.
struct GroupProbe {
    u8 group;
    const char *sAddr;
    u32 counter;
};

TEST_F(DataRefresh, EachCounterBringsUpItsOwnGroupOfParameters) {
    constexpr u32 field = 11000; // in no group of the instrument
    const GroupProbe probes[] = {
        {0, "SET.sys.TVMod", arm(1)},       {1, "SET.sys.DmdNum", arm(5)},
        {2, "SET.sys.TransTrg1", arm(14)},  {3, "SET.sys.VarTrg1", arm(13)},
        {4, "SET.sys.EngPlsFac", arm(6)},   {5, "SET.IO.DIMod1", arm(4)},
        {6, "SET.IO.DOMod1", arm(2)},       {7, "SET.IO.ROPlsTm1", arm(3)},
        {8, "SET.setpoint1.Trg1", arm(56)}, {9, "SET.logic1.Trg1", arm(76)},
        {10, "SET.wave1.SmpRat", arm(10)},  {11, "SET.snap1.var1", arm(29)},
        {12, "SET.EngBill.var1", 7958},
    };
    std::vector<ParaMap> maps;
    for (const GroupProbe &probe : probes) {
        maps.push_back({CdcING, ParaU16, reinterpret_cast<u8 *>(&record<ING>(probe.sAddr)), field, 0, 0});
    }
    for (std::size_t i = 0; i < maps.size(); i++) {
        paraMapAddr[probes[i].group] = {&maps[i], 1};
    }
    for (const GroupProbe &raised : probes) {
        for (const GroupProbe &probe : probes) {
            record<ING>(probe.sAddr).setVal[SetSG] = 0;
        }
        device.put<u16>(field, 77);
        state.feedCount = 0; // no reading of the base parameters on the way
        raise(raised.counter);
        cycle();
        for (const GroupProbe &probe : probes) {
            EXPECT_EQ(record<ING>(probe.sAddr).setVal[SetSG], probe.group == raised.group ? 77 : 0)
                << probe.sAddr << " after the counter of " << raised.sAddr;
        }
    }
}

TEST_F(DataRefresh, CountersBringUpWhatHangsOnTheirParameters) {
    u16 code = 0;
    // Changes everything that something else hangs on, raises a counter and tells what followed:
    // rated current, DO1, DI1, unit of setpoint 1, rated voltage.
    const auto follows = [&](u32 counter) {
        relatedDataRefresh(true, 0);
        code = code == 1 ? 2 : 1;
        device.put<u16>(7568, code);
        device.put<u16>(890, code);
        device.put<u16>(826, 2);
        device.put<u16>(738, 200 + code);
        device.put<u16>(5230, 7);
        const i32 ampere = record<INS>("MICS.RtdCurr").stVal;
        raise(counter);
        cycle();
        std::string out;
        if (record<INS>("MICS.RtdCurr").stVal != ampere) {
            out += "current ";
        }
        if (record<CtlObj>("CTL.DO1").q == qualityInvalid) {
            out += "DO ";
        }
        if (record<SPS>("ST.DI1").q == qualityInvalid) {
            out += "DI ";
        }
        if (record<ASG>("SET.setpoint1.OvStrVar").units.SIUnit == 62) {
            out += "setpoint ";
        }
        if (record<INS>("MICS.RtdVolt").stVal == 200 + code) {
            out += "voltage ";
        }
        for (const u32 offset : {890U, 826U, 5230U}) {
            device.put<u16>(offset, 0);
        }
        return out;
    };
    const std::pair<u32, const char *> expected[] = {{arm(81), "current "},  {arm(1), "setpoint voltage "},
                                                     {arm(4), "DI "},        {arm(2), "DO "},
                                                     {arm(60), "setpoint "}, {arm(3), ""},
                                                     {arm(13), ""},          {arm(73), ""}};
    for (const auto &[counter, what] : expected) {
        EXPECT_EQ(follows(counter), what) << counter;
    }
}

TEST_F(DataRefresh, EachCounterBringsUpItsOwnMeasurements) {
    const struct {
        u32 counter;
        const char *sAddr; // of an object that is shown in every wiring or in wye
        u8 cdc;
    } blocks[] = {
        {dsp(1), "RT.Hz", CdcMV},
        {dsp(1), "RT.TotDW", CdcMV},
        {dsp(8), "RT.PhVPst", CdcWYE},
        {dsp(9), "RT.PhVPlt", CdcWYE},
        {dsp(14), "ENG.DmdWh", CdcBCR},
        {dsp(17), "DMD.max.Hz", CdcMV},
        {dsp(18), "DMD.pre.Hz", CdcMV},
        {37549832, "MON.rt.now.min.Hz", CdcMV},
        {37549836, "MON.dmd.last.max.TotW", CdcMV},
    };
    const auto updates = [](const auto &block) {
        return block.cdc == CdcMV    ? record<MV>(block.sAddr).updateCount
               : block.cdc == CdcWYE ? record<WYE>(block.sAddr).updateCount
                                     : record<BCR>(block.sAddr).updateCount;
    };
    for (const auto &raised : blocks) {
        std::vector<u32> before;
        for (const auto &block : blocks) {
            before.push_back(updates(block));
        }
        raise(raised.counter);
        cycle();
        for (std::size_t i = 0; i < std::size(blocks); i++) {
            EXPECT_EQ(updates(blocks[i]) != before[i], blocks[i].counter == raised.counter)
                << blocks[i].sAddr << " after the counter of " << raised.sAddr;
        }
    }
    device.put<u16>(826, 1);
    device.put<u32>(16654072, 5);
    raise(dsp(19));
    cycle();
    EXPECT_EQ(record<BCR>("ENG.PlsCnt1").actVal, 5);
}

TEST_F(DataRefresh, CountersThatNobodyWatchesDoNothing) {
    for (const u32 offset : {arm(0), arm(7), arm(16), arm(82), arm(93), dsp(0), dsp(2), dsp(59), 7932U}) {
        raise(offset);
    }
    EXPECT_FALSE(cycle());
}

TEST_F(DataRefresh, SeveralChangesOfAKindAreHandedOverTogether) {
    raise(arm(41));
    raise(arm(60));
    raise(arm(4));
    raise(dsp(8));
    raise(dsp(9));
    const LogLines log;
    EXPECT_TRUE(cycle());
    EXPECT_EQ(reports("SP para is refreshed!"), 1);
    EXPECT_EQ(LogLines::count("UPD", "INF", "refreshLocalData", "All para is refreshed and processed!"), 1);
    EXPECT_EQ(LogLines::count("UPD", "INF", "refreshLocalData", "All meas data is refreshed!"), 1);
    // The monitor of this test answers none of the two hand-overs; the cycle's own pace took the
    // semaphore.
    EXPECT_EQ(LogLines::count("UPD", "ERR", "waitForMon", "Fail to take semRefresh!"), 2);
}

TEST_F(DataRefresh, TheWatchdogIsFedAndEverySecondFeedReadsTheBaseParametersAgain) {
    ING &mode = record<ING>("SET.sys.SysLan");
    const ParaMap map[] = {{CdcING, ParaU16, reinterpret_cast<u8 *>(&mode), 758, 0, 2}};
    paraMapAddr[ParaBase] = map;
    cycle();
    device.put<u16>(758, 2);
    const u32 before = state.feedCount;
    heldClockAdvance(6000);
    cycle();
    EXPECT_EQ(state.feedCount, before + 1);
    EXPECT_EQ(mode.setVal[SetSG], 0);
    heldClockAdvance(6000);
    EXPECT_FALSE(cycle()) << "no hand-over for it";
    EXPECT_EQ(mode.setVal[SetSG], 2);
    EXPECT_EQ(state.feedCount, 0U);
}

TEST_F(DataRefresh, TheFirstFillingShowsEverythingButDemand) {
    device.put<f32>(58616, 50);
    device.put<f32>(16647392, 50);
    device.put<f32>(16654020, 50);
    device.put<f32>(37311176, 51);
    firstFilling();
    EXPECT_EQ(record<MV>("RT.Hz").mag, 50);
    EXPECT_EQ(record<MV>("DMD.pre.Hz").mag, 50);
    EXPECT_EQ(record<MV>("MON.rt.now.max.Hz").mag, 51);
    EXPECT_EQ(record<MV>("DMD.avg.Hz").mag, 0);
}

TEST_F(DataRefresh, ACycleWithEverythingChangedAllocatesNothing) {
    cycle();
    for (u32 i = 0; i < 94; i++) {
        raise(arm(i));
    }
    for (u32 i = 0; i < 60; i++) {
        raise(dsp(i));
    }
    raise(37549832);
    raise(37549836);
    raise(7956);
    const auto put = [this](u32 at, auto value) { device.put(at, value); };
    for (const Ring &ring : {inputRing, outputRing, setpointRing, logicRing}) {
        putState(put, ring, 0, 1, 5000, 0);
    }
    putEvent(put, 0, {1, 4, 5000, 0, 40, 120}); // the end of a dip, and a transient
    putEvent(put, 1, {2, 0, 5000, 0, 150, 500});
    for (const u32 event : {checkWordAt, waveCountAt[0], waveCountAt[1]}) {
        raise(event);
    }
    const u64 before = allocations;
    const u32 bytesBefore = allocBytes;
    EXPECT_GT(before, 0U) << "the count works";
    refreshCycle(&state);
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(allocBytes, bytesBefore);
    EXPECT_EQ(record<SPS>("SOE.TransStr").updateCount, 2U);
    EXPECT_EQ(record<INS>("RD.FltNum2").stVal, 1);
}

// ------------------------------------------------------------------------------------ the start

// A clock under which the instrument becomes ready while it is waited for the third time.
void (*heldSleep)(u64);
int waits;
DeviceState *lateRegion;
void lateInstrument(u64 deadline) {
    heldSleep(deadline);
    if (++waits == 3) {
        lateRegion->put<u32>(7576, 4711);
        lateRegion->put<u16>(37514468, 10203);
        lateRegion->put<u16>(37514476, 1234);
        lateRegion->put<u32>(checkWordAt, 1U << 7); // parameters of the setpoints are at fault
        lateRegion->put<u32>(37549796, 5);          // records of wave group 2
        lateRegion->put<u16>(7936, 2);              // LogMod of the energy bill, which has no counter
        lateRegion->put<u16>(818, 15);              // DmdPeriod, whose counter stands at its start value
        lateRegion->put<u32>(arm(5), 1);
        lateRegion->put<u32>(37549840, 43605);
    }
}

bool plateShows(const char *serNum, const char *hwRev, const char *configRev) {
    const DPL &physical = record<DPL>("MICS.PhyNam");
    return std::strcmp(physical.serNum, serNum) == 0 && std::strcmp(physical.hwRev, hwRev) == 0 &&
           std::strcmp(record<LPL>("MICS.NamPlt").configRev, configRev) == 0;
}

// Ends with status 0 when the start waited three half seconds and left a running task, and name plates,
// states and parameters show what the instrument has filled in meanwhile.
void startWithLateInstrument() {
    DeviceState device;
    lateRegion = &device;
    device.put<u32>(37549840, 43604);
    heldSleep = clockOps.sleepUntilNs;
    clockOps.sleepUntilNs = lateInstrument;
    dataMapInit();
    specDataInit();
    const bool empty = plateShows("0000000000", "V0.00.00", "V00.00");
    semMonitor = semBCreate(semQPriority, semEmpty);
    semRefresh = semBCreate(semQPriority, semEmpty);
    const u32 start = tickGet();
    const bool started = dataRefreshStart();
    const bool filled = plateShows("0000004711", "V1.02.03", "V12.34") &&
                        record<SPS>("ST.spParaFlt").stVal == 1 && record<INS>("RD.FltNum2").stVal == 5 &&
                        record<ING>("SET.EngBill.LogMod").setVal[SetSG] == 2 &&
                        record<ING>("SET.sys.DmdPeriod").setVal[SetSG] == 15;
    const bool waited = waits == 3 && tickGet() - start >= 3 * (sysClkRateGet() / 2);
    std::_Exit(started && waited && empty && filled ? 0 : 1);
}

TEST(DataRefreshDeathTest, TheStartWaitsForTheInstrumentAndSaysSoOnce) {
    EXPECT_EXIT(startWithLateInstrument(), testing::ExitedWithCode(0),
                "^Waiting for the instrument: its shared region is not ready yet\n$");
}

} // namespace

// Counts what is allocated from the C++ heap; what Malloc hands out has a count of its own.
[[gnu::noinline]] void *operator new(std::size_t size) {
    allocations++;
    void *block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
[[gnu::noinline]] void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    allocations++;
    return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void *block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void *block, std::size_t) noexcept {
    std::free(block);
}
