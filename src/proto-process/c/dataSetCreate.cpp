#include "DebugInfo/DebugInfo.h"
#include "asn1/mmsCodec.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/subtreeWalk.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/modelConfig.h"
#include "model-gen/c/sclFault.h"
#include "proto-process/c/dataSet.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace ied {

namespace {

constexpr u32 maxCount = 0xFFFF; // members and leaves are counted in 16 bits

struct LeafCounter {
    u32 leaves = 0;

    Visit visit(GenNode *node, int depth) {
        if (isWalkedInto(node, depth)) {
            return Visit::descend;
        }
        ++leaves;
        return Visit::leaf;
    }
    bool next(GenNode *, int, bool) { return true; }
};

DataSet *newDataSet(u32 isDynamic) {
    auto *dataSet = MallocOf<DataSet>();
    dataSet->name = MallocOf<ObjectName>();
    dataSet->members = asnListNewPtr();
    dataSet->nodes = asnListNewPtr();
    dataSet->isDynamic = isDynamic;
    return dataSet;
}

// Hangs the record at the end of its device's list, which comes into being with the first one.
void publishDataSet(GenNode *ld, DataSet *dataSet) {
    auto *list = static_cast<AsnList *>(nodeData(ld));
    if (list == nullptr) {
        publish(ld->data, list = asnListNewPtr());
    }
    asnListPush(list, dataSet);
}

// The counts are held at their greatest value; getDsSize refuses a data set that has more.
void addNode(DataSet *dataSet, GenNode *node) {
    asnListPush(dataSet->nodes, node);
    dataSet->memberNum = static_cast<u16>(std::min(dataSet->memberNum + 1U, maxCount));
    dataSet->daiNum = static_cast<u16>(std::min<u32>(dataSet->daiNum + getDAINum(node), maxCount));
}

// Where in the file a data set stands and what is wrong with it, seen whatever the log shows.
void tellFault(const PreDefDs *entry, const char *what, const char *culprit = "") {
    faultDetail(entry->line, "DataSet \"%.60s/%.100s\": %s%.200s", entry->ldName, entry->itemName, what,
                culprit);
}

// Members of a predefined data set; false at the first that is no name of this model.
bool addConfiguredMembers(DataSet *dataSet, const PreDefDs *entry) {
    constexpr const char *function = "createPreDefDs";
    for (const PreDefDsMember &member : records<&PreDefDsMember::link>(entry->members)) {
        const char *slash = std::strchr(member.name, '/');
        if (slash == nullptr) {
            dbInfo(DbDAT, DbERR, function, "Member \"%s\" have no /!", member.name);
            tellFault(entry, "no device in member ", member.name);
            return false;
        }
        char domain[512] = {}; // twice maxItemLen, which has 8 bits
        const auto length = static_cast<std::size_t>(slash - member.name);
        if (length <= 2U * externGlbCfg.maxItemLen) {
            std::memcpy(domain, member.name, length);
        }
        auto *name = asnListPush(dataSet->members, MallocOf<ObjectName>());
        objectNameFromStr(name, domain, slash + 1);
        GenNode *node = nullptr;
        if (!searchNodeByObjName(name, &node, nullptr, nullptr)) {
            dbInfo(DbDAT, DbERR, function, "Member \"%s\" dosen't exist!", member.name);
            tellFault(entry, "the model has no ", member.name);
            return false;
        }
        addNode(dataSet, node);
    }
    return true;
}

bool addDefinedMembers(DataSet *dataSet, const AsnList *listOfVariable) {
    const AsnListElement *element = listOfVariable == nullptr ? nullptr : listOfVariable->first;
    for (; element != nullptr; element = element->next) {
        const ObjectName *name = variableName(asnListValue<VariableAccessSpecificationSeqOfSeq>(element));
        GenNode *node = nullptr;
        if (!searchNodeByObjName(name, &node, nullptr, nullptr)) {
            dbInfo(DbDAT, DbERR, "createDynDs", "Member \"%s\" dose not exist!", NameText(name).text);
            return false;
        }
        objectNameCopy(asnListPush(dataSet->members, MallocOf<ObjectName>()), name);
        addNode(dataSet, node);
    }
    return true;
}

// Measures and stores the size; false, after a message, if there is none. `function` and `name` are
// what the messages call the caller and the data set.
bool measure(DataSet *dataSet, const char *function, const char *name) {
    dbInfo(DbDAT, DbINF, function, "Member num of DataSet \"%s\" is: %d!", name, dataSet->memberNum);
    dbInfo(DbDAT, DbINF, function, "DAI num of DataSet \"%s\" is: %d!", name, dataSet->daiNum);
    const i64 size = getDsSize(dataSet);
    if (size < 1) {
        dbInfo(DbDAT, DbERR, function, "Fail to get size of \"%s\"!", name);
        return false;
    }
    dataSet->size = static_cast<u32>(size);
    dbInfo(DbDAT, DbINF, function, "Size of DataSet \"%s\" is: %d!", name, static_cast<int>(size));
    return true;
}

bool measurePreDefDs(DataSet *dataSet, const PreDefDs *entry) {
    constexpr const char *function = "createPreDefDs";
    const std::string name = std::string(entry->ldName) + "/" + entry->itemName;
    bool fits = measure(dataSet, function, name.c_str());
    if (fits && dataSet->size > dsSizeLimit()) {
        dbInfo(DbDAT, DbERR, function, "DataSet \"%s\" is too big, the limit is %d!", name.c_str(),
               static_cast<int>(dsSizeLimit()));
        fits = false;
    }
    if (!fits) {
        tellFault(entry,
                  "a report entry of it is longer than maxDsSize allows: raise it or give it fewer members");
    }
    return fits;
}

// Takes from the pool what one entry of a report ring takes.
void allocEntry(const DataSet *dataSet, MemoryPool *pool) {
    auto *entry = allocInMpOf<RptEntry>(pool);
    entry->included = allocInMpArray<u8>(pool, dataSet->memberNum);
    entry->reasons = allocInMpArray<u8>(pool, dataSet->memberNum);
    entry->data = allocInMpArray<Data>(pool, dataSet->memberNum);
    Data *member = entry->data;
    for (AsnListElement *element = dataSet->nodes->first; element != nullptr; element = element->next) {
        allocNodeDataInMp(member++, asnListValue<GenNode>(element), pool);
    }
}

} // namespace

