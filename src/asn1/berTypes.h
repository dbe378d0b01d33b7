// Values of the BER primitives (ISO 8825-1) as plain records, and the list that SEQUENCE OF values
// live in. A zeroed record is an absent value.
#pragma once

#include "basicInterface/memoryPool.h"
#include "platform/types.h"

namespace ied {

using AsnInt = i32;
using UAsnInt = u32;
using AsnBool = u8;
using AsnReal = f64;

// OCTET STRING and every string type. A decoded value has a NUL octet behind its octets that
// octetLen does not count.
struct AsnOcts {
    u32 octetLen;
    u8 *octs;
};

// BIT STRING; bit 0 of the string is the top bit of the first octet.
struct AsnBits {
    u32 bitLen;
    u8 *bits;
};

// OBJECT IDENTIFIER as its content octets: compared and copied, never taken apart.
struct AsnOid {
    u32 octetLen;
    u8 *octs;
};

// A value of a type that nobody registered: its whole tag, length and content.
struct AsnAny {
    const void *ai;
    AsnOcts *value;
};

struct AsnListElement {
    AsnListElement *prev;
    AsnListElement *next;
    // payload of dataSize octets behind this
};

// Doubly linked list with a cursor. In PDU records the payload is one pointer.
struct AsnList {
    AsnListElement *first;
    AsnListElement *last;
    AsnListElement *curr;
    u32 count;
    u32 dataSize;
};

AsnList *AsnListNew(u32 dataSize);
void AsnListInit(AsnList *list, u32 dataSize);
// Frees the elements and the head, not what the payloads point to. Null is allowed.
void AsnListFree(AsnList *list);
// Each returns the address of the new element's zeroed payload and makes it the current one; Add
// (behind the cursor) and Insert (before it) return null without a cursor.
void *AsnListAppend(AsnList *list);
void *AsnListPrepend(AsnList *list);
void *AsnListAdd(AsnList *list);
void *AsnListInsert(AsnList *list);
// Removes the current element; its successor becomes the current one.
void AsnListRemove(AsnList *list);
// Move the cursor and return the payload's address, or null at the end. Next without a cursor
// starts at the first element.
void *AsnListFirst(AsnList *list);
void *AsnListLast(AsnList *list);
void *AsnListNext(AsnList *list);
void *AsnListPrev(AsnList *list);
void *AsnListCurr(AsnList *list);
u32 AsnListCount(const AsnList *list);
// The same in a pool, for values that are built once and dropped with it.
AsnList *asnListNew(u32 dataSize, MemoryPool *pool);
void *asnListAppend(AsnList *list, MemoryPool *pool);

// Payload of an element.
inline void *asnListPayload(AsnListElement *element) {
    return element + 1;
}
inline const void *asnListPayload(const AsnListElement *element) {
    return element + 1;
}

// Value that an element of a pointer list points to.
template <class T> T *asnListValue(AsnListElement *element) {
    return *static_cast<T **>(asnListPayload(element));
}
template <class T> const T *asnListValue(const AsnListElement *element) {
    return *static_cast<T *const *>(asnListPayload(element));
}

// A new list of pointers.
inline AsnList *asnListNewPtr() {
    return AsnListNew(sizeof(void *));
}

// Appends `value` to a list of pointers; returns it.
template <class T> T *asnListPush(AsnList *list, T *value) {
    *static_cast<T **>(AsnListAppend(list)) = value;
    return value;
}

} // namespace ied
