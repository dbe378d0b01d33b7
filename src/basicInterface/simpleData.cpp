#include "basicInterface/simpleData.h"

#include "basicInterface/memory.h"
#include "basicInterface/sharedText.h"
#include "basicInterface/simpleType.h"

namespace ied {

namespace {

// A word of `width` octets, sign-extended.
i32 loadSigned(const void *place, u8 width) {
    switch (width) {
    case 1:
        return loadShared(*static_cast<const i8 *>(place));
    case 2:
        return loadShared(*static_cast<const i16 *>(place));
    default:
        return loadShared(*static_cast<const i32 *>(place));
    }
}

u32 loadUnsigned(const void *place, u8 width) {
    switch (width) {
    case 1:
        return loadShared(*static_cast<const u8 *>(place));
    case 2:
        return loadShared(*static_cast<const u16 *>(place));
    default:
        return loadShared(*static_cast<const u32 *>(place));
    }
}

// The octets part of `data`, new or the one that stands there.
AsnOcts *octsPart(Data *data, bool alloc) {
    if (alloc) {
        data->octs = MallocOf<AsnOcts>();
    }
    return data->octs;
}

AsnBits *bitsPart(Data *data, bool alloc) {
    if (alloc) {
        data->bits = MallocOf<AsnBits>();
    }
    return data->bits;
}

void readBits8(Data *data, const SimpleType &type, u8 value, bool alloc) {
    int2Bits8(bitsPart(data, alloc), value, type.bits, alloc);
}

void readOctets(Data *data, const SimpleType &type, const void *place, bool alloc) {
    AsnOcts *octs = octsPart(data, alloc);
    if (alloc) {
        octs->octs = static_cast<u8 *>(Malloc(type.width));
    }
    octs->octetLen = type.width;
    static constexpr u8 zeros[8] = {};
    copySharedOctets(octs->octs, place == nullptr ? zeros : place, type.width);
}

// A part that is kept for reuse has no room but for its capacity; a new one takes the whole text.
void readText(Data *data, const SimpleType &type, const char *text, bool alloc) {
    AsnOcts *octs = octsPart(data, alloc);
    if (alloc && type.kind != Data::octetString) {
        str2Octs(octs, text, true);
    } else {
        str2OctsLen(text, type.capacity - 1U, alloc, octs);
    }
}

TimeStamp readTime(const void *place) {
    return place == nullptr ? TimeStamp{} : loadShared(*static_cast<const TimeStamp *>(place));
}

// Fills `data` from a place of that type; null reads as the type's zero.
void readValue(Data *data, const SimpleType &type, const void *place, u8 width, bool alloc) {
    data->choiceId = type.kind;
    switch (type.stored) {
    case Stored::boolean:
        data->bool_ = place == nullptr ? u8{0} : loadShared(*static_cast<const u8 *>(place));
        return;
    case Stored::doublePoint:
        return readBits8(data, type, place == nullptr ? u8{0} : static_cast<u8>(loadUnsigned(place, 1) << 6),
                         alloc);
    case Stored::bits8:
        return readBits8(data, type, place == nullptr ? u8{0} : static_cast<u8>(loadUnsigned(place, 1)),
                         alloc);
    case Stored::bits16:
        return int2Bits16(bitsPart(data, alloc),
                          place == nullptr ? u16{0} : static_cast<u16>(loadUnsigned(place, 2)), type.bits,
                          alloc);
    case Stored::signedInt:
    case Stored::enumeration:
        data->int_ = place == nullptr ? 0 : loadSigned(place, width);
        return;
    case Stored::unsignedInt:
        data->uint_ = place == nullptr ? 0 : loadUnsigned(place, width);
        return;
    case Stored::float32:
        return fp2Octs(octsPart(data, alloc),
                       place == nullptr ? 0 : loadShared(*static_cast<const f32 *>(place)), alloc);
    case Stored::octets:
        return readOctets(data, type, place, alloc);
    case Stored::text:
        return readText(data, type, static_cast<const char *>(place), alloc);
    case Stored::utcTime: {
        const TimeStamp time = readTime(place);
        return timestamp2Octs(octsPart(data, alloc), &time, alloc);
    }
    case Stored::entryTime: {
        const TimeStamp time = readTime(place);
        return timestamp2Bittime(octsPart(data, alloc), &time, alloc);
    }
    case Stored::none:
        data->bool_ = 0;
        return;
    }
}

void allocValue(Data *data, const SimpleType &type, MemoryPool *pool) {
    data->choiceId = type.kind;
    if (type.capacity == 0) {
        return;
    }
    if (type.bits != 0) {
        data->bits = allocInMpOf<AsnBits>(pool);
        data->bits->bits = static_cast<u8 *>(allocInMp(type.capacity, pool));
        data->bits->bitLen = type.bits;
    } else {
        data->octs = allocInMpOf<AsnOcts>(pool);
        data->octs->octs = static_cast<u8 *>(allocInMp(type.capacity, pool));
        data->octs->octetLen = type.capacity;
    }
}

} // namespace

u8 storedWidth(const GenNode *node) {
    const SimpleType &type = simpleType(node->nodeType);
    return type.stored == Stored::enumeration && isEnum32(node) ? u8{4} : type.width;
}

void getSimpleData(Data *data, const GenNode *node, bool alloc) {
    readValue(data, simpleType(node->nodeType), nodeData(node), storedWidth(node), alloc);
}

void allocSimpleDataInMp(Data *data, const GenNode *node, MemoryPool *pool) {
    allocValue(data, simpleType(node->nodeType), pool);
}

void getDataFromType(Data *data, u8 type, const void *address) {
    copyDataFromType(data, type, address, true, nullptr);
}

void copyDataFromType(Data *data, u8 type, const void *address, bool alloc, MemoryPool *pool) {
    const SimpleType &row = simpleType(type);
    if (alloc && pool != nullptr) {
        allocValue(data, row, pool);
    } else {
        readValue(data, row, address, row.width, alloc);
    }
}

void getSimpleType(TypeSpecification *typeDescription, const GenNode *node) {
    const SimpleType &type = simpleType(node->nodeType);
    typeDescription->choiceId = type.answer;
    switch (type.answer) {
    case TypeSpecification::boolean:
    case TypeSpecification::utcTime:
        return;
    case TypeSpecification::floatingPoint:
        typeDescription->floatingPoint_ = MallocOf<TypeSpecificationSeq2>();
        *typeDescription->floatingPoint_ = {32, 8};
        return;
    case TypeSpecification::binaryTime:
        typeDescription->withDate = static_cast<AsnBool>(type.size);
        return;
    default:
        // IEC 61850-8-1: Check, the two-bit string of the control services, is of variable length.
        typeDescription->size =
            type.stored == Stored::doublePoint && node->fc == FcCO ? -type.size : type.size;
    }
}

} // namespace ied
