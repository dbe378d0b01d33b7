// Reports on their way: from the ring to the socket of the client that owns the block.
#include "tests/support/conversation.h"
#include "tests/support/reportTesting.h"

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <utility>

using namespace ied;
using namespace ied::test;

namespace {

std::vector<std::string> frames; // what went out
bool refuses;                    // the socket is broken
std::function<void()> meanwhile; // runs once, while a report is sent

long scriptedSend(int, const void *buffer, std::size_t length, int) {
    if (refuses) {
        errno = EPIPE;
        return -1;
    }
    frames.push_back(hexText({static_cast<const u8 *>(buffer), length}));
    if (meanwhile) {
        std::exchange(meanwhile, nullptr)();
    }
    return static_cast<long>(length);
}

// A buffered and an unbuffered block on one status, enabled by the client of slot 0. Their reports
// hold OptFlds, SqNum, and BufOvfl or none.
class ReportSend : public testing::Test {
  protected:
    ReportSend() {
        externGlbCfg.minRptBufNum = externGlbCfg.maxRptBufNum = 5;
        frames.clear();
        refuses = false;
        meanwhile = nullptr;
        socketOps.send = scriptedSend; // put back with the conversation
        clientStat[0].status = CS_DATA;
        model.node("Tiny/GGIO1$ST$Ind1$stVal")->trgOps = TrgDchg;
        model.dataSet("Tiny/LLN0$ds", {"Tiny/GGIO1$ST$Ind1$stVal"});
        const u16 options = OptSeqNum | OptBufOvfl;
        model.block({.name = "Tiny/LLN0$BR$b", .dataSet = "Tiny/LLN0$ds", .optFlds = options});
        model.block({.name = "Tiny/LLN0$RP$u", .dataSet = "Tiny/LLN0$ds", .optFlds = options});
        EXPECT_TRUE(model.start());
    }
    RCB &buffered() { return aRCBObj[0]; }
    RCB &unbuffered() { return aRCBObj[1]; }
    void enable() {
        model.flag(buffered(), "RptEna", true);
        model.flag(unbuffered(), "RptEna", true);
    }
    void change(int times = 1) {
        for (int i = 0; i < times; ++i) {
            model.ind.stVal ^= 1;
            for (RCB *rcb : {&buffered(), &unbuffered()}) {
                monEventRpt(rcb, &time);
            }
        }
    }
    // What one pass sends: each report as B or U with its SqNum, and "!" with BufOvfl.
    std::string pass() {
        frames.clear();
        sendRpt();
        std::string text;
        for (const std::string &frame : frames) {
            const std::size_t at = frame.find("840306"); // OptFlds
            const bool isBuffered = frame.substr(at + 6, 4) == "4200";
            const auto octetCount = static_cast<std::size_t>(frame[at + 13] - '0'); // 86 0n
            text += (text.empty() ? "" : " ") + std::string(isBuffered ? "B" : "U") +
                    frame.substr(at + 14, 2 * octetCount) +
                    (isBuffered && frame.substr(at + 14 + 2 * octetCount, 6) != "830100" ? "!" : "");
        }
        return text;
    }

    Conversation client;
    ReportModel model;
    static constexpr TimeStamp time = {1'600'000'000, 0, 10};
};

TEST_F(ReportSend, SendsOneReportOfABlockInAPassInTheOrderOfTheBlocks) {
    enable();
    EXPECT_EQ(pass(), "");
    change(2);
    EXPECT_EQ(pass(), "B00 U00");
    EXPECT_EQ(pass(), "B01 U01");
    EXPECT_EQ(pass(), "");
    unbuffered().SqNum8 = 255;
    buffered().SqNum = 65535;
    change(2);
    EXPECT_EQ(pass(), "B00FFFF U00FF");
    EXPECT_EQ(pass(), "B00 U00") << "each in its own width";
}

TEST_F(ReportSend, SparesAClientWithoutAnAssociation) {
    enable();
    change();
    clientStat[0].status = CS_ASSOCIATED;
    EXPECT_EQ(pass(), "");
    clientStat[0].status = CS_DATA;
    EXPECT_EQ(pass(), "B00 U00");
}

TEST_F(ReportSend, TriesAgainWhatDidNotGo) {
    change(6);
    enable();
    EXPECT_EQ(buffered().pStat->writeCount, 6U);
    refuses = true;
    EXPECT_EQ(pass(), "");
    clientStat[0].sendFail = 0;
    refuses = false;
    EXPECT_EQ(pass(), "B00!") << "the overflow was not yet told of";
    EXPECT_EQ(pass(), "B01");
}

TEST_F(ReportSend, DropsWhatNoPacketHolds) {
    enable();
    EXPECT_EQ(pass(), ""); // the buffer of the task is made for the size that was
    change(2);
    const LogLines log;
    const u32 size = std::exchange(externGlbCfg.sendBufSize, 40);
    EXPECT_EQ(pass(), "");
    EXPECT_EQ(
        log.count("RPT", "ERR", "sendRpt", "Report of \"Tiny/LLN0$BR$b\" exceeds sendBufSize 40, dropped!"),
        1);
    externGlbCfg.sendBufSize = size;
    EXPECT_EQ(pass(), "B00! U00");
    EXPECT_EQ(pass(), "");
}

TEST_F(ReportSend, CountsNothingOfARingThatWasPurgedMeanwhile) {
    enable();
    change(7);
    meanwhile = [this] {
        model.flag(buffered(), "RptEna", false);
        model.flag(buffered(), "PurgeBuf", true);
        model.flag(buffered(), "RptEna", true);
        change();
    };
    EXPECT_EQ(pass(), "B00! U00");
    EXPECT_EQ(buffered().pStat->sendCount, 0U);
    EXPECT_EQ(pass(), "B00 U01") << "the report after the purge, as the first; the overflow has been told";
}

TEST_F(ReportSend, GoesOnFromAPositionThatWasWrittenMeanwhile) {
    change(4);
    enable();
    meanwhile = [this] {
        model.flag(buffered(), "RptEna", false);
        EXPECT_EQ(model.position(buffered(), "0000000000000003"), -1);
        model.flag(buffered(), "RptEna", true);
    };
    EXPECT_EQ(pass().substr(0, 3), "B00");
    EXPECT_EQ(pass().substr(0, 3), "B00");
    EXPECT_EQ(buffered().pStat->sendCount, 4U);
}

TEST_F(ReportSend, KeepsAReportFromTheNextClientOfTheSlot) {
    enable();
    change(2);
    meanwhile = [] { // while the buffered block's report goes out, the client leaves
        releaseClientRCB(0);
        clientStat[0].association++;
    };
    EXPECT_EQ(pass(), "B00");
    EXPECT_EQ(pass(), "");
}

} // namespace
