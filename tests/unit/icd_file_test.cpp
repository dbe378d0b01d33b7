// The instrument's SCL file: that it is what the generator writes, that the checks which find it
// sound would find a fault, and that the server reads all of it without a word.

#include "tests/support/serverProcess.h"

#include <gtest/gtest.h>

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
        Fault{"private", "Private type=\"ORV_LocalConf\"", "Private type=\"LocalConf\"", "is ignored"}),
    [](const testing::TestParamInfo<Fault> &fault) { return fault.param.name; });

} // namespace
} // namespace ied::test
