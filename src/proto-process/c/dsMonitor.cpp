#include "proto-process/c/dsMonitor.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "basicInterface/subtreeWalk.h"
#include "device/recordTypes.h"
#include "proto-process/c/dataSet.h"

#include <algorithm>

namespace ied {

namespace {

constexpr u32 vectorTolerance = 10; // units in the last place

// Width of the comparison by node type; MonNever for what cannot be compared by its word.
u8 wordCompare(const GenNode *leaf) {
    switch (leaf->nodeType) {
    case TypeBoolean:
    case TypeDbpos:
    case TypeBits5:
    case TypeTrgOps:
    case TypeInt8:
    case TypeInt8U:
        return MonByte;
    case TypeOptFlds:
    case TypeQuality:
    case TypeInt16:
        return MonHalf;
    case TypeInt32:
    case TypeInt32U:
    case TypeFloat32:
        return MonWord;
    case TypeEnum:
        return isEnum32(leaf) ? MonWord : MonByte;
    default:
        return MonNever;
    }
}

u32 loadWord(const void *place, u8 width) {
    switch (width) {
    case MonByte:
        return loadShared(*static_cast<const u8 *>(place));
    case MonHalf:
        return loadShared(*static_cast<const u16 *>(place));
    default:
        return loadShared(*static_cast<const u32 *>(place));
    }
}

bool isVectorKind(u8 cmpKind) {
    return cmpKind == MonMagArray || cmpKind == MonVecArray;
}

// The pairs of a vector array, whose leaf leads to a pointer; null where it has none.
const Vector *vectorsOf(const GenNode *leaf) {
    const void *place = nodeData(leaf);
    return place == nullptr ? nullptr : loadPublished(*static_cast<Vector *const *>(place));
}

// The updateCount of a data object's record; null where its class has none.
u32 *updateCountOf(const GenNode *fcd) {
    void *record = fcd == nullptr ? nullptr : nodeData(fcd);
    u32 *count = nullptr;
    if (record == nullptr) {
        return nullptr;
    }
    RecordTypes::find(fcd->nodeType, [record, &count](auto type) {
        using Record = typename decltype(type)::type;
        if constexpr (requires(Record r) { r.updateCount; }) {
            count = &static_cast<Record *>(record)->updateCount;
        }
    });
    return count;
}

void notSupported(const char *format, const GenNode *leaf) {
    char path[maxPathText];
    getAllPath(leaf, path, true);
    dbInfo(DbDAT, DbCRI, "dsMonitorInit", format, path);
}

void noteVectors(MonDAI *entry) {
    const GenNode *fcd = getFCDNode(entry->leaf);
    if (fcd == nullptr || nodeData(fcd) == nullptr) {
        entry->cmpKind = MonNever;
        return;
    }
    constexpr u8 angle = 2;
    entry->cmpKind = (getVectorComp(entry->leaf) & angle) != 0 ? MonVecArray : MonMagArray;
    entry->vecLen = getArrNum(entry->leaf);
    entry->oldArray = MallocArray<Vector>(std::max<u32>(entry->vecLen, 1));
    if (const Vector *values = vectorsOf(entry->leaf)) {
        for (u32 i = 0; i < entry->vecLen; i++) {
            entry->oldArray[i] = {loadShared(values[i].mag), loadShared(values[i].ang)};
        }
    }
}

void noteValue(MonDAI *entry) {
    if (entry->leaf->nodeType == TypeArrayVec) {
        return noteVectors(entry);
    }
    entry->cmpKind = wordCompare(entry->leaf);
    if (entry->cmpKind == MonNever) {
        return notSupported("Node \"%s\" dose not support dchg, NEVER TRIG!", entry->leaf);
    }
    if (const void *place = nodeData(entry->leaf)) {
        entry->oldValue = loadWord(place, entry->cmpKind);
    }
}

void noteUpdates(MonDAI *entry) {
    entry->updCntAddr = updateCountOf(getFCDNode(entry->leaf));
    if (entry->updCntAddr == nullptr) {
        return notSupported("Node \"%s\" type dose not support dupd, NEVER TRIG!", entry->leaf);
    }
    entry->oldUpdCnt = loadShared(*entry->updCntAddr);
}

// Fills one entry for each leaf of a member that has triggers.
struct getMonDAIofDsMemb {
    DsMonitor *monitor;
    GenNode *memberNode;
    u16 memberIndex;

