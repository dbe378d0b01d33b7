// Events of the simulated instrument: what it writes into its rings, and when, out of what happens to
// the mains, the inputs and the parameters.

#include "ied-device/disturbances.h"
#include "ied-device/parameters.h"
#include "ied-device/serverQueues.h"
#include "tests/support/instrumentRegion.h"
#include "tests/support/ringEvents.h"

#include <cmath>
#include <cstdio>
#include <vector>

namespace ied::instrument {
namespace {

using namespace ied::test;

struct Logged {
    u32 type, subType;
    f64 percent;
    u32 duration;
    u64 ms; // since the epoch
};

template <class State> struct Slot {
    State state;
    u64 ms;
};

class InstrumentEvents : public test::InstrumentRegion {
  protected:
    // Lives on for some ticks, the last of which is due now; the clock stands.
    void tick(u32 times) {
        for (; times > 0; times--) {
            tickInstrument(unit.get(), 0);
            heldClockAdvance(10);
        }
    }
    // Settled voltages that nothing moves.
    void calm() {
        for (const char *text : {"drift off", "unbalance 0 0", "load 100"}) {
            line(text);
        }
        step(1);
    }
    std::vector<Logged> pqLog() const {
        std::vector<Logged> log;
        for (u32 at = 0; at < loadAt<u32>(area, eventLog.counterAt); at++) {
            const u32 slot = slotAt(eventLog, at);
            log.push_back({loadAt<u8>(area, slot + 2), loadAt<u8>(area, slot + 3), real(slot + 16),
                           loadAt<u32>(area, slot + 20), time(slot + 4)});
        }
        return log;
    }
    u64 time(u32 at) const { return u64{loadAt<u32>(area, at)} * 1000 + loadAt<u32>(area, at + 4); }
    u32 alarms() const { return unit->setPoints.active; }
    u32 spCount() const { return loadAt<u32>(area, setpointRing.counterAt); }
    Slot<u32> newestAlarms() const {
        const u32 slot = slotAt(setpointRing, spCount() - 1);
        return {loadAt<u32>(area, slot + 16), time(slot)};
    }
};

TEST_F(InstrumentEvents, ADipIsMeasuredWhileItLastsAndLogged) {
    calm();
    const u64 start = u64{now()} * 1000;
    line("dip A 40% 120ms");
    step(1); // ticks due 990, 980 ... 0 ms ago
    const std::vector<Logged> log = pqLog();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].type, 1u);
    EXPECT_EQ(log[0].subType, 3u);
    EXPECT_EQ(log[1].subType, 4u);
    EXPECT_NEAR(log[1].percent, 40, 1e-3);
    EXPECT_EQ(log[1].duration, 120u);
    EXPECT_EQ(log[0].ms, start - 990);
    EXPECT_EQ(log[1].ms, start - 870);
    const f64 whole = std::sqrt(0.88 * std::pow(230 * 1.005, 2) + 0.12 * std::pow(0.4 * 230, 2));
    EXPECT_NEAR(real(21396), whole, 0.5); // of the second
    EXPECT_NEAR(real(21452), 230 * 1.005, 0.5);
    EXPECT_NEAR(real(21408), real(21396) * real(21404) * real(21420), 1); // power follows
    line("dip BC 70 3s");
    step(2);
    EXPECT_NEAR(real(21452), 0.7 * 230, 1e-2);
    EXPECT_NEAR(real(21508), 0.7 * 230, 1e-2);
    EXPECT_NEAR(real(21396), 230 * 1.005, 0.5);
    EXPECT_EQ(pqLog().size(), 3u); // it has not ended
    step(2);
    EXPECT_EQ(pqLog().back().duration, 3000u);
    EXPECT_NEAR(real(21452), 230 * 1.005, 0.5);
}

