#include "ied-device/methodChange.h"

#include <algorithm>
#include <iterator>

namespace ied::instrument {

namespace {

enum Aspect : u8 {
    RatedVolts = 1,
    RatedHertz = 2,
    RatioBase = 4,
    ApparentTotal = 8,
    FactorSign = 16,
    CurrentSign = 32,
};

// Quantities from `first` to before `end`, and what they depend on.
struct Dependence {
    u16 first;
    u16 end;
    unsigned aspects;
};

constexpr Dependence dependences[] = {
    {QW, QVA, CurrentSign},
    {QTotVA, QTotVA + 1, CurrentSign | ApparentTotal},
    {QPF, QTotPF, CurrentSign | FactorSign},
    {QTotPF, QTotPF + 1, CurrentSign | FactorSign | ApparentTotal},
    {QHzDev, QHzDev + 1, RatedHertz},
    {QVDev, QVDev + 3, RatedVolts},
    {QThdV, QKf, RatioBase},
    {QDW, QDVA, CurrentSign},
    {QTotDVA, QTotDVA + 1, CurrentSign | ApparentTotal},
    {QDPF, QTotDPF, CurrentSign | FactorSign},
    {QTotDPF, QTotDPF + 1, CurrentSign | FactorSign | ApparentTotal},
    {QImbNgA, QImbZrA + 1, CurrentSign},
    {QSeqA, QSeqA + 3, CurrentSign},
};

unsigned changedAspects(const Method &a, const Method &b) {
    const auto when = [](bool differs, unsigned aspect) { return differs ? aspect : 0; };
    const bool sameSigns = std::equal(std::begin(a.reversed), std::end(a.reversed), b.reversed);
    return when(a.ratedVolts != b.ratedVolts, RatedVolts) | when(a.ratedHertz != b.ratedHertz, RatedHertz) |
           when(a.rmsBase != b.rmsBase, RatioBase) | when(a.scalarPower != b.scalarPower, ApparentTotal) |
           when(a.powerFactorSign != b.powerFactorSign, FactorSign) | when(!sameSigns, CurrentSign);
}

} // namespace

bool meansOther(int quantity, const Method &before, const Method &after) {
    const unsigned changed = changedAspects(before, after);
    return std::any_of(std::begin(dependences), std::end(dependences), [&](const Dependence &row) {
        return quantity >= row.first && quantity < row.end && (row.aspects & changed) != 0;
    });
}

} // namespace ied::instrument
