#include "device/parameterRefresh.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/nodeTree.h"
#include "device/parameterMaps.h"
#include "device/region.h"
#include "proto-process/c/client.h"

#include <cmath>

namespace ied {

namespace {

int dealFault(const char *text) {
    dbInfo(DbUPD, DbERR, "dealParamProcess", "%s", text);
    endTaskOnFault();
    return 0;
}

// ------------------------------------------------------------------------------------- fields

template <class T> T loadField(const u8 *field) {
    return loadShared(*reinterpret_cast<const T *>(field));
}

template <class T> void storeField(u8 *field, T value) {
    storeShared(*reinterpret_cast<T *>(field), value);
}

// A field of whole numbers as 32 bits, signs extended.
u32 loadInteger(u16 dataType, const u8 *field) {
    switch (dataType) {
    case ParaU8:
        return loadField<u8>(field);
    case ParaU16:
        return loadField<u16>(field);
    case ParaI8:
        return static_cast<u32>(i32{loadField<i8>(field)});
    case ParaI16:
        return static_cast<u32>(i32{loadField<i16>(field)});
    default:
        return loadField<u32>(field);
    }
}

// Cuts a value to the width of the field.
void storeInteger(u16 dataType, u8 *field, u32 value) {
    switch (paraWidth(dataType)) {
    case sizeof(u8):
        storeField(field, static_cast<u8>(value));
        break;
    case sizeof(u16):
        storeField(field, static_cast<u16>(value));
        break;
    default:
        storeField(field, value);
        break;
    }
}

// ------------------------------------------------------------------------------------ records

template <class Record> Record &recordOf(const ParaMap &row) {
    return *reinterpret_cast<Record *>(row.modelAddr);
}

// Records whose value is the region's plus one, and the checks that stand for them.
bool countsFromOne(const u8 *record) {
    return record == reinterpret_cast<u8 *>(&mirror<ENG>("SET.sys.ClcTotVA")) ||
           record == reinterpret_cast<u8 *>(&mirror<ENG>("SET.sys.PFSign"));
}
bool isStoredLessOne(const ParaMap &row) {
    return row.rangeMin == row.rangeMax && (row.rangeMin == RangeClcTotVA || row.rangeMin == RangePFSign);
}

void toRecord(const ParaMap &row, const u8 *field, SettingInstance instance) {
    if (row.dataType == ParaF32) {
        storeShared(recordOf<ASG>(row).setMag[instance], loadField<f32>(field));
        return;
    }
    const u32 value = loadInteger(row.dataType, field) + (countsFromOne(row.modelAddr) ? 1 : 0);
    switch (row.protoType) {
    case CdcSPG:
        storeShared(recordOf<SPG>(row).setVal[instance], static_cast<u8>(value));
        break;
    case CdcENG:
        storeShared(recordOf<ENG>(row).setVal[instance], static_cast<u8>(value));
        break;
    case CdcING:
        storeShared(recordOf<ING>(row).setVal[instance], static_cast<i32>(value));
        break;
    default:
        storeShared(recordOf<ASG>(row).setMag[instance], static_cast<f32>(value));
        break;
    }
}

// Whether a setting may go into a field of whole numbers. Not a number is none.
bool isWhole(f32 value) {
    constexpr f64 tolerance = 0.000001;
    f64 whole;
    return std::fabs(std::modf(static_cast<f64>(value), &whole)) <= tolerance;
}

// The whole part, held within 32 bits: what lies beyond fails the check of the range.
u32 wholePart(f32 value) {
    constexpr f32 end = 4294967296.0F;
    return value >= end ? 0xFFFFFFFF : value > 0 ? static_cast<u32>(value) : 0;
}

// Writes the value under edit into the field and holds it against its limits.
int toField(const ParaMap &row, u8 *field) {
    if (row.protoType == CdcASG) {
        const f32 value = loadShared(recordOf<ASG>(row).setMag[SetSE]);
        if (row.dataType == ParaF32) {
            storeField(field, value);
        } else if (isWhole(value)) {
            storeInteger(row.dataType, field, wholePart(value));
        } else {
            return ParaOutOfRange;
        }
        return isParaInRange(row, static_cast<f64>(value)) ? ParaMoved : ParaOutOfRange;
    }
    const i32 value = row.protoType == CdcING   ? loadShared(recordOf<ING>(row).setVal[SetSE])
                      : row.protoType == CdcENG ? loadShared(recordOf<ENG>(row).setVal[SetSE])
                                                : loadShared(recordOf<SPG>(row).setVal[SetSE]);
    storeInteger(row.dataType, field, static_cast<u32>(value));
    if (!isParaInRange(row, value)) {
        return ParaOutOfRange;
    }
    if (isStoredLessOne(row)) {
        storeInteger(row.dataType, field, static_cast<u32>(value) - 1);
    }
    return ParaMoved;
}

// ---------------------------------------------------------------------------------- many of them

int dealMap(std::span<const ParaMap> map) {
    for (const ParaMap &row : map) {
        if (refreshPara(row, comdata + region::liveArea + row.srcOffset, ParaLiveToSG) == ParaFault) {
            return dealFault("Para deal error!");
        }
    }
    return 1;
}

int dealGroups(u8 group) {
    for (u8 i = 0; i < ParaGroupNum; i++) {
        if ((group == ParaAll || group == i) && dealMap(paraMapAddr[i]) == 0) {
            return 0;
        }
    }
    return 1;
}

int dealNode(u8 op, const GenNode *node) {
    const ParaMap *row = findPara(nodeData(node));
    if (row == nullptr) {
        return dealFault("No Such Para!");
    }
    switch (refreshPara(*row, comdata + region::editArea + row->srcOffset, op)) {
    case ParaMoved:
        return 1;
    case ParaOutOfRange: {
        char path[maxPathText];
        getAllPath(node, path, true);
        dbInfo(DbUPD, DbERR, "dealParamProcess", "Error Para is %s", path);
        return 0;
    }
    default:
        return dealFault("Para deal error!");
    }
}

} // namespace

int refreshPara(const ParaMap &row, u8 *field, u8 op) {
    const ParaRecordKind kind = paraRecordKind(row.protoType);
    if (!takesType(kind, row.dataType)) {
        dbInfo(DbUPD, DbERR, "refreshPara", "%s", kind.fault);
        return ParaFault;
    }
    if (op == ParaSEToEdit) {
        return toField(row, field);
    }
    toRecord(row, field, op == ParaEditToSE ? SetSE : SetSG);
    return ParaMoved;
}

int dealParamProcess(u8 op, const AsnList *list, u8 group) {
    if (op > ParaSEToEdit || group > ParaAll || (list == nullptr && op != ParaLiveToSG)) {
        return dealFault("Input Para Error!");
    }
    if (op == ParaLiveToSG) {
        return dealGroups(group);
    }
    for (const AsnListElement *element = list->first; element != nullptr; element = element->next) {
        if (dealNode(op, asnListValue<GenNode>(element)) == 0) {
            return 0;
        }
    }
    return 1;
}

} // namespace ied
