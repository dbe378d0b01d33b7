#include "basicInterface/cdcRecord.h"
#include "basicInterface/nodeTree.h"

namespace ied {

bool hasChild(const GenNode *node) {
    return node->child != nullptr && node->nodeType <= TypeInner;
}

bool hasSibling(const GenNode *node) {
    return node->sibling != nullptr;
}

GenNode *childNode(const GenNode *node) {
    return node == nullptr ? nullptr : node->child;
}

GenNode *siblingNode(const GenNode *node) {
    return node == nullptr ? nullptr : node->sibling;
}

GenNode *parentNode(const GenNode *node) {
    return node == nullptr ? nullptr : node->parent;
}

GenNode *getFirstLd() {
    return lds.child;
}

u16 getLdNum() {
    u16 count = 0;
    for (const GenNode *ld = getFirstLd(); ld != nullptr; ld = ld->sibling) {
        ++count;
    }
    return count;
}

GenNode *getFCDNode(const GenNode *node) {
    while (node != nullptr && node->level > LevelDO) {
        node = node->parent;
    }
    return node != nullptr && node->level == LevelDO ? const_cast<GenNode *>(node) : nullptr;
}

u16 getArrNum(const GenNode *node) {
    const GenNode *fcd = getFCDNode(node);
    const void *record = fcd == nullptr ? nullptr : nodeData(fcd);
    if (record == nullptr) {
        return 0;
    }
    switch (fcd->nodeType) {
    case CdcHWYE:
    case CdcHDEL:
        return loadShared(static_cast<const HWYE *>(record)->numHar);
    case CdcHMV:
        return loadShared(static_cast<const HMV *>(record)->numHar);
    case CdcHST:
        return loadShared(static_cast<const HST *>(record)->numPts);
    default:
        return 0;
    }
}

bool isEnum32(const GenNode *node) {
    const GenNode *fcd = getFCDNode(node);
    if (fcd == nullptr) {
        return false;
    }
    if (fcd->nodeType == CdcINS || fcd->nodeType == CdcINC) {
        return node->fc == FcST;
    }
    return fcd->nodeType == CdcING;
}

} // namespace ied
