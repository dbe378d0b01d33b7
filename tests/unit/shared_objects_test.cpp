// Named mutex, shared queues and the region between processes, and the sweep of what dead ones
// left. The test process itself starts no task: its children are plain forks.
#include "platform/messageRing.h"
#include "platform/namedMutex.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "tests/support/process.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ied {
namespace {

constexpr const char *mutexName = "/mutexCommomData";
constexpr const char *commandQueue = "/msgqDataManager";
constexpr const char *regionName = "/sd_commdata";
constexpr const char *lockedNames[] = {mutexName, commandQueue};
constexpr SharedNames names{regionName, lockedNames};
constexpr u32 regionSize = 0x10000;

pid_t forkChild(const std::function<void()> &body) {
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(0);
    }
    return child;
}

int statusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string file(const char *name) {
    return "/dev/shm" + sharedName(name);
}

bool exists(const char *name) {
    return access(file(name).c_str(), F_OK) == 0;
}

void *region() {
    return sdOpen(regionName, 1, 0x10000000, regionSize, 0, 219);
}
MsgQId queue() {
    return msgQOpen(commandQueue, 3, 20, 0, 0x10000000, 0);
}
SemId mutex() {
    return semOpen(mutexName, semTypeMutex, 1, semQPriority, 0x50000000);
}

class SharedObjects : public testing::Test {
  protected:
    SharedObjects() { platformOptions.instance = test::uniqueName(); }
    ~SharedObjects() override {
        removeSharedObjects(names);
        platformOptions.instance.clear();
    }
};

// ------------------------------------------------------------------------------------- the mutex

TEST_F(SharedObjects, AMutexOfADeadHolderIsTakenOver) {
    ASSERT_EQ(statusOf(forkChild([] { semTake(mutex(), WAIT_FOREVER); })), 0);
    SemId m = mutex();
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(semTake(m, NO_WAIT), OK);
    EXPECT_EQ(semGive(m), OK);
    EXPECT_EQ(semGive(m), ERROR) << "not held";
    // and while this process has it open, so that nobody lays it out again
    ASSERT_EQ(statusOf(forkChild([m] {
                  semTake(m, WAIT_FOREVER);
                  raise(SIGKILL);
              })),
              -1);
    EXPECT_EQ(semTake(m, 100), OK);
    EXPECT_EQ(semTake(m, NO_WAIT), OK) << "recursive";
    EXPECT_EQ(statusOf(forkChild([m] { _exit(semTake(m, 1) == ERROR ? 7 : 8); })), 7);
}

TEST_F(SharedObjects, CreatorsThatRaceShareOneMutexAndOneRegion) {
    constexpr u32 processes = 8;
    constexpr u32 rounds = 300;
    for (int attempt = 0; attempt < 20; attempt++) {
        removeSharedObjects(names);
        int gate[2];
        ASSERT_EQ(pipe(gate), 0);
        pid_t children[processes];
        for (pid_t &child : children) {
            child = forkChild([&gate] {
                char go;
                close(gate[1]);
                (void)!read(gate[0], &go, 1); // ends when the parent closes its side
                SemId m = mutex();
                auto *count = static_cast<u32 *>(region());
                if (m == nullptr || count == nullptr) {
                    _exit(1);
                }
                for (u32 i = 0; i < rounds; i++) {
                    semTake(m, WAIT_FOREVER);
                    *count = *count + 1;
                    semGive(m);
                }
            });
        }
        close(gate[0]);
        close(gate[1]);
        for (pid_t child : children) {
            EXPECT_EQ(statusOf(child), 0);
        }
        EXPECT_EQ(*static_cast<u32 *>(region()), processes * rounds);
    }
}

struct Leftover {
    const char *what;
    std::string content;
    bool usable;
};

class LeftoverOfACreator : public testing::TestWithParam<Leftover> {};

TEST_P(LeftoverOfACreator, IsLaidOutAgainUnlessItIsSomethingElse) {
    platformOptions.instance = test::uniqueName();
    test::writeFile(file(mutexName), GetParam().content);
    SemId m = mutex();
    EXPECT_EQ(m != nullptr, GetParam().usable);
    if (m != nullptr) {
        EXPECT_EQ(semTake(m, 10), OK);
        EXPECT_EQ(semGive(m), OK);
    }
    removeSharedObjects(names);
    platformOptions.instance.clear();
}

