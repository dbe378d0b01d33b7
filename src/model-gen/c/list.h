// The intrusive list of every repeated SCL record. A list is one word, the head; a link is one word
// inside a record and holds the next record's link, or null. Appending walks the list unless the
// caller keeps a tail; the order is that of the document.
#pragma once

#include "platform/types.h"

namespace ied {

struct ListLink {
    ListLink *next;
};

using ListHead = ListLink;

inline void initListHead(ListHead *head) { head->next = nullptr; }
inline bool listEmpty(const ListHead *head) { return head->next == nullptr; }

// Inserts `link` at the head.
void listAdd(ListLink *link, ListHead *head);
// Walks to the end and appends `link`.
void listAddTail(ListLink *link, ListHead *head);
// Takes `link` out; a link that is not in the list leaves it untouched.
void listDel(ListLink *link, ListHead *head);
// Last link, or the head itself for an empty list.
ListLink *listLast(ListHead *head);

// Record that holds `link` as its member `member`; null for null.
template <class T, ListLink T::*member> T *listRecord(ListLink *link) {
    if (link == nullptr)
        return nullptr;
    const auto offset = reinterpret_cast<std::size_t>(&(static_cast<T *>(nullptr)->*member));
    return reinterpret_cast<T *>(reinterpret_cast<char *>(link) - offset);
}

} // namespace ied
