#include "ied-device/quantities.h"

#include "ied-device/harmonics.h"

#include <cmath>
#include <numbers>

namespace ied::instrument {

namespace {

struct Power {
    f64 active;
    f64 reactive;
    f64 apparent;
};

f64 degrees(const Phasor &phasor) {
    const f64 angle = std::arg(phasor) * 180 / std::numbers::pi;
    return angle < 0 ? angle + 360 : angle;
}

// Apparent power is the product of the RMS values; what of it is not active is reactive power, with
// the sign of the fundamental's.
Power phasePower(const Spectrum &u, const Spectrum &i) {
    f64 active = 0;
    for (int h = 0; h < orders; h++) {
        active += std::real(u.order[h] * std::conj(i.order[h]));
    }
    const f64 apparent = rms(u) * rms(i);
    const f64 rest = std::sqrt(std::fmax(0, apparent * apparent - active * active));
    return {active, std::copysign(rest, std::imag(u.order[1] * std::conj(i.order[1]))), apparent};
}

Power fundamentalPower(const Spectrum &u, const Spectrum &i) {
    const Phasor power = u.order[1] * std::conj(i.order[1]);
    return {power.real(), power.imag(), std::abs(power)};
}

f64 powerFactor(const Power &power, u16 sign) {
    if (power.apparent <= 0) {
        return 0;
    }
    const f64 factor = power.active / power.apparent;
    if (sign == 0) {
        return factor;
    }
    const bool lagging = power.active * power.reactive > 0;
    return std::copysign(factor, lagging == (sign == 1) ? -1.0 : 1.0);
}

struct PowerPlaces {
    Quantity active, reactive, apparent, factor;
};
constexpr PowerPlaces allPlaces{QW, QVAr, QVA, QPF};
constexpr PowerPlaces fundamentalPlaces{QDW, QDVAr, QDVA, QDPF};

void storePower(f64 *value, const PowerPlaces &places, int index, const Power &power, u16 sign) {
    value[places.active + index] = power.active;
    value[places.reactive + index] = power.reactive;
    value[places.apparent + index] = power.apparent;
    value[places.factor + index] = powerFactor(power, sign);
}

// Phases and their total; the total stands at index 3.
void storePowers(f64 *value, const PowerPlaces &places, const Power *phases, const Method &method) {
    Power total{};
    for (int p = 0; p < 3; p++) {
        total.active += phases[p].active;
        total.reactive += phases[p].reactive;
        total.apparent += phases[p].apparent;
        if (!method.delta) {
            storePower(value, places, p, phases[p], method.powerFactorSign);
        }
    }
    if (!method.scalarPower) {
        total.apparent = std::hypot(total.active, total.reactive);
    }
    storePower(value, places, 3, total, method.powerFactorSign);
}

// Positive, negative and zero sequence of three fundamentals.
void storeSequences(f64 *value, Quantity first, Quantity negativeRatio, Quantity zeroRatio,
                    const Spectrum *phases) {
    const Phasor a = std::polar(1.0, 2 * std::numbers::pi / 3);
    const Phasor &x = phases[0].order[1];
    const Phasor &y = phases[1].order[1];
    const Phasor &z = phases[2].order[1];
    const f64 positive = std::abs(x + a * y + a * a * z) / 3;
    const f64 negative = std::abs(x + a * a * y + a * z) / 3;
    const f64 zero = std::abs(x + y + z) / 3;
    value[first] = positive;
    value[first + 1] = negative;
    value[first + 2] = zero;
    value[negativeRatio] = positive > 0 ? negative / positive : 0;
    value[zeroRatio] = positive > 0 ? zero / positive : 0;
}

f64 mean(const f64 *three) {
    return (three[0] + three[1] + three[2]) / 3;
}

// Distortions and spectra of one channel; `c` counts within voltages or currents.
void storeChannel(Quantities *out, const Spectrum &spectrum, bool isVoltage, int c, const Method &method) {
    struct Places {
        Quantity all, odd, even, interAll, interOdd, interEven, fundamental;
    };
    constexpr Places voltagePlaces{QThdV, QThdOddV, QThdEvnV, QIThdV, QIThdOddV, QIThdEvnV, QDV};
    constexpr Places currentPlaces{QThdA, QThdOddA, QThdEvnA, QIThdA, QIThdOddA, QIThdEvnA, QDA};
    const Places &places = isVoltage ? voltagePlaces : currentPlaces;
    const f64 fundamental = std::abs(spectrum.order[1]);
    const f64 base = method.rmsBase ? rms(spectrum) : fundamental;
    const f64 ratio = base > 0 ? 1 / base : 0;
    f64 *value = out->value;
    value[places.all + c] = distortion(spectrum, Orders::All) * ratio;
    value[places.odd + c] = distortion(spectrum, Orders::Odd) * ratio;
    value[places.even + c] = distortion(spectrum, Orders::Even) * ratio;
    value[places.interAll + c] = interDistortion(spectrum, Orders::All) * ratio;
    value[places.interOdd + c] = interDistortion(spectrum, Orders::Odd) * ratio;
    value[places.interEven + c] = interDistortion(spectrum, Orders::Even) * ratio;
    value[places.fundamental + c] = fundamental;
    const bool absolute = isVoltage ? method.absoluteVolts : method.absoluteAmperes;
    const int channel = isVoltage ? c : conductors + c;
    for (int h = 0; h < orders; h++) {
        out->spectrum[channel][h] = std::abs(spectrum.order[h]) * (absolute ? 1 : ratio);
        out->inter[channel][h] = spectrum.inter[h] * (absolute ? 1 : ratio);
    }
    out->angle[channel] = degrees(spectrum.order[1]);
}

void storeHarmonicPowers(Quantities *out, const Phasors &phasors) {
    for (int h = 0; h < orders; h++) {
        for (int p = 0; p < 3; p++) {
            const Phasor power = phasors.voltage[p].order[h] * std::conj(phasors.current[p].order[h]);
            out->harmonicW[h] += power.real();
            out->harmonicVAr[h] += power.imag();
        }
    }
}

} // namespace

Quantities measure(const Phasors &phasors, const Method &method) {
    Quantities out{};
    f64 *value = out.value;
    Spectrum lines[3];
    Power power[3];
    Power fundamental[3];
    for (int p = 0; p < 3; p++) {
        lines[p] = difference(phasors.voltage[p], phasors.voltage[(p + 1) % 3]);
        power[p] = phasePower(phasors.voltage[p], phasors.current[p]);
        fundamental[p] = fundamentalPower(phasors.voltage[p], phasors.current[p]);
        value[QPPV + p] = rms(lines[p]);
        value[QA + p] = rms(phasors.current[p]);
        value[QPhV + p] = method.delta ? 0 : rms(phasors.voltage[p]);
        const f64 rated = method.ratedVolts * (method.delta ? std::numbers::sqrt3 : 1);
        const f64 volts = value[(method.delta ? QPPV : QPhV) + p];
        value[QVDev + p] = rated > 0 ? (volts - rated) / rated : 0;
    }
    value[QPhV + 3] = rms(phasors.voltage[3]);
    value[QA + 3] = rms(phasors.current[3]);
    value[QAvgPhV] = mean(value + QPhV);
    value[QAvgPPV] = mean(value + QPPV);
    value[QAvgA] = mean(value + QA);
    value[QHz] = phasors.hertz;
    value[QHzDev] = phasors.hertz - method.ratedHertz;
    storePowers(value, allPlaces, power, method);
    storePowers(value, fundamentalPlaces, fundamental, method);
    storeSequences(value, QSeqV, QImbNgV, QImbZrV, phasors.voltage);
    storeSequences(value, QSeqA, QImbNgA, QImbZrA, phasors.current);
    for (int c = 0; c < conductors; c++) {
        const bool isLine = method.delta && c < 3;
        storeChannel(&out, isLine ? lines[c] : phasors.voltage[c], true, c, method);
        storeChannel(&out, phasors.current[c], false, c, method);
        value[QKf + c] = kFactor(phasors.current[c]);
    }
    const f64 reference = out.angle[0];
    for (f64 &angle : out.angle) {
        angle = angle < reference ? angle - reference + 360 : angle - reference;
    }
    value[QAvgDV] = mean(value + QDV);
    value[QAvgDA] = mean(value + QDA);
    storeHarmonicPowers(&out, phasors);
    return out;
}

} // namespace ied::instrument
