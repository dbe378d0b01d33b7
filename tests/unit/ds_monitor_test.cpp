// The change detector of data sets: how each kind of leaf is compared, and what it leaves pending.
#include "basicInterface/memory.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/dsMonitor.h"
#include "tests/support/hex.h"
#include "tests/support/sclText.h"
#include "tests/support/smallModel.h"

#include <algorithm>
#include <bit>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

// The small model with a data set of those members and the monitor of it.
class DsMonitorTest : public testing::Test {
  protected:
    ~DsMonitorTest() override { dsMonitorFree(&monitor); }

    void watch(const std::vector<std::string> &members) {
        ASSERT_TRUE(dsMonitorInit(model.dataSet("Tiny/LLN0$ds", members), &monitor));
    }
    void triggers(const std::string &reference, u8 trgOps) { model.node(reference)->trgOps = trgOps; }
    // Reasons of all entries as digits, after a compare with those triggers.
    std::string compare(u8 trgOps = TrgDchg | TrgQchg | TrgDupd) {
        std::string text = dsMonitor(&monitor, trgOps) ? "changed" : "same";
        for (u32 i = 0; i < monitor.num; ++i) {
            text += " " + hexText({&monitor.list[i].reason, 1});
        }
        return text;
    }
    void consume() {
        for (u32 i = 0; i < monitor.num; ++i) {
            monitor.list[i].reason = 0;
        }
    }

    SmallModel model;
    DsMonitor monitor{};
};

f32 ulps(f32 value, u32 steps) {
    return std::bit_cast<f32>(std::bit_cast<u32>(value) + steps);
}

constexpr const char *all = "Tiny/GGIO1$ST$All";

struct Compared {
    const char *leaf;
    u8 cmpKind;
    u8 octet; // of the place that is changed, the last one of the width
};
constexpr Compared comparedTypes[] = {
    {"boolean", 1, 0}, {"dbpos", 1, 0},   {"bits5", 1, 0},       {"trgOps", 1, 0},  {"int8", 1, 0},
    {"int8u", 1, 0},   {"optFlds", 2, 1}, {"int16", 2, 1},       {"quality", 2, 1}, {"int32", 4, 3},
    {"int32u", 4, 3},  {"float32", 4, 3}, {"enumeration", 1, 0},
};
constexpr const char *neverCompared[] = {"int16u",      "octet6",      "octet8",      "octet64",
                                         "visString32", "visString64", "visString65", "visString255",
                                         "unicode255",  "timestamp",   "entryTime"};

TEST_F(DsMonitorTest, ComparesEachTypeByItsWidthAndNeverTheRest) {
    for (const char *leaf : typedLeaves) {
        triggers(std::string(all) + "$" + leaf, TrgDchg);
    }
    triggers("Tiny/GGIO1$ST$Word$stVal", TrgDchg);
    const LogLines log;
    watch({all, "Tiny/GGIO1$ST$Word"});
    ASSERT_EQ(monitor.num, typedLeaves.size() + 1);
    ASSERT_EQ(std::size(comparedTypes) + std::size(neverCompared), typedLeaves.size());
    for (u32 i = 0; i < monitor.num; ++i) {
        MonDAI &entry = monitor.list[i];
        const std::string name = entry.leaf->name;
        const auto *row = std::find_if(std::begin(comparedTypes), std::end(comparedTypes),
                                       [&name](const Compared &c) { return name == c.leaf; });
        const bool isWord = entry.leaf == model.node("Tiny/GGIO1$ST$Word$stVal");
        const bool known = isWord || row != std::end(comparedTypes);
        EXPECT_EQ(entry.cmpKind, isWord ? 4 : known ? row->cmpKind : 255) << name;
        EXPECT_EQ(
            log.count("DAT", "CRI", "dsMonitorInit",
                      "Node \"" + std::string(all) + "$" + name + "\" dose not support dchg, NEVER TRIG!"),
            known ? 0 : 1)
            << name;
        static_cast<u8 *>(entry.leaf->data)[isWord ? 3 : known ? row->octet : 0] ^= 1;
        EXPECT_EQ(dsMonitor(&monitor, TrgDchg), known) << name;
        EXPECT_EQ(entry.reason, known ? TrgDchg : 0) << name;
        EXPECT_FALSE(dsMonitor(&monitor, TrgDchg)) << name << ": a change is seen once";
    }
}

