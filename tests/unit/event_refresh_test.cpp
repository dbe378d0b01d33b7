// States and events of the instrument as they are played into the model: what the monitor task sees
// at each hand-over.
#include "device/dataRefresh.h"
#include "device/privateConfig.h"
#include "device/statusRefresh.h"
#include "proto-process/c/monitorTasks.h"
#include "tests/support/deviceModel.h"
#include "tests/support/smallModel.h"

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

using namespace ied;
using ied::test::DeviceState;
using ied::test::LogLines;
using ied::test::record;

namespace {

// Places of the region.
constexpr u32 diModeAt = 826, doModeAt = 890, rtgVoltAt = 738;
constexpr u32 checkTimeAt = 37514452, checkWordAt = 37514464;
constexpr u32 pqAt = 20199824, waveTimeAt = 37514484, waveCountAt = 37514496;
constexpr u8 timeQuality = 10;

// "stVal q sec.ms count" of a state.
template <class Record> std::string show(const char *sAddr) {
    const Record &state = record<Record>(sAddr);
    std::string text = std::to_string(loadShared(state.stVal)) + " " + std::to_string(loadShared(state.q)) +
                       " " + std::to_string(loadShared(state.t.sec)) + "." +
                       std::to_string(loadShared(state.t.ms));
    if constexpr (requires { state.updateCount; }) {
        text += " " + std::to_string(loadShared(state.updateCount));
    }
    return text;
}

// "mag sec.ms count" of a measured value.
std::string showMeasured(const char *sAddr) {
    const MV &value = record<MV>(sAddr);
    char text[80];
    std::snprintf(text, sizeof text, "%g %u.%u %u", static_cast<f64>(loadShared(value.mag)),
                  loadShared(value.t.sec), loadShared(value.t.ms), loadShared(value.updateCount));
    return text;
}

// The monitor is a task that notes what it is shown.
class EventRefresh : public testing::Test {
  protected:
    EventRefresh() {
        heldClockStop();
        externGlbCfgInit();
        log.emplace();
        externGlbCfg.tickRate = 1; // the monitor has 50 seconds for each answer
        localConfig = 0;
        semMonitor = semBCreate(semQPriority, semEmpty);
        semRefresh = semBCreate(semQPriority, semEmpty);
        monitor = std::thread([this] {
            while (semTake(semMonitor, WAIT_FOREVER) == OK && !ended) {
                seen.push_back(watch ? watch() : "");
                publish(lookedAt, loadPublished(handedOver));
                semGive(semRefresh);
            }
        });
    }
    ~EventRefresh() override {
        ended = true;
        semGive(semMonitor);
        monitor.join();
        EXPECT_EQ(LogLines::count("UPD", "ERR", "waitForMon", "Fail to take semRefresh!"), 0);
        semDelete(semMonitor);
        semDelete(semRefresh);
        log.reset();
        externGlbCfgInit();
    }
    // What the monitor saw since the last call.
    std::vector<std::string> taken() { return std::exchange(seen, {}); }

    void addPq(u8 type, u8 subType, u32 sec, u32 ms, f32 mag, u32 duration) {
        const u32 slot = pqAt + 4 + device.get<u32>(pqAt) % 1024 * 36;
        device.put<u8>(slot + 2, type);
        device.put<u8>(slot + 3, subType);
        device.putTime(slot + 4, sec, ms, timeQuality);
        device.put<f32>(slot + 16, mag);
        device.put<u32>(slot + 20, duration);
        device.raise(pqAt);
    }

