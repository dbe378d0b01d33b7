// Attributes of a data object: leaves, structures and arrays.
#include "DebugInfo/DebugInfo.h"
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/modelIndex.h"
#include "model-gen/c/sclFault.h"

#include <cstdio>
#include <cstring>

namespace ied {

namespace {

bool isStruct(const char *bType) {
    return bType != nullptr && std::strcmp(bType, "Struct") == 0;
}

// Code of a DA's or BDA's type, looked up once a record, but for unknown types: those are told for
// every node.
template <class T> u8 typeCode(T *attribute) {
    if (attribute->nodeType != 0) {
        return attribute->nodeType;
    }
    const u8 code = getNodeType(attribute->bType);
    if (code != TypeInner || isStruct(attribute->bType)) {
        attribute->nodeType = code;
    }
    return code;
}

// Type of a structure, found once a record; null for an unknown one.
template <class T> scl::DAType *structType(T *attribute) {
    if (attribute->structType == nullptr) {
        attribute->structType = modelGetDAType(attribute->type);
    }
    return attribute->structType;
}

bool hasElements(const scl::DA *da) {
    return isGiven(da->count) && *da->count != '0';
}

void fillStruct(GenNode *node, scl::DA *da, scl::Instances *instances) {
    node->level = LevelInner;
    if (hasElements(da)) {
        node->level = LevelLeaf;
        node->value = da->count;
        node->nodeType = isHarmonic(node->parent->nodeType) ? TypeArrayVec : TypeArray;
    }
    scl::DAType *type = structType(da);
    if (type == nullptr) {
        dbInfoRaw("%s : Get DAType error! \n", "modelGetDA");
        sclFault(da->line, "%s: there is no DAType with id \"%.60s\"", nodePath(node).c_str(),
                 shownText(da->type));
    }
    modelGetBDA(node, type, getSDI(instances, node->name), nullptr);
}

void fillLeaf(GenNode *node, const scl::DA *da, scl::Instances *instances) {
    node->value = da->val;
    if (hasElements(da)) {
        node->value = da->count;
        node->origType = node->nodeType;
        node->nodeType = TypeArray;
    }
    modelGetDAIAddr(da, node, instances);
}

} // namespace

void modelGetDA(GenNode *parent, scl::DA *da, scl::Instances *instances) {
    GenNode *node = makeChild(parent, da->name, da->fc, typeCode(da), LevelLeaf);
    refuseDepth(node, da->line);
    node->trgOps = getTrgOps(da);
    if (isStruct(da->bType)) {
        fillStruct(node, da, instances);
    } else {
        fillLeaf(node, da, instances);
    }
}

void modelGetBDA(GenNode *parent, scl::DAType *daType, scl::Instances *instances, const TypePath *types) {
    const TypePath inner{daType->id, types};
    for (scl::BDA &bda : records<&scl::BDA::link>(daType->bdas)) {
        GenNode *node = modelFillElem(parent, bda.name, nullptr, typeCode(&bda));
        refuseDepth(node, bda.line);
        node->fc = parent->fc;
        node->trgOps = parent->trgOps;
        if (!isStruct(bda.bType)) {
            modelGetBDAAddr(&bda, node, instances);
            continue;
        }
        node->level = LevelInner;
        scl::DAType *type = structType(&bda);
        if (type == nullptr) {
            std::fprintf(stderr, "%s : DAType for BDA not found!Exit\r\n", "modelGetBDA");
            sclFault(bda.line, "%s: there is no DAType with id \"%.60s\"", nodePath(node).c_str(),
                     shownText(bda.type));
        }
        if (isOpen(&inner, type->id)) {
            circleFault(&inner, type->id, nodePath(node), "DAType", bda.line);
        }
        modelGetBDA(node, type, getSDI(instances, node->name), &inner);
    }
}

} // namespace ied
