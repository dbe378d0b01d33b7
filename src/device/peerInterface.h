// What this process shares with its peers, the device manager and the watchdog: the objects by name
// and size, and the records on the queues, in host byte order and without padding. Both sides open
// the objects through here; what lies in the region is regionLayout.h.
#pragma once

#include "device/regionLayout.h"
#include "platform/platform.h"

namespace ied {

// ---------------------------------------------------------------------------------- the records

// Record of the command queue.
struct manageMsg {
    u32 sendID;  // always 1: this process
    u32 cmdType; // always 1
    u32 data0;   // output channel selector
    u32 data1;   // command number
    u32 data2;   // command group
};
static_assert(sizeof(manageMsg) == 20);

enum WdgCommand : u32 {
    WdgRegister = 0,
    WdgTimeOutChange = 1,
    WdgFeed = 2,
    WdgCancle = 3,
    WdgStop = 5,
    WdgResume = 6,
    WdgReboot = 7,
};

// Record of the watchdog queue.
struct WdgMessage {
    u32 command;       // WdgCommand
    u32 taskId;        // the calling task; not with commands 5 to 7
    char taskName[32]; // NUL-terminated; commands 0 and 1 only
    u32 taskInfo1;     // word 1 of the task's descriptor; commands 0 and 1 only
    u32 taskInfo25;    // word 25 of it; not with commands 5 to 7
    i32 timeout;       // above 0; commands 0 and 1 only
};
static_assert(sizeof(WdgMessage) == 52);

// ---------------------------------------------------------------------------------- the objects

namespace peer {

inline constexpr const char *regionName = "/sd_commdata";
inline constexpr const char *mutexName = "/mutexCommomData"; // guards copies between the parameter areas
inline constexpr const char *commandQueueName = "/msgqDataManager";
inline constexpr const char *watchdogQueueName = "/wdtMsgQ";
inline constexpr const char *clockName = "/unix"; // a device, not an object

inline constexpr int commandQueueRecords = 80;
inline constexpr int watchdogQueueRecords = 100;

// Modes of the opening calls: whoever comes first makes the object.
inline constexpr u32 createMode = 0x10000000;
inline constexpr u32 sharedMode = 0x50000000;

inline constexpr const char *lockedNames[] = {mutexName, commandQueueName, watchdogQueueName};
inline constexpr SharedNames sharedNames{regionName, lockedNames};

// Each opens its object or makes it; null on failure, with errno.
inline MsgQId openCommandQueue() {
    return msgQOpen(commandQueueName, commandQueueRecords, sizeof(manageMsg), 0, createMode, 0);
}

inline MsgQId openWatchdogQueue() {
    return msgQOpen(watchdogQueueName, watchdogQueueRecords, sizeof(WdgMessage), 0, sharedMode, 0);
}

inline u8 *openRegion() {
    constexpr int options = 1;
    constexpr u32 attributes = 219;
    return static_cast<u8 *>(sdOpen(regionName, options, createMode, regionSize, 0, attributes));
}

inline SemId openMutex() {
    return semOpen(mutexName, semTypeMutex, semFull, semQPriority, sharedMode);
}

} // namespace peer

} // namespace ied
