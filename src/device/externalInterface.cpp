#include "device/externalInterface.h"

#include "DebugInfo/DebugInfo.h"
#include "device/peerInterface.h"
#include "device/region.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ied {

SemId mutexComdata;
MsgQId sgMsgQID;

namespace {

// The error record also says what the log's line does not.
bool failed(const char *object, const char *text) {
    const int error = errno;
    char cause[256];
    std::snprintf(cause, sizeof cause, "cannot open \"%s\": %s", sharedName(object).c_str(),
                  std::strerror(error));
    noteFailure(cause);
    dbInfo(DbOTH, DbERR, "sysInit", "%s", text);
    return false;
}

} // namespace

bool sysInit() {
    taskDelay(static_cast<int>(2 * sysClkRateGet()));
    sgMsgQID = peer::openCommandQueue();
    if (sgMsgQID == nullptr) {
        return failed(peer::commandQueueName, "Fail to open DataManager msgQ!");
    }
    comdata = peer::openRegion();
    if (comdata == nullptr) {
        return failed(peer::regionName, "ERROR TO OPEN SD_COMMDATA");
    }
    mutexComdata = peer::openMutex();
    if (mutexComdata == nullptr) {
        return failed(peer::mutexName, "ERROR TO OPEN SD_COMMDATA_MUTEX");
    }
    fdRtc = clockDeviceOpen(peer::clockName);
    if (fdRtc == ERROR) {
        return failed(peer::clockName, "ERROR TO OPEN DEVS UNIX");
    }
    return true;
}

void sendManageMsg(u32 cmdType, u32 data0, u32 data1, u32 data2) {
    const manageMsg message{1, cmdType, data0, data1, data2};
    if (msgQSend(sgMsgQID, &message, sizeof message, NO_WAIT, 0) == ERROR) {
        dbInfo(DbOTH, DbERR, "sendManageMsg",
               "Send msg Error! cmdType = %d, sendID = %d, data0 = %d, data1 = %d, data2 = %d",
               static_cast<int>(cmdType), static_cast<int>(message.sendID), static_cast<int>(data0),
               static_cast<int>(data1), static_cast<int>(data2));
    }
}

void startUpHook(const char *const *) {}
void serverStartHook() {}
void ctlComLedFlash() {}
void getMacAddress() {}
int sendGoosePacket() {
    return 0;
}
int setGooseMCastAddr() {
    return 0;
}

} // namespace ied
