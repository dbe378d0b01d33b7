#include "proto-process/c/dataSet.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/itemText.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"

#include <cstring>

namespace ied {

SemId semDataSets = nullptr;

DataSetsRead::DataSetsRead() {
    if (semDataSets != nullptr) {
        semRTake(semDataSets, WAIT_FOREVER);
    }
}

DataSetsRead::~DataSetsRead() {
    if (semDataSets != nullptr) {
        semGive(semDataSets);
    }
}

DataSetsWrite::DataSetsWrite() {
    if (semDataSets != nullptr) {
        semWTake(semDataSets, WAIT_FOREVER);
    }
}

DataSetsWrite::~DataSetsWrite() {
    if (semDataSets != nullptr) {
        semGive(semDataSets);
    }
}

NameText::NameText(const ObjectName *name) : text("unknown member") {
    char *out = text;
    objName2Ref(name, false, &out);
}

namespace {

AsnList *dataSetsOf(const GenNode *ld) {
    return static_cast<AsnList *>(nodeData(ld));
}

// Element of the device's list that holds the data set of that name, or null.
AsnListElement *findElement(const GenNode *ld, const ObjectName *name) {
    const AsnList *list = dataSetsOf(ld);
    AsnListElement *element = list == nullptr ? nullptr : list->first;
    while (element != nullptr && !objectNameCmp(asnListValue<DataSet>(element)->name, name)) {
        element = element->next;
    }
    return element;
}

bool findLd(const ObjectName *name, GenNode **ld) {
    const ObjectNameSeq *parts = domainSpecificParts(name);
    return parts != nullptr && searchLdByOcts(&parts->domainId, ld);
}

} // namespace

bool searchDsByObjName(const ObjectName *objectName, DataSet **dataSetOut) {
    GenNode *ld = nullptr;
    if (!findLd(objectName, &ld)) {
        return false;
    }
    const AsnListElement *element = findElement(ld, objectName);
    if (element == nullptr) {
        return false;
    }
    *dataSetOut = *static_cast<DataSet *const *>(asnListPayload(element));
    return true;
}

bool searchDsByStr(const char *reference, DataSet **dataSetOut) {
    const char *slash = std::strchr(reference, '/');
    if (slash == nullptr) {
        return false;
    }
    const auto view = [](const char *text, std::size_t length) {
        return AsnOcts{static_cast<u32>(length), reinterpret_cast<u8 *>(const_cast<char *>(text))};
    };
    ObjectNameSeq parts = {view(reference, static_cast<std::size_t>(slash - reference)),
                           view(slash + 1, std::strlen(slash + 1))};
    ObjectName name = {};
    name.choiceId = ObjectName::domainSpecific;
    name.domain_specific = &parts;
    return searchDsByObjName(&name, dataSetOut);
}

u32 getTotalDSNum() {
    u32 total = 0;
    for (const GenNode *ld = getFirstLd(); ld != nullptr; ld = ld->sibling) {
        if (const AsnList *list = dataSetsOf(ld)) {
            total += list->count;
        }
    }
    return total;
}

bool getDsList(AsnList *list, const AsnOcts *domainName, const AsnOcts *) {
    GenNode *ld = nullptr;
    const AsnList *dataSets = searchLdByOcts(domainName, &ld) ? dataSetsOf(ld) : nullptr;
    if (dataSets == nullptr || dataSets->first == nullptr) {
        return false;
    }
    for (AsnListElement *element = dataSets->first; element != nullptr; element = element->next) {
        octsCopy(asnListPush(list, MallocOf<AsnOcts>()),
                 &asnListValue<DataSet>(element)->name->domain_specific->itemId);
    }
    return true;
}

int checkDsName(const ObjectName *objectName) {
    constexpr const char *function = "checkDsName";
    const ObjectNameSeq *parts = domainSpecificParts(objectName);
    if (parts == nullptr) {
        return -1;
    }
    GenNode *ld = nullptr;
    if (!searchLdByOcts(&parts->domainId, &ld)) {
        dbInfo(DbDAT, DbERR, function, "Fail to find LD of \"%s\"!", NameText(objectName).text);
        return -1;
    }
    const std::string_view item = octsView(&parts->itemId);
    const std::size_t end = item.find('$');
    if (end == std::string_view::npos || item.size() >= maxItemText) { // no reference is that long
        dbInfo(DbDAT, DbERR, function, "Invalid data set name: %s!", NameText(objectName).text);
        return -1;
    }
    const AsnOcts ln = {static_cast<u32>(end), parts->itemId.octs};
    if (childByOcts(ld, &ln) == nullptr) {
        dbInfo(DbDAT, DbERR, function, "Fail to find LN: %.*s!",
               static_cast<int>(end < maxItemText ? end : maxItemText), item.data());
        return -1;
    }
    if (findElement(ld, objectName) != nullptr) {
        dbInfo(DbDAT, DbERR, function, "The data set name \"%s\" has been used!", NameText(objectName).text);
        return 0;
    }
    return 1;
}

bool deleteDs(const ObjectName *objectName, u32 *matchedCount, u32 *deletedCount) {
    GenNode *ld = nullptr;
    if (!findLd(objectName, &ld)) {
        return false;
    }
    AsnListElement *element = findElement(ld, objectName);
    if (element == nullptr) {
        return true;
    }
    ++*matchedCount;
    auto *dataSet = asnListValue<DataSet>(element);
    if (dataSet->isDynamic == 0 || dataSet->refCount != 0) {
        return true;
    }
    AsnList *list = dataSetsOf(ld);
    list->curr = element;
    AsnListRemove(list);
    freeDataSet(dataSet);
    ++*deletedCount;
    return true;
}

} // namespace ied
