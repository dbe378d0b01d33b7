// The order of the tree: functional constraints by their codes, devices and logical nodes by name.
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/sclFault.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace ied {

namespace {

// Makes `children` the children of `parent`, in that order; null entries are left out.
void relink(GenNode *parent, std::span<GenNode *const> children) {
    parent->child = parent->lastChild = nullptr;
    for (GenNode *child : children) {
        if (child != nullptr) {
            addAsChild(parent, child);
        }
    }
}

GenNode *copyToSE(GenNode *lnNode, GenNode *settingGroup) {
    auto *copy = static_cast<GenNode *>(
        sclAlloc(sizeof(GenNode), "reorgnizeLNFCList", "gMalloc for GenNode failed!\r\n"));
    modelTreeCopy(settingGroup, copy, lnNode, copySGtoSE, nullptr);
    std::strcpy(copy->name, fcText(FcSE));
    return copy;
}

} // namespace

void reorgnizeLNFCList(GenNode *lnNode) {
    GenNode *slots[FcEX + 1] = {};
    for (GenNode *group = lnNode->child; group != nullptr; group = group->sibling) {
        slots[group->fc] = group;
    }
    if (slots[FcSG] != nullptr) {
        slots[FcSE] = copyToSE(lnNode, slots[FcSG]);
    }
    relink(lnNode, slots);
}

void _modelReorgnize(GenNode *node) {
    u32 count = 0;
    for (GenNode *child = node->child; child != nullptr; child = child->sibling) {
        ++count;
    }
    auto *children = static_cast<GenNode **>(
        sclAlloc(count * sizeof(GenNode *), "_modelReorgnize", "gMalloc for GenNode failed!\r\n"));
    u32 filled = 0;
    for (GenNode *child = node->child; child != nullptr; child = child->sibling) {
        children[filled++] = child;
    }
    std::stable_sort(children, children + count,
                     [](const GenNode *a, const GenNode *b) { return std::strcmp(a->name, b->name) < 0; });
    relink(node, {children, count});
}

} // namespace ied
