#include "device/addressBinding.h"

#include "DebugInfo/DebugInfo.h"
#include "device/addressTree.h"
#include "device/modelWalk.h"

#include <cstdio>
#include <cstring>

namespace ied {

CBNum gCBNum;
DescNodes setPointDesc[setPointNum + 1];

bool searchTargetDescNode(const GenNode *doNode, const char *prefix, DescNodes *list) {
    if (doNode->fc != FcDC || doNode->level != LevelDO || !hasChild(doNode) || doNode->sAddr == nullptr) {
        return false;
    }
    if (prefix != nullptr && std::strncmp(doNode->sAddr, prefix, 4) != 0) {
        return false;
    }
    for (DescNodes *row = list; row->key[0] != '\0'; row++) {
        if (std::strcmp(row->key, doNode->sAddr) != 0) {
            continue;
        }
        GenNode *dNode = childByName(doNode, "d");
        GenNode *dUNode = childByName(doNode, "dU");
        if (dNode != nullptr) {
            row->dNode = dNode;
        }
        if (dUNode != nullptr) {
            row->dUNode = dUNode;
        }
        if (dNode != nullptr || dUNode != nullptr) {
            return true;
        }
    }
    return false;
}

void updateOtherFCD(GenNode *doNode) {
    const GenNode *ln = doNode;
    while (ln != nullptr && ln->level > LevelLN) {
        ln = ln->parent;
    }
    if (ln == nullptr) {
        return;
    }
    for (GenNode *fcNode = ln->child; fcNode != nullptr; fcNode = fcNode->sibling) {
        // A control block may bear the name of a data object.
        GenNode *other = childByName(fcNode, doNode->name);
        if (other == nullptr || other->level != LevelDO || other->data != nullptr ||
            other->nodeType != doNode->nodeType) {
            continue;
        }
        other->sAddr = doNode->sAddr;
        other->data = doNode->data;
        searchTargetDescNode(other, "ST.SP", setPointDesc);
    }
}

namespace {

u32 countComponents(GenNode *svDo) {
    u32 count = 0;
    GenNode *const end = nextNode(svDo, false);
    for (GenNode *node = svDo; node != end; node = nextNode(node, true)) {
        if (hasChild(node) && isComponent(node)) {
            count++;
        }
    }
    return count;
}

// A person must be able to find a wrong short address in the file: the text alone may stand there
// many times.
void explainSAddr(const GenNode *leaf, u8 cdc) {
    const u8 found = resolveSAddr(leaf->sAddr).nodeType;
    if (found == cdc || *leaf->sAddr == '\0') {
        return;
    }
    char path[maxPathText];
    getAllPath(leaf, path, true);
    if (found == TypeFailure) {
        std::fprintf(stderr, "sAddr \"%.100s\" at \"%s\": no such row in the address tree\n", leaf->sAddr,
                     path);
    } else {
        std::fprintf(stderr, "sAddr \"%.100s\" at \"%s\": the record is a %s, the data object a %s\n",
                     leaf->sAddr, path, cdcText(found), cdcText(cdc));
    }
}

void bindObject(GenNode *doNode, const GenNode *leaf) {
    explainSAddr(leaf, doNode->nodeType);
    doNode->data = getSAddr(leaf->sAddr, doNode->nodeType);
    if (doNode->data == nullptr) {
        return;
    }
    doNode->sAddr = leaf->sAddr;
    searchTargetDescNode(doNode, "ST.SP", setPointDesc);
    updateOtherFCD(doNode);
}

} // namespace

void sAddrInit() {
    for (u32 n = 0; n < setPointNum; n++) {
        std::snprintf(setPointDesc[n].key, sizeof setPointDesc[n].key, "ST.SP%u", n + 1);
    }
    u32 subsNum = 0;
    GenNode *doNode = nullptr;
    bool descend = true;
    for (GenNode *node = lds.child; node != nullptr; node = nextNode(node, descend)) {
        descend = true;
        if (node->level == LevelDO && hasChild(node)) {
            if (node->fc == FcSV) {
                subsNum += countComponents(node);
            }
            descend = node->data == nullptr && node->fc != FcSV;
            doNode = node;
        } else if (node->level == LevelLeaf && node->sAddr != nullptr && doNode != nullptr &&
                   doNode->data == nullptr) {
            bindObject(doNode, node);
        }
    }
    if (subsNum > 0xFFFF) {
        dbInfo(DbGEN, DbPAN, "sAddrInit", "The model has %u components with subEna, the limit is 65535!",
               subsNum);
    }
    gCBNum.subsNum = static_cast<u16>(subsNum);
}

} // namespace ied
