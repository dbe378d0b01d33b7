// The ring of report entries: what closes an entry and what is in it, where sending stands, and what
// is dropped.
#include "tests/support/reportTesting.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

constexpr TimeStamp noon = {1'600'000'200, 250, 10};

// One block over three members: a pair of numbers, and two more of one number each. The ring has five
// entries.
struct Ring : ReportModel {
    explicit Ring(Block what = {.name = "Tiny/LLN0$BR$b", .dataSet = ""}) {
        externGlbCfg.minRptBufNum = externGlbCfg.maxRptBufNum = 5;
        GenNode *st = node("Tiny/GGIO1$ST");
        GenNode *pair = add(st, "Pair", LevelDO, CdcSPS);
        leaf(pair, "a", TypeInt8U, &a)->trgOps = TrgDchg;
        leaf(pair, "b", TypeInt8U, &b)->trgOps = TrgQchg;
        leaf(add(st, "One", LevelDO, CdcSPS), "v", TypeInt8U, &one)->trgOps = TrgDchg;
        leaf(add(st, "Two", LevelDO, CdcSPS), "v", TypeInt8U, &two)->trgOps = TrgDchg;
        dataSet("Tiny/LLN0$ds", {"Tiny/GGIO1$ST$Pair", "Tiny/GGIO1$ST$One$v", "Tiny/GGIO1$ST$Two$v"});
        what.dataSet = "Tiny/LLN0$ds";
        block(what);
        EXPECT_TRUE(start());
    }
    RCB &rcb() { return aRCBObj[0]; }
    RCBStat &stat() { return aRCBStat[0]; }
    // A pass of the monitor task after that many milliseconds; how many entries it closed.
    u64 pass(u64 milliseconds = 0) {
        heldClockAdvance(milliseconds);
        const u64 before = stat().writeCount;
        const bool byEvent = monEventRpt(&rcb(), &noon);
        EXPECT_EQ(byEvent, stat().writeCount != before);
        const u64 between = stat().writeCount;
        const bool byPeriod = monPeriodRpt(&rcb(), &noon);
        EXPECT_EQ(byPeriod, stat().writeCount != between);
        return stat().writeCount - before;
    }
    // Closes so many entries of member 1, each with a new value.
    void close(int count) {
        for (int i = 0; i < count; ++i) {
            ++one;
            EXPECT_EQ(pass(), 1U);
        }
    }
    // The entry of a count: each included member with its reason and value.
    std::string entry(u64 count) {
        const RptEntry *shown = entryAt(&stat(), count);
        std::string text;
        for (u32 i = 0; i < 3; ++i) {
            if (shown->included[i] != 0) {
                text += std::to_string(i) + "=" + hexText({&shown->reasons[i], 1}) + ":" +
                        show(&shown->data[i]) + " ";
            }
        }
        return text;
    }
    static std::string id(const RptEntry *entry) { return hexText({entry->entryId, 8}); }
    // EntryID of the next entry to send, which then counts as sent; "-" for none.
    std::string send() {
        RptEntry *next = nullptr;
        if (!getSendData(&rcb(), &next)) {
            return "-";
        }
        ++stat().sendCount;
        return id(next);
    }

    u8 a = 1, b = 2, one = 3, two = 4;
};

Block buffered(u32 bufTm, u32 intgPd = 0) {
    return {.name = "Tiny/LLN0$BR$b", .dataSet = "", .bufTm = bufTm, .intgPd = intgPd};
}
Block unbuffered(u32 bufTm) {
    return {.name = "Tiny/LLN0$RP$u", .dataSet = "", .bufTm = bufTm};
}

// ---------------------------------------------------------------------------- what closes an entry

TEST(ReportEntries, CloseAtOnceWithoutABufferTime) {
    Ring ring;
    EXPECT_EQ(ring.pass(), 0U);
    ring.a = 11;
    ring.b = 12;
    ring.two = 14;
    EXPECT_EQ(ring.pass(), 1U);
    EXPECT_EQ(ring.entry(0), "0=60:struct(uint 11, uint 12) 2=40:uint 14 ");
    EXPECT_EQ(entryAt(&ring.stat(), 0)->time.ms, 250U);
    EXPECT_EQ(ring.read(ring.rcb(), "EntryID"), "octets 0000000000000001");
    EXPECT_EQ(ring.rcb().TimeOfEntry.sec, noon.sec);
    ring.two = 24;
    EXPECT_EQ(ring.pass(), 1U);
    EXPECT_EQ(ring.entry(1), "2=40:uint 24 ");
    EXPECT_EQ(ring.entry(0), "0=60:struct(uint 11, uint 12) 2=40:uint 14 ") << "closed is closed";
    ring.close(5);
    ring.two = 34;
    EXPECT_EQ(ring.pass(), 1U);
    EXPECT_EQ(ring.entry(7), "2=40:uint 34 ") << "nothing is left of the entry that had the slot";
}

TEST(ReportEntries, CloseWhenTheBufferTimeIsOver) {
    Ring ring(buffered(100));
    ring.a = 11;
    EXPECT_EQ(ring.pass(), 0U);
    ring.two = 14;
    EXPECT_EQ(ring.pass(90), 0U);
    EXPECT_EQ(ring.pass(10), 1U);
    EXPECT_EQ(ring.entry(0), "0=40:struct(uint 11, uint 2) 2=40:uint 14 ");
    EXPECT_EQ(ring.pass(1000), 0U) << "there is no empty entry";
    ring.two = 24;
    EXPECT_EQ(ring.pass(), 0U) << "its time begins with its first change";
    EXPECT_EQ(ring.pass(100), 1U);
    EXPECT_EQ(ring.entry(1), "2=40:uint 24 ");
}

TEST(ReportEntries, CloseWhenAMemberComesAgain) {
    Ring ring(buffered(100));
    ring.one = 13;
    EXPECT_EQ(ring.pass(), 0U);
    ring.a = 11;
    ring.b = 12;
    ring.one = 23;
    ring.two = 14;
    EXPECT_EQ(ring.pass(50), 1U);
    EXPECT_EQ(ring.entry(0), "0=60:struct(uint 11, uint 12) 1=40:uint 13 ")
        << "two leaves of one member are one time";
    EXPECT_EQ(ring.pass(90), 0U) << "the next entry has its own buffer time";
    EXPECT_EQ(ring.pass(10), 1U);
    EXPECT_EQ(ring.entry(1), "1=40:uint 23 2=40:uint 14 ");
}

TEST(ReportEntries, OfAllMembersCloseByPeriod) {
    Ring ring(buffered(1000, 5000));
    ring.stat().intgStart = tickGet();
    EXPECT_EQ(ring.pass(4990), 0U);
    ring.one = 13;
    EXPECT_EQ(ring.pass(), 0U);
    ring.two = 14; // changed, but not yet seen by a compare
    EXPECT_EQ(ring.pass(10), 2U);
    EXPECT_EQ(ring.entry(0), "1=40:uint 13 2=40:uint 14 ");
    EXPECT_EQ(ring.entry(1), "0=08:struct(uint 1, uint 2) 1=08:uint 13 2=08:uint 14 ");
    EXPECT_EQ(ring.pass(1000), 0U) << "the gathering is over";
    EXPECT_EQ(ring.pass(3990), 0U);
    EXPECT_EQ(ring.pass(10), 1U);
    ring.write(ring.rcb(), "TrgOps", heapBits(6, "\x74"));
    EXPECT_EQ(ring.pass(10000), 0U);
    ring.write(ring.rcb(), "TrgOps", heapBits(6, "\x7C"));
    EXPECT_EQ(ring.pass(4990), 0U) << "the period begins with its trigger";
    EXPECT_EQ(ring.pass(10), 1U);
    ring.number(ring.rcb(), "IntgPd", 0);
    EXPECT_EQ(ring.pass(10000), 0U);
    ring.number(ring.rcb(), "IntgPd", 6000);
    EXPECT_EQ(ring.pass(5990), 0U) << "and with a new length";
    EXPECT_EQ(ring.pass(10), 1U);
}

TEST(ReportEntries, OfAllMembersCloseByInterrogation) {
    Ring ring(buffered(1000, 5000));
    ring.flag(ring.rcb(), "RptEna", true);
    ring.one = 13;
    EXPECT_EQ(ring.pass(), 0U);
    ring.flag(ring.rcb(), "GI", true);
    EXPECT_EQ(ring.pass(10), 2U);
    EXPECT_EQ(ring.entry(0), "1=40:uint 13 ");
    EXPECT_EQ(ring.entry(1), "0=04:struct(uint 1, uint 2) 1=04:uint 13 2=04:uint 4 ");
    EXPECT_EQ(ring.rcb().GI, 0);
    EXPECT_EQ(ring.pass(1000), 0U);
    ring.one = 23;
    EXPECT_EQ(ring.pass(), 0U);
    ring.flag(ring.rcb(), "GI", true);
    EXPECT_EQ(ring.pass(5000), 3U) << "buffer time, period, interrogation";
    EXPECT_EQ(ring.entry(2), "1=40:uint 23 ");
    EXPECT_EQ(ring.entry(3).substr(0, 5), "0=08:");
    EXPECT_EQ(ring.entry(4).substr(0, 5), "0=04:");
    ring.rcb().TrgOps = TrgDchg;
    ring.rcb().GI = 1;
    EXPECT_EQ(ring.pass(), 0U);
    EXPECT_EQ(ring.rcb().GI, 0) << "what the block does not do is not done later either";
}

TEST(ReportEntries, LoseNothingWhenTheBufferTimeChanges) {
    for (const u32 bufTm : {0U, 100U, 50000U}) {
        for (const bool moves : {false, true}) {
            Ring ring(buffered(1000));
            heldClockAdvance(60000); // further from tick 0, where the new buffer time begins, than it is long
            ring.one = 13;
            EXPECT_EQ(ring.pass(), 0U);
            ring.number(ring.rcb(), "BufTm", bufTm);
            ring.two += moves;
            EXPECT_EQ(ring.pass(), 1U);
            EXPECT_EQ(ring.entry(0), moves ? "1=40:uint 13 2=40:uint 5 " : "1=40:uint 13 ");
            EXPECT_EQ(ring.pass(60000), 0U);
        }
    }
}

TEST(ReportEntries, TakeOnlyTheTriggersOfTheBlock) {
    Ring ring;
    ring.write(ring.rcb(), "TrgOps", heapBits(6, "\x20"));
    ring.a = 11;
    EXPECT_EQ(ring.pass(), 0U);
    ring.b = 12;
    EXPECT_EQ(ring.pass(), 1U);
    EXPECT_EQ(ring.entry(0), "0=20:struct(uint 11, uint 12) ");
    ring.one = 13;
    ring.write(ring.rcb(), "TrgOps", heapBits(6, "\x40"));
    EXPECT_EQ(ring.pass(), 0U) << "new triggers begin with the values of now";
    ring.write(ring.rcb(), "TrgOps", heapBits(6, std::string(1, '\0')));
    ring.one = 23;
    EXPECT_EQ(ring.pass(), 0U);
}

// ------------------------------------------------------------------------- unbuffered and disabled

TEST(UnbufferedEntries, AreMadeOnlyWhileEnabled) {
    Ring ring(unbuffered(0));
    ring.one = 13;
    EXPECT_EQ(ring.pass(), 0U);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.pass(), 1U);
    EXPECT_EQ(ring.entry(0), "1=40:uint 13 ") << "what differs from the last compare";
    EXPECT_EQ(hexText({ring.rcb().EntryID, 8}), "0000000000000000");
    EXPECT_EQ(ring.rcb().TimeOfEntry.sec, 0U);
    EXPECT_EQ(ring.send(), "0000000000000001");
    ring.close(2);
    ring.flag(ring.rcb(), "RptEna", false);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "-") << "nothing of the time before";
}

