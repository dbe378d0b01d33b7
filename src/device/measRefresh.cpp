#include "device/measRefresh.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/nodeTree.h"
#include "device/region.h"

#include <cstdlib>

namespace ied {

namespace {

f32 loadFloat(const u8 *source) {
    return loadShared(*reinterpret_cast<const f32 *>(source));
}

bool noSuch(const char *what, MeasTableId table) {
    dbInfo(DbUPD, DbERR, "walkMeasTable", "No Such %s in %s!", what, measTableName(table));
    return false;
}

} // namespace

u64 calcMultiplier(u32 n) {
    if (n > 9) {
        dbInfo(DbUPD, DbERR, "calcMultiplier", "Multiplier out of range!");
    }
    u64 power = 1;
    for (u32 i = 0; i < n && i < 19; i++) {
        power *= 10;
    }
    return power;
}

f32 scaleValue(f32 value, i8 multiplier) {
    const auto power = static_cast<f32>(calcMultiplier(static_cast<u32>(std::abs(multiplier))));
    return multiplier < 0 ? value * power : value / power;
}

f64 scaleValue(f64 value, i8 multiplier) {
    const auto power = static_cast<f64>(calcMultiplier(static_cast<u32>(std::abs(multiplier))));
    return multiplier < 0 ? value * power : value / power;
}

void updateMV(MV *record, const TimeStamp &time, const u8 *source) {
    storeShared(record->mag, scaleValue(loadFloat(source), loadShared(record->units.multiplier)));
    countShared(record->updateCount);
    storeStamp(*record, qualityGood, time);
}

void updateCMV(CMV *record, const TimeStamp &time, const u8 *source, u16 fcdType, u8 *fcdRecord) {
    storeShared(record->cVal.mag, scaleValue(loadFloat(source), loadShared(record->units.multiplier)));
    if (fcdType == CdcWYE && fcdRecord != nullptr) {
        countShared(reinterpret_cast<WYE *>(fcdRecord)->updateCount);
    } else if (fcdType == CdcSEQ && fcdRecord != nullptr) {
        countShared(reinterpret_cast<SEQ *>(fcdRecord)->updateCount);
    } else {
        dbInfo(DbUPD, DbERR, "updateCMV", "No such fcdType, cannot support this fcdType: %d", fcdType);
    }
    storeStamp(*record, qualityGood, time);
}

void updateInvalidMV(MV *record, const TimeStamp &time) {
    if (loadShared(record->q) == qualityInvalid) {
        return;
    }
    storeShared(record->mag, 0.0F);
    storeStamp(*record, qualityInvalid, time);
}

void updateInvalidCMV(CMV *record, const TimeStamp &time) {
    if (loadShared(record->q) == qualityInvalid) {
        return;
    }
    storeShared(record->cVal.mag, 0.0F);
    storeStamp(*record, qualityInvalid, time);
}

namespace {

constexpr f32 angleUnits = 100.0F; // sources of angles are in hundredths of a degree

// One row in one pass.
struct RowPlace {
    const MeasRow &row;
    const MeasPass &pass;
    u8 *target;
    const u8 *source;
    u8 *fcd;
    bool active;
    bool copy; // active, and the pass copies

