// The watchdog's messages, octet by octet as they lie in the queue.
#include "device/peerInterface.h"
#include "device/watchdog.h"
#include "tests/support/process.h"

#include <cstring>
#include <gtest/gtest.h>

namespace ied {
namespace {

MsgQId peerQueue() {
    return msgQOpen("/wdtMsgQ", 100, 52, 0, 0x50000000, 0);
}

u32 wordAt(const u8 *message, int offset) {
    u32 word;
    std::memcpy(&word, message + offset, sizeof word);
    return word;
}

// The next message that the peer takes, which must be there.
struct Message {
    u8 octets[64] = {};
    int length;
    Message() : length(msgQReceive(peerQueue(), octets, sizeof octets, NO_WAIT)) {}
};

class Watchdog : public testing::Test {
  protected:
    static void SetUpTestSuite() { platformOptions.instance = test::uniqueName(); }
    static void TearDownTestSuite() { removeSharedObjects(peer::sharedNames); }
};

// First in the process: the queue opens at the first registration and stays open.
TEST_F(Watchdog, MessagesHaveTheirFieldsInTheirPlaces) {
    EXPECT_EQ(wdgFeed(), -1);
    EXPECT_EQ(wdgCancle(), -1);
    EXPECT_EQ(wdgRegister(0), -1);
    EXPECT_EQ(wdgTimeOutChange(-5), -1);
    EXPECT_EQ(Message().length, ERROR) << "nothing was sent";

    TaskInfo self;
    ASSERT_EQ(taskInfoGet(taskIdSelf(), &self), OK);
    EXPECT_EQ(wdgRegister(600), 0);
    const Message registration;
    ASSERT_EQ(registration.length, 52);
    EXPECT_EQ(wordAt(registration.octets, 0), 0U);
    EXPECT_EQ(wordAt(registration.octets, 4), taskIdSelf());
    char name[32] = "tInit";
    EXPECT_EQ(std::memcmp(registration.octets + 8, name, 32), 0) << "zero behind the name";
    EXPECT_EQ(wordAt(registration.octets, 40), self.word1);
    EXPECT_EQ(wordAt(registration.octets, 44), self.word25);
    EXPECT_EQ(wordAt(registration.octets, 48), 600U);

    EXPECT_EQ(wdgTimeOutChange(0x01020304), 0);
    const Message change;
    EXPECT_EQ(wordAt(change.octets, 0), 1U);
    EXPECT_EQ(wordAt(change.octets, 48), 0x01020304U);

    struct {
        int (*call)();
        u32 command;
        bool ofTask;
    } const calls[] = {{wdgFeed, 2, true},
                       {wdgCancle, 3, true},
                       {wdgStop, 5, false},
                       {wdgResume, 6, false},
                       {wdgReboot, 7, false}};
    for (const auto &c : calls) {
        EXPECT_EQ(c.call(), 0);
        const Message message;
        ASSERT_EQ(message.length, 52);
        EXPECT_EQ(wordAt(message.octets, 0), c.command);
        if (c.ofTask) {
            EXPECT_EQ(wordAt(message.octets, 4), taskIdSelf());
            EXPECT_EQ(wordAt(message.octets, 44), self.word25);
        }
    }

    for (int i = 0; i < 100; i++) {
        ASSERT_EQ(wdgFeed(), 0) << i;
    }
    EXPECT_EQ(wdgFeed(), -1) << "a full queue loses the message";
}

TEST_F(Watchdog, ATaskIsAnnouncedByItsOwnNameAndNumbers) {
    EXPECT_EQ(wdgInit(), 0);
    while (Message().length != ERROR) {
    }
    static SemId done;
    done = semBCreate(semQFifo, semEmpty);
    const TaskId task = taskSpawn(
        "t61850ClientWithARatherLongName7", 247, taskOptionFp, 0x100000,
        [](TaskArgument) {
            wdgRegister(1800);
            semGive(done);
        },
        0, 2, 3, 4, 5, 6, 7, 8, 9, 10);
    ASSERT_EQ(semTake(done, WAIT_FOREVER), OK);
    const Message message;
    EXPECT_EQ(wordAt(message.octets, 4), task);
    EXPECT_STREQ(reinterpret_cast<const char *>(message.octets + 8), "t61850ClientWithARatherLongName");
    EXPECT_EQ(wordAt(message.octets, 40), 247U);
    EXPECT_EQ(wordAt(message.octets, 44), 0x100000U);
    semDelete(done);
}

} // namespace
} // namespace ied
