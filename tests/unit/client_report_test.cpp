// Reports as a server sends them, octet by octet, and what the client makes of them.
#include "ied-client/reportBits.h"
#include "ied-client/reportText.h"
#include "ied-client/subscription.h"
#include "tests/support/rawMms.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

using namespace ied;
using namespace ied::client;
using ied::test::ascii;
using ied::test::hexText;
using ied::test::ScriptedPeer;

namespace {

// Local times in these tests are those of UTC.
[[maybe_unused]] const bool utc = (setenv("TZ", "UTC", 1), tzset(), true);

constexpr i64 secondDay1984 = 441849600000; // milliseconds of 1984-01-02
const std::string rptId = "8A 01 52";       // "R"
const std::string secondOfFour = "84 02 04 40";
const std::string seven = "85 01 07";

// An unconfirmed PDU with an information report of these results: A3, A0, the list name RPT, A0.
std::string reportPdu(const std::string &results, const std::string &listName = "A1 05 80 03 52 50 54") {
    return ied::test::tlv("A3", ied::test::tlv("A0", listName + ied::test::tlv("A0", results)));
}

Unconfirmed parsed(const std::string &hex) {
    const Bytes octets = ied::test::octets(hex);
    return parseUnconfirmed(octets);
}

// The components of a report that are there, by name.
std::string described(const Report &report) {
    std::string text = report.rptId + " " + bitsText(report.optFlds, optFldsNames);
    text += report.sqNum ? " sq=" + std::to_string(*report.sqNum) : "";
    text += report.timeOfEntry ? " t=" + std::to_string(*report.timeOfEntry - secondDay1984) : "";
    text += report.datSet.empty() ? "" : " set=" + report.datSet;
    text += report.bufOvfl ? (*report.bufOvfl ? " overflow" : " no-overflow") : "";
    text += report.entryId.empty() ? "" : " entry=" + hexDigits(report.entryId);
    text += report.confRev ? " rev=" + std::to_string(*report.confRev) : "";
    text +=
        report.subSqNum ? " sub=" + std::to_string(*report.subSqNum) + (report.moreFollows ? "+" : ".") : "";
    for (const ReportedMember &member : report.members) {
        text +=
            " #" + std::to_string(member.member) + member.reference + "=" +
            (member.result.value ? valueText(*member.result.value) : dataAccessError(member.result.error)) +
            member.reason;
    }
    return text;
}

struct Sample {
    const char *name;
    std::string results;
    const char *description; // or why it is malformed
};

class ReportSample : public testing::TestWithParam<Sample> {};
class BrokenReport : public testing::TestWithParam<Sample> {};

std::string sampleName(const testing::TestParamInfo<Sample> &parameter) {
    return parameter.param.name;
}

Subscription subscriptionTo(const std::string &fc) {
    Subscription subscription;
    subscription.block.variable.reference = {"LD", "LLN0", fc, {{"cb01", false, 0, 0, false}}};
    return subscription;
}

} // namespace

TEST_P(ReportSample, HoldsTheComponentsThatItsOptionsName) {
    const Unconfirmed message = parsed(reportPdu(GetParam().results));
    ASSERT_EQ(message.kind, Unconfirmed::Kind::report) << message.why;
    EXPECT_EQ(described(message.report), GetParam().description);
}

const std::string nineBits = "84 03 07 80 80"; // the first and the last of nine members
const std::string second1984 = "8C 06 00 00 03 E8 00 01";
const std::string entryFive = "89 08 00 00 00 00 00 00 00 05";

INSTANTIATE_TEST_SUITE_P(
    Options, ReportSample,
    testing::Values(
        Sample{"none", rptId + "84 03 06 00 00" + secondOfFour + seven, "R none #1=7"},
        Sample{"seqNum", rptId + "84 03 06 40 00 86 02 00 FF" + secondOfFour + seven, "R seqNum sq=255 #1=7"},
        Sample{"dataRef", rptId + "84 03 06 04 00" + secondOfFour + "8A 05" + ascii("L/N$m") + seven,
               "R dataRef #1L/N$m=7"},
        Sample{"segmentation", rptId + "84 03 06 00 40 86 01 02 83 01 FF" + secondOfFour + seven,
               "R segmentation sub=2+ #1=7"},
        Sample{"all",
               rptId + "84 03 06 7F C0 86 03 00 FF FF" + second1984 + "8A 05" + ascii("L/N$s") + "83 01 01" +
                   entryFive + "86 01 01 86 01 00 83 01 00" + nineBits + "8A 05" + ascii("L/N$a") + "8A 05" +
                   ascii("L/N$i") + "A2 06 83 01 01 83 01 00" + "8A 02 4F 4B" + "84 02 02 40 84 02 02 08",
               "R seqNum,timeStamp,reasonCode,dataSet,dataRef,bufOvfl,entryID,configRef,segmentation "
               "sq=65535 t=1000 set=L/N$s overflow entry=0000000000000005 rev=1 sub=0. "
               "#0L/N$a={true, false}010000 #8L/N$i=OK000010"},
        Sample{"noneIncluded", rptId + "84 03 06 00 00 84 03 07 00 00", "R none"},
        Sample{"valueRefused", rptId + "84 03 06 10 00" + secondOfFour + "80 01 0A 84 02 02 04",
               "R reasonCode #1=object-non-existent000001"}),
    sampleName);

