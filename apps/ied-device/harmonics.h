// Figures of one channel's spectrum (IEC 61000-4-7, IEC 61000-4-30).
#pragma once

#include "ied-device/grid.h"

namespace ied::instrument {

// RMS value with everything in it: direct part, harmonics and interharmonic groups.
f64 rms(const Spectrum &spectrum);

enum class Orders : u8 {
    All,
    Odd,
    Even,
};

// RMS value of the harmonics from order 2 on.
f64 distortion(const Spectrum &spectrum, Orders which);
// RMS value of the interharmonic groups from group 1 on; the subharmonic group 0 stands alone.
f64 interDistortion(const Spectrum &spectrum, Orders which);

// K factor (losses of a transformer): sum of h^2 Ih^2 over sum of Ih^2, orders 1 to 63; 0 for no
// current.
f64 kFactor(const Spectrum &spectrum);

// The spectrum of the difference of two channels: a phase-to-phase voltage. Interharmonics add by
// their powers.
Spectrum difference(const Spectrum &a, const Spectrum &b);

} // namespace ied::instrument