TEST_F(InstrumentEvents, AreClassedByTheThresholdsInForce) {
    struct Case {
        const char *name;
        std::vector<const char *> before;
        const char *event;
        std::vector<u32> subTypes; // pairs of start and end
        f64 percent;               // of the last
    };
    const Case cases[] = {
        {"above the threshold", {}, "dip 91% 100ms", {}, 0},
        {"moved threshold", {"set SET.sys.DipStrVar 95"}, "dip 91% 100ms", {3, 4}, 91},
        {"switched off", {"set SET.sys.VarEna 0"}, "dip 50% 100ms", {}, 0},
        {"swell", {}, "swell B 125% 60ms", {1, 2}, 125},
        {"small swell", {"set SET.sys.SwlStrVar 130"}, "swell B 125% 60ms", {}, 0},
        {"interruption", {}, "interruption 500ms", {5, 6}, 0},
        {"one phase is gone", {}, "interruption A 500ms", {3, 4}, 0},
        {"interruptions from 40 %", {"set SET.sys.IntrStrVar 40"}, "dip 39% 500ms", {5, 6}, 39},
        {"another rated voltage", {"set SET.sys.RtgVolt 120"}, "dip A 85% 20ms", {1, 3, 4}, 85},
        {"two wires of three", {"wiring delta"}, "dip A 40% 60ms", {3, 4}, 100 * std::sqrt(1.56 / 3)},
    };
    for (const Case &c : cases) {
        start();
        publish(*regionPlace(area.base, region::ready), 0);
        publish(*regionPlace(area.base, region::pqCounter), 0);
        start();
        calm();
        for (const char *text : c.before) {
            line(text);
        }
        EXPECT_EQ(line(c.event), "ok\n") << c.name;
        step(1);
        const std::vector<Logged> log = pqLog();
        ASSERT_EQ(log.size(), c.subTypes.size()) << c.name;
        for (std::size_t i = 0; i < log.size(); i++) {
            EXPECT_EQ(log[i].subType, c.subTypes[i]) << c.name;
        }
        if (!log.empty()) {
            EXPECT_NEAR(log.back().percent, c.percent, 0.5) << c.name;
        }
    }
}

TEST_F(InstrumentEvents, ADipThatDeepensBecomesAnInterruption) {
    calm();
    line("dip 50% 300ms");
    tick(10);
    line("interruption 100ms");
    tick(40);
    const std::vector<Logged> log = pqLog();
    ASSERT_EQ(log.size(), 6u);
    const u32 order[] = {3, 4, 5, 6, 3, 4};
    const u32 durations[] = {0, 100, 0, 100, 0, 100};
    for (u32 i = 0; i < 6; i++) {
        EXPECT_EQ(log[i].subType, order[i]) << i;
        EXPECT_EQ(log[i].duration, durations[i]) << i;
        EXPECT_EQ(log[i].ms - log[0].ms, 100 * ((i + 1) / 2)) << i;
    }
}

TEST(VoltageEvents, EndOnlyBeyondTheHysteresis) {
    constexpr VariationLimits limits{true, 110, 90, 10};
    EXPECT_EQ(judgeLow(Variation::None, 91, 100, limits), Variation::None);
    EXPECT_EQ(judgeLow(Variation::Dip, 91.9, 100, limits), Variation::Dip);
    EXPECT_EQ(judgeLow(Variation::Dip, 92, 100, limits), Variation::None);
    EXPECT_EQ(judgeLow(Variation::None, 0, 10, limits), Variation::Dip);
    EXPECT_EQ(judgeLow(Variation::Interruption, 0, 11.9, limits), Variation::Interruption);
    EXPECT_EQ(judgeLow(Variation::Interruption, 0, 12, limits), Variation::Dip);
    EXPECT_EQ(judgeHigh(Variation::None, 110, limits), Variation::None);
    EXPECT_EQ(judgeHigh(Variation::Swell, 108.1, limits), Variation::Swell);
    EXPECT_EQ(judgeHigh(Variation::Swell, 108, limits), Variation::None);
}

