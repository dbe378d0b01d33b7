// Data type templates (IEC 61850-6 9.5): types by identifier, unresolved.
#include "DebugInfo/DebugInfo.h"
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

#include <cstdio>

namespace ied {

namespace {

constexpr AttrRow<scl::LNodeType> lNodeTypeAttrs[] = {
    {"id", &scl::LNodeType::id},
    {"lnClass", &scl::LNodeType::lnClass},
    {"desc", &scl::LNodeType::desc},
    {"iedType", &scl::LNodeType::iedType},
};

constexpr AttrRow<scl::DO> doAttrs[] = {
    {"name", &scl::DO::name},           {"type", &scl::DO::type}, {"accessControl", &scl::DO::accessControl},
    {"transient", &scl::DO::transient}, {"desc", &scl::DO::desc},
};

constexpr AttrRow<scl::DOType> doTypeAttrs[] = {
    {"id", &scl::DOType::id},
    {"iedType", &scl::DOType::iedType},
    {"cdc", &scl::DOType::cdc},
};

constexpr AttrRow<scl::SDO> sdoAttrs[] = {
    {"name", &scl::SDO::name},
    {"desc", &scl::SDO::desc},
    {"type", &scl::SDO::type},
};

constexpr AttrRow<scl::DA> daAttrs[] = {
    {"desc", &scl::DA::desc},   {"name", &scl::DA::name},       {"fc", &scl::DA::fc},
    {"dchg", &scl::DA::dchg},   {"qchg", &scl::DA::qchg},       {"dupd", &scl::DA::dupd},
    {"sAddr", &scl::DA::sAddr}, {"bType", &scl::DA::bType},     {"type", &scl::DA::type},
    {"count", &scl::DA::count}, {"valKind", &scl::DA::valKind},
};

constexpr AttrRow<scl::DAType> daTypeAttrs[] = {{"id", &scl::DAType::id}};

constexpr AttrRow<scl::BDA> bdaAttrs[] = {
    {"desc", &scl::BDA::desc},       {"name", &scl::BDA::name}, {"sAddr", &scl::BDA::sAddr},
    {"bType", &scl::BDA::bType},     {"type", &scl::BDA::type}, {"count", &scl::BDA::count},
    {"valKind", &scl::BDA::valKind},
};

constexpr AttrRow<scl::EnumType> enumTypeAttrs[] = {
    {"id", &scl::EnumType::id},
    {"desc", &scl::EnumType::desc},
};

constexpr AttrRow<scl::EnumVal> enumValAttrs[] = {{"ord", &scl::EnumVal::ord}};

constexpr std::size_t maxNameLength = 30; // of a component of an MMS name, so that it fits GenNode

// The name of a component of the model, or the end.
void checkName(const tree_node *node, const char *kind, const char *ownerId) {
    const char *name = attrValue(node, "name");
    if (name != nullptr && std::strlen(name) > maxNameLength) {
        sclFault(node->line, "%s name \"%.100s\" of type \"%.60s\" has %zu octets, %zu are the most", kind,
                 name, shownText(ownerId), std::strlen(name), maxNameLength);
    }
}

// True if the element is an entry with the attribute that the model cannot do without; else it is
// skipped with one message.
bool isEntry(const tree_node *node, const char *needed, const char *kind, const char *funcName) {
    if (isEl(node, "Private")) {
        ignoreMessage(funcName, node);
        return false;
    }
    if (attrValue(node, needed) == nullptr) {
        dbInfoRaw("%s : We ignore %s without %s : %s (line %u)\n", funcName, kind, needed,
                  shownText(attrValue(node, "name")), node->line);
        return false;
    }
    return true;
}

void getSDO(const tree_node *node, scl::DOType *type) {
    checkName(node, "SDO", type->id);
    auto *sdo = newRecord<&scl::SDO::link>(&type->sdos, "getDOType", "gMalloc for sdo failed!\r\n");
    sdo->line = node->line;
    readAttrs(node, sdo, sdoAttrs, "getDOType");
}

void getDA(const tree_node *node, scl::DOType *type) {
    if (!isEntry(node, "bType", "DA", "getDOType")) {
        return;
    }
    checkName(node, "DA", type->id);
    auto *da = newRecord<&scl::DA::link>(&type->das, "getDOType", "gMalloc for DA failed!\r\n");
    da->line = node->line;
    readAttrs(node, da, daAttrs, "getDOType");
    da->val = firstChildText(node);
}

struct Template {
    const char *name;
    void (*read)(tree_node *node);
};

constexpr Template templates[] = {
    {"LNodeType", getLNodeType},
    {"DOType", getDOType},
    {"DAType", getDAType},
    {"EnumType", getEnumType},
};

void getTemplate(tree_node *node) {
    for (const Template &row : templates) {
        if (isEl(node, row.name)) {
            row.read(node);
            return;
        }
    }
    if (isEl(node, "Private")) {
        ignoreMessage("getTemplateList", node);
    } else {
        unknownEl("getTemplateList", node);
    }
}

} // namespace

void getTemplateList(tree_node *node) {
    if (node == nullptr || !isEl(node, "DataTypeTemplates")) {
        return;
    }
    for (tree_node *child = node->child; child != nullptr; child = child->sibling) {
        getTemplate(child);
    }
    Templates = {&LNodeTypeHead, &DOTypeHead, &DATypeHead, &EnumTypeHead};
}

void getLNodeType(tree_node *node) {
    auto *type =
        newRecord<&scl::LNodeType::link>(&LNodeTypeHead, "getLNodeType", "gMalloc for lnode failed!\r\n");
    type->line = node->line;
    readAttrs(node, type, lNodeTypeAttrs, "getLNodeType");
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (!isEntry(child, "type", "DO", "getLNodeType")) {
            continue;
        }
        checkName(child, "DO", type->id);
        auto *dataObject =
            newRecord<&scl::DO::link>(&type->dos, "getLNodeType", "gMalloc for DO failed!\r\n");
        dataObject->line = child->line;
        readAttrs(child, dataObject, doAttrs, "getLNodeType");
    }
}

