// Requests and associates that are sound as octets and wrong in what they say: an error of ISO 9506-2 or
// silence, and afterwards the server is as before.
#include "tests/support/serverFixture.h"

#include <set>

using namespace ied::test;

namespace {

class BadRequests : public ServerSuite {
  protected:
    static void SetUpTestSuite() { startSuite({"", {"tickRate=1000", "maxClientNum=32"}, {}, true}); }
    void TearDown() override { expectIntact(); }
};

// One leaf of every type under every functional constraint that the model has, and some that are none.
const std::vector<std::pair<std::string, std::vector<std::string>>> leavesOfEveryType = {
    {"ZRX418CTRL",
     {"LLN0$BR$brcbOut01$OptFlds",
      "LLN0$BR$brcbOut01$TrgOps",
      "LLN0$BR$brcbOut01$RptEna",
      "LLN0$BR$brcbOut01$TimeOfEntry",
      "LLN0$BR$brcbOut01$SqNum",
      "LLN0$BR$brcbOut01$ConfRev",
      "LLN0$BR$brcbOut01$EntryID",
      "LLN0$BR$brcbOut01$RptID",
      "outGGIO1$CF$SPCSO1$sboTimeout",
      "LLN0$CF$Mod$ctlModel",
      "clrGGIO1$CO$ClrDIPls1$Oper$Check",
      "clrGGIO1$CO$ClrDIPls1$Oper$ctlVal",
      "clrGGIO1$CO$ClrDIPls1$Oper$origin$orCat",
      "clrGGIO1$CO$ClrDIPls1$Oper$ctlNum",
      "clrGGIO1$CO$ClrDIPls1$Oper$origin$orIdent",
      "clrGGIO1$CO$ClrDIPls1$Oper$T",
      "outGGIO1$CO$SPCSO5$SBO",
      "LLN0$DC$NamPlt$vendor",
      "LLN0$EX$NamPlt$ldNs",
      "LLN0$ST$Mod$q",
      "LPHD1$ST$Proxy$stVal",
      "LLN0$ST$Mod$stVal",
      "clrGGIO1$ST$ClrDIPls1$ctlNum",
      "clrGGIO1$ST$ClrDIPls1$origin$orIdent",
      "LLN0$ST$Mod$t"}},
    {"ZRX418DMND",
     {"avgMHAI1$CF$HA$frequency", "avgMHAI1$CF$HA$numHar", "avgMHAI1$MX$Hz$q", "avgMHAI1$MX$Hz$mag$f",
      "avgMSQI1$MX$SeqA$seqT", "avgMHAI1$MX$Hz$t", "avgMHAI1$MX$HA$phsAHar", "LLN0$RP$urcbPre01$OptFlds",
      "LLN0$RP$urcbPre01$TrgOps", "LLN0$RP$urcbPre01$RptEna", "LLN0$RP$urcbPre01$SqNum",
      "LLN0$RP$urcbPre01$ConfRev", "LLN0$RP$urcbPre01$RptID"}},
    {"ZRX418ENRG", {"MMTR1$ST$DmdWh$actVal"}},
    {"ZRX418MEAS",
     {"LLN0$LG$lcbRms$TrgOps", "LLN0$LG$lcbRms$LogEna", "LLN0$LG$lcbRms$OldEntrTm", "LLN0$LG$lcbRms$IntgPd",
      "LLN0$LG$lcbRms$OldEntr", "LLN0$LG$lcbRms$LogRef", "MMXU1$SV$TotW$subQ", "MMXU1$SV$TotW$subEna",
      "MMXU1$SV$TotW$subMag$f", "MMXU1$SV$TotW$subID", "MMXU1$CF$TotW$db", "MMXU1$CF$TotW$units$SIUnit",
      "MMXU1$DC$TotW$d", "MMXU1$ST$Mod", "MMXU1$MX", "MMXU1$CF$TotW", "LLN0$RP", "LLN0"}},
    {"ZRX418SETSNP",
     {"snpGGIO1$CF$StrMod$minVal", "snpGGIO1$SE$StrMod$setVal", "snpGGIO1$SG$StrMod$setVal",
      "LLN0$SP$SGCB$CnfEdit", "LLN0$SP$SGCB$NumOfSG", "LLN0$SP$SGCB$LActTm"}},
    {"ZRX418SETSPT",
     {"lgcGGIO1$SE$LogicEna$setVal", "setGGIO1$SE$OvStrVar$setMag$f", "lgcGGIO1$SG$LogicEna$setVal",
      "setGGIO1$SG$OvStrVar$setMag$f"}},
    {"ZRX418SETSYS",
     {"clcGGIO1$SE$ClcTotVA$setVal", "clcGGIO1$SG$ClcTotVA$setVal", "bilGGIO1$SP$LogIntv$setVal"}},
    {"ZRX418STEV", {"spGGIO1$DC$Alm1$dU"}},
};

// An MMS Data of every type, and such as are no encoding of their type.
const std::vector<std::string> dataOfEveryType = {"83 01 01",
                                                  "83 01 02",
                                                  "84 02 06 40",
                                                  "84 03 03 00 00",
                                                  "84 01 00",
                                                  "85 01 05",
                                                  "85 04 80 00 00 00",
                                                  "86 01 05",
                                                  "86 05 00 FF FF FF FF",
                                                  "87 05 08 3F 80 00 00",
                                                  "87 05 08 7F C0 00 00",
                                                  "87 05 09 3F 80 00 00",
                                                  "87 00",
                                                  "89 00",
                                                  "89 08 00 00 00 00 00 00 00 00",
                                                  "8A 00",
                                                  tlv("8A", std::string(2 * 300, '4')),
                                                  "8C 06 00 00 00 00 00 00",
                                                  "8C 04 00 00 00 00",
                                                  "8D 01 05",
                                                  "8E 02 00 80",
                                                  "8F 02 51 01",
                                                  "90 02 C3 A9",
                                                  "91 08 00 00 00 00 00 00 00 00",
                                                  "91 07 00 00 00 00 00 00 00",
                                                  "A1 00",
                                                  "A2 00",
                                                  "A2 03 85 01 01",
                                                  "A1 06 85 01 01 85 01 02",
                                                  "A2 0A A2 08 A2 06 87 04 3F 80 00 00"};

// A connect whose parts are all given: session selectors, the sequence of contexts, and what stands in
// the AARQ before the user information.
std::string connectWith(const std::string &selectors, const std::string &contexts, const std::string &fields,
                        const std::string &sessionLength = "") {
    const std::string initiate =
        "A8 26 80 03 00 FD E8 81 01 01 82 01 05 83 01 05 A4 16 80 01 01 81 03 05 F1 00"
        "82 0C 03 EE 1C 00 00 04 08 00 00 79 EF 18";
    const std::string user = tlv("61", tlv("30", "02 01 01" + tlv("A0", aarq(initiate, fields))));
    const std::string cp = tlv("31", "A0 03 80 01 01" + tlv("A2", contexts + "88 02 06 00" + user));
    const auto length = [](const std::string &text) { return hexNumber(octets(text).size(), 1); };
    const std::string spdu = "05 06 13 01 00 16 01 02 14 02 00 02" + selectors + "C1" + length(cp) + cp;
    return tpkt("02 F0 80 0D" + (sessionLength.empty() ? length(spdu) : sessionLength + length(spdu)) + spdu);
}

} // namespace

