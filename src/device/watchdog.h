// Client of the device's watchdog: tasks announce themselves, feed it, and can ask it to stop, to
// resume or to restart the device, by messages on the watchdog queue (peerInterface.h). What a missed
// feed leads to is the peer's business. Every call returns 0, or -1 when nothing was sent (a queue
// that is full or missing, an unknown task); nothing is logged and nobody needs the result.
#pragma once

#include "platform/types.h"

namespace ied {

// Opens the queue, or makes it, unless it is open already.
int wdgInit();
// Announces the calling task with `timeout` (above 0, in the peer's unit); opens the queue.
int wdgRegister(i32 timeout);
// Changes the time-out of the calling task, which is registered.
int wdgTimeOutChange(i32 timeout);
// Feeds for the calling task. -1 before any task of the process has opened the queue.
int wdgFeed();
// Whether client tasks are watched at all: wdgEnable and wdgClientEnable.
bool wdgWatchesClients();
// wdgFeed, when 6 seconds have passed since `*lastTick`, the tick of the last feed, which is then
// moved on. Whether it was due.
bool wdgFeedWhenDue(u32 *lastTick);
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
