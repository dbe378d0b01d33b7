// Reports as a client gets them: every octet of a frame, written by hand from ISO 9506-2 and
// IEC 61850-8-1 17.2.
#include "proto-process/c/reportEncode.h"
#include "tests/support/frames.h"
#include "tests/support/reportTesting.h"

#include <gtest/gtest.h>

using namespace ied;
using namespace ied::test;

namespace {

constexpr TimeStamp entryTime = {441763200 + 86400 + 1, 258, 10}; // 1984-01-02 00:00:01.258

struct Member {
    const char *reference;
    const char *value; // as Data
};
constexpr Member members[] = {
    {"Tiny/GGIO1$ST$All$boolean", "8301 01"},
    {"Tiny/GGIO1$ST$All$int8", "8501 FB"},             // -5
    {"Tiny/GGIO1$ST$All$int16", "8502 FED4"},          // -300
    {"Tiny/GGIO1$ST$All$int32u", "8605 00EE6B2800"},   // 4000000000
    {"Tiny/GGIO1$ST$All$float32", "8705 08 3F800000"}, // 1.0
    {"Tiny/GGIO1$ST$All$quality", "8403 03 4000"},     // invalid, 13 bits
    {"Tiny/GGIO1$ST$Ind1", "A212 830101 8403034000 9108 00000064 800000 0A"},
    {"Tiny/GGIO1$ST$All$visString64", "8A0A 7369787479 2D 666F7572"},
    {"Tiny/GGIO1$ST$All$enumeration", "8501 FD"}, // -3
};

// A block over nine members, and the entry that a change of its first and its last closed.
struct NineMembers : ReportModel {
    explicit NineMembers(const char *name, u16 optFlds) {
        std::vector<std::string> references;
        for (const Member &member : members) {
            references.emplace_back(member.reference);
        }
        dataSet("Tiny/LLN0$ds", references);
        externGlbCfg.maxRptBufNum = 5;
        every.boolean = 0;
        every.enumeration = 0;
        node(members[0].reference)->trgOps = TrgDchg;
        node(members[8].reference)->trgOps = TrgQchg;
        block({.name = name, .dataSet = "Tiny/LLN0$ds", .optFlds = optFlds, .confRev = 300, .rptID = "id"});
        EXPECT_TRUE(start());
        rcb().RptEna = 1;
        rcb().SqNum = 0x1234;
        rcb().SqNum8 = 200;
        rcb().bufOvfl = 1;
        every.boolean = 1;
        every.enumeration = -3;
        EXPECT_TRUE(monEventRpt(&rcb(), &entryTime));
    }
    static RCB &rcb() { return aRCBObj[0]; }
    // Every member, by interrogation.
    static void interrogate() {
        rcb().GI = 1;
        EXPECT_TRUE(monPeriodRpt(&rcb(), &entryTime));
    }
};

// The frame of an entry's report, built in an arena of that size at most.
std::string encoded(const RptEntry *entry, std::size_t arena = SIZE_MAX) {
    ReportMaker maker{};
    reportMakerInit(&maker);
    maker.arena.size = std::min(maker.arena.size, arena);
    const u32 length = encodeReport(&maker, aRCBObj, entry);
    const std::string text = hexText({encodedPacket(maker.buffer, length), length});
    reportMakerFree(&maker);
    return text;
}

// The frame of a report with those access results.
std::string reportFrame(const std::string &results) {
    return canonical(dataFrame(tlv("A3", tlv("A0", "A105 8003 525054" + tlv("A0", results)))));
}

std::string allValues() {
    std::string text;
    for (const Member &member : members) {
        text += member.value;
    }
    return text;
}

std::string reference(const Member &member) {
    return tlv("8A", ascii(member.reference));
}

constexpr const char *firstAndLast = "8403 07 8080";
constexpr const char *allNine = "8403 07 FF80";

TEST(ReportEncoding, PutsEveryOptionOfABufferedBlockInItsPlace) {
    const NineMembers model("Tiny/LLN0$BR$b", 0x7FC0);
    const std::string want = reportFrame("8A02 6964"                     // RptID "id"
                                         "8403 06 7FC0"                  // OptFlds
                                         "8602 1234"                     // SqNum, 16 bits
                                         "8C06 000004EA 0001"            // TimeOfEntry
                                         "8A0C 54696E792F4C4C4E30246473" // DatSet "Tiny/LLN0$ds"
                                         "8301 01"                       // BufOvfl
                                         "8908 0000000000000001"         // EntryID
                                         "8602 012C"                     // ConfRev
                                         "8601 00"                       // SubSeqNum
                                         "8301 00" +                     // MoreSegmentsFollow
                                         std::string(firstAndLast) +
                                         reference(members[0]) + reference(members[8]) +
                                         "830101 8501FD" // values
                                         "8402 02 40"    // dchg
                                         "8402 02 20");  // qchg
    EXPECT_EQ(encoded(entryAt(aRCBStat, 0)), want);
    EXPECT_EQ(encoded(entryAt(aRCBStat, 0)), want) << "the entry was not touched";
    EXPECT_EQ(model.rcb().bufOvfl, 1) << "it is announced until the report has gone";
}

TEST(ReportEncoding, PutsEveryOptionOfAnUnbufferedBlockInItsPlace) {
    NineMembers model("Tiny/LLN0$RP$u", 0x7FC0);
    model.interrogate();
    std::string references, reasons;
    for (const Member &member : members) {
        references += reference(member);
        reasons += "8402 02 04"; // general interrogation
    }
    EXPECT_EQ(encoded(entryAt(aRCBStat, 1)),
              reportFrame("8A02 6964 8403 06 7CC0"
                          "8602 00C8" // SqNum, 8 bits
                          "8C06 000004EA 0001 8A0C 54696E792F4C4C4E30246473"
                          "8602 012C 8601 00 8301 00" +
                          std::string(allNine) + references + allValues() + reasons));
    model.rcb().SqNum8 = 255;
    model.rcb().OptFlds = 0x4000;
    EXPECT_EQ(encoded(entryAt(aRCBStat, 0)),
              reportFrame("8A02 6964 8403 06 4000 8602 00FF" + std::string(firstAndLast) + "830101 8501FD"));
}

// Each option alone has its own results and no other's.
TEST(ReportEncoding, AddsWhatAnOptionAsksFor) {
    const std::pair<u16, const char *> rows[] = {{0, ""},
                                                 {0x4000, "8602 1234"},
                                                 {0x2000, "8C06 000004EA 0001"},
                                                 {0x0800, "8A0C 54696E792F4C4C4E30246473"},
                                                 {0x0200, "8301 01"},
                                                 {0x0100, "8908 0000000000000001"},
                                                 {0x0080, "8602 012C"},
                                                 {0x0040, "8601 00 8301 00"}};
    NineMembers model("Tiny/LLN0$BR$b", 0);
    for (const auto &[option, result] : rows) {
        model.rcb().OptFlds = option;
        EXPECT_EQ(encoded(entryAt(aRCBStat, 0)), reportFrame("8A02 6964 8403 06" + hexNumber(option, 2) +
                                                             result + firstAndLast + "830101 8501FD"));
    }
    model.rcb().OptFlds = 0x0400;
    EXPECT_EQ(encoded(entryAt(aRCBStat, 0)),
              reportFrame("8A02 6964 8403 06 0400" + std::string(firstAndLast) + reference(members[0]) +
                          reference(members[8]) + "830101 8501FD"));
    model.rcb().OptFlds = 0x1000;
    EXPECT_EQ(encoded(entryAt(aRCBStat, 0)),
              reportFrame("8A02 6964 8403 06 1000" + std::string(firstAndLast) +
                          "830101 8501FD 8402 02 40 8402 02 20"));
}

TEST(ReportEncoding, GivesNothingForAPacketThatIsTooSmall) {
    NineMembers model("Tiny/LLN0$BR$b", 0x7FC0);
    model.interrogate();
    const std::string whole = encoded(entryAt(aRCBStat, 1));
    externGlbCfg.sendBufSize = static_cast<u32>(whole.size() / 2);
    EXPECT_EQ(encoded(entryAt(aRCBStat, 1)), "");
    const LogLines log;
    nameOversizedBlocks();
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(ReportEncoding, FinishesOnTheHeapWhatDoesNotFitTheArena) {
    NineMembers model("Tiny/LLN0$BR$b", 0x7FC0);
    model.interrogate();
    const std::string whole = encoded(entryAt(aRCBStat, 1));
    for (const std::size_t size : {0U, 64U, 1000U}) {
        EXPECT_EQ(encoded(entryAt(aRCBStat, 1), size), whole) << size; // and the entry keeps its values
    }
    EXPECT_EQ(encoded(entryAt(aRCBStat, 1)), whole);
}

TEST(ReportEncoding, MarksMembersFromTheTopOfTheFirstOctet) {
    for (const auto &[count, want] :
         {std::pair(1U, "bits 1:80"), {8U, "bits 8:81"}, {16U, "bits 16:8101"}, {17U, "bits 17:810080"}}) {
        std::vector<u8> included(count);
        included[0] = included[count - 1] = 1;
        if (count > 8) {
            included[7] = 1;
        }
        AsnList *list = asnListNewPtr();
        fill_include_bits(list, count, included.data());
        auto *result = asnListValue<AccessResult>(list->first);
        EXPECT_EQ(show(result->success_), want);
        freeHeap(result->success_);
        Free(result);
        AsnListFree(list);
    }
}

} // namespace
