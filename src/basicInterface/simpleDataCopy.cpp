#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"

#include <cstring>

namespace ied {

namespace {

u32 bitOctets(const AsnBits &bits) {
    return bits.bitLen / 8 + (bits.bitLen % 8 != 0);
}

void copyBits(Data *target, const Data *source, bool alloc) {
    if (source->bits == nullptr) {
        return;
    }
    const u32 length = bitOctets(*source->bits);
    if (alloc) {
        target->bits = MallocOf<AsnBits>();
        target->bits->bits = static_cast<u8 *>(Malloc(length + std::size_t{1}));
    }
    target->bits->bitLen = source->bits->bitLen;
    if (length != 0) {
        std::memcpy(target->bits->bits, source->bits->bits, length);
    }
}

void copyOcts(Data *target, const Data *source, bool alloc) {
    if (source->octs == nullptr) {
        return;
    }
    if (alloc) {
        target->octs = MallocOf<AsnOcts>();
        octsCopy(target->octs, source->octs);
        return;
    }
    target->octs->octetLen = source->octs->octetLen;
    if (source->octs->octetLen != 0) {
        std::memcpy(target->octs->octs, source->octs->octs, source->octs->octetLen);
    }
}

// Whether the parts of `target` may be overwritten by those of `source`.
bool isSameShape(const Data *target, const Data *source) {
    return target->choiceId == source->choiceId && target->octs != nullptr;
}

} // namespace

void copySimpleData(Data *target, const Data *source, bool alloc) {
    const bool hasParts = source->choiceId != Data::boolean && source->choiceId != Data::integer &&
                          source->choiceId != Data::unsignedInt;
    switch (source->choiceId) {
    case Data::boolean:
    case Data::bitString:
    case Data::integer:
    case Data::unsignedInt:
    case Data::floatingPoint:
    case Data::octetString:
    case Data::visibleString:
    case Data::binaryTime:
    case Data::mMSString:
    case Data::utcTime:
        break;
    default:
        target->choiceId = Data::boolean;
        target->bool_ = 0;
        return;
    }
    if (hasParts && !alloc && !isSameShape(target, source)) {
        return;
    }
    target->choiceId = source->choiceId;
    if (!hasParts) {
        target->uint_ = source->uint_;
    } else if (source->choiceId == Data::bitString) {
        copyBits(target, source, alloc);
    } else {
        copyOcts(target, source, alloc);
    }
}

} // namespace ied
