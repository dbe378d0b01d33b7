#include "asn1/ber.h"
#include "basicInterface/complexData.h"
#include "basicInterface/dataParts.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/subtreeWalk.h"

#include <algorithm>
#include <cstring>

namespace ied {

namespace {

void copyLeaf(Data *target, const Data *source, const GenNode *node, bool alloc) {
    if (isArray(node) && source->choiceId == Data::arrayVec) {
        copyVecArrData(target, source, node, alloc);
    } else if (isArray(node) && isList(source)) {
        copyGenListData(target, source, alloc);
    } else {
        copySimpleData(target, source, alloc);
    }
}

// Runs through two values of one node's shape beside the walk, or builds the target on the way.
struct Copier {
    Data *target;
    const Data *source;
    bool alloc;
    Data *targets[maxWalkDepth] = {}; // the structures that are being built
    MemberCursor targetCursors[maxWalkDepth] = {};
    MemberCursor sourceCursors[maxWalkDepth] = {};

    Visit visit(GenNode *node, int depth) {
        if (!isWalkedInto(node, depth) || source->choiceId != Data::structure || source->list == nullptr) {
            copyLeaf(target, source, node, alloc);
            return Visit::leaf;
        }
        sourceCursors[depth] = firstMember(source);
        if (alloc) {
            makeList(target, Data::structure, nullptr);
        } else if (isList(target)) {
            targetCursors[depth] = firstMember(target);
        } else {
            return Visit::stop;
        }
        targets[depth] = target;
        return take(depth, sourceCursors[depth].value(), targetCursors[depth].value()) ? Visit::descend
                                                                                       : Visit::stop;
    }

    bool next(GenNode *, int depth, bool) {
        return take(depth - 1, sourceCursors[depth - 1].advance(), targetCursors[depth - 1].advance());
    }

    // Goes on with a pair of members of the structure at `level`, whose target is made if need be.
    bool take(int level, const Data *from, Data *to) {
        if (from == nullptr) {
            return false;
        }
        source = from;
        target = alloc ? appendMember(targets[level]->list, nullptr) : to;
        return target != nullptr;
    }
};

void copyFloats(AsnOcts **target, const AsnOcts *source, u32 count, u32 targetCount, bool alloc) {
    if (source == nullptr || (!alloc && *target == nullptr)) {
        return;
    }
    if (alloc) {
        *target = MallocArray<AsnOcts>(std::max<u32>(count, 1));
    }
    for (u32 i = 0; i < std::min(count, targetCount); ++i) {
        AsnOcts &to = (*target)[i];
        // The octets of a kept value may lie in a pool, so they are overwritten where they are.
        if (alloc) {
            octsCopy(&to, &source[i]);
        } else if (to.octs != nullptr && source[i].octs != nullptr && to.octetLen == source[i].octetLen) {
            std::memcpy(to.octs, source[i].octs, to.octetLen);
        }
    }
}

bool copyList(Data *target, const Data *source, bool alloc, u32 nesting);

bool copyMember(Data *target, const Data *source, bool alloc, u32 nesting) {
    if (isList(source)) {
        return copyList(target, source, alloc, nesting + 1);
    }
    copySimpleData(target, source, alloc);
    return true;
}

bool copyList(Data *target, const Data *source, bool alloc, u32 nesting) {
    if (nesting >= berDepthLimit || (!alloc && !isList(target))) {
        return false;
    }
    if (alloc) {
        makeList(target, source->choiceId, nullptr);
    }
    MemberCursor to = firstMember(target);
    for (MemberCursor from = firstMember(source); from.value() != nullptr; from.advance(), to.advance()) {
        Data *member = alloc ? appendMember(target->list, nullptr) : to.value();
        if (member == nullptr || !copyMember(member, from.value(), alloc, nesting)) {
            return false;
        }
    }
    return true;
}

} // namespace

void copyData(Data *target, const Data *source, const GenNode *node) {
    walkSubtree(const_cast<GenNode *>(node), Copier{target, source, false});
}

void copyDataNew(Data *target, const Data *source, const GenNode *node) {
    walkSubtree(const_cast<GenNode *>(node), Copier{target, source, true});
}

void copyVecArrData(Data *target, const Data *source, const GenNode *, bool alloc) {
    if (source->choiceId != Data::arrayVec || (!alloc && target->choiceId != Data::arrayVec)) {
        return;
    }
    const DataArrayVec &from = *source->vec;
    if (alloc) {
        target->choiceId = Data::arrayVec;
        target->vec = MallocOf<DataArrayVec>();
        target->vec->count = from.count;
    }
    copyFloats(&target->vec->mag, from.mag, from.count, target->vec->count, alloc);
    copyFloats(&target->vec->ang, from.ang, from.count, target->vec->count, alloc);
}

bool copyGenListData(Data *target, const Data *source, bool alloc) {
    return target != nullptr && source != nullptr && isList(source) && copyList(target, source, alloc, 0);
}

} // namespace ied
