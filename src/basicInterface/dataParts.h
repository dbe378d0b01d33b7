// Parts of nested Data, from the heap or, where a pool is given, from that pool.
#pragma once

#include "asn1/mmsDataTypes.h"
#include "basicInterface/memory.h"
#include "basicInterface/memoryPool.h"

namespace ied {

// Makes `data` an empty structure or array.
inline void makeList(Data *data, u32 kind, MemoryPool *pool) {
    data->choiceId = kind;
    data->list = pool == nullptr ? asnListNewPtr() : asnListNew(sizeof(void *), pool);
}

// An array that nothing was read of is an empty one, never one without a list.
inline void completeArray(Data *data, MemoryPool *pool) {
    if (data->choiceId == Data::array && data->list == nullptr) {
        makeList(data, Data::array, pool);
    }
}

// A zeroed member at the end of the list.
inline Data *appendMember(AsnList *list, MemoryPool *pool) {
    auto *member = pool == nullptr ? MallocOf<Data>() : allocInMpOf<Data>(pool);
    *static_cast<Data **>(pool == nullptr ? AsnListAppend(list) : asnListAppend(list, pool)) = member;
    return member;
}

// Makes `data` a float.
void makeFloat(Data *data, f32 value, MemoryPool *pool);

inline bool isList(const Data *data) {
    return (data->choiceId == Data::structure || data->choiceId == Data::array) && data->list != nullptr;
}

// Position in a list that other tasks may be running through as well: the list's own cursor is theirs.
struct MemberCursor {
    AsnListElement *element;

    // Value at the position, or null at the end.
    Data *value() const { return element == nullptr ? nullptr : asnListValue<Data>(element); }
    // Moves on; the next value, or null at the end.
    Data *advance() {
        if (element != nullptr) {
            element = element->next;
        }
        return value();
    }
};

inline MemberCursor firstMember(const Data *data) {
    return {data->list->first};
}

} // namespace ied