TEST_P(BrokenReport, IsRefusedWithTheReason) {
    const Unconfirmed message = parsed(reportPdu(GetParam().results));
    ASSERT_EQ(message.kind, Unconfirmed::Kind::malformed);
    EXPECT_EQ(message.why, GetParam().description);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, BrokenReport,
    testing::Values(Sample{"empty", "", "it ends before RptID"},
                    Sample{"noOptions", rptId + seven, "another kind of value stands in place of OptFlds"},
                    Sample{"noNumber", rptId + "84 03 06 40 00" + secondOfFour + seven,
                           "another kind of value stands in place of SqNum"},
                    Sample{"noInclusion", rptId + "84 03 06 00 00", "it ends before the inclusion bits"},
                    Sample{"oneValueMissing", rptId + "84 03 06 00 00 84 02 04 C0" + seven,
                           "it ends before the last value"},
                    Sample{"oneReasonMissing",
                           rptId + "84 03 06 10 00 84 02 04 C0" + seven + seven + "84 02 02 40",
                           "it ends before a reason"},
                    Sample{"onePartTooMany", rptId + "84 03 06 00 00" + secondOfFour + seven + seven,
                           "something follows behind its last component"},
                    Sample{"cutValue", rptId + "85 05 07", "a value that cannot be decoded"}),
    sampleName);

TEST(ClientReport, TellsOtherUnconfirmedPdusFromReports) {
    const std::string results = rptId + "84 03 06 00 00" + secondOfFour + seven;
    for (const std::string &other : {
             reportPdu(results, "A1 05 80 03 58 50 54"),          // a list of another name
             reportPdu(results, "A1 08 A1 06 1A 01 4C 1A 01 4E"), // a list of a domain
             reportPdu("85 01 01", "A0 11 30 0F A0 0D 80 0B" + ascii("LastApplErr")),
             std::string("A3 02 A1 00"), // unsolicitedStatus
         }) {
        EXPECT_EQ(parsed(other).kind, Unconfirmed::Kind::other) << other;
    }
    for (const std::string &broken : {std::string("A3 00"), std::string("A3 04 A0 02 A1 00"),
                                      std::string("A3 09 A0 07 A1 05 80 03 52 50 54")}) {
        EXPECT_EQ(parsed(broken).kind, Unconfirmed::Kind::malformed) << broken;
    }
}

TEST(ClientReport, SequenceNumbersWrapAtTheWidthOfTheBlock) {
    struct Step {
        u64 sqNum;
        u64 missing;
    };
    const auto check = [](const std::string &fc, const std::vector<Step> &steps) {
        Subscription subscription = subscriptionTo(fc);
        for (const Step &step : steps) {
            Report report;
            report.sqNum = step.sqNum;
            EXPECT_EQ(countMissing(subscription, report), step.missing) << fc << " " << step.sqNum;
        }
    };
    check("RP", {{254, 0}, {255, 0}, {0, 0}, {1, 0}, {4, 2}, {3, 254}});
    check("BR", {{254, 0}, {255, 0}, {256, 0}, {65535, 65278}, {0, 0}, {2, 1}});

    Subscription segmented = subscriptionTo("BR");
    Report report;
    report.sqNum = 7;
    report.moreFollows = true;
    EXPECT_EQ(countMissing(segmented, report), 0U);
    EXPECT_EQ(countMissing(segmented, report), 0U);
    report.moreFollows = false;
    EXPECT_EQ(countMissing(segmented, report), 0U);
    report.sqNum = 9;
    EXPECT_EQ(countMissing(segmented, report), 1U);
    EXPECT_EQ(countMissing(segmented, Report{}), 0U); // a report without a number says nothing
}

