#include "basicInterface/itemText.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/dataSet.h"
#include "proto-process/c/services.h"

#include <cstring>

namespace ied {

namespace {

constexpr u32 pageOctets = 2600; // a page of names ends once their lengths, each plus 2, are above this

enum ObjectClass : AsnInt {
    namedVariable = 0,
    namedVariableList = 2,
    journal = 8,
    domain = 9
};

void appendName(AsnList *list, const char *name) {
    str2Octs(asnListPush(list, MallocOf<AsnOcts>()), name, true);
}

// Next node in pre-order, `depth` levels below the logical nodes; null behind the last one.
GenNode *nextNamed(GenNode *node, int *depth) {
    if (hasChild(node)) {
        ++*depth;
        return node->child;
    }
    while (*depth > 0 && node->sibling == nullptr) {
        node = node->parent;
        --*depth;
    }
    return node->sibling;
}

const AsnOcts *domainOf(const GetNameList_RequestChoice1 *scope) {
    return scope->choiceId == GetNameList_RequestChoice1::domainSpecific ? scope->domainSpecific_ : nullptr;
}

// Fills the list of one class. 1 complete, 2 cut short, 0 no such name.
int listClass(AsnList *list, const GetNameList_Request *request, const AsnOcts *domainName) {
    const AsnOcts *continueAfter = &request->continueAfter;
    const bool isDomainScope = request->objectScope->choiceId == GetNameList_RequestChoice1::domainSpecific;
    switch (request->extendedObjectClass->objectClass) {
    case namedVariable:
        return isDomainScope ? getItemList(list, domainName, continueAfter) : 1;
    case namedVariableList:
        if (isDomainScope) {
            const DataSetsRead held;
            getDsList(list, domainName, continueAfter);
        }
        return 1;
    case journal:
        return domainName != nullptr && getJournalList(list, domainName) ? 1 : 0;
    case domain:
        getLdList(list);
        return 1;
    default:
        return 1;
    }
}

} // namespace

void getLdList(AsnList *list) {
    for (const GenNode *ld = getFirstLd(); ld != nullptr; ld = ld->sibling) {
        appendName(list, ld->name);
    }
}

int getItemList(AsnList *list, const AsnOcts *domainName, const AsnOcts *continueAfter) {
    GenNode *node = nullptr;
    if (!searchLdByOcts(domainName, &node)) {
        return 0;
    }
    int depth = 0;
    if (octsView(continueAfter).empty()) {
        node = node->child;
    } else {
        u8 itemDepth = 0;
        if (!searchNodeByOcts(domainName, continueAfter, &node, &itemDepth)) {
            return 0;
        }
        depth = itemDepth;
        node = nextNamed(node, &depth);
    }
    u32 total = 0;
    while (node != nullptr) {
        char path[maxPathText];
        getAllPath(node, path, false);
        appendName(list, path);
        total += static_cast<u32>(std::strlen(path)) + 2;
        // A page never ends on a name that the lookups refuse as too deep: it could not be continued.
        const int items = depth + 1;
        node = nextNamed(node, &depth);
        if (total > pageOctets && items < externGlbCfg.maxDepth) {
            return 2;
        }
    }
    return 1;
}

i8 getNameListProc(const GetNameList_Request *request, GetNameList_Response *response) {
    if (request->extendedObjectClass == nullptr || request->objectScope == nullptr) {
        return serviceReject;
    }
    response->listOfIdentifier = asnListNewPtr();
    const int result = listClass(response->listOfIdentifier, request, domainOf(request->objectScope));
    if (result == 0) {
        return accessNonExistent;
    }
    if (result == 1) {
        response->moreFollows = MallocOf<AsnBool>(); // FALSE; left out it would be TRUE
    }
    return serviceSuccess;
}

} // namespace ied
