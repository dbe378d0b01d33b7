// Measurements from the region into the mirror: scale, time, quality, wiring modes, arrays.
#include "device/measRefresh.h"
#include "device/measTables.h"
#include "tests/support/deviceModel.h"
#include "tests/support/smallModel.h"

#include <cmath>
#include <limits>

using namespace ied;
using namespace ied::test;

namespace {

constexpr u32 utc = 1000000; // of the held clock

class MeasRefresh : public testing::Test {
  protected:
    MeasRefresh() : device(utc) {
        dataMapInit();
        device.putTime(21360, 500, 20, 10);
    }
    void setWiring(u16 mode) { device.put<u16>(700, mode); }
    // A model's array of `count` elements, all 7 in magnitude and angle.
    static void giveArray(HWYE &har, WyePhase phase, Vector *elements, u16 count) {
        for (u16 i = 0; i < count; i++) {
            elements[i] = {7, 7};
        }
        har.har[phase] = elements;
        har.numHar = count;
    }

    DeviceState device;
    const TimeStamp blockTime{500, 20, 10};
};

void expectStamp(u16 q, const TimeStamp &t, u16 quality, const TimeStamp &time, const char *what) {
    EXPECT_EQ(q, quality) << what;
    EXPECT_EQ(t.sec, time.sec) << what;
    EXPECT_EQ(t.ms, time.ms) << what;
    EXPECT_EQ(t.tq, time.tq) << what;
}

constexpr TimeStamp now{utc, 0, 10};

TEST_F(MeasRefresh, AValueShowsInTheMultipleThatItsRecordDeclares) {
    MV mv{};
    const struct {
        f32 source;
        i8 multiplier;
        f32 shown;
    } cases[] = {{1.5F, 0, 1.5F},  {1.5F, -3, 1500}, {1500, 3, 1.5F},        {-2, -1, -20},
                 {0.1F, -9, 1e8F}, {1, 9, 1e-9F},    {3.4e38F, -1, INFINITY}};
    for (const auto &each : cases) {
        mv.units.multiplier = each.multiplier;
        updateMV(&mv, blockTime, reinterpret_cast<const u8 *>(&each.source));
        EXPECT_EQ(mv.mag, each.shown) << each.source << " " << int{each.multiplier};
    }
    for (const f32 source : {std::numeric_limits<f32>::quiet_NaN(), -INFINITY}) {
        mv.units.multiplier = 3;
        updateMV(&mv, blockTime, reinterpret_cast<const u8 *>(&source));
        EXPECT_TRUE(std::isnan(source) ? std::isnan(mv.mag) : mv.mag == source);
    }
    EXPECT_EQ(mv.updateCount, 9U);
    EXPECT_EQ(mv.instMag, 0);
    expectStamp(mv.q, mv.t, qualityGood, blockTime, "mv");
}

TEST_F(MeasRefresh, AMultiplierOutOfRangeIsReportedAndStillApplied) {
    const LogLines log;
    EXPECT_EQ(calcMultiplier(9), 1000000000U);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "calcMultiplier", "Multiplier out of range!"), 0);
    EXPECT_EQ(calcMultiplier(12), 1000000000000U);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "calcMultiplier", "Multiplier out of range!"), 1);
}

TEST_F(MeasRefresh, AComponentRaisesTheCounterOfWhatEnclosesIt) {
    const f32 source = 2000;
    WYE wyeRecord{};
    SEQ seq{};
    wyeRecord.phs[PhsB].units.multiplier = 3;
    updateCMV(&wyeRecord.phs[PhsB], blockTime, reinterpret_cast<const u8 *>(&source), CdcWYE,
              reinterpret_cast<u8 *>(&wyeRecord));
    updateCMV(&seq.c[0], blockTime, reinterpret_cast<const u8 *>(&source), CdcSEQ,
              reinterpret_cast<u8 *>(&seq));
    EXPECT_EQ(wyeRecord.phs[PhsB].cVal.mag, 2);
    EXPECT_EQ(wyeRecord.updateCount, 1U);
    EXPECT_EQ(wyeRecord.phs[PhsB].updateCount, 0U);
    EXPECT_EQ(seq.updateCount, 1U);
    const LogLines log;
    CMV lone{};
    updateCMV(&lone, blockTime, reinterpret_cast<const u8 *>(&source), 14, nullptr);
    EXPECT_EQ(lone.cVal.mag, 2000);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "updateCMV", "No such fcdType, cannot support this fcdType: 14"),
              1);
}

