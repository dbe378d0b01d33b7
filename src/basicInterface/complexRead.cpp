#include "DebugInfo/DebugInfo.h"
#include "basicInterface/complexData.h"
#include "basicInterface/dataParts.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/subtreeWalk.h"
#include "device/externGlbCfg.h"

namespace ied {

SemId semModelData = nullptr;

namespace {

// The read side of the model's lock for one leaf; taken however long it lasts.
class LeafLock {
  public:
    explicit LeafLock(const char *function)
        : held(externGlbCfg.modelLockEnable != 0 && semModelData != nullptr) {
        while (held && semRTake(semModelData, static_cast<int>(externGlbCfg.modelLockTimeout)) != OK) {
            dbInfo(DbMOD, DbERR, function, "Fail to take semModelData R!");
        }
    }
    ~LeafLock() {
        if (held) {
            semGive(semModelData);
        }
    }
    LeafLock(const LeafLock &) = delete;
    LeafLock &operator=(const LeafLock &) = delete;

  private:
    bool held;
};

// Builds a structure tree beside the walk, with `fill` for each leaf.
template <class Fill> struct TreeBuilder {
    Data *current;
    MemoryPool *pool;
    Fill fill;
    AsnList *lists[maxWalkDepth] = {};

    Visit visit(GenNode *node, int depth) {
        if (!isWalkedInto(node, depth)) {
            fill(current, node);
            return Visit::leaf;
        }
        makeList(current, Data::structure, pool);
        lists[depth] = current->list;
        current = appendMember(current->list, pool);
        return Visit::descend;
    }

    bool next(GenNode *, int depth, bool) {
        current = appendMember(lists[depth - 1], pool);
        return true;
    }
};

template <class Fill> void buildTree(Data *data, GenNode *node, MemoryPool *pool, Fill fill) {
    walkSubtree(node, TreeBuilder<Fill>{data, pool, fill});
}

// Runs through a value made by allocNodeDataInMp beside the walk.
struct TreeRefresher {
    Data *current;
    MemberCursor cursors[maxWalkDepth] = {};

    Visit visit(GenNode *node, int depth) {
        if (isWalkedInto(node, depth) && current->choiceId == Data::structure) {
            cursors[depth] = firstMember(current);
            current = cursors[depth].value();
            return current == nullptr ? Visit::stop : Visit::descend;
        }
        const LeafLock lock("copyNodeData");
        if (node->nodeType == TypeArrayVec) {
            copyVecArrNode(node, 0, current);
        } else if (node->nodeType == TypeArray) {
            copyGenArrNode(node, current);
        } else {
            getSimpleData(current, node, false);
        }
        return Visit::leaf;
    }

    bool next(GenNode *, int depth, bool) {
        current = cursors[depth - 1].advance();
        return current != nullptr;
    }
};

} // namespace

void getNodeData(Data *data, GenNode *node, const AccessSel *accessSel) {
    buildTree(data, node, nullptr, [accessSel](Data *leafData, GenNode *leaf) {
        const LeafLock lock("getNodeData");
        if (accessSel != nullptr && leaf->nodeType == TypeArrayVec) {
            getArrVecData(leafData, leaf, accessSel);
            completeArray(leafData, nullptr);
        } else if (accessSel != nullptr && leaf->nodeType == TypeArray) {
            getArrGenData(leafData, leaf, accessSel, nullptr);
            completeArray(leafData, nullptr);
        } else {
            getSimpleData(leafData, leaf, true);
        }
    });
}

void allocNodeDataInMp(Data *data, GenNode *node, MemoryPool *pool) {
    buildTree(data, node, pool, [pool](Data *leafData, GenNode *leaf) {
        const LeafLock lock("allocNodeDataInMp");
        if (leaf->nodeType == TypeArrayVec) {
            allocArrVecDataInMp(leafData, leaf, pool);
        } else if (leaf->nodeType == TypeArray) {
            allocArrGenDataInMp(leafData, leaf, pool);
        } else {
            allocSimpleDataInMp(leafData, leaf, pool);
        }
        completeArray(leafData, pool);
    });
}

void copyNodeData(Data *data, GenNode *node) {
    walkSubtree(node, TreeRefresher{data});
}

} // namespace ied
