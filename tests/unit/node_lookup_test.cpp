// Names and references of the model: finding a node, naming one, and the small text and time helpers.
#include "basicInterface/clock.h"
#include "basicInterface/itemText.h"
#include "basicInterface/memory.h"
#include "basicInterface/timeText.h"
#include "device/externGlbCfg.h"
#include "platform/platform.h"
#include "tests/support/smallModel.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

bool find(const Name &name, GenNode **node) {
    return searchNodeByObjName(name, node, nullptr, nullptr);
}

std::string repeated(const std::string &text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

TEST(NodeLookup, FindsANodeByEachFormOfItsName) {
    const SmallModel model;
    GenNode *want = model.node("Meas/MHAI1$MX$TotW$mag$f");
    GenNode *node = nullptr;
    EXPECT_TRUE(searchNodeByStr("Meas", "MHAI1$MX$TotW$mag$f", &node) && node == want);
    EXPECT_TRUE(searchNodeByFullStr("Meas/MHAI1$MX$TotW$mag$f", &node) && node == want);
    const Name name("Meas", "MHAI1$MX$TotW$mag$f");
    EXPECT_TRUE(find(name, &node) && node == want);
    u8 depth = 0;
    EXPECT_TRUE(searchNodeByOcts(&name.parts.domainId, &name.parts.itemId, &node, &depth) && node == want);
    EXPECT_EQ(depth, 4);
    EXPECT_TRUE(find(Name("Meas", "MHAI1$MX$HPhV$phsAHar$mag$f"), &node)) << "into the elements of an array";
}

TEST(NodeLookup, NamesThatLeadNowhereAreNotFound) {
    const SmallModel model;
    const std::string zero(1, '\0');
    const std::string items[] = {"",
                                 "M",
                                 "MHAI1$",
                                 "$MHAI1",
                                 "MHAI1$$MX",
                                 "MHAI",
                                 "MHAI11",
                                 "mhai1",
                                 "MHAI1" + zero,
                                 "MHAI1" + zero + "x",
                                 zero + zero,
                                 "MHAI1$MX$TotW$mag$f$x",
                                 std::string(255, 'n'),
                                 std::string(256, 'n'),
                                 std::string(70000, '$'),
                                 "MHAI1$" + std::string(300, 'n')};
    const std::string domains[] = {"Mea", "Meass", "", "Meas" + zero, std::string(3000, 'D')};
    GenNode *node = nullptr;
    for (const std::string &item : items) {
        EXPECT_FALSE(find(Name("Meas", item), &node)) << item.substr(0, 40);
    }
    for (const std::string &domain : domains) {
        EXPECT_FALSE(find(Name(domain, "MHAI1"), &node)) << domain.substr(0, 40);
    }
    Name absent("Meas", "MHAI1");
    absent.parts.itemId.octetLen = ~0U;
    EXPECT_FALSE(find(absent, &node));
    absent.name.choiceId = ObjectName::vmdSpecific;
    EXPECT_FALSE(find(absent, &node));
    EXPECT_FALSE(searchNodeByFullStr("MHAI1$MX", &node));
    EXPECT_FALSE(searchNodeByFullStr((std::string(5000, 'D') + "/MHAI1").c_str(), &node));
}

TEST(NodeLookup, AnItemTextOfMaxDepthItemsIsTooDeep) {
    SmallModel model;
    GenNode *at = model.node("Tiny/GGIO1$ST$Deep$a$b$d");
    at = model.add(at, "deeper", LevelInner, TypeInner); // the seventh item
    const LogLines log;
    GenNode *node = nullptr;
    EXPECT_TRUE(find(Name("Tiny", "GGIO1$ST$Deep$a$b$d$deeper"), &node) && node == at);
    EXPECT_FALSE(find(Name("Tiny", "GGIO1$ST$Deep$a$b$d$deeper$x"), &node));
    EXPECT_EQ(log.count("OTH", "ERR", "searchNodeByOcts", "Too deep"), 1);
    EXPECT_FALSE(searchNodeByStr("Tiny", "a$b$c$d$e$f$g$h", &node));
    EXPECT_EQ(log.count("OTH", "ERR", "searchNodeByStr", "Too deep"), 1);
    EXPECT_FALSE(searchNodeByStr("None", "a$b$c$d$e$f$g$h", &node)) << "an unknown device comes first";
    EXPECT_EQ(log.lines().size(), 2U);
}

TEST(NodeLookup, ItemsAreCutAtTheirSeparators) {
    const SmallModel model;
    char *parts[8] = {};
    EXPECT_EQ(analyseItemByStr("LLN0$ST$Mod$", parts), 4);
    EXPECT_STREQ(parts[0], "LLN0");
    EXPECT_STREQ(parts[3], "");
    for (char *part : parts) {
        Free(part);
    }
    EXPECT_EQ(analyseItemByStr("L", parts), 0);
    EXPECT_EQ(analyseItemByStr(repeated("$", 20).c_str(), parts), 8);
    for (char *part : parts) {
        Free(part);
    }
    AsnOcts octs[8] = {};
    std::string text = "ab$c";
    const AsnOcts item = ied::test::octsOver(text);
    EXPECT_EQ(analyseItemByOcts(&item, octs), 2);
    EXPECT_EQ(octs[0].octetLen, 2U);
    EXPECT_STREQ(reinterpret_cast<char *>(octs[1].octs), "c");
    Free(octs[0].octs);
    Free(octs[1].octs);
    const AsnOcts absent = {~0U, nullptr};
    EXPECT_EQ(analyseItemByOcts(&absent, octs), 0);
}

TEST(NodeLookup, ANodeNamesItself) {
    const SmallModel model;
    const std::tuple<const char *, bool, const char *> rows[] = {
        {"Meas/MHAI1$MX$TotW$mag$f", true, "Meas/MHAI1$MX$TotW$mag$f"},
        {"Meas/MHAI1$MX$TotW$mag$f", false, "MHAI1$MX$TotW$mag$f"},
        {"Meas/MHAI1", false, "MHAI1"},
        {"Meas", true, "Meas/"},
        {"Meas", false, ""}};
    char path[maxPathText];
    for (const auto &[reference, withLd, want] : rows) {
        getAllPath(model.node(reference), path, withLd);
        EXPECT_STREQ(path, want);
    }
    for (const GenNode *node : {&lds, static_cast<GenNode *>(nullptr)}) {
        getAllPath(node, path, true);
        EXPECT_STREQ(path, "");
    }
}

TEST(NodeLookup, StepsAndCounts) {
    const SmallModel model;
    EXPECT_EQ(getLdNum(), 2);
    EXPECT_STREQ(getFirstLd()->name, "Meas");
    EXPECT_EQ(childNode(nullptr), nullptr);
    EXPECT_EQ(siblingNode(nullptr), nullptr);
    EXPECT_EQ(parentNode(nullptr), nullptr);
    const GenNode *array = model.node("Meas/MHAI1$MX$HPhV$phsAHar");
    EXPECT_FALSE(hasChild(array));
    EXPECT_NE(childNode(array), nullptr);
    EXPECT_EQ(getArrNum(model.node("Meas/MHAI1$MX$HPhV$phsAHar$mag$f")), 5);
    EXPECT_EQ(getArrNum(model.node("Meas/MSTA1$ST$Hst$hstVal")), 3);
    EXPECT_EQ(getArrNum(model.node("Meas/MHAI1$MX$TotW$q")), 0);
    EXPECT_EQ(getArrNum(model.node("Tiny/GGIO1$ST$None$int8")), 0) << "no data record";
    EXPECT_EQ(getFCDNode(array), model.node("Meas/MHAI1$MX$HPhV"));
    EXPECT_EQ(getFCDNode(model.node("Meas/MHAI1$MX$HPhV")), model.node("Meas/MHAI1$MX$HPhV"));
    EXPECT_EQ(getFCDNode(model.node("Meas/MHAI1$MX")), nullptr);
    EXPECT_TRUE(isEnum32(model.node("Tiny/GGIO1$ST$Word$stVal")));
    EXPECT_TRUE(isEnum32(model.node("Tiny/LLN0$SP$Int$setVal")));
    EXPECT_FALSE(isEnum32(model.node("Tiny/LLN0$SP$Enm$setVal")));
}

TEST(ObjectNames, ReferencesHoldAHundredOctets) {
    const std::string item98(94, 'i');
    char buffer[100];
    char *out = buffer;
    Name fits("Tiny", item98);
    EXPECT_TRUE(objName2Ref(fits, false, &out));
    EXPECT_EQ(std::string(buffer), "Tiny/" + item98);
    EXPECT_FALSE(objName2Ref(Name("Tiny", item98 + "i"), false, &out));
    char *heap = nullptr;
    EXPECT_FALSE(objName2Ref(fits, false, &heap));
    ASSERT_TRUE(objName2Ref(fits, true, &heap));
    EXPECT_EQ(std::string(heap), "Tiny/" + item98);
    Free(heap);

    u8 domain[100], item[100];
    ObjectNameSeq parts = {{0, domain}, {0, item}};
    ObjectName name = {};
    name.domain_specific = &parts;
    EXPECT_TRUE(ref2ObjName(("Tiny/" + std::string(95, 'x')).c_str(), false, &name));
    EXPECT_EQ(parts.domainId.octetLen, 4U);
    EXPECT_EQ(parts.itemId.octetLen, 95U);
    EXPECT_FALSE(ref2ObjName(("Tiny/" + std::string(96, 'x')).c_str(), false, &name));
    EXPECT_FALSE(ref2ObjName("Tiny", false, &name));
    EXPECT_TRUE(ref2ObjName("a/b/c", false, &name));
    EXPECT_EQ(std::string(reinterpret_cast<char *>(item), parts.itemId.octetLen), "b/c")
        << "cut at the first";
}

TEST(ObjectNames, AgreeInChoiceLengthsAndOctets) {
    const Name a("Tiny", "LLN0$a");
    EXPECT_TRUE(objectNameCmp(a, Name("Tiny", "LLN0$a")));
    EXPECT_FALSE(objectNameCmp(a, Name("Tiny", "LLN0$b")));
    EXPECT_FALSE(objectNameCmp(a, Name("TinyL", "LN0$a")));
    Name other("Tiny", "LLN0$a");
    other.name.choiceId = ObjectName::aaSpecific;
    EXPECT_FALSE(objectNameCmp(a, other));
}

TEST(Texts, AreTrimmedAtTheLastCharacter) {
    char out[300];
    EXPECT_TRUE(trimBefore(out, "a.b.c", '.'));
    EXPECT_STREQ(out, "a.b");
    EXPECT_TRUE(trimAfter(out, "a.b.c", '.'));
    EXPECT_STREQ(out, "c");
    EXPECT_FALSE(trimBefore(out, "abc", '.'));
    EXPECT_FALSE(trimAfter(out, ".abc", '.'));
    EXPECT_EQ(getFirstCharLoc("a.b.c", '.'), 1);
    EXPECT_EQ(getLastCharLoc("a.b.c", '.'), 3);
    EXPECT_EQ(getFirstCharLoc("abc", '.'), -1);
}

TEST(Times, ElapsedTicksSurviveTheWrapAndWideIntervals) {
    externGlbCfgInit();
    heldClockStart(0, false);
    for (const u32 rate : {1U, 100U, 1000U}) {
        sysClkRateSet(rate);
        const u32 before = tickGet();
        heldClockAdvance(50 * 1000 / rate);
        const u32 ms = 50 * 1000 / rate;
        EXPECT_TRUE(isTimeOut(before, ms)) << rate;
        EXPECT_FALSE(isTimeOut(before, ms + 1000 / rate)) << rate;
    }
    // Forty days at 1000 ticks a second: a thousand times the ticks does not fit 32 bits. The tick at
    // which the counter wrapped does not count.
    const u32 day = 86400U * 1000;
    ASSERT_LT(tickGet(), 40 * day);
    EXPECT_TRUE(isTimeOut(tickGet() - 40 * day, 40 * day - 1));
    EXPECT_FALSE(isTimeOut(tickGet() - 40 * day, 40 * day));
    heldClockStop();
}

TEST(Times, AreComparedAndPrinted) {
    int order = 9;
    const TimeStamp early = {10, 5, 0}, late = {10, 7, 10}, far = {0x90000000, 0, 0};
    EXPECT_TRUE(timeStampCmp(&early, &late, &order) && order == -1);
    EXPECT_TRUE(timeStampCmp(&far, &late, &order) && order == 1) << "seconds have no sign";
    EXPECT_TRUE(timeStampCmp(&late, &late, &order) && order == 0);
    EXPECT_FALSE(timeStampCmp(nullptr, &late, &order));

    std::tm tm = {};
    tm.tm_year = 126, tm.tm_mon = 0, tm.tm_mday = 2, tm.tm_hour = 3, tm.tm_min = 4, tm.tm_sec = 5;
    AsnOcts octs = {};
    generalizeTime(&octs, &tm);
    EXPECT_EQ(std::string(reinterpret_cast<char *>(octs.octs), octs.octetLen), "20260102030405Z");
    EXPECT_EQ(tm.tm_mon, 1);
    Free(octs.octs);

    setenv("TZ", "UTC", 1);
    char text[30];
    const TimeStamp time = {86399, 7, 0};
    sprintTime(&time, sizeof text, text);
    EXPECT_STREQ(text, "1970-01-01 23:59:59.007");
}

TEST(Times, AClockThatDoesNotAnswerGivesZeroAndSaysSo) {
    externGlbCfgInit();
    const LogLines log;
    TimeStamp time = {1, 2, 3};
    fdRtc = -1;
    getTimeStamp(&time);
    EXPECT_EQ(time.sec + time.ms + time.tq, 0U);
    EXPECT_EQ(log.count("OTH", "ERR", "getTimeStamp", "Failed to get time! init it by 0"), 1);
}

} // namespace