TEST_F(BadRequests, IndicesOutsideTheArrayAndBeyond32BitsReadNothing) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const std::string nothing = canonical("A1 0A 02 01 01 A4 05 A1 03 80 01 0A");
    for (const char *access : {"A5 03 82 01 40", "A5 06 82 04 7F FF FF FF", "A5 07 82 05 00 80 00 00 00",
                               "A5 07 82 05 00 FF FF FF FF", "A5 08 A3 06 80 01 40 81 01 01",
                               "A5 0F A3 0D 80 05 00 80 00 00 00 81 04 7F FF FF FF",
                               "A5 10 A3 0E 80 05 00 FF FF FF FF 81 05 00 FF FF FF FF"}) {
        EXPECT_EQ(ask(client, read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", access)), nothing) << access;
    }
    EXPECT_EQ(ask(client, read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", "A5 08 A3 06 80 01 00 81 01 00")),
              canonical("A1 09 02 01 01 A4 04 A1 02 A1 00"))
        << "of no elements";
}

TEST_F(BadRequests, NamesOfEveryLengthAndOddSeparatorsLeadNowhere) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    std::vector<std::pair<std::string, std::string>> names;
    for (const std::size_t length : {0U, 1U, 32U, 33U, 255U, 256U, 20000U}) {
        names.emplace_back("ZRX418MEAS", std::string(length, 'n'));
        names.emplace_back("ZRX418MEAS", std::string(length, '$'));
        names.emplace_back("ZRX418MEAS", "LLN0$ST$Mod" + std::string(length, '$') + "$");
        names.emplace_back("ZRX418MEAS", "LLN0$ST$Mod$" + std::string(length, 'n'));
        names.emplace_back(std::string(length, 'n'), "LLN0$ST$Mod");
        names.emplace_back(std::string(length, '$'), "LLN0$ST$Mod");
    }
    for (const char *item : {"$LLN0", "LLN0$", "LLN0$$ST", "$LLN0$ST$Mod", "LLN0$ST$$Mod", "$$ST$Mod"}) {
        names.emplace_back("ZRX418MEAS", item);
    }
    const auto answer = [&](const std::string &pdu) { return ask(client, pdu).value_or("silence"); };
    const std::string accessError = canonical("A2 0A 80 01 01 A2 05 A0 03 87 01 02");
    for (const auto &[domain, item] : names) {
        const std::string what = domain.substr(0, 40) + "/" + item.substr(0, 40);
        EXPECT_EQ(answer(read(1, domain, item)), canonical("A1 0A 02 01 01 A4 05 A1 03 80 01 0A")) << what;
        EXPECT_EQ(answer(write(1, domain, item, "83 01 01")), canonical("A1 08 02 01 01 A5 03 80 01 0A"))
            << what;
        EXPECT_EQ(answer(getTypeOf(1, domain, item)), accessError) << what;
        if (!item.empty() && !domain.empty()) { // an empty name is none
            EXPECT_EQ(answer(getNameList(1, 0, domain, item)), accessError) << what;
        }
        EXPECT_EQ(answer(confirmedRequest(1, tlv("AC", objectName(domain, item)))),
                  canonical("A2 0A 80 01 01 A2 05 A0 03 82 01 01"))
            << what;
    }
}

TEST_F(BadRequests, InvokeIdsComeBackAsTheyWereHoweverOften) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const auto identifyWith = [](const std::string &id) { return dataFrame(tlv("A0", id + identify)); };
    const std::vector<std::string> ids = {"02 01 07",          "02 01 07",          "02 01 00",
                                          "02 01 FF",          "02 04 7F FF FF FF", "02 04 80 00 00 00",
                                          "02 04 7F FF FF FF", "02 01 07"};
    std::string frames;
    for (const std::string &id : ids) {
        frames += identifyWith(id);
    }
    sendHex(client, frames);
    for (const std::string &id : ids) {
        EXPECT_EQ(receiveMms(client).value_or("silence").substr(4, canonical(id).size()), canonical(id));
    }
}

