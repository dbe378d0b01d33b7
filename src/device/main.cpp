// Entry of the server process.
#include "device/externGlbCfg.h"
#include "device/externalInterface.h"
#include "device/hostOptions.h"
#include "device/peerInterface.h"
#include "platform/platform.h"
#include "proto-process/c/serverStart.h"

int main(int argc, char **argv) {
    ied::startUpHook(argv);
    ied::externGlbCfgInit();
    const int status = ied::readHostOptions(argc, argv, IED_VERSION);
    if (status >= 0) {
        return status;
    }
    ied::installEndSignals();
    ied::sysClkRateSet(ied::externGlbCfg.tickRate);
    ied::sweepSharedObjects(ied::peer::sharedNames);
    ied::taskMain();
}