    DeviceState device;
    std::optional<LogLines> log;
    std::function<std::string()> watch;
    std::vector<std::string> seen;
    std::atomic<bool> ended = false;
    std::thread monitor;
};

// One status ring.
struct Ring {
    const char *name;
    u32 type;
    u32 at; // of the counter; slots follow
    u32 slotSize, stateAt, stateWidth;
    const char *first; // objects of bits 0, 1 and of the last bit
    const char *second;
    const char *last;
    u32 lastBit;
    bool counts; // updateCount
};

class StatusRings : public EventRefresh, public testing::WithParamInterface<Ring> {
  protected:
    void add(u32 word, u32 sec) {
        const Ring &ring = GetParam();
        const u32 slot = ring.at + 4 + device.get<u32>(ring.at) % 100 * ring.slotSize;
        device.putTime(slot, sec, sec % 1000, timeQuality);
        if (ring.stateWidth == 1) {
            device.put<u8>(slot + ring.stateAt, static_cast<u8>(word));
        } else if (ring.stateWidth == 2) {
            device.put<u16>(slot + ring.stateAt, static_cast<u16>(word));
        } else {
            device.put<u32>(slot + ring.stateAt, word);
        }
        device.raise(ring.at);
    }
    std::string state(const char *sAddr) {
        return GetParam().counts ? show<SPS>(sAddr) : show<CtlObj>(sAddr);
    }
    std::string expected(const char *withoutCount, const char *count) {
        return std::string(withoutCount) + (GetParam().counts ? std::string(" ") + count : "");
    }
};

TEST_P(StatusRings, EachEntryIsShownAloneWithItsOwnTime) {
    const Ring &ring = GetParam();
    watch = [&] { return state(ring.first) + ", " + state(ring.last); };
    add(1, 100);
    add(1, 200); // nothing changes
    add(0, 300);
    add(1U << ring.lastBit | 1, 400);
    EXPECT_EQ(refreshSTData(ring.type, 0), 4U);
    const std::string never = expected("0 0 0.0", "0");
    EXPECT_EQ(taken(), (std::vector<std::string>{
                           expected("1 0 100.100", "1") + ", " + never,
                           expected("1 0 100.100", "1") + ", " + never,
                           expected("0 0 300.300", "2") + ", " + never,
                           expected("1 0 400.400", "3") + ", " + expected("1 0 400.400", "1"),
                       }));
    EXPECT_EQ(state(ring.second), never);
}

TEST_P(StatusRings, AReaderThatIsOvertakenTakesTheNewestHundred) {
    const Ring &ring = GetParam();
    watch = [&] { return std::to_string(record<SPS>(ring.first).t.sec); };
    if (!ring.counts) {
        watch = [&] { return std::to_string(record<CtlObj>(ring.first).t.sec); };
    }
    for (u32 i = 0; i < 250; i++) {
        add(i % 2, 1000 + i);
    }
    EXPECT_EQ(refreshSTData(ring.type, 10), 250U);
    const std::vector<std::string> shown = taken();
    ASSERT_EQ(shown.size(), 100U);
    EXPECT_EQ(shown[1], "1151") << "entry 150 changes nothing, for the bit was 0 before";
    EXPECT_EQ(shown.back(), "1249");
    add(0, 2000); // the counter went on across the end of the slots
    EXPECT_EQ(refreshSTData(ring.type, 250), 251U);
    EXPECT_EQ(taken(), std::vector<std::string>{"2000"});
}

TEST_P(StatusRings, AResetIsNamedAndNothingIsRead) {
    const Ring &ring = GetParam();
    add(1, 100);
    EXPECT_EQ(refreshSTData(ring.type, 7), 1U);
    EXPECT_TRUE(taken().empty());
    EXPECT_EQ(LogLines::count("UPD", "CRI", "refreshSTData",
                              ring.name + std::string(" Ptr Overfollow! PtrNow:1, PtrLast:7")),
              1);
}

INSTANTIATE_TEST_SUITE_P(
    EventRefresh, StatusRings,
    testing::Values(Ring{"DI", StDI, 20243936, 16, 14, 1, "ST.DI1", "ST.DI2", "ST.DI8", 7, true},
                    Ring{"DO", StDO, 20245540, 20, 14, 2, "CTL.RO1", "CTL.RO2", "CTL.DO2", 5, false},
                    Ring{"SP", StSP, 20247544, 20, 16, 4, "ST.SP1", "ST.SP2", "ST.SP32", 31, true},
                    Ring{"LG", StLG, 20249548, 20, 16, 4, "ST.logic1", "ST.logic2", "ST.logic8", 7, true}),
    [](const auto &param) { return std::string(param.param.name); });

TEST_F(EventRefresh, WhatIsInAnotherModeIsLeftAlone) {
    device.put<u16>(diModeAt + 8, 1); // DI2 counts pulses
    device.put<u16>(doModeAt + 4, 2); // DO2 belongs to the device
    const u32 di = 20243936, dO = 20245540;
    device.put<u8>(di + 4 + 14, 3);
    device.raise(di);
    device.put<u16>(dO + 4 + 14, 0x3F);
    device.raise(dO);
    EXPECT_EQ(refreshSTData(StDI, 0), 1U);
    EXPECT_EQ(refreshSTData(StDO, 0), 1U);
    EXPECT_EQ(record<SPS>("ST.DI1").stVal, 1);
    EXPECT_EQ(record<SPS>("ST.DI2").stVal, 0);
    EXPECT_EQ(record<CtlObj>("CTL.RO4").stVal, 1);
    EXPECT_EQ(record<CtlObj>("CTL.DO1").stVal, 1);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").stVal, 0);
}

TEST_F(EventRefresh, TheFlagsOfTheSelfCheckComeTogetherButForTheBattery) {
    watch = [] {
        return show<SPS>("ST.dspFlt") + ", " + show<SPS>("ST.batFlt") + ", " + show<SPS>("ST.commParaFlt");
    };
    device.putTime(checkTimeAt, 500, 20, timeQuality);
    device.put<u32>(checkWordAt, 0x3FFFF);
    EXPECT_EQ(refreshSTData(StCheck, 0), 0x3FFFFU);
    EXPECT_EQ(taken(), std::vector<std::string>{"1 0 500.20 1, 0 0 0.0 0, 1 0 500.20 1"});
    EXPECT_EQ(refreshSTData(9, 5), 0U);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshSTData", "Error ST Type 9!"), 1);
    EXPECT_TRUE(taken().empty());
}

// ------------------------------------------------------------------------------ voltage events

struct Kind {
    const char *name;
    u8 start, end;
    const char *state;
};

class Variations : public EventRefresh, public testing::WithParamInterface<Kind> {};

TEST_P(Variations, AreShownWhenTheyEndFirstTheirStartThenTheirEnd) {
    const Kind &kind = GetParam();
    watch = [&] {
        return show<SPS>(kind.state) + ", " + show<SPS>("SOE.VarStr") + ", " + showMeasured("SOE.VVa") +
               ", " + showMeasured("SOE.VVaTm");
    };
    addPq(1, kind.start, 1000, 10, 0, 0);
    EXPECT_EQ(SOEDataRefresh(0), 1U);
    EXPECT_TRUE(taken().empty()) << "a start alone shows nothing";
    addPq(1, kind.end, 1000, 130, 40, 120);
    EXPECT_EQ(SOEDataRefresh(1), 2U);
    EXPECT_EQ(taken(), (std::vector<std::string>{
                           "1 0 1000.10 1, 1 0 1000.10 1, 0.4 1000.10 1, 0.12 1000.10 1",
                           "0 0 1000.130 2, 0 0 1000.130 2, 0.4 1000.10 1, 0.12 1000.10 1",
                       }));
    EXPECT_EQ(record<MV>("SOE.VVa").units.SIUnit, 1);
    addPq(1, kind.end, 2000, 0, 50, 1500); // a second end has the start that is known
    EXPECT_EQ(SOEDataRefresh(2), 3U);
    EXPECT_EQ(taken().front(), "1 0 1000.10 3, 1 0 1000.10 3, 0.5 1000.10 2, 1.5 1000.10 2");
}

INSTANTIATE_TEST_SUITE_P(EventRefresh, Variations,
                         testing::Values(Kind{"swell", 1, 2, "SOE.SwlStr"}, Kind{"dip", 3, 4, "SOE.DipStr"},
                                         Kind{"interruption", 5, 6, "SOE.IntrStr"}),
                         [](const auto &param) { return std::string(param.param.name); });

TEST_F(EventRefresh, AMagnitudeIsARatioOrVoltsAsTheFileSays) {
    device.put<u16>(rtgVoltAt, 230);
    MV &vVa = record<MV>("SOE.VVa");
    vVa.units.multiplier = -3;
    localConfig = 1;
    addPq(1, 2, 10, 0, 115, 20);
    SOEDataRefresh(0);
    EXPECT_FLOAT_EQ(vVa.mag, 264500); // 230 V x 1.15 in mV
    EXPECT_EQ(vVa.units.SIUnit, 29);
    localConfig = 7;
    vVa.units.multiplier = 0;
    addPq(1, 2, 10, 0, 115, 20);
    SOEDataRefresh(1);
    EXPECT_FLOAT_EQ(vVa.mag, 1.15F);
    EXPECT_EQ(vVa.units.SIUnit, 1);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "SOEDataRefresh", "vvaFormat value error! Use default value!"),
              1);
}

