#include "DebugInfo/DebugInfo.h"
#include "basicInterface/complexData.h"
#include "basicInterface/dataParts.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/subtreeWalk.h"

namespace ied {

namespace {

// A walk over a value beside its node: `descend` and `store` say what each does with it.
struct ValueWalk {
    const char *function;
    i8 *error;
    const Data *current;
    const Data *structures[maxWalkDepth] = {};
    MemberCursor cursors[maxWalkDepth] = {};

    bool fail(i8 code, const char *text) const {
        *error = code;
        dbInfo(DbOTH, DbERR, function, "%s", text);
        return false;
    }

    // Goes to the first member of a structure; false if there is none.
    bool enter(int depth) {
        if (current->choiceId != Data::structure || current->list == nullptr) {
            return false;
        }
        structures[depth] = current;
        cursors[depth] = firstMember(current);
        current = cursors[depth].value();
        return current != nullptr;
    }

    // Goes to the next member of the structure that `depth` lies in. `missing` is the message for a
    // structure that ends too early.
    bool step(int depth, const char *missing) {
        if (structures[depth - 1]->choiceId != Data::structure) {
            return fail(DaeObjectAttributeInconsistent, "OBJECT_ATTRIBUTE_INCONSISTENT1");
        }
        current = cursors[depth - 1].advance();
        return current != nullptr || fail(DaeObjectAttributeInconsistent, missing);
    }
};

struct Checker {
    ValueWalk at;

    bool isLeafSound(GenNode *node) const {
        if (isArray(node)) {
            return at.fail(DaeObjectAccessDenied, "array cannot write");
        }
        if (!checkSimpleData(at.current, node)) {
            return at.fail(DaeTypeInconsistent, "simple data check error");
        }
        if ((node->fc == FcSE || node->fc == FcSP) && !checkSetRange(at.current, node)) {
            return at.fail(DaeObjectValueInvalid, "simple set data range check error");
        }
        return true;
    }

    Visit visit(GenNode *node, int depth) {
        if (!isWalkedInto(node, depth)) {
            return isLeafSound(node) ? Visit::leaf : Visit::stop;
        }
        if (at.enter(depth)) {
            return Visit::descend;
        }
        at.fail(DaeObjectAttributeInconsistent, "Data struct inconsistent 2");
        return Visit::stop;
    }

    bool next(GenNode *, int depth, bool climbed) {
        return at.step(depth, climbed ? "Data struct inconsistent 1" : "data struct inconsistent 1");
    }
};

struct Writer {
    ValueWalk at;

    Visit visit(GenNode *node, int depth) {
        if (!isWalkedInto(node, depth)) {
            return setSimpleData(at.current, node, at.error) ? Visit::leaf : Visit::stop;
        }
        dbInfo(DbOTH, DbINF, at.function, "2set node:%s, type:%d", node->name,
               static_cast<int>(at.current->choiceId));
        if (at.enter(depth)) {
            return Visit::descend;
        }
        at.fail(DaeObjectAttributeInconsistent, "data struct inconsistent 2");
        return Visit::stop;
    }

    bool next(GenNode *, int depth, bool) { return at.step(depth, "data struct inconsistent 1"); }
};

} // namespace

bool checkNodeData(const Data *data, GenNode *node, i8 *error) {
    return walkSubtree(node, Checker{{"checkNodeData", error, data}});
}

bool writeNodeData(const Data *data, GenNode *node, i8 *error) {
    return walkSubtree(node, Writer{{"writeNodeData", error, data}});
}

} // namespace ied
