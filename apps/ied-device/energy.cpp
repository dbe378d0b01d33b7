#include "ied-device/energy.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace ied::instrument {

namespace {

constexpr EnergyRow single[] = {
    {"DmdWh", 16639556},     {"SupWh", 16639564},   {"TotWh", 16639572},   {"SumWh", 16639580},
    {"DmdVArh", 16639588},   {"SupVArh", 16639596}, {"TotVArh", 16639604}, {"SumVArh", 16639612},
    {"TotVAh", 16639620},    {"DmdWhD", 16639628},  {"SupWhD", 16639636},  {"DmdVArhD", 16639660},
    {"SupVArhD", 16639668},  {"DmdWhHt", 16639700}, {"SupWhHt", 16639708}, {"DmdVArhHt", 16639732},
    {"SupVArhHt", 16639740},
};
constexpr u32 firstOrderWh = 16639772;
constexpr u32 firstOrderVArh = 16639804;
constexpr u32 orderStride = 72;

std::array<EnergyRow, EnergyCount> makeRows() {
    std::array<EnergyRow, EnergyCount> rows{};
    for (u32 i = 0; i < EHarmonicWh; i++) {
        rows[i] = single[i];
    }
    for (u32 h = firstEnergyOrder; h <= lastEnergyOrder; h++) {
        const u32 i = h - firstEnergyOrder;
        EnergyRow &active = rows[EHarmonicWh + i];
        EnergyRow &reactive = rows[EHarmonicVArh + i];
        std::snprintf(active.name, sizeof active.name, "DmdWhH%u", h % 100);
        std::snprintf(reactive.name, sizeof reactive.name, "DmdVArhH%u", h % 100);
        active.place = firstOrderWh + orderStride * i;
        reactive.place = firstOrderVArh + orderStride * i;
    }
    return rows;
}

// Adds to the imported or to the exported energy, which stand next to each other.
void addDirected(Energies *energies, int imported, f64 energy) {
    energies->value[energy >= 0 ? imported : imported + 1] += std::fabs(energy);
}

void addUp(Energies *energies, int imported, int total, int net) {
    const f64 *value = energies->value;
    energies->value[total] = value[imported] + value[imported + 1];
    energies->value[net] = value[imported] - value[imported + 1];
}

} // namespace

std::span<const EnergyRow, EnergyCount> energyRows() {
    static const std::array<EnergyRow, EnergyCount> rows = makeRows();
    return rows;
}

void integrate(Energies *energies, const Quantities &quantities, f64 seconds) {
    const f64 kilohours = seconds / 3.6e6;
    const f64 *value = quantities.value;
    addDirected(energies, EDmdWh, value[QTotW] * kilohours);
    addDirected(energies, EDmdVArh, value[QTotVAr] * kilohours);
    addUp(energies, EDmdWh, ETotWh, ESumWh);
    addUp(energies, EDmdVArh, ETotVArh, ESumVArh);
    energies->value[ETotVAh] += value[QTotVA] * kilohours;
    addDirected(energies, EDmdWhD, quantities.harmonicW[1] * kilohours);
    addDirected(energies, EDmdVArhD, quantities.harmonicVAr[1] * kilohours);
    f64 active = 0;
    f64 reactive = 0;
    for (int h = 2; h < orders; h++) {
        active += quantities.harmonicW[h];
        reactive += quantities.harmonicVAr[h];
        if (h <= lastEnergyOrder) {
            energies->value[EHarmonicWh + h - 2] += std::fmax(0, quantities.harmonicW[h]) * kilohours;
            energies->value[EHarmonicVArh + h - 2] += std::fmax(0, quantities.harmonicVAr[h]) * kilohours;
        }
    }
    addDirected(energies, EDmdWhHt, active * kilohours);
    addDirected(energies, EDmdVArhHt, reactive * kilohours);
}

u32 registerContent(f64 energy) {
    return static_cast<u32>(static_cast<u64>(static_cast<i64>(std::floor(energy))));
}

} // namespace ied::instrument
