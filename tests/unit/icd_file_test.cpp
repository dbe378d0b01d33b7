// The instrument's SCL file: that it is what the generator writes, that the checks which find it
// sound would find a fault, that the server reads all of it without a word, and that its reports
// fit and can be triggered.

#include "model-gen/c/modelConfig.h"
#include "proto-process/c/reportModel.h"
#include "tests/support/instrumentModel.h"
#include "tests/support/serverProcess.h"

#include <cfloat>
#include <gtest/gtest.h>
#include <span>

namespace ied::test {
namespace {

const std::string tools = std::string(IED_SOURCE_DIR) + "/tools/";

auto python(const std::string &script, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"/usr/bin/env", "python3", tools + script});
    return run(arguments);
}

TEST(IcdFile, IsWhatTheGeneratorWrites) {
    const auto result = python("make_icd.py", {"--check", fullIcd()});
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST(IcdFile, IsWellFormed) {
    const auto result = run({"/usr/bin/env", "xmllint", "--noout", fullIcd()});
    if (result.status == 127) {
        GTEST_SKIP() << "no xmllint here";
    }
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST(IcdFile, PassesTheChecks) {
    const auto result = python("check_icd.py", {fullIcd()});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
}

// Every reader's remark goes to the debug log, which stands on the terminal here.
TEST(IcdFile, IsReadByTheServerWithoutARemark) {
    ServerOptions options;
    options.arguments = {"--debug", "4", "--model-pool", std::to_string(10 * 1024 * 1024 * 3 / 4)};
    ServerProcess server(options);
    ASSERT_TRUE(startServer(server));
    stop(server.process);
    const std::string text = output(server.process) + errors(server.process);
    EXPECT_NE(text.find("Model init success!"), std::string::npos) << text;
    for (const char *remark :
         {"Unknown", "Unkown", "ignore", "failed", "error", "Error", "NEVER TRIG", "][ERR]"}) {
        const std::size_t at = text.find(remark);
        EXPECT_EQ(at, std::string::npos) << text.substr(text.rfind('\n', at) + 1, 200);
    }
}

struct Fault {
    const char *name;
    const char *from;
    const char *to;
    const char *message; // a part of what the check has to say
};

class IcdFault : public testing::TestWithParam<Fault> {};

TEST_P(IcdFault, IsFound) {
    std::string text = readFile(fullIcd());
    const std::string from = GetParam().from;
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos);
    const TempFolder folder;
    writeFile(folder.path + "/faulty.icd", text.replace(at, from.size(), GetParam().to));
    const auto result = python("check_icd.py", {folder.path + "/faulty.icd"});
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_NE(result.out.find(GetParam().message), std::string::npos) << result.out;
}

INSTANTIATE_TEST_SUITE_P(
    IcdFile, IcdFault,
    testing::Values(
        Fault{"address", "sAddr=\"RT.TotW\"", "sAddr=\"RT.TotVA\"", "RT.TotW is bound by no data object"},
        Fault{"class", "sAddr=\"RT.TotW\"", "sAddr=\"RT.PhV\"", "RT.PhV is a WYE"},
        Fault{"order", "<RptEnabled max=\"8\"/>", "<RptEnabled max=\"8\"/><TrgOps/>", "out of order"},
        Fault{"attribute", "<LDevice inst=", "<LDevice ldName=\"x\" inst=", "unknown attribute ldName"},
        Fault{"required", " rptID=\"MEAS/urcbRms\"", "", "lacks the attribute rptID"},
        Fault{"member", "doName=\"TotVAr\" fc=\"MX\"", "doName=\"TotVar\" fc=\"MX\"", "unknown member"},
        Fault{"limit", "<Val>1000000</Val>", "<Val>999999</Val>", "has the limits"},
        Fault{"word", "<Val>Watts</Val>", "<Val>kWatts</Val>", "kWatts is no word of SIUnit"},
        Fault{"prefix", "prefix=\"lstMax\" lnClass=\"MSQI\"", "prefix=\"lastMax\" lnClass=\"MSQI\"",
              "MSTAT/lastMaxMSQI1: prefix and instance are too long"},
        Fault{"dataObject", "<DO name=\"ClrDmdLast\"", "<DO name=\"ClrDemLast1\"",
              "data object name ClrDemLast1 is too long"},
        Fault{"trigger", "bType=\"INT32\" dchg=\"true\" dupd=\"true\"", "bType=\"INT32\" dchg=\"true\"",
              "stVal has the triggers dchg\n"},
        Fault{"instances", "<RptEnabled max=\"8\"/>", "<RptEnabled max=\"7\"/>", "7 instances"},
        Fault{"option", "dataRef=\"true\"/>", "entryID=\"true\"/>", "urcbQual has an option of buffered"},
        Fault{"period", "datSet=\"dsRms\" intgPd=\"10000\"", "datSet=\"dsRms\" intgPd=\"4000\"",
              "urcbRms: integrity period 4000"},
        Fault{"unreported", "name=\"urcbVar\" datSet=\"dsVar\"", "name=\"urcbVar\" datSet=\"dsChk\"",
              "no unbuffered report of events"},
        Fault{"depth", "name=\"brcbTrend\" datSet=\"dsTrend\"", "name=\"brcbTrend\" datSet=\"dsRms\"",
              "report brcbTrend has room for 5 entries"},
        Fault{"private", "Private type=\"ORV_LocalConf\"", "Private type=\"LocalConf\"", "is ignored"}),
    [](const testing::TestParamInfo<Fault> &fault) { return fault.param.name; });

TEST(IcdReports, BufferedBlocksHoldTwentyEntriesAtLeast) {
    instrument();
    EXPECT_GE(gCBNum.brcbNum, 48U) << "six kinds of data for eight clients";
    const auto check = python("check_icd.py", {fullIcd(), "--figures"});
    for (const RCB &rcb : std::span(aRCBObj, gCBNum.rcbNum)) {
        if (rcb.buffered == 0) {
            continue;
        }
        EXPECT_GE(rcb.pStat->bufLen, 20U) << rcb.rcbRef;
        const std::string name = rcb.rcbRef;
        const std::size_t at = name.rfind('$') + 1; // two digits number the instances
        char figure[64];
        std::snprintf(figure, sizeof figure, "\n%-14s %10u\n", name.substr(at, name.size() - at - 2).c_str(),
                      rcb.pStat->bufLen);
        EXPECT_NE(check.out.find(figure), std::string::npos) << figure << check.out;
    }
}

TEST(IcdSettings, TextsOfEverySetpointAlarmHaveAPlace) {
    instrument();
    for (u32 i = 0; i < setPointNum; ++i) {
        const DescNodes &row = setPointDesc[i];
        ASSERT_TRUE(row.dNode != nullptr && row.dUNode != nullptr) << row.key;
        EXPECT_STREQ(row.dNode->parent->sAddr, row.key);
        EXPECT_EQ(row.dNode->nodeType, TypeVisString255) << row.key;
        EXPECT_EQ(row.dUNode->nodeType, TypeUnicode255) << row.key;
    }
}

TEST(IcdSettings, LimitsReachTheRecords) {
    instrument();
    const auto &delay = record<ING>("SET.sys.PreDmdFac");
    EXPECT_EQ(delay.minVal, 70);
    EXPECT_EQ(delay.maxVal, 99);
    EXPECT_EQ(delay.stepSize, 1);
    const auto &swell = record<ASG>("SET.sys.SwlStrVar");
    EXPECT_EQ(swell.minVal, 101);
    EXPECT_EQ(swell.maxVal, 200);
    EXPECT_EQ(swell.stepSize, 1);
    const auto &limit = record<ASG>("SET.setpoint32.UnStrVar");
    EXPECT_EQ(limit.minVal, -FLT_MAX);
    EXPECT_EQ(limit.maxVal, FLT_MAX);
    EXPECT_EQ(limit.stepSize, 0);
}

} // namespace
} // namespace ied::test
