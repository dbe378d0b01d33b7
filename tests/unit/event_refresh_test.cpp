// Voltage events, transients and wave records, as the monitor task sees them: one edge, one picture.
#include "device/privateConfig.h"
#include "device/statusRefresh.h"
#include "tests/support/deviceModel.h"
#include "tests/support/monitorStandIn.h"
#include "tests/support/ringEvents.h"
#include "tests/support/smallModel.h"

using namespace ied;
using namespace ied::test;

namespace {

enum SubType : u8 {
    SwellStart = 1,
    SwellEnd,
    DipStart,
    DipEnd,
    IntrStart,
    IntrEnd
};
constexpr u8 variation = 1, transient = 2;

// A measured value as "0.4@1000.250 n1".
std::string shownValue(const char *sAddr) {
    const MV &mv = record<MV>(sAddr);
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", static_cast<f64>(loadShared(mv.mag)));
    return text + ("@" + shown(mv.t)) + " n" + std::to_string(loadShared(mv.updateCount));
}
std::string shownStates(std::initializer_list<const char *> sAddrs) {
    std::string out;
    for (const char *sAddr : sAddrs) {
        out += (out.empty() ? "" : ", ") + shown(record<SPS>(sAddr));
    }
    return out;
}
std::string variationPicture() {
    return "Var " + shownStates({"SOE.VarStr"}) + " Dip,Swl,Intr " +
           shownStates({"SOE.DipStr", "SOE.SwlStr", "SOE.IntrStr"});
}
std::string measuredPicture() {
    return shownValue("SOE.VVa") + ", " + shownValue("SOE.VVaTm");
}
std::string transientPicture() {
    return shown(record<SPS>("SOE.TransStr")) + ", " + shownValue("SOE.MaxVtrs") + ", " +
           shownValue("SOE.VtrsTm");
}

class EventRefresh : public testing::Test {
  protected:
    EventRefresh() { localConfig = 0; }
    ~EventRefresh() override { localConfig = 0; }
    void append(std::initializer_list<PqEntry> entries) {
        for (const PqEntry &entry : entries) {
            putEvent([this](u32 at, auto value) { device.put(at, value); },
                     device.get<u32>(eventLog.counterAt), entry);
        }
    }
    // Plays everything from the first entry on.
    void play() {
        const u32 now = device.get<u32>(eventLog.counterAt);
        EXPECT_EQ(SOEDataRefresh(0), now);
    }