TEST_F(EventRefresh, ATransientBeginsItsDurationEarlier) {
    watch = [] {
        return show<SPS>("SOE.TransStr") + ", " + showMeasured("SOE.MaxVtrs") + ", " +
               showMeasured("SOE.VtrsTm");
    };
    addPq(2, 0, 1000, 2, 180, 5000);    // 5 ms: into the second before
    addPq(2, 0, 1000, 5, 180, 5000);    // just to its beginning
    addPq(2, 0, 1000, 2, 180, 2500999); // 2500 ms and what is no millisecond
    EXPECT_EQ(SOEDataRefresh(0), 3U);
    EXPECT_EQ(taken(), (std::vector<std::string>{
                           "1 0 999.997 1, 0 999.997 1, 0 999.997 1",
                           "0 0 1000.2 2, 1.8 1000.2 2, 0.005 1000.2 2",
                           "1 0 1000.0 3, 0 1000.0 3, 0 1000.0 3",
                           "0 0 1000.5 4, 1.8 1000.5 4, 0.005 1000.5 4",
                           "1 0 997.502 5, 0 997.502 5, 0 997.502 5",
                           "0 0 1000.2 6, 1.8 1000.2 6, 2.501 1000.2 6",
                       }));
}

TEST_F(EventRefresh, TheLogIsReadOnAfterAResetButNotAfterAJumpBack) {
    for (u32 i = 0; i < 130; i++) {
        addPq(2, 0, 5000 + i, 0, 100, 0);
    }
    addPq(7, 0, 1, 0, 0, 0); // another type
    EXPECT_EQ(SOEDataRefresh(0), 131U);
    EXPECT_EQ(taken().size(), 2U * 99) << "the newest hundred entries, of which one is passed over";
    EXPECT_EQ(SOEDataRefresh(200), 131U);
    EXPECT_TRUE(taken().empty());
    EXPECT_EQ(LogLines::count("UPD", "CRI", "SOEDataRefresh", "PQ Ptr Overfollow!PtrNow:131, PtrLast:200"),
              1);
    device.put<u32>(pqAt, 0);
    addPq(2, 0, 6000, 0, 100, 0);
    EXPECT_EQ(SOEDataRefresh(131), 1U);
    EXPECT_EQ(taken().size(), 2U);
}

