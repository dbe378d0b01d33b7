// A suite of tests over one server of the build, with the instrument's own ICD file.
#pragma once

#include "tests/support/rawMms.h"
#include "tests/support/serverProcess.h"

#include <gtest/gtest.h>
#include <memory>

namespace ied::test {

// Ticks of a millisecond, so that the pauses that the server counts in ticks are short.
inline const std::vector<std::string> fastTicks = {"tickRate=1000"};

// A frame that the server receives apart from what follows: octets that it cannot decode hold up
// those that arrived together with them.
inline void sendApart(RawClient &client, const std::string &frame) {
    sendHex(client, frame);
    EXPECT_TRUE(takenByPeer(client));
}

// Whether the next honest request, of invoke id 2, on this connection is answered.
inline bool stillServed(RawClient &client) {
    return ask(client, confirmedRequest(2, "82 00")).value_or("").starts_with("A11E020102");
}

class ServerSuite : public testing::Test {
  protected:
    static void startSuite(ServerOptions options = {"", fastTicks, {}, true}) {
        server = std::make_unique<ServerProcess>(std::move(options));
        ASSERT_TRUE(startServer(*server));
        idleSockets = socketCount(server->process.pid);
        idleDescriptors = descriptorCount(server->process.pid);
    }
    static void SetUpTestSuite() { startSuite(); }
    static void TearDownTestSuite() {
        EXPECT_EQ(stop(server->process), 0) << errors(server->process);
        EXPECT_EQ(errors(server->process), "");
        server.reset();
    }
    // What must hold after every case: the server runs, an honest client is served, and nothing of
    // those who have gone is left.
    static void expectIntact() {
        EXPECT_TRUE(running(server->process)) << errors(server->process);
        EXPECT_TRUE(servesHonestClient(server->port));
        EXPECT_TRUE(waitUntil([] { return socketCount(server->process.pid) == idleSockets; }))
            << socketCount(server->process.pid) << " sockets, " << idleSockets << " at rest";
        EXPECT_EQ(descriptorCount(server->process.pid), idleDescriptors);
    }
    static inline std::unique_ptr<ServerProcess> server;
    static inline std::size_t idleSockets = 0;
    static inline std::size_t idleDescriptors = 0;
};

} // namespace ied::test
