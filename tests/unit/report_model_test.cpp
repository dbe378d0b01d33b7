// Report control blocks: their start, the division of the report memory, and who may write what.
#include "tests/support/reportTesting.h"
#include "tests/support/sclText.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

const auto ended = testing::ExitedWithCode(0);
constexpr const char *ds = "Tiny/LLN0$ds";
constexpr const char *brcb = "Tiny/LLN0$BR$brcb01";
constexpr const char *urcb = "Tiny/LLN0$RP$urcb01";

// A model with a data set of one status.
struct StatusModel : ReportModel {
    StatusModel() {
        externGlbCfg.maxRptBufNum = 8;
        status = dataSet(ds, {"Tiny/GGIO1$ST$Ind1"});
    }
    DataSet *status;
};

// The same with a buffered and an unbuffered block.
struct TwoBlocks : StatusModel {
    TwoBlocks() {
        block({.name = brcb, .dataSet = ds, .confRev = 3, .rptID = "events"});
        block({.name = urcb, .dataSet = ds});
        EXPECT_TRUE(start());
    }
    RCB &buffered() { return aRCBObj[0]; }
    RCB &unbuffered() { return aRCBObj[1]; }
};

// ---------------------------------------------------------------------------------------- start

TEST(ReportStart, TakesABlockWithinItsLimits) {
    StatusModel model;
    const LogLines log;
    RCB rcb{};
    const std::pair<u32, u32> periods[] = {
        {0, 0}, {1, 5000}, {4999, 5000}, {5000, 5000}, {86400000, 86400000}};
    for (const auto &[given, taken] : periods) {
        EXPECT_TRUE(rcbCfgInit(&rcb, model.configure({.name = brcb, .dataSet = ds, .intgPd = given})));
        EXPECT_EQ(rcb.IntgPd, taken);
    }
    EXPECT_EQ(
        log.count("RPT", "ERR", "rcbCfgInit", "IntgPd of \"Tiny/LLN0$BR$brcb01\" is smaller than 5000!"), 2);

    std::memset(&rcb, 0xEE, sizeof rcb);
    ReportCfg *cfg = model.configure(
        {.name = urcb, .dataSet = ds, .trgOps = 0x54, .optFlds = 0x7FC0, .bufTm = 70, .confRev = 0});
    ASSERT_TRUE(rcbCfgInit(&rcb, cfg));
    EXPECT_STREQ(rcb.rcbRef, urcb);
    EXPECT_STREQ(rcb.DatSet, ds);
    EXPECT_STREQ(rcb.RptID, "");
    EXPECT_EQ(rcb.pDataSet, model.status);
    EXPECT_EQ(rcb.pLd, model.node("Tiny"));
    EXPECT_EQ(rcb.ConfRev, 1U);
    EXPECT_EQ(rcb.OptFlds, 0x7CC0) << "an unbuffered block has neither overflow nor EntryID";
    EXPECT_EQ(std::tuple(rcb.TrgOps, rcb.BufTm, rcb.buffered, rcb.clientId), std::tuple(0x54, 70U, 0, 255));
    EXPECT_EQ(rcb.RptEna + rcb.Resv + rcb.SqNum + rcb.SqNum8 + rcb.GI + rcb.PurgeBuf + rcb.bufOvfl, 0);
    EXPECT_EQ(hexText(rcb.EntryID), "000000000000000000");
    EXPECT_EQ(rcb.TimeOfEntry.sec, 0U);

    cfg = model.configure({.name = brcb, .dataSet = ds, .optFlds = 0x7FC0, .rptID = std::string(70, 'r')});
    ASSERT_TRUE(rcbCfgInit(&rcb, cfg));
    EXPECT_EQ(rcb.RptID, std::string(65, 'r'));
    EXPECT_EQ(rcb.OptFlds, 0x7FC0);
    EXPECT_FALSE(rcbCfgInit(&rcb, model.configure({.name = "None/LLN0$BR$a", .dataSet = ds})));
    EXPECT_EQ(log.count("RPT", "ERR", "rcbCfgInit", "Can't find logic device \"None\"!"), 1);
}

