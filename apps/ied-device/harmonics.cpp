#include "ied-device/harmonics.h"

#include <cmath>

namespace ied::instrument {

namespace {

bool counts(int order, Orders which) {
    return which == Orders::All || (order % 2 == 1) == (which == Orders::Odd);
}

} // namespace

f64 rms(const Spectrum &spectrum) {
    f64 sum = 0;
    for (int h = 0; h < orders; h++) {
        sum += std::norm(spectrum.order[h]) + spectrum.inter[h] * spectrum.inter[h];
    }
    return std::sqrt(sum);
}

f64 distortion(const Spectrum &spectrum, Orders which) {
    f64 sum = 0;
    for (int h = 2; h < orders; h++) {
        sum += counts(h, which) ? std::norm(spectrum.order[h]) : 0;
    }
    return std::sqrt(sum);
}

f64 interDistortion(const Spectrum &spectrum, Orders which) {
    f64 sum = 0;
    for (int i = 1; i < orders; i++) {
        sum += counts(i, which) ? spectrum.inter[i] * spectrum.inter[i] : 0;
    }
    return std::sqrt(sum);
}

f64 kFactor(const Spectrum &spectrum) {
    f64 weighted = 0;
    f64 sum = 0;
    for (int h = 1; h < orders; h++) {
        const f64 square = std::norm(spectrum.order[h]);
        sum += square;
        weighted += h * h * square;
    }
    return sum > 0 ? weighted / sum : 0;
}

Spectrum difference(const Spectrum &a, const Spectrum &b) {
    Spectrum out;
    for (int h = 0; h < orders; h++) {
        out.order[h] = a.order[h] - b.order[h];
        out.inter[h] = std::hypot(a.inter[h], b.inter[h]);
    }
    return out;
}

} // namespace ied::instrument
