#include "DebugInfo/DebugInfo.h"
#include "basicInterface/itemText.h"
#include "basicInterface/nodeTree.h"
#include "device/externGlbCfg.h"

#include <cstring>

namespace ied {

namespace {

// Whether the node has exactly that name. Octets behind a name's end are zero, so a text with a
// zero octet in it could only match by ending in one.
bool isNamed(const GenNode *node, std::string_view name) {
    const std::size_t length = name.size();
    return length < sizeof node->name && node->name[length] == '\0' &&
           (length == 0 || node->name[length - 1] != '\0') &&
           std::memcmp(node->name, name.data(), length) == 0;
}

GenNode *findAmong(GenNode *first, std::string_view name) {
    while (first != nullptr && !isNamed(first, name)) {
        first = first->sibling;
    }
    return first;
}

// The node that the item text names below the device; null if there is none. `function` is the
// caller's name in the message, `depth` receives the number of items minus one.
GenNode *findBelow(const GenNode *ld, std::string_view itemText, const char *function, u8 *depth) {
    if (!hasItems(itemText)) {
        return nullptr;
    }
    const std::size_t items = countItems(itemText);
    if (items >= externGlbCfg.maxDepth) {
        dbInfo(DbOTH, DbERR, function, "Too deep");
        return nullptr;
    }
    if (depth != nullptr) {
        *depth = static_cast<u8>(items - 1);
    }
    GenNode *found = nullptr;
    for (const GenNode *at = ld; itemText.data() != nullptr; at = found) {
        found = findAmong(at->child, takeItem(itemText));
        if (found == nullptr) {
            return nullptr;
        }
    }
    return found;
}

bool found(GenNode *result, GenNode **node) {
    if (result != nullptr) {
        *node = result;
    }
    return result != nullptr;
}

} // namespace

GenNode *childByName(const GenNode *node, const char *name) {
    return findAmong(node->child, name);
}

GenNode *childByOcts(const GenNode *node, const AsnOcts *name) {
    return findAmong(node->child, octsView(name));
}

bool searchLdByStr(const char *name, GenNode **node) {
    return found(findAmong(getFirstLd(), name), node);
}

bool searchLdByOcts(const AsnOcts *octs, GenNode **node) {
    return found(findAmong(getFirstLd(), octsView(octs)), node);
}

bool searchNodeByStr(const char *ldName, const char *itemText, GenNode **node) {
    GenNode *ld = nullptr;
    return searchLdByStr(ldName, &ld) && found(findBelow(ld, itemText, "searchNodeByStr", nullptr), node);
}

bool searchNodeByFullStr(const char *reference, GenNode **node) {
    const std::string_view text = reference;
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos || slash > 2U * externGlbCfg.maxItemLen) {
        return false;
    }
    GenNode *ld = findAmong(getFirstLd(), text.substr(0, slash));
    return ld != nullptr && found(findBelow(ld, text.substr(slash + 1), "searchNodeByStr", nullptr), node);
}

bool searchNodeByOcts(const AsnOcts *ldOcts, const AsnOcts *itemOcts, GenNode **node, u8 *depth) {
    GenNode *ld = nullptr;
    return searchLdByOcts(ldOcts, &ld) &&
           found(findBelow(ld, octsView(itemOcts), "searchNodeByOcts", depth), node);
}

bool searchNodeByObjName(const ObjectName *objectName, GenNode **node, const AlternateAccess *alternateAccess,
                         AccessSel *accessSel) {
    const ObjectNameSeq *name = domainSpecificParts(objectName);
    if (name == nullptr || !searchNodeByOcts(&name->domainId, &name->itemId, node, nullptr)) {
        return false;
    }
    if (alternateAccess == nullptr) {
        return true;
    }
    *accessSel = {.kind = accessSel->kind, .arrayNode = nullptr, .index = 0, .firstIndex = 0, .count = 0};
    return searchAlterContent(node, alternateAccess, accessSel);
}

void getAllPath(const GenNode *node, char *out, bool withLd) {
    *out = '\0';
    if (node == nullptr) {
        return;
    }
    const GenNode *chain[maxPathNodes];
    int count = 0;
    for (; node != nullptr && node->level != LevelRoot && count < maxPathNodes; node = node->parent) {
        chain[count++] = node;
    }
    char *end = out;
    const auto put = [&](const char *text) {
        const std::size_t room = static_cast<std::size_t>(out + maxPathText - 1 - end);
        const std::size_t length = strnlen(text, room);
        std::memcpy(end, text, length);
        end += length;
    };
    for (int i = count; i-- > 0;) {
        const bool isLd = chain[i]->level == LevelLD;
        if (isLd && !withLd) {
            continue;
        }
        put(chain[i]->name);
        if (isLd) {
            put("/");
        } else if (i > 0) {
            put("$");
        }
    }
    *end = '\0';
}

} // namespace ied
