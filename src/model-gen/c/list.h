// The intrusive list of every repeated SCL record. A list is one word, the head; a link is one word
// inside a record and holds the next record's link, or null. Appending walks the list unless the
// caller keeps a tail; the order is that of the document.
#pragma once

#include "platform/types.h"

#include <bit>

namespace ied {

struct ListLink {
    ListLink *next;
};

using ListHead = ListLink;

// A head that remembers its last link, so that a list is built in linear time. Whoever takes
// records out with listDel appends with listAddTail from then on.
struct TailedList : ListHead {
    ListLink *last;
};

inline void initListHead(ListHead *head) {
    head->next = nullptr;
}
inline bool listEmpty(const ListHead *head) {
    return head->next == nullptr;
}

// Inserts `link` at the head.
void listAdd(ListLink *link, ListHead *head);
// Walks to the end and appends `link`.
void listAddTail(ListLink *link, ListHead *head);
// Appends `link` without a walk.
void listAppend(ListLink *link, TailedList *list);
// Takes `link` out; a link that is not in the list leaves it untouched.
void listDel(ListLink *link, ListHead *head);
// Last link, or the head itself for an empty list.
ListLink *listLast(ListHead *head);

// Record that holds `link` as its member `member`; null for null.
template <class T, ListLink T::*member> T *listRecord(ListLink *link) {
    static_assert(sizeof(member) == sizeof(std::ptrdiff_t), "a pointer to a member is its offset");
    if (link == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<T *>(reinterpret_cast<char *>(link) - std::bit_cast<std::ptrdiff_t>(member));
}

// The records of a list, for a range-based loop:
// for (scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)).
template <class T, ListLink T::*member> struct RecordRange {
    struct Iterator {
        ListLink *link;
        T &operator*() const { return *listRecord<T, member>(link); }
        Iterator &operator++() {
            link = link->next;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return link != other.link; }
    };
    ListLink *first;
    Iterator begin() const { return {first}; }
    Iterator end() const { return {nullptr}; }
};

template <class> struct MemberOwner;
template <class T> struct MemberOwner<ListLink T::*> { using type = T; };

template <auto member> auto records(const ListHead &head) {
    return RecordRange<typename MemberOwner<decltype(member)>::type, member>{head.next};
}

} // namespace ied
