// Copying and removing whole logical devices, with everything that the configuration lists hold of
// them, and the copier of subtrees behind it.
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/sclFault.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ied {

namespace {

constexpr std::size_t referenceRoom = 99; // characters of a rebased reference of a control block

NodeName deviceName(const char *inst) {
    NodeName name{};
    std::snprintf(name.text, sizeof name.text, "%s%s", IED.name != nullptr ? IED.name : "",
                  inst != nullptr ? inst : "");
    return name;
}

template <class T> T *poolNew() {
    return static_cast<T *>(sclAlloc(sizeof(T), "copyLogicDevice", "gMalloc for GenNode failed!\r\n"));
}

// `reference` from its first "/" on behind `device`, at most `room` characters; null for null.
char *rebase(const char *reference, const char *device, std::size_t room) {
    if (reference == nullptr) {
        return nullptr;
    }
    const char *slash = std::strchr(reference, '/');
    const std::string text = (std::string(device) + (slash != nullptr ? slash : "")).substr(0, room);
    return sclText(text.c_str(), "copyLogicDevice", "gMalloc for name failed!\r\n");
}

bool isOfDevice(const char *reference, const char *device) {
    const std::size_t length = std::strlen(device);
    return std::strncmp(reference, device, length) == 0 && reference[length] == '/';
}

// The records of a list that match, as they are before any copy is appended.
template <auto link, class Match, class Copy> void copyMatching(ListHead *head, Match match, Copy copy) {
    ListLink *last = listLast(head);
    if (last == head) {
        return;
    }
    for (auto &record : records<link>(*head)) {
        if (match(record)) {
            auto *made = copy(record);
            listAddTail(&(made->*link), head);
        }
        if (&(record.*link) == last) {
            return;
        }
    }
}

template <auto link, class Match> void removeMatching(ListHead *head, Match match) {
    using T = typename MemberOwner<decltype(link)>::type;
    for (ListLink *at = head->next; at != nullptr;) {
        ListLink *next = at->next;
        if (match(*listRecord<T, link>(at))) {
            listDel(at, head);
        }
        at = next;
    }
}

bool sameInst(const scl::LDevice &device, const char *inst) {
    return device.inst != nullptr && inst != nullptr && std::strcmp(device.inst, inst) == 0;
}

void copyDs(const char *source, const char *target) {
    copyMatching<&PreDefDs::link>(
        &PreDefDsHead, [&](const PreDefDs &ds) { return std::strcmp(ds.ldName, source) == 0; },
        [&](const PreDefDs &ds) {
            auto *copy = poolNew<PreDefDs>();
            copy->line = ds.line;
            copy->itemName = ds.itemName;
            copy->ldName = sclText(target, "copyDs", "gMalloc for domain failed!\r\n");
            for (const PreDefDsMember &member : records<&PreDefDsMember::link>(ds.members)) {
                auto *made = poolNew<PreDefDsMember>();
                made->name = rebase(member.name, target, std::string::npos);
                listAppend(&made->link, &copy->members);
            }
            return copy;
        });
}

char *copyReportId(char *rtpID, const char *targetInst) {
    if (rtpID == nullptr || std::strchr(rtpID, '/') == nullptr) {
        return rtpID;
    }
    return rebase(rtpID, targetInst, referenceRoom);
}

void copyRCB(const char *source, const char *target, const char *targetInst) {
    copyMatching<&ReportCfg::link>(
        &ReportCfgHead, [&](const ReportCfg &report) { return isOfDevice(report.name, source); },
        [&](const ReportCfg &report) {
            auto *copy = poolNew<ReportCfg>();
            *copy = report;
            copy->name = rebase(report.name, target, referenceRoom);
            copy->dsName = rebase(report.dsName, target, referenceRoom);
            copy->rtpID = copyReportId(report.rtpID, targetInst);
            return copy;
        });
}

void copyLCB(const char *source, const char *target, const char *targetInst) {
    copyMatching<&LCBCfg::link>(
        &LCBHead, [&](const LCBCfg &log) { return isOfDevice(log.name, source); },
        [&](const LCBCfg &log) {
            auto *copy = poolNew<LCBCfg>();
            *copy = log;
            copy->name = rebase(log.name, target, referenceRoom);
            copy->datSet = rebase(log.datSet, target, referenceRoom);
            copy->logName = sclText(targetInst, "copyLCB", "gMalloc for logName failed!\r\n");
            return copy;
        });
}

void copyOtherCB(const char *sourceInst, const char *targetInst) {
    copyMatching<&scl::LDevice::link>(
        &LDeviceHead, [&](const scl::LDevice &device) { return sameInst(device, sourceInst); },
        [&](const scl::LDevice &device) {
            auto *copy = poolNew<scl::LDevice>();
            copy->inst = sclText(targetInst, "copyOtherCB", "gMalloc for dev failed!\r\n");
            copy->gse = device.gse;
            copy->SettingControl = device.SettingControl;
            return copy;
        });
}

void copyWhole(GenNode *source, GenNode *target) {
    *target = *source;
    target->child = target->lastChild = target->sibling = nullptr;
}

void _copyNode(GenNode *source, GenNode *target, void *context) {
    copyWhole(source, target);
    if (source->value != nullptr) {
        target->value = nodeValueCopy(source, context);
    }
    if (source->sAddr != nullptr) {
        target->sAddr = nodeSaddrCopy(source, context);
    }
}

void insertBehind(GenNode *place, GenNode *node) {
    node->parent = place->parent;
    node->sibling = place->sibling;
    place->sibling = node;
    if (place->parent->lastChild == place) {
        place->parent->lastChild = node;
    }
}

void modelTreeRemove(GenNode *node) {
    GenNode *parent = node->parent;
    GenNode *before = nullptr;
    for (GenNode *at = parent->child; at != node; at = at->sibling) {
        before = at;
    }
    (before != nullptr ? before->sibling : parent->child) = node->sibling;
    if (parent->lastChild == node) {
        parent->lastChild = before;
    }
    node->parent = node->sibling = nullptr;
}

} // namespace

char *nodeValueCopy(GenNode *node, void *) {
    return node->value;
}

char *nodeSaddrCopy(GenNode *node, void *) {
    return node->sAddr;
}

void copySGtoSE(GenNode *source, GenNode *target, void *) {
    copyWhole(source, target);
    target->fc = FcSE;
}

void modelTreeCopy(GenNode *source, GenNode *target, GenNode *parent,
                   void (*copier)(GenNode *source, GenNode *target, void *context), void *context) {
    if (source == nullptr) {
        return;
    }
    copier(source, target, context);
    target->parent = parent;
    target->child = target->lastChild = target->sibling = nullptr;
    for (GenNode *child = source->child; child != nullptr; child = child->sibling) {
        auto *copy = static_cast<GenNode *>(
            sclAlloc(sizeof(GenNode), "modelTreeCopy", "gMalloc for GenNode failed!\r\n"));
        modelTreeCopy(child, copy, target, copier, context);
        addAsChild(target, copy);
    }
}

GenNode *searchLogicDevice(const char *inst) {
    const NodeName name = deviceName(inst);
    for (GenNode *device = lds.child; device != nullptr; device = device->sibling) {
        if (std::strcmp(device->name, name.text) == 0) {
            return device;
        }
    }
    return nullptr;
}

GenNode *copyLogicDevice(const char *sourceInst, const char *targetInst) {
    GenNode *source = searchLogicDevice(sourceInst);
    if (source == nullptr || searchLogicDevice(targetInst) != nullptr) {
        std::fprintf(stderr, "%s: there is no LD: %s!", "copyLogicDevice", sourceInst);
        return nullptr;
    }
    const NodeName sourceName = deviceName(sourceInst);
    const NodeName targetName = deviceName(targetInst);
    auto *copy = poolNew<GenNode>();
    modelTreeCopy(source, copy, source->parent, _copyNode, const_cast<char *>(targetInst));
    std::memcpy(copy->name, targetName.text, sizeof copy->name);
    insertBehind(source, copy);
    copyDs(sourceName.text, targetName.text);
    copyRCB(sourceName.text, targetName.text, targetInst);
    copyLCB(sourceName.text, targetName.text, targetInst);
    copyOtherCB(sourceInst, targetInst);
    _modelReorgnize(&lds);
    return copy;
}

void removeLogicDevice(const char *inst) {
    GenNode *node = searchLogicDevice(inst);
    if (node == nullptr) {
        std::fprintf(stderr, "%s: there is no LD: %s!", "removeLogicDevice", inst);
        return;
    }
    const NodeName name = deviceName(inst);
    modelTreeRemove(node);
    removeMatching<&PreDefDs::link>(
        &PreDefDsHead, [&](const PreDefDs &ds) { return std::strcmp(ds.ldName, name.text) == 0; });
    removeMatching<&ReportCfg::link>(
        &ReportCfgHead, [&](const ReportCfg &report) { return isOfDevice(report.name, name.text); });
    removeMatching<&LCBCfg::link>(&LCBHead,
                                  [&](const LCBCfg &log) { return isOfDevice(log.name, name.text); });
    removeMatching<&scl::LDevice::link>(&LDeviceHead,
                                        [&](const scl::LDevice &device) { return sameInst(device, inst); });
}

} // namespace ied
