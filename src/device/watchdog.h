// Client of the device's watchdog: tasks announce themselves, feed it, and can ask it to stop, to
// resume or to restart the device, by messages of 52 octets on the queue "/wdtMsgQ". What a missed
// feed leads to is the peer's business. Every call returns 0, or -1 when nothing was sent (a queue
// that is full or missing, an unknown task); nothing is logged and nobody needs the result.
#pragma once

#include "platform/types.h"

namespace ied {

enum WdgCommand : u32 {
    WdgRegister = 0,
    WdgTimeOutChange = 1,
    WdgFeed = 2,
    WdgCancle = 3,
    WdgStop = 5,
    WdgResume = 6,
    WdgReboot = 7,
};

// The record that the peer reads: host byte order, no padding.
struct WdgMessage {
    u32 command;       // WdgCommand
    u32 taskId;        // the calling task; not with commands 5 to 7
    char taskName[32]; // NUL-terminated; commands 0 and 1 only
    u32 taskInfo1;     // word 1 of the task's descriptor; commands 0 and 1 only
    u32 taskInfo25;    // word 25 of it; not with commands 5 to 7
    i32 timeout;       // above 0; commands 0 and 1 only
};
static_assert(sizeof(WdgMessage) == 52);

// Opens the queue, or makes it for 100 messages, unless it is open already.
int wdgInit();
// Announces the calling task with `timeout` (above 0, in the peer's unit); opens the queue.
int wdgRegister(i32 timeout);
// Changes the time-out of the calling task, which is registered.
int wdgTimeOutChange(i32 timeout);
// Feeds for the calling task. -1 before any task of the process has opened the queue.
int wdgFeed();
// Whether client tasks are watched at all: wdgEnable and wdgClientEnable.
bool wdgWatchesClients();
// wdgFeed, where wdgEnable is set.
void wdgFeedIfEnabled();
// wdgFeed, where client tasks are watched.
void wdgFeedClient();
// Takes the calling task off the watchdog's list. -1 as wdgFeed.
int wdgCancle();
// The whole device: stop watching, watch again, restart.
int wdgStop();
int wdgResume();
int wdgReboot();

} // namespace ied