// ------------------------------------------------------------------------------- wave records

TEST_F(EventRefresh, AWaveRecordBeginsAtItsTimeAndIsMadeNow) {
    for (u32 group = 0; group < 2; group++) {
        const char *started = group == 0 ? "RD.RcdStr1" : "RD.RcdStr2";
        const char *made = group == 0 ? "RD.RcdMade1" : "RD.RcdMade2";
        const char *number = group == 0 ? "RD.FltNum1" : "RD.FltNum2";
        watch = [=] {
            const auto value = [](auto stVal) { return std::to_string(stVal); };
            return value(record<SPS>(started).stVal) + value(record<SPS>(made).stVal) + " " +
                   value(record<INS>(number).stVal) + " " + value(record<SPS>(started).t.sec);
        };
        device.putTime(waveTimeAt + 16 * group, 100, 5, timeQuality);
        device.put<u32>(waveCountAt + 16 * group, 3);
        EXPECT_EQ(RDDataRefresh(group), 3U);
        std::vector<std::string> shown = taken();
        ASSERT_EQ(shown.size(), 2U);
        EXPECT_EQ(shown[0], "10 0 100");
        EXPECT_TRUE(shown[1].starts_with("01 3 ")) << shown[1];
        EXPECT_GT(record<INS>(number).t.sec, 1000000000U) << "the present time";
        EXPECT_EQ(record<SPS>(started).updateCount, 0U);

        device.put<u32>(waveCountAt + 16 * group, 0);
        EXPECT_EQ(RDDataRefresh(group), 0U);
        shown = taken();
        ASSERT_EQ(shown.size(), 1U);
        EXPECT_TRUE(shown[0].starts_with("01 0 ")) << shown[0];
        EXPECT_EQ(LogLines::count("UPD", "CRI", "RDDataRefresh",
                                  "Wave" + std::to_string(group + 1) + " Ptr clean out!"),
                  1);
    }
}

