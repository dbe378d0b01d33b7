#include "asn1/ber.h"
#include "basicInterface/itemText.h"
#include "basicInterface/nodeTree.h"

namespace ied {

namespace {

// Whether the elements that the access names exist. The elements of a range end one before the last.
bool withinBounds(const AccessSel &sel, u16 elements) {
    const i64 last = i64{elements} - 1;
    return i64{sel.index} <= last && i64{sel.firstIndex} <= last &&
           i64{sel.firstIndex} + i64{sel.count} <= last;
}

bool toComponent(GenNode **node, const AsnOcts *name) {
    GenNode *child = childByOcts(*node, name);
    if (child == nullptr) {
        return false;
    }
    *node = child;
    return true;
}

// Takes an index, a range or all elements, if the node is an array and nothing was taken before.
bool takeElements(const GenNode *node, const AlternateAccessSelectionChoice &choice, AccessSel *sel) {
    if (!isArray(node) || sel->kind != AccessSel::none) {
        return false;
    }
    switch (choice.choiceId) {
    case AlternateAccessSelectionChoice::index:
        sel->kind = AccessSel::oneIndex;
        sel->index = choice.index_;
        return true;
    case AlternateAccessSelectionChoice::indexRange:
        if (choice.indexRange_ == nullptr) {
            return false;
        }
        sel->kind = AccessSel::range;
        sel->firstIndex = choice.indexRange_->lowIndex;
        sel->count = choice.indexRange_->numberOfElements;
        return true;
    case AlternateAccessSelectionChoice::allElements:
        sel->kind = AccessSel::allElements;
        return true;
    default:
        return false;
    }
}

bool narrow(GenNode **node, const AlternateAccess *access, AccessSel *sel, u32 nesting);

bool narrowNested(GenNode **node, const AlternateAccessSelectionSeq *nested, AccessSel *sel, u32 nesting) {
    if (nested == nullptr || nested->accessSelection == nullptr || nested->alternateAccess == nullptr) {
        return false;
    }
    const AlternateAccessSelectionSeqChoice &choice = *nested->accessSelection;
    if (choice.choiceId == AlternateAccessSelectionSeqChoice::component) {
        return toComponent(node, choice.component_) && narrow(node, nested->alternateAccess, sel, nesting);
    }
    if (!takeElements(*node, choice, sel)) {
        return false;
    }
    sel->arrayNode = *node;
    return narrow(&sel->arrayNode, nested->alternateAccess, sel, nesting);
}

// The selection that ends an access. One that fits no array leaves the node unnarrowed.
bool narrowFinal(GenNode **node, const AlternateAccessSelectionChoice *choice, AccessSel *sel) {
    if (choice == nullptr) {
        return false;
    }
    if (choice->choiceId == AlternateAccessSelectionChoice::component) {
        return toComponent(node, choice->component_);
    }
    takeElements(*node, *choice, sel);
    return true;
}

bool narrow(GenNode **node, const AlternateAccess *access, AccessSel *sel, u32 nesting) {
    if (nesting >= berDepthLimit || (*node)->nodeType > TypeArray || access->first == nullptr ||
        access->first != access->last) {
        return false;
    }
    const auto *entry = asnListValue<AlternateAccessChoice>(access->first);
    if (entry == nullptr || entry->choiceId != AlternateAccessChoice::unnamed || entry->unnamed_ == nullptr) {
        return false;
    }
    const AlternateAccessSelection &selection = *entry->unnamed_;
    const bool taken = selection.choiceId == AlternateAccessSelection::selectAccess
                           ? narrowFinal(node, selection.selectAccess_, sel)
                           : narrowNested(node, selection.selectAlternateAccess_, sel, nesting + 1);
    return taken && (sel->kind == AccessSel::none || withinBounds(*sel, getArrNum(*node)));
}

} // namespace

bool searchAlterContent(GenNode **node, const AlternateAccess *alternateAccess, AccessSel *accessSel) {
    return narrow(node, alternateAccess, accessSel, 0);
}

} // namespace ied
