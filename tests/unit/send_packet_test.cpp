#include "device/externGlbCfg.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "tests/support/conversation.h"

#include <cerrno>
#include <deque>
#include <gtest/gtest.h>

namespace ied::test {
namespace {

// What the socket does with one send: takes at most that many octets, or (negative) gives an errno.
using Outcome = int;
constexpr Outcome blocks = -EWOULDBLOCK;

std::deque<Outcome> script; // when it is empty, everything is taken
std::vector<std::vector<u8>> sends;
int calls;
bool blocking; // a send without MSG_DONTWAIT was seen

long scriptedSend(int, const void *buffer, std::size_t length, int flags) {
    ++calls;
    blocking = blocking || (flags & MSG_DONTWAIT) == 0;
    Outcome outcome = static_cast<Outcome>(length);
    if (!script.empty()) {
        outcome = std::min(outcome, script.front());
        script.pop_front();
    }
    if (outcome < 0) {
        errno = -outcome;
        return -1;
    }
    const auto *from = static_cast<const u8 *>(buffer);
    sends.emplace_back(from, from + outcome);
    return outcome;
}

class SendPacket : public testing::Test {
  protected:
    SendPacket() {
        socketOps.send = scriptedSend; // put back with the conversation
        script.clear();
        sends.clear();
        calls = 0;
        blocking = false;
        buf.resize(externGlbCfg.sendBufSize);
    }

    // Sends a packet of `len` octets: TPKT, DT, and a payload that counts.
    bool send(u32 len) {
        u8 *packet = buf.data() + buf.size() - len - 1;
        const std::vector<u8> header = octets("03000000 02F080");
        std::copy(header.begin(), header.end(), packet);
        encShort(packet + 2, static_cast<u16>(len));
        for (u32 i = 7; i < len; ++i) {
            packet[i] = payload(i);
        }
        return sendPacket(buf.data(), len, client.slot);
    }
    static u8 payload(u32 i) { return static_cast<u8>(i * 7 + i / 256); }
    u32 sendFail() const { return clientStat[client.slot].sendFail; }