TEST(ReportStart, EndsWithoutTheDataSet) {
    StatusModel model;
    logToStderr();
    RCB rcb{};
    const char *text = "The data set of \"Tiny/LLN0.BR.brcb01\" is not exist!";
    EXPECT_EXIT(rcbCfgInit(&rcb, model.configure({.name = brcb, .dataSet = "Tiny/LLN0$no"})), ended, text);
    EXPECT_EXIT(rcbCfgInit(&rcb, model.configure({.name = brcb, .dataSet = ""})), ended, text);
    EXPECT_EXIT(rcbCfgInit(&rcb, model.configure({.name = brcb, .dataSet = "Tiny/LLN0$no"})), ended,
                "has no DataSet \"Tiny/LLN0.no\"; add it there or change datSet");
}

TEST(ReportStart, EndsOnAConfigurationThatDoesNotFit) {
    StatusModel model;
    EXPECT_TRUE(model.start()) << "without any block";
    EXPECT_EQ(aRCBObj, nullptr);
    logToStderr();
    model.block({.name = brcb, .dataSet = ds});
    model.block({.name = urcb, .dataSet = ds});
    externGlbCfg.minRptBufNum = 9;
    EXPECT_EXIT(model.start(), ended,
                "src/proto-process/c/reportModel:1321 RPT_MAX_BUFLEN >= RPT_MIN_BUFLEN");
    externGlbCfg.minRptBufNum = 5;
    gCBNum.rcbNum = 1;
    EXPECT_EXIT(model.start(), ended, "gCBNum.rcbNum\\(1\\) error!");
}

TEST(ReportStart, FailsForABlockThatTheModelDoesNotHave) {
    for (const bool hasNode : {false, true}) {
        StatusModel model;
        const LogLines log;
        model.configure({.name = brcb, .dataSet = ds});
        if (hasNode) {
            model.add(model.add(model.node("Tiny/LLN0"), "BR", LevelFC, TypeInner), "brcb01", LevelDO,
                      TypeInner);
        }
        EXPECT_FALSE(model.start());
        EXPECT_TRUE(log.lines().empty());
    }
}

TEST(ReportStart, FailsForABlockOfAnUnknownDevice) {
    StatusModel model;
    const LogLines log;
    model.configure({.name = "None/LLN0$BR$a", .dataSet = ds});
    EXPECT_FALSE(model.start());
    EXPECT_EQ(log.count("RPT", "ERR", "rptModelInit", "Fail to init config of RCB: None/LLN0$BR$a!"), 1);
}

TEST(ReportStart, ShowsClientsEachAttributeOfItsKind) {
    TwoBlocks model;
    const LogLines log;
    RCB &b = model.buffered();
    b.SqNum = 0x1234;
    b.BufTm = 50;
    b.IntgPd = 6000;
    b.OptFlds = 0x7FC0;
    std::memcpy(b.EntryID, "\0\0\0\0\0\0\1\2", 8);
    b.TimeOfEntry = {441763200 + 86400, 258, 0};
    const std::pair<const char *, const char *> rows[] = {{"RptID", "visible events"},
                                                          {"RptEna", "bool 0"},
                                                          {"DatSet", "visible Tiny/LLN0$ds"},
                                                          {"ConfRev", "uint 3"},
                                                          {"OptFlds", "bits 10:7FC0"},
                                                          {"BufTm", "uint 50"},
                                                          {"SqNum", "uint 4660"},
                                                          {"TrgOps", "bits 6:7C"},
                                                          {"IntgPd", "uint 6000"},
                                                          {"GI", "bool 0"},
                                                          {"PurgeBuf", "bool 0"},
                                                          {"EntryID", "octets 0000000000000102"},
                                                          {"TimeOfEntry", "btime 000001020001"}};
    for (const auto &[attribute, value] : rows) {
        EXPECT_EQ(model.read(b, attribute), value) << attribute;
    }
    const GenNode *node = model.node(brcb);
    EXPECT_EQ(node->nodeType, 30);
    EXPECT_EQ(node->data, &b);
    EXPECT_EQ(model.node(std::string(brcb) + "$SqNum")->nodeType, 51);
    EXPECT_EQ(model.node(std::string(urcb) + "$SqNum")->nodeType, 50);
    model.unbuffered().SqNum8 = 200;
    model.unbuffered().SqNum = 5;
    model.unbuffered().Resv = 1;
    EXPECT_EQ(model.read(model.unbuffered(), "SqNum"), "uint 200");
    EXPECT_EQ(model.read(model.unbuffered(), "Resv"), "bool 1");

    GenNode *other = model.leaf(model.node(urcb), "Owner", TypeOctet64);
    mapRCB2Model(&model.unbuffered(), model.node(urcb));
    EXPECT_EQ(other->data, nullptr);
    EXPECT_EQ(log.count("RPT", "ERR", "mapRCB2Model", "Unkonwn attribute \"Owner\"!"), 1);
}