TEST(ClientReport, BelongsToTheBlockOfItsRptIdAndDataSet) {
    Options options;
    Connection connection;
    Session session{options, {}, Model{connection, {}, {}, {}}};
    Subscriber subscriber{session, {}, {}, {}};
    Type type;
    type.names = {"RptID", "DatSet"};
    const auto add = [&](const std::string &rptIdText, const std::string &datSet) {
        Subscription &subscription = subscriber.subscriptions.emplace_back(subscriptionTo("BR"));
        subscription.block.variable.type = &type;
        subscription.block.state.items.resize(2);
        subscription.block.state.items[0].octets = rptIdText;
        subscription.block.state.items[1].octets = datSet;
    };
    const auto owner = [&](const std::string &rptIdText, const std::string &datSet) {
        Report report;
        report.rptId = rptIdText;
        report.datSet = datSet;
        const Subscription *found = subscriptionOf(subscriber, report);
        return found ? found - subscriber.subscriptions.data() : -1;
    };
    add("one", "LD/LLN0$a");
    add("same", "LD/LLN0$a");
    add("same", "LD/LLN0$b");
    add("", "LD/LLN0$a");
    EXPECT_EQ(owner("one", ""), 0);
    EXPECT_EQ(owner("one", "LD/LLN0$b"), -1);
    EXPECT_EQ(owner("same", "LD/LLN0$b"), 2);
    EXPECT_EQ(owner("same", ""), -1);
    EXPECT_EQ(owner("other", ""), -1);
    EXPECT_EQ(owner("LD/LLN0$BR$cb01", ""), 3); // a block without an RptID
    EXPECT_EQ(owner("", ""), 3);
    add("", "LD/LLN0$a");
    EXPECT_EQ(owner("", "LD/LLN0$a"), -1);
}

TEST(ClientReport, MustFitItsDataSet) {
    Subscription subscription = subscriptionTo("RP");
    ReportedSet set;
    set.members.resize(4);
    set.members[1].reference = {"L", "N", "MX", {{"m", false, 0, 0, false}}};
    subscription.set = &set;
    const auto why = [&](const std::string &inclusion, const std::string &reference) {
        const Unconfirmed message =
            parsed(reportPdu(rptId + "84 03 06 04 00" + inclusion + "8A 06" + ascii(reference) + seven));
        EXPECT_EQ(message.kind, Unconfirmed::Kind::report) << message.why;
        return misfit(subscription, message.report);
    };
    EXPECT_EQ(why("84 02 04 40", "L/N$MX"), "it names 'L/N$MX' where the data set has L/N$MX$m");
    EXPECT_EQ(why("84 02 03 40", "L/N$MX"), "it has 5 inclusion bits for the 4 members of the data set");
    set.members[1].reference.path.clear();
    EXPECT_EQ(why("84 02 04 40", "L/N$MX"), "");
}

TEST(ClientReport, ShowsGapsAndOverflowsWhereTheyHappened) {
    Report report = parsed(reportPdu(rptId + "84 03 06 73 00 86 01 07" + second1984 + "83 01 01" + entryFive +
                                     secondOfFour + "83 01 01" + "84 02 02 50"))
                        .report;
    const Type boolean;
    Row row;
    row.reference = {"LD", "N", "ST", {{"Ind", false, 0, 0, false}, {"stVal", false, 0, 0, false}}};
    row.type = &boolean;
    row.value = report.members.at(0).result.value;
    row.reason = bitsText(report.members[0].reason, reasonNames);
    const ShownReport shown{"LD/LLN0.cb01[BR]", &report, {row}, 2};
    EXPECT_EQ(reportText(shown, {}),
              "LD/LLN0.cb01[BR]  1984-01-02 00:00:01.000  SqNum 7  entry 0000000000000005\n"
              "  ! gap: 2 reports before this one did not arrive\n"
              "  ! buffer overflow: entries before this one were lost\n"
              "  LD/N.Ind.stVal[ST]  true      data-change,data-update\n");
    EXPECT_EQ(
        reportJson(shown),
        "{\"block\":\"LD/LLN0.cb01[BR]\",\"rptId\":\"R\",\"sqNum\":7,"
        "\"timeOfEntry\":\"1984-01-02T00:00:01.000Z\",\"bufOvfl\":true,\"entryId\":\"0000000000000005\","
        "\"missing\":2,\"values\":[{\"reference\":\"LD/N.Ind.stVal[ST]\","
        "\"reason\":[\"data-change\",\"data-update\"],\"value\":true}]}");
}

