#include "basicInterface/itemText.h"
#include "basicInterface/memory.h"
#include "basicInterface/nodeTree.h"

#include <cstring>

namespace ied {

namespace {

constexpr std::size_t maxReference = 100; // octets of a reference text

// One octet more than the text has, so that it ends in a NUL that does not count.
AsnOcts heapOcts(std::string_view text) {
    auto *block = static_cast<u8 *>(Malloc(text.size() + 1));
    if (!text.empty()) {
        std::memcpy(block, text.data(), text.size());
    }
    return {static_cast<u32>(text.size()), block};
}

void makeDomainSpecific(ObjectName *name, std::string_view domain, std::string_view item) {
    name->choiceId = ObjectName::domainSpecific;
    name->domain_specific = MallocOf<ObjectNameSeq>();
    name->domain_specific->domainId = heapOcts(domain);
    name->domain_specific->itemId = heapOcts(item);
}

} // namespace

bool objName2Ref(const ObjectName *objectName, bool alloc, char **out) {
    const ObjectNameSeq *name = domainSpecificParts(objectName);
    if (name == nullptr || name->domainId.octs == nullptr || name->itemId.octs == nullptr ||
        u64{name->domainId.octetLen} + name->itemId.octetLen + 2 > maxReference || out == nullptr ||
        (!alloc && *out == nullptr)) {
        return false;
    }
    if (alloc) {
        *out = static_cast<char *>(Malloc(maxReference));
    }
    char *text = *out;
    std::memcpy(text, name->domainId.octs, name->domainId.octetLen);
    text += name->domainId.octetLen;
    *text++ = '/';
    std::memcpy(text, name->itemId.octs, name->itemId.octetLen);
    text[name->itemId.octetLen] = '\0';
    return true;
}

bool ref2ObjName(const char *text, bool alloc, ObjectName *objectName) {
    if (text == nullptr || objectName == nullptr) {
        return false;
    }
    const std::string_view reference = text;
    const std::size_t slash = reference.find('/');
    if (reference.size() > maxReference || slash == std::string_view::npos) {
        return false;
    }
    const std::string_view domain = reference.substr(0, slash);
    const std::string_view item = reference.substr(slash + 1);
    if (alloc) {
        makeDomainSpecific(objectName, domain, item);
        return true;
    }
    ObjectNameSeq *parts = objectName->domain_specific;
    if (parts == nullptr || parts->domainId.octs == nullptr || parts->itemId.octs == nullptr) {
        return false;
    }
    objectName->choiceId = ObjectName::domainSpecific;
    const auto fill = [](AsnOcts &part, std::string_view value) {
        std::memcpy(part.octs, value.data(), value.size());
        part.octetLen = static_cast<u32>(value.size());
    };
    fill(parts->domainId, domain);
    fill(parts->itemId, item);
    return true;
}

void objectNameFromStr(ObjectName *objectName, const char *domainText, const char *itemText) {
    makeDomainSpecific(objectName, domainText, itemText);
}

void objectNameCopy(ObjectName *target, const ObjectName *source) {
    if (const ObjectNameSeq *parts = domainSpecificParts(source)) {
        makeDomainSpecific(target, octsView(&parts->domainId), octsView(&parts->itemId));
        return;
    }
    target->choiceId = source->choiceId;
    target->vmd_specific = MallocOf<AsnOcts>();
    *target->vmd_specific = heapOcts(octsView(source->vmd_specific));
}

bool objectNameCmp(const ObjectName *a, const ObjectName *b) {
    if (a->choiceId != b->choiceId) {
        return false;
    }
    if (a->choiceId != ObjectName::domainSpecific) {
        return octsView(a->vmd_specific) == octsView(b->vmd_specific);
    }
    if (a->domain_specific == nullptr || b->domain_specific == nullptr) {
        return a->domain_specific == b->domain_specific;
    }
    return octsView(&a->domain_specific->domainId) == octsView(&b->domain_specific->domainId) &&
           octsView(&a->domain_specific->itemId) == octsView(&b->domain_specific->itemId);
}

} // namespace ied
