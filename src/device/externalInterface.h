// The door to the device manager: opening what it shares with this process (peerInterface.h), its
// commands, and the seams that this device has nothing behind. Time comes from getTimeStamp
// (clock.h), which reads the clock device opened here.
#pragma once

#include "basicInterface/clock.h"
#include "platform/platform.h"

namespace ied {

extern SemId mutexComdata; // guards copies from the live to the edit parameter area
extern MsgQId sgMsgQID;    // command queue

// Waits two seconds, then opens the command queue, the region, its mutex and the clock device. True
// on success; the first failure is logged and gives false.
bool sysInit();

// Sends one command without waiting. A failure is logged and the command is lost.
void sendManageMsg(u32 cmdType, u32 data0, u32 data1, u32 data2);

// Called first of all with the program's arguments.
void startUpHook(const char *const *argv);
// Called when the server listens, before it accepts.
void serverStartHook();
// Called for each good receive and send of a client.
void ctlComLedFlash();
void getMacAddress();
// GOOSE is configured only; no frame leaves. Both return 0.
int sendGoosePacket();
int setGooseMCastAddr();

} // namespace ied