TEST_F(BadRequests, AProposedSizeOfAnyNumberIsAnsweredOrIgnored) {
    const std::string rest = "81 01 05 82 01 05 83 01 05 A4 16 80 01 01 81 03 05 F1 00"
                             "82 0C 03 EE 1C 00 00 04 08 00 00 79 EF 18";
    struct Proposal {
        const char *size;
        const char *agreed; // "" for silence
    };
    for (const Proposal &proposal :
         {Proposal{"80 01 00", "80 01 00"}, Proposal{"80 01 01", "80 01 01"}, Proposal{"", "80 01 00"},
          Proposal{"80 01 FF", "80 01 FF"}, Proposal{"80 04 7F FF FF FF", "80 03 01 86 A0"},
          Proposal{"80 05 00 FF FF FF FF", ""}, Proposal{"80 05 01 00 00 00 00", ""},
          Proposal{"80 00", ""}}) {
        RawClient client;
        connectTo(client, server->port);
        sendHex(client, connectionRequestHex);
        ASSERT_EQ(receiveFrame(client), canonical(connectionConfirmHex));
        const std::string request = connectFrame(tlv("A8", proposal.size + rest));
        sendApart(client, request);
        if (*proposal.agreed == 0) { // the right one then comes first
            sendHex(client, associateRequestHex);
            EXPECT_EQ(receiveFrame(client), canonical(connectReply)) << proposal.size;
        } else {
            EXPECT_NE(
                receiveFrame(client).value_or("silence").find(canonical(proposal.agreed) + "810101820105"),
                std::string::npos)
                << proposal.size;
        }
        EXPECT_TRUE(stillServed(client)) << proposal.size;
    }
}