TEST(ClientReport, AnEntryIsWrittenAsItIsPrinted) {
    std::string why;
    for (const char *text : {"0000000000000005@2026-11-25T08:38:17.452Z", "00000000FFFFFFFF",
                             "0000000000000000@1984-01-01T00:00:00.000Z"}) {
        const std::optional<EntryPoint> entry = parseEntryPoint(text, why);
        ASSERT_TRUE(entry) << text;
        EXPECT_EQ(entryText(*entry), text);
    }
    EXPECT_EQ(parseEntryPoint("05@1984-01-02T00:00:01.000Z", why)->time, secondDay1984 + 1000);
    for (const char *text : {"", "5", "0x05", "05@", "05@2026-11-25", "05@2026-11-25T08:38:17Z",
                             "05@2026-11-25T08:38:17.452", "05@2026-11-25T08:38:17.452Z!"}) {
        EXPECT_FALSE(parseEntryPoint(text, why)) << text;
    }
}

TEST(ClientReport, OptionBitsHaveNames) {
    struct Row {
        const char *text;
        const char *bits; // null: refused
    };
    std::string why;
    for (const Row &row : {Row{"dchg,gi", "010001"}, Row{"integrity", "000010"}, Row{"none", "000000"},
                           Row{"all", "011111"}, Row{"101010", "101010"}, Row{"1010", nullptr},
                           Row{"dchg,", nullptr}, Row{"seqNum", nullptr}, Row{"", nullptr}}) {
        const std::optional<std::string> bits = parseBitNames(row.text, trgOpsNames, why);
        EXPECT_EQ(bits.value_or("refused"), row.bits ? row.bits : "refused") << row.text;
    }
    EXPECT_EQ(parseBitNames("sequence-number,entryID,segmentation", optFldsNames, why), "0100000101");
    EXPECT_EQ(bitsText("1100000", trgOpsNames), "bit 0,dchg");
}

namespace {

// The frames of one PDU in TPDUs of seven octets.
std::string inSmallFrames(const std::string &mmsPdu) {
    const std::string spdu = ied::test::dataFrame(mmsPdu).substr(14);
    std::string frames;
    for (std::size_t at = 0; at < spdu.size(); at += 14) {
        frames += ied::test::tpkt((at + 14 < spdu.size() ? "02F000" : "02F080") + spdu.substr(at, 14));
    }
    return frames;
}

const std::string identifyAnswerHex = "A1 11 02 01 01 A2 0C 80 01 56 81 02 4D 4D 82 03 31 2E 30";

std::string numbered(int number) {
    return reportPdu(rptId + "84 03 06 40 00 86 01 0" + std::to_string(number) + secondOfFour + seven);
}

// A peer that answers an identify with these frames.
std::vector<ied::test::ScriptStep> afterIdentify(const std::string &frames) {
    return {{"", ied::test::connectionConfirmHex}, {"", ied::test::connectReply}, {"", frames}};
}

} // namespace

TEST(ClientReport, ComesBetweenRequestAndAnswerAndInSeveralFrames) {
    ScriptedPeer peer(afterIdentify(ied::test::dataFrame(numbered(1)) + inSmallFrames(numbered(2)) +
                                    ied::test::dataFrame(identifyAnswerHex) + inSmallFrames(numbered(3)) +
                                    ied::test::dataFrame(numbered(4))));
    Connection connection;
    std::vector<u64> numbers;
    connection.unconfirmed = [&](View pdu) {
        numbers.push_back(parseUnconfirmed(pdu).report.sqNum.value_or(99));
    };
    ASSERT_TRUE(connect(connection, "127.0.0.1", peer.port)) << connection.failure.text;
    const std::optional<Element> answer = request(connection, identifyRequest());
    ASSERT_TRUE(answer) << connection.failure.text;
    EXPECT_EQ(identifyResponse(*answer)->model, "MM");
    const Clock::time_point end = Clock::now() + std::chrono::seconds(60);
    while (numbers.size() < 4 && Clock::now() < end) {
        ASSERT_TRUE(listen(connection, end)) << connection.failure.text;
    }
    EXPECT_EQ(numbers, (std::vector<u64>{1, 2, 3, 4}));
    EXPECT_TRUE(listen(connection, Clock::now())); // a deadline is no lost connection
    EXPECT_GE(connection.socket, 0);
}