void getDOType(tree_node *node) {
    auto *type = newRecord<&scl::DOType::link>(&DOTypeHead, "getDOType", "gMalloc for DOtype failed!\r\n");
    type->line = node->line;
    readAttrs(node, type, doTypeAttrs, "getDOType");
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (isEl(child, "SDO")) {
            getSDO(child, type);
        } else if (isEl(child, "DA")) {
            getDA(child, type);
        } else {
            std::fprintf(stderr, "%s : Unkown type!\r\n", "getDOType");
        }
    }
}

void getDAType(tree_node *node) {
    auto *type = newRecord<&scl::DAType::link>(&DATypeHead, "getDAType", "gMalloc for da failed!\r\n");
    type->line = node->line;
    readAttrs(node, type, daTypeAttrs, "getDAType");
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (!isEntry(child, "bType", "BDA", "getDAType")) {
            continue;
        }
        checkName(child, "BDA", type->id);
        auto *bda = newRecord<&scl::BDA::link>(&type->bdas, "getDAType", "gMalloc for bda failed!\r\n");
        bda->line = child->line;
        readAttrs(child, bda, bdaAttrs, "getDAType");
    }
}

void getEnumType(tree_node *node) {
    auto *type =
        newRecord<&scl::EnumType::link>(&EnumTypeHead, "getEnumType", "gMalloc for Enum failed!\r\n");
    type->line = node->line;
    readAttrs(node, type, enumTypeAttrs, "getEnumType", true);
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (isEl(child, "Private")) {
            ignoreMessage("getEnumType", child);
            continue;
        }
        auto *value =
            newRecord<&scl::EnumVal::link>(&type->vals, "getEnumType", "gMalloc for val failed!\r\n");
        readAttrs(child, value, enumValAttrs, "getEnumType", true);
        value->text = child->data;
    }
}

} // namespace ied