TEST_F(MeasRefresh, AnInvalidValueIsStampedOnceWhileItsAngleIsClearedEachTime) {
    setWiring(1);
    refreshRt50Cycle(RefreshAll);
    CMV &phase = record<WYE>("RT.PhV").phs[PhsA];
    phase.cVal.ang = 12;
    phase.cVal.mag = 13;
    heldClockAdvance(5000);
    const u32 updates = record<WYE>("RT.PhV").updateCount;
    refreshRt50Cycle(RefreshAll);
    EXPECT_EQ(phase.cVal.ang, 0);
    EXPECT_EQ(phase.cVal.mag, 13);
    expectStamp(phase.q, phase.t, qualityInvalid, now, "still the first time");
    EXPECT_EQ(record<WYE>("RT.PhV").updateCount, updates + 1) << "neut is active in every mode";
}

TEST_F(MeasRefresh, EveryRefreshCountsWhetherOrNotTheValueMoved) {
    refreshRt50Cycle(RefreshAll);
    refreshRt50Cycle(RefreshAll);
    EXPECT_EQ(record<MV>("RT.Hz").updateCount, 2U);
    EXPECT_EQ(record<WYE>("RT.PhV").updateCount, 8U) << "three phases and neut";
    EXPECT_EQ(record<WYE>("RT.PhV").phs[PhsA].updateCount, 2U) << "its angle";
}

TEST_F(MeasRefresh, ThePassAfterAWiringChangeOnlyInvalidates) {
    refreshRt50Cycle(RefreshAll);
    refreshRtPst(RefreshAll);
    device.put<f32>(21404, 9);
    setWiring(1);
    refreshRt50Cycle(RefreshInvalidate);
    refreshRtPst(RefreshInvalidate);
    EXPECT_EQ(record<WYE>("RT.A").phs[PhsA].cVal.mag, 0) << "not copied";
    EXPECT_EQ(record<WYE>("RT.A").phs[PhsA].q, qualityGood);
    EXPECT_EQ(record<WYE>("RT.PhV").phs[PhsA].q, qualityInvalid);
    EXPECT_EQ(record<WYE>("RT.PhVPst").phs[PhsC].q, qualityInvalid);
    EXPECT_EQ(record<WYE>("RT.PPVPst").phs[PhsC].q, qualityInvalid) << "never filled in wye";
    EXPECT_EQ(record<WYE>("RT.PPVDev").phs[PhsA].q, qualityInvalid)
        << "active now, but only a refresh fills it";
}

TEST_F(MeasRefresh, HarmonicsFillTheArraysThatTheModelShows) {
    HWYE &har = record<HWYE>("RT.HPhVArr");
    Vector phaseA[5], neut[5];
    giveArray(har, PhsA, phaseA, 5);
    giveArray(har, PhsNeut, neut, 5);
    for (u32 i = 0; i < 6; i++) {
        device.put<f32>(21724 + 4 * i, static_cast<f32>(100 + i));
        device.put<f32>(23716 + 4 * i, static_cast<f32>(200 + i));
    }
    EXPECT_EQ(refreshRtHarm(RefreshAll), 1);
    for (u32 i = 0; i < 5; i++) {
        EXPECT_EQ(phaseA[i].mag, static_cast<f32>(100 + i));
        EXPECT_EQ(phaseA[i].ang, 7) << "angles are left alone";
        EXPECT_EQ(neut[i].mag, static_cast<f32>(200 + i));
    }
    expectStamp(har.q, har.t, qualityGood, blockTime, "header");
    EXPECT_EQ(har.updateCount, 4U);
    EXPECT_EQ(record<HWYE>("RT.IHPhVConArr").updateCount, 4U) << "counts without a single element";
}

TEST_F(MeasRefresh, TheLastInactiveArrayOfARecordClosesIt) {
    HWYE &har = record<HWYE>("RT.HPPVArr");
    Vector arrays[3][4];
    for (u32 i = 0; i < 3; i++) {
        giveArray(har, static_cast<WyePhase>(i), arrays[i], 4);
    }
    refreshRtHarm(RefreshAll);
    for (const auto &array : arrays) {
        EXPECT_EQ(array[3].mag, 0);
    }
    expectStamp(har.q, har.t, qualityInvalid, now, "header");
    EXPECT_EQ(har.updateCount, 3U);
    arrays[0][0].mag = 7;
    heldClockAdvance(1000);
    refreshRtHarm(RefreshAll);
    EXPECT_EQ(arrays[0][0].mag, 7) << "an invalid header is not cleared again";
    EXPECT_EQ(har.updateCount, 3U);
}

