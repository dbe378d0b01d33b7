#include "ied-device/commandArguments.h"

#include "ied-device/disturbances.h"

#include <cmath>
#include <cstdlib>

namespace ied::instrument {

f64 Arguments::prefixed(std::size_t index, f64 low, f64 high, std::string *unit) {
    char *end = nullptr;
    const std::string word = text(index);
    const char *begin = word.c_str();
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
        const f64 microseconds = std::round(value * unit.microseconds);
        if (name == unit.name && microseconds > 0 && microseconds <= longest) {
            return static_cast<u64>(microseconds);
        }
    }
    sound_ = false;
    return 0;
}

u8 Arguments::phases(std::size_t *index) {
    const std::string all = "ABC";
    const std::string word = text(*index);
    if (word.empty() || word.find_first_not_of(all) != std::string::npos) {
        return AllPhases;
    }
    ++*index;
    u8 set = 0;
    for (const char letter : word) {
        set = static_cast<u8>(set | 1u << all.find(letter));
    }
    return set;
}

bool Arguments::among(std::size_t index, const char *first, const char *second) {
    return oneOf(index, {first, second}) == 0 && sound_;
}

std::size_t Arguments::oneOf(std::size_t index, const std::vector<std::string> &list) {
    const auto found = std::find(list.begin(), list.end(), text(index));
    sound_ = sound_ && found != list.end();
    return found == list.end() ? 0 : static_cast<std::size_t>(found - list.begin());
}

} // namespace ied::instrument
