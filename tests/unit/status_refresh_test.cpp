// Binary states from their rings and the self-check word, as the monitor task sees them: one entry, one
// picture.
#include "device/dataRefresh.h"
#include "device/measTables.h"
#include "device/statusRefresh.h"
#include "tests/support/deviceModel.h"
#include "tests/support/monitorStandIn.h"
#include "tests/support/ringEvents.h"
#include "tests/support/smallModel.h"

using namespace ied;
using namespace ied::test;

namespace {

// What a ring's states are shown in, from the first bit to the last with an object.
struct Source {
    const char *name; // in messages
    u32 type;
    Ring ring;
    const char *first, *last;
};
constexpr Source DI = {"DI", 0, inputRing, "ST.DI1", "ST.DI8"};
constexpr Source DO = {"DO", 1, outputRing, "CTL.RO1", "CTL.DO2"};
constexpr Source SP = {"SP", 2, setpointRing, "ST.SP1", "ST.SP32"};
constexpr Source LG = {"LG", 3, logicRing, "ST.logic1", "ST.logic8"};

constexpr u32 DIModAt = 826, DOModAt = 890;

class StatusRefresh : public testing::Test {
  protected:
    // Writes an entry as the device manager does; its time tells which one it is.
    void append(const Source &source, u32 state) {
        const u32 count = device.get<u32>(source.ring.counterAt);
        putState([this](u32 at, auto value) { device.put(at, value); }, source.ring, count, state,
                 5000 + count, 250);
    }
    void append(const Source &source, std::initializer_list<u32> states) {
        for (const u32 state : states) {
            append(source, state);
        }
    }
    static std::string shownState(const std::string &sAddr) {
        if (sAddr.rfind("CTL.", 0) != 0) {
            return shown(record<SPS>(sAddr));
        }
        const CtlObj &object = record<CtlObj>(sAddr);
        return std::to_string(loadShared(object.stVal)) + "@" + shown(object.t);
    }
    void watch(const std::string &sAddr) {
        monitor.start([sAddr] { return shownState(sAddr); });
    }