TEST_F(InstrumentEvents, ATransientIsLoggedAtItsEndIfLargeEnough) {
    calm();
    line("transient 99% 500us");
    line("transient 250% 25ms");
    tick(2);
    EXPECT_TRUE(pqLog().empty());
    tick(1);
    const std::vector<Logged> log = pqLog();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].type, 2u);
    EXPECT_EQ(log[0].percent, 250);
    EXPECT_EQ(log[0].duration, 25000u);
    EXPECT_EQ(log[0].ms, u64{now()} * 1000 + 20);
    line("set SET.sys.TransEna 0");
    line("transient 250% 500us");
    tick(2);
    EXPECT_EQ(pqLog().size(), 1u);
}

TEST_F(InstrumentEvents, ASetpointWaitsBeforeItsAlarmAndItsReturn) {
    calm();
    line("set SET.setpoint9.MonObj 13");
    line("set SET.setpoint9.ActTm 5");
    line("set SET.setpoint9.RetTm 3");
    line("set SET.setpoint9.TrgMod 1");
    const u32 count = spCount();
    line("input 3 1");
    tick(3);
    line("input 3 toggle 2"); // both within a tick: nobody has seen it open
    tick(2);
    EXPECT_EQ(spCount(), count);
    tick(1);
    ASSERT_EQ(spCount(), count + 1);
    EXPECT_EQ(newestAlarms().state, 1u << 8);
    EXPECT_EQ(newestAlarms().ms, u64{now()} * 1000 + 50);
    line("input 3 0");
    tick(2);
    line("input 3 1"); // too short to be over
    tick(5);
    EXPECT_EQ(alarms(), 1u << 8);
    line("input 3 0");
    tick(4);
    EXPECT_EQ(newestAlarms().state, 0u);
    line("set SET.setpoint9.TrgMod 2"); // an open contact
    tick(6);
    EXPECT_EQ(alarms(), 1u << 8);
    line("set SET.IO.DIMod3 1"); // that counts pulses now
    tick(5);
    EXPECT_EQ(alarms(), 0u);
}

// Each object of the measurements, moved beyond a limit by what moves it.
struct Watch {
    u32 object;
    u32 mode;
    const char *over;
    const char *under;
    const char *cause;
    const char *end;
};

class InstrumentWatches : public InstrumentEvents, public testing::WithParamInterface<Watch> {};

