#include "DebugInfo/DebugInfo.h"
#include "basicInterface/memory.h"
#include "basicInterface/sharedText.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/simpleType.h"
#include "model-gen/c/modelName.h"

#include <cstdlib>

namespace ied {

namespace {

bool isText(Stored stored) {
    return stored == Stored::octets || stored == Stored::text;
}

// Whether a client may write the type at all, and `data` is of its kind with all its parts.
bool isOfKind(const Data *data, const SimpleType &type) {
    if (data->choiceId != type.kind || type.stored == Stored::none || type.stored == Stored::entryTime ||
        type.kind == Data::mMSString) {
        return false;
    }
    if (type.bits != 0) {
        return data->bits != nullptr;
    }
    return type.capacity == 0 || data->octs != nullptr;
}

// Places are objects of the leaf's stored type; signed and unsigned words may stand in for each other.
void storeNumber(void *place, u32 value, u8 width) {
    switch (width) {
    case 1:
        return storeShared(*static_cast<u8 *>(place), static_cast<u8>(value));
    case 2:
        return storeShared(*static_cast<u16 *>(place), static_cast<u16>(value));
    default:
        return storeShared(*static_cast<u32 *>(place), value);
    }
}

// The place that a text is written to. A configured text is a constant of its own length: the first
// write turns the leaf to a block of the type's full size, which lives as long as the node.
char *writablePlace(GenNode *node, void *place, const SimpleType &type) {
    if (place != loadShared(node->value)) {
        return static_cast<char *>(place);
    }
    auto *block = static_cast<char *>(Malloc(type.place));
    copySharedText(reinterpret_cast<u8 *>(block), static_cast<const char *>(place), type.maxLength);
    if (std::atomic_ref<void *>(node->data)
            .compare_exchange_strong(place, block, std::memory_order_acq_rel)) {
        return block;
    }
    Free(block);
    return static_cast<char *>(place); // another task was first: its block
}

bool storeValue(const Data *data, GenNode *node, void *place) {
    const SimpleType &type = simpleType(node->nodeType);
    switch (type.stored) {
    case Stored::boolean:
        if (data->bool_ > 1) {
            return false;
        }
        storeShared(*static_cast<u8 *>(place), data->bool_);
        return true;
    case Stored::doublePoint:
        storeShared(*static_cast<u8 *>(place), static_cast<u8>(bits2Int8(data->bits) >> 6));
        return true;
    case Stored::bits8:
        storeShared(*static_cast<u8 *>(place), bits2Int8(data->bits));
        return true;
    case Stored::bits16:
        storeShared(*static_cast<u16 *>(place), bits2Int16(data->bits));
        return true;
    case Stored::signedInt:
    case Stored::enumeration:
        storeNumber(place, static_cast<u32>(data->int_), storedWidth(node));
        return true;
    case Stored::unsignedInt:
        storeNumber(place, data->uint_, type.width);
        return true;
    case Stored::float32: {
        f32 value = loadShared(*static_cast<f32 *>(place));
        octs2Fp(&value, data->octs);
        storeShared(*static_cast<f32 *>(place), value);
        return true;
    }
    case Stored::octets:
    case Stored::text:
        return data->octs->octetLen <= type.maxLength &&
               octs2Str(writablePlace(node, place, type), data->octs, type.maxLength);
    case Stored::utcTime: {
        TimeStamp time = loadShared(*static_cast<TimeStamp *>(place));
        octs2Timestamp(&time, data->octs);
        storeShared(*static_cast<TimeStamp *>(place), time);
        return true;
    }
    default:
        return false;
    }
}

// Octets of the text that fit: not more than `room`, and no part of a character of UTF-8.
u32 fittingLength(const char *text, u32 room, const SimpleType &type) {
    u32 length = sharedTextLength(text, room);
    const auto continues = [text](u32 at) { return (static_cast<u8>(text[at]) & 0xC0) == 0x80; };
    if (type.kind == Data::mMSString && length == room) {
        while (length > 0 && continues(length)) {
            --length;
        }
    }
    return length;
}

bool configText(GenNode *node, void *place, const char *text, const SimpleType &type) {
    const u32 room = type.place - 1U; // the text's end stands behind it
    if (place == nullptr && type.kind != Data::octetString) {
        publish(node->data, const_cast<char *>(text));
        return true;
    }
    if (place == nullptr) {
        publish(node->data, place = Malloc(type.place));
    }
    if (place != text) {
        storeSharedText(static_cast<char *>(place), text, fittingLength(text, room, type));
    }
    return true;
}

} // namespace

bool setSimpleData(const Data *data, GenNode *node, i8 *error) {
    void *place = nodeData(node);
    if (place != nullptr && isOfKind(data, simpleType(node->nodeType)) && storeValue(data, node, place)) {
        return true;
    }
    *error = DaeTypeInconsistent;
    dbInfo(DbOTH, DbERR, "setSimpleData", "TYPE_INCONSISTENT1");
    return false;
}

bool checkSimpleData(const Data *data, const GenNode *node) {
    const SimpleType &type = simpleType(node->nodeType);
    if (!isOfKind(data, type)) {
        return false;
    }
    if (type.bits != 0) {
        return data->bits->bitLen == type.bits;
    }
    return type.maxLength == 0 || data->octs->octetLen <= type.maxLength;
}

bool setNodeConfig(GenNode *node, const char *text) {
    const SimpleType &type = simpleType(node->nodeType);
    const u8 width = storedWidth(node);
    void *place = nodeData(node);
    if (text == nullptr) {
        return false;
    }
    if (isText(type.stored)) {
        return configText(node, place, text, type);
    }
    if (width == 0) {
        return false;
    }
    if (place == nullptr) {
        publish(node->data, place = Malloc(width));
    }
    if (type.stored == Stored::float32) {
        storeShared(*static_cast<f32 *>(place), std::strtof(text, nullptr));
    } else {
        storeNumber(place, decimalU32(text), width);
    }
    return true;
}

} // namespace ied