INSTANTIATE_TEST_SUITE_P(Contents, LeftoverOfACreator,
                         testing::Values(Leftover{"nothing", "", true}, Leftover{"aFewOctets", "abc", true},
                                         Leftover{"notLaidOut", std::string(sizeof(SharedHead), '\0'), true},
                                         Leftover{"halfLaidOut", "ODEI" + std::string(52, '\0'), true},
                                         Leftover{"anotherPrograms", std::string(64, 'x'), false}),
                         [](const auto &tested) { return std::string(tested.param.what); });

TEST_F(SharedObjects, AQueueUnderAMutexesNameIsRefusedWhileItIsInUse) {
    ASSERT_NE(msgQOpen(mutexName, 3, 20, 0, 0, 0), nullptr);
    EXPECT_EQ(mutex(), nullptr);
    EXPECT_NE(msgQOpen(mutexName, 3, 20, 0, 0, 0), nullptr);
}

// ------------------------------------------------------------------------------------ the queues

TEST_F(SharedObjects, ARecordOutlivesItsSenderAndWakesAWaitingReceiver) {
    ASSERT_EQ(statusOf(forkChild([] { msgQSend(queue(), "from the dead", 14, NO_WAIT, 0); })), 0);
    MsgQId q = queue();
    ASSERT_NE(q, nullptr);
    char record[20];
    EXPECT_EQ(msgQReceive(q, record, sizeof record, NO_WAIT), 14);
    EXPECT_STREQ(record, "from the dead");
    const pid_t receiver = forkChild([q] {
        char got[20];
        _exit(msgQReceive(q, got, sizeof got, WAIT_FOREVER) == 5 ? 7 : 8);
    });
    usleep(20'000); // most often the receiver waits by now; it must not matter
    EXPECT_EQ(msgQSend(q, "wake", 5, NO_WAIT, 0), OK);
    EXPECT_EQ(statusOf(receiver), 7);
}

TEST_F(SharedObjects, AFullQueueNeverHoldsItsSenderUpAndAMissingReceiverLosesNothing) {
    MsgQId q = queue();
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(msgQSend(q, &i, sizeof i, NO_WAIT, 0), OK);
    }
    int i = 3;
    EXPECT_EQ(msgQSend(q, &i, sizeof i, NO_WAIT, 0), ERROR);
    EXPECT_EQ(statusOf(forkChild([q] {
                  int got = -1;
                  msgQReceive(q, &got, sizeof got, NO_WAIT);
                  _exit(got);
              })),
              0);
    EXPECT_EQ(msgQSend(q, &i, sizeof i, NO_WAIT, 0), OK);
    for (int expected = 1; expected <= 3; expected++) {
        ASSERT_EQ(msgQReceive(q, &i, sizeof i, NO_WAIT), 4);
        EXPECT_EQ(i, expected);
    }
}

TEST_F(SharedObjects, AProcessThatDiesInTheQueueLeavesItWorking) {
    MsgQId q = queue();
    EXPECT_EQ(msgQSend(q, "a", 1, NO_WAIT, 0), OK);
    const auto dieInside = [](u32 tornBy) {
        const auto nothing = [](SharedHead *, const void *) {};
        SharedHead *head = sharedObjectOpen(commandQueue, SharedQueue, 0, nothing, nullptr);
        sharedLockTake(head, WAIT_FOREVER, nullptr);
        reinterpret_cast<MessageRing *>(head)->sent += tornBy;
        raise(SIGKILL);
    };
    ASSERT_EQ(statusOf(forkChild([&] { dieInside(0); })), -1);
    char record[20];
    EXPECT_EQ(msgQReceive(q, record, sizeof record, NO_WAIT), 1) << "what was sent before is there";
    ASSERT_EQ(statusOf(forkChild([&] { dieInside(1000); })), -1);
    EXPECT_EQ(msgQReceive(q, record, sizeof record, NO_WAIT), ERROR) << "a ring past repair is emptied";
    EXPECT_EQ(msgQSend(q, "b", 1, NO_WAIT, 0), OK);
    EXPECT_EQ(msgQReceive(q, record, sizeof record, NO_WAIT), 1);
}

