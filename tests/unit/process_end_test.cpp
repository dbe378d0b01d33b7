// The end of the process by a signal, by a task, and when it does not go well. Every case is a
// process of its own.
#include "platform/platform.h"
#include "tests/support/process.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ied {
namespace {

struct Child {
    pid_t pid;
    int fromChild; // what its tell() writes
};

int toParent;

void tell(char what) {
    (void)!write(toParent, &what, 1);
}

Child startChild(const std::function<void()> &body) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t pid = fork();
    if (pid == 0) {
        toParent = ends[1];
        close(ends[0]);
        body();
        _exit(99);
    }
    close(ends[1]);
    return {pid, ends[0]};
}

// Everything the child told before its end, then its exit status.
std::string toldBy(const Child &child, int *status) {
    std::string told;
    char octet;
    while (read(child.fromChild, &octet, 1) == 1) {
        told += octet;
    }
    close(child.fromChild);
    int raw = 0;
    waitpid(child.pid, &raw, 0);
    *status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -WTERMSIG(raw);
    return told;
}

void awaitReady(const Child &child) {
    char octet = 0;
    ASSERT_EQ(read(child.fromChild, &octet, 1), 1);
    ASSERT_EQ(octet, 'r');
}

struct Ended {
    int signal;
    bool ignoredBefore;
};

class EndSignal : public testing::TestWithParam<Ended> {};

TEST_P(EndSignal, EndsAWaitingProcessWithStatusZeroAfterItsFlushes) {
    const Child child = startChild([] {
        if (GetParam().ignoredBefore) {
            signal(GetParam().signal, SIG_IGN); // as a shell leaves it to what runs in the background
        }
        installEndSignals();
        atProcessEnd([] { tell('1'); });
        atProcessEnd([] { tell('2'); });
        taskSpawn(
            "tBusy", 200, taskOptionFp, 0x10000,
            [](TaskArgument) {
                for (;;) {
                    std::free(std::malloc(100));
                }
            },
            0, 2, 3, 4, 5, 6, 7, 8, 9, 10);
        static SemId never; // in reach of a leak checker, as everything that lives on is
        never = semBCreate(semQFifo, semEmpty);
        tell('r');
        semTake(never, WAIT_FOREVER);
    });
    awaitReady(child);
    kill(child.pid, GetParam().signal);
    int status = 0;
    EXPECT_EQ(toldBy(child, &status), "12");
    EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, EndSignal,
                         testing::Values(Ended{SIGTERM, false}, Ended{SIGINT, false}, Ended{SIGINT, true}));

TEST(ProcessEnd, TasksThatEndTheProcessAtOnceEndItOnce) {
    for (int round = 0; round < 5; round++) {
        const Child child = startChild([] {
            atProcessEnd([] { tell('f'); });
            for (TaskArgument i = 0; i < 4; i++) {
                taskSpawn(
                    "tEnd", 200, taskOptionFp, 0x10000, [](TaskArgument) { processExit(5); }, i, 2, 3, 4, 5,
                    6, 7, 8, 9, 10);
            }
            processExit(5);
        });
        int status = 0;
        EXPECT_EQ(toldBy(child, &status), "f");
        EXPECT_EQ(status, 5);
    }
}

TEST(ProcessEnd, AFlushThatFailsInTurnStillEndsTheProcess) {
    const Child child = startChild([] {
        atProcessEnd([] { processExit(6); });
        processExit(5);
    });
    int status = 0;
    toldBy(child, &status);
    EXPECT_EQ(status, 6);
}

TEST(ProcessEnd, ATerminalThatTakesNoMoreDoesNotHoldTheEndUp) {
    int full[2];
    ASSERT_EQ(pipe(full), 0);
    const Child child = startChild([&full] {
        fcntl(full[1], F_SETFL, O_NONBLOCK);
        while (write(full[1], "x", 1) == 1) {
        }
        fcntl(full[1], F_SETFL, 0);
        dup2(full[1], STDOUT_FILENO);
        std::fputs("never read", stdout);
        installEndSignals();
        tell('r');
        for (;;) {
            pause();
        }
    });
    awaitReady(child);
    kill(child.pid, SIGTERM);
    int status = 99;
    toldBy(child, &status);
    EXPECT_EQ(status, 0);
    close(full[0]);
    close(full[1]);
}

TEST(ProcessEnd, AReaderThatLeftDoesNotEndTheProcess) {
    const Child child = startChild([] {
        installEndSignals();
        int ends[2];
        (void)!pipe(ends);
        close(ends[0]);
        tell(write(ends[1], "x", 1) == -1 ? 'e' : 'w');
        processExit(0);
    });
    int status = 0;
    EXPECT_EQ(toldBy(child, &status), "e");
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace ied
