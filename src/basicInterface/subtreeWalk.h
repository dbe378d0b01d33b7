// The walk of a node's subtree that converts, checks, counts or describes what it finds: depth first,
// pre-order, without recursion, and with a bound on its depth.
#pragma once

#include "basicInterface/nodeTree.h"

namespace ied {

// What a visitor makes of a node.
enum class Visit : u8 {
    descend, // go on with its children
    leaf,    // done with it; its children, if any, are not visited
    stop,    // end the whole walk
};

// Whether a structure walk goes into `node`, `depth` levels below its start.
inline bool isWalkedInto(const GenNode *node, int depth) {
    return hasChild(node) && depth < maxWalkDepth;
}

// Walks the subtree of `start`. The visitor has
//   Visit visit(GenNode *node, int depth)              for every node, before its children, and
//   bool next(GenNode *node, int depth, bool climbed)  for every step to a sibling `node` at `depth`,
//                                                      made from a leaf or after climbing; false stops.
// Returns false if the visitor ended the walk.
template <class Visitor> bool walkSubtree(GenNode *start, Visitor &&visitor) {
    GenNode *node = start;
    for (int depth = 0;;) {
        switch (visitor.visit(node, depth)) {
        case Visit::stop:
            return false;
        case Visit::descend:
            node = node->child;
            ++depth;
            continue;
        case Visit::leaf:
            break;
        }
        bool climbed = false;
        while (depth > 0 && node->sibling == nullptr) {
            node = node->parent;
            --depth;
            climbed = true;
        }
        if (depth == 0) {
            return true;
        }
        node = node->sibling;
        if (!visitor.next(node, depth, climbed)) {
            return false;
        }
    }
}

} // namespace ied
