#include "device/parameterRefresh.h"

#include "DebugInfo/DebugInfo.h"
#include "device/region.h"
#include "platform/platform.h"

namespace ied {

std::span<const ParaMap> paraMapAddr[ParaGroupNum];

namespace {

int rowFault(const char *text) {
    dbInfo(DbUPD, DbERR, "refreshPara", "%s", text);
    return 0;
}

template <class T> T loadField(const u8 *field) {
    return loadShared(*reinterpret_cast<const T *>(field));
}

// A field of whole numbers as 32 bits, signs extended. False for a type that is none.
bool loadInteger(u16 dataType, const u8 *field, u32 *value) {
    switch (dataType) {
    case ParaU8:
        *value = loadField<u8>(field);
        return true;
    case ParaU16:
        *value = loadField<u16>(field);
        return true;
    case ParaU32:
    case ParaI32:
        *value = loadField<u32>(field);
        return true;
    case ParaI8:
        *value = static_cast<u32>(i32{loadField<i8>(field)});
        return true;
    case ParaI16:
        *value = static_cast<u32>(i32{loadField<i16>(field)});
        return true;
    default:
        return false;
    }
}

// Records whose value is the region's plus one.
bool countsFromOne(const u8 *record) {
    return record == reinterpret_cast<u8 *>(&mirror<ENG>("SET.sys.ClcTotVA")) ||
           record == reinterpret_cast<u8 *>(&mirror<ENG>("SET.sys.PFSign"));
}

void walkMap(std::span<const ParaMap> map) {
    for (const ParaMap &row : map) {
        if (row.srcOffset == 0 || row.modelAddr == nullptr) {
            break;
        }
        if (refreshPara(row, comdata + region::liveArea + row.srcOffset, ParaLiveToSG) == 0) {
            dbInfo(DbUPD, DbERR, "dealParamProcess", "Para deal error!");
            taskExit(0);
        }
    }
}

} // namespace

int refreshPara(const ParaMap &row, const u8 *field, u8 op) {
    const SettingInstance instance = op == ParaEditToSE ? SetSE : SetSG;
    u32 value = 0;
    const bool isInteger = loadInteger(row.dataType, field, &value);
    switch (row.protoType) {
    case CdcSPG:
        if (row.dataType > ParaU32) {
            return rowFault("No Such DataType In model_spg class!");
        }
        storeShared(reinterpret_cast<SPG *>(row.modelAddr)->setVal[instance], static_cast<u8>(value));
        return 1;
    case CdcING:
        if (!isInteger) {
            return rowFault("No Such DataType In model_ing class!");
        }
        storeShared(reinterpret_cast<ING *>(row.modelAddr)->setVal[instance], static_cast<i32>(value));
        return 1;
    case CdcASG:
        if (row.dataType > ParaU32 && row.dataType != ParaF32) {
            return rowFault("No Such DataType In model_asg class!");
        }
        storeShared(reinterpret_cast<ASG *>(row.modelAddr)->setMag[instance],
                    isInteger ? static_cast<f32>(value) : loadField<f32>(field));
        return 1;
    case CdcENG:
        if (!isInteger) {
            return rowFault("No Such DataType In model_eng class!");
        }
        if (countsFromOne(row.modelAddr)) {
            value++;
        }
        storeShared(reinterpret_cast<ENG *>(row.modelAddr)->setVal[instance], static_cast<u8>(value));
        return 1;
    default:
        return rowFault("No Such protoType!");
    }
}

int dealParamProcess(u8 op, const AsnList *, u8 group) {
    if (op != ParaLiveToSG || group > ParaAll) {
        dbInfo(DbUPD, DbERR, "dealParamProcess", "Input Para Error!");
        taskExit(0);
    }
    if (group != ParaAll) {
        if (group < ParaGroupNum) {
            walkMap(paraMapAddr[group]);
        }
        return 1;
    }
    for (const std::span<const ParaMap> map : paraMapAddr) {
        walkMap(map);
    }
    return 1;
}

} // namespace ied