    DeviceState device{1000000, false};
    MonitorStandIn monitor;
    LogLines log;
};

TEST_F(EventRefresh, ADipIsShownAtItsEndFromItsStartToItsEnd) {
    monitor.start([] { return variationPicture() + " | " + measuredPicture(); });
    append({{variation, DipStart, 1000, 250, 0, 0}});
    play();
    EXPECT_EQ(monitor.pictures, Pictures{}) << "a start alone shows nothing";
    append({{variation, DipEnd, 1000, 370, 40, 120}});
    EXPECT_EQ(SOEDataRefresh(1), 2U);
    EXPECT_EQ(monitor.pictures,
              (Pictures{"Var 1@1000.250 n1 Dip,Swl,Intr 1@1000.250 n1, 0@0.000 n0, 0@0.000 n0"
                        " | 0.4@1000.250 n1, 0.12@1000.250 n1",
                        "Var 0@1000.370 n2 Dip,Swl,Intr 0@1000.370 n2, 0@0.000 n0, 0@0.000 n0"
                        " | 0.4@1000.250 n1, 0.12@1000.250 n1"}));
    EXPECT_EQ(record<SPS>("SOE.DipStr").t.tq, 10);
}

TEST_F(EventRefresh, EventsOfEachKindKeepTheirOwnStarts) {
    monitor.start(variationPicture);
    append({{variation, SwellStart, 1, 0, 0, 0},
            {variation, DipStart, 2, 0, 0, 0},
            {variation, IntrStart, 3, 0, 0, 0},
            {variation, IntrEnd, 4, 0, 1, 0},
            {variation, SwellEnd, 5, 0, 1, 0},
            {variation, DipEnd, 6, 0, 1, 0},
            {variation, DipEnd, 7, 0, 1, 0}});
    play();
    const Pictures expected = {
        "Var 1@3.000 n1 Dip,Swl,Intr 0@0.000 n0, 0@0.000 n0, 1@3.000 n1",
        "Var 0@4.000 n2 Dip,Swl,Intr 0@0.000 n0, 0@0.000 n0, 0@4.000 n2",
        "Var 1@1.000 n3 Dip,Swl,Intr 0@0.000 n0, 1@1.000 n1, 0@4.000 n2",
        "Var 0@5.000 n4 Dip,Swl,Intr 0@0.000 n0, 0@5.000 n2, 0@4.000 n2",
        "Var 1@2.000 n5 Dip,Swl,Intr 1@2.000 n1, 0@5.000 n2, 0@4.000 n2",
        "Var 0@6.000 n6 Dip,Swl,Intr 0@6.000 n2, 0@5.000 n2, 0@4.000 n2",
        "Var 1@2.000 n7 Dip,Swl,Intr 1@2.000 n3, 0@5.000 n2, 0@4.000 n2", // a second end, the same start
        "Var 0@7.000 n8 Dip,Swl,Intr 0@7.000 n4, 0@5.000 n2, 0@4.000 n2",
    };
    EXPECT_EQ(monitor.pictures, expected);
}

TEST_F(EventRefresh, WhatIsNeitherVariationNorTransientIsPassedOver) {
    monitor.start(variationPicture);
    append({{0, DipEnd, 1, 0, 1, 1},
            {3, DipEnd, 1, 0, 1, 1},
            {variation, 0, 1, 0, 1, 1},
            {variation, 7, 1, 0, 1, 1}});
    play();
    EXPECT_EQ(monitor.pictures, Pictures{});
    EXPECT_EQ(variationPicture(), "Var 0@0.000 n0 Dip,Swl,Intr 0@0.000 n0, 0@0.000 n0, 0@0.000 n0");
    EXPECT_EQ(measuredPicture(), "0@0.000 n0, 0@0.000 n0");
}

struct Magnitude {
    u32 vvaFormat;
    i8 multiplier;
    f32 shown;
    u8 unit;
    int messages;
};

TEST_F(EventRefresh, TheMagnitudeHasTheFormAndTheMultipleThatTheFileDeclares) {
    monitor.start(variationPicture);
    device.put<u16>(738, 230);
    const Magnitude cases[] = {
        {0, 0, 1.15F, 1, 0},    {0, -2, 115, 1, 0},     {1, 0, 264.5F, 29, 0},
        {1, 3, 0.2645F, 29, 0}, {1, -3, 264500, 29, 0}, {2, 0, 1.15F, 1, 1},
    };
    for (const Magnitude &each : cases) {
        const LogLines lines;
        localConfig = each.vvaFormat;
        MV &magnitude = record<MV>("SOE.VVa");
        magnitude.units.multiplier = each.multiplier;
        record<MV>("SOE.VVaTm").units.multiplier = -3;
        device.put<u32>(eventLog.counterAt, 0);
        append({{variation, SwellStart, 1, 0, 0, 0}, {variation, SwellEnd, 2, 0, 115, 1500}});
        play();
        EXPECT_FLOAT_EQ(magnitude.mag, each.shown) << each.vvaFormat << " " << int{each.multiplier};
        EXPECT_EQ(magnitude.units.SIUnit, each.unit);
        EXPECT_EQ(record<MV>("SOE.VVaTm").mag, 1500) << "milliseconds";
        EXPECT_EQ(
            LogLines::count("UPD", "ERR", "SOEDataRefresh", "vvaFormat value error! Use default value!"),
            each.messages);
    }
}

TEST_F(EventRefresh, ATransientIsShownFromItsStartToItsEnd) {
    record<MV>("SOE.VtrsTm").units.multiplier = -6;
    monitor.start(transientPicture);
    append({{transient, 0, 1000, 2, 180, 5000}});
    play();
    EXPECT_EQ(monitor.pictures, (Pictures{"1@999.997 n1, 0@999.997 n1, 0@999.997 n1",
                                          "0@1000.002 n2, 1.8@1000.002 n2, 5000@1000.002 n2"}));
}

TEST_F(EventRefresh, TheStartOfATransientBorrowsWholeSeconds) {
    monitor.start(transientPicture);
    const struct {
        u32 sec, ms, duration;
        const char *start;
    } cases[] = {
        {1000, 2, 5000, "999.997"},
        {1000, 5, 5000, "1000.000"},
        {1000, 5, 5999, "1000.000"},
        {1000, 999, 0, "1000.999"},
        {1000, 0, 1000000, "999.000"},
        {1000, 1, 1002000, "998.999"},
        {1000, 500, 3250000, "997.250"},
        {1000, 0, 60000000, "940.000"},
        {5000, 0, 4294967295, "705.033"},
        {0, 4, 5000, "0.000"},
        {3, 0, 3001000, "0.000"},
        {0, 5, 5000, "0.000"},
        {4294967295, 999, 1000, "4294967295.998"},
    };
    for (const auto &each : cases) {
        device.put<u32>(eventLog.counterAt, 0);
        monitor.start(transientPicture);
        append({{transient, 0, each.sec, each.ms, 0, each.duration}});
        play();
        ASSERT_EQ(monitor.pictures.size(), 2U);
        const std::string &first = monitor.pictures[0];
        EXPECT_EQ(first.substr(2, first.find(' ') - 2), each.start) << each.duration;
        EXPECT_EQ(record<SPS>("SOE.TransStr").t.sec, each.sec);
        EXPECT_EQ(record<SPS>("SOE.TransStr").t.ms, each.ms);
        EXPECT_EQ(record<SPS>("SOE.TransStr").t.tq, 10);
    }
}

// --------------------------------------------------------------------------------- the log as a ring

// Entry i of a run: a transient that ends at second 10 + i.
PqEntry numbered(u32 i) {
    return {transient, 0, 10 + i, 500, 0, 0};
}
std::string rising(u32 i) {
    return "1@" + std::to_string(10 + i) + ".500";
}

class PqRing : public EventRefresh {
  protected:
    PqRing() {
        monitor.start([] {
            const std::string state = shown(record<SPS>("SOE.TransStr"));
            return state.substr(0, state.find(' '));
        });
    }
    void fill(u32 from, u32 to) {
        device.put<u32>(eventLog.counterAt, from);
        for (u32 i = from; i < to; i++) {
            append({numbered(i)});
        }
    }
    // First and last event that was shown, and how many.
    void expectShown(u32 first, u32 last) {
        ASSERT_EQ(monitor.pictures.size(), 2 * (last - first + 1));
        EXPECT_EQ(monitor.pictures.front(), rising(first));
        EXPECT_EQ(monitor.pictures[monitor.pictures.size() - 2], rising(last));
    }
};

TEST_F(PqRing, GivesAReaderFarBehindTheNewestHundredAcrossItsLastSlot) {
    fill(900, 1101);
    EXPECT_EQ(SOEDataRefresh(1000), 1101U);
    expectShown(1001, 1100);
    monitor.stop();
    monitor.start([] { return std::string(); });
    EXPECT_EQ(SOEDataRefresh(1001), 1101U);
    EXPECT_EQ(monitor.pictures.size(), 200U) << "a hundred behind is read whole";
}

TEST_F(PqRing, ThatBeganAnewIsReadFromItsBeginning) {
    fill(0, 100);
    EXPECT_EQ(SOEDataRefresh(101), 100U);
    expectShown(0, 99);
    EXPECT_EQ(log.lines().size(), 0U);
}

TEST_F(PqRing, ThatWasResetFurtherOnIsReadFromThereOn) {
    fill(0, 101);
    EXPECT_EQ(SOEDataRefresh(4000000000U), 101U);
    EXPECT_EQ(monitor.pictures.size(), 0U);
    EXPECT_EQ(
        LogLines::count("UPD", "CRI", "SOEDataRefresh", "PQ Ptr Overfollow!PtrNow:101, PtrLast:4000000000"),
        1);
}

// ----------------------------------------------------------------------------------- wave records

class WaveRecords : public EventRefresh, public testing::WithParamInterface<u32> {
  protected:
    WaveRecords() {
        for (u32 i = 0; i < 2; i++) {
            device.put<u32>(37549792 + 4 * i, 3 + i);
        }
        RDDataInit();
        monitor.start([] { return picture(GetParam()); });
    }
    static std::string picture(u32 group) {
        const std::string n = std::to_string(group + 1);
        return "Str " + shown(record<SPS>("RD.RcdStr" + n)) + " Made " +
               shown(record<SPS>("RD.RcdMade" + n)) + " Num " + shown(record<INS>("RD.FltNum" + n));
    }
};

TEST_P(WaveRecords, AreAnnouncedThenMadeThenCleared) {
    const u32 group = GetParam();
    const std::string had = std::to_string(3 + group) + "@1000000.000 n0", other = picture(1 - group);
    const auto count = [&](u32 value) { device.put<u32>(waveCountAt[group], value); };
    heldClockAdvance(2500);
    device.putTime(waveTimeAt[group], 1000001, 750, 10);
    count(6 + group); // several since
    EXPECT_EQ(RDDataRefresh(group), 6 + group);
    heldClockAdvance(1000);
    device.putTime(waveTimeAt[group], 1000003, 0, 10);
    count(7 + group);
    EXPECT_EQ(RDDataRefresh(group), 7 + group);
    heldClockAdvance(1000);
    count(0);
    EXPECT_EQ(RDDataRefresh(group), 0U);
    const std::string six = std::to_string(6 + group), seven = std::to_string(7 + group);
    EXPECT_EQ(monitor.pictures,
              (Pictures{"Str 1@1000001.750 n0 Made 0@1000001.750 n0 Num " + had,
                        "Str 0@1000002.500 n0 Made 1@1000002.500 n0 Num " + six + "@1000002.500 n0",
                        "Str 1@1000003.000 n0 Made 0@1000003.000 n0 Num " + six + "@1000002.500 n0",
                        "Str 0@1000003.500 n0 Made 1@1000003.500 n0 Num " + seven + "@1000003.500 n0",
                        "Str 0@1000003.500 n0 Made 1@1000003.500 n0 Num 0@1000004.500 n0"}));
    EXPECT_EQ(LogLines::count("UPD", "CRI", "RDDataRefresh",
                              "Wave" + std::to_string(group + 1) + " Ptr clean out!"),
              1);
    EXPECT_EQ(picture(1 - group), other) << "the other group stays";
}

INSTANTIATE_TEST_SUITE_P(Groups, WaveRecords, testing::Values(0U, 1U));

} // namespace
