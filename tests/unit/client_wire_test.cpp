#include "ied-client/connection.h"
#include "tests/support/rawMms.h"

#include <gtest/gtest.h>

using namespace ied::client;
using namespace ied::test;

namespace {

const std::string clientConnectHex = "03 00 00 16 11 E0 00 00 00 01 00 C0 01 0D C1 02 00 01 C2 02 00 01";
const std::string clientAssociateHex =
    "03 00 00 A3 02 F0 80 0D 9A 05 06 13 01 00 16 01 02 14 02 00 02 33 02 00 01 34 02 00 01 C1 84"
    "31 81 81 A0 03 80 01 01 A2 7A 81 04 00 00 00 01 82 04 00 00 00 01"
    "A4 23 30 0F 02 01 01 06 04 52 01 00 01 30 04 06 02 51 01 30 10 02 01 03 06 05 28 CA 22 02 01 30 04 06 "
    "02 51 01"
    "88 02 06 00 61 43 30 41 02 01 01 A0 3C 60 3A A1 07 06 05 28 CA 22 02 03 BE 2F 28 2D 02 01 03 A0 28"
    "A8 26 80 03 00 FD E8 81 01 01 82 01 05 83 01 05 A4 16 80 01 01 81 03 05 F1 00"
    "82 0C 03 EE 08 00 00 00 00 00 00 00 01 10";

const ScriptStep connectStep{clientConnectHex, connectionConfirmHex};
const ScriptStep associateStep{clientAssociateHex, connectReply};

const std::string identifyRequestHex = "A0 05 02 01 01 82 00";
const std::string identifyAnswerHex = "A1 11 02 01 01 A2 0C 80 01 56 81 02 4D 4D 82 03 31 2E 30";
const std::string reportHex = "A3 0A A0 08 A1 02 80 00 A0 02 83 00"; // an unconfirmed PDU

// A conversation with the association in front; the result of an identify.
std::optional<Identity> identifyOver(Connection &connection, std::uint16_t port) {
    if (!connect(connection, "127.0.0.1", port)) {
        return std::nullopt;
    }
    const std::optional<Element> answer = request(connection, identifyRequest());
    return answer ? identifyResponse(*answer) : std::nullopt;
}

// The frames that carry one MMS PDU in TPDUs of three octets each.
std::string inSmallFrames(const std::string &mmsPdu) {
    const std::string spdu = dataFrame(mmsPdu).substr(14);
    std::string frames;
    for (std::size_t at = 0; at < spdu.size(); at += 6) {
        frames += tpkt((at + 6 < spdu.size() ? "02F000" : "02F080") + spdu.substr(at, 6));
    }
    return frames;
}

} // namespace

TEST(ClientWire, AssociatesAsksAndReleasesInTheOctetsOfTheStandards) {
    ScriptedPeer peer({connectStep,
                       associateStep,
                       {dataFrame(identifyRequestHex), dataFrame(identifyAnswerHex)},
                       {dataFrame(concludeRequestHex), dataFrame(concludeResponseHex)},
                       {releaseFrame(), releaseReply}});
    Connection connection;
    const std::optional<Identity> identity = identifyOver(connection, peer.port);
    ASSERT_TRUE(identity) << connection.failure.text;
    EXPECT_EQ(identity->vendor + identity->model + identity->revision, "VMM1.0");
    EXPECT_EQ(connection.negotiated.pduSize, 65000);
    EXPECT_EQ(connection.negotiated.services,
              (std::vector<int>{0, 1, 2, 4, 5, 6, 12, 13, 37, 65, 68, 72, 73, 74, 77, 79, 83, 84}));
    release(connection);
    EXPECT_EQ(peer.finish(), "");
}

TEST(ClientWire, TakesReportsAndLateAnswersBetweenForWhatTheyAre) {
    const std::string late = "A1 05 02 01 00 82 00"; // of an invoke id that was given up
    ScriptedPeer peer(
        {connectStep,
         associateStep,
         {dataFrame(identifyRequestHex),
          dataFrame(reportHex) + dataFrame(late) + dataFrame(reportHex) + dataFrame(identifyAnswerHex)},
         {dataFrame(concludeRequestHex), dataFrame(reportHex) + dataFrame(concludeResponseHex)},
         {releaseFrame(), releaseReply}});
    Connection connection;
    int reports = 0;
    connection.unconfirmed = [&](View pdu) { reports += pdu.size() == 12; };
    EXPECT_TRUE(identifyOver(connection, peer.port)) << connection.failure.text;
    EXPECT_EQ(reports, 2);
    release(connection);
    EXPECT_EQ(reports, 3);
    EXPECT_EQ(peer.finish(), "");
}

