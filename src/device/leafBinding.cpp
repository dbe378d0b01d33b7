// Leaves of the model: their fields, substitution records, arrays and configured values.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/cdcRecord.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/simpleType.h"
#include "device/addressBinding.h"
#include "device/attributeTables.h"
#include "device/modelWalk.h"
#include "model-gen/c/modelName.h"
#include "proto-process/c/client.h"
#include "proto-process/c/substitution.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ied {

SubsObj *aSubsObj;

namespace {

constexpr u32 maxArrayNum = 0xFFFF; // element counts are held in 16 bits

// Whether the record of a harmonic data object is that of three phases, HWYE.
bool hasPhases(const GenNode *doNode) {
    return isHarmonic(doNode->nodeType) && doNode->nodeType != CdcHMV;
}

// Octets that a value of the type takes where it is stored.
u32 storedSize(u8 nodeType, bool wideEnum) {
    const SimpleType &type = simpleType(nodeType);
    return wideEnum && type.stored == Stored::enumeration ? sizeof(i32) : type.place;
}

u32 elementSize(const GenNode *leaf) {
    if (leaf->nodeType == TypeArrayVec) {
        return sizeof(Vector);
    }
    return leaf->origType == 0 ? sizeof(HstCell) : storedSize(leaf->origType, isEnum32(leaf));
}

// Whether a leaf of this type may live in the field: a file that gives an attribute another type
// must not make its value run into the fields behind it.
bool fitsField(const GenNode *leaf, const AttrRow &row) {
    if (isArray(leaf) || row.isArray) {
        return isArray(leaf) && row.isArray;
    }
    return storedSize(leaf->nodeType, isEnum32(leaf)) <= row.size;
}

// ------------------------------------------------------------------------------- substitution

// Component that a leaf of FC SV belongs to: the nearest node above it that has a subEna, or null.
const GenNode *componentOf(const GenNode *leaf) {
    const GenNode *node = leaf->parent;
    while (node->level > LevelDO && !isComponent(node)) {
        node = node->parent;
    }
    return isComponent(node) ? node : nullptr;
}

// Hands out the records of aSubsObj: one a component, in the order of the tree.
struct SubsCursor {
    const GenNode *component;
    u32 used;
};

void bindSubstitution(GenNode *leaf, const AttrRow &row, SubsCursor *cursor) {
    const GenNode *component = componentOf(leaf);
    if (component == nullptr) {
        return;
    }
    if (component != cursor->component) {
        if (cursor->used >= gCBNum.subsNum) {
            std::puts("SUBS NUM ERROR!");
            return;
        }
        cursor->component = component;
        cursor->used++;
    }
    leaf->data = reinterpret_cast<u8 *>(&aSubsObj[cursor->used - 1]) + row.offset;
}

void allocSubstitution() {
    if (gCBNum.subsNum == 0) {
        return;
    }
    aSubsObj = MallocArray<SubsObj>(gCBNum.subsNum);
    for (u32 i = 0; i < gCBNum.subsNum; i++) {
        aSubsObj[i].clientId = clientNone;
    }
}

// -------------------------------------------------------------------------------------- leaves

// A harmonic object without a short address keeps its arrays in a record of its own.
void givePrivateRecord(GenNode *doNode) {
    if (!isHarmonic(doNode->nodeType)) {
        return;
    }
    if (hasPhases(doNode)) {
        doNode->data = MallocOf<HWYE>();
    } else {
        doNode->data = MallocOf<HMV>();
    }
    updateOtherFCD(doNode);
}

void allocArray(GenNode *leaf, GenNode *doNode) {
    const i32 count = decimalI32(leaf->value);
    if (count <= 0) {
        return;
    }
    const u32 elements = std::min(static_cast<u32>(count), maxArrayNum);
    auto **elementsPlace = static_cast<void **>(leaf->data);
    if (*elementsPlace != nullptr) {
        return;
    }
    *elementsPlace = Malloc(std::size_t{elements} * elementSize(leaf));
    if (!hasPhases(doNode)) {
        return;
    }
    // All arrays of the record have numHar elements, so the shortest one decides.
    auto *record = static_cast<HWYE *>(doNode->data);
    if (record->numHar == 0 || elements < record->numHar) {
        record->numHar = static_cast<u16>(elements);
    }
}

// Points the leaf at its field. A leaf without one stays unbound.
void bindLeaf(GenNode *leaf, GenNode *doNode, SubsCursor *cursor) {
    if (doNode->data == nullptr || doNode->fc == FcRP || doNode->fc == FcBR) {
        return;
    }
    if (leaf->fc == FcDC && doNode->nodeType != CdcDPL && doNode->nodeType != CdcLPL) {
        return;
    }
    char path[maxPathText];
    getDAStr(leaf, path);
    const AttrRow *row = attrRow(doNode->nodeType, path, leaf->fc);
    if (row == nullptr) {
        return;
    }
    if (!fitsField(leaf, *row)) {
        getAllPath(leaf, path, true);
        dbInfo(DbGEN, DbERR, "modelDataInit", "Type of \"%s\" does not fit its attribute, not bound!", path);
        return;
    }
    if (leaf->fc == FcSV) {
        bindSubstitution(leaf, *row, cursor);
    } else {
        leaf->data = static_cast<u8 *>(doNode->data) + row->offset;
    }
    if (isArray(leaf) && leaf->value != nullptr && leaf->data != nullptr) {
        allocArray(leaf, doNode);
    }
}

void takeConfiguredValue(GenNode *leaf, const GenNode *doNode) {
    if (leaf->value == nullptr || isArray(leaf)) {
        return;
    }
    if (std::strcmp(leaf->name, "numHar") != 0) {
        setNodeConfig(leaf, leaf->value);
        return;
    }
    if (doNode->data != nullptr && isHarmonic(doNode->nodeType) &&
        decimalI32(leaf->value) > getArrNum(leaf)) {
        char path[maxPathText];
        getAllPath(leaf, path, true);
        dbInfo(DbGEN, DbERR, "modelDataInit", "%s is big than count!", path);
    }
}

} // namespace

int getDAOfs(u8 nodeType, const char *daPath, u8 fc) {
    const AttrRow *row = attrRow(nodeType, daPath, fc);
    return row != nullptr ? row->offset : -1;
}

void getDAStr(const GenNode *leaf, char *out) {
    const GenNode *chain[maxWalkDepth];
    int depth = 0;
    for (const GenNode *node = leaf; node != nullptr && node->level > LevelDO && depth < maxWalkDepth;
         node = node->parent) {
        chain[depth++] = node;
    }
    std::size_t length = 0;
    out[0] = '\0';
    while (depth-- > 0) {
        length += static_cast<std::size_t>(std::snprintf(out + length, maxPathText - length, "%s%s",
                                                         length > 0 ? "." : "", chain[depth]->name));
    }
}

bool modelDataInit() {
    sAddrInit();
    allocSubstitution();
    SubsCursor cursor{};
    GenNode *doNode = nullptr;
    for (GenNode *node = lds.child; node != nullptr; node = nextNode(node, true)) {
        if (node->level == LevelDO && hasChild(node)) {
            doNode = node;
        }
        if (node->level != LevelLeaf || doNode == nullptr) {
            continue;
        }
        if (node->nodeType == TypeArrayVec && doNode->data == nullptr) {
            givePrivateRecord(doNode);
        }
        bindLeaf(node, doNode, &cursor);
        takeConfiguredValue(node, doNode);
    }
    return true;
}

} // namespace ied
