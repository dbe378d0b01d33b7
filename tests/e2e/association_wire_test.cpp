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
