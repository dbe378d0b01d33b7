// Finding a record or a node by its name while the model is built. The first of a name wins, as a
// walk along the list would find it; long lists are indexed, so that building stays linear.
#pragma once

#include "model-gen/c/genNode.h"
#include "model-gen/c/sclRecords.h"

#include <cstring>
#include <string_view>

namespace ied {

// Entries that a search walks before it asks the index.
inline constexpr int indexAfter = 16;

// Comparisons of names since the start; what tests hold against the size of a file.
extern u64 nameComparisons;

// The index of one list, known by its address. `put` keeps the entry that came first.
bool indexHas(const void *list);
void indexOpen(const void *list);
void indexPut(const void *list, std::string_view name, void *entry);
void *indexGet(const void *list, std::string_view name);
// Forgets all indices; called when building is over.
void indexForget();

inline bool nameIs(const char *candidate, const char *name) {
    ++nameComparisons;
    return candidate != nullptr && *candidate == *name && std::strcmp(candidate, name) == 0;
}

// The first of a chain of entries whose name is `name`; null without one. `list` is what the index
// knows the chain by, `next` leads along it, `nameOf` may give null.
template <class T, class Next, class NameOf>
T *findIn(const void *list, T *first, Next next, NameOf nameOf, const char *name) {
    T *entry = first;
    for (int walked = 0; entry != nullptr && walked < indexAfter; ++walked, entry = next(entry)) {
        if (nameIs(nameOf(entry), name)) {
            return entry;
        }
    }
    if (entry == nullptr) {
        return nullptr;
    }
    if (!indexHas(list)) {
        indexOpen(list);
        for (entry = first; entry != nullptr; entry = next(entry)) {
            if (nameOf(entry) != nullptr) {
                indexPut(list, nameOf(entry), entry);
            }
        }
    }
    return static_cast<T *>(indexGet(list, name));
}

// The first record of `list` whose `field` is `name`; null without one, and for a null name.
template <auto link, auto field> auto *findNamed(TailedList &list, const char *name) {
    using T = typename MemberOwner<decltype(link)>::type;
    return name == nullptr ? nullptr
                           : findIn(
                                 &list, listRecord<T, link>(list.next),
                                 [](T *record) { return listRecord<T, link>((record->*link).next); },
                                 [](T *record) { return record->*field; }, name);
}

// The first child of that name; null without one.
GenNode *findChild(GenNode *parent, const char *name);
// modelFillElem for a parent whose children are searched: the index learns of the new child.
GenNode *makeChild(GenNode *parent, const char *name, const char *fc, u8 nodeType, u8 level);

} // namespace ied
