// Arrays of vectors: the harmonics of HWYE, HDEL and HMV (IEC 61850-7-3). The leaf's place is a
// pointer to pairs of magnitude and angle.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/cdcRecord.h"
#include "basicInterface/complexData.h"
#include "basicInterface/dataParts.h"
#include "basicInterface/simpleData.h"

#include <cstring>

namespace ied {

namespace {

enum Component : u8 {
    compMag = 1,
    compAng = 2
};

// Part of an element that an access went down to.
enum Location : u8 {
    locElement,
    locMag,
    locAng,
    locMagFloat,
    locAngFloat
};

// The pairs of an array whose memory may be missing: such elements read as zero.
struct Pairs {
    const Vector *first;

    f32 mag(u32 i) const { return first == nullptr ? 0 : loadShared(first[i].mag); }
    f32 ang(u32 i) const { return first == nullptr ? 0 : loadShared(first[i].ang); }
};

// `place` leads to the word that holds the pointer.
Pairs pairsAt(const void *place) {
    return {loadPublished(*static_cast<Vector *const *>(place))};
}

AsnOcts *newFloats(u32 count, MemoryPool *pool) {
    // An absent component is null, so that an array of none still has a block.
    const u32 records = count == 0 ? 1 : count;
    return pool == nullptr ? MallocArray<AsnOcts>(records) : allocInMpArray<AsnOcts>(pool, records);
}

void setFloat(AsnOcts *octs, f32 value, MemoryPool *pool) {
    if (pool == nullptr) {
        fp2Octs(octs, value, true);
    } else {
        fp2OctsAllocInMp(octs, value, pool);
    }
}

void makeVectors(Data *data, u32 count, u8 components, MemoryPool *pool) {
    data->choiceId = Data::arrayVec;
    data->vec = pool == nullptr ? MallocOf<DataArrayVec>() : allocInMpOf<DataArrayVec>(pool);
    data->vec->count = count;
    if ((components & compMag) != 0) {
        data->vec->mag = newFloats(count, pool);
    }
    if ((components & compAng) != 0) {
        data->vec->ang = newFloats(count, pool);
    }
}

// The compact form of elements `first` to `first` + `count` - 1.
void readVectors(Data *data, const GenNode *node, Pairs pairs, u32 first, u32 count, MemoryPool *pool) {
    makeVectors(data, count, getVectorComp(node), pool);
    for (u32 i = 0; i < count; ++i) {
        if (data->vec->mag != nullptr) {
            setFloat(&data->vec->mag[i], pairs.mag(first + i), pool);
        }
        if (data->vec->ang != nullptr) {
            setFloat(&data->vec->ang[i], pairs.ang(first + i), pool);
        }
    }
}

void makeFloatStructure(Data *data, f32 value) {
    makeList(data, Data::structure, nullptr);
    makeFloat(appendMember(data->list, nullptr), value, nullptr);
}

// One element, or the part of it at `location`.
void readElement(Data *data, u8 components, Pairs pairs, u32 index, u8 location) {
    switch (location) {
    case locMag:
        return makeFloatStructure(data, pairs.mag(index));
    case locAng:
        return makeFloatStructure(data, pairs.ang(index));
    case locMagFloat:
        return makeFloat(data, pairs.mag(index), nullptr);
    case locAngFloat:
        return makeFloat(data, pairs.ang(index), nullptr);
    default:
        break;
    }
    makeList(data, Data::structure, nullptr);
    if ((components & compMag) != 0) {
        makeFloatStructure(appendMember(data->list, nullptr), pairs.mag(index));
    }
    if ((components & compAng) != 0) {
        makeFloatStructure(appendMember(data->list, nullptr), pairs.ang(index));
    }
}

// A range of whole elements takes the compact form; of a part of them, an array of that part.
void readRange(Data *data, const GenNode *node, Pairs pairs, const AccessSel &sel, u8 location) {
    if (location == locElement) {
        return readVectors(data, node, pairs, sel.firstIndex, sel.count, nullptr);
    }
    makeList(data, Data::array, nullptr);
    for (u32 i = 0; i < sel.count; ++i) {
        readElement(appendMember(data->list, nullptr), 0, pairs, sel.firstIndex + i, location);
    }
}

} // namespace

void makeFloat(Data *data, f32 value, MemoryPool *pool) {
    data->choiceId = Data::floatingPoint;
    data->octs = pool == nullptr ? MallocOf<AsnOcts>() : allocInMpOf<AsnOcts>(pool);
    setFloat(data->octs, value, pool);
}

void fp2OctsAllocInMp(AsnOcts *octs, f32 value, MemoryPool *pool) {
    octs->octs = static_cast<u8 *>(allocInMp(5, pool));
    fp2Octs(octs, value, false);
}

u8 getVectorComp(const GenNode *node) {
    const bool mag = childByName(node, "mag") != nullptr;
    const bool ang = childByName(node, "ang") != nullptr;
    return static_cast<u8>((mag ? compMag : 0) + (ang ? compAng : 0));
}

u8 getVectorLoc(const GenNode *node, const GenNode *target) {
    u8 location = locElement;
    for (; target != nullptr && target != node; target = target->parent) {
        if (std::strcmp(target->name, "mag") == 0) {
            location = static_cast<u8>(location + locMag);
        } else if (std::strcmp(target->name, "ang") == 0 || std::strcmp(target->name, "f") == 0) {
            location = static_cast<u8>(location + locAng);
        }
    }
    return location;
}

void getArrVecData(Data *data, GenNode *node, const AccessSel *accessSel) {
    const void *place = nodeData(node);
    if (place == nullptr) {
        return;
    }
    const Pairs pairs = pairsAt(place);
    const u8 location = getVectorLoc(node, accessSel->arrayNode);
    switch (accessSel->kind) {
    case AccessSel::none:
    case AccessSel::allElements:
        return readVectors(data, node, pairs, 0, getArrNum(node), nullptr);
    case AccessSel::oneIndex:
        return readElement(data, getVectorComp(node), pairs, accessSel->index, location);
    case AccessSel::range:
        return readRange(data, node, pairs, *accessSel, location);
    default:
        return;
    }
}

void allocArrVecDataInMp(Data *data, GenNode *node, MemoryPool *pool) {
    readVectors(data, node, Pairs{nullptr}, 0, getArrNum(node), pool);
}

bool copyVecArrNode(GenNode *node, u32 first, Data *data) {
    const void *place = nodeData(node);
    if (place == nullptr) {
        dbInfo(DbOTH, DbINF, "copyVecArrNode", "Node addr is NULL");
        return false;
    }
    if (data->choiceId != Data::arrayVec) {
        return false;
    }
    const Pairs pairs = pairsAt(place);
    for (u32 i = first; i < data->vec->count; ++i) {
        if (data->vec->mag != nullptr) {
            fp2Octs(&data->vec->mag[i], pairs.mag(i), false);
        }
        if (data->vec->ang != nullptr) {
            fp2Octs(&data->vec->ang[i], pairs.ang(i), false);
        }
    }
    return true;
}

} // namespace ied
