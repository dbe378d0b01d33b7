// The simulated instrument's figures against formulas of another kind: sums over sampled waveforms,
// the imbalance from three line voltages, the published points of the flicker curve.

#include "ied-device/demand.h"
#include "ied-device/energy.h"
#include "ied-device/flicker.h"
#include "ied-device/harmonics.h"
#include "ied-device/measuring.h"
#include "ied-device/methodChange.h"
#include "ied-device/quantities.h"
#include "ied-device/statistics.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <set>
#include <vector>

namespace ied::instrument {
namespace {

constexpr f64 pi = std::numbers::pi;
constexpr int samples = 1024; // of a cycle
constexpr Method wyeMethod{230, 50, false, false, false, false, false, 0, {}};

Method deltaMethod() {
    Method method = wyeMethod;
    method.delta = true;
    return method;
}

// A polluted, unbalanced grid without interharmonics, which no single cycle can show.
Grid testGrid() {
    Grid grid = usualGrid(230, 50, 80);
    grid.interVoltage = 0;
    grid.interCurrent = 0;
    grid.negativeSequence = 0.02;
    grid.load[1].amperes = 40;
    grid.load[2].angle = -0.5;
    return grid;
}

f64 at(const Spectrum &spectrum, int sample) {
    f64 sum = spectrum.order[0].real();
    for (int h = 1; h < orders; h++) {
        sum += std::numbers::sqrt2 * std::abs(spectrum.order[h]) *
               std::cos(2 * pi * h * sample / samples + std::arg(spectrum.order[h]));
    }
    return sum;
}

template <class Product> f64 cycleMean(const Product &product) {
    f64 sum = 0;
    for (int n = 0; n < samples; n++) {
        sum += product(n);
    }
    return sum / samples;
}

TEST(Quantities, AgreeWithTheSampledWaveforms) {
    const Phasors phasors = phasorsAt(testGrid(), 12345, false);
    const Quantities q = measure(phasors, wyeMethod);
    f64 total = 0;
    for (int p = 0; p < 3; p++) {
        const Spectrum &u = phasors.voltage[p];
        const Spectrum &next = phasors.voltage[(p + 1) % 3];
        const Spectrum &i = phasors.current[p];
        EXPECT_NEAR(q.value[QPhV + p], std::sqrt(cycleMean([&](int n) { return std::pow(at(u, n), 2); })),
                    1e-6);
        EXPECT_NEAR(q.value[QA + p], std::sqrt(cycleMean([&](int n) { return std::pow(at(i, n), 2); })),
                    1e-6);
        EXPECT_NEAR(q.value[QPPV + p],
                    std::sqrt(cycleMean([&](int n) { return std::pow(at(u, n) - at(next, n), 2); })), 1e-6);
        const f64 power = cycleMean([&](int n) { return at(u, n) * at(i, n); });
        EXPECT_NEAR(q.value[QW + p], power, 1e-3);
        EXPECT_NEAR(std::hypot(q.value[QW + p], q.value[QVAr + p]), q.value[QVA + p], 1e-6);
        EXPECT_NEAR(q.value[QPF + p], power / (q.value[QPhV + p] * q.value[QA + p]), 1e-9);
        total += power;
    }
    EXPECT_NEAR(q.value[QTotW], total, 1e-3);
    EXPECT_NEAR(q.value[QTotVA], std::hypot(q.value[QTotW], q.value[QTotVAr]), 1e-6);
    const f64 neutral = std::sqrt(cycleMean([&](int n) {
        return std::pow(at(phasors.current[0], n) + at(phasors.current[1], n) + at(phasors.current[2], n), 2);
    }));
    EXPECT_NEAR(q.value[QA + 3], neutral, 1e-6);
}

TEST(Quantities, OfThreeWiresAreThoseOfTwoWattmeters) {
    const Phasors phasors = phasorsAt(testGrid(), 777, true);
    const Quantities q = measure(phasors, deltaMethod());
    const f64 power = cycleMean([&](int n) {
        const f64 ac = at(phasors.voltage[0], n) - at(phasors.voltage[2], n);
        const f64 bc = at(phasors.voltage[1], n) - at(phasors.voltage[2], n);
        return ac * at(phasors.current[0], n) + bc * at(phasors.current[1], n);
    });
    EXPECT_NEAR(q.value[QTotW], power, 1e-3);
    EXPECT_NEAR(q.value[QSeqA + 2], 0, 1e-9);
    for (int p = 0; p < 3; p++) {
        EXPECT_EQ(q.value[QPhV + p], 0);
        EXPECT_EQ(q.value[QW + p], 0);
        EXPECT_NEAR(q.value[QVDev + p], q.value[QPPV + p] / (std::sqrt(3.0) * 230) - 1, 1e-12);
    }
}

TEST(Quantities, NegativeSequenceFollowsFromTheLineVoltages) {
    Grid grid = usualGrid(230, 50, 10);
    for (const f64 ratio : {0.0, 0.01, 0.03}) {
        grid.negativeSequence = ratio;
        const Phasors phasors = phasorsAt(grid, 0, false);
        const Quantities q = measure(phasors, wyeMethod);
        f64 squares = 0;
        f64 fourths = 0;
        for (int p = 0; p < 3; p++) {
            const f64 line = std::abs(phasors.voltage[p].order[1] - phasors.voltage[(p + 1) % 3].order[1]);
            squares += line * line;
            fourths += std::pow(line, 4);
        }
        const f64 root = std::sqrt(std::fmax(0, 3 - 6 * fourths / (squares * squares)));
        EXPECT_NEAR(q.value[QImbNgV], std::sqrt((1 - root) / (1 + root)), 1e-6); // IEC 61000-4-30 5.7.1
        EXPECT_NEAR(q.value[QImbNgV], ratio, 1e-9);
        EXPECT_NEAR(q.value[QImbZrV], grid.zeroSequence, 1e-9);
    }
}

TEST(Quantities, DistortionFollowsFromTheSpectrum) {
    const Phasors phasors = phasorsAt(usualGrid(230, 50, 80), 99, false);
    const Quantities q = measure(phasors, wyeMethod);
    Method absolute = wyeMethod;
    absolute.absoluteVolts = true;
    const Quantities volts = measure(phasors, absolute);
    for (int c = 0; c < conductors; c++) {
        f64 odd = 0;
        f64 even = 0;
        f64 inter = 0;
        f64 weighted = 0;
        f64 squares = 0;
        for (int h = 1; h < orders; h++) {
            const f64 u = q.spectrum[c][h];
            const f64 i = q.spectrum[conductors + c][h];
            (h % 2 ? odd : even) += h > 1 ? u * u : 0;
            inter += q.inter[c][h] * q.inter[c][h];
            weighted += std::pow(h * i, 2);
            squares += i * i;
            EXPECT_NEAR(volts.spectrum[c][h], u * q.value[QDV + c], 1e-9);
        }
        EXPECT_NEAR(q.spectrum[c][1], 1, 1e-12);
        EXPECT_NEAR(q.value[QThdOddV + c], std::sqrt(odd), 1e-12);
        EXPECT_NEAR(q.value[QThdEvnV + c], std::sqrt(even), 1e-12);
        EXPECT_NEAR(q.value[QThdV + c], std::sqrt(odd + even), 1e-12);
        EXPECT_NEAR(q.value[QIThdV + c], std::sqrt(inter), 1e-12);
        EXPECT_NEAR(q.value[QKf + c], weighted / squares, 1e-9);
    }
}

TEST(Quantities, AnglesAreRelativeToTheFirstVoltage) {
    Grid grid = usualGrid(230, 50, 80);
    grid.drift = false;
    grid.negativeSequence = grid.zeroSequence = 0;
    for (Load &load : grid.load) {
        load.angle = pi / 6;
    }
    const Quantities q = measure(phasorsAt(grid, 0, false), wyeMethod);
    const f64 expected[] = {0, 240, 120, 330, 210, 90};
    const int channel[] = {0, 1, 2, 4, 5, 6};
    for (int i = 0; i < 6; i++) {
        EXPECT_NEAR(std::remainder(q.angle[channel[i]] - expected[i], 360), 0, 1e-6)
            << "channel " << channel[i];
    }
    EXPECT_NEAR(q.value[QTotDPF], std::cos(pi / 6), 1e-9);
}

TEST(Flicker, IsOneOnThePublishedCurve) {
    struct Point {
        f64 rate, depth;
    };
    for (const Point &point :
         {Point{1, 2.724}, {2, 2.211}, {7, 1.459}, {39, 0.906}, {110, 0.725}, {1620, 0.402}}) {
        EXPECT_NEAR(shortTermSeverity(point.depth, point.rate), 1, 1e-9)
            << point.rate; // IEC 61000-4-15 table 5
        EXPECT_NEAR(shortTermSeverity(point.depth / 4, point.rate), 0.25, 1e-9);
    }
    EXPECT_GT(shortTermSeverity(1, 20), shortTermSeverity(1, 12)); // between the points it rises
    EXPECT_LT(shortTermSeverity(1, 20), shortTermSeverity(1, 30));
}

TEST(Flicker, LongTermIsTheCubicMean) {
    f64 values[12] = {};
    values[3] = 2;
    EXPECT_NEAR(longTermSeverity(values), std::cbrt(8.0 / 12), 1e-12);
    std::fill(std::begin(values), std::end(values), 0.7);
    EXPECT_NEAR(longTermSeverity(values), 0.7, 1e-12);
}

TEST(Energy, IsTheIntegralOfThePowerByDirection) {
    Quantities q{};
    q.value[QTotW] = 36000;
    q.value[QTotVAr] = -18000;
    q.value[QTotVA] = 40000;
    q.harmonicW[1] = 36100;
    q.harmonicW[5] = -100;
    Energies energies{};
    for (int second = 0; second < 3600; second++) {
        integrate(&energies, q, 1);
    }
    q.value[QTotW] = -12000;
    integrate(&energies, q, 3600);
    EXPECT_NEAR(energies.value[EDmdWh], 36, 1e-9);
    EXPECT_NEAR(energies.value[ESupWh], 12, 1e-9);
    EXPECT_NEAR(energies.value[ETotWh], 48, 1e-9);
    EXPECT_NEAR(energies.value[ESumWh], 24, 1e-9);
    EXPECT_NEAR(energies.value[ESupVArh], 36, 1e-9);
    EXPECT_NEAR(energies.value[ESumVArh], -36, 1e-9);
    EXPECT_NEAR(energies.value[ETotVAh], 80, 1e-9);
    EXPECT_NEAR(energies.value[EDmdWhD], 72.2, 1e-9);
    EXPECT_NEAR(energies.value[ESupWhHt], 0.2, 1e-9);
    EXPECT_EQ(energies.value[EHarmonicWh + 3], 0);  // order 5 is exported
    EXPECT_EQ(registerContent(-35.5), 0xFFFFFFDCu); // a net export
}

TEST(Demand, IsTheMeanOfASlidingWindow) {
    DemandWindow window;
    DemandSample sample{};
    f64 all = 0;
    for (int period = 0; period < 4; period++) {
        for (int n = 0; n < 10; n++) {
            sample[QTotW] = 1000.0 * period + n;
            all += period > 0 ? sample[QTotW] : 0; // the window of three loses the first
            addSample(&window.running, sample);
        }
        const DemandPeriod result = finishPeriod(&window, 3);
        if (period == 3) {
            EXPECT_NEAR(periodMean(result, QTotW), all / 30, 1e-9);
            EXPECT_EQ(result.lowest[QTotW], 1000);
            EXPECT_EQ(result.highest[QTotW], 3009);
        }
    }
    // Half of the next period at 6000, weighted wholly towards the present value.
    sample[QTotW] = 6000;
    for (int n = 0; n < 5; n++) {
        addSample(&window.running, sample);
    }
    EXPECT_NEAR(predictedMean(window, 3, 10, QTotW, 6000, 0.9), (20045 + 30045 + 60000) / 30.0, 1e-9);
    EXPECT_NEAR(predictedMean(window, 3, 10, QTotW, 8000, 1.0), (20045 + 30045 + 30000 + 40000) / 30.0, 1e-9);
}

TEST(Statistics, KeepTheMomentOfEachExtreme) {
    MonthExtremes month{};
    f64 values[QuantityCount] = {};
    const f64 course[] = {5, -2, 9, 9, 1};
    for (u32 i = 0; i < 5; i++) {
        values[QHz] = course[i];
        EXPECT_EQ(addToExtremes(&month, values, false, {100 + i, 0, 10}), i < 3);
    }
    EXPECT_EQ(month.highest[QHz].value, 9);
    EXPECT_EQ(month.highest[QHz].time.sec, 102u);
    EXPECT_EQ(month.lowest[QHz].value, -2);
    EXPECT_EQ(month.lowest[QHz].time.sec, 101u);
    EXPECT_EQ(monthStart(monthOf(1709210096)), 1706745600u); // 2024-02-29 belongs to February
    EXPECT_EQ(monthOf(monthStart(655)), 655);
    EXPECT_EQ(monthOf(monthStart(655) - 1), 654);
}

TEST(Statistics, KeepPhasesAndLinesApart) {
    MonthExtremes month{};
    f64 values[QuantityCount] = {};
    values[QPhV] = 230;
    values[QThdV] = 0.2;
    values[QHz] = 50;
    addToExtremes(&month, values, false, {100, 0, 10});
    values[QPhV] = 0; // three wires do not give it
    values[QThdV] = 0.03;
    values[QHz] = 49;
    addToExtremes(&month, values, true, {101, 0, 10});
    EXPECT_EQ(month.lowest[QPhV].value, 230);
    EXPECT_EQ(month.lowest[extremePlace(QThdV, false)].value, 0.2);
    EXPECT_EQ(month.highest[extremePlace(QThdV, true)].value, 0.03);
    EXPECT_EQ(month.lowest[QHz].value, 49);
}

// Values that a parameter moves at any of several loads, in any wiring.
std::set<int> movedBy(const Method &other) {
    std::set<int> moved;
    for (const f64 angle : {0.5, -0.5, 2.5, -2.5}) {
        for (const bool delta : {false, true}) {
            Instrument instrument;
            instrument.grid = testGrid();
            instrument.grid.interVoltage = instrument.grid.interCurrent = 0.002;
            for (Load &load : instrument.grid.load) {
                load.angle = angle;
            }
            Method before = wyeMethod;
            Method after = other;
            before.delta = after.delta = delta;
            const Quantities a = measureAt(instrument, before, 12345);
            const Quantities b = measureAt(instrument, after, 12345);
            for (int q = 0; q < QuantityCount; q++) {
                if (a.value[q] != b.value[q]) {
                    moved.insert(q);
                }
            }
        }
    }
    return moved;
}

TEST(MethodChange, IsToldForEachValueThatItMoves) {
    std::vector<Method> others(7, wyeMethod);
    others[0].ratedVolts = 240;
    others[1].ratedHertz = 60;
    others[2].rmsBase = true;
    others[3].scalarPower = true;
    others[4].powerFactorSign = 1;
    others[5].powerFactorSign = 2;
    others[6].absoluteVolts = others[6].absoluteAmperes = true; // spectra alone
    for (const Method &other : others) {
        const std::set<int> moved = movedBy(other);
        for (int q = 0; q < QuantityCount; q++) {
            EXPECT_EQ(meansOther(q, wyeMethod, other), moved.count(q) == 1)
                << "method " << &other - others.data() << " quantity " << q;
        }
    }
    std::set<int> moved; // each transformer moves its phase and the totals
    Method reversed[3] = {wyeMethod, wyeMethod, wyeMethod};
    for (int p = 0; p < 3; p++) {
        reversed[p].reversed[p] = true;
        moved.merge(movedBy(reversed[p]));
    }
    for (int q = 0; q < QuantityCount; q++) {
        EXPECT_EQ(meansOther(q, wyeMethod, reversed[1]), moved.count(q) == 1) << "quantity " << q;
    }
}

} // namespace
} // namespace ied::instrument
