// From the file to the tree: devices, logical nodes, data objects with their SDOs.
#include "model-gen/c/modelBuild.h"

#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/modelIndex.h"
#include "model-gen/c/sclFault.h"

#include <cstring>
#include <utility>

namespace ied {

namespace {

bool deepNodeTold; // one line in the log is enough

// A data object, or one inside it, as people write it: it stands below several functional constraints.
std::string sdoPathText(const DoBuild *build, const SdoPath *path) {
    std::string text;
    for (; path != nullptr; path = path->up) {
        text = std::string(".") + shownText(path->sdo->name) + text;
    }
    return nodePath(build->ln) + "." + shownText(build->dataObject->name) + text;
}

int pathLength(const SdoPath *path) {
    int length = 0;
    for (; path != nullptr; path = path->up) {
        ++length;
    }
    return length;
}

[[noreturn]] void doTypeFault(const char *funcName, const std::string &of, const char *id, u32 line) {
    dbInfoRaw("%s : Get DOType error! \n", funcName);
    sclFault(line, "%s: there is no DOType with id \"%.60s\"", of.c_str(), shownText(id));
}

void expandDO(GenNode *lnNode, scl::LN *instance, scl::DO *dataObject) {
    DoBuild build{};
    build.ln = lnNode;
    build.dataObject = dataObject;
    build.type = modelGetDOType(dataObject->type);
    if (build.type == nullptr) {
        doTypeFault("modelGetLNAttr", sdoPathText(&build, nullptr), dataObject->type, dataObject->line);
    }
    build.instances = getDOI(instance, shownText(dataObject->name));
    const TypePath types{build.type->id, nullptr};
    for (scl::SDO &sdo : records<&scl::SDO::link>(build.type->sdos)) {
        const SdoPath path{&sdo, nullptr};
        modelGetSDO(&build, &path, getSDI(build.instances, shownText(sdo.name)), &types);
    }
    for (scl::DA &da : records<&scl::DA::link>(build.type->das)) {
        modelGetDA(modelGetDONode(&build, da.fc), &da, build.instances);
    }
}

// Line of the LDevice that holds `ln0`; its name may be another one's too.
u32 lineOfDevice(const scl::LN *ln0) {
    for (const scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)) {
        if (&device.LN0 == ln0) {
            return device.line;
        }
    }
    return 0;
}

GenNode *makeLN(GenNode *ldNode, scl::LN *ln) {
    return makeChild(ldNode, lnName(ln).text, nullptr, TypeInner, LevelLN);
}

} // namespace

bool isOpen(const TypePath *types, const char *id) {
    for (; types != nullptr; types = types->up) {
        if (types->id != nullptr && std::strcmp(types->id, id) == 0) {
            return true;
        }
    }
    return false;
}

void circleFault(const TypePath *types, const char *id, const std::string &of, const char *kind, u32 line) {
    std::string circle = id;
    do {
        circle = std::string(shownText(types->id)) + " -> " + circle;
    } while (std::strcmp(shownText(types->id), id) != 0 && (types = types->up) != nullptr);
    sclFault(line, "%s: %s \"%.60s\" refers to itself: %.400s", of.c_str(), kind, id, circle.c_str());
}

void refuseDepth(const GenNode *node, u32 line) {
    int depth = 0;
    for (const GenNode *at = node; at->level != LevelLN; at = at->parent) {
        ++depth;
    }
    if (depth > maxWalkDepth) {
        sclFault(line, "%s lies deeper than %d levels below its logical node", nodePath(node).c_str(),
                 maxWalkDepth);
    }
    const bool hasName = depth + 1 < externGlbCfg.maxDepth;
    if (!hasName && !std::exchange(deepNodeTold, true)) {
        dbInfo(DbGEN, DbERR, "refuseDepth",
               "%s and others have too many items for a name, they are read as parts only",
               nodePath(node).c_str());
    }
}

GenNode *modelGetFCNode(GenNode *ln, const char *fc) {
    const NodeName name = joinName({fc});
    GenNode *node = findChild(ln, name.text);
    return node != nullptr ? node : makeChild(ln, name.text, fc, TypeInner, LevelFC);
}

