// Arrays of simple elements, and of the cells of a histogram (IEC 61850-7-3 HST). The leaf's place
// is a pointer to the elements.
#include "basicInterface/cdcRecord.h"
#include "basicInterface/complexData.h"
#include "basicInterface/dataParts.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/simpleType.h"

#include <cstring>

namespace ied {

namespace {

constexpr const char *cellArray = "hstRangeC";

struct CellField {
    const char *name;
    f32 HstCell::*field;
};
constexpr CellField cellFields[] = {{"xStart", &HstCell::xStart},
                                    {"xEnd", &HstCell::xEnd},
                                    {"yStart", &HstCell::yStart},
                                    {"yEnd", &HstCell::yEnd}};

const CellField *cellField(const char *name) {
    for (const CellField &field : cellFields) {
        if (std::strcmp(name, field.name) == 0) {
            return &field;
        }
    }
    return nullptr;
}

// Base of the elements, or null where there are none yet.
const u8 *elementsOf(const GenNode *node) {
    const void *place = nodeData(node);
    return place == nullptr ? nullptr : loadPublished(*static_cast<const u8 *const *>(place));
}

u8 elementWidth(const GenNode *node) {
    return node->origType == TypeEnum && isEnum32(node) ? u8{4} : simpleType(node->origType).width;
}

f32 cellValue(const GenNode *node, u32 index, const CellField &field) {
    const auto *cells = reinterpret_cast<const HstCell *>(elementsOf(node));
    return cells == nullptr ? 0 : loadShared(cells[index].*field.field);
}

void putFloat(Data *data, f32 value, bool alloc, MemoryPool *pool) {
    if (alloc) {
        makeFloat(data, value, pool);
    } else if (data->choiceId == Data::floatingPoint) {
        fp2Octs(data->octs, value, false);
    }
}

AccessSel elementSelection(const GenNode *component, u32 index) {
    return {.kind = AccessSel::oneIndex,
            .arrayNode = const_cast<GenNode *>(component),
            .index = index,
            .firstIndex = 0,
            .count = 0};
}

// The elements `first` to `first` + `count` - 1 as an array.
void readElements(Data *data, GenNode *node, const GenNode *component, u32 first, u32 count,
                  MemoryPool *pool) {
    makeList(data, Data::array, pool);
    for (u32 i = 0; i < count; ++i) {
        const AccessSel element = elementSelection(component, first + i);
        Data *member = appendMember(data->list, pool);
        getSingleArrData(member, node, &element, true, pool);
        completeArray(member, pool);
    }
}

} // namespace

void getSingleCellData(Data *data, GenNode *node, const AccessSel *accessSel, bool alloc, MemoryPool *pool) {
    const GenNode *component = accessSel->arrayNode;
    if (component != nullptr && std::strcmp(component->name, cellArray) != 0) {
        if (const CellField *field = cellField(component->name)) {
            putFloat(data, cellValue(node, accessSel->index, *field), alloc, pool);
        }
        return;
    }
    if (alloc) {
        makeList(data, Data::structure, pool);
    } else if (!isList(data)) {
        return;
    }
    MemberCursor cursor = firstMember(data);
    for (const GenNode *child = node->child; child != nullptr; child = child->sibling) {
        const CellField *field = cellField(child->name);
        if (field == nullptr) {
            continue;
        }
        Data *member = alloc ? appendMember(data->list, pool) : cursor.value();
        if (member == nullptr) {
            return;
        }
        putFloat(member, cellValue(node, accessSel->index, *field), alloc, pool);
        cursor.advance();
    }
}

void getSingleArrData(Data *data, GenNode *node, const AccessSel *accessSel, bool alloc, MemoryPool *pool) {
    const SimpleType &type = simpleType(node->origType);
    switch (type.stored) {
    case Stored::boolean:
    case Stored::signedInt:
    case Stored::unsignedInt:
    case Stored::enumeration:
    case Stored::float32:
        break;
    default:
        if (node->origType == 0 && std::strcmp(node->name, cellArray) == 0) {
            getSingleCellData(data, node, accessSel, alloc, pool);
        }
        return;
    }
    const u8 width = elementWidth(node);
    const u8 *elements = elementsOf(node);
    const u8 *element = elements == nullptr ? nullptr : elements + std::size_t{accessSel->index} * width;
    if (type.stored == Stored::float32) {
        putFloat(data, element == nullptr ? 0 : loadShared(*reinterpret_cast<const f32 *>(element)), alloc,
                 pool);
    } else {
        getDataFromType(
            data, type.stored == Stored::enumeration && width == 4 ? u8{TypeInt32} : node->origType, element);
    }
}

void getArrGenData(Data *data, GenNode *node, const AccessSel *accessSel, MemoryPool *pool) {
    if (nodeData(node) == nullptr) {
        return;
    }
    switch (accessSel->kind) {
    case AccessSel::none:
    case AccessSel::allElements:
        return readElements(data, node, nullptr, 0, getArrNum(node), pool);
    case AccessSel::oneIndex:
        return getSingleArrData(data, node, accessSel, true, pool);
    case AccessSel::range:
        return readElements(data, node, accessSel->arrayNode, accessSel->firstIndex, accessSel->count, pool);
    default:
        return;
    }
}

void allocArrGenDataInMp(Data *data, GenNode *node, MemoryPool *pool) {
    readElements(data, node, nullptr, 0, getArrNum(node), pool);
}

bool copyGenArrNode(GenNode *node, Data *data) {
    if (nodeData(node) == nullptr || data->choiceId != Data::array || data->list == nullptr) {
        return false;
    }
    const u32 elements = getArrNum(node);
    MemberCursor cursor = firstMember(data);
    for (u32 i = 0; i < elements && cursor.value() != nullptr; ++i, cursor.advance()) {
        const AccessSel element = elementSelection(nullptr, i);
        getSingleArrData(cursor.value(), node, &element, false, nullptr);
    }
    return true;
}

} // namespace ied
