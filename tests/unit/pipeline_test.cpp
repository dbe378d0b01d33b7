#include "device/externGlbCfg.h"
#include "model-gen/c/genNode.h"
#include "tests/support/conversation.h"

#include <gtest/gtest.h>

namespace ied::test {
namespace {

// A TSDU as the pieces of a COTP fragmentation, one frame each; the last has `size` octets or less.
std::vector<std::string> fragments(std::string_view tsdu, std::size_t size) {
    const std::string digits = canonical(tsdu);
    std::vector<std::string> out;
    for (std::size_t pos = 0; pos < digits.size(); pos += 2 * size) {
        out.push_back(frame(digits.substr(pos, 2 * size), pos + 2 * size >= digits.size()));
    }
    return out;
}

std::string joined(const std::vector<std::string> &frames) {
    std::string all;
    for (const std::string &one : frames) {
        all += one;
    }
    return all;
}

// What a frame carries behind TPKT and DT header.
std::string tsduOf(const std::string &wholeFrame) {
    return wholeFrame.substr(14);
}

// A broken frame of its whole length: session data whose presentation data do not decode.
const std::string broken = frame("01000100 6105 3003 020103 0000");
// A frame that announces more octets than it has: the first part of one.
const std::string half = frame("01000100" + tlv("61", std::string(600, '0'))).substr(0, 200);

TEST(Segments, EveryCutOfEveryRequestIsAnsweredOnceItIsWhole) {
    Conversation client;
    const std::string conversation[][2] = {
        {canonical(crFrame), ccFrame},
        {connectFrame(initiateRequest), canonical(connectReply)},
        {request(1, identify), identifyReply(1)},
        {dataFrame("8B00"), dataFrame("8C00")},
        {releaseFrame(), releaseReply},
    };
    for (std::size_t cut = 1;; ++cut) {
        bool cutAny = false;
        client.restart();
        for (const auto &[sent, reply] : conversation) {
            const std::size_t digits = 2 * cut;
            if (digits < sent.size()) {
                cutAny = true;
                ASSERT_EQ(client.send(sent.substr(0, digits)), "") << cut << " of " << sent;
                ASSERT_EQ(client.send(sent.substr(digits)), reply) << cut << " of " << sent;
            } else {
                ASSERT_EQ(client.send(sent), reply);
            }
            ASSERT_EQ(client.held(), 0U);
        }
        if (!cutAny) {
            break;
        }
    }
}

TEST(Segments, AWholeAssociationOctetByOctet) {
    Conversation client;
    EXPECT_EQ(client.sendSlowly(std::string(crFrame) + connectFrame(initiateRequest) + request(1, identify) +
                                releaseFrame()),
              ccFrame + canonical(connectReply) + identifyReply(1) + releaseReply);
}

TEST(Segments, RequestsOfOneSegmentAreAnsweredInOrderAndACutOneWaits) {
    Conversation client;
    client.associate();
    const std::string last = request(3, identify);
    EXPECT_EQ(client.send(request(1, identify) + request(2, identify) + last.substr(0, 20)),
              identifyReply(1) + identifyReply(2));
    EXPECT_EQ(client.held(), 10U);
    EXPECT_EQ(client.send(last.substr(20) + request(4, identify)), identifyReply(3) + identifyReply(4));
    EXPECT_EQ(client.held(), 0U);
}

TEST(Segments, TheTaskYieldsATickForEachClientAfterEachRequest) {
    Conversation client;
    client.associate();
    clientNum = 3;
    const u32 before = tickGet();
    client.send(request(1, identify) + request(2, identify));
    EXPECT_EQ(tickGet() - before, 6U);
}

TEST(Fragments, OfEverySizeInOneSegmentAndInSegmentsOfTheirOwn) {
    Conversation client;
    client.reachData();
    const std::string tsdu = tsduOf(request(5, identify));
    for (std::size_t size = 1; size <= tsdu.size() / 2; ++size) {
        EXPECT_EQ(client.send(joined(fragments(tsdu, size))), identifyReply(5)) << size;
        std::string replies;
        for (const std::string &one : fragments(tsdu, size)) {
            replies += client.send(one);
        }
        EXPECT_EQ(replies, identifyReply(5)) << size;
    }
}

TEST(Fragments, EmptyOnesFirstInTheMiddleAndLastChangeNothing) {
    Conversation client;
    client.reachData();
    const std::string tsdu = tsduOf(request(6, identify));
    const std::string empty = frame("", false);
    EXPECT_EQ(client.send(empty + frame(tsdu.substr(0, 10), false) + empty + frame(tsdu.substr(10), false) +
                          frame("")),
              identifyReply(6));
}

TEST(Fragments, OfAConnect) {
    Conversation client;
    client.send(crFrame);
    EXPECT_EQ(client.send(joined(fragments(tsduOf(connectFrame(initiateRequest)), 40))),
              canonical(connectReply));
}

TEST(Fragments, OneThatComesInThreeTcpPiecesDoesNotLoseThoseBeforeIt) {
    Conversation client;
    client.reachData();
    const std::vector<std::string> frames = fragments(tsduOf(request(7, identify)), 8);
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ(client.send(frames[0]), "");
    EXPECT_EQ(client.send(frames[1].substr(0, 6)), "");
    EXPECT_EQ(client.send(frames[1].substr(6, 10)), "");
    EXPECT_EQ(client.send(frames[1].substr(16)), "");
    EXPECT_EQ(client.send(frames[2]), identifyReply(7));
}

TEST(Fragments, ThatMakeABrokenTsduAreForgottenWithTheNextRequest) {
    Conversation client;
    client.reachData();
    const std::string tsdu = tsduOf(broken);
    EXPECT_EQ(client.send(joined(fragments(tsdu, 6))), "");
    EXPECT_EQ(client.send(request(1, identify)), identifyReply(1));
    EXPECT_EQ(client.send(joined(fragments(tsduOf(request(2, identify)), 6))), identifyReply(2));
    // A request in two pieces begins a TSDU of its own, too.
    const std::string good = request(3, identify);
    for (std::size_t cut = 2; cut < good.size(); cut += 2) {
        EXPECT_EQ(client.send(joined(fragments(tsdu, 6))), "");
        EXPECT_EQ(client.send(good.substr(0, cut)), "");
        EXPECT_EQ(client.send(good.substr(cut)), identifyReply(3)) << cut;
        EXPECT_EQ(client.held(), 0U);
    }
}

TEST(Fragments, MoreThanTheReassemblyBufferHoldsAreDroppedAndTheNextRequestIsServed) {
    Conversation client;
    client.reachData();
    const std::string piece = frame("01000100" + std::string(2 * 8000, '0'), false);
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(client.send(piece), "");
    }
    EXPECT_EQ(client.send(frame("0000")), "");
    EXPECT_EQ(client.send(request(8, identify)), identifyReply(8));
    // Afterwards fragments are collected from the start again.
    EXPECT_EQ(client.send(joined(fragments(tsduOf(request(9, identify)), 5))), identifyReply(9));
}

TEST(BrokenFrames, AreReplacedByARequestInASegmentOfItsOwn) {
    Conversation client;
    client.reachData();
    for (const std::string &bad : {broken, half, broken + half, half + broken, std::string("0300000212")}) {
        EXPECT_EQ(client.send(bad), "");
        EXPECT_EQ(client.held(), bad.size() / 2);
        EXPECT_EQ(client.send(request(1, identify)), identifyReply(1)) << bad;
        EXPECT_EQ(client.held(), 0U);
    }
}

TEST(BrokenFrames, WithARequestBehindThemInOneSegmentWaitWithItForTheNext) {
    Conversation client;
    client.reachData();
    EXPECT_EQ(client.send(broken + request(1, identify)), "");
    EXPECT_EQ(client.send(request(2, identify)), identifyReply(2));
    EXPECT_EQ(client.held(), 0U);
}

TEST(BrokenFrames, DoNotHoldUpARequestThatComesInPiecesBehindThem) {
    Conversation client;
    client.reachData();
    const std::string good = request(3, identify);
    for (const std::string &bad :
         {broken, broken + broken, std::string("03000002"), tpkt("0680000000010 0")}) {
        for (std::size_t cut = 2; cut < good.size(); cut += 2) {
            EXPECT_EQ(client.send(bad), "");
            EXPECT_EQ(client.send(good.substr(0, cut)), "");
            EXPECT_EQ(client.send(good.substr(cut)), identifyReply(3)) << cut << " behind " << bad;
            EXPECT_EQ(client.held(), 0U);
        }
        EXPECT_EQ(client.send(bad), "");
        EXPECT_EQ(client.sendSlowly(good), identifyReply(3)) << "octet by octet behind " << bad;
    }
}

TEST(BrokenFrames, BetweenFragmentsDoNotLoseTheFragments) {
    Conversation client;
    client.reachData();
    const std::vector<std::string> frames = fragments(tsduOf(request(4, identify)), 12);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(client.send(frames[0]), "");
    EXPECT_EQ(client.send(tpkt("0680000000010 0")), "");
    EXPECT_EQ(client.send(frames[1]), identifyReply(4));
}

TEST(BrokenFrames, FillTheReserveBufferAndAreForgotten) {
    Conversation client;
    client.reachData();
    for (u32 given = 0; given <= 2 * externGlbCfg.recvBufSize; given += static_cast<u32>(broken.size() / 2)) {
        ASSERT_EQ(client.send(broken), "");
        ASSERT_LE(client.held(), externGlbCfg.recvBufSize);
    }
    EXPECT_EQ(client.send(request(1, identify)), identifyReply(1));
}

TEST(BrokenFrames, ALongestFrameOctetByOctetIsServedInTime) {
    Conversation client;
    client.reachData();
    // An identify with a modifier of 65 kB, that is, nearly the longest TPKT there is.
    const std::string modifier = tlv("30", tlv("80", std::string(2 * 65000, '4')));
    const std::string longest = dataFrame(tlv("A0", "020105" + modifier + "8200"));
    ASSERT_GT(longest.size() / 2, 65000U);
    EXPECT_EQ(client.sendSlowly(longest), client.send(longest));
    EXPECT_EQ(client.send(request(1, identify)), identifyReply(1));
}

TEST(Replies, OneThatDoesNotFitIsExchangedForTheServiceErrorAccessDenied) {
    Conversation client;
    client.reachData();
    externGlbCfg.sendBufSize = 100; // identify needs 106 with the room for the headers
    EXPECT_EQ(client.send(request(0x66, identify)), dataFrame("A20A 800166 A205 A003 870103"));
    EXPECT_EQ(client.status(), CS_DATA);
    externGlbCfg.sendBufSize = 80; // nor does the error fit
    EXPECT_EQ(client.send(request(1, identify)), "");
    externGlbCfg.sendBufSize = 130;
    EXPECT_EQ(client.send(request(2, identify)), identifyReply(2));
}

TEST(Replies, OneTooLongForTheSessionLengthsOfAnAssociateReplyIsExchangedLikewise) {
    mpAlloc(0x10000, &model_gen_pool);
    for (const char *name :
         {"Measurements_of_feeder_1", "Measurements_of_feeder_2", "Measurements_of_feeder_3",
          "Measurements_of_feeder_5", "Measurements_of_feeder_6", "Measurements_of_feeder_7",
          "Measurements_of_feeder_4"}) {
        modelFillElem(&lds, name, nullptr, TypeInner)->level = LevelLD;
    }
    Conversation client;
    client.reachData();
    const std::string getDomains = "A109 A003800109 A1028000";
    EXPECT_GT(client.send(request(7, getDomains)).size(), 2 * 120U);
    // The same request where the initiate request belongs: its answer makes the ACCEPT too long.
    client.restart();
    client.send(crFrame);
    const std::string reply = client.send(connectFrame(tlv("A0", "020107" + getDomains)));
    EXPECT_NE(reply.find("A00CA20A800107A205A003870103"), std::string::npos) << reply;
    lds.child = lds.lastChild = nullptr;
    mpFree(&model_gen_pool);
}

TEST(Replies, AnEmptyRecordEncodesToNothing) {
    PacketBuf reply{};
    std::vector<u8> buf(200);
    EXPECT_EQ(encPacket(&reply, buf.data(), 200), 0U);
}

} // namespace
} // namespace ied::test
