#include "ied-device/selfCheck.h"

#include "ied-device/eventRings.h"

namespace ied::instrument {

namespace {

constexpr CheckRow rows[] = {
    {"dsp", 0},     {"ad", 1},          {"battery", 2},      {"power", 3},     {"flash", 4},
    {"fram", 5},    {"sysPara", 6},     {"setpointPara", 7}, {"snapPara", 8},  {"wavePara", 9},
    {"pqPara", 10}, {"energyPara", 11}, {"secondPara", 16},  {"commPara", 17},
};

} // namespace

std::span<const CheckRow> checkRows() {
    return rows;
}

void setCheck(Instrument *instrument, u32 bit, bool faulty) {
    const Region region = instrument->shared.region;
    const u32 before = load(region, region::checkWord);
    const u32 word = faulty ? before | 1u << bit : before & ~(1u << bit);
    if (word != before) {
        store(region, region::checkTime, eventTime(*instrument));
        publish(*regionPlace(region.base, region::checkWord), word);
    }
}

} // namespace ied::instrument