TEST_F(MeasRefresh, DemandLeavesTheFirstTwoElementsOfAnArrayAlone) {
    setWiring(1);
    Vector volt[4];
    giveArray(record<HWYE>("DMD.min.HPhVArr"), PhsA, volt, 4);
    refreshRtDemand(RefreshInvalidate);
    EXPECT_EQ(volt[1].mag, 7);
    EXPECT_EQ(volt[2].mag, 0);
    EXPECT_EQ(record<HWYE>("DMD.min.HPhVArr").q, qualityInvalid);
}

TEST_F(MeasRefresh, PulseCountersUpdateOnAChangeAndInPulseModeOnly) {
    device.putTime(16654024, 900, 7, 10);
    device.put<u16>(826 + 8 * 2, 1); // DI3 counts pulses
    device.put<u32>(16654072 + 4 * 2, 4000000000U);
    device.put<u32>(16654072, 5);
    EXPECT_EQ(refreshRtDiCnt(RefreshAll), 1);
    const BCR &counter = record<BCR>("ENG.PlsCnt3");
    EXPECT_EQ(counter.actVal, static_cast<i32>(4000000000U));
    EXPECT_EQ(counter.pulsQty, 1);
    EXPECT_EQ(counter.updateCount, 1U);
    expectStamp(counter.q, counter.t, qualityGood, {900, 7, 10}, "counter");
    EXPECT_EQ(record<BCR>("ENG.PlsCnt1").actVal, 0);
    device.putTime(16654024, 901, 0, 10);
    refreshRtDiCnt(RefreshAll);
    device.put<u32>(16654072 + 4 * 2, 1);
    refreshRtDiCnt(RefreshInvalidate);
    EXPECT_EQ(counter.updateCount, 1U);
    EXPECT_EQ(counter.t.sec, 900U);
}

TEST_F(MeasRefresh, EnergyIsInThousandsWhateverTheFileSays) {
    device.putTime(16639536, 910, 8, 10);
    device.put<u32>(16639556, 123456);
    device.put<u32>(16639740, 99);
    BCR &energy = record<BCR>("ENG.DmdWh");
    energy.units.multiplier = 6;
    EXPECT_EQ(refreshEnergy(RefreshAll), 1);
    EXPECT_EQ(refreshEnergy(RefreshAll), 1);
    EXPECT_EQ(energy.actVal, 123456);
    EXPECT_EQ(energy.units.multiplier, 3);
    EXPECT_EQ(energy.updateCount, 2U) << "also without a change";
    expectStamp(energy.q, energy.t, qualityGood, {910, 8, 10}, "energy");
    EXPECT_EQ(record<BCR>("ENG.SupVArhHt").actVal, 99);
    device.put<u32>(16639556, 1);
    refreshEnergy(RefreshInvalidate);
    EXPECT_EQ(energy.actVal, 123456);
}

// ------------------------------------------------------------------------------------ the tables

// The only rows of a table whose source is at that octet, in order.
std::vector<MeasRow> rowsAt(MeasTableId table, u32 offset) {
    std::vector<MeasRow> out;
    for (const MeasRow &row : measTable(table)) {
        if (row.srcOffset == offset) {
            out.push_back(row);
        }
    }
    return out;
}

template <class T> u8 *at(T &field) {
    return reinterpret_cast<u8 *>(&field);
}

TEST(MeasTables, TargetsAndEnclosingRecordsFollowFromTheObject) {
    const MeasRow seq = rowsAt(MeasTableId::harmImBal, 30300)[0];
    EXPECT_EQ(seq.modelAddr, at(record<SEQ>("RT.seqV").c[2]));
    EXPECT_EQ(seq.fcdAddr, at(record<SEQ>("RT.seqV")));
    EXPECT_EQ(seq.fcdType, CdcSEQ);

    const MeasRow array = rowsAt(MeasTableId::harmImBal, 26372)[0];
    EXPECT_EQ(array.modelAddr, at(record<HWYE>("RT.HAArr").har[PhsNeut]));
    EXPECT_EQ(array.fcdAddr, at(record<HWYE>("RT.HAArr")));
    EXPECT_EQ(array.fcdType, CdcHWYE);
    EXPECT_EQ(rowsAt(MeasTableId::harmImBal, 23320)[1].fcdType, CdcHDEL);

    const MeasRow value = rowsAt(MeasTableId::preDemand, 16654020)[0];
    EXPECT_EQ(value.modelAddr, at(record<MV>("DMD.pre.Hz")));
    EXPECT_EQ(value.fcdAddr, nullptr);
    EXPECT_EQ(value.fcdType, mapInner);

    const MeasRow count = rowsAt(MeasTableId::energy, 16639804 + 72 * 29)[0];
    EXPECT_EQ(count.modelAddr, at(record<BCR>("ENG.DmdVArhH31")));
    EXPECT_EQ(count.fcdType, CdcBCR);
}

