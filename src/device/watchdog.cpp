#include "device/watchdog.h"

#include "basicInterface/clock.h"
#include "device/externGlbCfg.h"
#include "device/peerInterface.h"
#include "platform/shared.h"

#include <cstring>

namespace ied {

namespace {

MsgQId g_msgQID; // published by whoever opens the queue first

bool isOpen() {
    return loadPublished(g_msgQID) != nullptr;
}

int sendMessage(const WdgMessage &message) {
    return msgQSend(loadPublished(g_msgQID), &message, sizeof message, NO_WAIT, 0) == OK ? 0 : -1;
}

// Registration and its change carry everything that is known of the calling task.
int announce(WdgCommand command, i32 timeout) {
    TaskInfo info;
    if (timeout <= 0 || taskInfoGet(taskIdSelf(), &info) != OK || wdgInit() != 0) {
        return -1;
    }
    WdgMessage message{};
    message.command = command;
    message.taskId = info.id;
    if (taskNameGet(info.id, message.taskName) != OK) {
        return -1;
    }
    message.taskName[sizeof message.taskName - 1] = 0;
    message.taskInfo1 = info.word1;
    message.taskInfo25 = info.word25;
    message.timeout = timeout;
    return sendMessage(message);
}

int sendOfTask(WdgCommand command) {
    TaskInfo info;
    if (!isOpen() || taskInfoGet(taskIdSelf(), &info) != OK) {
        return -1;
    }
    WdgMessage message{};
    message.command = command;
    message.taskId = info.id;
    message.taskInfo25 = info.word25;
    return sendMessage(message);
}

int sendOfDevice(WdgCommand command) {
    if (wdgInit() != 0) {
        return -1;
    }
    WdgMessage message{};
    message.command = command;
    return sendMessage(message);
}

} // namespace

int wdgInit() {
    if (!isOpen()) {
        if (MsgQId queue = peer::openWatchdogQueue()) {
            publish(g_msgQID, queue);
        }
    }
    return isOpen() ? 0 : -1;
}

int wdgRegister(i32 timeout) {
    return announce(WdgRegister, timeout);
}

int wdgTimeOutChange(i32 timeout) {
    return announce(WdgTimeOutChange, timeout);
}

int wdgFeed() {
    return sendOfTask(WdgFeed);
}

bool wdgFeedWhenDue(u32 *lastTick) {
    constexpr u32 feedPeriod = 6000; // milliseconds
    if (!isTimeOut(*lastTick, feedPeriod)) {
        return false;
    }
    wdgFeed();
    *lastTick = tickGet();
    return true;
}

bool wdgWatchesClients() {
    return externGlbCfg.wdgEnable != 0 && externGlbCfg.wdgClientEnable != 0;
}

void wdgFeedIfEnabled() {
    if (externGlbCfg.wdgEnable != 0) {
        wdgFeed();
    }
}

void wdgFeedClient() {
    if (wdgWatchesClients()) {
        wdgFeed();
    }
}

int wdgCancle() {
    return sendOfTask(WdgCancle);
}

int wdgStop() {
    return sendOfDevice(WdgStop);
}

int wdgResume() {
    return sendOfDevice(WdgResume);
}

int wdgReboot() {
    return sendOfDevice(WdgReboot);
}

} // namespace ied