TEST(UnbufferedEntries, EndTheirGatheringWithTheirOwner) {
    for (const bool vanishes : {false, true}) {
        Ring ring(unbuffered(100));
        ring.flag(ring.rcb(), "RptEna", true);
        ring.one = 13;
        EXPECT_EQ(ring.pass(), 0U);
        ring.rcb().GI = 1;
        if (vanishes) {
            releaseClientRCB(0);
        } else {
            ring.flag(ring.rcb(), "RptEna", false);
        }
        EXPECT_EQ(ring.pass(1000), 0U);
        EXPECT_EQ(ring.rcb().GI, 0);
        ring.flag(ring.rcb(), "RptEna", true);
        EXPECT_EQ(ring.pass(1000), 0U);
        ring.two = 14;
        EXPECT_EQ(ring.pass(), 0U);
        EXPECT_EQ(ring.pass(100), 1U);
        EXPECT_EQ(ring.entry(0), "2=40:uint 14 ");
    }
}

TEST(BufferedEntries, GatherOnWithoutAnOwner) {
    Ring ring(buffered(100));
    ring.one = 13;
    EXPECT_EQ(ring.pass(), 0U);
    ring.flag(ring.rcb(), "RptEna", true);
    ring.flag(ring.rcb(), "RptEna", false);
    ring.two = 14;
    EXPECT_EQ(ring.pass(10), 0U);
    EXPECT_EQ(ring.pass(100), 1U);
    EXPECT_EQ(ring.entry(0), "1=40:uint 13 2=40:uint 14 ");
    EXPECT_EQ(ring.send(), "-") << "to nobody";
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "0000000000000001");
}

