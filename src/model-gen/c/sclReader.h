// How every reader of the SCL file walks an element: attributes and children by a table each, what
// the table does not know is logged and skipped. Names are compared whole and case-sensitive.
#pragma once

#include "model-gen/c/documentTree.h"
#include "model-gen/c/list.h"
#include "model-gen/c/sclFault.h"

#include <cstring>
#include <span>

namespace ied {

// An attribute and the field that takes its text.
template <class T> struct AttrRow {
    const char *name;
    char *T::*field;
};

// A child element and its reader; a null reader ignores the child with a message.
template <class T> struct ChildRow {
    const char *name;
    void (*read)(tree_node *node, T *record);
};

// Messages of reader `funcName`.
void unknownAttr(const char *funcName, int index, const char *text, bool crLf = false);
void unknownEl(const char *funcName, const tree_node *node);
void ignoreMessage(const char *funcName, const tree_node *node);

inline bool sameText(const char *a, const char *b) {
    return std::strcmp(a, b) == 0;
}
inline bool isEl(const tree_node *node, const char *name) {
    return sameText(node->el, name);
}
// Value of the first attribute, whatever it is called; null without one.
inline char *firstAttrValue(const tree_node *node) {
    return node->attr != nullptr ? node->attr[1] : nullptr;
}
// Value of an attribute, or null.
char *attrValue(const tree_node *node, const char *name);
// Text of the first child, whatever it is called; null without one.
inline char *firstChildText(const tree_node *node) {
    return node->child != nullptr ? node->child->data : nullptr;
}

// The attributes of `node` into `record`; the index in a message is that of the name in `attr`.
template <class T>
void readAttrs(const tree_node *node, T *record, std::type_identity_t<std::span<const AttrRow<T>>> rows,
               const char *funcName, bool crLf = false) {
    for (int i = 0; node->attr != nullptr && node->attr[i] != nullptr; i += 2) {
        const AttrRow<T> *found = nullptr;
        for (const AttrRow<T> &row : rows) {
            if (sameText(node->attr[i], row.name)) {
                found = &row;
                break;
            }
        }
        if (found != nullptr) {
            record->*found->field = node->attr[i + 1];
        } else {
            unknownAttr(funcName, i, node->attr[i], crLf);
        }
    }
}

// The children of `node`, each by its row.
template <class T>
void readChildren(const tree_node *node, T *record, std::type_identity_t<std::span<const ChildRow<T>>> rows,
                  const char *funcName) {
    for (tree_node *child = node->child; child != nullptr; child = child->sibling) {
        const ChildRow<T> *found = nullptr;
        for (const ChildRow<T> &row : rows) {
            if (isEl(child, row.name)) {
                found = &row;
                break;
            }
        }
        if (found == nullptr) {
            unknownEl(funcName, child);
        } else if (found->read == nullptr) {
            ignoreMessage(funcName, child);
        } else {
            found->read(child, record);
        }
    }
}

// A zeroed record of the pool at the end of `list`.
template <auto link> auto *newRecord(TailedList *list, const char *funcName, const char *ifNull) {
    using T = typename MemberOwner<decltype(link)>::type;
    T *record = static_cast<T *>(sclAlloc(sizeof(T), funcName, ifNull));
    listAppend(&(record->*link), list);
    return record;
}

} // namespace ied
