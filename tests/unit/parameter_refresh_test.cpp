// What hangs on the parameters of the region, and the mirror's first state.
#include "device/addressBinding.h"
#include "device/measRefresh.h"
#include "device/parameterRefresh.h"
#include "device/setPointText.h"
#include "device/statusRefresh.h"
#include "model-gen/c/sclRecords.h"
#include "tests/support/deviceModel.h"
#include "tests/support/ringEvents.h"
#include "tests/support/smallModel.h"

using namespace ied;
using namespace ied::test;

namespace {

constexpr u32 utc = 2000000;
constexpr u32 DIMod = 826, DOMod = 890, trgMod = 5228, monObj = 5230; // DI and DO steps 8 and 4, setpoints 20

class ParameterRefresh : public testing::Test {
  protected:
    ParameterRefresh() : device(utc) { dataMapInit(); }
    DeviceState device;
};

// --------------------------------------------------------------------- what hangs on parameters

TEST_F(ParameterRefresh, DigitalInputsAreValidInStatusModeOnly) {
    device.put<u8>(inputStateAt, 0b00000101); // DI1 and DI3 are on
    device.put<u16>(DIMod + 8, 1);            // DI2 counts pulses
    device.put<u16>(DIMod + 16, 2);           // DI3 synchronises
    device.put<u32>(16654072 + 4, 55);
    relatedDataRefresh(true, 0);
    const TimeStamp start{utc, 0, 10};
    EXPECT_EQ(record<SPS>("ST.DI1").stVal, 1);
    EXPECT_EQ(record<SPS>("ST.DI1").q, qualityGood);
    EXPECT_EQ(record<SPS>("ST.DI1").t.sec, start.sec);
    EXPECT_EQ(record<SPS>("ST.DI3").stVal, 0);
    EXPECT_EQ(record<SPS>("ST.DI3").q, qualityInvalid);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt2").actVal, 55);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt2").pulsQty, 1);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt1").q, qualityInvalid);

    // Without a change of mode, nothing but a pulse quantity is written again.
    heldClockAdvance(5000);
    device.put<u8>(inputStateAt, 0);
    device.put<u32>(16654072 + 4, 66);
    relatedDataRefresh(false, ParaDI);
    EXPECT_EQ(record<SPS>("ST.DI1").stVal, 1);
    EXPECT_EQ(record<SPS>("ST.DI1").t.sec, start.sec);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt2").actVal, 55);

    device.put<u16>(DIMod, 1);
    device.put<u16>(DIMod + 8, 0);
    device.put<u32>(16654072, 9);
    relatedDataRefresh(false, ParaDI);
    EXPECT_EQ(record<SPS>("ST.DI1").stVal, 0);
    EXPECT_EQ(record<SPS>("ST.DI1").q, qualityInvalid);
    EXPECT_EQ(record<SPS>("ST.DI1").t.sec, utc + 5);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt1").actVal, 9);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt1").q, qualityGood);
    EXPECT_EQ(record<SPS>("ST.DI2").q, qualityGood);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt2").actVal, 0);
    EXPECT_EQ(record<BCR>("ENG.PlsCnt2").pulsQty, 0);
}

TEST_F(ParameterRefresh, DigitalOutputsAreValidUnderRemoteControlOnly) {
    device.put<u16>(outputStateAt, 0x20); // DO2 is closed
    device.put<u16>(DOMod, 3);
    relatedDataRefresh(true, 0);
    EXPECT_EQ(record<CtlObj>("CTL.DO1").q, qualityInvalid);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").stVal, 1);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").q, qualityGood);
    device.put<u16>(DOMod, 0);
    device.put<u16>(DOMod + 4, 1);
    device.put<u16>(outputStateAt, 0x10);
    relatedDataRefresh(false, ParaDO);
    EXPECT_EQ(record<CtlObj>("CTL.DO1").stVal, 1);
    EXPECT_EQ(record<CtlObj>("CTL.DO1").q, qualityGood);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").stVal, 0);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").q, qualityInvalid);
}

