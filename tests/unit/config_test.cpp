// The configuration record, its table, and the command line that sets it.
#include "device/externGlbCfg.h"
#include "device/hostOptions.h"
#include "platform/platform.h"
#include "proto-process/c/settingGroup.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace ied {
namespace {

class Config : public testing::Test {
  protected:
    Config() { externGlbCfgInit(); }
    ~Config() override {
        platformOptions = {};
        hostModelOptions = {0x500000U * sizeof(void *) / 4, false};
    }
};

// Fields, octets and sum of the defaults of the numbers of each group, added up from the description
// of the record; the places follow each other without gaps but for alignment.
TEST_F(Config, TheTableHoldsEveryFieldWithItsWidthAndDefault) {
    struct Sum {
        u32 fields, octets, total;
        bool operator==(const Sum &) const = default;
    };
    std::map<int, Sum> sums;
    u32 count = 0;
    const ConfigField *fields = configFields(&count);
    std::size_t end = 0;
    for (u32 i = 0; i < count; i++) {
        const ConfigField &f = fields[i];
        const bool number = f.kind <= ConfigKind::U32;
        const u32 width = number ? 1U << static_cast<int>(f.kind) : f.kind < ConfigKind::Text ? 1 : 8;
        EXPECT_EQ(f.offset, (end + width - 1) / width * width) << f.name;
        end = f.offset + std::size_t{width} * f.count;
        Sum &sum = sums[static_cast<int>(f.group)];
        sum.fields++;
        sum.octets += number ? width : 0;
        sum.total += number ? f.init : 0;
    }
    EXPECT_EQ(end, sizeof(ExternGlbCfg));
    EXPECT_EQ(count, 78U);
    EXPECT_EQ(sums[0], (Sum{11, 35, 3150524})) << "wdgClientEnable apart";
    EXPECT_EQ(sums[1], (Sum{14, 45, 309527}));
    EXPECT_EQ(sums[2], (Sum{38, 82, 110124345}));
    EXPECT_EQ(sums[3], (Sum{6, 3, 58}));
    EXPECT_EQ(sums[4], (Sum{4, 6, 1048576}));
    EXPECT_EQ(sums[5], (Sum{5, 1, 0}));
}

TEST_F(Config, TheInitialisersWriteTheirGroupAndNothingElse) {
    std::memset(static_cast<void *>(&externGlbCfg), 0, sizeof externGlbCfg);
    libNetCfgInit();
    EXPECT_EQ(externGlbCfg.tcpPort, 102);
    EXPECT_EQ(externGlbCfg.sendBufSize, 103136U);
    const u8 services[] = {0, 1, 2, 4, 5, 6, 12, 13, 37, 65, 68, 72, 73, 74, 77, 79, 83, 84, 0xFF, 0};
    EXPECT_EQ(std::memcmp(externGlbCfg.mmsServiceParam, services, sizeof services), 0);
    EXPECT_EQ(externGlbCfg.mmsServiceParam[85], 0);
    EXPECT_EQ(externGlbCfg.tickRate, 0U);
    EXPECT_EQ(externGlbCfg.icdPath, nullptr);
    libFileCfgInit();
    EXPECT_STREQ(externGlbCfg.debugDir, "");
    EXPECT_NE(externGlbCfg.debugDir, externGlbCfg.logDir) << "a copy each";
    EXPECT_NE(externGlbCfg.logDir, externGlbCfg.sgDir);
    libModelCfgInit();
    EXPECT_STREQ(externGlbCfg.icdPath, "/tffs0/ZRX418.icd");
    EXPECT_EQ(externGlbCfg.dbLevel[15], 0);
    externGlbCfg.dbHook = [](const char *) {};
    libDebugCfgInit();
    EXPECT_EQ(externGlbCfg.dbLevel[0], 3);
    EXPECT_EQ(externGlbCfg.dbLevel[15], 3);
    EXPECT_NE(externGlbCfg.dbHook, nullptr) << "no initialiser assigns a hook";
    externGlbCfgInit();
    EXPECT_EQ(externGlbCfg.dbHook, nullptr);
}

TEST_F(Config, FieldsOfEveryKindAreSetFromText) {
    EXPECT_EQ(setConfigField("maxClientNum", "64"), nullptr);
    EXPECT_EQ(externGlbCfg.maxClientNum, 64);
    EXPECT_EQ(setConfigField("tcpPort", "0xFfFf"), nullptr);
    EXPECT_EQ(externGlbCfg.tcpPort, 65535);
    EXPECT_EQ(setConfigField("dbFileSize", "4294967295"), nullptr);
    EXPECT_EQ(externGlbCfg.dbFileSize, 4294967295U);
    EXPECT_EQ(setConfigField("debugDir", "/tffs0/dbg/"), nullptr);
    EXPECT_STREQ(externGlbCfg.debugDir, "/tffs0/dbg/");
    EXPECT_EQ(setConfigField("wdgClientEnable", "1"), nullptr);
    EXPECT_EQ(externGlbCfg.wdgClientEnable, 1);
    EXPECT_EQ(setConfigField("dbLevel", "0,1,2,3,4,5,0,1,2,3,4,5,0,1,2,0x3"), nullptr);
    EXPECT_EQ(externGlbCfg.dbLevel[5], 5);
    EXPECT_EQ(externGlbCfg.dbLevel[15], 3);
    EXPECT_EQ(setConfigField("mmsServiceParam", "1,11"), nullptr);
    const u8 expected[] = {1, 11, 0xFF, 0, 0};
    EXPECT_EQ(std::memcmp(externGlbCfg.mmsServiceParam, expected, sizeof expected), 0);
    EXPECT_EQ(setConfigField("mmsServiceParam", ""), nullptr);
    EXPECT_EQ(externGlbCfg.mmsServiceParam[0], 0xFF);
    std::string all = "4";
    for (int i = 1; i < 86; i++) {
        all += ",4";
    }
    EXPECT_EQ(setConfigField("mmsServiceParam", all.c_str()), nullptr) << "full, without an end mark";
    EXPECT_EQ(externGlbCfg.mmsServiceParam[85], 4);
}

struct Refused {
    const char *name, *value;
};

class Refusal : public testing::TestWithParam<Refused> {};

TEST_P(Refusal, NamesTheFieldAndChangesNothing) {
    externGlbCfgInit();
    ExternGlbCfg before;
    std::memcpy(static_cast<void *>(&before), &externGlbCfg, sizeof before);
    const char *message = setConfigField(GetParam().name, GetParam().value);
    ASSERT_NE(message, nullptr) << GetParam().value;
    EXPECT_EQ(std::string(message).find(GetParam().name), 0U) << message;
    EXPECT_EQ(std::memcmp(&before, &externGlbCfg, sizeof before), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Values, Refusal,
    testing::Values(Refused{"noSuchField", "1"}, Refused{"", "1"}, Refused{"dbHook", "1"},
                    Refused{"logPauseHook", "0"}, Refused{"tickRate", "0"}, Refused{"tickRate", "1001"},
                    Refused{"tickRate", "100x"}, Refused{"tickRate", ""}, Refused{"tickRate", "-1"},
                    Refused{"tickRate", " 5"}, Refused{"tickRate", "0x"}, Refused{"tickRate", "0xg"},
                    Refused{"tickRate", "4294967396"}, Refused{"tickRate", "99999999999999999999"},
                    Refused{"maxTpduSize", "7"}, Refused{"maxClientNum", "0"}, Refused{"maxClientNum", "251"},
                    Refused{"maxClientNum", "264"}, Refused{"tcpPort", "65536"}, Refused{"minRptBufNum", "0"},
                    Refused{"dbDest", "4"}, Refused{"dbLevel", "3,3"},
                    Refused{"dbLevel", "6,3,3,3,3,3,3,3,3,3,3,3,3,3,3,3"}, Refused{"mmsServiceParam", "1,,2"},
                    Refused{"mmsServiceParam", "1,2,"}, Refused{"mmsServiceParam", "256"},
                    Refused{"mmsServiceParam", "1;2"}, Refused{"icdPath", ""},
                    Refused{"sgDir",
                            "/tffs0/a-folder-name-that-leaves-no-room-for-the-name-of-a-setting-group/"}));

TEST_F(Config, EveryDefaultLiesInItsSoundRange) {
    u32 count = 0;
    const ConfigField *fields = configFields(&count);
    for (u32 i = 0; i < count; i++) {
        if (fields[i].kind <= ConfigKind::Levels) {
            EXPECT_GE(fields[i].init, fields[i].least) << fields[i].name;
            EXPECT_LE(fields[i].init, fields[i].greatest) << fields[i].name;
        }
    }
    EXPECT_EQ(checkConfig(), nullptr);
}

TEST_F(Config, ATextFieldThatCodePointsElsewhereIsNotGivenBack) {
    static const char own[] = "/tffs0/own.icd";
    externGlbCfg.icdPath = own;
    libModelCfgInit();
    EXPECT_STREQ(externGlbCfg.icdPath, "/tffs0/ZRX418.icd");
    EXPECT_STREQ(own, "/tffs0/own.icd");
}

TEST_F(Config, ASettingGroupsFileIsNamedByFolderAndBlock) {
    SGCB sg{};
    char name[] = "Set1";
    sg.name = name;
    char path[100];
    setConfigField("sgDir", "/tffs0/sg/");
    EXPECT_TRUE(genSgFileName(&sg, path));
    EXPECT_STREQ(path, "/tffs0/sg/Set1.sg");
    EXPECT_FALSE(genSgFileName(nullptr, path));
    EXPECT_FALSE(genSgFileName(&sg, nullptr));
}

// ---------------------------------------------------------------------------------- command line

struct Outcome {
    int status;
    std::string out, err;
};

Outcome options(std::initializer_list<const char *> arguments) {
    std::vector<const char *> argv{"ied-server"};
    argv.insert(argv.end(), arguments);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int status = readHostOptions(static_cast<int>(argv.size()), argv.data(), "1.2.3");
    const std::string out = testing::internal::GetCapturedStdout();
    return {status, out, testing::internal::GetCapturedStderr()};
}

TEST_F(Config, NoOptionKeepsEveryDefault) {
    ExternGlbCfg before;
    std::memcpy(static_cast<void *>(&before), &externGlbCfg, sizeof before);
    EXPECT_EQ(options({}).status, -1);
    EXPECT_EQ(std::memcmp(&before, &externGlbCfg, sizeof before), 0);
    EXPECT_EQ(platformOptions.root, "");
    EXPECT_EQ(hostModelOptions.modelPool, 0x500000 * sizeof(void *) / 4);
    EXPECT_FALSE(hostModelOptions.icdOnHost);
}

TEST_F(Config, OptionsReachTheirRecords) {
    EXPECT_EQ(options({"--icd",      "/tmp/x.icd",    "--port",         "10102",
                       "--root",     "/srv",          "--instance",     "a-1",
                       "--set",      "maxDsNum=0x15", "--model-pool",   "20000000",
                       "--bind",     "127.0.0.1",     "--debug",        "5",
                       "--realtime", "--set",         "debugDir=/a=b/", "--set",
                       "maxDsNum=22"})
                  .status,
              -1);
    EXPECT_STREQ(externGlbCfg.icdPath, "/tmp/x.icd");
    EXPECT_TRUE(hostModelOptions.icdOnHost);
    EXPECT_EQ(externGlbCfg.tcpPort, 10102);
    EXPECT_EQ(platformOptions.root, "/srv");
    EXPECT_EQ(platformOptions.instance, "a-1");
    EXPECT_EQ(sharedName("/sd_commdata"), "/sd_commdata.a-1");
    EXPECT_EQ(externGlbCfg.maxDsNum, 22U);
    EXPECT_EQ(hostModelOptions.modelPool, 20000000U);
    EXPECT_EQ(platformOptions.bindAddress, "127.0.0.1");
    EXPECT_EQ(externGlbCfg.dbDest, 1);
    EXPECT_EQ(externGlbCfg.dbLevel[7], 5);
    EXPECT_TRUE(platformOptions.realtime);
    EXPECT_STREQ(externGlbCfg.debugDir, "/a=b/");
}

TEST_F(Config, AFieldSetToADevicePathIsNoPathOfTheHost) {
    EXPECT_EQ(options({"--icd", "/tmp/x.icd", "--set", "icdPath=/tffs0/y.icd"}).status, -1);
    EXPECT_STREQ(externGlbCfg.icdPath, "/tffs0/y.icd");
    EXPECT_FALSE(hostModelOptions.icdOnHost);
}

TEST_F(Config, HelpAndVersionAreNoErrors) {
    const Outcome help = options({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("--model-pool"), std::string::npos);
    const auto line = [&help](const std::string &name) {
        const std::size_t at = help.out.find("\n  " + name + " ");
        return at == std::string::npos ? "" : help.out.substr(at + 1, help.out.find('\n', at + 1) - at - 1);
    };
    const auto ends = [&line](const std::string &name, const std::string &range) {
        EXPECT_TRUE(line(name).ends_with(" (" + range + ")")) << name << ": " << line(name);
    };
    ends("maxTpduSize", "default 1028, 8 to 65535");
    ends("dbLevel", "default 3 each, exactly 16 numbers of 0 to 5");
    ends("mmsServiceParam", "default 0,1,2,4,5,6,12,13,37,65,68,72,73,74,77,79,83,84; "
                            "up to 86 numbers of 0 to 255");
    ends("icdPath", "default \"/tffs0/ZRX418.icd\", text of 1 to 4095 characters");
    ends("debugDir", "default \"\", text of 0 to 80 characters");
    EXPECT_EQ(line("dbHook"), "") << "a hook is set by code alone";
    EXPECT_EQ(help.err, "");
    const Outcome version = options({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "ied-server 1.2.3\n");
}

struct Usage {
    std::vector<const char *> arguments;
    const char *named;
};

class UsageError : public testing::TestWithParam<Usage> {};

TEST_P(UsageError, EndsWithStatusTwoAndNamesWhatIsWrong) {
    externGlbCfgInit();
    std::vector<const char *> argv{"ied-server"};
    argv.insert(argv.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    testing::internal::CaptureStderr();
    EXPECT_EQ(readHostOptions(static_cast<int>(argv.size()), argv.data(), "1"), 2);
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_NE(message.find(GetParam().named), std::string::npos) << message;
    platformOptions = {};
}

INSTANTIATE_TEST_SUITE_P(
    CommandLines, UsageError,
    testing::Values(Usage{{"--nonsense"}, "--nonsense"}, Usage{{"stray"}, "stray"},
                    Usage{{"--port"}, "--port"}, Usage{{"--port", "0"}, "tcpPort"},
                    Usage{{"--port", "70000"}, "tcpPort"}, Usage{{"--icd", ""}, "icdPath"},
                    Usage{{"--port", ""}, "tcpPort"}, Usage{{"--set", "tickRate"}, "tickRate"},
                    Usage{{"--set", "tickRate=0"}, "tickRate"}, Usage{{"--set", "unknown=0"}, "unknown"},
                    Usage{{"--set", "dbHook=1"}, "dbHook"}, Usage{{"--debug", "6"}, "--debug"},
                    Usage{{"--bind", "localhost"}, "--bind"}, Usage{{"--instance", "a/b"}, "--instance"},
                    Usage{{"--model-pool", "10"}, "--model-pool"},
                    Usage{{"--set", "sendBufSize=1000000"}, "clientTaskStack"},
                    Usage{{"--set", "clientTaskStack=65536"}, "clientTaskStack"},
                    Usage{{"--set", "logTaskStack=65536"}, "logTaskStack"},
                    Usage{{"--set", "minRptBufNum=101"}, "minRptBufNum"}));

} // namespace
} // namespace ied
