// Clock, tasks, semaphores, files, sockets and the error record of the platform layer.
#include "platform/platform.h"
#include "platform/shared.h"
#include "tests/support/process.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace ied {
namespace {

using test::waitUntil;

TaskId spawn(const char *name, TaskEntry entry, TaskArgument argument = 0, int priority = 200) {
    return taskSpawn(name, priority, taskOptionFp, 0x10000, entry, argument, 2, 3, 4, 5, 6, 7, 8, 9, 10);
}

struct HeldClock {
    explicit HeldClock(bool movesItself) { heldClockStart(1'700'000'000, movesItself); }
    ~HeldClock() {
        sysClkRateSet(100);
        heldClockStop();
    }
};

// ----------------------------------------------------------------------------------------- clock

class AnyTickRate : public testing::TestWithParam<u32> {};

TEST_P(AnyTickRate, ADelayOfNEndsOnTheNthTickEdge) {
    const HeldClock clock(true);
    const u32 rate = GetParam();
    sysClkRateSet(rate);
    const u64 start = monotonicNs();
    ASSERT_EQ(tickGet(), 0U);
    for (u32 n : {1U, 2U, 7U, 50U, 1000U}) {
        const u32 before = tickGet();
        taskDelay(static_cast<int>(n));
        ASSERT_EQ(tickGet(), before + n);
        const u64 edge = (u64{tickGet()} * 1'000'000'000 + rate - 1) / rate;
        ASSERT_EQ(monotonicNs() - start, edge) << "on the edge itself, " << n << " ticks";
    }
    heldClockAdvance(1); // into the tick, or beyond at 1000 a second
    const u32 before = tickGet();
    taskDelay(1);
    EXPECT_EQ(tickGet(), before + 1) << "a delay of 1 is what is left of the present tick";
    EXPECT_LE(monotonicNs() - start, (u64{before} + 2) * 1'000'000'000 / rate);
}

TEST_P(AnyTickRate, TicksWrapAt32BitsAfterAnyTime) {
    const HeldClock clock(true);
    const u32 rate = GetParam();
    sysClkRateSet(rate);
    constexpr u64 seconds = 10ULL * 365 * 86400;
    heldClockAdvance(seconds * 1000);
    EXPECT_EQ(tickGet(), static_cast<u32>(seconds * rate));
    const u32 before = tickGet();
    taskDelay(3);
    EXPECT_EQ(tickGet(), before + 3);
}

INSTANTIATE_TEST_SUITE_P(Rates, AnyTickRate, testing::Values(1U, 60U, 100U, 999U, 1000U));

TEST(Clock, ADelayOfZeroOrLessDoesNotWait) {
    const HeldClock clock(true);
    const u64 start = monotonicNs();
    taskDelay(0);
    taskDelay(-1);
    EXPECT_EQ(monotonicNs(), start);
}

u32 delayEnded;

TEST(Clock, AHeldClockReleasesADelayOfAnotherTaskWhenItFallsDue) {
    const HeldClock clock(false);
    storeShared(delayEnded, 0U);
    static SemId started;
    started = semBCreate(0, semEmpty);
    spawn("tDelay", [](TaskArgument) {
        semGive(started);
        taskDelay(100);
        publish(delayEnded, 1U);
    });
    ASSERT_EQ(semTake(started, WAIT_FOREVER), OK);
    heldClockAdvance(990);
    EXPECT_EQ(loadShared(delayEnded), 0U);
    EXPECT_TRUE(waitUntil([] {
        heldClockAdvance(1000); // the delay may have begun after the first step
        return loadPublished(delayEnded) == 1;
    }));
    semDelete(started);
}

TEST(Clock, TheClockDeviceGivesUtcWithQualityTen) {
    const HeldClock clock(false);
    heldClockAdvance(61'234);
    const int fd = clockDeviceOpen("/unix");
    TimeStamp time{};
    ASSERT_EQ(clockDeviceRead(fd, &time), OK);
    EXPECT_EQ(time.sec, 1'700'000'061U);
    EXPECT_EQ(time.ms, 234U);
    EXPECT_EQ(time.tq, 10);
    EXPECT_EQ(clockDeviceOpen("/other"), ERROR);
    EXPECT_EQ(clockDeviceRead(0, &time), ERROR);
}

// ----------------------------------------------------------------------------------------- tasks

struct Seen {
    TaskId id;
    TaskArgument argument;
    char name[64];
    TaskInfo info;
};
Seen seen;
SemId done;

void lookAtSelf(TaskArgument argument) {
    seen.id = taskIdSelf();
    seen.argument = argument;
    std::strcpy(seen.name, taskName(taskNone));
    taskInfoGet(seen.id, &seen.info);
    semGive(done);
}

TEST(Tasks, ATaskKnowsItsNameItsNumbersAndItsFirstArgument) {
    done = semBCreate(0, semEmpty);
    const TaskId id = spawn("t61850ClientWithARatherLongName7", lookAtSelf, 7, 247);
    ASSERT_NE(id, taskNone);
    ASSERT_EQ(semTake(done, WAIT_FOREVER), OK);
    EXPECT_EQ(seen.id, id);
    EXPECT_EQ(seen.argument, 7);
    EXPECT_STREQ(seen.name, "t61850ClientWithARatherLongName7");
    EXPECT_STREQ(seen.info.name, "t61850ClientWithARatherLongName") << "31 characters";
    EXPECT_EQ(seen.info.word1, 247U);
    EXPECT_EQ(seen.info.word25, 0x10000U);
    semDelete(done);
}

TEST(Tasks, TheInitialTaskHasANameAndUnknownTasksAreErrors) {
    EXPECT_TRUE(taskIsInitial());
    EXPECT_STREQ(taskName(taskNone), "tInit");
    EXPECT_STREQ(taskName(taskIdSelf()), "tInit");
    TaskInfo info;
    char name[32];
    EXPECT_EQ(taskInfoGet(0x7FFFFFF0, &info), ERROR);
    EXPECT_EQ(taskNameGet(0x7FFFFFF0, name), ERROR);
    EXPECT_STREQ(taskName(0x7FFFFFF0), "");
}

TEST(Tasks, TaskExitEndsTheTaskAloneAndItsRecordIsUsedAgain) {
    done = semBCreate(0, semEmpty);
    for (int i = 0; i < 1500; i++) { // more than there are records
        ASSERT_NE(spawn("tShort", [](TaskArgument) { semGive(done), taskExit(0); }), taskNone) << i;
        ASSERT_EQ(semTake(done, WAIT_FOREVER), OK);
    }
    semDelete(done);
}

TEST(Tasks, TaskExitInTheInitialTaskEndsTheProcessWithItsLowOctet) {
    EXPECT_EXIT(taskExit(-1), testing::ExitedWithCode(255), "");
    EXPECT_EXIT(taskExit(0x103), testing::ExitedWithCode(3), "");
}

// ------------------------------------------------------------------------------------ semaphores

// Runs `body` in a task of its own and waits for its end.
int resultElsewhere;
void elsewhere(TaskEntry body) {
    done = semBCreate(0, semEmpty);
    ASSERT_NE(spawn("tElse", body), taskNone);
    ASSERT_EQ(semTake(done, WAIT_FOREVER), OK);
    semDelete(done);
}

SemId subject;
void tryTakeOnce(TaskArgument) {
    resultElsewhere = semTake(subject, NO_WAIT);
    semGive(done);
}
void tryGiveOnce(TaskArgument) {
    resultElsewhere = semGive(subject);
    semGive(done);
}
void tryReadOnce(TaskArgument) {
    resultElsewhere = semRTake(subject, NO_WAIT);
    semGive(done);
}

TEST(Semaphores, AMutexIsRecursiveAndItsHoldersAlone) {
    subject = semMCreate(semQPriority | semDeleteSafe | semInversionSafe);
    ASSERT_EQ(semTake(subject, NO_WAIT), OK);
    ASSERT_EQ(semTake(subject, NO_WAIT), OK);
    elsewhere(tryTakeOnce);
    EXPECT_EQ(resultElsewhere, ERROR);
    elsewhere(tryGiveOnce);
    EXPECT_EQ(resultElsewhere, ERROR);
    EXPECT_EQ(semGive(subject), OK);
    elsewhere(tryTakeOnce);
    EXPECT_EQ(resultElsewhere, ERROR) << "still held once";
    EXPECT_EQ(semGive(subject), OK);
    elsewhere(tryTakeOnce);
    EXPECT_EQ(resultElsewhere, OK);
    semDelete(subject);
}

TEST(Semaphores, ABinarySemaphoreHoldsOneGiveWhoeverGivesIt) {
    subject = semBCreate(semQFifo, semEmpty);
    EXPECT_EQ(semTake(subject, NO_WAIT), ERROR);
    elsewhere(tryGiveOnce);
    EXPECT_EQ(semGive(subject), OK);
    EXPECT_EQ(semTake(subject, NO_WAIT), OK);
    EXPECT_EQ(semTake(subject, NO_WAIT), ERROR);
    semDelete(subject);
    subject = semBCreate(semQFifo, semFull);
    EXPECT_EQ(semTake(subject, NO_WAIT), OK);
    semDelete(subject);
}

TEST(Semaphores, AReaderWriterSemaphoreLimitsItsReadersAndKeepsAWriterAlone) {
    subject = semRWCreate(0, 2);
    ASSERT_EQ(semRTake(subject, NO_WAIT), OK);
    ASSERT_EQ(semRTake(subject, NO_WAIT), OK);
    EXPECT_EQ(semRTake(subject, NO_WAIT), ERROR) << "two are the limit";
    EXPECT_EQ(semWTake(subject, NO_WAIT), ERROR);
    EXPECT_EQ(semGive(subject), OK);
    EXPECT_EQ(semWTake(subject, NO_WAIT), ERROR) << "one reader is left";
    EXPECT_EQ(semGive(subject), OK);
    EXPECT_EQ(semWTake(subject, NO_WAIT), OK);
    elsewhere(tryReadOnce);
    EXPECT_EQ(resultElsewhere, ERROR);
    EXPECT_EQ(semGive(subject), OK);
    elsewhere(tryReadOnce);
    EXPECT_EQ(resultElsewhere, OK);
    semDelete(subject);
}

TEST(Semaphores, ATimeOutLastsItsTicks) {
    const HeldClock clock(true);
    sysClkRateSet(1000);
    SemId empty = semBCreate(semQFifo, semEmpty);
    const u32 before = tickGet();
    EXPECT_EQ(semTake(empty, 50), ERROR);
    EXPECT_EQ(tickGet() - before, 50U);
    semDelete(empty);
}

TEST(Semaphores, AGiveEndsAWaitWhateverTheClockDoes) {
    const HeldClock clock(false);
    subject = semBCreate(semQFifo, semEmpty);
    static u32 taken;
    storeShared(taken, 0U);
    spawn("tWait", [](TaskArgument) { publish(taken, semTake(subject, 1000) == OK ? 1U : 2U); });
    EXPECT_EQ(semGive(subject), OK);
    EXPECT_TRUE(waitUntil([] { return loadPublished(taken) != 0; }));
    EXPECT_EQ(taken, 1U);
    semDelete(subject);
}

u32 counted;  // guarded by `subject`
u32 finished; // tasks that are done

TEST(Semaphores, AMutexGuardsAWordThatTasksCountTogether) {
    subject = semMCreate(semQPriority);
    counted = 0;
    storeShared(finished, 0U);
    constexpr u32 tasks = 4;
    for (u32 i = 0; i < tasks; i++) {
        spawn("tCount", [](TaskArgument) {
            for (int n = 0; n < 5000; n++) {
                semTake(subject, WAIT_FOREVER);
                counted++;
                semGive(subject);
            }
            std::atomic_ref<u32>(finished).fetch_add(1);
        });
    }
    ASSERT_TRUE(waitUntil([] { return std::atomic_ref<u32>(finished).load() == tasks; }));
    EXPECT_EQ(counted, tasks * 5000);
    semDelete(subject);
}

TEST(Semaphores, NoSemaphoreIsAnError) {
    EXPECT_EQ(semTake(nullptr, NO_WAIT), ERROR);
    EXPECT_EQ(semGive(nullptr), ERROR);
    EXPECT_EQ(semRTake(nullptr, NO_WAIT), ERROR);
}

// --------------------------------------------------------------------------------- private queues

TEST(PrivateQueues, RecordsComeInOrderAndAFullQueueIsAnErrorAtOnce) {
    MsgQId queue = msgQOpen("logMsgQ", 2, 8, 0, 0, 0);
    ASSERT_NE(queue, nullptr);
    EXPECT_EQ(msgQOpen("logMsgQ", 9, 9, 0, 0, 0), queue) << "the queue that is there";
    char record[8];
    EXPECT_EQ(msgQReceive(queue, record, sizeof record, NO_WAIT), ERROR);
    EXPECT_EQ(msgQSend(queue, "123456789", 9, NO_WAIT, 0), ERROR) << "longer than a record";
    for (int round = 0; round < 3; round++) { // past the end of the ring
        EXPECT_EQ(msgQSend(queue, "one", 3, NO_WAIT, 0), OK);
        EXPECT_EQ(msgQSend(queue, "second", 6, NO_WAIT, 0), OK);
        EXPECT_EQ(msgQSend(queue, "third", 5, NO_WAIT, 0), ERROR);
        EXPECT_EQ(msgQReceive(queue, record, sizeof record, NO_WAIT), 3);
        EXPECT_EQ(std::string(record, 3), "one");
        EXPECT_EQ(msgQReceive(queue, record, 4, NO_WAIT), 4) << "cut to the room at hand";
        EXPECT_EQ(std::string(record, 4), "seco");
    }
    const HeldClock clock(true);
    const u32 before = tickGet();
    EXPECT_EQ(msgQReceive(queue, record, sizeof record, 20), ERROR);
    EXPECT_EQ(tickGet() - before, 20U);
}

// ----------------------------------------------------------------------------------------- files

struct Root {
    Root() { platformOptions.root = folder.path; }
    ~Root() { platformOptions.root.clear(); }
    test::TempFolder folder;
};

TEST(Files, DevicePathsGoThroughTheRootFolder) {
    const Root root;
    ASSERT_EQ(fileOps.mkdir("/tffs0", 0755), 0);
    const int fd = fileOps.open("/tffs0/a", O_RDWR | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(fileOps.write(fd, "abcdef", 6), 6);
    EXPECT_EQ(fileOps.ioctl(fd, FIOFLUSH, 0), 0);
    EXPECT_EQ(fileOps.ioctl(fd, FIOTRUNC, 3), 0);
    struct stat info {};
    ASSERT_EQ(fileOps.fstat(fd, &info), 0);
    EXPECT_EQ(info.st_size, 3);
    EXPECT_EQ(fileOps.ioctl(fd, FIOTRUNC, 8), 0);
    EXPECT_EQ(fileOps.lseek(fd, 0, SEEK_SET), 0);
    char content[9] = {};
    EXPECT_EQ(fileOps.read(fd, content, 9), 8);
    EXPECT_EQ(std::string(content, 8), std::string("abc\0\0\0\0\0", 8));
    EXPECT_EQ(fileOps.ioctl(fd, 12345, 0), ERROR);
    EXPECT_EQ(fileOps.close(fd), 0);
    EXPECT_EQ(fileOps.rename("/tffs0/a", "/tffs0/b"), 0);
    EXPECT_EQ(fileOps.access("/tffs0/a", F_OK), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(test::readFile(root.folder.path + "/tffs0/b").size(), 8U);
    EXPECT_EQ(fileOps.remove("/tffs0/b"), 0);
}

TEST(Files, ReservedSpaceDoesNotChangeTheSize) {
    const Root root;
    const int fd = fileOps.open("/a", O_RDWR | O_CREAT, 0644);
    const int result = fileOps.ioctl(fd, FIOCONTIG, 65536);
    struct stat info {};
    fileOps.fstat(fd, &info);
    EXPECT_EQ(info.st_size, 0);
    if (result == 0) { // not every file system of a host can
        EXPECT_GE(info.st_blocks * 512, 65536);
    }
    fileOps.close(fd);
}

// --------------------------------------------------------------------------------------- sockets

TEST(Sockets, ASendToAPeerThatLeftIsAnErrorAndNoSignal) {
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    socketOps.close(pair[1]);
    EXPECT_EQ(socketOps.send(pair[0], "x", 1, 0), -1);
    EXPECT_EQ(errno, EPIPE);
    EXPECT_EQ(socketOps.setNonBlocking(pair[0], true), 0);
    EXPECT_NE(fcntl(pair[0], F_GETFL) & O_NONBLOCK, 0);
    socketOps.close(pair[0]);
}

// ---------------------------------------------------------------------------------- error record

TEST(ErrorRecord, IsOneLineWithTheLatestSixFailuresOfItsTask) {
    noteFailure(nullptr);
    for (const char *text : {"a", "b", "c\r\n", "d", "e", "f", "g"}) {
        noteFailure(text);
    }
    elsewhere([](TaskArgument) {
        noteFailure("of another task");
        semGive(done);
    });
    testing::internal::CaptureStderr();
    edrErrorInject(513, "src/proto-process/c/taskMain", 245, 0, 0, "IEC61850 error!");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error record 513, src/proto-process/c/taskMain:245: "
                                                      "IEC61850 error! Cause: b; c  ; d; e; f; g\n");
    noteFailure(nullptr);
    testing::internal::CaptureStderr();
    edrErrorInject(513, "p", 1, 0, 0, "e");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error record 513, p:1: e\n");
}

} // namespace
} // namespace ied
