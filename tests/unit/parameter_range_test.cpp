// Which values an edit may give a parameter, by the rows of the maps.
#include "device/parameterMaps.h"
#include "tests/support/deviceModel.h"
#include "tests/support/smallModel.h"

#include <sstream>
#include <vector>

using namespace ied;
using ied::test::DeviceState;
using ied::test::LogLines;

namespace {

// Gives the parameter that value under edit.
void edit(const std::string &sAddr, f64 value) {
    const MapPlace place = resolveSAddr(sAddr);
    u8 *const record = protoData + place.offset;
    if (place.nodeType == CdcING) {
        reinterpret_cast<ING *>(record)->setVal[SetSE] = static_cast<i32>(value);
    } else if (place.nodeType == CdcASG) {
        reinterpret_cast<ASG *>(record)->setMag[SetSE] = static_cast<f32>(value);
    } else {
        record[SetSE] = static_cast<u8>(value); // SPG and ENG begin with their values
    }
}

// Whether the parameter's value may be committed; its field in the edit area is written.
bool commits(const std::string &sAddr) {
    const ParaMap *row = findPara(protoData + resolveSAddr(sAddr).offset);
    if (row == nullptr) {
        ADD_FAILURE() << "no parameter " << sAddr;
        return false;
    }
    return refreshPara(*row, comdata + region::editArea + row->srcOffset, ParaSEToEdit) == 1;
}

// Other parameters under edit, and values of the one that pass and that fail.
struct RangeCase {
    const char *sAddr;
    std::vector<std::pair<const char *, f64>> others;
    std::vector<f64> sound, refused;
};

std::ostream &operator<<(std::ostream &out, const RangeCase &each) {
    out << each.sAddr;
    for (const auto &[name, value] : each.others) {
        out << ' ' << name << '=' << value;
    }
    return out;
}

const RangeCase cases[] = {
    {"SET.sys.RtgVolt", {}, {1, 700}, {0, 701, -1}},
    {"SET.sys.IRIGOfsTmm", {}, {-1440, 0, 1440}, {-1441, 1441, 65535 - 1440}},
    {"SET.sys.SwlStrVar", {}, {101, 200}, {100, 201, 150.5}},
    {"SET.sys.TransEna", {}, {0, 1}, {2, 255}},
    {"SET.EngBill.StrTmYear", {}, {0, 99}, {100, 256}},
    {"SET.setpoint24.MonObj", {}, {162}, {163}},
    {"SET.setpoint25.MonObj", {}, {18}, {19}},
    {"SET.setpoint7.OvStrVar", {}, {10.5, -1e30, 1e30}, {}},
    {"SET.sys.SettleTime",
     {},
     {0, 100, 123, 2800, 2823, 65535},
     {-1, 5, 23, 124, 199, 2824, 2900, 2901, 65534, 65536, 131071}},
    {"SET.wave1.MaxNumRcd", {{"SET.wave2.MaxNumRcd", 28}}, {0, 100}, {101, 129, -1, 2147483647}},
    {"SET.wave2.MaxNumRcd", {{"SET.wave1.MaxNumRcd", -1}}, {}, {0, 100}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 0}}, {2, 192}, {1, 0, -1, 193}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 1}}, {96}, {97}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 2}}, {48}, {49}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 3}}, {24}, {25}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 4}}, {12}, {13}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 5}, {"SET.wave2.SmpRat", 0}}, {2, 6}, {7, 1}},
    {"SET.wave1.PreCyc", {{"SET.wave1.SmpRat", 6}}, {2, 60000}, {1}},
    {"SET.wave2.PreCyc", {{"SET.wave2.SmpRat", 5}, {"SET.wave1.SmpRat", 0}}, {6}, {7}},
    {"SET.wave2.PreCyc", {{"SET.wave2.SmpRat", -1}}, {2, 60000}, {1}},
    {"SET.snap8.LogMod", {}, {0}, {1, -1}},
    {"SET.snap9.LogMod", {}, {0, 1}, {2, -1}},
    {"SET.snap8.LogIntv", {}, {1, 60}, {0, 61}},
    {"SET.snap9.LogIntv", {}, {1, 3456000}, {0, 3456001}},
    {"SET.snap8.OfsTm", {}, {0, 43200}, {43201, -1}},
    {"SET.snap8.var16", {}, {31}, {32}},
    {"SET.snap24.var16", {}, {1743}, {1744}},
    {"SET.sys.ClcTotVA", {}, {1, 2}, {0, 3, 255}},
    {"SET.sys.PFSign", {}, {1, 2, 3}, {0, 4, 255}},
    {"SET.sys.IntrStrVar", {{"SET.sys.DipStrVar", 90}}, {0, 50}, {-1, 51, 50.5}},
    {"SET.sys.IntrStrVar", {{"SET.sys.DipStrVar", 10}}, {9}, {10, 11}},
    {"SET.IO.DIMod3", {}, {0, 1, 2, 3}, {4, -1, 65537}},
    {"SET.IO.DIMod1", {{"SET.IO.DIMod8", 2}}, {0, 1, 3}, {2}},
    {"SET.IO.DIMod8", {{"SET.IO.DIMod2", 3}}, {0, 1, 2}, {3}},
    {"SET.IO.DIMod5", {{"SET.IO.DIMod1", 2}, {"SET.IO.DIMod2", 3}}, {0, 1}, {2, 3}},
    {"SET.sys.TransTrg1", {}, {0, 6, 31, 35}, {-1, 7, 30, 36}},
    {"SET.sys.TransTrg2", {}, {0, 6, 31, 35}, {-1, 7, 30, 36}},
    // The device at hand has a rated current of 5 A.
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 100}}, {0, 4}, {-1, 5}},
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 101}}, {0, 2}, {3}},
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 138}}, {2}, {3}},
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 139}}, {1}, {2}},
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 380}}, {1}, {2}},
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 381}}, {0}, {1}},
    {"SET.sys.EngPlsFac", {{"SET.sys.RtgVolt", 13108}}, {0, 4}, {5}}, // 65540 in 16 bits
};