// ------------------------------------------------------------------------------- faulty tables

struct Faulty {
    MeasRow row;
    const char *message;
    int active, inactive; // results of a walk
};

TEST_F(MeasRefresh, AFaultyRowEndsItsTableWithAMessage) {
    WYE target{};
    HWYE arrays{};
    MV behind{};
    u8 *const place = reinterpret_cast<u8 *>(&target);
    u8 *const array = reinterpret_cast<u8 *>(&arrays.har[0]);
    u8 *const header = reinterpret_cast<u8 *>(&arrays);
    const MeasRow good{ProtoMV, 0, reinterpret_cast<u8 *>(&behind), 0, comdata, anyWiring, mapInner, nullptr};
    const Faulty cases[] = {
        {{5, 0, place, 0, comdata, wye, 66, nullptr}, "No Such prototype in pstMeasTable!", 0, 0},
        {{ProtoCMV, 3, place, 0, comdata, wye, 10, place}, "No Such angtype in pstMeasTable!", 0, 0},
        {{ProtoArray, 0, array, 0, comdata, wye, 10, header},
         "pstMeasTable: entry model_arr_vec fcdtype error",
         0,
         1},
    };
    for (const Faulty &each : cases) {
        for (const u16 wiring : {u16{wye}, u16{delta}}) {
            const LogLines log;
            const MeasRow rows[] = {each.row, good};
            MeasPass pass{};
            pass.table = MeasTableId::pst;
            pass.arrays = pass.values = true;
            pass.wiring = wiring;
            behind.updateCount = 0;
            const int expected = wiring == wye ? each.active : each.inactive;
            EXPECT_EQ(walkMeasTable(rows, pass), expected) << each.message;
            EXPECT_EQ(behind.updateCount, static_cast<u32>(expected)) << each.message;
            EXPECT_EQ(LogLines::count("UPD", "ERR", "walkMeasTable", each.message), 1) << each.message;
            pass.stopOnWrongArray = true;
            EXPECT_EQ(walkMeasTable(rows, pass), 0) << each.message;
            pass.arrays = pass.values = false;
            EXPECT_EQ(walkMeasTable({&good, 1}, pass), 0) << "a table of components only";
        }
    }
    const LogLines log;
    EXPECT_EQ(walkPulseTable({&good, 1}, RefreshAll), 0);
    EXPECT_EQ(walkEnergyTable({&good, 1}, RefreshAll), 0);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "walkMeasTable", "No Such prototype in diCntMeasTable!"), 1);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "walkMeasTable", "No Such prototype in energyMeasTable!"), 1);
}

TEST_F(MeasRefresh, ARowWithoutSourceOrTargetEndsATable) {
    MV first{}, second{};
    const MeasRow good{ProtoMV, 0, reinterpret_cast<u8 *>(&first), 0, comdata, anyWiring, mapInner, nullptr};
    MeasRow after = good;
    after.modelAddr = reinterpret_cast<u8 *>(&second);
    for (const bool noSource : {true, false}) {
        MeasRow end = good;
        (noSource ? const_cast<u8 *&>(end.srcAddr) : end.modelAddr) = nullptr;
        const MeasRow rows[] = {good, end, after};
        MeasPass pass{};
        pass.table = MeasTableId::pst;
        pass.values = true;
        EXPECT_EQ(walkMeasTable(rows, pass), 1);
    }
    EXPECT_EQ(first.updateCount, 2U);
    EXPECT_EQ(second.updateCount, 0U);
    EXPECT_EQ(walkMeasTable({}, MeasPass{}), 1);
}

TEST_F(MeasRefresh, AMonthIsRefreshedAlone) {
    const struct {
        u32 at;
        const char *name;
        u8 month;
    } extremes[] = {{37310888, "MON.rt.now.max.PhV", 0}, {37310888 + 1472, "MON.rt.last.max.PhV", 1}};
    for (const auto &own : extremes) {
        device.put<f32>(own.at, 100.0F + own.month);
        device.putTime(own.at + 4, 1000, 5, 10);
    }
    for (const auto &own : extremes) {
        EXPECT_EQ(record<WYE>(own.name).phs[PhsA].cVal.mag, 0);
        EXPECT_EQ(refreshStatData(own.month, RefreshAll), 1);
        EXPECT_EQ(record<WYE>(own.name).phs[PhsA].cVal.mag, 100.0F + own.month);
    }
}

} // namespace