TEST_F(ParameterRefresh, TheRatedCurrentFollowsItsCode) {
    relatedDataRefresh(true, 0);
    device.put<u16>(7568, 1);
    relatedDataRefresh(false, relatedRatedCurrent);
    EXPECT_EQ(record<INS>("MICS.RtdCurr").stVal, 1);
    EXPECT_EQ(record<INS>("MICS.RtdI4").stVal, 1);
    device.put<u16>(7568, 2);
    relatedDataRefresh(false, ParaBase);
    EXPECT_EQ(record<INS>("MICS.RtdCurr").stVal, 1) << "another group";
    relatedDataRefresh(false, relatedRatedCurrent);
    EXPECT_EQ(record<INS>("MICS.RtdCurr").stVal, 5);
}

TEST_F(ParameterRefresh, SetpointTextsAndUnitsFollowWhatIsWatched) {
    GenNode d{}, dU{};
    d.nodeType = TypeVisString255;
    dU.nodeType = TypeUnicode255;
    std::memset(setPointDesc, 0, sizeof setPointDesc);
    setPointDesc[0].dNode = &d;
    setPointDesc[0].dUNode = &dU;
    const struct {
        u16 trgMod, monObj;
        const char *d, *dU;
        u8 unit;
    } cases[] = {
        {2, 1, "Under ULN Setpoint Active", "相电压越下限告警", 29},
        {0, 6, "Over Freq. Deviation Setpoint Active", "频率偏差越上限告警", 33},
        {1, 0, "Not Config", "越限未配置", 1},
        {3, 5, "Under I4 Setpoint Active", "零序电流越下限告警", 5},
        {1, 38, "Reverse Phase Seq Active", "逆相序告警", 1},
        {1, 39, "H2 Over U Harmonic Setpoint Active", "2次电压谐波越上限告警", 1},
        {2, 126, "H45 Under I Harmonic Setpoint Active", "45次电流谐波越下限告警", 1},
        {1, 18, "DI8 Close Active", "DI8闭合告警", 62},
        {1, 19, "Over Real Time Demand P Setpoint Active", "总有功功率实时需量越上限告警", 63},
        {1, 23, "Over Predicted Demand P Setpoint Active", "总有功功率预测需量越上限告警", 65},
        {1, 24, "Over Predicted Demand Q Setpoint Active", "总无功功率预测需量越上限告警", 1},
    };
    for (const auto &each : cases) {
        device.put<u16>(trgMod, each.trgMod);
        device.put<u16>(monObj, each.monObj);
        relatedDataRefresh(false, ParaSP);
        EXPECT_STREQ(static_cast<char *>(d.data), each.d);
        EXPECT_STREQ(static_cast<char *>(dU.data), each.dU);
        EXPECT_EQ(record<ASG>("SET.setpoint1.OvStrVar").units.SIUnit, each.unit) << each.monObj;
        EXPECT_EQ(record<ASG>("SET.setpoint1.UnStrVar").units.SIUnit, each.unit) << each.monObj;
    }
}

TEST_F(ParameterRefresh, SetpointsHaveTheUnitOfEachQuantity) {
    std::memset(setPointDesc, 0, sizeof setPointDesc);
    const u8 units[36] = {1,  29, 29, 5,  29, 5,  33, 62, 63, 65, 1, 1, 1, 1, 1, 1, 1, 1,
                          62, 63, 65, 62, 63, 65, 1,  1,  1,  1,  1, 1, 1, 1, 1, 1, 1, 1};
    for (u16 quantity = 0; quantity < 36; quantity++) {
        device.put<u16>(monObj, quantity);
        relatedDataRefresh(false, ParaSP);
        EXPECT_EQ(record<ASG>("SET.setpoint1.OvStrVar").units.SIUnit, units[quantity]) << quantity;
    }
}

TEST_F(ParameterRefresh, SetpointUnitsOfHarmonicsFollowTheFormOfHarmonics) {
    std::memset(setPointDesc, 0, sizeof setPointDesc);
    device.put<u16>(744, 1);                // voltage harmonics in volts
    device.put<u16>(746, 1);                // current harmonics in amperes
    device.put<u16>(monObj + 20 * 30, 36);  // setpoint 31
    device.put<u16>(monObj + 20 * 31, 159); // setpoint 32
    device.put<u16>(monObj, 160);
    record<ASG>("SET.setpoint1.OvStrVar").units = {77, 3};
    const LogLines log;
    relatedDataRefresh(false, ParaBase);
    EXPECT_EQ(record<ASG>("SET.setpoint31.OvStrVar").units.SIUnit, 29);
    EXPECT_EQ(record<ASG>("SET.setpoint32.UnStrVar").units.SIUnit, 5);
    EXPECT_EQ(record<ASG>("SET.setpoint1.OvStrVar").units.SIUnit, 77) << "no quantity of that number";
    EXPECT_EQ(record<ASG>("SET.setpoint1.OvStrVar").units.multiplier, 0);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "relatedDataRefresh", "SP1 Source Para Error!"), 1);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "relatedDataRefresh", "Modefy SP32 dU info failed!"), 1);
}

