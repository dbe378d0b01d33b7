// The communication section (IEC 61850-6 9.4). Its entries carry their kind in the value of their
// first attribute.
#include "model-gen/c/sclReader.h"
#include "model-gen/c/sclReaders.h"

namespace ied {

namespace {

constexpr const char *reader = "getCommList";

constexpr AttrRow<scl::SubNetwork> subNetworkAttrs[] = {
    {"name", &scl::SubNetwork::name},
    {"desc", &scl::SubNetwork::desc},
    {"type", &scl::SubNetwork::type},
};

using AP = scl::ConnectedAP;

constexpr AttrRow<AP> connectedAPAttrs[] = {
    {"iedName", &AP::iedName},
    {"apName", &AP::apName},
    {"desc", &AP::desc},
};

constexpr AttrRow<AP> addressKinds[] = {
    {"IP", &AP::ip},
    {"IP-SUBNET", &AP::ipSubnet},
    {"IP-GATEWAY", &AP::ipGateway},
    {"OSI-NSAP", &AP::osiNsap},
    {"OSI-TSEL", &AP::osiTsel},
    {"OSI-SSEL", &AP::osiSsel},
    {"OSI-PSEL", &AP::osiPsel},
    {"OSI-AP-Title", &AP::osiApTitle},
    {"OSI-AP-Invoke", &AP::osiApInvoke},
    {"OSI-AE-Qualifier", &AP::osiAeQualifier},
    {"OSI-AE-Invoke", &AP::osiAeInvoke},
};

constexpr AttrRow<AP> physConnKinds[] = {
    {"type", &AP::portType},
    {"Plug", &AP::plug},
};

constexpr AttrRow<scl::GSE> gseAttrs[] = {
    {"desc", &scl::GSE::desc},
    {"ldInst", &scl::GSE::ldInst},
    {"cbName", &scl::GSE::cbName},
};

constexpr AttrRow<scl::GSE> multicastKinds[] = {
    {"MAC-Address", &scl::GSE::mac},
    {"APPID", &scl::GSE::appID},
    {"VLAN-PRIORITY", &scl::GSE::vlanPriority},
    {"VLAN-ID", &scl::GSE::vlanID},
};

constexpr AttrRow<scl::TimeLimit> timeAttrs[] = {
    {"unit", &scl::TimeLimit::unit},
    {"multiplier", &scl::TimeLimit::multiplier},
};

// The texts of the children, each into the field of its kind.
template <class T>
void readKinds(const tree_node *node, T *record, std::type_identity_t<std::span<const AttrRow<T>>> kinds) {
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        const char *kind = firstAttrValue(child);
        const AttrRow<T> *found = nullptr;
        for (const AttrRow<T> &row : kinds) {
            if (kind != nullptr && sameText(kind, row.name)) {
                found = &row;
                break;
            }
        }
        if (found != nullptr) {
            record->*found->field = child->data;
        } else {
            unknownAttr(reader, 1, kind != nullptr ? kind : "");
        }
    }
}

void getAddress(tree_node *node, AP *ap) {
    readKinds(node, ap, addressKinds);
}

void getPhysConn(tree_node *node, AP *ap) {
    ap->connectionType = firstAttrValue(node);
    readKinds(node, ap, physConnKinds);
}

void getSMV(tree_node *node, AP *ap) {
    readAttrs(node, &ap->SMV, gseAttrs, reader);
    if (node->child != nullptr && isEl(node->child, "Address")) {
        readKinds(node->child, &ap->SMV, multicastKinds);
    }
}

void getTimeLimit(const tree_node *node, scl::TimeLimit *limit) {
    readAttrs(node, limit, timeAttrs, reader);
    limit->value = node->data;
}

void getGSE(tree_node *node, AP *ap) {
    auto *gse = newRecord<&scl::GSE::link>(&ap->gse, reader, "gMalloc for GSE failed!\r\n");
    readAttrs(node, gse, gseAttrs, reader);
    for (const tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (isEl(child, "Address")) {
            readKinds(child, gse, multicastKinds);
        } else if (isEl(child, "MinTime")) {
            getTimeLimit(child, &gse->MinTime);
        } else if (isEl(child, "MaxTime")) {
            getTimeLimit(child, &gse->MaxTime);
        }
    }
}

constexpr ChildRow<AP> connectedAPChildren[] = {
    {"Address", getAddress}, {"PhysConn", getPhysConn}, {"SMV", getSMV},
    {"GSE", getGSE},         {"Private", nullptr},
};

} // namespace

void getComm(tree_node *node) {
    if (node == nullptr || !isEl(node, "Communication")) {
        return;
    }
    for (tree_node *child = node->child; child != nullptr; child = child->sibling) {
        getCommList(child);
    }
    Comm.subNetworks = &SubNetworkHead;
}

void getCommList(tree_node *node) {
    if (node == nullptr || !isEl(node, "SubNetwork")) {
        return;
    }
    auto *network =
        newRecord<&scl::SubNetwork::link>(&SubNetworkHead, reader, "gMalloc for subnetwork failed!\r\n");
    readAttrs(node, network, subNetworkAttrs, reader);
    for (tree_node *child = node->child; child != nullptr; child = child->sibling) {
        if (isEl(child, "ConnectedAP")) {
            auto *ap =
                newRecord<&AP::link>(&network->connectedAPs, reader, "gMalloc for ConnectedAP failed!\r\n");
            readAttrs(child, ap, connectedAPAttrs, reader);
            readChildren(child, ap, connectedAPChildren, reader);
        } else if (isEl(child, "Text")) {
            network->text = child->data;
        } else if (isEl(child, "BitRate")) {
            network->bitRate = child->data;
        }
    }
}

} // namespace ied
