#include "ied-device/flicker.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace ied::instrument {

namespace {

struct Point {
    f64 rate;  // changes a minute
    f64 depth; // percent
};

// The Pst = 1 curve for rectangular, equidistant changes on a 230 V network.
constexpr Point pstOneCurve[] = {
    {0.1, 7.4},   {0.2, 4.58},  {0.4, 3.54},   {0.6, 3.2},   {1, 2.724},   {2, 2.211},
    {3, 1.95},    {5, 1.64},    {7, 1.459},    {10, 1.29},   {22, 1.02},   {39, 0.906},
    {48, 0.87},   {68, 0.81},   {110, 0.725},  {176, 0.64},  {273, 0.56},  {375, 0.50},
    {480, 0.48},  {585, 0.42},  {682, 0.37},   {796, 0.32},  {1020, 0.28}, {1055, 0.28},
    {1200, 0.29}, {1390, 0.34}, {1620, 0.402}, {2400, 0.77}, {2875, 1.04},
};

} // namespace

f64 pstOneDepth(f64 rate) {
    const Point *end = std::end(pstOneCurve);
    const Point *above =
        std::find_if(std::begin(pstOneCurve), end, [rate](const Point &p) { return p.rate >= rate; });
    if (above == std::begin(pstOneCurve)) {
        return above->depth;
    }
    if (above == end) {
        return std::prev(end)->depth;
    }
    const Point *below = std::prev(above);
    const f64 share = std::log(rate / below->rate) / std::log(above->rate / below->rate);
    return below->depth * std::pow(above->depth / below->depth, share);
}

f64 shortTermSeverity(f64 depth, f64 rate) {
    return rate > 0 ? depth / pstOneDepth(rate) : 0;
}

f64 longTermSeverity(std::span<const f64> pst) {
    f64 sum = 0;
    for (const f64 value : pst) {
        sum += value * value * value;
    }
    return pst.empty() ? 0 : std::cbrt(sum / static_cast<f64>(pst.size()));
}

} // namespace ied::instrument