void freeDataSet(DataSet *dataSet) {
    for (AsnListElement *element = dataSet->members->first; element != nullptr; element = element->next) {
        auto *member = asnListValue<ObjectName>(element);
        FreeObjectName(member);
        Free(member);
    }
    AsnListFree(dataSet->members);
    AsnListFree(dataSet->nodes);
    FreeObjectName(dataSet->name);
    Free(dataSet->name);
    Free(dataSet);
}

u16 getDAINum(GenNode *node) {
    LeafCounter counter;
    walkSubtree(node, counter);
    return static_cast<u16>(counter.leaves);
}

u32 dsSizeLimit() {
    const u64 limit = u64{externGlbCfg.maxDsSize} * (sizeof(void *) / 4);
    return static_cast<u32>(std::min<u64>(limit, 0x7FFFFFFF));
}

i64 getDsSize(const DataSet *dataSet) {
    if (dataSet->nodes->count >= maxCount || dataSet->daiNum == maxCount) {
        return -1;
    }
    MemoryPool pool = {};
    mpAlloc(dsSizeLimit(), &pool);
    i64 size = -1;
    try {
        allocEntry(dataSet, &pool);
        size = (i64{pool.used} + 3) / 4 * 4;
    } catch (const PoolFull &) {
        size = -1;
    }
    mpFree(&pool);
    return size;
}

bool initPreDefDS() {
    constexpr const char *function = "initPreDefDS";
    if (semDataSets == nullptr) {
        semDataSets = semRWCreate(semQPriority, externGlbCfg.maxClientNum + extraReaders);
    }
    if (semDataSets == nullptr) {
        dbInfo(DbDAT, DbERR, function, "Create semDataSets failed!");
        return false;
    }
    u32 count = 0;
    for (const PreDefDs &entry : records<&PreDefDs::link>(PreDefDsHead)) {
        if (++count > externGlbCfg.maxDsNum) {
            tellFault(&entry, "one more than maxDsNum allows: raise it or remove data sets");
            dbInfo(DbDAT, DbPAN, function, "Num of predefined dataset has exceed limit(%d)!",
                   static_cast<int>(externGlbCfg.maxDsNum));
        }
        if (!createPreDefDs(&entry)) {
            dbInfo(DbDAT, DbERR, function, "Fail to create predefined data set \"%s/%s\"!", entry.ldName,
                   entry.itemName);
            return false;
        }
    }
    return true;
}

bool createPreDefDs(const PreDefDs *entry) {
    GenNode *ld = nullptr;
    if (!searchLdByStr(entry->ldName, &ld)) {
        dbInfo(DbDAT, DbERR, "createPreDefDs", "No such ld \"%s\"!", entry->ldName);
        tellFault(entry, "the model has no device of that name");
        return false;
    }
    DataSet *dataSet = newDataSet(0);
    objectNameFromStr(dataSet->name, entry->ldName, entry->itemName);
    publishDataSet(ld, dataSet);
    return addConfiguredMembers(dataSet, entry) && measurePreDefDs(dataSet, entry);
}

int checkDsMember(const AsnList *listOfVariable) {
    constexpr const char *function = "checkDsMember";
    const AsnListElement *element = listOfVariable == nullptr ? nullptr : listOfVariable->first;
    for (; element != nullptr; element = element->next) {
        const ObjectName *name = variableName(asnListValue<VariableAccessSpecificationSeqOfSeq>(element));
        GenNode *node = nullptr;
        if (!searchNodeByObjName(name, &node, nullptr, nullptr)) {
            dbInfo(DbDAT, DbERR, function, "Fail to find node by \"%s\"!", NameText(name).text);
            return 0;
        }
        if (node->level < LevelDO) {
            dbInfo(DbDAT, DbERR, function, "\"%s\" is not a FCD or FCDA!", NameText(name).text);
            return -1;
        }
    }
    return 1;
}

bool createDynDs(const ObjectName *objectName, const AsnList *listOfVariable) {
    GenNode *ld = nullptr;
    const ObjectNameSeq *parts = domainSpecificParts(objectName);
    if (parts == nullptr || !searchLdByOcts(&parts->domainId, &ld)) {
        return false;
    }
    DataSet *dataSet = newDataSet(1);
    objectNameCopy(dataSet->name, objectName);
    if (!addDefinedMembers(dataSet, listOfVariable) ||
        !measure(dataSet, "createDynDs", NameText(dataSet->name).text)) {
        freeDataSet(dataSet);
        return false;
    }
    publishDataSet(ld, dataSet);
    return true;
}

} // namespace ied