    Conversation client;
    std::vector<u8> buf;
};

TEST_F(SendPacket, CutsWhatExceedsTheFrameSizeAndNothingElse) {
    for (const u32 frameMax : {8U, 13U, 14U, 64U, 1028U}) {
        externGlbCfg.maxTpduSize = frameMax;
        for (const u32 len :
             {8U, frameMax - 1, frameMax, frameMax + 1, 2 * frameMax - 7, 2 * frameMax - 6, 5000U}) {
            if (len < 8) {
                continue;
            }
            sends.clear();
            ASSERT_TRUE(send(len));
            u32 done = 7;
            for (std::size_t n = 0; n < sends.size(); ++n) {
                const std::vector<u8> &frame = sends[n];
                const bool last = n + 1 == sends.size();
                ASSERT_EQ(hexText({frame.data(), 2}), "0300");
                ASSERT_EQ(decShort(frame.data() + 2), frame.size());
                ASSERT_EQ(hexText({frame.data() + 4, 3}), last ? "02F080" : "02F000");
                ASSERT_LE(frame.size(), frameMax);
                ASSERT_TRUE(last || frame.size() == frameMax);
                for (std::size_t i = 7; i < frame.size(); ++i, ++done) {
                    ASSERT_EQ(frame[i], payload(done)) << len << " in frames of " << frameMax;
                }
            }
            ASSERT_EQ(done, len);
        }
    }
    externGlbCfg.maxTpduSize = 1028;
    sends.clear();
    ASSERT_TRUE(send(1028));
    EXPECT_EQ(sends.size(), 1U);
    sends.clear();
    ASSERT_TRUE(send(1029));
    ASSERT_EQ(sends.size(), 2U);
    EXPECT_EQ(sends[1].size(), 8U);
}

TEST_F(SendPacket, NeverBlocksWhateverTheModeOfTheSocket) {
    EXPECT_TRUE(send(3000));
    EXPECT_FALSE(blocking);
}

TEST_F(SendPacket, GoesOnATenthOfASecondAfterAPartWent) {
    script = {100, 200, 300};
    const u32 start = tickGet();
    EXPECT_TRUE(send(1000));
    EXPECT_EQ(tickGet() - start, 30U);
    EXPECT_EQ(sends.size(), 4U);
    EXPECT_EQ(sendFail(), 0U);
}

TEST_F(SendPacket, CountsWhatBlocksAndForgetsItWhenAllWent) {
    script = {blocks, blocks, 100, blocks};
    const u32 start = tickGet();
    EXPECT_TRUE(send(1000));
    EXPECT_EQ(tickGet() - start, 40U);
    EXPECT_EQ(sendFail(), 0U);
}

TEST_F(SendPacket, GivesAPeerUpThatReadsNothingForTenSeconds) {
    script.assign(1000, blocks);
    const u32 start = tickGet();
    EXPECT_FALSE(send(1000));
    EXPECT_EQ(calls, 100);
    EXPECT_EQ(tickGet() - start, 990U); // the hundredth failure ends it without a delay
    EXPECT_EQ(sendFail(), externGlbCfg.maxSendFail);
    EXPECT_FALSE(send(10));
    EXPECT_EQ(calls, 100) << "nothing is sent to it any more";
}

TEST_F(SendPacket, GivesUpInTheMiddleOfTheFrames) {
    externGlbCfg.maxSendFail = 3;
    script = {1028, 500, blocks, blocks, blocks};
    EXPECT_FALSE(send(3000));
    EXPECT_EQ(sends.size(), 2U);
    EXPECT_EQ(sendFail(), 3U);
}

TEST_F(SendPacket, GivesABrokenConnectionUpAtOnce) {
    script = {-EPIPE};
    const u32 start = tickGet();
    EXPECT_FALSE(send(10));
    EXPECT_EQ(tickGet(), start);
    EXPECT_EQ(sendFail(), externGlbCfg.maxSendFail);
}

TEST_F(SendPacket, LeavesASlotAloneWhoseClientHasLeft) {
    storeShared(clientStat[client.slot].sockFd, -1);
    EXPECT_FALSE(send(10));
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(sendFail(), 0U) << "the next client starts with it";
    storeShared(clientStat[client.slot].sockFd, 0);
    EXPECT_TRUE(send(10));
}

TEST_F(SendPacket, KeepsWhatIsForOneAssociationFromTheNext) {
    const u32 association = clientStat[client.slot].association;
    u8 *packet = buf.data() + buf.size() - 8;
    const std::vector<u8> frame = octets("03000007 02F080");
    std::copy(frame.begin(), frame.end(), packet);
    EXPECT_TRUE(sendPacket(buf.data(), 7, client.slot, association));
    storeShared(clientStat[client.slot].association, association + 1);
    EXPECT_FALSE(sendPacket(buf.data(), 7, client.slot, association));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(sendFail(), 0U);
    EXPECT_TRUE(sendPacket(buf.data(), 7, client.slot, association + 1)) << "the socket was given back";
}

SemId release;
SemId taken;

void holdSocket(TaskArgument slot) {
    semTake(semSend[slot], WAIT_FOREVER);
    semGive(taken);
    semTake(release, WAIT_FOREVER);
    semGive(semSend[slot]);
    semGive(taken);
}

// A task that holds the slot's lock until `release` is given; `taken` tells when it has it and when
// it has given it back.
bool startHolder(u8 slot) {
    if (release == nullptr) {
        release = semBCreate(semQFifo, semEmpty);
        taken = semBCreate(semQFifo, semEmpty);
    }
    return taskSpawn("holder", 100, 0, 0x10000, holdSocket, slot, 2, 3, 4, 5, 6, 7, 8, 9, 10) != taskNone &&
           semTake(taken, WAIT_FOREVER) == OK;
}

TEST_F(SendPacket, WaitsSixtyOneSecondsForAnotherSendersPacket) {
    ASSERT_TRUE(startHolder(client.slot));
    const u32 start = tickGet();
    EXPECT_FALSE(send(10));
    EXPECT_EQ(tickGet() - start, 6100U);
    EXPECT_EQ(sendFail(), 0U);
    semGive(release);
    ASSERT_EQ(semTake(taken, WAIT_FOREVER), OK);
    EXPECT_TRUE(send(10));
}

// A slot that is given back while another task is in the middle of a packet on its socket: the
// sender's next attempt fails, and only then is the descriptor closed, since its number is soon
// another client's.
std::string closing;

int noteShutdown(int, int) {
    closing += "shutdown ";
    semGive(release);
    return 0;
}

int noteClose(int) {
    closing += "close";
    return 0;
}

TEST_F(SendPacket, IsOverBeforeTheSocketIsClosed) {
    socketOps.shutdown = noteShutdown;
    socketOps.close = noteClose;
    closing.clear();
    ASSERT_TRUE(startHolder(client.slot));
    releaseClient(client.slot);
    EXPECT_EQ(closing, "shutdown close");
    EXPECT_EQ(client.status(), CS_IDLE);
    EXPECT_EQ(clientNum, 0);
    ASSERT_EQ(semTake(taken, WAIT_FOREVER), OK);

    closing.clear();
    clientNum = 1;
    releaseClient(client.slot);
    EXPECT_EQ(closing, "close");
}

} // namespace
} // namespace ied::test
