// The instrument's SCL file: that it is what the generator writes, that the checks which find it
// sound would find a fault, that the server reads all of it without a word, and that its reports
// fit and can be triggered.

#include "model-gen/c/modelConfig.h"
#include "proto-process/c/dataSet.h"
#include "tests/support/instrumentModel.h"
#include "tests/support/serverProcess.h"

#include <cfloat>
#include <gtest/gtest.h>
#include <set>

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

// A buffered control block, with the octets of an entry of its ring and the entries it can hold.
struct Ring {
    std::string name;
    u64 size;
    u64 depth;
};

const DataSet *dataSetOf(const ReportCfg &report) {
    DataSet *dataSet = nullptr;
    EXPECT_TRUE(searchDsByStr(report.dsName, &dataSet)) << report.name;
    return dataSet;
}

// The depth of the buffered rings: each begins with the least, and what the report memory has left
// goes to those with the smallest entries first, in equal shares to all that have one data set. No
// two data sets of the file have the same size.
std::vector<Ring> bufferedRings() {
    u64 left = (u64{externGlbCfg.rptBufSpace} << 20) * (sizeof(void *) / 4);
    std::map<u64, std::vector<Ring>> bySize;
    for (const ReportCfg &report : records<&ReportCfg::link>(ReportCfgHead)) {
        const u64 size = dataSetOf(report)->size;
        const u64 depth = report.buffered != 0 ? externGlbCfg.minRptBufNum : 5;
        EXPECT_GE(left, depth * size) << report.name;
        left -= depth * size;
        if (report.buffered != 0) {
            bySize[size].push_back({report.name, size, depth});
        }
    }
    std::vector<Ring> rings;
    for (auto &[size, same] : bySize) {
        const u64 most = externGlbCfg.maxRptBufNum - externGlbCfg.minRptBufNum;
        const u64 more = std::min<u64>(left / same.size() / size, most);
        left -= more * same.size() * size;
        for (Ring &ring : same) {
            ring.depth += more;
            rings.push_back(ring);
        }
    }
    return rings;
}

TEST(IcdReports, BufferedBlocksHoldTwentyEntriesAtLeast) {
    instrument();
    const std::vector<Ring> rings = bufferedRings();
    EXPECT_EQ(rings.size(), gCBNum.brcbNum);
    EXPECT_GE(rings.size(), 48U) << "six kinds of data for eight clients";
    const auto check = python("check_icd.py", {fullIcd(), "--figures"});
    for (const Ring &ring : rings) {
        EXPECT_GE(ring.depth, 20U) << ring.name << " with entries of " << ring.size << " octets";
        const std::size_t at = ring.name.rfind('$') + 1; // two digits number the instances
        char figure[64];
        std::snprintf(figure, sizeof figure, "\n%-14s %10u\n",
                      ring.name.substr(at, ring.name.size() - at - 2).c_str(), static_cast<u32>(ring.depth));
        EXPECT_NE(check.out.find(figure), std::string::npos) << figure << check.out;
    }
}

// Whether the change detector can compare a value of the leaf's type; it cannot an INT16U, for one.
bool isComparable(const GenNode *leaf) {
    static const std::set<u8> types = {TypeArrayVec, TypeBoolean, TypeDbpos, TypeQuality,
                                       TypeInt8,     TypeInt16,   TypeInt32, TypeInt8U,
                                       TypeInt32U,   TypeFloat32, TypeEnum};
    return types.count(leaf->nodeType) != 0;
}

bool countsUpdates(u8 cdc) {
    static const std::set<u8> classes = {CdcSPS, CdcDPS, CdcINS, CdcBCR,  CdcMV,   CdcCMV, CdcWYE,
                                         CdcDEL, CdcSEQ, CdcHMV, CdcHWYE, CdcHDEL, CdcHST, CdcENS};
    return classes.count(cdc) != 0;
}

std::vector<const GenNode *> leavesOf(const GenNode *node) {
    if (node->child == nullptr || isArray(node)) {
        return {node};
    }
    std::vector<const GenNode *> leaves;
    for (const GenNode *child = node->child; child != nullptr; child = child->sibling) {
        for (const GenNode *leaf : leavesOf(child)) {
            leaves.push_back(leaf);
        }
    }
    return leaves;
}

// What a leaf of a member has to trigger: quality its own bit, time nothing, every value a change,
// and an update where the record of its object counts them.
u8 wantedTriggers(const GenNode *leaf, u8 cdc) {
    static const std::set<std::string> values = {"stVal", "stSeld", "actVal", "mag", "cVal"};
    if (std::string(leaf->name) == "q") {
        return TrgQchg;
    }
    bool isValue = isArray(leaf);
    for (const GenNode *node = leaf; node->level > LevelDO; node = node->parent) {
        isValue = isValue || values.count(node->name) != 0;
    }
    return isValue ? static_cast<u8>(TrgDchg | (countsUpdates(cdc) ? TrgDupd : 0)) : 0;
}

TEST(IcdReports, TriggersStandOnTheRightAttributes) {
    instrument();
    for (const ReportCfg &report : records<&ReportCfg::link>(ReportCfgHead)) {
        EXPECT_NE(report.trgOps & TrgGi, 0) << report.name;
        EXPECT_EQ((report.trgOps & TrgPeriod) != 0, report.intgPd != 0) << report.name;
        const AsnListElement *element = dataSetOf(report)->nodes->first;
        for (; element != nullptr; element = element->next) {
            const auto *member = asnListValue<GenNode>(element);
            u8 found = 0;
            for (const GenNode *leaf : leavesOf(member)) {
                const std::string name = std::string(report.dsName) + " " + member->name + " " + leaf->name;
                EXPECT_EQ(leaf->trgOps, wantedTriggers(leaf, member->nodeType)) << name;
                EXPECT_TRUE(leaf->trgOps == 0 || isComparable(leaf)) << name;
                found |= leaf->trgOps;
            }
            const int events = report.trgOps & (TrgDchg | TrgQchg | TrgDupd);
            EXPECT_TRUE(events == 0 || (found & events) != 0) << report.name << " " << member->name;
        }
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
