// The walk of the whole model that start-up makes, without recursion.
#pragma once

#include "basicInterface/nodeTree.h"

namespace ied {

// The node behind `node` in a walk of everything below the root: its first child when `descend`,
// else what follows its whole subtree. An array's children describe its elements and are no nodes
// of the walk. Null at the end.
inline GenNode *nextNode(GenNode *node, bool descend) {
    if (descend && hasChild(node)) {
        return node->child;
    }
    while (node != nullptr && !hasSibling(node)) {
        node = node->parent;
    }
    return node != nullptr ? node->sibling : nullptr;
}

// Whether a component of FC SV has a substitution record.
inline bool isComponent(const GenNode *node) {
    return childByName(node, "subEna") != nullptr;
}

} // namespace ied
