// Steps between nodes of the model, and the way from an MMS name or a reference text to a node and
// back. Nothing here changes the tree, so nothing here takes a lock.
#pragma once

#include "asn1/mmsDataTypes.h"
#include "model-gen/c/genNode.h"
#include "platform/shared.h"

namespace ied {

// Which part of an array a Read wants.
struct AccessSel {
    enum : u8 {
        none,
        allElements,
        oneIndex,
        range
    };
    u8 kind;
    GenNode *arrayNode; // component that the access went down to, or the array itself
    u32 index;
    u32 firstIndex;
    u32 count;
};

// A leaf's place, loaded once: it may be switched to a substitution record at any time.
inline void *nodeData(const GenNode *node) {
    return loadPublished(node->data);
}

// True if the node is walked into: it has children and is no array. `node` is not null.
bool hasChild(const GenNode *node);
bool hasSibling(const GenNode *node);
GenNode *childNode(const GenNode *node);
GenNode *siblingNode(const GenNode *node);
GenNode *parentNode(const GenNode *node);
GenNode *getFirstLd();
u16 getLdNum();
// The data object (level 4) at or above the node; null above that level.
GenNode *getFCDNode(const GenNode *node);
// Number of elements of the array under `node`, from its data record; 0 where there is none.
u16 getArrNum(const GenNode *node);
// Whether an Enum leaf is held in 32 bits.
bool isEnum32(const GenNode *node);
// The child of that exact name, or null. Elements of an array have their components as children.
GenNode *childByName(const GenNode *node, const char *name);
GenNode *childByOcts(const GenNode *node, const AsnOcts *name);

// The device of exactly that name.
bool searchLdByStr(const char *name, GenNode **node);
bool searchLdByOcts(const AsnOcts *octs, GenNode **node);
// By device and item text "LN$FC$DO...".
bool searchNodeByStr(const char *ldName, const char *itemText, GenNode **node);
// By reference "LD/LN$FC$DO...".
bool searchNodeByFullStr(const char *reference, GenNode **node);
// The parts of a domain-specific name; null for any other, and for null.
inline const ObjectNameSeq *domainSpecificParts(const ObjectName *name) {
    return name != nullptr && name->choiceId == ObjectName::domainSpecific ? name->domain_specific : nullptr;
}
// The name in an entry of a list of variables; null where the entry has another form of access.
inline const ObjectName *variableName(const VariableAccessSpecificationSeqOfSeq *entry) {
    const VariableSpecification *variable = entry == nullptr ? nullptr : entry->variableSpecification;
    const bool isName = variable != nullptr && variable->choiceId == VariableSpecification::name;
    return isName ? variable->name_ : nullptr;
}
// By MMS name; `alternateAccess` may be null, `accessSel` is filled from it (caller gives kind 0).
bool searchNodeByObjName(const ObjectName *objectName, GenNode **node, const AlternateAccess *alternateAccess,
                         AccessSel *accessSel);
// Follows an alternate access (ISO 9506-2 AlternateAccess) from `*node`, which may move down to a
// component, and notes the elements that it takes of an array. False if it leads nowhere.
bool searchAlterContent(GenNode **node, const AlternateAccess *alternateAccess, AccessSel *accessSel);
// `depth` receives the number of items minus one.
bool searchNodeByOcts(const AsnOcts *ldOcts, const AsnOcts *itemOcts, GenNode **node, u8 *depth);
// Writes "LD/LN$FC$DO..." or, without `withLd`, "LN$FC$DO..." into `out`, which has room for
// maxPathText octets. Empty for null or the root.
inline constexpr int maxPathText = 400;
inline constexpr int maxPathNodes = 16; // longest chain from a device to a leaf
void getAllPath(const GenNode *node, char *out, bool withLd);

// Domain, "/" and item with a terminator into `*out` (100 octets), or into a Malloc'ed block with
// `alloc`. False for any but a domain-specific name or a text above 100 octets.
bool objName2Ref(const ObjectName *objectName, bool alloc, char **out);
// The reverse. With `alloc` the parts are Malloc'ed, else the caller's are filled.
bool ref2ObjName(const char *text, bool alloc, ObjectName *objectName);
// A domain-specific name with heap parts.
void objectNameFromStr(ObjectName *objectName, const char *domainText, const char *itemText);
void objectNameCopy(ObjectName *target, const ObjectName *source);
bool objectNameCmp(const ObjectName *a, const ObjectName *b);

} // namespace ied