    Visit visit(GenNode *node, int depth) {
        if (isWalkedInto(node, depth)) {
            return Visit::descend;
        }
        if ((node->trgOps & changeTriggers) != 0) {
            note(&monitor->list[monitor->num++], node);
        }
        return Visit::leaf;
    }
    bool next(GenNode *, int, bool) { return true; }

    void note(MonDAI *entry, GenNode *leaf) const {
        *entry = {};
        entry->memberIndex = memberIndex;
        entry->memberNode = memberNode;
        entry->leaf = leaf;
        entry->trgOps = leaf->trgOps;
        if ((leaf->trgOps & valueTriggers) != 0) {
            noteValue(entry);
        }
        if ((leaf->trgOps & TrgDupd) != 0) {
            noteUpdates(entry);
        }
    }
};

bool vectorsChanged(MonDAI *entry) {
    const Vector *values = vectorsOf(entry->leaf);
    if (values == nullptr) {
        return false;
    }
    const u8 reason = CmpVecArray(values, entry->oldArray, entry->cmpKind == MonVecArray, entry->vecLen);
    entry->reason |= reason;
    return reason != 0;
}

bool valueChanged(MonDAI *entry, const void *place) {
    if (isVectorKind(entry->cmpKind)) {
        return vectorsChanged(entry);
    }
    const u32 value = loadWord(place, entry->cmpKind);
    if (value == entry->oldValue) {
        return false;
    }
    entry->reason |= entry->trgOps & valueTriggers;
    entry->oldValue = value;
    return true;
}

bool isUpdated(MonDAI *entry) {
    const u32 count = loadShared(*entry->updCntAddr);
    if (count == entry->oldUpdCnt) {
        return false;
    }
    entry->reason |= TrgDupd;
    entry->oldUpdCnt = count;
    return true;
}

bool entryChanged(MonDAI *entry, u8 trgOps) {
    const u8 active = entry->trgOps & trgOps;
    const void *place = active == 0 ? nullptr : nodeData(entry->leaf);
    if (place == nullptr || entry->cmpKind == MonNever) {
        return false;
    }
    const bool watchesUpdates = (active & TrgDupd) != 0;
    if (watchesUpdates && entry->updCntAddr == nullptr) {
        return false;
    }
    const bool changed = (active & valueTriggers) != 0 && valueChanged(entry, place);
    return (watchesUpdates && isUpdated(entry)) || changed;
}

// Takes over a float that differs by more than the tolerance.
bool takeFloat(const f32 &value, f32 *copy) {
    const f32 now = loadShared(value);
    if (fp32Cmp(now, *copy, vectorTolerance)) {
        return false;
    }
    *copy = now;
    return true;
}

} // namespace

u8 CmpVecArray(const Vector *values, Vector *copy, bool withAngle, u32 count) {
    u8 result = 0;
    for (u32 i = 0; i < count; i++) {
        const bool mag = takeFloat(values[i].mag, &copy[i].mag);
        const bool ang = withAngle && takeFloat(values[i].ang, &copy[i].ang);
        if (mag || ang) {
            result = TrgDchg;
        }
    }
    return result;
}

bool dsMonitorInit(const DataSet *dataSet, DsMonitor *monitor) {
    if (dataSet == nullptr) {
        return false;
    }
    monitor->num = 0;
    monitor->list = MallocArray<MonDAI>(std::max<u32>(dataSet->daiNum, 1));
    u16 index = 0;
    for (AsnListElement *element = dataSet->nodes->first; element != nullptr; element = element->next) {
        auto *memberNode = asnListValue<GenNode>(element);
        walkSubtree(memberNode, getMonDAIofDsMemb{monitor, memberNode, index++});
    }
    return true;
}

void dsMonitorFree(DsMonitor *monitor) {
    for (u32 i = 0; i < monitor->num; i++) {
        if (isVectorKind(monitor->list[i].cmpKind)) {
            Free(monitor->list[i].oldArray);
        }
    }
    Free(monitor->list);
    *monitor = {};
}

bool dsMonitor(DsMonitor *monitor, u8 trgOps) {
    if (monitor == nullptr) {
        dbInfo(DbDAT, DbPAN, "dsMonitor", "The DataSet dose not exist!");
    }
    bool changed = false;
    for (u32 i = 0; i < monitor->num; i++) {
        changed |= entryChanged(&monitor->list[i], trgOps);
    }
    return changed;
}

} // namespace ied