// ---------------------------------------------------------------------------------- the memory

// Six BRCBs and a URCB on data sets of 100 (a), 40 (b), 40 (c) and 300 (d) octets; 5 to 20 entries.
class ReportMemory : public testing::Test {
  protected:
    ReportMemory() {
        externGlbCfgInit();
        externGlbCfg.minRptBufNum = 5;
        externGlbCfg.maxRptBufNum = 20;
        a.size = 100;
        b.size = c.size = 40;
        d.size = 300;
        DataSet *const sets[] = {&a, &a, &b, &c, &b, &a, &d};
        for (u32 i = 0; i < 7; ++i) {
            std::snprintf(blocks[i].rcbRef, sizeof blocks[i].rcbRef, "block%u", i);
            blocks[i].buffered = i != 0;
            blocks[i].pDataSet = sets[i];
        }
        aRCBObj = blocks;
        gCBNum.rcbNum = 7;
        gCBNum.brcbNum = 6;
    }
    ~ReportMemory() override {
        aRCBObj = nullptr;
        gCBNum = {};
    }
    std::string divide(u32 limit) {
        std::string text;
        EXPECT_TRUE(rptBufLenInit(limit));
        for (const RCB &rcb : blocks) {
            text += std::to_string(rcb.bufLen) + " ";
        }
        return text;
    }
    DataSet a{}, b{}, c{}, d{};
    RCB blocks[7]{};
};

TEST_F(ReportMemory, GoesToSmallDataSetsFirst) {
    const LogLines log;
    // 3600 of 6000 are spoken for. The two on b: 2400/2/40 = 30 each, held to 15; 1200 are left. The
    // one on c likewise; 600 are left. The two on a: 600/2/100 = 3 each; nothing is left for d.
    EXPECT_EQ(divide(6000), "5 8 20 20 20 8 5 ");
    EXPECT_EQ(log.count("RPT", "DBG", "rptBufLenInit", "The min BRCB is: block2, data set size is 40!"), 1);
    EXPECT_EQ(log.count("RPT", "DBG", "rptBufLenInit", "The min BRCB is: block3, data set size is 40!"), 1);
    EXPECT_EQ(log.count("RPT", "DBG", "rptBufLenInit", "The min BRCB is: block1, data set size is 100!"), 1);
    EXPECT_EQ(log.count("RPT", "DBG", "rptBufLenInit", "The min BRCB is: block6, data set size is 300!"), 1);
    EXPECT_EQ(log.count("RPT", "INF", "rptBufLenInit", "Buf len of \"block5\" is 8!"), 1);
    EXPECT_EQ(log.count("RPT", "INF", "rptBufLenInit", "Buf len of \"block0\" is 5!"), 0);
    EXPECT_EQ(log.count("RPT", "INF", "rptBufLenInit",
                        "Mem limit of rpt is 6000, mem used is 6000, mem used by URCB is 500!"),
              1);
    // 599/2/100 = 2 each for a, and the 199 left are none for d.
    EXPECT_EQ(divide(5999), "5 7 20 20 20 7 5 ");
    // After a's 3 (2 x 15 would take 3000) d gets 1: 5400 + 2 x 15 x 100 + 300.
    EXPECT_EQ(divide(8700), "5 20 20 20 20 20 6 ");
    EXPECT_EQ(divide(UINT32_MAX), "5 20 20 20 20 20 20 ");
    // 79 more are not one entry for both of b, and the walk ends there though c could have one.
    EXPECT_EQ(divide(3679), "5 5 5 5 5 5 5 ");
    EXPECT_EQ(divide(3680), "5 5 6 5 6 5 5 ");
    externGlbCfg.maxRptBufNum = 5;
    EXPECT_EQ(divide(6000), "5 5 5 5 5 5 5 ");
}

