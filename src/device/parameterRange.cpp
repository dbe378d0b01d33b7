// Which values a parameter may have.
#include "DebugInfo/DebugInfo.h"
#include "device/parameterMapLines.h"
#include "device/parameterMaps.h"
#include "device/region.h"

#include <algorithm>
#include <array>

namespace ied {

namespace {

i32 underEdit(const ING &setting) {
    return loadShared(setting.setVal[SetSE]);
}

bool isBetween(f64 value, f64 least, f64 greatest) {
    return value >= least && value <= greatest;
}

// Day of the month in hundreds and hour, at which the month is settled; `never` for none.
bool isSettleTime(f64 value) {
    constexpr f64 never = 65535;
    constexpr u32 lastDay = 28;
    if (!isBetween(value, 0, never)) {
        return false;
    }
    const u32 time = static_cast<u32>(value);
    const u32 day = time / 100;
    const u32 hour = time % 100;
    return value == never || (day <= lastDay && hour < 24 && (day != 0 || hour == 0));
}

// The records of the two wave groups share one memory.
bool isRecordNumber() {
    constexpr i64 records = 128;
    const i64 first = underEdit(mirror<ING>("SET.wave1.MaxNumRcd"));
    const i64 second = underEdit(mirror<ING>("SET.wave2.MaxNumRcd"));
    return first >= 0 && second >= 0 && first + second <= records;
}

// Each step of the sampling rate doubles the samples of a cycle.
bool isPreCycles(f64 value, const ING &samplingRate) {
    constexpr u32 most = 192;
    constexpr i32 lastRate = 5;
    const i32 rate = underEdit(samplingRate);
    return value >= 2 && (rate < 0 || rate > lastRate || value <= most >> rate);
}

// The functions of the inputs under edit.
const std::array<i32 *, region::DIMod.count> diFunction = [] {
    std::array<i32 *, region::DIMod.count> fields;
    for (u32 i = 0; i < fields.size(); i++) {
        fields[i] = &mirrorRow<ING>("SET.IO.DIMod1")[i].setVal[SetSE];
    }
    return fields;
}();

bool isInputFunction(f64 value) {
    constexpr i32 demandSynchronisation = 2;
    constexpr i32 timeSynchronisation = 3;
    const auto inputs = [](i32 function) {
        return std::ranges::count_if(diFunction,
                                     [function](const i32 *mode) { return loadShared(*mode) == function; });
    };
    if (!isBetween(value, 0, timeSynchronisation)) {
        return false;
    }
    if (inputs(timeSynchronisation) > 1 || inputs(demandSynchronisation) > 1) {
        dbInfo(DbUPD, DbERR, "refreshPara",
               "One more DI function para set to DI_FUNC_TIME_SYN or DI_FUNC_DEMAND_SYN!");
        return false;
    }
    return true;
}

// The higher the rated power, the fewer pulses a unit of energy may make.
bool isPulseFactor(f64 value) {
    const u32 volt = static_cast<u32>(underEdit(mirror<ING>("SET.sys.RtgVolt")));
    const u16 power = static_cast<u16>(regionRatedAmperes() * volt);
    const i32 most = power <= 500 ? 4 : power <= 690 ? 2 : power <= 1900 ? 1 : 0;
    return isBetween(value, 0, most);
}

bool isTimeSource(f64 value) {
    switch (regionLoad(region::timeSource)) {
    case 0:
        return value == 0 || value == 1 || value == 3;
    case 1:
        return isBetween(value, 0, 4);
    default:
        return true;
    }
}

// The offset of a snapshot group within its interval, which is taken as it stands in the edit area.
bool isSnapOffset(const ParaMap &row, f64 value) {
    constexpr f64 halfADay = 43200;
    const u8 *interval =
        comdata + region::editArea + row.srcOffset - paraLines::snapOfsTm + paraLines::snapLogIntv;
    const u16 lowHalf = static_cast<u16>(loadShared(*reinterpret_cast<const u32 *>(interval)));
    return isBetween(value, 0, std::min<f64>(halfADay, lowHalf));
}

bool passes(const ParaMap &row, f64 value) {
    switch (row.rangeMin) {
    case RangeSettleTime:
        return isSettleTime(value);
    case RangeAny:
        return true;
    case RangeMaxNumRcd:
        return isRecordNumber();
    case RangePreCyc1:
        return isPreCycles(value, mirror<ING>("SET.wave1.SmpRat"));
    case RangePreCyc2:
        return isPreCycles(value, mirror<ING>("SET.wave2.SmpRat"));
    case RangeSnapLogMod:
        return value == 0;
    case RangeClcTotVA:
        return isBetween(value, 1, 2);
    case RangePFSign:
        return isBetween(value, 1, 3);
    case RangeIntrStrVar:
        return isBetween(value, 0, 50) &&
               value < static_cast<f64>(loadShared(mirror<ASG>("SET.sys.DipStrVar").setMag[SetSE]));
    case RangeDIMod:
        return isInputFunction(value);
    case RangeTransTrg:
        return isBetween(value, 0, 6) || isBetween(value, 31, 35);
    case RangeEngPlsFac:
        return isPulseFactor(value);
    case RangeTmSrc:
        return isTimeSource(value);
    case RangeSnapOfsTm:
        return isSnapOffset(row, value);
    default:
        dbInfo(DbUPD, DbERR, "refreshPara", "No such para range type!");
        return false;
    }
}

} // namespace

bool isParaInRange(const ParaMap &row, f64 value) {
    if (row.rangeMin != row.rangeMax) {
        return isBetween(value, row.rangeMin, row.rangeMax);
    }
    return passes(row, value);
}

} // namespace ied