TEST_F(BadRequests, RequestsUnderWayAreAnsweredBeforeAConcludeACancelAReleaseOrAnAbort) {
    struct End {
        const char *name;
        std::string frame;
        const char *answer; // whole frame
        bool closes;
    };
    const std::string one = dataFrame(read(1, "ZRX418MEAS", "MMXU1$MX"));
    for (const End &end :
         {End{"conclude", dataFrame(concludeRequestHex),
              "03 00 00 17 02 F0 80 01 00 01 00 61 0A 30 08 02 01 03 A0 03", false},
          End{"cancel", dataFrame("85 01 01"), "", false}, End{"release", releaseFrame(), releaseReply, true},
          End{"abort", tpkt("02 F0 80 64 03 80 01 07"), "03 00 00 10 02 F0 80 19 07 11 01 05 31 02 32 10",
              true}}) {
        RawClient client;
        ASSERT_TRUE(associate(client, server->port));
        sendHex(client, one + one + one + end.frame);
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(receiveMms(client).value_or("silence").starts_with(canonical("A1 82"))) << end.name;
        }
        if (end.closes) {
            EXPECT_EQ(receiveFrame(client), canonical(end.answer)) << end.name;
            EXPECT_TRUE(closedByPeer(client)) << end.name;
        } else {
            EXPECT_EQ(receiveMms(client).value_or("silence"),
                      canonical(end.name == std::string("conclude") ? concludeResponseHex
                                                                    : "A2 0A 80 01 01 A2 05 A0 03 8A 01 02"));
            EXPECT_TRUE(stillServed(client)) << end.name;
        }
    }
}

