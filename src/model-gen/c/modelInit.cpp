// The way from an SCL file to a model that is ready to be bound.
#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/documentTree.h"
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/modelIndex.h"
#include "model-gen/c/sclFault.h"
#include "model-gen/c/sclReaders.h"
#include "platform/platform.h"

#include <cstdio>

namespace ied {

namespace {

void readFile(const char *path) {
    parse(path);
    getICD();
    if (listEmpty(&LDeviceHead)) {
        sclFault(0, "no LDevice below SCL/IED/AccessPoint/Server: is this an SCL file of kind ICD?");
    }
}

void buildDevice(scl::LDevice *device) {
    GenNode *node = modelFillElem(&lds, ldName(device->inst).text, nullptr, TypeInner);
    node->level = LevelLD;
    modelGetLN0(node, device);
    modelGetLN(node, device);
    modelGetDS(device);
    modelGetRP(device);
    modelGetLCB(device);
}

void build(const char *path) {
    readFile(path);
    lds.nodeType = TypeInner;
    for (scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)) {
        buildDevice(&device);
    }
    _modelReorgnize(&lds);
    for (GenNode *device = lds.child; device != nullptr; device = device->sibling) {
        _modelReorgnize(device);
    }
    modelGetGooseMap();
    indexForget();
}

[[noreturn]] void poolFault(u32 poolSize) {
    std::fprintf(stderr, "No more space for model gen!\r\n");
    if (poolSize >= modelPoolMost) {
        sclFault(0, "the model does not fit its pool of %u bytes, and none can be larger", poolSize);
    }
    sclFault(0,
             "the model does not fit its pool of %u bytes; raise it with --model-pool, for example "
             "--model-pool %u",
             poolSize, poolSize < modelPoolMost / 2 ? 2 * poolSize : modelPoolMost);
}

} // namespace

void modelInit(const char *path, u32 poolSize) {
    mpAlloc(poolSize, &model_gen_pool);
    try {
        build(path);
    } catch (const PoolFull &) {
        poolFault(poolSize);
    }
}

} // namespace ied
