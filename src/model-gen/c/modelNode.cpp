// The nodes of the tree, their pool and their names.
#include "model-gen/c/documentTree.h"
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/modelIndex.h"
#include "model-gen/c/sclFault.h"
#include "model-gen/c/sclReaders.h"

#include <cstring>

namespace ied {

GenNode lds;
MemoryPool model_gen_pool;

void *gMalloc(u32 size) {
    return allocInMp(size, &model_gen_pool);
}

void addAsChild(GenNode *parent, GenNode *child) {
    child->parent = parent;
    child->sibling = nullptr;
    if (parent->child == nullptr) {
        parent->child = child;
    } else {
        parent->lastChild->sibling = child;
    }
    parent->lastChild = child;
}

GenNode *modelFillElem(GenNode *parent, const char *name, const char *fc, u8 nodeType) {
    auto *node =
        static_cast<GenNode *>(sclAlloc(sizeof(GenNode), "modelFillElem", "gMalloc for GenNode failed!\r\n"));
    if (name != nullptr) {
        std::memcpy(node->name, name, strnlen(name, sizeof node->name - 1));
    }
    if (fc != nullptr) {
        node->fc = getFCType(fc);
    }
    node->nodeType = nodeType;
    node->level = LevelLeaf;
    addAsChild(parent, node);
    return node;
}

std::string nodePath(const GenNode *node) {
    std::string path;
    for (; node != nullptr && node->level != LevelRoot; node = node->parent) {
        const char *separator = node->level == LevelLD ? "/" : "$";
        path = path.empty() ? std::string(node->name) : node->name + (separator + path);
    }
    return path;
}

NodeName ldName(const char *ldInst) {
    return joinName({IED.name, ldInst});
}

NodeName lnName(const scl::LN *ln) {
    return joinName({ln->prefix, ln->lnClass, ln->inst});
}

void modelForget() {
    lds = {};
    for (TailedList *list : {&PreDefDsHead, &ReportCfgHead, &LCBHead}) {
        *list = {};
    }
    sclForget();
    documentForget();
    indexForget();
    mpFree(&model_gen_pool);
}

} // namespace ied