// -------------------------------------------------------------------------------- the loop

TEST_F(EventRefresh, TheLoopReplaysTheRingsOfStatesAndNothingElseOfThePast) {
    device.put<u32>(37549692, 5); // counters at start
    device.put<u32>(37549796, 2);
    device.put<u32>(pqAt, 5);
    device.put<u32>(waveCountAt + 16, 2);
    device.put<u32>(checkWordAt, 4);
    for (u32 ring : {20243936U, 20245540U, 20247544U, 20249548U}) {
        device.raise(ring);
    }
    for (u32 i = 2; i < 94; i++) {
        device.put<u32>(12 + 4 * i, 1);
    }
    device.put<u32>(11808 + 4 * 17, 1);
    device.put<u32>(11808 + 4 * 18, 1);
    RefreshState state;
    refreshStateInit(&state);
    semGive(semRefresh); // for the pace of the loop
    refreshCycle(&state);
    EXPECT_EQ(taken().size(), 4U) << "one entry of each ring";
    for (const char *message :
         {"DI state is refreshed! Now ptr is 1", "DO state is refreshed! Now ptr is 1",
          "SP state is refreshed! Now ptr is 1", "Logic state is refreshed! Now ptr is 1"}) {
        EXPECT_EQ(LogLines::count("UPD", "DBG", "refreshLocalData", message), 1) << message;
    }
    device.put<u32>(checkWordAt, 5);
    device.raise(pqAt);
    device.put<u32>(waveCountAt, 1);
    device.put<u32>(waveCountAt + 16, 0);
    semGive(semRefresh);
    refreshCycle(&state);
    for (const char *message :
         {"Check state is refreshed! Now state is 5", "PQ log is refreshed! Now ptr is 6",
          "Wave1 state is refreshed! Now ptr is 1", "Wave2 state is refreshed! Now ptr is 0"}) {
        EXPECT_EQ(LogLines::count("UPD", "DBG", "refreshLocalData", message), 1) << message;
    }
    semGive(semRefresh);
    taken();
    refreshCycle(&state);
    EXPECT_TRUE(taken().empty()) << "nothing is new";
}

} // namespace
