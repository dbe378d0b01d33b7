#include "ied-device/regionWriter.h"

#include "ied-device/quantityTable.h"

#include <cmath>

namespace ied::instrument {

namespace {

void storeReal(Region region, u32 place, f64 value) {
    storeAt<f32>(region, place, static_cast<f32>(value));
}

void writeFlicker(Region region, std::span<const FlickerRow> rows, const f64 *phases) {
    for (const FlickerRow &row : rows) {
        storeReal(region, row.place, *phases++);
    }
}

void storeExtreme(Region region, u32 place, const Extreme &extreme) {
    storeReal(region, place, extreme.value);
    storeTimeAt(region, place + 4, extreme.time);
}

Extreme loadExtreme(Region region, u32 place) {
    return {loadAt<f32>(region, place),
            {loadAt<u32>(region, place + 4), loadAt<u32>(region, place + 8), loadAt<u8>(region, place + 12)}};
}

} // namespace

void writeRealTime(Region region, const Quantities &quantities, const TimeStamp &time) {
    store(region, region::realTimeTime, time);
    for (const QuantityRow &row : quantityRows()) {
        storeReal(region, row.realTime, quantities.value[row.quantity]);
    }
    for (int c = 0; c < channels; c++) {
        const SpectrumRow &row = spectrumRow(c);
        for (u32 i = 0; i < orders; i++) {
            storeReal(region, row.realTime + 4 * i, quantities.spectrum[c][i]);
            storeReal(region, row.inter + 4 * i, quantities.inter[c][i]);
        }
    }
    for (const AngleRow &row : angleRows()) {
        const long hundredths = std::lround(quantities.angle[row.channel] * 100) % 36000;
        storeAt<u16>(region, row.realTime, static_cast<u16>(hundredths));
    }
}

void writeShortTerm(Region region, const f64 *phases, const TimeStamp &time) {
    store(region, region::pstTime, time);
    writeFlicker(region, shortTermRows(), phases);
}

void writeLongTerm(Region region, const f64 *phases, const TimeStamp &time) {
    store(region, region::pltTime, time);
    writeFlicker(region, longTermRows(), phases);
}

void writeEnergy(Region region, const Energies &energies, const TimeStamp &time) {
    store(region, region::energyTime, time);
    const f64 *value = energies.value;
    for (const EnergyRow &row : energyRows()) {
        storeAt<u32>(region, row.place, registerContent(*value++));
    }
}

void writeDemand(Region region, const DemandPeriod &window, const TimeStamp &time) {
    store(region, region::demandTime, time);
    const auto put = [&](u32 place, int index) {
        const auto i = static_cast<std::size_t>(index);
        storeReal(region, place, periodMean(window, index));
        storeReal(region, place + demandLowest, window.lowest[i]);
        storeReal(region, place + demandHighest, window.highest[i]);
    };
    for (const QuantityRow &row : quantityRows()) {
        if (row.demand != 0) {
            put(row.demand, row.quantity);
        }
    }
    for (int c = 0; c < channels; c++) {
        for (int h = demandFirstOrder; h < orders; h++) {
            put(spectrumRow(c).demand + demandSpectrumStride * static_cast<u32>(h - demandFirstOrder),
                demandPlace(c, h));
        }
    }
}

void writePredicted(Region region, const f64 *means, const TimeStamp &time) {
    store(region, region::preDemandTime, time);
    for (const QuantityRow &row : quantityRows()) {
        if (row.predicted != 0) {
            storeReal(region, row.predicted, means[row.quantity]);
        }
    }
}

void writeExtremes(Region region, const MonthExtremes &month, bool isLast, bool delta) {
    const u32 shift = isLast ? extremeLastMonth : 0;
    for (const QuantityRow &row : quantityRows()) {
        const int place = extremePlace(row.quantity, delta);
        if (row.extreme != 0) {
            storeExtreme(region, row.extreme + shift, month.highest[place]);
            storeExtreme(region, row.extreme + shift + extremeLowest, month.lowest[place]);
        }
        if (row.maxDemand != 0) {
            storeExtreme(region, row.maxDemand + shift, month.demand[place]);
        }
    }
}

Energies readEnergies(Region region) {
    Energies energies;
    f64 *value = energies.value;
    for (const EnergyRow &row : energyRows()) {
        *value++ = loadAt<u32>(region, row.place);
    }
    return energies;
}

MonthExtremes readExtremes(Region region, bool isLast, bool delta) {
    MonthExtremes month{};
    const u32 shift = isLast ? extremeLastMonth : 0;
    for (const QuantityRow &row : quantityRows()) {
        const int place = extremePlace(row.quantity, delta);
        if (row.extreme != 0) {
            month.highest[place] = loadExtreme(region, row.extreme + shift);
            month.lowest[place] = loadExtreme(region, row.extreme + shift + extremeLowest);
        }
        if (row.maxDemand != 0) {
            month.demand[place] = loadExtreme(region, row.maxDemand + shift);
        }
    }
    return month;
}

} // namespace ied::instrument
