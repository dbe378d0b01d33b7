#include "asn1/mmsCodec.h"
#include "device/externGlbCfg.h"
#include "tests/support/conversation.h"

#include <cstring>
#include <gtest/gtest.h>

namespace ied::test {
namespace {

TEST(Association, RepliesToTheOctetAndEndsWithTheRelease) {
    Conversation client;
    EXPECT_EQ(client.status(), CS_TCP);
    EXPECT_EQ(client.send(crFrame), ccFrame);
    EXPECT_EQ(client.status(), CS_COTP);
    EXPECT_EQ(client.send(connectFrame(initiateRequest)), canonical(connectReply));
    EXPECT_EQ(client.status(), CS_ASSOCIATED);
    EXPECT_FALSE(isClientValid(client.slot));
    EXPECT_EQ(client.send(request(7, identify)), identifyReply(7));
    EXPECT_EQ(client.status(), CS_DATA);
    EXPECT_TRUE(isClientValid(client.slot));
    EXPECT_EQ(client.send(dataFrame("8B00")), dataFrame("8C00"));
    EXPECT_EQ(client.status(), CS_CONCLUDED);
    EXPECT_EQ(client.send(request(8, identify)), identifyReply(8));
    EXPECT_EQ(client.send(releaseFrame()), releaseReply);
    EXPECT_EQ(client.status(), CS_RELEASED);
}

TEST(Association, NoClientButOneInTheDataStateThatReadsIsValid) {
    Conversation client;
    client.reachData();
    clientStat[client.slot].sendFail = externGlbCfg.maxSendFail;
    EXPECT_FALSE(isClientValid(client.slot));
    EXPECT_FALSE(isClientValid(externGlbCfg.maxClientNum));
    EXPECT_FALSE(isClientValid(clientNone));
}

// ------------------------------------------------------------------- what comes at the wrong time

enum class Reached {
    tcp,
    cotp,
    associated,
    data,
    concluded
};

void reach(Conversation *client, Reached state) {
    if (state == Reached::cotp) {
        client->send(crFrame);
    } else if (state == Reached::associated) {
        client->associate();
    } else if (state >= Reached::data) {
        client->reachData();
    }
    if (state == Reached::concluded) {
        client->send(dataFrame("8B00"));
    }
}

std::string stateName(const testing::TestParamInfo<Reached> &info) {
    const char *const names[] = {"tcp", "cotp", "associated", "data", "concluded"};
    return names[static_cast<int>(info.param)];
}

class Order : public testing::TestWithParam<Reached> {};

TEST_P(Order, AdmitsWhatTheStateAllowsAndDropsTheRestInSilence) {
    struct Sent {
        const char *what;
        std::string octets;
        std::string reply;      // where it is admitted
        bool beforeAssociation; // admitted only in state 4 (AARQ), else from state 5
    };
    const Sent table[] = {
        {"connect", connectFrame(initiateRequest), canonical(connectReply), true},
        {"request", request(3, identify), identifyReply(3), false},
        {"conclude", dataFrame("8B00"), dataFrame("8C00"), false},
        {"release", releaseFrame(), releaseReply, false},
        {"abort", canonical(abortFrame), abortReply, false},
    };
    Conversation client;
    for (const Sent &sent : table) {
        client.restart();
        reach(&client, GetParam());
        const u8 before = client.status();
        const bool admitted = sent.beforeAssociation ? before == CS_COTP : before >= CS_ASSOCIATED;
        EXPECT_EQ(client.send(sent.octets), admitted ? sent.reply : "") << sent.what;
        if (!admitted) {
            EXPECT_EQ(client.status(), before) << sent.what;
        }
        EXPECT_EQ(client.held(), 0U) << sent.what;
    }
}

INSTANTIATE_TEST_SUITE_P(States, Order,
                         testing::Values(Reached::tcp, Reached::cotp, Reached::associated, Reached::data,
                                         Reached::concluded),
                         stateName);

TEST(Order, ANewCrOnALiveAssociationStartsOver) {
    Conversation client;
    client.reachData();
    EXPECT_EQ(client.send(crFrame), ccFrame);
    EXPECT_EQ(client.send(request(1, identify)), "");
    EXPECT_EQ(client.send(connectFrame(initiateRequest)), canonical(connectReply));
    EXPECT_EQ(client.send(request(2, identify)), identifyReply(2));
}

TEST(Order, ARequestMayStandBehindTheReleaseInOneSegment) {
    Conversation client;
    client.reachData();
    EXPECT_EQ(client.send(request(4, identify) + releaseFrame()), identifyReply(4) + releaseReply);
    EXPECT_EQ(client.status(), CS_RELEASED);
}

TEST(Order, AReleaseWhereTheAssociateBelongsIsAnsweredAndMakesNoAssociation) {
    Conversation client;
    client.send(crFrame);
    const std::string reply = client.send(frame(connectSpdu(cpType("6203 800100"))));
    EXPECT_EQ(reply.substr(14, 2), "0E");
    EXPECT_NE(reply.find("020101A0056303800101"), std::string::npos) << reply;
    EXPECT_EQ(client.status(), CS_NONE);
    EXPECT_EQ(client.send(request(1, identify)), "");
    client.associate();
}

// Frames that would bring a request past the state of the client.
TEST(Order, NothingIsServedBehindACrOrByAnAssociateInAFinish) {
    const std::string data = request(1, identify).substr(14);
    const std::string finish = tlv("C1", tlv("61", tlv("30", "020101" + tlv("A0", aarq(initiateRequest)))));
    for (const std::string &sent : {tpkt("06E0 0000 0001 00" + data), frame(tlv("09", finish))}) {
        Conversation client;
        EXPECT_EQ(client.send(sent), "") << sent;
        EXPECT_EQ(client.status(), CS_TCP);
        client.reachData();
        EXPECT_EQ(client.send(sent), "") << sent;
        EXPECT_EQ(client.status(), CS_DATA);
        EXPECT_EQ(client.send(request(9, identify)), identifyReply(9));
    }
}

struct IgnoredCase {
    const char *what;
    std::string octets;
};

const IgnoredCase ignoredCases[] = {
    {"lone_tpkt_header", "03000004"},
    {"empty_dt", frame("")},
    {"lone_give_tokens", frame("0100")},
    {"session_data_without_data", frame("01000100")},
    {"finish_without_user_data", frame("0900")},
    {"tpkt_of_length_zero", "03000000 02F080"},
    {"disconnect_request", "0300000B 0680 0000 0001 00"},
    {"abort_apdu", frame("0910 C10E 610C 300A 020101 A005 6403 800100")},
    {"empty_acse_value", frame("090B C109 6107 3005 020101 A000")},
    {"reject_pdu", dataFrame("A403 810100")},
    {"unknown_pdu", dataFrame("AF00")},
    {"acse_in_data", dataFrame("6203 800100")},
    {"empty_user_data", frame("01000100 6100")},
    {"simply_encoded_data", frame("01000100 4000")},
    {"octet_aligned_value", frame("01000100 6108 3006 020103 810100")},
    {"service_ext_in_primitive_form", dataFrame("A00B 020101 8200 9F4F03 800101")},
    {"cut_mms_pdu", dataFrame("A005 020101")}};

TEST(Ignored, GetsSilenceAndTheNextRequestIsServed) {
    for (const IgnoredCase &each : ignoredCases) {
        SCOPED_TRACE(each.what);
        Conversation client;
        client.reachData();
        EXPECT_EQ(client.send(each.octets), "");
        EXPECT_EQ(client.status(), CS_DATA);
        EXPECT_EQ(client.send(request(9, identify)), identifyReply(9));
        EXPECT_EQ(client.held(), 0U);
    }
}

// ------------------------------------------------------------------------------- the negotiation

struct Proposal {
    const char *what;
    std::string request;
    std::string response;
};

const char *const fullCbb = "810305F100";

std::string initiateWith(const std::string &detail, const std::string &outstanding = "810105 820105",
                         const std::string &nesting = "", const std::string &cbb = fullCbb) {
    return tlv("A8",
               detail + outstanding + nesting + tlv("A4", "800101" + cbb + "820C03EE1C00000408000079EF18"));
}

std::string acceptedWith(const std::string &detail, const std::string &outstanding = "810101 820105",
                         const std::string &nesting = "", const std::string &cbb = fullCbb) {
    return tlv("A9",
               detail + outstanding + nesting + tlv("A4", "800101" + cbb + "820C03EE0C00000400000048E518"));
}

const char *const usual = "810105 820105";
const char *const granted = "810101 820105";

const Proposal negotiationCases[] = {
    {"large_pdu", initiateWith("8003030D40"), acceptedWith("80030186A0")},
    {"small_pdu", initiateWith("800203E8"), acceptedWith("800203E8")},
    {"pdu_of_nothing", initiateWith("800100"), acceptedWith("800100")},
    {"negative_pdu", initiateWith("8001FF"), acceptedWith("8001FF")},
    {"no_pdu_size", initiateWith(""), acceptedWith("800100")},
    {"nothing_outstanding", initiateWith("", "810100 820100"), acceptedWith("800100", "810100 820100")},
    {"much_outstanding", initiateWith("", "8101 7F 82 0200C8"), acceptedWith("800100")},
    {"shallow_nesting", initiateWith("", usual, "830103"), acceptedWith("800100", granted, "830103")},
    {"deep_nesting", initiateWith("", usual, "83017F"), acceptedWith("800100", granted, "830105")},
    {"all_parameters", initiateWith("", usual, "", "810305FFE0"), acceptedWith("800100")},
    {"no_parameters", initiateWith("", usual, "", "8103050000"),
     acceptedWith("800100", granted, "", "8103050000")},
    {"parameters_of_one_octet", initiateWith("", usual, "", "810200FF"), acceptedWith("800100")},
    {"parameters_of_no_octet", initiateWith("", usual, "", "810100"),
     acceptedWith("800100", granted, "", "8103050000")}};

TEST(Negotiation, Answer) {
    for (const Proposal &each : negotiationCases) {
        SCOPED_TRACE(each.what);
        Conversation client;
        client.send(crFrame);
        // Response and request have the same layers around them: it is enough to find the PDU.
        const std::string reply = client.send(connectFrame(each.request));
        EXPECT_NE(reply.find(canonical(each.response)), std::string::npos) << reply;
    }
}

TEST(NegotiationRecord, HoldsTheSizeAndExactlyTheConfiguredServices) {
    Conversation client;
    const u8 list[] = {0, 2, 90, 84, 85, 0xFF, 4};
    std::memcpy(externGlbCfg.mmsServiceParam, list, sizeof list);
    client.send(crFrame);
    EXPECT_NE(client.send(connectFrame(initiateRequest)), "");
    const ClientStat &stat = clientStat[client.slot];
    EXPECT_EQ(stat.pduSize, 65000U);
    for (u32 n = 0; n < sizeof stat.supportServ; ++n) {
        EXPECT_EQ(stat.supportServ[n], n == 0 || n == 2 || n == 84 || n == 85) << n;
    }
    EXPECT_EQ(client.send(request(1, identify)), identifyReply(1));
    EXPECT_EQ(client.send(dataFrame("A009 020103 9F2503616263")), dataFrame("A406 800103 810100"));
}

TEST(NegotiationRecord, AnEmptyListRejectsEveryServiceButNotConclude) {
    Conversation client;
    externGlbCfg.mmsServiceParam[0] = 0xFF;
    client.send(crFrame);
    const std::string reply = client.send(connectFrame(initiateRequest));
    EXPECT_NE(reply.find("820C03" + std::string(22, '0')), std::string::npos) << reply;
    EXPECT_EQ(client.send(request(5, identify)), dataFrame("A406 800105 810100"));
    EXPECT_EQ(client.send(dataFrame("8B00")), dataFrame("8C00"));
}

// ------------------------------------------------------------------------- dispatch of MMS PDUs

struct DispatchCase {
    const char *what;
    const char *pdu;
    const char *answer;
};

const DispatchCase dispatchCases[] = {
    {"unserved_request_with_large_invoke_id", "A00A 020412345678 AA02 8000", "A409 800412345678 810100"},
    {"confirmed_response", "A107 020101 A502 8100", "A403 820100"},
    {"confirmed_error", "A20A 800101 A205 A003 870103", "A403 830100"},
    {"information_report", "A30B A009 A105 8003 616263 A000", "A403 840100"},
    {"cancel_request", "850103", "A20A 800103 A205 A003 8A0102"},
    {"cancel_response", "860103", "A403 870100"},
    {"cancel_error", "A70A 800101 A105 A003 8A0102", "A403 880100"},
    {"initiate_error", "AA05 A003 880100", "A403 850101"},
    {"conclude_request", "8B00", "8C00"},
    {"conclude_response", "8C00", "A403 8A0100"},
    {"conclude_error", "AD05 A003 890100", "A403 8B0100"}};

TEST(Dispatch, Answer) {
    for (const DispatchCase &each : dispatchCases) {
        SCOPED_TRACE(each.what);
        Conversation client;
        client.reachData();
        EXPECT_EQ(client.send(dataFrame(each.pdu)), dataFrame(each.answer));
        EXPECT_EQ(client.send(request(2, identify)), identifyReply(2));
    }
}

TEST(DispatchState, CancelBeforeTheFirstRequestIsRejected) {
    Conversation client;
    client.associate();
    EXPECT_EQ(client.send(dataFrame("850103")), dataFrame("A403 860100"));
}

TEST(DispatchState, ACancelInPlaceOfTheInitiateIsAnsweredInsideTheAssociateReply) {
    Conversation client;
    client.send(crFrame);
    const std::string reply = client.send(connectFrame("850103"));
    EXPECT_NE(reply.find("280A020103A005A403860100"), std::string::npos) << reply;
    EXPECT_EQ(client.status(), CS_ASSOCIATED);
}

TEST(ServiceErrors, ClassAndCodeOfAnInternalResult) {
    struct Row {
        i8 value;
        u32 errorClass;
        AsnInt code;
    };
    const Row rows[] = {{0, 12, 0}, {9, 12, 9},   {22, 2, 2},   {31, 12, 1},  {73, 7, 3},   {80, 8, 0},
                        {91, 9, 1}, {102, 10, 2}, {117, 11, 7}, {119, 11, 9}, {120, 12, 0}, {127, 12, 7}};
    for (const Row &row : rows) {
        MMSpdu pdu{};
        buildConfirmedError(&pdu, 1, row.value);
        const ServiceErrorChoice *error = pdu.confirmed_ErrorPDU->serviceError->errorClass;
        EXPECT_EQ(error->choiceId, row.errorClass) << int{row.value};
        EXPECT_EQ(error->code, row.code) << int{row.value};
        FreeMMSpdu(&pdu);
    }
}

} // namespace
} // namespace ied::test
