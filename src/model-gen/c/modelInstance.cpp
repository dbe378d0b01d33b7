// What the SCL file says of one instance: types by identifier, the DAI of a leaf, enumerations.
#include "DebugInfo/DebugInfo.h"
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/modelIndex.h"
#include "model-gen/c/sclFault.h"

#include <cstdlib>
#include <cstring>

namespace ied {

namespace {

constexpr std::size_t enumTextSize = 10;

// A configured enumeration as digits; "0" for a word that does not resolve.
char *enumText(const char *digits, const char *funcName) {
    char *value = static_cast<char *>(sclAlloc(enumTextSize, funcName, "gMalloc for value failed!\r\n"));
    if (digits == nullptr) {
        digits = "0";
    }
    std::memcpy(value, digits, strnlen(digits, enumTextSize - 1));
    return value;
}

// Instances are found by name, so the first LDevice of a name hides the logical nodes of a further one.
void refuseNamesake(const scl::LDevice *first, const char *lnNodeName) {
    for (scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)) {
        if (&device != first && std::strcmp(device.nodeName.text, first->nodeName.text) == 0 &&
            getLN(&device, lnNodeName) != nullptr) {
            sclFault(device.line,
                     "LDevice at line %u has the same name \"%s\" as the one at line %u, which has no LN of "
                     "the name \"%s\"",
                     device.line, device.nodeName.text, first->line, lnNodeName);
        }
    }
}

scl::EnumType *firstEnumType(const char *id) {
    return findNamed<&scl::EnumType::link, &scl::EnumType::id>(EnumTypeHead, id);
}

constexpr char wordIndex = 0; // its address stands for the index of all words

// The words of all types of one id, each under the first of these types: as a walk along all of them
// finds it, but in the time of one search.
void indexWords() {
    indexOpen(&wordIndex);
    for (scl::EnumType &type : records<&scl::EnumType::link>(EnumTypeHead)) {
        const scl::EnumType *first = firstEnumType(type.id);
        for (scl::EnumVal &value : records<&scl::EnumVal::link>(type.vals)) {
            if (first != nullptr && value.text != nullptr) {
                indexPut(first, value.text, &value);
            }
        }
    }
}

const scl::EnumVal *findEnumVal(const char *typeId, const char *text) {
    if (!indexHas(&wordIndex)) {
        indexWords();
    }
    const scl::EnumType *first = firstEnumType(typeId);
    return first != nullptr ? static_cast<scl::EnumVal *>(indexGet(first, text)) : nullptr;
}

bool isEnum(const char *bType) {
    return bType != nullptr && std::strcmp(bType, "Enum") == 0;
}

} // namespace

scl::LNodeType *modelGetLNodeType(const char *id) {
    return findNamed<&scl::LNodeType::link, &scl::LNodeType::id>(LNodeTypeHead, id);
}

scl::DOType *modelGetDOType(const char *id) {
    return findNamed<&scl::DOType::link, &scl::DOType::id>(DOTypeHead, id);
}

scl::DAType *modelGetDAType(const char *id) {
    return findNamed<&scl::DAType::link, &scl::DAType::id>(DATypeHead, id);
}

scl::LDevice *getLDevice(const char *nodeName) {
    if (!indexHas(&LDeviceHead)) {
        indexOpen(&LDeviceHead);
        for (scl::LDevice &device : records<&scl::LDevice::link>(LDeviceHead)) {
            device.nodeName = ldName(device.inst);
            indexPut(&LDeviceHead, device.nodeName.text, &device);
        }
    }
    return static_cast<scl::LDevice *>(indexGet(&LDeviceHead, nodeName));
}

scl::LN *getLN(scl::LDevice *device, const char *nodeName) {
    if (!indexHas(&device->lns)) {
        indexOpen(&device->lns);
        device->LN0.nodeName = lnName(&device->LN0);
        indexPut(&device->lns, device->LN0.nodeName.text, &device->LN0);
        for (scl::LN &ln : records<&scl::LN::link>(device->lns)) {
            ln.nodeName = lnName(&ln);
            indexPut(&device->lns, ln.nodeName.text, &ln);
        }
    }
    return static_cast<scl::LN *>(indexGet(&device->lns, nodeName));
}

scl::LN *getInstanceLN(const GenNode *lnNode) {
    scl::LDevice *device = getLDevice(lnNode->parent->name);
    if (device == nullptr) {
        dbInfoRaw("%s : Get LDevice error! \n", "getDOI");
        sclFault(0, "there is no LDevice of the name \"%s\"", lnNode->parent->name);
    }
    scl::LN *ln = getLN(device, lnNode->name);
    if (ln == nullptr) {
        dbInfoRaw("%s : Get LN error! \n", "getDOI");
        refuseNamesake(device, lnNode->name);
        sclFault(device->line, "LDevice \"%s\" has no LN of the name \"%s\"", lnNode->parent->name,
                 lnNode->name);
    }
    return ln;
}

scl::Instances *getDOI(scl::LN *ln, const char *name) {
    scl::DOI *doi = findNamed<&scl::DOI::link, &scl::DOI::name>(ln->dois, name);
    return doi != nullptr ? &doi->below : nullptr;
}

scl::Instances *getSDI(scl::Instances *owner, const char *name) {
    if (owner == nullptr) {
        return nullptr;
    }
    scl::SDI *sdi = findNamed<&scl::SDI::link, &scl::SDI::name>(owner->sdi, name);
    return sdi != nullptr ? &sdi->below : nullptr;
}

scl::DAI *getDAI(scl::Instances *owner, const char *name) {
    return owner != nullptr ? findNamed<&scl::DAI::link, &scl::DAI::name>(owner->dai, name) : nullptr;
}

const char *getEnumValue(const char *typeId, const char *text) {
    if (typeId == nullptr || text == nullptr) {
        return nullptr;
    }
    if (*text == '+' || *text == '-' || (*text >= '0' && *text <= '9')) {
        return text;
    }
    const scl::EnumVal *value = findEnumVal(typeId, text);
    if (value != nullptr) {
        return value->ord;
    }
    dbInfoRaw("%s : Find enum failed! type id is : %s, desc is %s \n", "getEnumValue", typeId, text);
    return nullptr;
}

u8 getTrgOps(const scl::DA *da) {
    return static_cast<u8>((isTrue(da->dchg) ? TrgDchg : 0) | (isTrue(da->qchg) ? TrgQchg : 0) |
                           (isTrue(da->dupd) ? TrgDupd : 0));
}

void modelGetDAIAddr(const scl::DA *da, GenNode *node, scl::Instances *instances) {
    const scl::DAI *dai = getDAI(instances, node->name);
    if (dai != nullptr) {
        node->sAddr = dai->sAddr;
    }
    if (!isEnum(da->bType)) {
        if (dai != nullptr && dai->val != nullptr) {
            node->value = dai->val;
        }
        return;
    }
    if (dai == nullptr && node->value == nullptr) {
        return;
    }
    const char *digits = getEnumValue(da->type, da->val);
    if (dai != nullptr && dai->val != nullptr) {
        digits = getEnumValue(da->type, dai->val);
    }
    node->value = enumText(digits, "modelGetDAIAddr");
}

void modelGetBDAAddr(const scl::BDA *bda, GenNode *node, scl::Instances *instances) {
    const scl::DAI *dai = getDAI(instances, node->name);
    if (dai == nullptr) {
        return;
    }
    node->sAddr = dai->sAddr;
    node->value =
        isEnum(bda->bType) ? enumText(getEnumValue(bda->type, dai->val), "modelGetBDAAddr") : dai->val;
}

} // namespace ied