TEST_F(DsMonitorTest, KeepsTheOrderOfMembersAndOnlyLeavesWithTriggers) {
    triggers("Tiny/GGIO1$ST$Ind1$stVal", TrgDchg);
    triggers("Tiny/GGIO1$ST$Ind1$q", TrgQchg);
    triggers("Meas/MHAI1$MX$TotW$mag$f", TrgDchg);
    triggers("Meas/MHAI1$MX$TotW$q", TrgQchg);
    watch({"Tiny/GGIO1$ST$Deep", "Meas/MHAI1$MX$TotW", "Tiny/GGIO1$ST$Ind1$q", "Tiny/GGIO1$ST$Ind1"});
    std::string text;
    for (u32 i = 0; i < monitor.num; ++i) {
        const MonDAI &entry = monitor.list[i];
        text += std::to_string(entry.memberIndex) + entry.memberNode->name + "/" + entry.leaf->name + " ";
    }
    EXPECT_EQ(text, "1TotW/f 1TotW/q 2q/q 3Ind1/stVal 3Ind1/q ");
    model.ind.q ^= 1;
    EXPECT_EQ(compare(), "changed 00 00 20 00 20") << "one leaf under two members is two entries";
}

TEST_F(DsMonitorTest, GivesALeafItsOwnTriggersButComparesOnlyWhatIsAskedFor) {
    triggers("Tiny/GGIO1$ST$Ind1$stVal", TrgDchg | TrgQchg);
    triggers("Tiny/GGIO1$ST$Ind1$q", TrgQchg);
    watch({"Tiny/GGIO1$ST$Ind1"});
    model.ind.stVal ^= 1;
    model.ind.q ^= 1;
    EXPECT_EQ(compare(TrgDupd | TrgPeriod | TrgGi), "same 00 00");
    EXPECT_EQ(compare(TrgDchg), "changed 60 00");
    EXPECT_EQ(compare(TrgQchg), "changed 60 20");
    EXPECT_EQ(compare(), "same 60 20") << "reasons wait for their consumer";
}

TEST_F(DsMonitorTest, SeesAFloatMoveByOneUnitInTheLastPlace) {
    triggers("Meas/MHAI1$MX$TotW$mag$f", TrgDchg);
    model.power.mag = 230.0F;
    watch({"Meas/MHAI1$MX$TotW"});
    model.power.mag = ulps(230.0F, 1);
    EXPECT_EQ(compare(), "changed 40");
    consume();
    model.power.mag = 0.0F;
    EXPECT_EQ(compare(), "changed 40");
    consume();
    model.power.mag = -0.0F;
    EXPECT_EQ(compare(), "changed 40") << "compared by its bits";
}

TEST_F(DsMonitorTest, CountsUpdatesByTheRecordOfTheObject) {
    triggers("Tiny/GGIO1$ST$Ind1$stVal", TrgDupd);
    triggers("Tiny/GGIO1$ST$Ind1$q", TrgQchg | TrgDupd);
    triggers("Tiny/GGIO1$ST$Ind1$t", TrgDchg | TrgDupd); // no compare, so no update either
    model.ind.updateCount = 7;
    watch({"Tiny/GGIO1$ST$Ind1"});
    EXPECT_EQ(compare(), "same 00 00 00");
    model.ind.stVal ^= 1;
    EXPECT_EQ(compare(), "same 00 00 00") << "its value alone does not count";
    model.ind.updateCount = 6;
    EXPECT_EQ(compare(TrgDchg | TrgQchg), "same 00 00 00");
    model.ind.q ^= 1;
    EXPECT_EQ(compare(), "changed 10 30 00");
    EXPECT_EQ(compare(), "same 10 30 00");
}

TEST_F(DsMonitorTest, FindsTheCounterOfEveryClassThatHasOne) {
    const u8 with[] = {CdcSPS, CdcDPS, CdcINS, CdcBCR,  CdcMV,   CdcCMV, CdcWYE,
                       CdcDEL, CdcSEQ, CdcHMV, CdcHWYE, CdcHDEL, CdcHST, CdcENS};
    alignas(8) static u8 place[8192];
    GenNode *st = model.node("Tiny/GGIO1$ST");
    std::vector<std::string> members;
    for (u8 cdc = CdcSPS; cdc <= CdcENC; ++cdc) {
        const std::string name = "Cdc" + std::to_string(cdc);
        GenNode *object = model.add(st, name.c_str(), LevelDO, cdc, place);
        model.leaf(object, "stVal", TypeBoolean, place)->trgOps = TrgDupd;
        members.push_back("Tiny/GGIO1$ST$" + name);
    }
    triggers("Tiny/GGIO1$ST$None$boolean", TrgDupd);
    members.emplace_back("Tiny/GGIO1$ST$None$boolean"); // its object has no record
    const LogLines log;
    watch(members);
    ASSERT_EQ(monitor.num, members.size());
    for (u32 i = 0; i < monitor.num; ++i) {
        const bool has =
            i + 1 < monitor.num && std::find(std::begin(with), std::end(with), i) != std::end(with);
        const std::string leaf = members[i] + (i + 1 < monitor.num ? "$stVal" : "");
        EXPECT_EQ(monitor.list[i].updCntAddr != nullptr, has) << leaf;
        EXPECT_EQ(log.count("DAT", "CRI", "dsMonitorInit",
                            "Node \"" + leaf + "\" type dose not support dupd, NEVER TRIG!"),
                  has ? 0 : 1)
            << leaf;
    }
}

