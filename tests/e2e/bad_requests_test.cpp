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
const std::pair<const char *, const char *> leavesOfEveryType[] = {
    {"ZRX418CTRL",
     "LLN0$BR$brcbOut01$OptFlds LLN0$BR$brcbOut01$TrgOps LLN0$BR$brcbOut01$RptEna "
     "LLN0$BR$brcbOut01$TimeOfEntry LLN0$BR$brcbOut01$SqNum LLN0$BR$brcbOut01$ConfRev "
     "LLN0$BR$brcbOut01$EntryID LLN0$BR$brcbOut01$RptID outGGIO1$CF$SPCSO1$sboTimeout LLN0$CF$Mod$ctlModel "
     "clrGGIO1$CO$ClrDIPls1$Oper$Check clrGGIO1$CO$ClrDIPls1$Oper$ctlVal "
     "clrGGIO1$CO$ClrDIPls1$Oper$origin$orCat clrGGIO1$CO$ClrDIPls1$Oper$ctlNum "
     "clrGGIO1$CO$ClrDIPls1$Oper$origin$orIdent clrGGIO1$CO$ClrDIPls1$Oper$T outGGIO1$CO$SPCSO5$SBO "
     "LLN0$DC$NamPlt$vendor LLN0$EX$NamPlt$ldNs LLN0$ST$Mod$q LPHD1$ST$Proxy$stVal LLN0$ST$Mod$stVal "
     "clrGGIO1$ST$ClrDIPls1$ctlNum clrGGIO1$ST$ClrDIPls1$origin$orIdent LLN0$ST$Mod$t"},
    {"ZRX418DMND", "avgMHAI1$CF$HA$frequency avgMHAI1$CF$HA$numHar avgMHAI1$MX$Hz$q avgMHAI1$MX$Hz$mag$f "
                   "avgMSQI1$MX$SeqA$seqT avgMHAI1$MX$Hz$t avgMHAI1$MX$HA$phsAHar LLN0$RP$urcbPre01$OptFlds "
                   "LLN0$RP$urcbPre01$TrgOps LLN0$RP$urcbPre01$RptEna LLN0$RP$urcbPre01$SqNum "
                   "LLN0$RP$urcbPre01$ConfRev LLN0$RP$urcbPre01$RptID"},
    {"ZRX418ENRG", "MMTR1$ST$DmdWh$actVal"},
    {"ZRX418MEAS",
     "LLN0$LG$lcbRms$TrgOps LLN0$LG$lcbRms$LogEna LLN0$LG$lcbRms$OldEntrTm LLN0$LG$lcbRms$IntgPd "
     "LLN0$LG$lcbRms$OldEntr LLN0$LG$lcbRms$LogRef MMXU1$SV$TotW$subQ MMXU1$SV$TotW$subEna "
     "MMXU1$SV$TotW$subMag$f MMXU1$SV$TotW$subID MMXU1$CF$TotW$db MMXU1$CF$TotW$units$SIUnit MMXU1$DC$TotW$d "
     "MMXU1$ST$Mod MMXU1$MX MMXU1$CF$TotW LLN0$RP LLN0"},
    {"ZRX418SETSNP", "snpGGIO1$CF$StrMod$minVal snpGGIO1$SE$StrMod$setVal snpGGIO1$SG$StrMod$setVal "
                     "LLN0$SP$SGCB$CnfEdit LLN0$SP$SGCB$NumOfSG LLN0$SP$SGCB$LActTm"},
    {"ZRX418SETSPT", "lgcGGIO1$SE$LogicEna$setVal setGGIO1$SE$OvStrVar$setMag$f lgcGGIO1$SG$LogicEna$setVal "
                     "setGGIO1$SG$OvStrVar$setMag$f"},
    {"ZRX418SETSYS", "clcGGIO1$SE$ClcTotVA$setVal clcGGIO1$SG$ClcTotVA$setVal bilGGIO1$SP$LogIntv$setVal"},
    {"ZRX418STEV", "spGGIO1$DC$Alm1$dU"},
};

// An MMS Data of every type, and such as are no encoding of their type.
const std::string dataOfEveryType =
    "830101 830102 84020640 8403030000 840100 850105 850480000000 860105 860500FFFFFFFF 8705083F800000 "
    "8705087FC00000 8705093F800000 8700 8900 89080000000000000000 8A00 8C06000000000000 8C0400000000 8D0105 "
    "8E020080 8F025101 9002C3A9 91080000000000000000 910700000000000000 A100 A200 A203850101 "
    "A106850101850102 A20AA208A20687043F800000 " +
    tlv("8A", std::string(2 * 300, '4'));

} // namespace

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

TEST_F(BadRequests, AValueOfEveryTypeForALeafOfEveryTypeIsAnsweredByAResult) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    std::set<std::string> written;
    for (const auto &[device, items] : leavesOfEveryType) {
        for (const std::string &item : parts(items, ' ')) {
            const std::string before = ask(client, read(1, device, item)).value_or("silence");
            EXPECT_TRUE(before.starts_with("A1")) << device << "/" << item << ": " << before;
            for (const std::string &value : parts(dataOfEveryType, ' ')) {
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
                           "MMXU1$CF$TotW$db := 860105", "LLN0$BR$brcbOut01$RptEna := 830101",
                           "LLN0$BR$brcbOut01$RptEna := 830102", "LLN0$RP$urcbPre01$RptEna := 830101",
                           "LLN0$RP$urcbPre01$RptEna := 830102"}))
        << "a number within its range, and what enables reports";
    EXPECT_EQ(ask(client, write(1, "ZRX418MEAS", "MMXU1$CF$TotW$db", "86 01 00")).value_or(""),
              canonical("A1 07 02 01 01 A5 02 81 00"));
}
