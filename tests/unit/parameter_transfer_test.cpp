// Parameters on their way between the areas of the region and their records.
#include "device/addressBinding.h"
#include "device/parameterMaps.h"
#include "model-gen/c/modelConfig.h"
#include "tests/support/deviceModel.h"
#include "tests/support/smallModel.h"

#include <limits>

using namespace ied;
using namespace ied::test;

namespace {

class ParameterTransfer : public testing::Test {
  protected:
    DeviceState device;
};

template <class T> u8 *at(T &object) {
    return reinterpret_cast<u8 *>(&object);
}

// Puts the maps back that a test replaces.
struct MapsKept {
    MapsKept() { std::copy(std::begin(paraMapAddr), std::end(paraMapAddr), maps); }
    ~MapsKept() { std::copy(std::begin(maps), std::end(maps), paraMapAddr); }
    MapsKept(const MapsKept &) = delete;
    MapsKept &operator=(const MapsKept &) = delete;
    std::span<const ParaMap> maps[ParaGroupNum];
};

// ------------------------------------------------------------------------------- the transfer

struct Transfer {
    const char *sAddr;
    u16 protoType, dataType;
    u32 octets; // of the region, little end first
    f64 shown;
};

// The value of a record, by its CDC, in the instance of a functional constraint.
f64 shownValue(const Transfer &each, SettingInstance instance) {
    switch (each.protoType) {
    case CdcSPG:
        return record<SPG>(each.sAddr).setVal[instance];
    case CdcING:
        return record<ING>(each.sAddr).setVal[instance];
    case CdcASG:
        return static_cast<f64>(record<ASG>(each.sAddr).setMag[instance]);
    default:
        return record<ENG>(each.sAddr).setVal[instance];
    }
}

TEST_F(ParameterTransfer, FieldsOfEveryTypeReachTheirRecords) {
    const Transfer cases[] = {
        {"SET.sys.TransEna", CdcSPG, ParaU16, 0x0101, 1},
        {"SET.sys.TransEna", CdcSPG, ParaU8, 0xFF02, 2},
        {"SET.sys.TransEna", CdcSPG, ParaU32, 0x00000003, 3},
        {"SET.sys.TVPri", CdcING, ParaU8, 0xFFFFFF80, 128},
        {"SET.sys.TVPri", CdcING, ParaU16, 0x1234FFFF, 65535},
        {"SET.sys.TVPri", CdcING, ParaU32, 1000000, 1000000},
        {"SET.sys.TVPri", CdcING, ParaI8, 0x000000FE, -2},
        {"SET.sys.TVPri", CdcING, ParaI16, 0x0000FA60, -1440},
        {"SET.sys.TVPri", CdcING, ParaI32, 0xFFFFFFFF, -1},
        {"SET.sys.TransStrVar", CdcASG, ParaU8, 0x00000105, 5},
        {"SET.sys.TransStrVar", CdcASG, ParaU16, 0x000001F4, 500},
        {"SET.sys.TransStrVar", CdcASG, ParaU32, 70000, 70000},
        {"SET.sys.TransStrVar", CdcASG, ParaF32, 0x41280000, 10.5},
        {"SET.sys.ClcTotVA", CdcENG, ParaU16, 0x00000000, 1},
        {"SET.sys.PFSign", CdcENG, ParaU16, 0x00000002, 3},
        {"SET.sys.PFSign", CdcENG, ParaI16, 0x0000FFFF, 0},
    };
    constexpr struct {
        ParaOp op;
        SettingInstance target, other;
    } directions[] = {{ParaLiveToSG, SetSG, SetSE}, {ParaEditToSE, SetSE, SetSG}};
    for (const auto &direction : directions) {
        std::memset(protoData, 0, protoDataSize);
        for (const Transfer &each : cases) {
            device.put<u32>(704, each.octets);
            u8 *const target = protoData + resolveSAddr(each.sAddr).offset;
            const ParaMap row{each.protoType, each.dataType, target, 704, 0, 0};
            EXPECT_EQ(refreshPara(row, comdata + 704, direction.op), 1);
            EXPECT_EQ(shownValue(each, direction.target), each.shown) << each.sAddr << " " << each.dataType;
            EXPECT_EQ(shownValue(each, direction.other), 0) << each.sAddr;
            EXPECT_EQ(shownValue(each, SetSP), 0) << each.sAddr;
        }
    }
}

TEST_F(ParameterTransfer, ValuesUnderEditReachTheirFieldsAndNothingBeside) {
    const struct {
        const char *sAddr;
        u16 protoType, dataType;
        f64 edited;
        u32 octets; // of the region, which had every bit set
    } cases[] = {
        {"SET.sys.TransEna", CdcSPG, ParaU8, 1, 0xFFFFFF01},
        {"SET.sys.TransEna", CdcSPG, ParaU16, 1, 0xFFFF0001},
        {"SET.sys.TransEna", CdcSPG, ParaU32, 1, 0x00000001},
        {"SET.sys.TVPri", CdcING, ParaU8, 0x123, 0xFFFFFF23},
        {"SET.sys.TVPri", CdcING, ParaU16, 0x12345, 0xFFFF2345},
        {"SET.sys.TVPri", CdcING, ParaU32, 1000000, 1000000},
        {"SET.sys.TVPri", CdcING, ParaI8, -2, 0xFFFFFFFE},
        {"SET.sys.TVPri", CdcING, ParaI16, -1440, 0xFFFFFA60},
        {"SET.sys.TVPri", CdcING, ParaI32, -3, 0xFFFFFFFD},
        {"SET.sys.TransStrVar", CdcASG, ParaU8, 5, 0xFFFFFF05},
        {"SET.sys.TransStrVar", CdcASG, ParaU16, 500, 0xFFFF01F4},
        {"SET.sys.TransStrVar", CdcASG, ParaU32, 4294967040.0, 0xFFFFFF00},
        {"SET.sys.TransStrVar", CdcASG, ParaU32, -1, 0},
        {"SET.sys.TransStrVar", CdcASG, ParaF32, 10.5, 0x41280000},
        {"SET.sys.PFSign", CdcENG, ParaU8, 3, 0xFFFFFF03},
        {"SET.sys.PFSign", CdcENG, ParaI16, 3, 0xFFFF0003},
    };
    for (const auto &each : cases) {
        device.put<u32>(704, 0xFFFFFFFF);
        u8 *const source = protoData + resolveSAddr(each.sAddr).offset;
        edit(each.sAddr, each.edited);
        const ParaMap row{each.protoType, each.dataType, source, 704, RangeAny, RangeAny};
        EXPECT_EQ(refreshPara(row, comdata + 704, ParaSEToEdit), 1);
        EXPECT_EQ(device.get<u32>(704), each.octets) << each.sAddr << " type " << each.dataType;
    }
}

TEST_F(ParameterTransfer, AValueIsComparedBeforeItIsCutToItsField) {
    ING &setting = record<ING>("SET.sys.TVMod");
    const ParaMap row{CdcING, ParaU16, at(setting), 700, 0, 2};
    for (const i32 refused : {0x10001, -65535, 3, -1}) { // the first two look like 1 in 16 bits
        setting.setVal[SetSE] = refused;
        EXPECT_EQ(refreshPara(row, comdata + 700, ParaSEToEdit), 2) << refused;
    }
    ASG &real = record<ASG>("SET.sys.TransStrVar");
    const ParaMap realRow{CdcASG, ParaU16, at(real), 7342, 5, 500};
    constexpr f32 inf = std::numeric_limits<f32>::infinity(), nan = std::numeric_limits<f32>::quiet_NaN();
    for (const f32 refused : {65546.0F, 1e30F, -1e30F, inf, -inf, nan, 4.0F, 501.0F}) {
        real.setMag[SetSE] = refused;
        EXPECT_EQ(refreshPara(realRow, comdata + 7342, ParaSEToEdit), 2) << refused;
    }
}

TEST_F(ParameterTransfer, ASettingWithAFractionNeverReachesAFieldOfWholeNumbers) {
    ASG &setting = record<ASG>("SET.sys.TransStrVar");
    const ParaMap row{CdcASG, ParaU16, at(setting), 7342, 5, 500};
    device.put<u16>(7342, 77);
    for (const f32 fraction : {10.5F, 9.99999F, 10.00001F, -10.5F}) {
        setting.setMag[SetSE] = fraction;
        EXPECT_EQ(refreshPara(row, comdata + 7342, ParaSEToEdit), 2) << fraction;
        EXPECT_EQ(device.get<u16>(7342), 77);
    }
    setting.setMag[SetSE] = 10;
    EXPECT_EQ(refreshPara(row, comdata + 7342, ParaSEToEdit), 1);
    EXPECT_EQ(device.get<u16>(7342), 10);
}

TEST_F(ParameterTransfer, TypesThatARecordDoesNotKnowAreFaults) {
    const struct {
        u16 protoType, dataType;
        const char *message;
    } cases[] = {
        {CdcSPG, ParaI8, "No Such DataType In model_spg class!"},
        {CdcING, 256, "No Such DataType In model_ing class!"},
        {CdcING, ParaF32, "No Such DataType In model_ing class!"},
        {CdcASG, ParaI32, "No Such DataType In model_asg class!"},
        {CdcENG, ParaF32, "No Such DataType In model_eng class!"},
        {CdcMV, ParaU16, "No Such protoType!"},
    };
    for (const auto &each : cases) {
        const LogLines log;
        const ParaMap row{each.protoType, each.dataType, protoData, 700, 0, 0};
        for (const u8 op : {ParaEditToSE, ParaLiveToSG, ParaSEToEdit}) {
            EXPECT_EQ(refreshPara(row, comdata + 700, op), 0);
        }
        EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshPara", each.message), 3);
    }
}

TEST_F(ParameterTransfer, AGroupWalksItsMapAndAllWalksEveryMap) {
    const MapsKept kept;
    ING &first = record<ING>("SET.sys.TVMod"), &second = record<ING>("SET.sys.DmdNum");
    const ParaMap baseMap[] = {{CdcING, ParaU16, at(first), 700, 0, 2}};
    const ParaMap demandMap[] = {{CdcING, ParaU16, at(second), 816, 1, 15}};
    paraMapAddr[ParaBase] = baseMap;
    paraMapAddr[ParaDemand] = demandMap;
    device.put<u16>(700, 1);
    device.put<u16>(816, 7);
    EXPECT_EQ(dealParamProcess(ParaLiveToSG, nullptr, ParaDemand), 1);
    EXPECT_EQ(first.setVal[SetSG], 0);
    EXPECT_EQ(second.setVal[SetSG], 7);
    EXPECT_EQ(dealParamProcess(ParaLiveToSG, nullptr, ParaAll), 1);
    EXPECT_EQ(first.setVal[SetSG], 1);
}

TEST(ParameterTransferDeathTest, FaultsOfArgumentsAndMapsAreToldAndEndTheTask) {
    const auto deal = [](u8 op, const AsnList *list, u8 group) {
        const LogLines log;
        externGlbCfg.dbHook = [](const char *line) { std::fputs(line, stderr); };
        dealParamProcess(op, list, group);
    };
    const NodeList none({});
    const char *arguments = "\\[UPD\\]\\[ERR\\].*\\[dealParamProcess\\]\\[Input Para Error!\\]";
    EXPECT_EXIT(deal(ParaLiveToSG, nullptr, 15), testing::ExitedWithCode(0), arguments);
    EXPECT_EXIT(deal(ParaEditToSE, nullptr, ParaAll), testing::ExitedWithCode(0), arguments);
    EXPECT_EXIT(deal(ParaSEToEdit, nullptr, ParaAll), testing::ExitedWithCode(0), arguments);
    EXPECT_EXIT(deal(3, none.list, ParaAll), testing::ExitedWithCode(0), arguments);

    DeviceState device;
    GenNode known{}, unknown{};
    known.data = &record<ING>("SET.sys.TVMod");
    unknown.data = &record<ING>("SET.EngBill.LogIntv"); // no map holds it
    const NodeList knownList({&known}), unknownList({&known, &unknown});
    EXPECT_EXIT(deal(ParaEditToSE, unknownList.list, ParaAll), testing::ExitedWithCode(0),
                "\\[UPD\\]\\[ERR\\].*\\[dealParamProcess\\]\\[No Such Para!\\]");
    const MapsKept kept;
    const ParaMap wrong[] = {{CdcING, ParaF32, static_cast<u8 *>(known.data), 700, 0, 2}};
    paraMapAddr[ParaBase] = wrong;
    const char *map = "\\[UPD\\]\\[ERR\\].*\\[dealParamProcess\\]\\[Para deal error!\\]";
    EXPECT_EXIT(deal(ParaLiveToSG, nullptr, ParaBase), testing::ExitedWithCode(0), map);
    EXPECT_EXIT(deal(ParaEditToSE, knownList.list, ParaAll), testing::ExitedWithCode(0), map);
    EXPECT_EXIT(deal(ParaSEToEdit, knownList.list, ParaAll), testing::ExitedWithCode(0), map);
}

// ----------------------------------------------------------------- limits that hang on something else

// Whether the parameter's value may be committed; its field in the edit area is written.
bool commits(const std::string &sAddr) {
    const ParaMap *row = findPara(protoData + resolveSAddr(sAddr).offset);
    if (row == nullptr) {
        ADD_FAILURE() << "no parameter " << sAddr;
        return false;
    }
    return refreshPara(*row, comdata + region::editArea + row->srcOffset, ParaSEToEdit) == 1;
}

// Of the values from 0 to 9, those that the parameter may have.
std::string soundDigits(const char *sAddr) {
    std::string digits;
    for (int value = 0; value < 10; value++) {
        edit(sAddr, value);
        digits += commits(sAddr) ? std::to_string(value) : "";
    }
    return digits;
}

TEST_F(ParameterTransfer, TimeSourcesFollowTheVariantOfTheDevice) {
    const struct {
        u16 variant;
        const char *sound;
    } variants[] = {{0, "013"}, {1, "01234"}, {2, "0123456789"}};
    for (const auto &each : variants) {
        device.put<u16>(11576, each.variant);
        EXPECT_EQ(soundDigits("SET.sys.TmSrc"), each.sound) << each.variant;
    }
}

TEST_F(ParameterTransfer, ThePulseFactorFollowsTheRatedCurrentOfTheDevice) {
    edit("SET.sys.RtgVolt", 400);
    EXPECT_EQ(soundDigits("SET.sys.EngPlsFac"), "0");
    device.put<u16>(7568, 1); // 1 A
    EXPECT_EQ(soundDigits("SET.sys.EngPlsFac"), "01234");
}

TEST_F(ParameterTransfer, TwoInputsOfOneSynchronisationAreTold) {
    edit("SET.IO.DIMod4", 2);
    edit("SET.IO.DIMod6", 2);
    const LogLines log;
    EXPECT_FALSE(commits("SET.IO.DIMod4"));
    EXPECT_FALSE(commits("SET.IO.DIMod1")) << "whichever input is looked at";
    EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshPara",
                              "One more DI function para set to DI_FUNC_TIME_SYN or DI_FUNC_DEMAND_SYN!"),
              2);
}