TEST_F(ReportMemory, EndsTheStartWhenTheLeastDoesNotFit) {
    EXPECT_EQ(divide(3600), "5 5 5 5 5 5 5 ");
    logToStderr();
    EXPECT_EXIT(rptBufLenInit(3599), ended,
                "Mem limit\\(3599\\) for rpt buf is too small, need 3600, URCB need 500!");
    EXPECT_EXIT(rptBufLenInit(3599), ended, "need 3600 octets of 3599: raise rptBufSpace");
}

// --------------------------------------------------------------------------------------- writes

using Value = Data *(*)();
template <u32 n> Data *numberOf() {
    return heapNumber(Data::unsignedInt, n);
}
template <bool on> Data *flagOf() {
    return heapNumber(Data::boolean, on ? 1 : 0);
}
Data *zeroEntry() {
    return heapData(Data::octetString, std::string(8, '\0'));
}
Data *someText() {
    return heapData(Data::visibleString, "text");
}
Data *someTime() {
    return heapData(Data::binaryTime, std::string(6, '\1'));
}
Data *options() {
    return heapBits(10, "\x7F\xC0");
}
Data *triggers() {
    return heapBits(6, "\xFC");
}

// What the owner, or anyone while there is none, is answered: -1 or an error.
struct WriteRow {
    const char *attribute;
    Value value;
    int bFree, bEnabled, uFree, uReserved, uEnabled;
};
constexpr WriteRow writeRows[] = {
    {"RptEna", flagOf<true>, -1, -1, -1, -1, -1},
    {"RptEna", flagOf<false>, -1, -1, -1, -1, -1},
    {"Resv", flagOf<true>, 10, 10, -1, -1, 2},
    {"Resv", flagOf<false>, 10, 10, -1, -1, 2},
    {"DatSet", someText, 3, 3, 3, 3, 3},
    {"OptFlds", options, -1, 2, -1, -1, 2},
    {"TrgOps", triggers, -1, 2, -1, -1, 2},
    {"BufTm", numberOf<3600000>, -1, 2, -1, -1, 2},
    {"BufTm", numberOf<3600001>, 11, 2, 11, 11, 2},
    {"IntgPd", numberOf<0>, -1, 2, -1, -1, 2},
    {"IntgPd", numberOf<5000>, -1, 2, -1, -1, 2},
    {"IntgPd", numberOf<4999>, 11, 2, 11, 11, 2},
    {"GI", flagOf<true>, 2, -1, 2, 2, -1},
    {"GI", flagOf<false>, 2, -1, 2, 2, -1},
    {"PurgeBuf", flagOf<true>, -1, 2, 10, 10, 10},
    {"EntryID", zeroEntry, 11, 2, 10, 10, 10}, // nothing is buffered
    {"TimeOfEntry", someTime, 3, 3, 10, 10, 10},
    {"ConfRev", numberOf<1>, 3, 3, 3, 3, 3},
    {"SqNum", numberOf<1>, 3, 3, 3, 3, 3},
    {"RptID", someText, 3, 3, 3, 3, 3},
    {"Owner", someText, 10, 10, 10, 10, 10},
};

TEST(ReportWrites, FollowTheTableOfAttributes) {
    TwoBlocks model;
    const LogLines log;
    RCB &b = model.buffered();
    RCB &u = model.unbuffered();
    for (const char *reference : {brcb, urcb}) {
        model.leaf(model.node(reference), "Owner", TypeOctet64);
    }
    for (const WriteRow &row : writeRows) {
        const auto expect = [&](RCB &rcb, const char *state, int error) {
            EXPECT_EQ(model.write(rcb, row.attribute, row.value(), 4), error)
                << row.attribute << " of " << rcb.rcbRef << ", " << state;
            model.flag(rcb, "RptEna", true, 4);
            EXPECT_EQ(model.write(rcb, row.attribute, row.value(), 1), 3)
                << row.attribute << " of " << rcb.rcbRef << " by another client";
            releaseClientRCB(4);
        };
        expect(b, "free", row.bFree);
        expect(u, "free", row.uFree);
        model.flag(u, "Resv", true, 4);
        expect(u, "reserved", row.uReserved);
        for (const auto &[rcb, error] : {std::pair(&b, row.bEnabled), std::pair(&u, row.uEnabled)}) {
            model.flag(*rcb, "RptEna", true, 4);
            expect(*rcb, "enabled", error);
        }
    }
    EXPECT_EQ(log.count("RPT", "ERR", "setRCBValues", "Tiny/LLN0$BR$brcb01 is used by client4!"),
              2 * static_cast<int>(std::size(writeRows)));
    EXPECT_EQ(log.count("RPT", "ERR", "setRCBValues", "Unknown attribute Owner!"), 5);
}