TEST_P(InstrumentWatches, ItsObjectAgainstLimitsWithAHysteresis) {
    const Watch &watch = GetParam();
    calm();
    const auto set = [this](const std::string &name, const std::string &value) {
        ASSERT_EQ(line("set SET.setpoint12." + name + " " + value), "ok\n");
    };
    set("OvStrVar", watch.over);
    set("UnStrVar", watch.under);
    set("ActTm", "0");
    set("RetTm", "0");
    set("MonObj", std::to_string(watch.object));
    set("TrgMod", std::to_string(watch.mode));
    step(1);
    EXPECT_EQ(alarms() >> 11 & 1, 0u);
    line(watch.cause);
    step(61); // a demand takes a minute
    EXPECT_EQ(alarms() >> 11 & 1, 1u);
    line(watch.end);
    step(1000);
    EXPECT_EQ(alarms() >> 11 & 1, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Objects, InstrumentWatches,
    testing::Values(Watch{1, 1, "240", "235", "voltage 110", "voltage 101"},
                    Watch{2, 2, "385", "380", "voltage 90", "voltage 100"},
                    Watch{3, 1, "150", "140", "load C 160", "load C 100"},
                    Watch{4, 1, "5", "4", "unbalance 0 5", "unbalance 0 0"},
                    Watch{5, 1, "50", "40", "load A 10", "load A 100"},
                    Watch{6, 2, "-0.1", "-0.2", "frequency 49.5", "frequency 50"},
                    Watch{7, 2, "1000", "0", "load -20", "load 20"},
                    Watch{8, 1, "60000", "50000", "load 100 0.2", "load 100 1"},
                    Watch{10, 2, "0.7", "0.6", "load 100 0.5", "load 100 0.9"},
                    Watch{19, 1, "80000", "75000", "load 600", "load 1"},
                    Watch{25, 1, "110000", "90000", "load 600", "load 1"},
                    Watch{28, 1, "0.1", "0.05", "harmonic voltage 7 20", "harmonic voltage 7 1"},
                    Watch{32, 1, "0.1", "0.05", "harmonic current 4 20", "harmonic current 4 1"},
                    Watch{33, 1, "0.05", "0.04", "unbalance 6", "unbalance 0"},
                    Watch{37, 2, "-0.05", "-0.06", "voltage 90", "voltage 100"},
                    Watch{38, 2, "0", "0", "rotation acb", "rotation abc"},
                    Watch{39, 1, "0.1", "0.05", "harmonic voltage 2 20", "harmonic voltage 2 0"},
                    Watch{162, 1, "0.1", "0.05", "harmonic current 63 20", "harmonic current 63 0"}),
    [](const auto &test) { return std::to_string(test.param.object); });

TEST_F(InstrumentEvents, AFastSetpointSeesASingleCycle) {
    calm();
    const u32 count = spCount();
    line("dip C 60% 20ms");
    tick(1);
    EXPECT_EQ(alarms(), 1u << 24);
    tick(2);
    EXPECT_EQ(alarms(), 0u);
    EXPECT_EQ(spCount(), count + 2);
}

TEST_F(InstrumentEvents, ALogicGroupCombinesFromTheLeft) {
    calm();
    line("set SET.setpoint10.MonObj 13");
    line("set SET.setpoint10.TrgMod 1");
    line("set SET.setpoint10.ActTm 0");
    for (const char *text : {"input1 4", "input2 5", "input3 0", "input4 10"}) {
        line(std::string("set SET.logic3.") + text); // inputs 1, 2 and 3
    }
    line("set SET.logic3.LogicEna 1");
    const auto output = [&](u32 first, u32 second, u32 third) {
        line("set SET.logic3.logic1 " + std::to_string(first));
        line("set SET.logic3.logic2 " + std::to_string(second)); // of the unused input
        line("set SET.logic3.logic3 " + std::to_string(third));
        tick(1);
        return (unit->logicGroups.active >> 2 & 1) != 0;
    };
    line("input 1 1");
    tick(1);
    EXPECT_FALSE(output(0, 2, 1)); // (1 and 0) or 0
    EXPECT_TRUE(output(1, 0, 1));  // (1 or 0) or 0
    EXPECT_TRUE(output(0, 0, 2));  // (1 and 0) nand 0
    EXPECT_FALSE(output(1, 0, 3)); // (1 or 0) nor 0
    line("input 3 1");
    EXPECT_TRUE(output(3, 0, 1));  // (1 nor 0) or 1
    EXPECT_FALSE(output(2, 0, 2)); // (1 nand 0) nand 1
    const u32 count = loadAt<u32>(area, logicRing.counterAt);
    const u32 slot = slotAt(logicRing, count - 1);
    EXPECT_EQ(loadAt<u32>(area, slot + 16), unit->logicGroups.active);
    line("set SET.logic3.LogicEna 1");
    tick(3);
    EXPECT_EQ(loadAt<u32>(area, logicRing.counterAt), count); // only changes have an entry
}

TEST_F(InstrumentEvents, AnAlarmOperatesAnOutputAndStartsARecord) {
    calm();
    line("set SET.setpoint4.Trg1 2");  // RO2
    line("set SET.setpoint4.Trg2 32"); // a record of group 2
    line("input 1 1");
    tick(1);
    EXPECT_EQ(loadAt<u16>(area, outputStateAt), 2);
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[1]), 1u);
    EXPECT_EQ(time(waveTimeAt[1]), u64{now()} * 1000);
    line("input 1 0");
    tick(1);
    EXPECT_EQ(loadAt<u16>(area, outputStateAt), 0);
    EXPECT_EQ(loadAt<u32>(area, outputRing.counterAt), 2u);
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[1]), 1u);
    line("dip A 10% 30ms"); // by default each voltage event is recorded in group 1
    tick(5);
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[0]), 1u);
    line("set SET.wave1.MaxNumRcd 0");
    EXPECT_TRUE(executeLine(unit.get(), "record 1").failed);
}