GenNode *modelGetDONode(DoBuild *build, const char *fc) {
    const u8 code = getFCType(fc);
    if (code != FcNone && build->fcNodes[code] != nullptr) {
        return build->fcNodes[code];
    }
    GenNode *fcNode = modelGetFCNode(build->ln, fc);
    const char *name = shownText(build->dataObject->name);
    GenNode *node = findChild(fcNode, name);
    if (node == nullptr) {
        if (!isCDC(build->type->cdc)) {
            faultDetail(build->type->line, "DOType \"%.60s\", used by %s, has %s%.60s%s",
                        shownText(build->type->id), sdoPathText(build, nullptr).c_str(),
                        build->type->cdc != nullptr ? "the unknown cdc \"" : "no cdc",
                        shownText(build->type->cdc), build->type->cdc != nullptr ? "\"" : "");
        }
        node = makeChild(fcNode, name, fc, getCDCType(build->type->cdc), LevelDO);
    }
    if (code != FcNone) {
        build->fcNodes[code] = node;
    }
    return node;
}

GenNode *modelGetSDONode(DoBuild *build, const char *fc, const SdoPath *path) {
    if (path == nullptr) {
        return modelGetDONode(build, fc);
    }
    GenNode *parent = modelGetSDONode(build, fc, path->up);
    const char *name = shownText(path->sdo->name);
    GenNode *node = findChild(parent, name);
    return node != nullptr ? node : makeChild(parent, name, fc, TypeInner, LevelInner);
}

bool modelGetSDO(DoBuild *build, const SdoPath *path, scl::Instances *instances, const TypePath *types) {
    scl::SDO *sdo = path->sdo;
    scl::DOType *type = modelGetDOType(sdo->type);
    if (type == nullptr) {
        doTypeFault("modelGetSDO", sdoPathText(build, path), sdo->type, sdo->line);
    }
    if (isOpen(types, type->id)) {
        circleFault(types, type->id, sdoPathText(build, path), "DOType", sdo->line);
    }
    constexpr int doDepth = 2; // of a data object below its logical node
    if (doDepth + pathLength(path) > maxWalkDepth) {
        sclFault(sdo->line, "%s lies deeper than %d levels below its logical node",
                 sdoPathText(build, path).c_str(), maxWalkDepth);
    }
    // Attributes fill the pool, but a tree of types without any would be walked without an end in sight.
    if (type->isBarren != 0) {
        return false;
    }
    bool hasAttributes = !listEmpty(&type->das);
    const TypePath inner{type->id, types};
    for (scl::SDO &nested : records<&scl::SDO::link>(type->sdos)) {
        const SdoPath further{&nested, path};
        if (modelGetSDO(build, &further, getSDI(instances, shownText(nested.name)), &inner)) {
            hasAttributes = true;
        }
    }
    for (scl::DA &da : records<&scl::DA::link>(type->das)) {
        modelGetDA(modelGetSDONode(build, da.fc, path), &da, instances);
    }
    type->isBarren = hasAttributes ? 0 : 1;
    return hasAttributes;
}

void modelGetLNAttr(GenNode *lnNode, scl::LN *ln) {
    scl::LNodeType *type = modelGetLNodeType(ln->lnType);
    if (type == nullptr) {
        dbInfoRaw("%s : Get LNodeType error! \n", "modelGetLNAttr");
        if (ln->line == 0) {
            sclFault(lineOfDevice(ln), "LDevice %s has no LN0", lnNode->parent->name);
        }
        sclFault(ln->line, "logical node %s: there is no LNodeType with id \"%.60s\"",
                 nodePath(lnNode).c_str(), shownText(ln->lnType));
    }
    scl::LN *instance = listEmpty(&type->dos) ? nullptr : getInstanceLN(lnNode);
    for (scl::DO &dataObject : records<&scl::DO::link>(type->dos)) {
        expandDO(lnNode, instance, &dataObject);
    }
    modelGetRPListALL(lnNode, ln);
    modelGetLCBListAll(lnNode, ln);
    reorgnizeLNFCList(lnNode);
}

void modelGetLN0Attr(GenNode *lnNode, scl::LDevice *device) {
    if (device->SettingControl.numOfSGs != nullptr) {
        modelGetSGCB(lnNode);
    }
    for (const scl::GSEControl &gse : records<&scl::GSEControl::link>(device->gse)) {
        if (gse.name != nullptr) {
            modelGetGoCB(lnNode, &gse);
        }
    }
    modelGetLNAttr(lnNode, &device->LN0);
}

void modelGetLN0(GenNode *ldNode, scl::LDevice *device) {
    modelGetLN0Attr(makeLN(ldNode, &device->LN0), device);
}

void modelGetLN(GenNode *ldNode, scl::LDevice *device) {
    for (scl::LN &ln : records<&scl::LN::link>(device->lns)) {
        modelGetLNAttr(makeLN(ldNode, &ln), &ln);
    }
}

} // namespace ied