    DeviceState device{1000000, false};
    MonitorStandIn monitor;
    LogLines log;
};

TEST_F(StatusRefresh, EveryEntryIsAPictureWithTheTimeOfItsChange) {
    watch("ST.DI2");
    append(DI, {0b10, 0b10, 0b00, 0b11});
    EXPECT_EQ(refreshSTData(0, 0), 4U);
    EXPECT_EQ(monitor.pictures,
              (Pictures{"1@5000.250 n1", "1@5000.250 n1", "0@5002.250 n2", "1@5003.250 n3"}));
    EXPECT_EQ(shownState("ST.DI1"), "1@5003.250 n1");
    EXPECT_EQ(shownState("ST.DI3"), "0@0.000 n0");
    EXPECT_EQ(refreshSTData(0, 4), 4U);
    EXPECT_EQ(monitor.pictures.size(), 4U) << "nothing new wakes no monitor";
}

class AnyRing : public StatusRefresh, public testing::WithParamInterface<Source> {};

TEST_P(AnyRing, HasItsObjectsByBitAndIgnoresBitsWithoutOne) {
    const Source &source = GetParam();
    monitor.start([&] { return shownState(source.first) + " " + shownState(source.last); });
    const u32 last = 1U << (source.ring.bits - 1);
    append(source, {1, 1 | last, ~(1 | last)});
    record<SPS>("ST.dspFlt").stVal = 9; // follows the logic outputs in the mirror
    EXPECT_EQ(refreshSTData(source.type, 0), 3U);
    const std::string n0 = source.type == 1 ? "" : " n0", n1 = source.type == 1 ? "" : " n1",
                      n2 = source.type == 1 ? "" : " n2";
    EXPECT_EQ(monitor.pictures,
              (Pictures{"1@5000.250" + n1 + " 0@0.000" + n0, "1@5000.250" + n1 + " 1@5001.250" + n1,
                        "0@5002.250" + n2 + " 0@5002.250" + n2}));
    EXPECT_EQ(record<SPS>("ST.dspFlt").stVal, 9);
}

TEST_P(AnyRing, GivesAnOvertakenReaderTheNewestHundredAcrossItsLastSlot) {
    const Source &source = GetParam();
    watch(source.first);
    for (u32 i = 0; i < 250; i++) {
        append(source, i & 1);
    }
    EXPECT_EQ(refreshSTData(source.type, 149), 250U);
    ASSERT_EQ(monitor.pictures.size(), 100U);
    EXPECT_EQ(monitor.pictures[0].substr(0, 7), "0@0.000") << "entry 150 changes nothing";
    EXPECT_EQ(monitor.pictures[1].substr(0, 10), "1@5151.250");
    EXPECT_EQ(monitor.pictures[99].substr(0, 10), "1@5249.250");
    EXPECT_EQ(refreshSTData(source.type, 150), 250U);
    EXPECT_EQ(monitor.pictures.size(), 200U) << "a hundred behind is not overtaken";
    EXPECT_EQ(log.lines().size(), 0U);
}

// While the monitor looks at the first of a hundred entries, the instrument writes over 60 of them.
TEST_P(AnyRing, ThatOvertakesAWalkEndsItAndKeepsItsOrder) {
    const Source &source = GetParam();
    const auto appendMany = [&](u32 count) {
        for (u32 i = 0; i < count; i++) {
            append(source, i & 1);
        }
    };
    bool looked = false;
    monitor.start([&] {
        if (!looked) {
            looked = true;
            appendMany(60);
        }
        return shownState(source.first);
    });
    appendMany(100);
    EXPECT_EQ(refreshSTData(source.type, 0), 1U);
    EXPECT_EQ(refreshSTData(source.type, 1), 160U);
    ASSERT_EQ(monitor.pictures.size(), 101U);
    EXPECT_EQ(monitor.pictures[1].substr(0, 7), "0@0.000") << "entry 60 changes nothing";
    EXPECT_EQ(monitor.pictures[2].substr(0, 10), "1@5061.250");
    EXPECT_EQ(monitor.pictures[100].substr(0, 10), "1@5159.250");
}

TEST_P(AnyRing, ThatWasResetIsReadFromItsNewPositionOn) {
    const Source &source = GetParam();
    watch(source.first);
    append(source, {1, 1, 1});
    EXPECT_EQ(refreshSTData(source.type, 4000000000U), 3U);
    EXPECT_EQ(monitor.pictures.size(), 0U);
    EXPECT_EQ(shownState(source.first).substr(0, 7), "0@0.000");
    EXPECT_EQ(LogLines::count("UPD", "CRI", "refreshSTData",
                              std::string(source.name) + " Ptr Overfollow! PtrNow:3, PtrLast:4000000000"),
              1);
    append(source, 1);
    EXPECT_EQ(refreshSTData(source.type, 3), 4U);
    EXPECT_EQ(shownState(source.first).substr(0, 10), "1@5003.250");
}

INSTANTIATE_TEST_SUITE_P(StatusRefresh, AnyRing, testing::Values(DI, DO, SP, LG),
                         [](const auto &param) { return std::string(param.param.name); });

TEST_F(StatusRefresh, AnInputThatDoesNotShowItsStateIsLeftAlone) {
    device.put<u16>(DIModAt + 8 * 2, 1); // DI3 counts pulses
    device.put<u16>(DIModAt + 8 * 4, 3); // DI5 synchronises
    watch("ST.DI1");
    stDataInit();
    append(DI, 0xFF);
    refreshSTData(0, 0);
    for (const char *off : {"ST.DI3", "ST.DI5"}) {
        EXPECT_EQ(shownState(off), "0@1000000.000 n0");
        EXPECT_EQ(record<SPS>(off).q, qualityInvalid);
    }
    EXPECT_EQ(shownState("ST.DI4"), "1@5000.250 n1");
    device.put<u16>(DIModAt + 8 * 2, 0); // the mode in force counts, at each entry
    append(DI, 0xFF);
    refreshSTData(0, 1);
    EXPECT_EQ(shownState("ST.DI3"), "1@5001.250 n1");
    EXPECT_EQ(record<SPS>("ST.DI3").q, qualityGood);
}

TEST_F(StatusRefresh, AnOutputUnderLocalControlIsLeftAloneButNeverARelay) {
    device.put<u16>(DOModAt, 1);
    watch("CTL.RO1");
    stDataInit();
    EXPECT_EQ(record<CtlObj>("CTL.DO1").q, qualityInvalid);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").q, qualityGood);
    EXPECT_EQ(record<CtlObj>("CTL.RO1").q, qualityGood);
    append(DO, 0x3F);
    refreshSTData(1, 0);
    EXPECT_EQ(shownState("CTL.DO1"), "0@1000000.000");
    for (const char *on : {"CTL.RO1", "CTL.RO2", "CTL.RO3", "CTL.RO4", "CTL.DO2"}) {
        EXPECT_EQ(shownState(on), "1@5000.250") << on;
    }
}

TEST_F(StatusRefresh, TheSelfCheckWordIsOnePictureAndLeavesTheBatteryAlone) {
    storeState(record<SPS>("ST.batFlt"), 0, qualityInvalid, {7, 0, 0});
    watch("ST.dspFlt");
    device.put<u32>(checkWordAt, 1U << 1);
    device.putTime(checkTimeAt, 6000, 5, 10);
    stDataInit();
    EXPECT_EQ(shownState("ST.adFlt"), "1@6000.005 n0");
    EXPECT_EQ(shownState("ST.commParaFlt"), "0@6000.005 n0");
    device.put<u32>(checkWordAt, 0xFFFFFFFF);
    device.putTime(checkTimeAt, 6001, 6, 10);
    EXPECT_EQ(refreshSTData(4, 0), 0xFFFFFFFF);
    EXPECT_EQ(monitor.pictures, (Pictures{"1@6001.006 n1"}));
    EXPECT_EQ(shownState("ST.adFlt"), "1@6000.005 n0") << "it was set before";
    EXPECT_EQ(shownState("ST.engParaFlt"), "1@6001.006 n1");
    EXPECT_EQ(shownState("ST.commParaFlt"), "1@6001.006 n1");
    EXPECT_EQ(shownState("ST.batFlt"), "0@7.000 n0");
    EXPECT_EQ(record<SPS>("ST.batFlt").q, qualityInvalid);
    device.put<u32>(checkWordAt, 1U << 16);
    device.putTime(checkTimeAt, 6002, 7, 10);
    EXPECT_EQ(refreshSTData(4, 0xFFFFFFFF), 0x10000U);
    EXPECT_EQ(shownState("ST.secParaFlt"), "1@6001.006 n1");
    EXPECT_EQ(shownState("ST.engParaFlt"), "0@6002.007 n2");
}

TEST_F(StatusRefresh, AnUnknownSourceIsNamed) {
    EXPECT_EQ(refreshSTData(5, 77), 0U);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshSTData", "Error ST Type 5!"), 1);
}

// ------------------------------------------------------------------------------------ the cycle

class EventCycle : public StatusRefresh {
  protected:
    void cycle() {
        semGive(semRefresh); // the clock stands: no pace
        refreshCycle(&state);
    }
    // Messages of the states and events, in order.
    static Pictures played() {
        Pictures out;
        for (const std::string &line : LogLines::lines()) {
            const std::size_t at = line.rfind("[refreshLocalData][");
            if (at != std::string::npos && line.find(" is refreshed! Now ") != std::string::npos) {
                const std::size_t text = at + std::strlen("[refreshLocalData][");
                EXPECT_NE(line.find("[UPD][DBG]"), std::string::npos) << line;
                out.push_back(line.substr(text, line.rfind(']') - text));
            }
        }
        return out;
    }
    RefreshState state{};
};

TEST_F(EventCycle, PlaysWhatMovedInItsOrderAndRemembersWhere) {
    dataMapInit();
    refreshStateInit(&state);
    monitor.start([] { return shown(record<SPS>("ST.DI1")); });
    cycle();
    EXPECT_EQ(played(), Pictures{});
    const std::size_t before = monitor.pictures.size();
    for (const Source &source : {LG, SP, DO, DI}) {
        append(source, 1);
    }
    append(SP, 1);
    device.put<u32>(checkWordAt, 0x80000000);
    device.put<u32>(eventLog.counterAt,
                    3); // three entries of the PQ log that are neither variation nor transient
    device.put<u32>(waveCountAt[0], 11);
    device.put<u32>(waveCountAt[1], 12);
    cycle();
    const Pictures expected = {"DI state is refreshed! Now ptr is 1",
                               "DO state is refreshed! Now ptr is 1",
                               "SP state is refreshed! Now ptr is 2",
                               "Logic state is refreshed! Now ptr is 1",
                               "Check state is refreshed! Now state is -2147483648",
                               "PQ log is refreshed! Now ptr is 3",
                               "Wave1 state is refreshed! Now ptr is 11",
                               "Wave2 state is refreshed! Now ptr is 12"};
    EXPECT_EQ(played(), expected);
    // Entries of the rings, the word, two for each wave record.
    EXPECT_EQ(monitor.pictures.size() - before, 5U + 1 + 4);
    cycle();
    EXPECT_EQ(played(), expected) << "nothing moved since";
    EXPECT_EQ(LogLines::count("UPD", "ERR", "waitForMon", "Fail to take semRefresh!"), 0);
}

TEST_F(EventCycle, AfterARestartRingsAreReplayedButNoEventsAndRecords) {
    dataMapInit();
    for (u32 i = 0; i < 130; i++) {
        append(DI, i == 129 ? 1 : 0);
    }
    device.put<u32>(eventLog.counterAt, 40); // all dips that ended
    for (u32 i = 0; i < 40; i++) {
        device.put<u8>(slotAt(eventLog, i) + 2, 1);
        device.put<u8>(slotAt(eventLog, i) + 3, 4);
    }
    device.put<u32>(37549692, 38);
    for (u32 group = 0; group < 2; group++) {
        device.put<u32>(37549792 + 4 * group, 7 + group);
        device.put<u32>(waveCountAt[group], 7 + group);
    }
    device.put<u32>(checkWordAt, 0x10);
    stDataInit();
    RDDataInit();
    refreshStateInit(&state);
    monitor.start([] { return shown(record<SPS>("ST.DI1")) + " " + shown(record<SPS>("SOE.DipStr")); });
    cycle();
    EXPECT_EQ(played(),
              (Pictures{"DI state is refreshed! Now ptr is 130", "PQ log is refreshed! Now ptr is 40"}));
    EXPECT_EQ(record<SPS>("ST.DI1").updateCount, 1U) << "a hundred entries, one change";
    EXPECT_EQ(record<SPS>("SOE.DipStr").updateCount, 4U) << "the two dips since the start of the device";
    EXPECT_EQ(record<INS>("RD.FltNum1").stVal, 7);
    EXPECT_EQ(record<INS>("RD.FltNum2").stVal, 8);
    EXPECT_EQ(record<SPS>("RD.RcdMade1").stVal, 0);
    EXPECT_EQ(record<SPS>("ST.flashFlt").stVal, 1);
}

} // namespace
