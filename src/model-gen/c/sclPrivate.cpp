// The maker's private sections of the IED element: local settings, an INI-shaped store, resource
// limits and GOOSE subscriptions.
#include "DebugInfo/DebugInfo.h"
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

constexpr AttrRow<scl::OrvConfig_t> configAttrs[] = {
    {"key", &scl::OrvConfig_t::key},
    {"val", &scl::OrvConfig_t::val},
    {"extend", &scl::OrvConfig_t::extend},
};

constexpr AttrRow<scl::ConfSection> sectionAttrs[] = {{"name", &scl::ConfSection::name}};

constexpr AttrRow<scl::VisualDI> visualDIAttrs[] = {
    {"format", &scl::VisualDI::format},
    {"num", &scl::VisualDI::num},
};

using Rx = decltype(scl::IedResources::GooseRx);
using Tx = decltype(scl::IedResources::GooseTx);
using Rp = decltype(scl::IedResources::Reports);

constexpr AttrRow<Rx> gooseRxAttrs[] = {{"max", &Rx::max}, {"uniqueAddr", &Rx::uniqueAddr}};
constexpr AttrRow<Tx> gooseTxAttrs[] = {{"minMaxTime", &Tx::minMaxTime}, {"maxBoolData", &Tx::maxBoolData}};
constexpr AttrRow<Rp> reportsAttrs[] = {{"maxDataSetSize", &Rp::maxDataSetSize}};

using Sub = scl::GooseSubscription;

constexpr AttrRow<Sub> subscriptionAttrs[] = {
    {"iedName", &Sub::iedName}, {"ldInst", &Sub::ldInst},       {"mAddr", &Sub::mAddr},
    {"APPID", &Sub::APPID},     {"VLAN-ID", &Sub::VLAN_ID},     {"VLAN-PRIORITY", &Sub::VLAN_PRIORITY},
    {"goCbRef", &Sub::goCbRef}, {"datSetRef", &Sub::datSetRef}, {"cbName", &Sub::cbName},
};

constexpr AttrRow<scl::GooseRxEntry> rxEntryAttrs[] = {
    {"tdlString", &scl::GooseRxEntry::tdlString},
    {"ref", &scl::GooseRxEntry::ref},
};

void getVisualDI(tree_node *node, scl::IedResources *resources) {
    readAttrs(node,
              newRecord<&scl::VisualDI::link>(&resources->visualDIs, "getIedResources",
                                              "gMalloc for VisualDI failed!\n"),
              visualDIAttrs, "getIedResources");
}

template <auto field, const auto &attrs> void getResource(tree_node *node, scl::IedResources *resources) {
    readAttrs(node, &(resources->*field), attrs, "getIedResources");
}

constexpr ChildRow<scl::IedResources> resourceChildren[] = {
    {"eorv:VisualDI", getVisualDI},
    {"eorv:GooseRx", getResource<&scl::IedResources::GooseRx, gooseRxAttrs>},
    {"eorv:GooseTx", getResource<&scl::IedResources::GooseTx, gooseTxAttrs>},
    {"eorv:Reports", getResource<&scl::IedResources::Reports, reportsAttrs>},
};

void resourcesSection(tree_node *node) {
    getIedResources(node, &IedResources);
}

void subscriptionSection(tree_node *node) {
    getGooseSubscription(node, &GooseSubscriptionHead);
}

void localConfSection(tree_node *node) {
    if (OrvPrivate.localConfRead != 0) {
        dbInfoRaw("%s : Double occure : ORV_LocalConf, ignore!\n", "getPrivate");
        return;
    }
    OrvPrivate.localConfRead = 1;
    getOrvPrivate(node, &OrvPrivate.localConf);
}

void iniConfSection(tree_node *node) {
    if (OrvPrivate.iniConfRead != 0) {
        dbInfoRaw("%s : Double occure : ORV_IniConf, ignore!\n", "getPrivate");
        return;
    }
    OrvPrivate.iniConfRead = 1;
    getIniConf(node, &OrvPrivate.iniConf);
}

struct Section {
    const char *kind;
    void (*read)(tree_node *node);
};

constexpr Section privateSections[] = {
    {"ORV_IedResources", resourcesSection},
    {"ORV_GooseSubscription", subscriptionSection},
    {"ORV_LocalConf", localConfSection},
    {"ORV_IniConf", iniConfSection},
};

} // namespace

void getPrivate(tree_node *node) {
    const char *kind = firstAttrValue(node);
    if (kind == nullptr) {
        return;
    }
    for (const Section &row : privateSections) {
        if (sameText(kind, row.kind)) {
            row.read(node);
            return;
        }
    }
    ignoreMessage("getPrivate", node);
}

void getOrvPrivate(tree_node *node, TailedList *list) {
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        readAttrs(
            child,
            newRecord<&scl::OrvConfig_t::link>(list, "getOrvPrivate", "gMalloc for OrvConfig_t failed!\n"),
            configAttrs, "getOrvPrivate");
    }
}

void getIniConf(tree_node *node, TailedList *store) {
    for (tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (attrValue(child, "name") == nullptr) {
            continue;
        }
        auto *section =
            newRecord<&scl::ConfSection::link>(store, "getIniConf", "gMalloc for OrvConfig_t failed!\n");
        readAttrs(child, section, sectionAttrs, "getIniConf");
        getOrvPrivate(child, &section->entries);
    }
}

void getIedResources(tree_node *node, scl::IedResources *resources) {
    readChildren(node, resources, resourceChildren, "getIedResources");
}

void getGooseSubscription(tree_node *node, TailedList *head) {
    constexpr const char *reader = "getGooseSubscription";
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        auto *subscription = newRecord<&Sub::link>(head, reader, "gMalloc for GooseSubscription failed!\n");
        readAttrs(child, subscription, subscriptionAttrs, reader);
        for (const tree_node *item = child->child; item != nullptr; item = item->sibling) {
            auto *entry = newRecord<&scl::GooseRxEntry::link>(&subscription->entries, reader,
                                                              "gMalloc for GooseRxEntry failed!\n");
            if (isEl(item, "eorv:GooseRxEntry")) {
                readAttrs(item, entry, rxEntryAttrs, reader);
            } else {
                unknownEl(reader, item);
            }
        }
    }
}

} // namespace ied
