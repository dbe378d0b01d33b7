#include "ied-device/grid.h"

#include <cmath>
#include <numbers>

namespace ied::instrument {

namespace {

constexpr f64 turn = 2 * std::numbers::pi;

f64 phaseAngle(const Grid &grid, int phase) {
    constexpr f64 angles[3] = {0, -turn / 3, turn / 3};
    return grid.reversed ? -angles[phase] : angles[phase];
}

struct Usual {
    int order;
    f64 voltage; // percent of the fundamental
    f64 current;
};

// What rectifiers and lighting leave on a low-voltage network.
constexpr Usual usual[] = {
    {2, 0.10, 0.40},  {3, 0.45, 5.50},  {4, 0.06, 0.20},  {5, 1.60, 7.80},  {7, 0.95, 3.90},
    {9, 0.22, 1.40},  {11, 0.48, 2.10}, {13, 0.36, 1.30}, {15, 0.10, 0.45}, {17, 0.21, 0.80},
    {19, 0.16, 0.60}, {23, 0.12, 0.40}, {25, 0.10, 0.33}, {29, 0.07, 0.21}, {31, 0.06, 0.18},
};

// A slow wave between -1 and 1 with the given period in seconds, shifted for each `which`.
f64 wave(f64 seconds, f64 period, f64 which) {
    return 0.6 * std::sin(turn * (seconds / period + which)) +
           0.4 * std::sin(turn * (seconds / (period * 0.2763) + 2.3 * which));
}

// Orders without a figure of their own still carry a little that falls with the order.
Harmonic residue(int order, f64 ratio) {
    return {ratio / (order * order), 0.7 * order};
}

// The fundamental of a phase's voltage from its symmetrical components.
Phasor fundamental(const Grid &grid, f64 volts, int phase) {
    const Phasor positive = std::polar(volts, phaseAngle(grid, phase));
    const Phasor negative = std::polar(volts * grid.negativeSequence, -phaseAngle(grid, phase) + 0.4);
    const Phasor zero = std::polar(volts * grid.zeroSequence, 1.1);
    return positive + negative + zero;
}

void fillHarmonics(Spectrum *spectrum, const Harmonic *harmonics, f64 base, f64 angle, f64 drift) {
    for (int h = 2; h < orders; h++) {
        spectrum->order[h] = std::polar(base * harmonics[h].ratio * drift, h * angle + harmonics[h].angle);
    }
}

void fillInter(Spectrum *spectrum, f64 base, f64 ratio) {
    for (int i = 0; i < orders; i++) {
        spectrum->inter[i] = base * ratio / (1.0 + 0.5 * i);
    }
}

void scale(Spectrum *spectrum, f64 share) {
    for (int h = 0; h < orders; h++) {
        spectrum->order[h] *= share;
        spectrum->inter[h] *= share;
    }
}

// Takes the part that is equal in all three phases out of them.
void removeZeroSequence(Spectrum *phases) {
    for (int h = 0; h < orders; h++) {
        const Phasor zero = (phases[0].order[h] + phases[1].order[h] + phases[2].order[h]) / 3.0;
        for (int p = 0; p < 3; p++) {
            phases[p].order[h] -= zero;
        }
    }
}

// The fourth conductor: `share` of the sum of the phases. Interharmonics of the phases have no
// common phase and add by their powers.
void fillNeutral(Spectrum *phases, f64 share) {
    for (int h = 0; h < orders; h++) {
        phases[3].order[h] = (phases[0].order[h] + phases[1].order[h] + phases[2].order[h]) * share;
        phases[3].inter[h] = std::hypot(phases[0].inter[h], phases[1].inter[h], phases[2].inter[h]) * share;
    }
}

} // namespace

Grid usualGrid(f64 volts, f64 hertz, f64 amperes) {
    Grid grid;
    grid.volts = volts;
    grid.hertz = hertz;
    for (int h = 2; h < orders; h++) {
        grid.voltage[h] = residue(h, 0.02);
        grid.current[h] = residue(h, 0.06);
    }
    for (const Usual &row : usual) {
        grid.voltage[row.order] = {row.voltage / 100, 0.5 * row.order};
        grid.current[row.order] = {row.current / 100, 0.5 * row.order + 0.3};
    }
    constexpr f64 shares[3] = {1.0, 0.94, 1.07};
    constexpr f64 angles[3] = {0.36, 0.40, 0.33};
    for (int p = 0; p < 3; p++) {
        grid.load[p] = {amperes * shares[p], angles[p]};
    }
    return grid;
}

Phasors phasorsAt(const Grid &grid, f64 seconds, bool threeWire) {
    Phasors out{};
    const f64 moves = grid.drift ? 1.0 : 0.0;
    out.hertz = grid.hertz + moves * 0.015 * wave(seconds, 97, 0);
    constexpr f64 flickerShares[3] = {1.0, 0.96, 1.04};
    out.flickerRate = grid.flickerRate;
    const f64 volts = grid.volts * grid.level * (1 + moves * 0.008 * wave(seconds, 611, 0.1));
    for (int p = 0; p < 3; p++) {
        Spectrum &u = out.voltage[p];
        Spectrum &i = out.current[p];
        const f64 pollution = 1 + moves * 0.05 * wave(seconds, 389, 0.2 * p);
        const f64 amperes = grid.load[p].amperes * (1 + moves * 0.09 * wave(seconds, 733, 0.31 * p));
        const f64 lag = grid.load[p].angle + moves * 0.03 * wave(seconds, 523, 0.17 * p);
        const f64 angle = phaseAngle(grid, p);
        u.order[1] = fundamental(grid, volts, p);
        i.order[1] = std::polar(amperes, std::arg(u.order[1]) - lag);
        fillHarmonics(&u, grid.voltage, volts, angle, pollution);
        fillHarmonics(&i, grid.current, amperes, angle, pollution);
        fillInter(&u, volts, grid.interVoltage * pollution);
        fillInter(&i, amperes, grid.interCurrent * pollution);
        out.flickerDepth[p] =
            grid.flickerDepth * flickerShares[p] * (1 + moves * 0.1 * wave(seconds, 2900, 0.3));
        u.order[0] = volts * 0.0002;
        i.order[0] = amperes * 0.001;
        scale(&u, grid.share[p]);
        scale(&i, grid.share[p]);
    }
    if (threeWire) {
        removeZeroSequence(out.voltage);
        removeZeroSequence(out.current);
        return out;
    }
    fillNeutral(out.voltage, 1.0 / 3);
    fillNeutral(out.current, 1.0);
    return out;
}

} // namespace ied::instrument