TEST_F(SharedObjects, AProcessThatIsStoppedInTheQueueStopsNobodyElse) {
    MsgQId q = queue();
    const pid_t stopped = forkChild([] {
        const auto nothing = [](SharedHead *, const void *) {};
        sharedLockTake(sharedObjectOpen(commandQueue, SharedQueue, 0, nothing, nullptr), WAIT_FOREVER,
                       nullptr);
        raise(SIGSTOP);
    });
    int status = 0;
    ASSERT_EQ(waitpid(stopped, &status, WUNTRACED), stopped);
    char record[20];
    EXPECT_EQ(msgQSend(q, "a", 1, NO_WAIT, 0), ERROR);
    EXPECT_EQ(msgQReceive(q, record, sizeof record, NO_WAIT), ERROR);
    kill(stopped, SIGKILL);
    waitpid(stopped, &status, 0);
    EXPECT_EQ(msgQSend(q, "b", 1, NO_WAIT, 0), OK);
    EXPECT_EQ(msgQReceive(q, record, sizeof record, NO_WAIT), 1);
}

// ------------------------------------------------------------------------------------ the region

TEST_F(SharedObjects, ARegionMadeByAnotherProgramGrowsAndNeverShrinks) {
    test::writeFile(file(regionName), "first");
    auto *base = static_cast<char *>(region());
    ASSERT_NE(base, nullptr);
    EXPECT_STREQ(base, "first");
    base[regionSize - 1] = 1;
    EXPECT_EQ(test::readFile(file(regionName)).size(), regionSize);
    ASSERT_EQ(truncate(file(regionName).c_str(), 2 * regionSize), 0);
    EXPECT_EQ(static_cast<char *>(region())[0], 'f');
    EXPECT_EQ(test::readFile(file(regionName)).size(), 2 * regionSize);
}

// ------------------------------------------------------------------------------------- the sweep

void openAll() {
    _exit(mutex() != nullptr && queue() != nullptr && region() != nullptr ? 0 : 1);
}

TEST_F(SharedObjects, TheSweepTakesWhatDeadProcessesLeft) {
    ASSERT_EQ(statusOf(forkChild(openAll)), 0);
    ASSERT_TRUE(exists(mutexName) && exists(commandQueue) && exists(regionName));
    const std::string mine = platformOptions.instance;
    platformOptions.instance = mine + "x"; // as the start of another instance
    sweepSharedObjects(names);
    platformOptions.instance = mine;
    EXPECT_FALSE(exists(mutexName));
    EXPECT_FALSE(exists(commandQueue));
    EXPECT_FALSE(exists(regionName));
}

TEST_F(SharedObjects, TheSweepLeavesAnInstanceOfWhichOneProcessLives) {
    ASSERT_EQ(statusOf(forkChild(openAll)), 0);
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t alive = forkChild([&ready] {
        queue();
        (void)!write(ready[1], "r", 1);
        pause();
    });
    char octet;
    ASSERT_EQ(read(ready[0], &octet, 1), 1);
    sweepSharedObjects(names);
    EXPECT_TRUE(exists(mutexName) && exists(commandQueue) && exists(regionName));
    kill(alive, SIGKILL);
    EXPECT_EQ(statusOf(alive), -1);
    sweepSharedObjects(names);
    EXPECT_FALSE(exists(mutexName) || exists(commandQueue) || exists(regionName));
    close(ready[0]);
    close(ready[1]);
}

TEST_F(SharedObjects, TheSweepLeavesARegionThatSomebodyMapsByItsFile) {
    ASSERT_EQ(statusOf(forkChild(openAll)), 0);
    const int fd = open(file(regionName).c_str(), O_RDWR);
    void *base = mmap(nullptr, regionSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    close(fd);
    ASSERT_NE(base, MAP_FAILED);
    sweepSharedObjects(names);
    EXPECT_TRUE(exists(regionName));
    munmap(base, regionSize);
    sweepSharedObjects(names);
    EXPECT_FALSE(exists(regionName));
}

TEST_F(SharedObjects, TheSweepLeavesARegionThatNoServerEverUsed) {
    test::writeFile(file(regionName), "made by a tool");
    const std::string other = "/dev/shm/sd_commdataOf" + platformOptions.instance;
    test::writeFile(other, "not ours");
    sweepSharedObjects(names);
    EXPECT_TRUE(exists(regionName));
    EXPECT_EQ(access(other.c_str(), F_OK), 0);
    unlink(other.c_str());
}

} // namespace
} // namespace ied