TEST_F(InstrumentEvents, AnOutputWithAPulseLengthOpensByItself) {
    line("set SET.IO.ROPlsTm4 7");
    line("output RO4 1");
    tick(7);
    EXPECT_EQ(loadAt<u16>(area, outputStateAt), 8);
    tick(1);
    EXPECT_EQ(loadAt<u16>(area, outputStateAt), 0);
    line("set SET.IO.DOMod2 3"); // gives pulses of energy
    EXPECT_TRUE(executeLine(unit.get(), "output DO2 1").failed);
    editCopiesLive();
    storeAt<u32>(area, region::editArea + 7536, loadAt<u32>(area, 7536) + 1);
    executeCommand(unit.get(), {1, 1, 90, 0, 0});
    EXPECT_EQ(loadAt<u16>(area, outputStateAt), 0);
    EXPECT_EQ(loadAt<u32>(area, outputRing.counterAt), 2u);
}

TEST_F(InstrumentEvents, AnActionThatIsOverLeavesAPulseAlone) {
    calm();
    const auto outputs = [this] { return loadAt<u16>(area, outputStateAt); };
    line("set SET.sys.TransTrg1 3");
    line("transient 180% 500us");
    tick(1);
    EXPECT_EQ(outputs(), 4); // without a length for one look
    tick(1);
    EXPECT_EQ(outputs(), 0);
    line("set SET.IO.ROPlsTm3 5");
    line("set SET.setpoint4.Trg1 3");
    for (const char *cause : {"transient 180% 500us", "input 1 1"}) {
        line(cause);
        tick(1);
        line("input 1 0");
        tick(4);
        EXPECT_EQ(outputs(), 4) << cause;
        tick(2);
        EXPECT_EQ(outputs(), 0) << cause;
    }
    EXPECT_EQ(loadAt<u32>(area, outputRing.counterAt), 6u);
}

TEST_F(InstrumentEvents, AnOutputStaysClosedWhileAnythingCallsForIt) {
    calm();
    const auto expectOutputs = [this](u16 expected, const char *when) {
        EXPECT_EQ(loadAt<u16>(area, outputStateAt), expected) << when;
    };
    for (const char *text :
         {"setpoint4.Trg1 1", "setpoint5.Trg2 1", "logic2.Trg2 2", "sys.VarTrg2 2", "sys.TransTrg2 2"}) {
        EXPECT_EQ(line(std::string("set SET.") + text), "ok\n");
    }
    line("input 1 1");
    line("input 2 1");
    tick(1);
    expectOutputs(3, "both inputs");
    line("dip A 40% 30ms");
    line("transient 180% 500us");
    line("input 1 0");
    tick(2);
    expectOutputs(3, "one input, a dip");
    tick(2);
    expectOutputs(1, "one input");
    line("output RO1 0");
    tick(2);
    expectOutputs(0, "opened by hand");
    line("input 1 1");
    tick(1);
    expectOutputs(3, "called for again");
    line("set SET.setpoint4.Trg1 0");
    line("input 2 0");
    tick(1);
    expectOutputs(0, "nothing calls");
}

TEST_F(InstrumentEvents, TheServerStartsARecordByItsCounterAlone) {
    editCopiesLive();
    executeCommand(unit.get(), {1, 1, 0, 1, 0});
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[1]), 0u);
    storeAt<u32>(area, region::editArea + 392, loadAt<u32>(area, 392) + 1);
    executeCommand(unit.get(), {1, 1, 0, 1, 0});
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[1]), 1u);
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[0]), 0u);
    executeCommand(unit.get(), {1, 1, 0, 28, 0}); // parameters of a group have changed
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[0]), 0u);
}

