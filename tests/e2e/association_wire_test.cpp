// The life of an association, octet by octet.
#include "tests/support/serverFixture.h"

using ied::u8;
using namespace ied::test;

namespace {

class AssociationWire : public ServerSuite {
  protected:
    void TearDown() override { expectIntact(); }
};

const std::string identifyHex = confirmedRequest(5, "82 00");
// vendorName "ORV", modelName "QTM5-2", revision "V1.3150519"
const std::string identifyAnswerHex = canonical("A1 1E 02 01 05 A2 19 80 03 4F 52 56 81 06 51 54 4D 35 2D 32"
                                                "82 0A 56 31 2E 33 31 35 30 35 31 39");

// TPDUs of the user data in `whole`, cut after `cut` octets.
std::string inTwoTpdus(const std::string &whole, std::size_t cut) {
    const std::string data = canonical(whole).substr(14);
    return frame(data.substr(0, 2 * cut), false) + frame(data.substr(2 * cut));
}

} // namespace

TEST_F(AssociationWire, AClientConnectsAsksConcludesAndReleases) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    EXPECT_EQ(ask(client, identifyHex), identifyAnswerHex);
    EXPECT_EQ(ask(client, concludeRequestHex), canonical(concludeResponseHex));
    sendHex(client, releaseFrame());
    EXPECT_EQ(receiveFrame(client), releaseReply);
    EXPECT_TRUE(closedByPeer(client));
}

TEST_F(AssociationWire, AConnectionRequestWithoutParametersGetsTheBareConfirm) {
    RawClient client;
    connectTo(client, server->port);
    sendHex(client, tpkt("06 E0 00 00 12 34 00"));
    EXPECT_EQ(receiveFrame(client), canonical("03 00 00 0B 06 D0 12 34 14 00 00"));
}

TEST_F(AssociationWire, AnAbortIsAnsweredAndEndsTheConnection) {
    for (const char *abort : {"64 03 80 01 07", "64 06 80 01 07 81 01 02"}) {
        RawClient client;
        ASSERT_TRUE(associate(client, server->port));
        sendHex(client, tpkt(std::string("02 F0 80") + abort));
        EXPECT_EQ(receiveFrame(client), canonical("03 00 00 10 02 F0 80 19 07 11 01 05 31 02 32 10"));
        EXPECT_TRUE(closedByPeer(client));
    }
}

TEST_F(AssociationWire, RequestsBeforeTheirTimeGetSilenceAndDoNoHarm) {
    RawClient client;
    connectTo(client, server->port);
    sendHex(client, associateRequestHex);    // before the transport connection
    sendHex(client, dataFrame(identifyHex)); // before the association
    sendHex(client, connectionRequestHex);
    EXPECT_EQ(receiveFrame(client), canonical(connectionConfirmHex));
    sendHex(client, dataFrame(identifyHex));
    sendHex(client, releaseFrame());
    sendHex(client, associateRequestHex);
    EXPECT_EQ(receiveFrame(client), canonical(connectReply));
    EXPECT_EQ(ask(client, identifyHex), identifyAnswerHex);
}

TEST_F(AssociationWire, ARequestInSingleOctetsIsAnsweredOnce) {
    RawClient client;
    connectTo(client, server->port);
    for (const std::string &frame : {std::string(connectionRequestHex), std::string(associateRequestHex)}) {
        for (const u8 octet : octets(frame)) {
            ASSERT_TRUE(sendOctets(client, {&octet, 1}) && takenByPeer(client));
        }
        EXPECT_TRUE(receiveFrame(client));
    }
    for (const u8 octet : octets(dataFrame(identifyHex))) {
        ASSERT_TRUE(sendOctets(client, {&octet, 1}) && takenByPeer(client));
    }
    EXPECT_EQ(receiveMms(client), identifyAnswerHex);
    EXPECT_EQ(ask(client, concludeRequestHex), canonical(concludeResponseHex)); // nothing in between
}