TEST_F(ParameterRefresh, RatedValuesAndHarmonicsFollowTheBaseParameters) {
    relatedDataRefresh(true, 0);
    device.put<u16>(738, 230);
    device.put<u16>(736, 1);
    device.put<u16>(744, 1);
    device.put<u16>(746, 1);
    relatedDataRefresh(false, ParaSP);
    EXPECT_NE(record<INS>("MICS.RtdVolt").stVal, 230) << "only with the base parameters";
    relatedDataRefresh(false, ParaBase);
    EXPECT_EQ(record<INS>("MICS.RtdVolt").stVal, 230);
    for (const char *set : {"RT", "DMD.avg", "DMD.max", "DMD.min"}) {
        for (const char *name : {"HPhVArr", "HPPVArr", "HAArr"}) {
            const HWYE &har = record<HWYE>(std::string(set) + "." + name);
            EXPECT_EQ(har.units.SIUnit, name[1] == 'A' ? 5 : 29) << set << name;
            EXPECT_EQ(har.frequency, 60) << set << name;
            EXPECT_EQ(har.evalTm, 17) << set << name;
        }
    }
    EXPECT_EQ(record<HWYE>("RT.IHPPVConArr").units.SIUnit, 29);
    EXPECT_EQ(record<HWYE>("RT.IHAConArr").units.SIUnit, 5);
    device.put<u16>(744, 2); // neither form
    device.put<u16>(746, 0);
    device.put<u16>(736, 0);
    relatedDataRefresh(false, ParaBase);
    EXPECT_EQ(record<HWYE>("RT.HPhVArr").units.SIUnit, 29);
    EXPECT_EQ(record<HWYE>("RT.HAArr").units.SIUnit, 1);
    EXPECT_EQ(record<HWYE>("RT.HAArr").frequency, 50);
    EXPECT_EQ(record<HWYE>("RT.HAArr").evalTm, 20);
}

TEST_F(ParameterRefresh, AChangeOfTheWiringModeInvalidatesAtOnce) {
    relatedDataRefresh(true, 0);
    refreshRt50Cycle(RefreshAll);
    refreshPreDemand(RefreshAll);
    EXPECT_EQ(record<WYE>("RT.PhV").phs[PhsA].q, qualityGood);
    device.put<u16>(700, 1);
    heldClockAdvance(7000);
    relatedDataRefresh(false, ParaBase);
    EXPECT_EQ(record<WYE>("RT.PhV").phs[PhsA].q, qualityInvalid);
    EXPECT_EQ(record<WYE>("RT.PhV").phs[PhsA].t.sec, utc + 7);
    EXPECT_EQ(record<WYE>("DMD.pre.W").phs[PhsB].q, qualityInvalid);
    EXPECT_EQ(record<WYE>("DMD.max.PhVDev").phs[PhsA].q, qualityInvalid);
    EXPECT_EQ(record<WYE>("MON.rt.now.min.PhV").phs[PhsA].q, qualityInvalid);
    EXPECT_EQ(record<WYE>("RT.A").phs[PhsA].q, qualityGood);
}

// -------------------------------------------------------------------------------- first state