TEST_F(BadRequests, AnAssociateWithOneOddPartIsAcceptedOrIgnored) {
    const std::string selectors = "33 02 00 01 34 02 00 01";
    const std::string acse = "30 0F 02 01 01 06 04 52 01 00 01 30 04 06 02 51 01";
    const std::string mms = "30 10 02 01 03 06 05 28 CA 22 02 01 30 04 06 02 51 01";
    const std::string both = tlv("A4", acse + mms);
    struct Odd {
        const char *name;
        std::string frame;
        bool accepted;
    };
    const std::vector<Odd> table = {
        {"nothing", connectWith(selectors, both, ""), true},
        {"a calling selector of no octet", connectWith("33 00 34 02 00 01", both, ""), false},
        {"a calling selector of 16 octets",
         connectWith("33 10" + std::string(32, '0') + "34 02 00 01", both, ""), false},
        {"a called selector of 17 octets", connectWith("33 02 00 01 34 11" + std::string(34, '0'), both, ""),
         false},
        {"a selector longer than the frame", connectWith("33 FE 00 01 34 02 00 01", both, ""), false},
        {"a length of three octets", connectWith(selectors, both, "", "FF 00"), false},
        {"a context twice", connectWith(selectors, tlv("A4", acse + acse + mms), ""), true},
        {"an unknown context",
         connectWith(selectors, tlv("A4", "30 0F 02 01 05 06 04 29 01 02 03 30 04 06 02 51 01" + acse), ""),
         true},
        {"a context list that leaves its parent", connectWith(selectors, "A4 7F" + acse, ""), false},
        {"a title without an end", connectWith(selectors, both, "A2 0A 06 08 FF FF FF FF FF FF FF FF"), true},
        {"a title that leaves its parent", connectWith(selectors, both, "A2 04 06 08 FF FF"), false},
        {"a qualifier of nine octets", connectWith(selectors, both, "A3 0B 02 09 00 00 00 00 00 00 00 00 01"),
         false},
        {"a password", connectWith(selectors, both, "8A 02 07 80 8B 03 52 03 01 AC 04 80 02 70 77"), true},
        {"a password of no octet", connectWith(selectors, both, "8A 02 07 80 8B 03 52 03 01 AC 02 80 00"),
         true},
        {"an authentication of bits", connectWith(selectors, both, "AC 04 81 02 05 A0"), true},
        {"an authentication of nine unused bits", connectWith(selectors, both, "AC 04 81 02 09 A0"), false},
        {"an authentication of another kind", connectWith(selectors, both, "AC 04 84 02 05 A0"), false},
        {"an authentication of nothing", connectWith(selectors, both, "AC 00"), false}};
    for (const Odd &odd : table) {
        RawClient client;
        connectTo(client, server->port);
        sendHex(client, connectionRequestHex);
        ASSERT_EQ(receiveFrame(client), canonical(connectionConfirmHex));
        sendApart(client, odd.frame);
        if (!odd.accepted) {
            sendHex(client, associateRequestHex);
        }
        EXPECT_EQ(receiveFrame(client), canonical(connectReply)) << odd.name;
        EXPECT_TRUE(stillServed(client)) << odd.name;
        sendApart(client, odd.frame); // once more, where none is due
        EXPECT_TRUE(stillServed(client)) << odd.name;
        EXPECT_EQ(hexText(client.pending), "") << odd.name;
    }
}

TEST_F(BadRequests, AValueOfEveryTypeForALeafOfEveryTypeIsAnsweredByAResult) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    std::set<std::string> written;
    for (const auto &[device, items] : leavesOfEveryType) {
        for (const std::string &item : items) {
            const std::string before = ask(client, read(1, device, item)).value_or("silence");
            EXPECT_TRUE(before.starts_with("A1")) << device << "/" << item << ": " << before;
            for (const std::string &value : dataOfEveryType) {
                sendApart(client, dataFrame(write(1, device, item, value)));
                sendHex(client, dataFrame(confirmedRequest(2, "82 00")));
                std::string answer = receiveMms(client).value_or("");
                if (answer.starts_with("A11E020102")) {
                    continue; // no encoding of a value: silence
                }
                const bool done = answer == canonical("A1 07 02 01 01 A5 02 81 00");
                EXPECT_TRUE(done || answer.starts_with(canonical("A1 08 02 01 01 A5 03 80 01")))
                    << item << " := " << value << ": " << answer;
                if (done) {
                    written.insert(item + " := " + value);
                }
                answer = receiveMms(client).value_or("");
                EXPECT_TRUE(answer.starts_with("A11E020102")) << item << " := " << value;
            }
            if (!item.ends_with("$db") && !item.ends_with("$RptEna")) {
                EXPECT_EQ(ask(client, read(1, device, item)), before) << device << "/" << item << " changed";
            }
        }
    }
    EXPECT_EQ(written, (std::set<std::string>{
                           "MMXU1$CF$TotW$db := 86 01 05", "LLN0$BR$brcbOut01$RptEna := 83 01 01",
                           "LLN0$BR$brcbOut01$RptEna := 83 01 02", "LLN0$RP$urcbPre01$RptEna := 83 01 01",
                           "LLN0$RP$urcbPre01$RptEna := 83 01 02"}))
        << "a number within its range, and what enables reports";
    EXPECT_EQ(ask(client, write(1, "ZRX418MEAS", "MMXU1$CF$TotW$db", "86 01 00")).value_or(""),
              canonical("A1 07 02 01 01 A5 02 81 00"));
}