namespace {

// Model of a server with a buffered block LD/LLN0.cb over one member.
Model blockModel(Connection &connection) {
    const auto structure = [](std::vector<std::string> names, std::vector<Type> parts) {
        return Type{Kind::structure, 0, 0, std::move(names), std::move(parts)};
    };
    const Type block = structure({"RptEna", "DatSet", "RptID", "OptFlds", "EntryID"},
                                 {{Kind::boolean, 0, 0, {}, {}},
                                  {Kind::visibleString, -129, 0, {}, {}},
                                  {Kind::visibleString, -129, 0, {}, {}},
                                  {Kind::bitString, -10, 0, {}, {}},
                                  {Kind::octetString, 8, 0, {}, {}}});
    const Type node = structure(
        {"BR", "ST"}, {structure({"cb"}, {block}), structure({"m"}, {{Kind::integer, 32, 0, {}, {}}})});
    return {connection, {}, {}, {{"LD/LLN0", node}}};
}

const std::string blockState = "A4 24 A1 22 A2 20 83 01 00 8A 09" + ascii("LD/LLN0$s") + rptId +
                               "84 03 06 61 00 89 08 00 00 00 00 00 00 00 00";
const std::string dataSetOfOne =
    "AC 1A 80 01 00 A1 15 30 13 A0 11 A1 0F 1A 02" + ascii("LD") + "1A 09" + ascii("LLN0$ST$m");
const std::string written = "A5 02 81 00";

// A report of the block with this entry and number.
std::string entryReport(const std::string &entry, const std::string &sqNum) {
    return reportPdu(rptId + "84 03 06 61 00 86 01" + sqNum + second1984 + "89 08 00 00 00 00 00 00 00" +
                     entry + "84 02 07 80" + seven);
}

} // namespace

TEST(ClientReport, IsShownWhenItComesBeforeTheBlockIsDisabled) {
    struct Row {
        u32 count;
        std::vector<EntryPoint> resume;
        const char *summary;
    };
    const EntryPoint four{{0, 0, 0, 0, 0, 0, 0, 4}, secondDay1984 + 1000};
    for (const Row &row : {
             Row{0,
                 {},
                 "2 reports of LD/LLN0.cb[BR]; to go on: --resume "
                 "0000000000000006@1984-01-02T00:00:01.000Z\n"},
             Row{1,
                 {},
                 "1 report of LD/LLN0.cb[BR]; to go on: --resume "
                 "0000000000000005@1984-01-02T00:00:01.000Z\n"},
             // Nothing is known of the entry, and it is too late to begin anew.
             Row{0,
                 {four},
                 "no reports of LD/LLN0.cb[BR]; to go on: --resume "
                 "0000000000000004@1984-01-02T00:00:01.000Z\n"},
         }) {
        std::vector<std::string> answers = {blockState, dataSetOfOne, blockState, written, written};
        if (!row.resume.empty()) {
            answers.push_back(written); // of EntryID
        }
        std::vector<ied::test::ScriptStep> steps = {{"", ied::test::connectionConfirmHex},
                                                    {"", ied::test::connectReply}};
        for (std::size_t i = 0; i < answers.size(); ++i) {
            const std::string answer =
                ied::test::dataFrame(ied::test::tlv("A1", "02 01 0" + std::to_string(i + 1) + answers[i]));
            const bool last = i + 1 == answers.size();
            steps.push_back({"", (last ? ied::test::dataFrame(entryReport("05", "00")) +
                                             ied::test::dataFrame(entryReport("06", "01"))
                                       : "") +
                                     answer});
        }
        ScriptedPeer peer(steps);
        Options options;
        options.arguments = {"LD/LLN0.cb"};
        options.span = 0.001;
        options.count = row.count;
        options.resume = row.resume;
        Connection connection;
        ASSERT_TRUE(connect(connection, "127.0.0.1", peer.port)) << connection.failure.text;
        Session session{options, {}, blockModel(connection)};
        testing::internal::CaptureStdout();
        const int status = showReports(session);
        const std::string shown = testing::internal::GetCapturedStdout();
        EXPECT_EQ(status, statusGood);
        EXPECT_TRUE(shown.ends_with(row.summary)) << shown;
    }
}

TEST(ClientReport, AnEndOfTheAssociationEndsTheWait) {
    for (const auto &[frames, why] :
         {std::pair{ied::test::tpkt("02 F0 80 19 07 11 01 05 31 02 32 10"),
                    "the server aborted the association"},
          std::pair{std::string("04 00 00 07 02 F0 80"), "the server sent a malformed message: TPKT header"},
          std::pair{std::string(ied::test::releaseReply), "the server ended the association"}}) {
        ScriptedPeer peer(afterIdentify(ied::test::dataFrame(identifyAnswerHex) + frames));
        Connection connection;
        ASSERT_TRUE(connect(connection, "127.0.0.1", peer.port)) << connection.failure.text;
        ASSERT_TRUE(request(connection, identifyRequest())) << connection.failure.text;
        EXPECT_FALSE(listen(connection, Clock::now() + std::chrono::seconds(60)));
        EXPECT_EQ(connection.failure.text, why);
        EXPECT_EQ(connection.failure.status, statusNoConnection);
    }
}
