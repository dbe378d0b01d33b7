#include "ied-device/monitored.h"

#include "ied-device/quantityTable.h"

#include <algorithm>

namespace ied::instrument {

namespace {

enum class From : u8 {
    Nothing,
    Measured,
    Demand,
    Predicted,
    Input,    // `first` is its number from 0
    Sequence, // reverse phase sequence
};

struct ObjectRow {
    From from;
    u16 first; // quantity
    u16 count; // phases
};

constexpr u32 firstHarmonicObject = 39;
constexpr u32 firstHarmonicOrder = 2;

constexpr ObjectRow objects[firstHarmonicObject] = {
    {From::Nothing, 0, 0},         {From::Measured, QPhV, 3},     {From::Measured, QPPV, 3},
    {From::Measured, QA, 3},       {From::Measured, QPhV + 3, 1}, {From::Measured, QA + 3, 1},
    {From::Measured, QHzDev, 1},   {From::Measured, QTotW, 1},    {From::Measured, QTotVAr, 1},
    {From::Measured, QTotVA, 1},   {From::Measured, QTotPF, 1},   {From::Input, 0, 1},
    {From::Input, 1, 1},           {From::Input, 2, 1},           {From::Input, 3, 1},
    {From::Input, 4, 1},           {From::Input, 5, 1},           {From::Input, 6, 1},
    {From::Input, 7, 1},           {From::Demand, QTotW, 1},      {From::Demand, QTotVAr, 1},
    {From::Demand, QTotVA, 1},     {From::Demand, QTotPF, 1},     {From::Predicted, QTotW, 1},
    {From::Predicted, QTotVAr, 1}, {From::Predicted, QTotVA, 1},  {From::Predicted, QTotPF, 1},
    {From::Measured, QThdV, 3},    {From::Measured, QThdOddV, 3}, {From::Measured, QThdEvnV, 3},
    {From::Measured, QThdA, 3},    {From::Measured, QThdOddA, 3}, {From::Measured, QThdEvnA, 3},
    {From::Measured, QImbNgV, 1},  {From::Measured, QImbZrV, 1},  {From::Measured, QImbNgA, 1},
    {From::Measured, QImbZrA, 1},  {From::Measured, QVDev, 3},    {From::Sequence, 0, 1},
};

Monitored among(const f64 *values, u32 count) {
    return {*std::min_element(values, values + count), *std::max_element(values, values + count), false};
}

Monitored stateOf(bool active) {
    const f64 value = active ? 1 : 0;
    return {value, value, true};
}

// What the region shows of a quantity, at the place that `place` gives.
Monitored shown(Region region, u32 QuantityRow::*place, u16 quantity) {
    for (const QuantityRow &row : quantityRows()) {
        if (row.quantity == quantity) {
            const f64 value = loadAt<f32>(region, row.*place);
            return {value, value, false};
        }
    }
    return {};
}

Monitored harmonic(const Quantities &quantities, u32 object) {
    const u32 order = firstHarmonicOrder + (object - firstHarmonicObject) / 2;
    const u32 first = (object - firstHarmonicObject) % 2 == 0 ? 0 : conductors;
    f64 values[3];
    for (u32 p = 0; p < 3; p++) {
        values[p] = quantities.spectrum[first + p][order];
    }
    return among(values, 3);
}

std::optional<Monitored> measured(const Instrument &instrument, const ObjectRow &row, bool fast) {
    if (!isGiven(row.first, instrument.method.delta)) {
        return std::nullopt;
    }
    if (fast && (row.first == QPhV || row.first == QPPV)) {
        return among(row.first == QPhV ? instrument.phaseVolts : instrument.lineVolts, row.count);
    }
    return among(instrument.quantities.value + row.first, row.count);
}

} // namespace

std::optional<Monitored> monitored(const Instrument &instrument, u32 object, bool fast) {
    const Region region = instrument.shared.region;
    if (object >= firstHarmonicObject) {
        return object < monitoredObjects ? std::optional(harmonic(instrument.quantities, object))
                                         : std::nullopt;
    }
    const ObjectRow &row = objects[object];
    switch (row.from) {
    case From::Measured:
        return measured(instrument, row, fast);
    case From::Demand:
        return shown(region, &QuantityRow::demand, row.first);
    case From::Predicted:
        return shown(region, &QuantityRow::predicted, row.first);
    case From::Input:
        if (load(region, region::DIMod, row.first) != 0) {
            return std::nullopt;
        }
        return stateOf((load(region, region::diState) >> row.first & 1) != 0);
    case From::Sequence:
        return stateOf(instrument.quantities.value[QSeqV + 1] > instrument.quantities.value[QSeqV]);
    case From::Nothing:
        break;
    }
    return std::nullopt;
}

} // namespace ied::instrument
