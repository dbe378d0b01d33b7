#include "ied-device/spy.h"

#include "ied-device/serverQueues.h"

#include <cstdio>
#include <string>

namespace ied::instrument {

namespace {

MsgQId watchdogQueue;

void watchWatchdog(TaskArgument) {
    WdgMessage message{};
    for (;;) {
        if (msgQReceive(watchdogQueue, &message, sizeof message, WAIT_FOREVER) == sizeof message) {
            print(watchdogLine(message));
        }
    }
}

} // namespace

int spy() {
    SharedObjects shared;
    if (const char *failed = openSharedObjects(&shared)) {
        std::fprintf(stderr, "ied-device: cannot open the %s\n", failed);
        return 1;
    }
    print("{\"spy\":\"ready\"}\n");
    watchdogQueue = shared.watchdog;
    constexpr u32 stackSize = 0x40000;
    if (taskSpawn("tSpyWatchdog", 100, 0, stackSize, watchWatchdog, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0) ==
        taskNone) {
        std::fputs("ied-device: cannot start a task\n", stderr);
        return 1;
    }
    manageMsg message{};
    for (;;) {
        if (msgQReceive(shared.commands, &message, sizeof message, WAIT_FOREVER) == sizeof message) {
            print(commandLine(message));
        }
    }
}

} // namespace ied::instrument
