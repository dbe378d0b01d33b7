#include "model-gen/c/sclReader.h"

#include "DebugInfo/DebugInfo.h"

namespace ied {

void unknownAttr(const char *funcName, int index, const char *text, bool crLf) {
    if (crLf) {
        dbInfoRaw("%s : Unknown attr[%d] : %s\r\n", funcName, index, text);
    } else {
        dbInfoRaw("%s : Unknown attr[%d] : %s\n", funcName, index, text);
    }
}

void unknownEl(const char *funcName, const tree_node *node) {
    dbInfoRaw("%s : Unknown el : %s\n", funcName, node->el);
}

void ignoreMessage(const char *funcName, const tree_node *node) {
    if (firstAttrValue(node) != nullptr) {
        dbInfoRaw("%s : We ignore %s = %s ", funcName, node->attr[0], node->attr[1]);
    }
    if (node->data != nullptr) {
        dbInfoRaw("%s ", node->data);
    }
    dbInfoRaw("\n");
}

char *attrValue(const tree_node *node, const char *name) {
    for (char **attr = node->attr; attr != nullptr && attr[0] != nullptr; attr += 2) {
        if (sameText(attr[0], name)) {
            return attr[1];
        }
    }
    return nullptr;
}

} // namespace ied
