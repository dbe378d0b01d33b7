// The monitor task, which looks for changes in the model, and the report task, which sends what it
// found.
#pragma once

#include "platform/platform.h"

namespace ied {

extern SemId semMonitor; // given by the refresh task when data were refreshed
extern SemId semRefresh; // given back by the monitor task when it has looked at them
// Hand-overs are numbered, so that the answer to the last one is told from a late answer to one before
// it. Each number is published before its semaphore is given.
extern u32 handedOver; // written by the refresh task
extern u32 lookedAt;   // last one that was looked at whole; written by the monitor task
// The monitor task's side of a hand-over. False if it has been looked at already: the semaphore was
// given late for one that was seen with the one before it, and the next may be on its way.
bool takeHandOver(u32 *number);
void answerHandOver(u32 number);
// Makes the two semaphores, semRefresh full, and starts monitor and report task. False if there is no
// semaphore: the start ends.
bool monitorStart();
// Task bodies; never return. Each repeats its round.
void taskObjMon(TaskArgument);
void taskInfoRpt(TaskArgument);
// One round of each: feeds the watchdog when due, waits for the refresh or the delay, does the work.
void monitorRound();
void reportRound();

} // namespace ied
