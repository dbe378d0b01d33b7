// The order in which the services of the model come up.
#include "DebugInfo/DebugInfo.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "device/parameterRefresh.h"
#include "model-gen/c/modelConfig.h"
#include "model-gen/c/sclRecords.h"
#include "proto-process/c/controlModel.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/reportModel.h"
#include "proto-process/c/settingGroup.h"

namespace ied {

namespace {

// One more of `what`; more than a counter holds ends the process.
void count(u16 &counter, const char *what) {
    if (counter == 0xFFFF) {
        dbInfo(DbGEN, DbPAN, "cbNumInit", "More than 65535 %s in the SCL file!", what);
    }
    counter++;
}

struct StartStep {
    bool (*run)();
    DbCategory category;
    const char *success;
    const char *failure;
};

constexpr StartStep startSteps[] = {
    {modelDataInit, DbGEN, "Model data init success!", "Model data init failed!"},
    {[] { return locDataInit() == 0; }, DbUPD, "Local data init success!", ""},
    {initPreDefDS, DbDAT, "Predefined data set init success!", "Predefined data set init failed!"},
    {rptModelInit, DbRPT, "Report model init success!", "Report model init failed!"},
    {sgcbModelInit, DbSET, "SGCB model init success!", "SGCB model init failed!"},
    {getAllCtlObjinModel, DbCTL, "Get control object success!", "Get control object failed!"},
};

} // namespace

void cbNumInit() {
    gCBNum = {};
    for (const ReportCfg &report : records<&ReportCfg::link>(ReportCfgHead)) {
        count(gCBNum.rcbNum, "report control blocks");
        if (report.buffered != 0) {
            gCBNum.brcbNum++;
        }
    }
    for ([[maybe_unused]] const LCBCfg &log : records<&LCBCfg::link>(LCBHead)) {
        count(gCBNum.lcbNum, "log control blocks");
    }
    for (const scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)) {
        if (!listEmpty(&device.gse)) {
            count(gCBNum.gseNum, "logical devices with GSE control");
        }
        if (device.SettingControl.numOfSGs != nullptr) {
            count(gCBNum.sgcbNum, "logical devices with setting groups");
        }
    }
}

bool modelCfgInit(const char *icdPath) {
    modelInit(icdPath, hostModelOptions.modelPool);
    cbNumInit();
    for (const StartStep &step : startSteps) {
        if (!step.run()) {
            dbInfo(step.category, DbERR, "modelCfgInit", "%s", step.failure);
            return false;
        }
        noteFailure(nullptr); // what a step went on after is not why a later one fails
        dbInfo(step.category, DbCRI, "modelCfgInit", "%s", step.success);
    }
    return true;
}

} // namespace ied
