#include "proto-process/c/monitorTasks.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/clock.h"
#include "device/addressBinding.h"
#include "device/watchdog.h"
#include "platform/shared.h"
#include "proto-process/c/controlModel.h"
#include "proto-process/c/reportModel.h"

namespace ied {

SemId semMonitor;
SemId semRefresh;
u32 handedOver;
u32 lookedAt;

namespace {

constexpr int monitorPriority = 200;
constexpr int reportPriority = 235;
constexpr u32 monitorStack = 0x100000;
constexpr u32 reportStack = 0x200000;

constexpr i32 monitorWatchTimeout = 300;
constexpr i32 reportWatchTimeout = 600;

constexpr int roundTicks = 10; // longest pause of the monitor, pause of the report task

TimeStamp monTime;   // of the current round of the monitor
u32 monitorFeedTick; // of each task's last feed
u32 reportFeedTick;

using MonitorFunction = bool (*)(RCB *rcb, const TimeStamp *time);

void forEachRcb(MonitorFunction monitor) {
    const u16 count = aRCBObj != nullptr ? gCBNum.rcbNum : u16{0};
    for (u16 i = 0; i < count; ++i) {
        monitor(&aRCBObj[i], &monTime);
    }
}

} // namespace

bool monitorStart() {
    semMonitor = semBCreate(semQPriority, semEmpty);
    if (semMonitor == nullptr) {
        dbInfo(DbOTH, DbPAN, "monitorStart", "Create semMonitor failed!");
        return false;
    }
    semRefresh = semBCreate(semQPriority, semFull);
    if (semRefresh == nullptr) {
        dbInfo(DbOTH, DbPAN, "monitorStart", "Create semRefresh failed!");
        return false;
    }
    spawnTask("t61850Monitor", monitorPriority, monitorStack, taskObjMon, 1);
    spawnTask("t61850Report", reportPriority, reportStack, taskInfoRpt, 1);
    return true;
}

bool takeHandOver(u32 *number) {
    *number = loadPublished(handedOver);
    return *number != loadPublished(lookedAt);
}

void answerHandOver(u32 number) {
    publish(lookedAt, number);
    semGive(semRefresh);
}

void monitorRound() {
    wdgFeedWhenDue(&monitorFeedTick);
    const bool refreshed = semTake(semMonitor, roundTicks) == OK;
    u32 number;
    const bool isNew = takeHandOver(&number);
    getTimeStamp(&monTime);
    if (refreshed) {
        if (isNew) {
            forEachRcb(monEventRpt);
        }
        answerHandOver(number);
    }
    forEachRcb(monPeriodRpt);
    monCtlObj();
}

void reportRound() {
    wdgFeedWhenDue(&reportFeedTick);
    sendRpt();
    sendCtlResult();
    taskDelay(roundTicks);
}

void taskObjMon(TaskArgument) {
    wdgRegister(monitorWatchTimeout);
    for (;;) {
        monitorRound();
    }
}

void taskInfoRpt(TaskArgument) {
    wdgRegister(reportWatchTimeout);
    for (;;) {
        reportRound();
    }
}

} // namespace ied