TEST_F(ParameterTransfer, AnUnknownCheckIsToldAndFails) {
    const LogLines log;
    for (const i32 type : {0, 15, -1}) {
        const ParaMap row{CdcING, ParaU16, protoData + resolveSAddr("SET.sys.TVMod").offset, 700, type, type};
        EXPECT_EQ(refreshPara(row, comdata + 700, ParaSEToEdit), 2);
    }
    EXPECT_EQ(LogLines::count("UPD", "ERR", "refreshPara", "No such para range type!"), 3);
}

// ------------------------------------------------------------------------------ edits of a model

// A model with settings: two parameters that maps hold, one that none holds in FC SG, and the same in
// FC SP only.
class SettingEdit : public ParameterTransfer {
  protected:
    static void SetUpTestSuite() {
        const auto settingType = [](const char *id, const char *fcs) {
            std::string text = std::string("<DOType id='") + id + "' cdc='ING'>";
            for (const char *fc = fcs; *fc != '\0'; fc += 2) {
                text += "<DA name='setVal' bType='INT32' fc='" + std::string(fc, 2) + "'/>";
            }
            return text + "</DOType>";
        };
        const auto instance = [](const char *name, const char *sAddr) {
            return std::string("<DOI name='") + name + "'><DAI name='setVal' sAddr='" + sAddr + "'/></DOI>";
        };
        const TextFile file(ggioFile("<DO name='Mod' type='edited'/><DO name='Vol' type='edited'/><DO "
                                     "name='Lost' type='edited'/><DO name='Plain' type='plain'/>",
                                     settingType("edited", "SGSE") + settingType("plain", "SP"),
                                     instance("Mod", "SET.sys.TVMod") + instance("Vol", "SET.sys.RtgVolt") +
                                         instance("Lost", "SET.EngBill.LogIntv") +
                                         instance("Plain", "SET.EngBill.LogNum")));
        modelInit(file.path.c_str(), hostModelOptions.modelPool);
        modelDataInit();
    }
    ING &mode = record<ING>("SET.sys.TVMod");
    ING &volt = record<ING>("SET.sys.RtgVolt");
    const NodeList list{{nodeOf("GGIO1$SG$Mod"), nodeOf("GGIO1$SG$Vol")}};
};