// --------------------------------------------------------------------------------- purge, EntryID

TEST(ReportPurge, KeepsWhatIsGathered) {
    Ring ring(buffered(100));
    for (u8 i = 0; i < 3; ++i) {
        ring.two++;
        EXPECT_EQ(ring.pass() + ring.pass(100), 1U);
    }
    ring.a = 11;
    EXPECT_EQ(ring.pass(), 0U);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000001"), -1);
    EXPECT_EQ(ring.flag(ring.rcb(), "PurgeBuf", true), -1);
    EXPECT_EQ(ring.read(ring.rcb(), "PurgeBuf"), "bool 0");
    EXPECT_EQ(ring.read(ring.rcb(), "EntryID"), "octets 0000000000000000");
    EXPECT_EQ(ring.read(ring.rcb(), "TimeOfEntry"), "btime 000000000000");
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "-");
    ring.one = 13;
    EXPECT_EQ(ring.pass(50), 0U);
    EXPECT_EQ(ring.pass(50), 1U) << "its time goes on";
    EXPECT_EQ(ring.entry(0), "0=40:struct(uint 11, uint 2) 1=40:uint 13 ");
    EXPECT_EQ(ring.send(), "0000000000000001");
    EXPECT_EQ(ring.send(), "-");
}

TEST(ReportPurge, EmptiesARingAtRest) {
    Ring ring;
    ring.close(3);
    EXPECT_EQ(ring.flag(ring.rcb(), "PurgeBuf", true), -1);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "-");
    ring.two = 14;
    EXPECT_EQ(ring.pass(), 1U);
    EXPECT_EQ(ring.entry(0), "2=40:uint 14 ");
    EXPECT_EQ(ring.send(), "0000000000000001");
}