TEST_F(ParameterRefresh, TheFirstStateShowsPlatesVersionsAndWhatNothingFeeds) {
    char name[] = "PQ1";
    IED.name = name;
    device.put<u16>(37514468, 1205);  // hardware 0.12.05
    device.put<u16>(37514470, 20314); // software 2.03.14
    device.put<u16>(37514476, 30709); // configuration: last four digits
    device.put<u32>(7576, 4711);
    device.put<u32>(37549792, 3);
    device.put<u32>(37549796, 4);
    device.put<u32>(checkWordAt, 0b10110); // battery, A/D and flash at fault
    device.putTime(checkTimeAt, 123, 4, 5);
    device.put<u16>(DIMod, 2);
    device.put<u16>(DOMod + 4, 1);
    EXPECT_EQ(locDataInit(), 0);
    IED.name = nullptr;
    EXPECT_STREQ(record<LPL>("MICS.NamPlt").vendor, "ORV");
    EXPECT_STREQ(record<LPL>("MICS.NamPlt").ldNs, "IEC 61850-7-4:2003");
    EXPECT_STREQ(record<LPL>("MICS.NamPlt").configRev, "V07.09");
    EXPECT_STREQ(record<LPL>("MICS.NamPlt").swRev, "V2.03.14");
    EXPECT_STREQ(record<DPL>("MICS.PhyNam").serNum, "0000004711");
    EXPECT_STREQ(record<DPL>("MICS.PhyNam").hwRev, "V0.12.05");
    EXPECT_STREQ(record<DPL>("MICS.PhyNam").model, "PQ1");
    EXPECT_EQ(record<CtlObj>("MICS.Mod").stVal, 1);
    EXPECT_EQ(record<SPS>("MICS.Health").stVal, 1);
    EXPECT_EQ(record<SPS>("MICS.Health").t.sec, utc);

    EXPECT_EQ(record<SPS>("ST.adFlt").stVal, 1);
    EXPECT_EQ(record<SPS>("ST.flashFlt").stVal, 1);
    EXPECT_EQ(record<SPS>("ST.flashFlt").t.sec, 123U);
    EXPECT_EQ(record<SPS>("ST.dspFlt").stVal, 0);
    EXPECT_EQ(record<SPS>("ST.batFlt").stVal, 0) << "nothing writes it";
    EXPECT_EQ(record<SPS>("ST.batFlt").q, qualityInvalid);
    EXPECT_EQ(record<SPS>("ST.DI1").q, qualityInvalid);
    EXPECT_EQ(record<SPS>("ST.DI2").q, qualityGood);
    EXPECT_EQ(record<CtlObj>("CTL.DO1").q, qualityGood);
    EXPECT_EQ(record<CtlObj>("CTL.DO2").q, qualityInvalid);
    EXPECT_EQ(record<SPS>("ST.SP32").t.sec, utc);
    EXPECT_EQ(record<INS>("RD.FltNum1").stVal, 3);
    EXPECT_EQ(record<INS>("RD.FltNum2").stVal, 4);
    EXPECT_EQ(record<SPS>("RD.RcdMade2").t.sec, utc);
    EXPECT_EQ(record<BCR>("ENG.DmdVArhH31").pulsQty, 1);

    for (const char *set : {"DMD.avg", "DMD.max", "DMD.min", "MON.rt.now.max", "MON.rt.now.min",
                            "MON.rt.last.max", "MON.rt.last.min"}) {
        const std::string prefix = set;
        for (const CMV &component : record<SEQ>(prefix + ".SeqA").c) {
            EXPECT_EQ(component.q, qualityInvalid) << prefix;
        }
        EXPECT_EQ(record<SEQ>(prefix + ".SeqV").c[2].q, qualityInvalid) << prefix;
        EXPECT_EQ(record<MV>(prefix + ".HHz").q, qualityInvalid) << prefix;
    }
    EXPECT_EQ(record<SEQ>("RT.seqA").c[0].q, qualityGood) << "a table feeds it";
}

TEST_F(ParameterRefresh, ElementsThatAreNoHarmonicsAreZero) {
    HWYE har{};
    Vector phaseA[3] = {{1, 1}, {2, 2}, {3, 3}}, neut[3] = {{1, 1}, {2, 2}, {3, 3}}, one[1] = {{1, 1}};
    har.har[PhsA] = phaseA;
    har.har[PhsNeut] = neut;
    har.numHar = 3;
    invalidHarDeal(&har, false);
    EXPECT_EQ(phaseA[0].mag, 0);
    EXPECT_EQ(phaseA[1].mag, 0);
    EXPECT_EQ(phaseA[2].mag, 3);
    EXPECT_EQ(neut[0].mag, 1) << "without a neutral";
    har.har[PhsA] = one;
    har.numHar = 1;
    invalidHarDeal(&har, true);
    EXPECT_EQ(one[0].mag, 0);
    EXPECT_EQ(neut[0].mag, 0);
}

} // namespace