TEST_F(SettingEdit, AnEditIsTakenFromTheEditAreaAndGoesBackToIt) {
    device.put<u16>(region::editArea + 700, 2);
    device.put<u16>(700, 1); // the live area plays no part
    EXPECT_EQ(dealParamProcess(ParaEditToSE, list.list, ParaAll), 1);
    EXPECT_EQ(mode.setVal[SetSE], 2);
    EXPECT_EQ(mode.setVal[SetSG], 0);
    mode.setVal[SetSE] = 0;
    volt.setVal[SetSE] = 400;
    EXPECT_EQ(dealParamProcess(ParaSEToEdit, list.list, ParaAll), 1);
    EXPECT_EQ(device.get<u16>(region::editArea + 700), 0);
    EXPECT_EQ(device.get<u16>(region::editArea + 738), 400);
    EXPECT_EQ(device.get<u16>(700), 1);
}

TEST_F(SettingEdit, AValueOutOfRangeStopsTheEditAndIsNamedByItsPath) {
    const LogLines log;
    device.put<u16>(region::editArea + 738, 230);
    mode.setVal[SetSE] = 3;
    volt.setVal[SetSE] = 400;
    EXPECT_EQ(dealParamProcess(ParaSEToEdit, list.list, ParaAll), 0);
    EXPECT_EQ(LogLines::count("UPD", "ERR", "dealParamProcess", "Error Para is QLD0/GGIO1$SG$Mod"), 1);
    EXPECT_EQ(device.get<u16>(region::editArea + 738), 230) << "what follows is not moved";
}

TEST_F(SettingEdit, ASettingThatNoMapHoldsIsNamedAtStart) {
    const LogLines log;
    nameUnmappedSettings();
    EXPECT_EQ(LogLines::count("SET", "CRI", "nameUnmappedSettings",
                              "\"QLD0/GGIO1$SG$Lost\" (sAddr \"SET.EngBill.LogIntv\") is no parameter of the "
                              "device and cannot be edited: bind it in FC SP!"),
              1);
    EXPECT_EQ(LogLines::lines().size(), 1U);
}

} // namespace
