// The document's sections, its Header, and the IED with its access point (IEC 61850-6 9.1 to 9.3).
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

constexpr AttrRow<scl::Header> headerAttrs[] = {
    {"id", &scl::Header::id},
    {"version", &scl::Header::version},
    {"revision", &scl::Header::revision},
    {"toolID", &scl::Header::toolID},
    {"nameStructure", &scl::Header::nameStructure},
};

constexpr AttrRow<scl::Hitem> hitemAttrs[] = {
    {"version", &scl::Hitem::version}, {"revision", &scl::Hitem::revision}, {"when", &scl::Hitem::when},
    {"who", &scl::Hitem::who},         {"what", &scl::Hitem::what},         {"why", &scl::Hitem::why},
};

constexpr AttrRow<scl::Ied> iedAttrs[] = {
    {"name", &scl::Ied::name},
    {"desc", &scl::Ied::desc},
    {"type", &scl::Ied::type},
    {"manufacturer", &scl::Ied::manufacturer},
    {"configVersion", &scl::Ied::configVersion},
};

constexpr AttrRow<scl::AccessPoint> accessPointAttrs[] = {
    {"name", &scl::AccessPoint::name},
    {"desc", &scl::AccessPoint::desc},
    {"router", &scl::AccessPoint::router},
    {"clock", &scl::AccessPoint::clock},
};

constexpr AttrRow<scl::AccessPoint> serverAttrs[] = {
    {"timeout", &scl::AccessPoint::timeout},
    {"desc", &scl::AccessPoint::serverDesc},
};

constexpr AttrRow<scl::AccessPoint> authenticationAttrs[] = {
    {"none", &scl::AccessPoint::none},
    {"password", &scl::AccessPoint::password},
    {"weak", &scl::AccessPoint::weak},
    {"strong", &scl::AccessPoint::strong},
    {"certificate", &scl::AccessPoint::certificate},
};

constexpr AttrRow<scl::AccessPoint> associationAttrs[] = {
    {"kind", &scl::AccessPoint::kind},       {"associationID", &scl::AccessPoint::associationID},
    {"iedName", &scl::AccessPoint::iedName}, {"ldInst", &scl::AccessPoint::ldInst},
    {"lnClass", &scl::AccessPoint::lnClass}, {"prefix", &scl::AccessPoint::prefix},
    {"lnInst", &scl::AccessPoint::lnInst},
};

void getAuthentication(tree_node *node, scl::AccessPoint *accessPoint) {
    readAttrs(node, accessPoint, authenticationAttrs, "getAP");
    if (node->attr == nullptr) {
        constexpr std::size_t noneTextSize = 8;
        accessPoint->none =
            static_cast<char *>(sclAlloc(noneTextSize, "getAP", "gMalloc for Auth failed!\r\n"));
        std::memcpy(accessPoint->none, "true", sizeof "true");
    }
}

void getLDevice(tree_node *node, scl::AccessPoint *) {
    getLDeviceList(node);
}

void getAssociation(tree_node *node, scl::AccessPoint *accessPoint) {
    readAttrs(node, accessPoint, associationAttrs, "getAP");
}

constexpr ChildRow<scl::AccessPoint> serverChildren[] = {
    {"Authentication", getAuthentication},
    {"LDevice", getLDevice},
    {"Association", getAssociation},
    {"Private", nullptr},
};

void getIedServices(tree_node *node, scl::Ied *ied) {
    getServices(node, &ied->services);
}
void getIedAP(tree_node *node, scl::Ied *ied) {
    getAP(node, &ied->accessPoint);
}
void getIedPrivate(tree_node *node, scl::Ied *) {
    getPrivate(node);
}

constexpr ChildRow<scl::Ied> iedChildren[] = {
    {"Services", getIedServices},
    {"AccessPoint", getIedAP},
    {"Private", getIedPrivate},
};

void getHeaderSection(tree_node *node, scl::Icd *) {
    getInfoHead(node);
}
void getCommSection(tree_node *node, scl::Icd *) {
    getComm(node);
}
void getIedSection(tree_node *node, scl::Icd *) {
    getIED(node);
}
void getTemplateSection(tree_node *node, scl::Icd *) {
    getTemplateList(node);
}

constexpr ChildRow<scl::Icd> sections[] = {
    {"Header", getHeaderSection}, {"Communication", getCommSection},
    {"IED", getIedSection},       {"DataTypeTemplates", getTemplateSection},
    {"Private", nullptr},
};

} // namespace

void getICD() {
    if (treeRoot != nullptr) {
        readChildren(treeRoot, &icd, sections, "getICD");
    }
    icd = {&Header, &Comm, &IED, &Templates};
}

void getInfoHead(tree_node *node) {
    if (node == nullptr || !isEl(node, "Header")) {
        return;
    }
    readAttrs(node, &Header, headerAttrs, "getInfoHead");
    tree_node *history = node->child;
    while (history != nullptr && !isEl(history, "History")) {
        history = history->sibling;
    }
    if (history == nullptr) {
        return;
    }
    for (tree_node *child = history->child; child != nullptr; child = child->sibling) {
        if (isEl(child, "Hitem")) {
            readAttrs(
                child,
                newRecord<&scl::Hitem::link>(&Header.history, "getInfoHead", "gMalloc for item failed!\r\n"),
                hitemAttrs, "getInfoHead");
        }
    }
}

void getIED(tree_node *node) {
    if (node == nullptr || !isEl(node, "IED")) {
        return;
    }
    IED.iedResources = &IedResources;
    IED.gooseSubscription = &GooseSubscriptionHead;
    readAttrs(node, &IED, iedAttrs, "getIED");
    readChildren(node, &IED, iedChildren, "getIED");
}

void getAP(tree_node *node, scl::AccessPoint *accessPoint) {
    readAttrs(node, accessPoint, accessPointAttrs, "getAP");
    const tree_node *server = node->child;
    if (server == nullptr) {
        return;
    }
    if (!isEl(server, "Server")) {
        unknownEl("getAP", server);
        return;
    }
    readAttrs(server, accessPoint, serverAttrs, "getAP");
    readChildren(server, accessPoint, serverChildren, "getAP");
}

} // namespace ied