TEST_F(InstrumentEvents, RingsWrapAndCanBeginAnew) {
    line("input 5 toggle 250");
    EXPECT_EQ(loadAt<u32>(area, inputRing.counterAt), 250u);
    for (u32 at = 150; at < 250; at++) {
        ASSERT_EQ(loadAt<u8>(area, slotAt(inputRing, at) + 14), at % 2 == 0 ? 16 : 0) << at;
    }
    EXPECT_EQ(loadAt<u8>(area, inputStateAt), 0);
    line("reset di");
    EXPECT_EQ(loadAt<u32>(area, inputRing.counterAt), 0u);
    line("input 5 1");
    EXPECT_EQ(loadAt<u32>(area, inputRing.counterAt), 1u);
    EXPECT_EQ(loadAt<u8>(area, slotAt(inputRing, 0) + 14), 16);
    line("input 5 1"); // nothing has changed
    EXPECT_EQ(loadAt<u32>(area, inputRing.counterAt), 1u);
    line("input 7 1"); // counts pulses
    EXPECT_EQ(loadAt<u32>(area, inputRing.counterAt), 1u);
    EXPECT_EQ(loadAt<u8>(area, inputStateAt), 16 + 64);
    line("record 2");
    line("reset wave2");
    EXPECT_EQ(loadAt<u32>(area, waveCountAt[1]), 0u);
}

TEST_F(InstrumentEvents, ASelfCheckFlagComesWithTheTimeOfTheWord) {
    heldClockAdvance(1234);
    line("check flash 1");
    EXPECT_EQ(loadAt<u32>(area, checkWordAt), 16u);
    EXPECT_EQ(time(checkTimeAt), u64{now()} * 1000 + 1234);
    line("check commPara 1");
    line("check flash 0");
    EXPECT_EQ(loadAt<u32>(area, checkWordAt), 1u << 17);
    EXPECT_NE(line("check disk 1").find("flash"), std::string::npos);
}

TEST_F(InstrumentEvents, ARestartGoesOnFromTheRings) {
    calm();
    line("input 1 1");
    line("dip A 10% 30ms");
    tick(5);
    const u32 count = spCount();
    start();
    EXPECT_EQ(loadAt<u32>(area, 37549692), 2u); // what the log holds is of the past
    EXPECT_EQ(loadAt<u32>(area, 37549792), 1u);
    tick(100);
    EXPECT_EQ(spCount(), count);
    EXPECT_EQ(alarms(), 8u);
    line("set SET.setpoint4.Trg1 1");
    line("output RO1 1");
    start();
    line("input 1 0");
    tick(1);
    EXPECT_EQ(loadAt<u16>(area, outputStateAt), 0);
}

TEST_F(InstrumentEvents, NothingHappensWithoutChanceAndTheSameWithTheSameSeed) {
    std::string story[2];
    step(120);
    EXPECT_EQ(pqLog().size() + loadAt<u32>(area, inputRing.counterAt), 0u);
    for (std::string &text : story) {
        publish(*regionPlace(area.base, region::ready), 0);
        storeAt<u8>(area, inputStateAt, 0);
        storeAt<u16>(area, outputStateAt, 0);
        for (const char *ring : {"di", "do", "sp", "lg", "pq", "wave1", "wave2"}) {
            line(std::string("reset ") + ring);
        }
        start();
        EXPECT_EQ(line("chance 60 7"), "ok\n");
        step(300);
        u32 operated = 0;
        for (u32 slot = 20245544; slot < 20245544 + 20 * 100; slot += 20) {
            operated |= loadAt<u16>(area, slot + 14);
        }
        EXPECT_EQ(operated, 63u); // every output
        text = line("state events");
        EXPECT_GT(loadAt<u32>(area, inputRing.counterAt), 10u);
        EXPECT_GT(pqLog().size(), 10u);
        EXPECT_GT(loadAt<u32>(area, waveCountAt[1]), 2u); // transients
    }
    const auto events = [](const std::string &text) {
        return text.substr(text.find("\"events\""), text.find("\"values\"") - text.find("\"events\""));
    };
    EXPECT_EQ(events(story[0]), events(story[1]));
}

