#include "asn1/berTypes.h"
#include "basicInterface/memory.h"

namespace ied {

namespace {

std::size_t elementSize(const AsnList *list) {
    return sizeof(AsnListElement) + list->dataSize;
}

AsnListElement *newElement(const AsnList *list) {
    return static_cast<AsnListElement *>(Malloc(elementSize(list)));
}

// Links `element` between two neighbours, either of which may be missing, and makes it current.
void *link(AsnList *list, AsnListElement *prev, AsnListElement *element, AsnListElement *next) {
    element->prev = prev;
    element->next = next;
    (prev ? prev->next : list->first) = element;
    (next ? next->prev : list->last) = element;
    list->curr = element;
    ++list->count;
    return asnListPayload(element);
}

void *moveTo(AsnList *list, AsnListElement *element) {
    list->curr = element;
    return element ? asnListPayload(element) : nullptr;
}

} // namespace

void AsnListInit(AsnList *list, u32 dataSize) {
    *list = {};
    list->dataSize = dataSize;
}

AsnList *AsnListNew(u32 dataSize) {
    AsnList *list = MallocOf<AsnList>();
    list->dataSize = dataSize;
    return list;
}

void AsnListFree(AsnList *list) {
    if (!list) {
        return;
    }
    for (AsnListElement *element = list->first; element;) {
        AsnListElement *next = element->next;
        Free(element);
        element = next;
    }
    Free(list);
}

void *AsnListAppend(AsnList *list) {
    return link(list, list->last, newElement(list), nullptr);
}

void *AsnListPrepend(AsnList *list) {
    return link(list, nullptr, newElement(list), list->first);
}

void *AsnListAdd(AsnList *list) {
    AsnListElement *at = list->curr;
    return at ? link(list, at, newElement(list), at->next) : nullptr;
}

void *AsnListInsert(AsnList *list) {
    AsnListElement *at = list->curr;
    return at ? link(list, at->prev, newElement(list), at) : nullptr;
}

void AsnListRemove(AsnList *list) {
    AsnListElement *element = list->curr;
    if (!element) {
        return;
    }
    (element->prev ? element->prev->next : list->first) = element->next;
    (element->next ? element->next->prev : list->last) = element->prev;
    list->curr = element->next;
    --list->count;
    Free(element);
}

void *AsnListFirst(AsnList *list) {
    return moveTo(list, list->first);
}

void *AsnListLast(AsnList *list) {
    return moveTo(list, list->last);
}

void *AsnListNext(AsnList *list) {
    return moveTo(list, list->curr ? list->curr->next : list->first);
}

void *AsnListPrev(AsnList *list) {
    return moveTo(list, list->curr ? list->curr->prev : nullptr);
}

void *AsnListCurr(AsnList *list) {
    return list->curr ? asnListPayload(list->curr) : nullptr;
}

u32 AsnListCount(const AsnList *list) {
    return list->count;
}

AsnList *asnListNew(u32 dataSize, MemoryPool *pool) {
    AsnList *list = allocInMpOf<AsnList>(pool);
    list->dataSize = dataSize;
    return list;
}

void *asnListAppend(AsnList *list, MemoryPool *pool) {
    auto *element = static_cast<AsnListElement *>(allocInMp(static_cast<u32>(elementSize(list)), pool));
    return link(list, list->last, element, nullptr);
}

} // namespace ied
