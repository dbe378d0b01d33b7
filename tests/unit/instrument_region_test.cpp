// What the simulated instrument leaves in the shared region, how it answers the server and its line
// commands. The region is plain memory here.

#include "ied-device/flicker.h"
#include "ied-device/instrument.h"
#include "ied-device/parameters.h"
#include "ied-device/quantityTable.h"
#include "ied-device/serverQueues.h"
#include "tests/support/instrumentRegion.h"

#include <cmath>

namespace ied::instrument {
namespace {

using InstrumentRegion = test::InstrumentRegion;

TEST_F(InstrumentRegion, HoldsValuesThatAgreeWithEachOther) {
    step(3);
    const f64 w = real(21408) + real(21464) + real(21520);
    EXPECT_NEAR(real(21576), w, std::fabs(w) * 1e-5);
    EXPECT_NEAR(std::hypot(real(21576), real(21580)), real(21584), 1);
    EXPECT_NEAR(real(21588), real(21576) / real(21584), 1e-5);
    EXPECT_NEAR(real(58620), real(58616) - 50, 1e-4);
    EXPECT_NEAR(real(21660), real(21396) / 230 - 1, 1e-5);
    EXPECT_NEAR(real(30324), real(30308) / real(30304), 1e-6); // imbalance from the sequences
    f64 squares = 0;
    for (u32 h = 2; h < 64; h++) {
        squares += std::pow(real(21724 + 4 * h), 2);
    }
    EXPECT_NEAR(real(21724 + 4), 1, 1e-6);
    EXPECT_NEAR(real(21980), std::sqrt(squares), 1e-6);
    EXPECT_EQ(loadAt<u16>(area, 21424), 0);            // phase A is the reference
    EXPECT_NEAR(loadAt<u16>(area, 21480), 24000, 200); // hundredths of a degree
    EXPECT_NEAR(real(21404), 0.55 * 200, 25);          // a load that suits the transformers
}

TEST_F(InstrumentRegion, KeepsDemandAndExtremesAroundTheValues) {
    step(20);
    for (u32 place = 16647032; place < 16647836; place += 12) {
        EXPECT_LE(real(place + 4), real(place) * (1 + 1e-6) + 1e-6) << place;
        EXPECT_GE(real(place + 8) + 1e-6, real(place) - std::fabs(real(place)) * 1e-6) << place;
    }
    for (u32 channel = 0; channel < 8; channel++) {
        for (u32 h = 2; h < 64; h++) {
            const u32 place = 16647836 + 12 * channel + 96 * (h - 2);
            ASSERT_GT(real(place), 0) << channel << " order " << h;
            ASSERT_LE(real(place + 4), real(place + 8)) << channel << " order " << h;
        }
    }
    EXPECT_NEAR(real(16653968), real(16647236), real(16647236) * 0.1); // predicted and present demand
    for (const u32 month : {0u, 1472u}) {
        EXPECT_GE(real(37311112 + month), real(37311112 + month + 640));
        EXPECT_GT(loadAt<u32>(area, 37311112 + month + 4), 1'000'000'000u);
        EXPECT_GE(real(37311112 + month), real(37312168 + month)); // a demand is a mean
        EXPECT_GE(real(37312168 + month), real(37311112 + month + 640));
    }
    EXPECT_GE(real(37311112), real(21576));
    EXPECT_LE(real(37311112 + 640), real(21576));
    EXPECT_LT(loadAt<u32>(area, 37311112 + 1472 + 4), loadAt<u32>(area, 16654024)); // last month lies before
}

TEST_F(InstrumentRegion, RaisesEachCounterAtItsPace) {
    EXPECT_EQ(load(area, region::ready), 43605u);
    for (u32 i = 0; i < region::armFlag.count; i++) {
        ASSERT_GE(arm(i), 1000u) << i;
    }
    const u32 basic = flag(1), pst = flag(8), energy = flag(14), demand = flag(17), predicted = flag(18);
    EXPECT_GE(std::min({basic, pst, flag(9), energy, demand, predicted, flag(19)}), 1000u);
    step(60);
    EXPECT_EQ(flag(1), basic + 60);
    EXPECT_EQ(flag(14), energy + 12);
    EXPECT_EQ(flag(18), predicted + 12);
    EXPECT_EQ(flag(17), demand + 1);
    EXPECT_EQ(flag(8), pst);
    step(540);
    EXPECT_EQ(flag(8), pst + 1);
    EXPECT_EQ(flag(17), demand + 10);
}

TEST_F(InstrumentRegion, CountsEnergyAndItsPulses) {
    line("drift off");
    const u32 before = loadAt<u32>(area, 16639556);
    const u32 pulses = load(area, region::pulseCount, 6);
    step(1000);
    const f64 expected = real(21576) * 1000 / 3.6e6;
    EXPECT_NEAR(loadAt<u32>(area, 16639556) - before, expected, 1);
    EXPECT_EQ(load(area, region::pulseCount, 6) - pulses, loadAt<u32>(area, 16639556) - before);
    line("load -100 1");
    const u32 exported = loadAt<u32>(area, 16639564);
    step(1000);
    EXPECT_LT(real(21576), 0);
    EXPECT_NEAR(loadAt<u32>(area, 16639564) - exported, 3 * 230 * 100 / 3600.0, 1.5);
}

TEST_F(InstrumentRegion, HasParametersWithinTheirLimits) {
    u32 number = 0;
    forEachParameter([&](const Parameter &p) {
        number++;
        EXPECT_TRUE(parameterAllows(*p.row, loadParameter(area, 0, p))) << paramName(p);
    });
    EXPECT_EQ(number, 957u + 1);                                 // every parameter that can be committed
    EXPECT_LT(loadAt<u16>(area, 7328), loadAt<u16>(area, 7326)); // an interruption lies below a dip
    EXPECT_LE(loadAt<u16>(area, 7280) + loadAt<u16>(area, 7292), 128);
}

TEST_F(InstrumentRegion, TurnsToTheOtherWiringBeforeItsCounter) {
    const u32 base = arm(1);
    const u32 basic = flag(1);
    EXPECT_EQ(line("wiring delta"), "ok\n");
    EXPECT_EQ(loadAt<u16>(area, 700), 1);
    EXPECT_EQ(real(21396), 0);
    EXPECT_NEAR(real(21400), 400, 20);
    EXPECT_NEAR(real(30172), 400, 20); // the channel of the fundamental is that of the line voltage
    EXPECT_EQ(arm(1), base + 1);
    EXPECT_EQ(flag(1), basic + 1);
}

// What is shown as good in wye after any past: demand, its extremes and those of the month agree.
void expectConsistentWye(Region area) {
    const auto real = [&](u32 place) { return f64{loadAt<f32>(area, place)}; };
    for (const QuantityRow &row : quantityRows()) {
        if (row.demand == 0) {
            continue;
        }
        const f64 slack = 1e-5 * std::fabs(real(row.demand)) + 1e-6;
        EXPECT_LE(real(row.demand + demandLowest), real(row.demand) + slack) << row.wyeName;
        EXPECT_GE(real(row.demand + demandHighest), real(row.demand) - slack) << row.wyeName;
        if (row.extreme != 0) {
            EXPECT_LE(real(row.extreme + extremeLowest), real(row.demand + demandLowest)) << row.wyeName;
            EXPECT_GE(real(row.extreme), real(row.demand + demandHighest)) << row.wyeName;
        }
    }
    for (const u32 first : {16647200u, 16647248u}) { // active and reactive power
        EXPECT_NEAR(real(first) + real(first + 12) + real(first + 24), real(first + 36),
                    1e-5 * std::fabs(real(first + 36)));
    }
    for (u32 phase = 0; phase < 3; phase++) {
        EXPECT_GT(real(16647032 + 12 * phase + demandLowest), 220) << phase;
        EXPECT_GT(real(37310888 + 16 * phase + extremeLowest), 220) << phase;
    }
}

TEST_F(InstrumentRegion, MixesNothingOfBothWiringsAfterACycle) {
    line("harmonic voltage 3 20"); // of zero sequence: no line voltage has it
    step(100);
    constexpr u32 thd = 37311192; // highest of the month, of A or of AB
    EXPECT_GT(real(thd), 0.19);
    for (const char *wiring : {"wiring delta", "wiring wye"}) {
        const u32 pst = flag(8), plt = flag(9), demand = flag(17), predicted = flag(18);
        const u32 month = load(area, region::statThisMonth), last = load(area, region::statLastMonth);
        line(wiring);
        EXPECT_GT(flag(8), pst);
        EXPECT_GT(flag(9), plt);
        EXPECT_EQ(flag(17), demand + 1);
        EXPECT_EQ(flag(18), predicted + 1);
        EXPECT_EQ(load(area, region::statThisMonth), month + 1);
        EXPECT_EQ(load(area, region::statLastMonth), last + 1);
        EXPECT_NEAR(real(58640), shortTermSeverity(0.35, 110), 0.1);
        EXPECT_EQ(real(58640), real(58668));
        EXPECT_NEAR(real(16647236), real(21576), 1); // the demand begins with what is there
        EXPECT_NEAR(real(16647548), real(21980), 1e-6);
        if (loadAt<u16>(area, 700) == 1) {
            EXPECT_NEAR(real(16647404), real(21400) / (std::sqrt(3.0) * 230) - 1, 1e-5);
            step(20);
            EXPECT_LT(real(thd), 0.1);
            EXPECT_GE(real(thd), real(21980));
            EXPECT_EQ(real(thd + extremeLastMonth), 0); // nobody has measured it
        }
    }
    expectConsistentWye(area);
    EXPECT_GT(real(thd), 0.19);
    step(75);
    expectConsistentWye(area);
}

TEST_F(InstrumentRegion, NoticesWhileHeldThatTheWiringWentForthAndBack) {
    line("hold");
    line("wiring delta");
    line("wiring wye");
    const u32 pst = flag(8), demand = flag(17);
    line("resume");
    step(1);
    EXPECT_EQ(flag(8), pst + 1);
    EXPECT_EQ(flag(17), demand + 1);
    step(1);
    EXPECT_EQ(flag(17), demand + 1);
}

TEST_F(InstrumentRegion, StartsDemandAnewWithAnotherFormOfTheSpectra) {
    constexpr u32 third = 16647836 + 96; // order 3 of the first channel
    step(100);
    const u32 demand = flag(17);
    const f64 highest = real(37310888), pst = real(58640);
    const u32 seen = loadAt<u32>(area, 37310888 + 4);
    line("set SET.sys.ClcHV 1");
    EXPECT_EQ(flag(17), demand + 1);
    EXPECT_NEAR(real(21724 + 4), real(30172), 1e-3); // volts
    EXPECT_NEAR(real(third), real(21724 + 12), 1e-6);
    step(70);
    EXPECT_NEAR(real(third + demandLowest), real(21724 + 12), 0.2 * real(21724 + 12));
    EXPECT_NEAR(real(third + demandHighest), real(21724 + 12), 0.2 * real(21724 + 12));
    EXPECT_GE(real(37310888), highest); // the voltage itself is the same
    EXPECT_LE(seen, loadAt<u32>(area, 37310888 + 4));
    EXPECT_EQ(real(58640), pst);
    expectConsistentWye(area);
}

TEST_F(InstrumentRegion, ForgetsExtremesThatMeanSomethingElse) {
    struct Case {
        const char *parameter;
        u32 moved; // highest of the month
        u32 now;
        u32 stays;
    };
    step(20);
    for (const Case &c :
         {Case{"SET.sys.ClcHRat", 37311240, 24636, 37311112},   // THD of a current; active power
          Case{"SET.sys.PFSign", 37311160, 21588, 37311144},    // power factor; apparent power
          Case{"SET.sys.IbSign", 37311112, 21576, 37311064}}) { // active power; current
        const f64 stays = real(c.stays);
        line(std::string("set ") + c.parameter + " 1");
        EXPECT_EQ(real(c.moved), real(c.now)) << c.parameter;
        EXPECT_EQ(real(c.moved + extremeLowest), real(c.now)) << c.parameter;
        EXPECT_GE(real(c.stays), stays) << c.parameter;
        EXPECT_NE(real(c.stays + extremeLowest), real(c.stays)) << c.parameter;
    }
    EXPECT_EQ(real(37312168), real(21576)); // highest demand of active power
}

TEST_F(InstrumentRegion, JudgesFlickerSecondBySecond) {
    line("drift off");
    line("flicker 1 110");
    step(300);
    line("flicker 2 7");
    step(300);
    const f64 first = shortTermSeverity(1, 110), second = shortTermSeverity(2, 7);
    EXPECT_NEAR(real(58640), (first + second) / 2, 1e-6);
}

TEST_F(InstrumentRegion, TakesAnEditOrRefusesIt) {
    editCopiesLive();
    storeAt<u16>(area, region::editArea + 738, 240);     // rated voltage
    storeAt<u16>(area, region::editArea + 6036 + 52, 9); // entries of snapshot group 2
    const u32 base = arm(1), snap = arm(18), demand = arm(5);
    executeCommand(unit.get(), {1, 1, 99, 0, 27});
    EXPECT_EQ(load(area, region::editDone), 1u);
    EXPECT_EQ(load(area, region::editRefused), 0u);
    EXPECT_EQ(loadAt<u16>(area, 738), 240);
    EXPECT_EQ(loadAt<u16>(area, 6036 + 52), 9);
    EXPECT_EQ(arm(1), base + 1);
    EXPECT_EQ(arm(18), snap + 1);
    EXPECT_EQ(arm(5), demand);
    editCopiesLive();
    storeAt<u16>(area, region::editArea + 738, 701);
    storeAt<u16>(area, region::editArea + 818, 2);
    executeCommand(unit.get(), {1, 1, 99, 0, 27});
    EXPECT_EQ(load(area, region::editRefused), 1u);
    EXPECT_EQ(loadAt<u16>(area, 738), 240);
    EXPECT_EQ(loadAt<u16>(area, 818), 1);
}

TEST_F(InstrumentRegion, OperatesOutputsAndAcknowledges) {
    editCopiesLive();
    storeAt<u32>(area, region::editArea + 7424, loadAt<u32>(area, 7424) + 1); // RO2 close
    executeCommand(unit.get(), {1, 1, 86, 0, 0});
    EXPECT_EQ(loadAt<u16>(area, 16654118), 2);
    EXPECT_EQ(loadAt<u32>(area, 20245540), 1u);
    EXPECT_EQ(loadAt<u16>(area, 20245544 + 14), 2);
    EXPECT_GT(loadAt<u32>(area, 20245544), 1'000'000'000u);
    storeAt<u32>(area, region::editArea + 7544, loadAt<u32>(area, 7544) + 1); // DO2 open
    storeAt<u32>(area, region::editArea + 7432, loadAt<u32>(area, 7432) + 1); // RO2 open
    executeCommand(unit.get(), {1, 1, 86, 0, 0});
    EXPECT_EQ(loadAt<u16>(area, 16654118), 0);
    EXPECT_EQ(loadAt<u32>(area, 7432), loadAt<u32>(area, region::editArea + 7432));
    storeAt<u32>(area, region::editArea + 648, loadAt<u32>(area, 648) + 1);
    line("set SET.IO.DIMod1 1");
    line("pulse 1 5");
    EXPECT_EQ(load(area, region::pulseCount, 0), 5u);
    executeCommand(unit.get(), {1, 1, 0, 40, 33});
    EXPECT_EQ(load(area, region::pulseCount, 0), 0u);
    EXPECT_EQ(loadAt<u32>(area, 648), loadAt<u32>(area, region::editArea + 648));
}

TEST_F(InstrumentRegion, GoesOnWhereAFormerInstrumentStopped) {
    line("set SET.sys.RtgVolt 240");
    step(50);
    const u32 basic = flag(1), base = arm(1), energy = loadAt<u32>(area, 16639556);
    const f64 highest = real(37311112);
    line("input 3 1");
    start();
    EXPECT_EQ(loadAt<u16>(area, 738), 240);
    EXPECT_EQ(arm(1), base);
    EXPECT_GT(flag(1), basic);
    EXPECT_GE(loadAt<u32>(area, 16639556), energy);
    EXPECT_GE(real(37311112), highest);
    EXPECT_EQ(loadAt<u32>(area, 20243936), 1u); // the ring keeps its entry
    EXPECT_EQ(loadAt<u8>(area, 16654038), 4);
}

// The past that a start makes up: the month has seen all that the demand window has, and nothing is of
// a time to come or of another month.
class InstrumentStart : public InstrumentRegion, public testing::WithParamInterface<u32> {
  protected:
    static constexpr u32 begin = 1709251200; // 2024-03-01
    u32 now() const override { return begin + GetParam(); }
};

TEST_P(InstrumentStart, MakesUpAPastThatAgrees) {
    for (const QuantityRow &row : quantityRows()) {
        const auto expectTime = [&](u32 place) {
            const u32 seen = loadAt<u32>(area, place + 4);
            EXPECT_TRUE(seen >= begin && seen <= now()) << row.wyeName << " " << seen;
            const u32 last = loadAt<u32>(area, place + extremeLastMonth + 4);
            EXPECT_TRUE(last < begin && last >= begin - 29 * 86400) << row.wyeName << " " << last;
        };
        if (row.maxDemand != 0) {
            expectTime(row.maxDemand);
        }
        if (row.extreme == 0) {
            continue;
        }
        expectTime(row.extreme);
        expectTime(row.extreme + extremeLowest);
        // A window that reaches over the turn of the month has seen both.
        const bool reaches = GetParam() < 15 * 60;
        const f64 lastHigh = real(row.extreme + extremeLastMonth);
        const f64 lastLow = real(row.extreme + extremeLastMonth + extremeLowest);
        const f64 high = std::max<f64>(real(row.extreme), reaches ? lastHigh : -HUGE_VAL);
        const f64 low = std::min<f64>(real(row.extreme + extremeLowest), reaches ? lastLow : HUGE_VAL);
        EXPECT_GE(high, real(row.demand + demandHighest)) << row.wyeName;
        EXPECT_LE(low, real(row.demand + demandLowest)) << row.wyeName;
        if (row.maxDemand != 0) {
            EXPECT_LE(real(row.maxDemand), high) << row.wyeName;
            EXPECT_LE(real(row.maxDemand + extremeLastMonth), lastHigh) << row.wyeName;
            EXPECT_GE(real(row.maxDemand), real(row.demand)) << row.wyeName;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(SecondsOfTheMonth, InstrumentStart,
                         testing::Values(0, 1, 400, 899, 900, 5000, 10 * 3600, 20 * 86400),
                         testing::PrintToStringParamName());

TEST_F(InstrumentRegion, FollowsItsLineCommands) {
    line("drift off");
    line("load AB 50 0.8");
    line("unbalance 3 1");
    line("harmonic voltage 7 4 90");
    line("frequency 50.25");
    step(1);
    EXPECT_NEAR(real(30180), 50, 0.1); // fundamental current of phase A
    EXPECT_NEAR(real(30196), 0.8, 1e-3);
    EXPECT_EQ(unit->grid.load[1].amperes, 50);
    EXPECT_NE(unit->grid.load[2].amperes, 50);
    EXPECT_NEAR(real(30324), 0.03, 1e-4);
    EXPECT_NEAR(real(30328), 0.01, 1e-4);
    EXPECT_NEAR(real(21724 + 28), 0.04, 0.004);
    EXPECT_NEAR(real(58616), 50.25, 1e-3);
    EXPECT_EQ(line("hold"), "ok\n");
    const u32 basic = flag(1);
    line("load 10");
    EXPECT_EQ(flag(1), basic);
    for (const char *wrong :
         {"load", "load x", "harmonic voltage 64 1", "harmonic sideways 3 1", "wiring star",
          "set SET.sys.TVMod", "set SET.sys.TVMod 3", "set SET.sys.Nothing 1", "pulse 9", "pulse 1",
          "input 1 2", "frequency 500", "flicker -1", "sing"}) {
        EXPECT_TRUE(executeLine(unit.get(), wrong).failed) << wrong;
    }
    EXPECT_EQ(line(" #a remark"), "");
    EXPECT_EQ(executeLine(unit.get(), "quit").after, After::Quit);
}

TEST_F(InstrumentRegion, TellsItsStateOfThisUpdateAndTheOneBefore) {
    step(2);
    const f64 before = real(58616);
    step(1);
    const std::string text = line("state RT.Hz ENG.PlsCnt1");
    char expected[160];
    std::snprintf(expected, sizeof expected, "\"values\":{\"RT.Hz\":%.9g,\"RT.HzDev\":", real(58616));
    EXPECT_NE(text.find(expected), std::string::npos) << text;
    std::snprintf(expected, sizeof expected, "\"before\":{\"RT.Hz\":%.9g,\"RT.HzDev\":", before);
    EXPECT_NE(text.find(expected), std::string::npos) << text;
    EXPECT_NE(line("state RT.HAArr.neutHar").find("\"RT.HAArr.neutHar\":["), std::string::npos);
    EXPECT_NE(line("state SET.snap24.var16").find("\"settings\":{\"SET.snap24.var16\":1}"),
              std::string::npos);
}

} // namespace
} // namespace ied::instrument
