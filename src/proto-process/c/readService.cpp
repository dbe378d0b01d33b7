#include "DebugInfo/DebugInfo.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/sharedText.h"
#include "basicInterface/simpleType.h"
#include "basicInterface/subtreeWalk.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/services.h"

namespace ied {

namespace {

// Estimated octets of an array of vectors: 11 a float of each component.
u32 vectorsEncLen(const GenNode *node, const AccessSel *sel) {
    const u8 components = getVectorComp(node);
    const u32 floats = (components & 1U) + (components >> 1U);
    const u8 kind = sel == nullptr ? u8{AccessSel::none} : sel->kind;
    const u32 count = kind == AccessSel::range      ? sel->count
                      : kind == AccessSel::oneIndex ? 1
                                                    : getArrNum(node);
    return 4 + 11 * floats * count;
}

u32 leafEncLen(const GenNode *node, const AccessSel *sel) {
    if (node->nodeType == TypeArrayVec) {
        return vectorsEncLen(node, sel);
    }
    const SimpleType &type = simpleType(node->nodeType);
    if (type.stored != Stored::text) {
        return type.estimate;
    }
    const auto *text = static_cast<const char *>(nodeData(node));
    return text == nullptr ? 0 : sharedTextLength(text, ~u32{0} >> 1U) + type.estimate;
}

struct LengthCounter {
    const AccessSel *sel;
    u32 total = 0;

    Visit visit(GenNode *node, int depth) {
        if (isWalkedInto(node, depth)) {
            total += 4;
            return Visit::descend;
        }
        total += leafEncLen(node, sel);
        return Visit::leaf;
    }
    bool next(GenNode *, int, bool) {
        total += 4;
        return true;
    }
};

Data *appendSuccess(AsnList *results) {
    auto *result = asnListPush(results, MallocOf<AccessResult>());
    result->choiceId = AccessResult::success;
    return result->success_ = MallocOf<Data>();
}

void appendFailure(AsnList *results) {
    auto *result = asnListPush(results, MallocOf<AccessResult>());
    result->choiceId = AccessResult::failure;
    result->failure_ = DaeObjectNonExistent;
}

// The nodes of a data set, copied so that its list need not outlive the lock; null if there is none.
struct MemberNodes {
    GenNode **nodes;
    u32 count;

    explicit MemberNodes(const ObjectName *name) : nodes(nullptr), count(0) {
        const DataSetsRead held;
        DataSet *dataSet = nullptr;
        if (!searchDsByObjName(name, &dataSet)) {
            return;
        }
        nodes = MallocArray<GenNode *>(dataSet->nodes->count + std::size_t{1});
        for (AsnListElement *element = dataSet->nodes->first; element != nullptr; element = element->next) {
            nodes[count++] = asnListValue<GenNode>(element);
        }
    }
    ~MemberNodes() { Free(nodes); }
    MemberNodes(const MemberNodes &) = delete;
    MemberNodes &operator=(const MemberNodes &) = delete;
};

void readDataSet(const ObjectName *name, AsnList *results) {
    const AccessSel wholeArrays = {
        .kind = AccessSel::allElements, .arrayNode = nullptr, .index = 0, .firstIndex = 0, .count = 0};
    const MemberNodes members(name);
    if (members.nodes == nullptr) {
        return appendFailure(results);
    }
    for (u32 i = 0; i < members.count; ++i) {
        getNodeData(appendSuccess(results), members.nodes[i], &wholeArrays);
    }
}

i8 readVariables(const AsnList *variables, AsnList *results, u8 clientId) {
    u32 total = 0;
    const AsnListElement *element = variables == nullptr ? nullptr : variables->first;
    for (; element != nullptr; element = element->next) {
        const auto *entry = asnListValue<VariableAccessSpecificationSeqOfSeq>(element);
        const ObjectName *name = variableName(entry);
        AccessSel sel = {};
        GenNode *node = nullptr;
        if (name == nullptr || !searchNodeByObjName(name, &node, entry->alternateAccess, &sel)) {
            dbInfo(DbOTH, DbCRI, "readProc", "Not find Node \"%s\"!", NameText(name).text);
            appendFailure(results);
            continue;
        }
        total += getNodeReadEncLen(node, &sel);
        dbInfo(DbOTH, DbINF, "readProc", "Current total enc len:%d", static_cast<int>(total));
        if (total > externGlbCfg.maxMmsPduSize) {
            dbInfo(DbOTH, DbINF, "readProc", "Read encode len exceed!");
            return accessDenied; // the answer would be too long
        }
        i8 error = DaeNone;
        readDataHandle(appendSuccess(results), node, &error, clientId, &sel);
    }
    return serviceSuccess;
}

} // namespace

u32 getNodeReadEncLen(GenNode *node, const AccessSel *sel) {
    LengthCounter counter{sel};
    walkSubtree(node, counter);
    return counter.total;
}

int readDataHandle(Data *dataOut, GenNode *node, i8 *errorOut, u8 clientId, AccessSel *sel) {
    if (node->fc == FcCO) {
        readCtlObj(dataOut, node, errorOut, clientId, sel);
    } else {
        getNodeData(dataOut, node, sel);
    }
    return 1;
}

i8 readProc(const Read_Request *request, Read_Response *response, u8 clientId) {
    const VariableAccessSpecification *variables = request->variableAccessSpecification;
    if (variables == nullptr) {
        return serviceReject;
    }
    response->listOfAccessResult = asnListNewPtr();
    if (variables->choiceId != VariableAccessSpecification::variableListName) {
        return readVariables(variables->listOfVariable_, response->listOfAccessResult, clientId);
    }
    readDataSet(variables->variableListName_, response->listOfAccessResult);
    return serviceSuccess;
}

} // namespace ied
