#include "DebugInfo/DebugInfo.h"
#include "basicInterface/commonInterface.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/memoryPool.h"
#include "device/addressBinding.h"
#include "device/dataRefresh.h"
#include "device/externGlbCfg.h"
#include "device/externalInterface.h"
#include "device/watchdog.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/monitorTasks.h"
#include "proto-process/c/serverStart.h"

#include <cstdio>

namespace ied {

namespace {

[[noreturn]] void stopAt(int line) {
    stopProcess("src/proto-process/c/taskMain", line);
}

void prepareDirectories() {
    const u8 dest = externGlbCfg.dbDest;
    if ((dest & DBINFO_DST_FILE) != 0 && !dirInit(externGlbCfg.debugDir)) {
        stopAt(158);
    }
    if (externGlbCfg.sgFileEnable != 0 && !dirInit(externGlbCfg.sgDir)) {
        stopAt(167);
    }
    if (externGlbCfg.logEnable != 0 && !dirInit(externGlbCfg.logDir)) {
        stopAt(175);
    }
}

void startDebugLog() {
    if (debugInfoInit() < 0) {
        std::fprintf(stderr, "Fail to init debug info!\n");
        stopAt(183);
    }
    dbInfoRaw("\r\n------------------------------------------------------\r\n");
    dbInfo(DbOTH, DbCRI, "taskMain", "RTP start! Complie time is: %s, %s", __DATE__, __TIME__);
    dbInfoRaw("Load DbInfoConf as Follows:\n");
    printDbInfo();
}

void createModelLock() {
    if (externGlbCfg.modelLockEnable == 0) {
        return;
    }
    semModelData = semRWCreate(semQPriority, externGlbCfg.maxClientNum + extraReaders);
    if (semModelData == nullptr) {
        dbInfo(DbOTH, DbPAN, "taskMain", "Create semModelData failed!");
    }
}

// One step of the start whose result decides: logs it, and ends the process on failure.
struct Step {
    DbCategory category;
    const char *success;
    const char *failure;
    int line;
};

void require(bool done, const Step &step) {
    if (!done) {
        dbInfo(step.category, DbERR, "taskMain", "%s", step.failure);
        stopAt(step.line);
    }
    if (step.success != nullptr) {
        dbInfo(step.category, DbCRI, "taskMain", "%s", step.success);
    }
}

void spawnClientTasks() {
    for (u8 slot = 0; slot < externGlbCfg.maxClientNum; ++slot) {
        storeShared(clientStat[slot].status, CS_IDLE);
        clientFile[slot] = {0, -1, 0, 0};
        char name[clientTaskNameSize];
        clientTaskName(slot, name);
        const TaskId task = spawnTask(name, static_cast<int>(externGlbCfg.clientTaskPriority),
                                      externGlbCfg.clientTaskStack, clientProcess, slot);
        if (task == taskNone) {
            storeShared(clientStat[slot].status, CS_NONE); // nobody would ever serve the slot
            dbInfo(DbOTH, DbERR, "taskMain", "%s taskSpawn failed!", name);
        }
    }
}

// Brings the server up; returns the listening socket.
int startServer() {
    clientStatInit();
    prepareDirectories();
    startDebugLog();
    isWordAlign = externGlbCfg.wordAlign;
    clientSemInit();
    createModelLock();
    require(sysInit(), {DbOTH, "System init success!", "System init failed!", 234});
    require(modelCfgInit(externGlbCfg.icdPath), {DbOTH, "Model init success!", "Model init failed!", 245});
    require(monitorStart(), {DbOTH, "Start model monitor success!", "Start model monitor failed!", 256});
    require(dataRefreshStart(), {DbUPD, "Start refresh success!", "Start refresh failed!", 267});
    if (externGlbCfg.wdgEnable != 0) {
        wdgRegister(static_cast<i32>(externGlbCfg.wdgMainTimeout));
    }
    spawnClientTasks();
    dbInfo(DbOTH, DbCRI, "taskMain", "Initialization is finished, memory allocated is %d bytes!",
           static_cast<int>(loadShared(allocBytes)));
    int listenFd = ERROR;
    require(socketInit(&listenFd), {DbSOC, nullptr, "Socket init failed!", 325});
    dbInfo(DbOTH, DbCRI, "taskMain", "Server Start!");
    serverStartHook();
    return listenFd;
}

} // namespace

void taskMain() {
    const int listenFd = startServer();
    const ::timeval timeout = splitTimeout(externGlbCfg.acceptTimeout);
    for (;;) {
        acceptRound(listenFd, timeout);
    }
}

} // namespace ied
