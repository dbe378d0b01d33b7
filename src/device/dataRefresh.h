// The task t61850Update: it watches the change counters of the region, brings what changed into the
// mirror and hands each batch to the monitor task.
#pragma once

#include "device/regionLayout.h"
#include "platform/platform.h"

namespace ied {

// What the refresh remembers from one cycle to the next.
struct RefreshState {
    u32 lastArmFlag[armFlagNum];
    u32 lastDspFlag[dspFlagNum];
    u8 energyBill[energyBillSize]; // block as last taken
    u32 lastFlagThisMonth;
    u32 lastFlagLastMonth;
    u32 lastDiStatePtr; // read positions of the rings
    u32 lastDoStatePtr;
    u32 lastSpStatePtr;
    u32 lastLogicStatePtr;
    u32 lastPqLogPtr;
    u32 lastChkSelfState; // self-check word as last taken
    u32 lastWaveRecPtr1;  // record counters of the wave groups
    u32 lastWaveRecPtr2;
    u32 lastTick;  // tick of the last watchdog feed
    u32 feedCount; // feeds since the base parameters were read again
    u8 paramChanged;
    u8 measChanged;
};
extern RefreshState refreshState;

// Waits without limit for the region's ready word, reads again what the start has read from the region,
// and starts the task. False if the task cannot be started.
bool dataRefreshStart();
// Task body; never returns.
void refreshLocalData(TaskArgument);

// Start values of the state, from the region where it begins there.
void refreshStateInit(RefreshState *state);
// Everything but demand, once, before the first cycle.
void firstFilling();
// Plays what is new in the rings, the self-check word and the wave records into the model.
void refreshEvents(RefreshState *state);
// One cycle: waits at most 10 ticks for its pace, then takes what changed.
void refreshCycle(RefreshState *state);

// Hands what was written over to the monitor task and waits until it has been looked at: at most 50
// ticks, then a message. The monitor's late answer to a hand-over that timed out, given before or
// during this one, is never taken for the answer to this one.
void waitForMon();

} // namespace ied
