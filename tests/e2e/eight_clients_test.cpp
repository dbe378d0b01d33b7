// Many clients at once: fair service, a full server, and clients that stop playing along.
#include "tests/support/privateNetwork.h"
#include "tests/support/serverFixture.h"

#include <algorithm>
#include <atomic>
#include <linux/filter.h>
#include <sys/socket.h>
#include <thread>

using ied::u8;
using namespace ied::test;

namespace {

constexpr std::size_t places = 8;

// Dead peers are found within a few seconds.
const ServerOptions options = {
    "", {"tickRate=1000", "keepIdle=1", "keepIntvl=1", "keepCnt=2", "maxSendFail=20"}, {}, true};

class EightClients : public ServerSuite {
  protected:
    static void SetUpTestSuite() { startSuite(options); }
    void TearDown() override { expectIntact(); }
};

const std::string readHex = dataFrame(read(1, "ZRX418MEAS", "MMXU1$MX"));

// From now on no segment of the peer reaches this socket, not even to be acknowledged: as if the
// host had lost its link. Nothing is sent at its close either, for the socket stays open.
void loseLink(RawClient &client) {
    sock_filter drop = BPF_STMT(BPF_RET | BPF_K, 0);
    const sock_fprog program{1, &drop};
    ASSERT_EQ(setsockopt(client.socket, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program), 0);
}

} // namespace

TEST_F(EightClients, AllReadWithoutPauseAndEachGetsItsOwnAnswers) {
    constexpr int reads = 100;
    std::atomic<int> good = 0;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < places; ++i) {
        threads.emplace_back([&, i] {
            RawClient client;
            if (!associate(client, server->port)) {
                return;
            }
            for (int round = 0; round < reads; ++round) {
                const int id = static_cast<int>(i) * 10 + round % 10;
                const std::string answer = ask(client, read(id, "ZRX418MEAS", "MMXU1$ST$Mod")).value_or("");
                good += answer.size() > 12 &&
                        answer.substr(4, 6) == "0201" + hexNumber(static_cast<std::size_t>(id), 1);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, reads * static_cast<int>(places));
}

TEST_F(EightClients, ANinthWaitsWhileTheyReadWithoutPauseAndIsServedWhenOneLeaves) {
    std::vector<RawClient> clients(places);
    for (RawClient &client : clients) {
        ASSERT_TRUE(associate(client, server->port));
    }
    RawClient ninth;
    connectTo(ninth, server->port); // the host's queue takes it
    sendHex(ninth, connectionRequestHex);
    std::atomic<bool> leave[places] = {};
    std::atomic<int> answers[places] = {};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < places; ++i) {
        threads.emplace_back([&, i] {
            while (!leave[i]) {
                if (!ask(clients[i], read(1, "ZRX418MEAS", "MMXU1$MX"))) {
                    return;
                }
                ++answers[i];
            }
            disconnect(clients[i]);
        });
    }
    const auto allGotMore = [&](int least) {
        return waitUntil([&] {
            return std::all_of(std::begin(answers), std::end(answers), [&](auto &n) { return n >= least; });
        });
    };
    EXPECT_TRUE(allGotMore(20));
    EXPECT_FALSE(receiveFrame(ninth, Milliseconds(0))) << "served as a ninth";
    leave[3] = true;
    EXPECT_EQ(receiveFrame(ninth), canonical(connectionConfirmHex));
    sendHex(ninth, associateRequestHex);
    EXPECT_EQ(receiveFrame(ninth), canonical(connectReply));
    answers[3] = answers[0] + 1000;
    EXPECT_TRUE(allGotMore(answers[0] + 20)) << "the others go on";
    std::fill(std::begin(leave), std::end(leave), true);
    for (std::thread &thread : threads) {
        thread.join();
    }
}

TEST_F(EightClients, OneThatNeverReadsIsDroppedAndHoldsNobodyUp) {
    RawClient deaf;
    ASSERT_TRUE(associate(deaf, server->port));
    int small = 4096;
    setsockopt(deaf.socket, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
    RawClient other;
    ASSERT_TRUE(associate(other, server->port));
    std::atomic<bool> dropped = false;
    std::thread writer([&] {
        const std::vector<u8> frame = octets(readHex);
        for (int i = 0; i < 100000 && sendOctets(deaf, frame); ++i) {
        }
        dropped = true;
    });
    int answers = 0;
    EXPECT_TRUE(waitUntil([&] {
        answers += ask(other, read(1, "ZRX418MEAS", "LLN0$ST$Mod")).has_value();
        return dropped.load();
    }));
    writer.join();
    EXPECT_GT(answers, 10);
}

TEST_F(EightClients, OneThatSendsAnOctetNowAndThenHoldsNobodyUp) {
    RawClient slow;
    connectTo(slow, server->port);
    RawClient other;
    ASSERT_TRUE(associate(other, server->port));
    for (const u8 octet : octets(connectionRequestHex)) {
        ASSERT_TRUE(sendOctets(slow, {&octet, 1}));
        ASSERT_TRUE(ask(other, read(1, "ZRX418MEAS", "LLN0$ST$Mod")));
    }
    EXPECT_EQ(receiveFrame(slow), canonical(connectionConfirmHex));
}

TEST_F(EightClients, ThoseThatVanishWithoutAWordAreFoundOut) {
    std::vector<RawClient> lost(places);
    for (std::size_t i = 0; i < places; ++i) {
        ASSERT_TRUE(associate(lost[i], server->port));
        loseLink(lost[i]);
        if (i % 2 == 0) {
            sendHex(lost[i], readHex); // an answer that nobody acknowledges is under way
        }
    }
    EXPECT_TRUE(servesHonestClient(server->port)) << "all places stay taken";
}

// The same over a real cable, without any of the host's help at the far end.
TEST(LostLink, ThoseBehindALinkThatGoesDownAreFoundOut) {
    PrivateNetwork network;
    if (!network.fault.empty()) {
        GTEST_SKIP() << network.fault;
    }
    ServerProcess server(options);
    ASSERT_TRUE(startServer(server));
    const std::size_t idle = socketCount(server.process.pid);
    std::vector<RawClient> lost(places);
    for (RawClient &client : lost) {
        ASSERT_TRUE(network.connectFromAfar(client, server.port));
        ASSERT_TRUE(associateOn(client));
        ASSERT_TRUE(ask(client, read(1, "ZRX418MEAS", "LLN0$ST$Mod")));
    }
    ASSERT_TRUE(network.cut());
    EXPECT_TRUE(servesHonestClient(server.port)) << "all places stay taken";
    EXPECT_TRUE(waitUntil([&] { return socketCount(server.process.pid) == idle; }));
    EXPECT_EQ(stop(server.process), 0);
    EXPECT_EQ(errors(server.process), "");
}

TEST_F(EightClients, ResetsInEveryStateLeaveNothing) {
    for (int round = 0; round < 3; ++round) {
        RawClient silent, transport, associated, asking, cut;
        connectTo(silent, server->port);
        connectTo(transport, server->port);
        sendHex(transport, connectionRequestHex);
        ASSERT_TRUE(receiveFrame(transport));
        ASSERT_TRUE(associate(associated, server->port));
        ASSERT_TRUE(associate(asking, server->port));
        sendHex(asking, readHex + readHex + readHex);
        ASSERT_TRUE(associate(cut, server->port));
        sendHex(cut, readHex.substr(0, 40));
        for (RawClient *client : {&silent, &transport, &associated, &asking, &cut}) {
            vanish(*client);
        }
    }
}