TEST(EntryId, IsANumberAloneOrWithTheTimeBeforeIt) {
    const Ring ring;
    constexpr u32 day = 86400;
    const struct {
        u8 byNumber;
        TimeStamp time;
        u32 seq;
        const char *octets;
    } rows[] = {
        {1, noon, 0x01020304, "00000000 01020304 00"},
        {0, {5114 * day + 1, 258, 0}, 0x01020304, "000004EA 0001 0304 00"}, // 1258 ms into 1984-01-02
        {0, {6000 * day + day - 1, 999, 0}, 0x10000, "05265BFF 0377 0000 00"},
        {0, {6000 * day, 0xF0000001, 0}, 1, "00000001 0377 0001 00"}, // four bits of octet 0 are kept
        {0, {5114 * day - 1, 999, 0}, 7, "00000000 0000 0007 00"},    // the last moment of 1984-01-01
        {0, {0, 0, 0}, 7, "00000000 0000 0007 00"},
    };
    for (const auto &row : rows) {
        externGlbCfg.rptEntryIdSeq = row.byNumber;
        u8 out[9];
        std::memset(out, 0xEE, sizeof out);
        fillEntryID(out, &row.time, row.seq);
        EXPECT_EQ(hexText(out), canonical(row.octets));
    }
}

TEST(EntryId, IsFoundAmongWhatTheRingHolds) {
    Ring ring;
    const LogLines log;
    AsnOcts none{};
    EXPECT_FALSE(searchEntryID(&ring.rcb(), nullptr));
    EXPECT_FALSE(searchEntryID(&ring.rcb(), &none));
    EXPECT_EQ(log.count("RPT", "ERR", "searchEntryID", "Tiny/LLN0$BR$b EntryID is null!"), 2);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000000"), 11);
    EXPECT_EQ(log.count("RPT", "INF", "searchEntryID", "Tiny/LLN0$BR$b no rpt buffered!"), 1);
    ring.close(2);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000001"), -1);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000003"), 11) << "the ring is not full yet";
    ring.close(5);
    const struct {
        const char *id;
        int error;
        u64 position;
    } rows[] = {
        {"0000000000000007", -1, 7}, {"0000000000000003", -1, 3},   {"0000000000000002", 11, 0},
        {"0000000000000008", 11, 0}, {"0000000000000000", -1, 0},   {"0000", -1, 0},
        {"00000007", 11, 0},         {"000000000000000000", 11, 0},
    };
    for (const auto &row : rows) {
        const std::vector<u8> id = octets(row.id);
        ring.stat().resendPos = resendNone;
        const std::string text(id.begin(), id.end());
        const AsnOcts given = octsOver(text);
        EXPECT_EQ(searchEntryID(&ring.rcb(), &given), row.error == -1) << row.id;
        EXPECT_EQ(ring.stat().resendPos, row.error == -1 ? row.position : resendNone) << row.id;
    }
}