TEST_F(DsMonitorTest, LeavesALeafWithoutItsCounterAloneWhileUpdatesAreAskedFor) {
    triggers("Tiny/LLN0$SP$Int$setVal", TrgDchg | TrgDupd);
    watch({"Tiny/LLN0$SP$Int"});
    model.integerSetting.setVal[SetSP]++;
    EXPECT_EQ(compare(TrgDchg | TrgDupd), "same 00");
    EXPECT_EQ(compare(TrgDchg), "changed 40");
}

TEST_F(DsMonitorTest, ComparesVectorsWithATolerance) {
    triggers("Meas/MHAI1$MX$HPhV$phsAHar", TrgDchg);
    triggers("Meas/MHAI1$MX$HPhV$phsBHar", TrgDchg);
    watch({"Meas/MHAI1$MX$HPhV"});
    ASSERT_EQ(monitor.num, 2);
    EXPECT_EQ(monitor.list[0].cmpKind, 101);
    EXPECT_EQ(monitor.list[1].cmpKind, 100);
    EXPECT_EQ(monitor.list[0].vecLen, 5);

    model.phaseA[4].mag = ulps(5, 10);
    model.phaseA[0].ang = ulps(10, 10);
    EXPECT_EQ(compare(), "same 00 00");
    model.phaseA[4].mag = ulps(5, 11);
    EXPECT_EQ(compare(), "changed 40 00") << "the copy kept the value last taken over";
    EXPECT_EQ(compare(), "same 40 00") << "a compare never wipes what waits";
    consume();
    model.phaseA[4].mag = ulps(5, 1);
    EXPECT_EQ(compare(), "same 00 00");
    model.phaseA[0].ang = ulps(10, 11);
    EXPECT_EQ(compare(), "changed 40 00");
    consume();
    model.phaseB[2].ang = 90;
    EXPECT_EQ(compare(), "same 00 00") << "magnitudes only";
    model.phaseB[0].mag = -1.5F;
    EXPECT_EQ(compare(), "changed 00 40");
}

TEST_F(DsMonitorTest, SparesVectorsThatAreNotThere) {
    triggers("Meas/MHAI1$MX$HA$phsAHar", TrgDchg); // two elements, no array
    triggers("Meas/MHAI1$MX$HA$phsBHar", TrgDchg); // not bound
    GenNode *loose = model.add(model.node("Meas/MHAI1$MX"), "HW", LevelDO, CdcHWYE);
    model.leaf(loose, "phsAHar", TypeArrayVec, &model.harmonics.har[PhsA])->trgOps = TrgDchg;
    watch({"Meas/MHAI1$MX$HA", "Meas/MHAI1$MX$HW"});
    ASSERT_EQ(monitor.num, 3);
    EXPECT_EQ(monitor.list[2].cmpKind, 255) << "no record of the object";
    model.phaseA[0].mag = 99;
    EXPECT_EQ(compare(), "same 00 00 00");
    Vector late[2] = {{0, 0}, {3, 0}};
    model.unboundArrays.har[PhsA] = late;
    EXPECT_EQ(compare(), "changed 40 00 00") << "an array that came after the start";
    model.unboundArrays.har[PhsA] = nullptr;
}

TEST_F(DsMonitorTest, IsItsConsumersOwn) {
    triggers("Tiny/GGIO1$ST$Ind1$stVal", TrgDchg);
    const DataSet *shared = model.dataSet("Tiny/LLN0$ds", {"Tiny/GGIO1$ST$Ind1"});
    DsMonitor other{};
    ASSERT_TRUE(dsMonitorInit(shared, &monitor));
    ASSERT_TRUE(dsMonitorInit(shared, &other));
    model.ind.stVal ^= 1;
    EXPECT_EQ(compare(), "changed 40");
    consume();
    EXPECT_TRUE(dsMonitor(&other, TrgDchg));
    dsMonitorFree(&other);
    EXPECT_EQ(other.num, 0);
    EXPECT_FALSE(dsMonitor(&other, TrgDchg));
}

TEST_F(DsMonitorTest, TakesAnEmptyDataSetAndRefusesNone) {
    watch({});
    EXPECT_EQ(compare(), "same");
    DsMonitor none{};
    EXPECT_FALSE(dsMonitorInit(nullptr, &none));
    logToStderr();
    EXPECT_EXIT(dsMonitor(nullptr, TrgDchg), testing::ExitedWithCode(0), "The DataSet dose not exist!");
}

} // namespace