    TimeStamp time() const {
        return pass.stampedSources ? regionTimeAt(source + sizeof(f32)) : pass.blockTime;
    }
};

void valueRow(const RowPlace &place) {
    auto *record = reinterpret_cast<MV *>(place.target);
    if (place.copy) {
        updateMV(record, place.time(), place.source);
    } else if (!place.active) {
        updateInvalidMV(record, place.pass.now);
    }
}

bool vectorRow(const RowPlace &place) {
    auto *record = reinterpret_cast<CMV *>(place.target);
    switch (place.row.angtype) {
    case AngNone:
    case AngMagnitude:
        if (place.copy) {
            updateCMV(record, place.time(), place.source, place.row.fcdType, place.fcd);
        } else if (!place.active) {
            updateInvalidCMV(record, place.pass.now);
        }
        return true;
    case AngAngle:
        if (place.copy) {
            const u16 angle = loadShared(*reinterpret_cast<const u16 *>(place.source));
            storeShared(record->cVal.ang, static_cast<f32>(angle) / angleUnits);
            countShared(record->updateCount);
        } else if (!place.active) {
            storeShared(record->cVal.ang, 0.0F);
        }
        return true;
    default:
        return noSuch("angtype", place.pass.table);
    }
}

// Whether a later row goes into the same record.
bool hasSameFcdAddr(std::span<const MeasRow> rows, std::size_t index) {
    for (std::size_t i = index + 1; i < rows.size(); i++) {
        if (rows[i].fcdAddr == rows[index].fcdAddr) {
            return true;
        }
    }
    return false;
}

// An array that the model does not show has no elements to write; its record still moves on.
void copyArray(const RowPlace &place, HWYE *record) {
    storeStamp(*record, qualityGood, place.pass.blockTime);
    Vector *elements = *reinterpret_cast<Vector **>(place.target);
    const u8 *source = place.source;
    for (u32 i = place.pass.firstElement; elements != nullptr && i < record->numHar; i++) {
        storeShared(elements[i].mag, loadFloat(source));
        source += place.pass.elementStride;
    }
    countShared(record->updateCount);
}

// The last row of a record closes it; the rows before it still clear their arrays.
void invalidateArray(const RowPlace &place, HWYE *record, bool lastOfRecord) {
    if (loadShared(record->q) == qualityInvalid) {
        return;
    }
    if (lastOfRecord) {
        storeStamp(*record, qualityInvalid, place.pass.now);
    }
    Vector *elements = *reinterpret_cast<Vector **>(place.target);
    for (u32 i = place.pass.firstElement; elements != nullptr && i < record->numHar; i++) {
        storeShared(elements[i].mag, 0.0F);
    }
    countShared(record->updateCount);
}

bool arrayRow(const RowPlace &place, std::span<const MeasRow> rows, std::size_t index) {
    if ((place.row.fcdType != CdcHWYE && place.row.fcdType != CdcHDEL) || place.fcd == nullptr) {
        dbInfo(DbUPD, DbERR, "walkMeasTable", "%s: entry model_arr_vec fcdtype error",
               measTableName(place.pass.table));
        return !place.active && !place.pass.stopOnWrongArray;
    }
    auto *record = reinterpret_cast<HWYE *>(place.fcd);
    if (place.copy) {
        copyArray(place, record);
    } else if (!place.active) {
        invalidateArray(place, record, !hasSameFcdAddr(rows, index));
    }
    return true;
}

} // namespace

int walkMeasTable(std::span<const MeasRow> rows, const MeasPass &pass) {
    for (std::size_t i = 0; i < rows.size() && rows[i].srcAddr != nullptr && rows[i].modelAddr != nullptr;
         i++) {
        const MeasRow &row = rows[i];
        const bool active = row.wiring == anyWiring || (row.wiring == pass.wiring && row.wiring != never);
        const RowPlace place{row,
                             pass,
                             row.modelAddr + pass.targetShift,
                             row.srcAddr + pass.sourceShift,
                             row.fcdAddr != nullptr ? row.fcdAddr + pass.targetShift : nullptr,
                             active,
                             active && pass.mode != RefreshInvalidate};
        bool good;
        if (row.prototype == ProtoMV && pass.values) {
            valueRow(place);
            good = true;
        } else if (row.prototype == ProtoCMV) {
            good = vectorRow(place);
        } else if (row.prototype == ProtoArray && pass.arrays) {
            good = arrayRow(place, rows, i);
        } else {
            good = noSuch("prototype", pass.table);
        }
        if (!good) {
            return 0;
        }
    }
    return 1;
}

} // namespace ied
