// Energy registers: integrals of the powers. The instrument counts whole kWh, kvarh and kVAh in
// registers of 32 bits that roll over.
#pragma once

#include "ied-device/quantities.h"

#include <span>

namespace ied::instrument {

enum EnergyRegister : u8 {
    EDmdWh,
    ESupWh,
    ETotWh,
    ESumWh,
    EDmdVArh,
    ESupVArh,
    ETotVArh,
    ESumVArh,
    ETotVAh,
    EDmdWhD,
    ESupWhD,
    EDmdVArhD,
    ESupVArhD,
    EDmdWhHt,
    ESupWhHt,
    EDmdVArhHt,
    ESupVArhHt,
    EHarmonicWh, // orders 2 to 31
    EHarmonicVArh = EHarmonicWh + 30,
    EnergyCount = EHarmonicVArh + 30,
};
inline constexpr int firstEnergyOrder = 2;
inline constexpr int lastEnergyOrder = 31;

struct EnergyRow {
    char name[12]; // of the data behind the model
    u32 place;     // u32 in the region
};
// One row a register, in the order of EnergyRegister.
std::span<const EnergyRow, EnergyCount> energyRows();

// Energies in kWh, kvarh and kVAh. Imported and exported ones only grow; "Tot" is their sum, "Sum"
// imported less exported.
struct Energies {
    f64 value[EnergyCount];
};

// The energies of `seconds` more at these powers.
void integrate(Energies *energies, const Quantities &quantities, f64 seconds);

// The register's content: whole units, modulo 2^32 also for a negative net energy.
u32 registerContent(f64 energy);

} // namespace ied::instrument