TEST(ClientWire, JoinsAnAnswerFromManyFrames) {
    ScriptedPeer peer(
        {connectStep, associateStep, {dataFrame(identifyRequestHex), inSmallFrames(identifyAnswerHex)}});
    Connection connection;
    const std::optional<Identity> identity = identifyOver(connection, peer.port);
    ASSERT_TRUE(identity) << connection.failure.text;
    EXPECT_EQ(identity->model, "MM");
}

struct Refusal {
    const char *name;
    std::string answer; // to the identify request
    Status status;
    const char *text;
};

class ClientRefusal : public testing::TestWithParam<Refusal> {};

TEST_P(ClientRefusal, IsToldFromALostConnection) {
    ScriptedPeer peer({connectStep, associateStep, {dataFrame(identifyRequestHex), GetParam().answer}});
    Connection connection;
    connection.timeout = std::chrono::milliseconds(GetParam().answer.empty() ? 300 : 60000);
    EXPECT_FALSE(identifyOver(connection, peer.port));
    EXPECT_EQ(connection.failure.status, GetParam().status);
    EXPECT_EQ(connection.failure.text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, ClientRefusal,
    testing::Values(Refusal{"error", dataFrame("A2 0A 80 01 01 A2 05 A0 03 87 01 03"), statusRefused,
                            "object-access-denied (access)"},
                    Refusal{"reject", dataFrame("A4 06 80 01 01 81 01 00"), statusRefused,
                            "rejected (confirmed-request)"},
                    Refusal{"abort", tpkt("02 F0 80 19 07 11 01 05 31 02 32 10"), statusNoConnection,
                            "the server aborted the association"},
                    Refusal{"disconnect", releaseReply, statusNoConnection,
                            "the server ended the association"},
                    Refusal{"silence", "", statusNoConnection, "no answer: timed out"},
                    Refusal{"garbage", "04 00 00 07 02 F0 80", statusNoConnection,
                            "the server sent a malformed message: TPKT header"},
                    Refusal{"cutValue", tpkt("02 F0 80 01 00 01 00 61 09 30 02 02 01"), statusNoConnection,
                            "the server sent a malformed message: presentation user data"},
                    Refusal{"lengthPastParent", dataFrame("A1 05 02 01 01 A2 7F"), statusNoConnection,
                            "the server sent a malformed MMS PDU"}),
    [](const auto &parameter) { return parameter.param.name; });

TEST(ClientWire, SaysWhatIsWrongWhenThereIsNoServer) {
    Connection closed;
    EXPECT_FALSE(connect(closed, "127.0.0.1", freePort()));
    EXPECT_EQ(closed.failure.status, statusNoConnection);
    EXPECT_NE(closed.failure.text.find("Connection refused"), std::string::npos) << closed.failure.text;

    ScriptedPeer full({{clientConnectHex, ""}});
    Connection waiting;
    waiting.timeout = std::chrono::milliseconds(300);
    EXPECT_FALSE(connect(waiting, "127.0.0.1", full.port));
    EXPECT_EQ(waiting.failure.text, "no answer: timed out (all places for clients may be taken)");
}

TEST(ClientWire, CutsALongRequestIntoTpdusOfTheAnnouncedSize) {
    const Bytes pdu = ied::client::tlv(0xA0, Bytes(20000, 1));
    const Bytes frames = dataRequest(pdu);
    // 8192 octets of TPDU with its header of 3, in a TPKT of 8196.
    EXPECT_EQ(hexText({frames.data(), 7}), "0300200402F000");
    EXPECT_EQ(hexText({frames.data() + 8196, 7}), "0300200402F000");
    EXPECT_EQ(hexText({frames.data() + 2 * 8196 + 4, 3}), "02F080");
    Assembler assembler;
    assembler.stream = frames;
    const std::optional<Received> received = nextMessage(assembler);
    ASSERT_TRUE(received);
    EXPECT_EQ(received->mms, pdu);
    EXPECT_TRUE(assembler.stream.empty());
}
