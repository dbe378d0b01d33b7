// Hundreds of clients one after the other cost nothing that lasts.
#include "tests/support/serverFixture.h"

#include <cstdlib>

using namespace ied::test;

namespace {

class ConnectDisconnect : public ServerSuite {
  protected:
    static void SetUpTestSuite() { startSuite({"", {"tickRate=1000", "maxClientNum=64"}, {}, true}); }
};

// A client that goes as far as its number says, and leaves in one of several ways.
void visit(std::uint16_t port, int number) {
    RawClient client;
    switch (number % 5) {
    case 0:
        connectTo(client, port);
        break;
    case 1:
        connectTo(client, port);
        sendHex(client, connectionRequestHex);
        EXPECT_TRUE(receiveFrame(client));
        break;
    case 2:
        EXPECT_TRUE(associate(client, port));
        break;
    case 3:
        EXPECT_TRUE(associate(client, port));
        EXPECT_TRUE(ask(client, read(1, "ZRX418MEAS", "MMXU1$MX")));
        vanish(client);
        return;
    default:
        EXPECT_TRUE(associate(client, port));
        EXPECT_TRUE(ask(client, concludeRequestHex));
        sendHex(client, releaseFrame());
        EXPECT_EQ(receiveFrame(client), releaseReply);
        EXPECT_TRUE(closedByPeer(client));
    }
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::uint64_t allowed = 1 << 30; // sanitizers keep freed memory for themselves
#else
constexpr std::uint64_t allowed = 1 << 20; // allocator noise over hundreds of clients
#endif

// IED_CONNECTS sets another number of clients, for a longer run by hand.
int clientCount() {
    const char *count = std::getenv("IED_CONNECTS");
    return count ? std::atoi(count) : 500;
}

} // namespace

TEST_F(ConnectDisconnect, HundredsOfClientsLeaveNoSlotDescriptorOrMemoryBehind) {
    const pid_t pid = server->process.pid;
    for (int i = 0; i < 130; ++i) { // every task has served, every buffer is in place
        visit(server->port, i);
    }
    expectIntact();
    const std::size_t descriptors = descriptorCount(pid);
    const std::uint64_t memory = privateOctets(pid);
    for (int i = 0; i < clientCount(); ++i) {
        visit(server->port, i);
    }
    expectIntact();
    EXPECT_TRUE(waitUntil([&] { return descriptorCount(pid) == descriptors; })) << descriptorCount(pid);
    EXPECT_LE(privateOctets(pid), memory + allowed);
    // All places are free: that many clients are served at once.
    std::vector<RawClient> clients(64);
    for (RawClient &client : clients) {
        ASSERT_TRUE(associate(client, server->port));
    }
}