TEST_F(AssociationWire, RequestsInOneSegmentAreAnsweredInTheirOrder) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    std::string segment;
    for (int id = 1; id <= 20; ++id) {
        segment += dataFrame(confirmedRequest(id, "82 00"));
    }
    sendHex(client, segment);
    for (int id = 1; id <= 20; ++id) {
        const std::optional<std::string> answer = receiveMms(client);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->substr(4, 6), "0201" + hexNumber(static_cast<std::size_t>(id), 1));
    }
}

TEST_F(AssociationWire, ARequestInFragmentsIsAnsweredWhereverItIsCut) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const std::string frame = dataFrame(identifyHex);
    for (std::size_t cut = 1; cut < frame.size() / 2 - 8; ++cut) {
        const std::vector<u8> fragments = octets(inTwoTpdus(frame, cut));
        const std::span<const u8> all = fragments;
        // The second fragment arrives in three pieces of its own.
        const std::size_t first = 7 + cut;
        for (const std::span<const u8> piece :
             {all.first(first), all.subspan(first, 3), all.subspan(first + 3, 4), all.subspan(first + 7)}) {
            ASSERT_TRUE(sendOctets(client, piece) && takenByPeer(client));
        }
        ASSERT_EQ(receiveMms(client), identifyAnswerHex) << "cut after " << cut;
    }
}

TEST_F(AssociationWire, AnAnswerLongerThanAFrameComesInFramesOfTheAgreedSize) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    sendHex(client, dataFrame(getTypeOf(1, "ZRX418MEAS", "MMXU1")));
    std::vector<std::string> frames;
    do {
        const std::optional<std::string> frame = receiveFrame(client);
        ASSERT_TRUE(frame);
        frames.push_back(*frame);
    } while (frames.back().substr(12, 2) == "00");
    ASSERT_GT(frames.size(), 3U);
    for (std::size_t i = 0; i + 1 < frames.size(); ++i) {
        EXPECT_EQ(frames[i].substr(0, 14), "0300040402F000"); // 1028 octets
    }
    EXPECT_LE(frames.back().size() / 2, 1028U);
    EXPECT_EQ(frames.back().substr(8, 6), "02F080");
    const std::optional<std::string> pdu = mmsOf(frames);
    ASSERT_TRUE(pdu);
    EXPECT_TRUE(pdu->starts_with("A182")) << pdu->substr(0, 40);
}

TEST_F(AssociationWire, AnyOtherServiceIsRejectedWithItsInvokeId) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    for (const char *service : {
             "A3 14 A0 03 80 01 00 A1 0A A1 08 1A 02 4C 44 1A 02 41 42 82 01 43", // rename
             "AB 1C A1 08 1A 02 4C 44 1A 02 41 42 A0 10 30 0E A0 0C A1 0A 1A 02 4C 44 1A 04 41 24 53 "
             "54",                                     // define a list
             "BF 2E 0A A1 03 19 01 41 A2 03 19 01 42", // obtain a file
             "BF 47 00",                               // capability list
             "BF 4C 03 19 01 41",                      // delete a file
         }) {
        EXPECT_EQ(ask(client, confirmedRequest(7, service)), canonical("A4 06 80 01 07 81 01 00")) << service;
    }
    EXPECT_EQ(ask(client, identifyHex), identifyAnswerHex);
}

TEST_F(AssociationWire, CancelConcludeAndAnswersFromAClientGetWhatTheStandardHasForThem) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const auto answer = [&](const char *pdu) { return ask(client, pdu).value_or("silence"); };
    EXPECT_EQ(answer("85 01 09"), canonical("A4 03 86 01 00")); // no data exchanged yet
    EXPECT_EQ(ask(client, identifyHex), identifyAnswerHex);
    EXPECT_EQ(answer("85 01 09"), canonical("A2 0A 80 01 09 A2 05 A0 03 8A 01 02"));
    EXPECT_EQ(answer("86 01 09"), canonical("A4 03 87 01 00"));
    EXPECT_EQ(answer("A1 05 02 01 01 8B 00"), canonical("A4 03 82 01 00"));
}