TEST(EntryId, IsWhereSendingGoesOn) {
    Ring ring;
    ring.close(4);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000004"), -1);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "-") << "the newest was there already";
    ring.close(1);
    EXPECT_EQ(ring.send(), "0000000000000005");
    ring.flag(ring.rcb(), "RptEna", false);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000002"), -1);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000009"), 11);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "0000000000000003") << "a refused position changes nothing";
    ring.flag(ring.rcb(), "RptEna", false);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "0000000000000004") << "a position is taken once";
    ring.flag(ring.rcb(), "RptEna", false);
    EXPECT_EQ(ring.position(ring.rcb(), "0000"), -1);
    EXPECT_EQ(std::string(ring.rcb().EntryID, ring.rcb().EntryID + 9), std::string(9, '\0'));
    ring.flag(ring.rcb(), "RptEna", true);
    ring.stat().resendPos = 6; // of a ring that was longer
    EXPECT_EQ(ring.send(), "0000000000000001");
}

TEST(EntryId, IsTheFirstThingThatAClientWritesAfterItVanished) {
    Ring ring;
    ring.flag(ring.rcb(), "RptEna", true);
    ring.close(4);
    while (ring.send() != "-") {
    }
    releaseClientRCB(0);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000001"), -1);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "0000000000000002");
}

// -------------------------------------------------------------------------------------- overflow

TEST(ReportOverflow, BeginsWithOneMoreThanTheRingHolds) {
    Ring ring;
    const LogLines log;
    ring.close(5);
    ring.number(ring.rcb(), "BufTm", 1000);
    ring.two = 14;
    EXPECT_EQ(ring.pass(), 0U);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.entry(0), "1=40:uint 4 ") << "the open entry has a slot of its own";
    EXPECT_EQ(ring.send(), "0000000000000001");
    EXPECT_EQ(ring.rcb().bufOvfl, 0);
    ring.stat().sendCount = 0;
    EXPECT_EQ(ring.pass(1000), 1U);
    EXPECT_EQ(ring.send(), "0000000000000002");
    EXPECT_EQ(ring.rcb().bufOvfl, 1);
    EXPECT_EQ(log.count("RPT", "INF", "getSendData", "Buffer overflowed of Tiny/LLN0$BR$b!"), 1);
    std::string rest;
    for (int i = 0; i < 5; ++i) {
        rest += ring.send().back();
    }
    EXPECT_EQ(rest, "3456-");
}

TEST(ReportOverflow, MeetsAClientThatStartsOver) {
    Ring ring;
    ring.close(7);
    EXPECT_EQ(ring.position(ring.rcb(), "0000000000000000"), -1);
    ring.flag(ring.rcb(), "RptEna", true);
    EXPECT_EQ(ring.send(), "0000000000000003");
    EXPECT_EQ(ring.rcb().bufOvfl, 1);
}

} // namespace