TEST_F(InstrumentEvents, WrongCommandsChangeNothing) {
    for (const char *wrong : {"dip",
                              "dip A",
                              "dip A 40%",
                              "dip D 40% 1s",
                              "dip A 40 1h",
                              "dip A 101% 1s",
                              "dip A 40 0",
                              "transient 180% 0.4us",
                              "pulse 7.9",
                              "pulse 7 2.5",
                              "harmonic voltage 2.5 1",
                              "input 1 1 2",
                              "swell 99% 1s",
                              "interruption",
                              "interruption 2 s",
                              "transient 100%",
                              "transient 100% 2s",
                              "input 1 toggle 0",
                              "input 1.5 1",
                              "output RO5 1",
                              "output DO1 open",
                              "record 3",
                              "check flash 2",
                              "reset",
                              "reset all",
                              "chance -1",
                              "rotation bac",
                              "rated 2"}) {
        EXPECT_TRUE(executeLine(unit.get(), wrong).failed) << wrong;
    }
    step(2);
    EXPECT_TRUE(pqLog().empty());
    EXPECT_EQ(loadAt<u32>(area, inputRing.counterAt), 0u);
    EXPECT_EQ(line("rated 1"), "ok\n");
    EXPECT_EQ(loadAt<u16>(area, 7568), 1);
    EXPECT_EQ(arm(81), 1082u);
}

TEST_F(InstrumentEvents, ASurplusWordIsRefusedBeforeAnythingHappens) {
    for (const char *text : {"load A 5 0.9 lag",
                             "voltage 90",
                             "unbalance 1 1",
                             "rotation acb",
                             "harmonic current 5 3 90",
                             "frequency 51",
                             "flicker 1 10",
                             "drift off",
                             "input 1 1",
                             "input 1 toggle 3",
                             "pulse 7 2",
                             "output RO1 1",
                             "dip A 40 1s",
                             "swell 120 1s",
                             "interruption 1s",
                             "transient 180 1ms",
                             "record 1",
                             "check flash 1",
                             "reset di",
                             "chance 5 1",
                             "wiring delta",
                             "rated 1",
                             "set SET.sys.RtgVolt 220",
                             "hold",
                             "resume",
                             "wait 1",
                             "help",
                             "quit"}) {
        const std::string before = line("state");
        const Reply reply = executeLine(unit.get(), std::string(text) + " 1");
        EXPECT_TRUE(reply.failed) << text;
        EXPECT_EQ(reply.after, After::GoOn) << text;
        EXPECT_TRUE(line("state") == before) << text; // too long to print
        EXPECT_FALSE(executeLine(unit.get(), std::string(text) + " #1 1").failed) << text; // a remark
    }
}

TEST_F(InstrumentEvents, EveryParameterComesWithItsCounterOrItsBlock) {
    u32 changed = 0;
    line("set SET.sys.SettleTime 101"); // one less is good too
    forEachParameter([&](const Parameter &p) {
        const f64 value = loadParameter(area, 0, p);
        const bool isReal = p.row->type == ParamF32;
        const f64 other = isReal ? 12.5 : value > p.row->low ? value - 1 : value + 1;
        if (!isReal && p.row->low == p.row->high) {
            return; // has but one value
        }
        std::vector<u32> before;
        for (u32 i = 0; i < 94; i++) {
            before.push_back(arm(i));
        }
        char text[32];
        std::snprintf(text, sizeof text, " %g", other);
        ASSERT_EQ(line("set " + paramName(p) + text), "ok\n") << paramName(p);
        EXPECT_EQ(loadParameter(area, 0, p), other) << paramName(p);
        const u32 counter = paramArm(p);
        for (u32 i = 0; i < 94; i++) {
            ASSERT_EQ(arm(i), before[i] + (i == counter && i != 0 ? 1 : 0)) << paramName(p) << " " << i;
        }
        if (counter == 0) {
            const u32 place = paramOffset(p);
            EXPECT_TRUE(place >= 7932 && place < 7960) << paramName(p);
        }
        changed++;
    });
    EXPECT_EQ(changed, 958u - 8);
}

