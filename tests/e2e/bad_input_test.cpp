// Malformed and hostile input at every layer: silence, or the answer that ISO 9506-2 has for it, and
// afterwards the server is as before.
#include "tests/support/serverFixture.h"

#include <atomic>
#include <thread>

using ied::u8;
using namespace ied::test;

namespace {

class BadInput : public ServerSuite {
  protected:
    static void SetUpTestSuite() { startSuite({"", {"tickRate=1000", "maxClientNum=32"}, {}, true}); }
};

const std::string identifyFrame = dataFrame(confirmedRequest(1, "82 00"));

// A request of its own layer, and the octets of the level below it.
struct Level {
    const char *name;
    std::string frame;
};

std::string nested(const std::string &tag, int depth) {
    std::string content;
    for (int i = 0; i < depth; ++i) {
        content = tlv(tag, content);
    }
    return content;
}

std::string manyVariables(int count) {
    const std::string one = tlv("30", tlv("A0", objectName("Z", "L")));
    std::string list;
    for (int i = 0; i < count; ++i) {
        list += one;
    }
    return confirmedRequest(1, tlv("A4", tlv("A1", tlv("A0", list))));
}

// Frames that no server may answer, on an association in progress.
const std::vector<Level> silent = {
    {"a COTP expedited TPDU", tpkt("02 10 80")},
    {"a session ABORT of code 25", tpkt("02 F0 80 19 03 11 01 03")},
    {"a session SPDU of code 0", tpkt("02 F0 80 00 00 00 00")},
    {"a CONNECT cut off", tpkt("02 F0 80 0D FF 05 06 13")},
    {"presentation length beyond the frame", tpkt("02 F0 80 01 00 01 00 61 7F 30 00")},
    {"presentation of indefinite length", tpkt("02 F0 80 01 00 01 00 61 80 30 80 02 01 03 A0 80 A0 80 02 01 "
                                               "01 82 00 00 00 00 00 00 00 00 00 00 00")},
    {"an unknown presentation PDU", tpkt("02 F0 80 01 00 01 00 AC 02 80 00")},
    {"a service beyond the standard", dataFrame(confirmedRequest(1, "BF 60 00"))},
    {"a length of 2^31", dataFrame("A0 84 80 00 00 00 02 01 01 82 00")},
    {"a length of 2^64", dataFrame("A0 88 FF FF FF FF FF FF FF FF 02 01 01 82 00")},
    {"a name list of no class", dataFrame(confirmedRequest(1, "A1 04 A1 02 80 00"))},
    {"an index of a negative number",
     dataFrame(read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", "A5 06 82 04 FF FF FF FF"))},
    {"an index of 2^32",
     dataFrame(read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", "A5 07 82 05 01 00 00 00 00"))},
    {"a value of a context that was not agreed on",
     tpkt("02 F0 80 01 00 01 00 61 0C 30 0A 02 01 05 A0 05" + confirmedRequest(1, "82 00"))},
    {"a release that holds a request",
     tpkt("02 F0 80 09 10 C1 0E 61 0C 30 0A 02 01 01 A0 05" + confirmedRequest(1, "82 00"))},
    {"nested structures to a great depth",
     dataFrame(write(1, "ZRX418MEAS", "LLN0$ST$Mod$stVal", nested("A2", 2000)))},
    {"nested strings to a great depth",
     dataFrame(write(1, "ZRX418MEAS", "LLN0$ST$Mod$stVal", nested("AA", 2000)))},
    {"nested alternate access",
     dataFrame(read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", tlv("A5", nested("A0", 500))))},
};

} // namespace

TEST_F(BadInput, AMalformedFrameGetsSilenceAndTheNextRequestItsAnswer) {
    for (const Level &level : silent) {
        RawClient client;
        ASSERT_TRUE(associate(client, server->port));
        sendApart(client, level.frame);
        ASSERT_TRUE(stillServed(client)) << "after " << level.name;
        EXPECT_EQ(hexText(client.pending), "") << level.name << " was answered";
    }
    expectIntact();
}

TEST_F(BadInput, AMalformedFrameBeforeTheAssociationDoesNotSpoilIt) {
    for (const Level &level : silent) {
        RawClient client;
        connectTo(client, server->port);
        sendApart(client, level.frame);
        sendHex(client, connectionRequestHex);
        EXPECT_EQ(receiveFrame(client), canonical(connectionConfirmHex)) << "after " << level.name;
        sendApart(client, level.frame);
        sendHex(client, associateRequestHex);
        EXPECT_EQ(receiveFrame(client), canonical(connectReply)) << "after " << level.name;
    }
    expectIntact();
}

// A header that promises more than comes makes the server wait for it; what comes instead is then
// part of that frame. Only the connection itself can tell, by its end.
TEST_F(BadInput, FrameLengthsOfEveryKindCostOnlyTheirOwnConnection) {
    for (const char *header :
         {"03 00 00 00", "03 00 00 01", "03 00 00 03", "03 00 00 05 02", "03 00 00 06 02 F0",
          "03 00 FF FF 02 F0 80", "00 00 00 07 02 F0 80", "FF FF FF FF FF FF FF FF"}) {
        RawClient client;
        ASSERT_TRUE(associate(client, server->port));
        sendHex(client, header);
        for (int i = 0; i < 40; ++i) {
            sendHex(client, identifyFrame);
        }
        receiveFrame(client, Milliseconds(20));
    }
    expectIntact();
}

TEST_F(BadInput, FragmentsWithoutAnEndAreBounded) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    const std::vector<u8> fragment = octets(frame(ascii(std::string(1000, 'x')), false));
    for (int i = 0; i < 300; ++i) { // three times what a server keeps of one message
        ASSERT_TRUE(sendOctets(client, fragment));
    }
    RawClient other;
    ASSERT_TRUE(associate(other, server->port));
    EXPECT_TRUE(stillServed(other));
    disconnect(client);
    disconnect(other);
    expectIntact();
}

TEST_F(BadInput, EveryCutAndEveryChangedOctetOfARequestLeavesTheServerIntact) {
    const std::vector<u8> request =
        octets(dataFrame(read(1, "ZRX418MEAS", "MHAI1$MX$HA$phsAHar", "A5 08 A3 06 80 01 02 81 01 09")));
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    for (std::size_t at = 7; at < request.size(); ++at) {
        for (const u8 value : octets("00 01 7F 80 A0 FF")) {
            std::vector<u8> changed = request;
            changed[at] = value;
            if (!sendOctets(client, changed)) { // a changed octet may mean an abort
                ASSERT_TRUE(associate(client, server->port)) << "octet " << at;
            }
        }
    }
    for (std::size_t length = 1; length < request.size() - 7; ++length) {
        std::vector<u8> cut = request;
        cut.resize(7 + length);
        cut[2] = static_cast<u8>(cut.size() >> 8);
        cut[3] = static_cast<u8>(cut.size());
        ASSERT_TRUE(sendOctets(client, cut));
    }
    disconnect(client);
    expectIntact();
}

TEST_F(BadInput, AListOfThousandsOfNamesIsAnsweredOrRefused) {
    RawClient client;
    ASSERT_TRUE(associate(client, server->port));
    // 2,000 unknown names: as many failures.
    const std::string pdu = manyVariables(2000);
    std::string spdu = dataFrame(pdu).substr(14);
    std::string frames;
    for (std::size_t at = 0; at < spdu.size(); at += 2000) {
        frames += frame(spdu.substr(at, 2000), at + 2000 >= spdu.size());
    }
    sendHex(client, frames);
    const std::string answer = receiveMms(client).value_or("");
    EXPECT_TRUE(answer.starts_with("A1821")) << answer.substr(0, 40);
    EXPECT_TRUE(answer.ends_with(canonical("80 01 0A 80 01 0A")));
    EXPECT_TRUE(stillServed(client));
    disconnect(client);
    expectIntact();
}

// All of it again while others read and the instrument measures.
TEST_F(BadInput, MalformedFramesUnderLoadHarmNobodyElse) {
    constexpr std::size_t realTimeCounterAt = 11812;
    std::atomic<bool> done = false;
    std::atomic<int> answered = 0, wrong = 0;
    std::vector<std::thread> others;
    for (int i = 0; i < 3; ++i) {
        others.emplace_back([&] {
            RawClient client;
            bool up = associate(client, server->port);
            while (up && !done) {
                raise(server->region, realTimeCounterAt);
                up = ask(client, read(1, "ZRX418MEAS", "MMXU1$MX")).value_or("silence").starts_with("A182");
                ++(up ? answered : wrong);
            }
        });
    }
    for (const Level &level : silent) {
        RawClient client;
        EXPECT_TRUE(associate(client, server->port));
        sendApart(client, level.frame);
        EXPECT_TRUE(stillServed(client)) << level.name;
    }
    done = true;
    for (std::thread &thread : others) {
        thread.join();
    }
    EXPECT_GT(answered, 100);
    EXPECT_EQ(wrong, 0);
    expectIntact();
}