class ParameterRange : public testing::TestWithParam<RangeCase> {
  protected:
    DeviceState device;
};

TEST_P(ParameterRange, HoldsAtItsEdges) {
    for (const auto &[name, value] : GetParam().others) {
        edit(name, value);
    }
    for (const f64 value : GetParam().sound) {
        edit(GetParam().sAddr, value);
        EXPECT_TRUE(commits(GetParam().sAddr)) << value;
    }
    for (const f64 value : GetParam().refused) {
        edit(GetParam().sAddr, value);
        EXPECT_FALSE(commits(GetParam().sAddr)) << value;
    }
}
INSTANTIATE_TEST_SUITE_P(Parameters, ParameterRange, testing::ValuesIn(cases));

class ParameterRangeOf : public testing::Test {
  protected:
    // Of the values from 0 to 9, those that the parameter may have.
    static std::string soundDigits(const char *sAddr) {
        std::string digits;
        for (int value = 0; value < 10; value++) {
            edit(sAddr, value);
            digits += commits(sAddr) ? std::to_string(value) : "";
        }
        return digits;
    }
    DeviceState device;
};

TEST_F(ParameterRangeOf, TwoSettingsCountFromOneWhereTheDeviceCountsFromNought) {
    for (const auto &[sAddr, offset] : {std::pair{"SET.sys.ClcTotVA", 742U}, {"SET.sys.PFSign", 740U}}) {
        edit(sAddr, 2);
        EXPECT_TRUE(commits(sAddr));
        EXPECT_EQ(device.get<u16>(region::editArea + offset), 1) << sAddr;
        edit(sAddr, 1);
        EXPECT_TRUE(commits(sAddr));
        EXPECT_EQ(device.get<u16>(region::editArea + offset), 0) << sAddr;
    }
}

TEST_F(ParameterRangeOf, TimeSourcesFollowTheVariantOfTheDevice) {
    const struct {
        u16 variant;
        const char *sound;
    } variants[] = {{0, "013"}, {1, "01234"}, {2, "0123456789"}};
    for (const auto &each : variants) {
        device.put<u16>(11576, each.variant);
        EXPECT_EQ(soundDigits("SET.sys.TmSrc"), each.sound) << each.variant;
    }
}

TEST_F(ParameterRangeOf, ThePulseFactorFollowsTheRatedCurrentOfTheDevice) {
    edit("SET.sys.RtgVolt", 400);
    EXPECT_EQ(soundDigits("SET.sys.EngPlsFac"), "0");
    device.put<u16>(7568, 1); // 1 A
    EXPECT_EQ(soundDigits("SET.sys.EngPlsFac"), "01234");
}

TEST_F(ParameterRangeOf, ASnapshotBeginsWithinItsIntervalOfTheEditArea) {
    const struct {
        u32 interval; // of snapshot group 9
        f64 sound, refused;
    } intervals[] = {{3600, 3600, 3601}, {3456000, 43200, 43201}, {65536 + 10, 10, 11}, {3600, 0, -1}};
    for (const auto &each : intervals) {
        device.put<u32>(6040 + 52 * 8, 60000);                    // in force, not under edit
        device.put<u32>(region::editArea + 6040 + 52 * 7, 60000); // of another group
        device.put<u32>(region::editArea + 6040 + 52 * 8, each.interval);
        edit("SET.snap9.OfsTm", each.sound);
        EXPECT_TRUE(commits("SET.snap9.OfsTm")) << each.interval;
        edit("SET.snap9.OfsTm", each.refused);
        EXPECT_FALSE(commits("SET.snap9.OfsTm")) << each.interval;
    }
}

TEST_F(ParameterRangeOf, TwoInputsOfOneSynchronisationAreTold) {
    edit("SET.IO.DIMod4", 2);
    edit("SET.IO.DIMod6", 2);
    const LogLines log;
    EXPECT_FALSE(commits("SET.IO.DIMod4"));
    EXPECT_FALSE(commits("SET.IO.DIMod1")) << "whichever input is looked at";
    EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshPara",
                              "One more DI function para set to DI_FUNC_TIME_SYN or DI_FUNC_DEMAND_SYN!"),
              2);
}

TEST_F(ParameterRangeOf, AnUnknownCheckIsToldAndFails) {
    const LogLines log;
    for (const i32 type : {0, 15, -1}) {
        const ParaMap row{CdcING, ParaU16, protoData + resolveSAddr("SET.sys.TVMod").offset, 700, type, type};
        EXPECT_EQ(refreshPara(row, comdata + 700, ParaSEToEdit), 2);
    }
    EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshPara", "No such para range type!"), 3);
}

} // namespace