TEST(ReportWrites, AreMaskedAndClamped) {
    TwoBlocks model;
    for (RCB *rcb : {&model.buffered(), &model.unbuffered()}) {
        model.write(*rcb, "OptFlds", heapBits(10, "\xFF\xFF"));
        EXPECT_EQ(model.read(*rcb, "OptFlds"), rcb->buffered != 0 ? "bits 10:7FC0" : "bits 10:7CC0");
        model.write(*rcb, "TrgOps", triggers());
        EXPECT_EQ(model.read(*rcb, "TrgOps"), "bits 6:7C");
        model.number(*rcb, "BufTm", 3600001);
        EXPECT_EQ(model.read(*rcb, "BufTm"), "uint 3600000");
        model.number(*rcb, "BufTm", 20);
        EXPECT_EQ(model.read(*rcb, "BufTm"), "uint 20");
        model.number(*rcb, "IntgPd", 4999);
        EXPECT_EQ(model.read(*rcb, "IntgPd"), "uint 5000");
        model.number(*rcb, "IntgPd", 0);
        EXPECT_EQ(model.read(*rcb, "IntgPd"), "uint 0");
        model.flag(*rcb, "RptEna", true);
        EXPECT_EQ(model.number(*rcb, "BufTm", 3600001), 2);
        EXPECT_EQ(model.number(*rcb, "IntgPd", 1), 2);
        EXPECT_EQ(rcb->BufTm, 20U) << "a locked attribute is not clamped either";
        EXPECT_EQ(rcb->IntgPd, 0U);
        EXPECT_EQ(model.flag(*rcb, "GI", true), -1);
        EXPECT_EQ(model.read(*rcb, "GI"), "bool 1");
        model.flag(*rcb, "RptEna", false);
        model.write(*rcb, "TrgOps", heapBits(6, "\x40"));
        model.flag(*rcb, "RptEna", true);
        EXPECT_EQ(model.flag(*rcb, "GI", true), 2) << "the block does no general interrogation";
        EXPECT_EQ(model.flag(*rcb, "GI", false), -1);
        EXPECT_EQ(model.read(*rcb, "GI"), "bool 0");
    }
}

TEST(ReportWrites, AreRefusedWhereTheConfigurationSaysSo) {
    TwoBlocks model;
    externGlbCfg.rptOptFldsWritable = externGlbCfg.rptTrgOpsWritable = 0;
    externGlbCfg.rptBufTmWritable = externGlbCfg.rptIntgPdWritable = 0;
    RCB &u = model.unbuffered();
    for (const bool enabled : {false, true}) {
        model.flag(u, "RptEna", enabled);
        EXPECT_EQ(model.write(u, "OptFlds", options()), 3);
        EXPECT_EQ(model.write(u, "TrgOps", triggers()), 3);
        EXPECT_EQ(model.number(u, "BufTm", 3600001), 3);
        EXPECT_EQ(model.number(u, "IntgPd", 1), 3);
    }
    EXPECT_EQ(u.BufTm + u.IntgPd, 0U);
}

TEST(ReportWrites, GoToOneAttributeOfAMappedBlock) {
    TwoBlocks model;
    const LogLines log;
    i8 error = DaeNone;
    HeapData value;
    EXPECT_FALSE(setRCBValues(&value.data, model.node(brcb), &error, 0));
    EXPECT_EQ(error, 3);
    EXPECT_EQ(log.count("RPT", "ERR", "setRCBValues", "\"Tiny/LLN0$BR$brcb01\" layer is invalid!"), 1);
    GenNode *loose = model.blockNode("Tiny/LLN0$BR$loose");
    error = DaeNone;
    EXPECT_FALSE(setRCBValues(&value.data, loose->child, &error, 0));
    EXPECT_EQ(error, 3);
    EXPECT_EQ(log.count("RPT", "ERR", "setRCBValues", "RCB \"Tiny/LLN0$BR$loose$RptID\" is not mapped!"), 1);
    EXPECT_EQ(model.write(model.buffered(), "EntryID", someText()), 11) << "no octet string";
    model.buffered().pDataSet = nullptr;
    EXPECT_EQ(model.flag(model.buffered(), "RptEna", true), 3);
    model.buffered().pDataSet = model.status;
    model.buffered().DatSet[0] = '\0';
    EXPECT_EQ(model.flag(model.buffered(), "RptEna", true), 3);
}

