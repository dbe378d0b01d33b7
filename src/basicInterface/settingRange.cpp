// The value range and step of settings (IEC 61850-7-3 ING, ENG, ASG, CURVE).
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/cdcRecord.h"
#include "basicInterface/complexData.h"
#include "basicInterface/simpleData.h"

#include <algorithm>

namespace ied {

namespace {

constexpr const char *function = "checkSetRange";

struct IntegerRange {
    i32 min, max, step;
};

// ING and ENG keep the same limits, each in its own record.
template <class Record> IntegerRange rangeOf(const void *record) {
    const auto &setting = *static_cast<const Record *>(record);
    return {loadShared(setting.minVal), loadShared(setting.maxVal), loadShared(setting.stepSize)};
}

// The value as a number; false for a kind that is none.
bool integerOf(const Data *data, i32 *value) {
    switch (data->choiceId) {
    case Data::integer:
        *value = data->int_;
        return true;
    case Data::unsignedInt:
        *value = static_cast<i32>(data->uint_);
        return true;
    case Data::boolean:
        *value = data->bool_;
        return true;
    default:
        return false;
    }
}

bool isInteger(const Data *data, const IntegerRange &range) {
    i32 value = 0;
    if (range.max <= range.min || !integerOf(data, &value)) {
        return true;
    }
    bool sound = true;
    if (value > range.max || value < range.min) {
        dbInfo(DbSET, DbERR, function, "Value %d out of range!", value);
        sound = false;
    }
    const u32 offset = static_cast<u32>(value) - static_cast<u32>(range.min);
    if (range.step != 0 && offset % static_cast<u32>(range.step) != 0) {
        dbInfo(DbSET, DbERR, function, "Value %d step size invalid!", value);
        sound = false;
    }
    return sound;
}

// Thousandths as an integer, held within its range; not a number counts as 0.
i64 integerPart(f64 value) {
    constexpr f64 limit = 9.0e18;
    return value == value ? static_cast<i64>(std::clamp(value, -limit, limit)) : 0;
}

bool isFloat(const Data *data, const ASG &setting) {
    const f32 min = loadShared(setting.minVal);
    const f32 max = loadShared(setting.maxVal);
    const f32 step = loadShared(setting.stepSize);
    if (!(max > min) || data->choiceId != Data::floatingPoint) {
        return true;
    }
    f32 value = 0;
    octs2Fp(&value, data->octs);
    bool sound = true;
    if (!(value <= max && value >= min)) {
        dbInfo(DbSET, DbERR, function, "Value %f out of range!", static_cast<f64>(value));
        sound = false;
    }
    if (!(static_cast<f64>(step) >= 0.001)) {
        return sound;
    }
    const i64 offset = integerPart(static_cast<f64>(value - min) * 1000.0 + 0.5);
    const i64 unit = std::max<i64>(integerPart(static_cast<f64>(step) * 1000.0), 1);
    if (offset % unit != 0) {
        dbInfo(DbSET, DbERR, function, "Value %f step size invalid!", static_cast<f64>(value));
        sound = false;
    }
    return sound;
}

bool isCurve(const Data *data) {
    dbInfo(DbOTH, DbINF, function, "Over range");
    i32 value = 0;
    if (!integerOf(data, &value)) {
        return false;
    }
    return value == 9 || value == 10 || (value >= 12 && value <= 14);
}

bool isInRange(const Data *data, const GenNode *fcd, const void *record) {
    switch (fcd->nodeType) {
    case CdcING:
        return isInteger(data, rangeOf<ING>(record));
    case CdcENG:
        return isInteger(data, rangeOf<ENG>(record));
    case CdcASG:
        return isFloat(data, *static_cast<const ASG *>(record));
    case CdcCURVE:
        return isCurve(data);
    default:
        return true;
    }
}

} // namespace

bool checkSetRange(const Data *data, GenNode *leaf) {
    const GenNode *fcd = getFCDNode(leaf);
    const void *record = fcd == nullptr ? nullptr : nodeData(fcd);
    if (record == nullptr) {
        dbInfo(DbOTH, DbERR, function, "Get FCD node failed");
    } else if (isInRange(data, fcd, record)) {
        return true;
    }
    char path[maxPathText];
    getAllPath(leaf, path, true);
    dbInfo(DbSET, DbERR, function, "Check \"%s\" failed!", path);
    return false;
}

} // namespace ied