TEST_F(InstrumentEvents, AParameterHasToFitTheOthers) {
    struct Case {
        std::vector<const char *> before;
        const char *name;
        std::vector<u32> refused, taken;
    };
    const Case cases[] = {
        {{}, "SET.sys.SettleTime", {2824, 2900, 5}, {2823, 0, 65535}},
        {{"SET.wave2.MaxNumRcd 0", "SET.wave1.MaxNumRcd 100"}, "SET.wave2.MaxNumRcd", {29}, {28}},
        {{"SET.wave1.SmpRat 5"}, "SET.wave1.PreCyc", {7}, {6}},
        {{"SET.wave2.SmpRat 0"}, "SET.wave2.PreCyc", {193}, {192}},
        {{}, "SET.wave2.SmpRat", {1}, {0}},
        {{"SET.sys.DipStrVar 40"}, "SET.sys.IntrStrVar", {40, 41}, {39}},
        {{}, "SET.sys.DipStrVar", {5, 39}, {40}},
        {{"SET.IO.DIMod1 2"}, "SET.IO.DIMod2", {2}, {3, 1}},
        {{}, "SET.sys.TransTrg2", {7, 30}, {6, 31}},
        {{"SET.sys.RtgVolt 230"}, "SET.sys.EngPlsFac", {2}, {1}},
        {{"SET.sys.RtgVolt 100"}, "SET.sys.EngPlsFac", {}, {4}},
        {{}, "SET.sys.RtgVolt", {101, 700}, {100}},
        {{"SET.snap9.LogIntv 65600"}, "SET.snap9.OfsTm", {65}, {64}},
        {{}, "SET.snap9.LogIntv", {1, 65599}, {64}},
        {{"SET.snap8.LogIntv 1"}, "SET.snap8.OfsTm", {}, {43200}},
    };
    for (const Case &c : cases) {
        for (const char *text : c.before) {
            EXPECT_EQ(line(std::string("set ") + text), "ok\n") << text;
        }
        const Parameter parameter = findParameter(c.name);
        for (const bool taken : {false, true}) {
            for (const u32 value : taken ? c.taken : c.refused) {
                const std::string text = std::string("set ") + c.name + " " + std::to_string(value);
                const f64 before = loadParameter(area, 0, parameter);
                EXPECT_EQ(executeLine(unit.get(), text).failed, !taken) << text;
                EXPECT_EQ(loadParameter(area, 0, parameter), taken ? value : before) << text;
            }
        }
    }
    line("rated 1");
    EXPECT_EQ(line("set SET.sys.RtgVolt 500"), "ok\n");
    EXPECT_TRUE(executeLine(unit.get(), "rated 5").failed);
    EXPECT_EQ(loadAt<u16>(area, 7568), 1);
    store(area, region::ratedCurrent, 0);
    EXPECT_EQ(line("set SET.sys.SysLan 0"), "ok\n"); // does not fit worse than before
    editCopiesLive();
    storeParameter(area, region::editArea, findParameter("SET.sys.IntrStrVar"), 45);
    executeCommand(unit.get(), {1, 1, 99, 0, 27});
    EXPECT_EQ(load(area, region::editRefused), 1u);
    EXPECT_EQ(loadAt<u16>(area, 7328), 39);
}

} // namespace
} // namespace ied::instrument