// Owner, RptEna and Resv, as "4:1/0", "-" for no owner.
std::string stateOf(const RCB &rcb) {
    return (rcb.clientId == 255 ? "-" : std::to_string(rcb.clientId)) + ":" + std::to_string(rcb.RptEna) +
           "/" + std::to_string(rcb.Resv);
}

TEST(ReportOwner, ComesAndGoesWithTheWrites) {
    TwoBlocks model;
    const LogLines log;
    RCB &b = model.buffered();
    RCB &u = model.unbuffered();
    const auto logged = [&log](const char *what, const char *function = "setRCBValues") {
        return log.count("RPT", "INF", function, what + std::string(" RCB \"Tiny/LLN0$RP$urcb01\"!"));
    };
    EXPECT_EQ(stateOf(b) + " " + stateOf(u), "-:0/0 -:0/0");
    model.flag(u, "RptEna", false, 4);
    model.flag(u, "Resv", false, 4);
    EXPECT_EQ(stateOf(u), "-:0/0") << "a 0 makes nobody owner";
    model.flag(u, "Resv", true, 4);
    EXPECT_EQ(stateOf(u), "4:0/1");
    model.flag(u, "RptEna", false, 4);
    EXPECT_EQ(stateOf(u), "4:0/1") << "no change, no release";
    model.flag(u, "Resv", false, 4);
    EXPECT_EQ(stateOf(u), "-:0/0");
    EXPECT_EQ(logged("Release"), 1);
    model.flag(u, "Resv", true, 4);
    model.flag(u, "RptEna", true, 4);
    model.flag(u, "RptEna", true, 4);
    EXPECT_EQ(stateOf(u), "4:1/1");
    EXPECT_EQ(logged("Enable"), 1);
    model.flag(u, "RptEna", false, 4);
    EXPECT_EQ(stateOf(u), "-:0/0") << "the reservation goes too";
    EXPECT_EQ(logged("Release"), 2);
    model.flag(u, "RptEna", true, 2);
    EXPECT_EQ(stateOf(u), "2:1/1");
    model.flag(b, "RptEna", true, 4);
    EXPECT_EQ(stateOf(b), "4:1/0");
    releaseClientRCB(2);
    EXPECT_EQ(stateOf(u) + " " + stateOf(b), "-:0/0 4:1/0");
    EXPECT_EQ(logged("Release"), 2);
    EXPECT_EQ(logged("Release", "releaseClientRCB"), 1);
    model.flag(b, "RptEna", false, 4);
    EXPECT_EQ(stateOf(b), "-:0/0");
}

TEST(ReportOwner, StartsTheSequenceUnlessItVanished) {
    TwoBlocks model;
    RCB &b = model.buffered();
    RCB &u = model.unbuffered();
    const auto enable = [&] {
        model.flag(b, "RptEna", true);
        model.flag(u, "RptEna", true);
    };
    enable();
    b.SqNum = 7;
    u.SqNum8 = 8;
    u.pStat->writeCount = 5;
    u.pStat->sendCount = 4;
    b.pStat->writeCount = 5;
    releaseClientRCB(0);
    enable();
    EXPECT_EQ(std::tuple(b.SqNum, u.SqNum8, u.pStat->writeCount, u.pStat->sendCount),
              std::tuple(7, 8, 5U, 4U));
    model.flag(b, "RptEna", false);
    model.flag(u, "RptEna", false);
    EXPECT_EQ(std::tuple(b.SqNum, u.SqNum8), std::tuple(7, 8));
    enable();
    EXPECT_EQ(std::tuple(b.SqNum, u.SqNum8, u.pStat->writeCount, u.pStat->sendCount),
              std::tuple(0, 0, 0U, 0U));
    EXPECT_EQ(b.pStat->writeCount, 5U) << "a buffer stays";
}

} // namespace
