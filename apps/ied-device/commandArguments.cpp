#include "ied-device/commandArguments.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ied::instrument {

f64 Arguments::prefixed(std::size_t index, f64 low, f64 high, std::string *unit) {
    char *end = nullptr;
    const char *begin = has(index) ? words_[index].c_str() : "";
    const f64 value = std::strtod(begin, &end);
    if (end == begin || !(value >= low && value <= high)) {
        sound_ = false;
        return low;
    }
    *unit = end;
    return value;
}

f64 Arguments::number(std::size_t index, f64 low, f64 high) {
    std::string unit;
    const f64 value = prefixed(index, low, high, &unit);
    sound_ = sound_ && unit.empty();
    return unit.empty() ? value : low;
}

u32 Arguments::whole(std::size_t index, u32 low, u32 high) {
    const f64 value = number(index, low, high);
    sound_ = sound_ && value == std::floor(value);
    return static_cast<u32>(value);
}

f64 Arguments::ratio(std::size_t index, f64 lowPercent, f64 highPercent) {
    std::string unit;
    const f64 value = prefixed(index, lowPercent, highPercent, &unit);
    sound_ = sound_ && (unit.empty() || unit == "%");
    return value / 100;
}

u64 Arguments::duration(std::size_t index) {
    struct Unit {
        const char *name;
        f64 microseconds;
    };
    constexpr Unit units[] = {{"", 1e3}, {"us", 1}, {"ms", 1e3}, {"s", 1e6}};
    constexpr f64 longest = 3600e6;
    std::string name;
    const f64 value = prefixed(index, 0, longest, &name);
    for (const Unit &unit : units) {
        if (name == unit.name && value * unit.microseconds <= longest) {
            return static_cast<u64>(std::llround(value * unit.microseconds));
        }
    }
    sound_ = false;
    return 0;
}

u8 Arguments::phases(std::size_t index) const {
    const std::string all = "ABC";
    u8 set = 0;
    for (const char letter : has(index) ? words_[index] : std::string()) {
        const std::size_t phase = all.find(letter);
        if (phase == std::string::npos) {
            return 0;
        }
        set = static_cast<u8>(set | 1u << phase);
    }
    return set;
}

bool Arguments::among(std::size_t index, const char *first, const char *second) {
    return oneOf(index, {first, second}) == 0 && sound_;
}

std::size_t Arguments::oneOf(std::size_t index, const std::vector<std::string> &list) {
    const auto found = has(index) ? std::find(list.begin(), list.end(), words_[index]) : list.end();
    sound_ = sound_ && found != list.end();
    return found == list.end() ? 0 : static_cast<std::size_t>(found - list.begin());
}

} // namespace ied::instrument
