#include "ied-client/format.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ied::client {

namespace {

constexpr std::size_t height = 6;
constexpr int eighths = 8;
constexpr const char *blocks[] = {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
// An element this many times the next one would leave the others without a visible bar.
constexpr f64 dwarfing = 5;

// First float inside a value, depth first.
std::optional<f64> firstNumber(const Value &value) {
    switch (value.kind) {
    case Kind::floating:
        return value.real;
    case Kind::integer:
        return static_cast<f64>(value.integer);
    case Kind::unsignedInt:
        return static_cast<f64>(value.unsignedInt);
    default:
        for (const Value &item : value.items) {
            if (const std::optional<f64> number = firstNumber(item)) {
                return number;
            }
        }
        return std::nullopt;
    }
}

f64 finite(f64 value) {
    return std::isfinite(value) ? std::fabs(value) : 0;
}

// The value of a full bar.
f64 scaleOf(const std::vector<f64> &values) {
    f64 first = 0;
    f64 second = 0;
    for (f64 value : values) {
        const f64 size = finite(value);
        second = size > first ? first : std::max(second, size);
        first = std::max(first, size);
    }
    return second > 0 && first > dwarfing * second ? second : first;
}

std::string scaleText(f64 value) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.3g", value);
    return digits;
}

// The index under every tenth column.
std::string indexLine(std::size_t count, std::size_t perColumn, u32 firstIndex) {
    std::string line;
    for (std::size_t column = 0; column < count; column += 10) {
        line.resize(std::max(line.size(), column), ' ');
        line += std::to_string(firstIndex + column * perColumn);
    }
    return line;
}

} // namespace

std::vector<f64> magnitudes(const Value &array) {
    std::vector<f64> values;
    for (const Value &item : array.items) {
        const std::optional<f64> number = firstNumber(item);
        if (!number) {
            return {};
        }
        values.push_back(*number);
    }
    return values;
}

std::string chartText(const std::vector<f64> &values, u32 firstIndex, const std::string &unit,
                      std::size_t width) {
    constexpr std::size_t labelWidth = 12;
    const std::size_t room = width > labelWidth + 10 ? width - labelWidth : 10;
    const std::size_t perColumn = (values.size() + room - 1) / room;
    std::vector<f64> bars;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i % perColumn == 0) {
            bars.push_back(0);
        }
        bars.back() = std::max(bars.back(), finite(values[i]));
    }
    const f64 scale = scaleOf(bars);
    std::string text;
    for (std::size_t row = height; row-- > 0;) {
        std::string label = row + 1 == height ? scaleText(scale) + " " + unit : "";
        label.resize(label.size() + labelWidth - 2 - std::min(labelWidth - 2, columns(label)), ' ');
        text += label + " │";
        for (f64 bar : bars) {
            const f64 full = scale > 0 ? bar / scale * static_cast<f64>(height) : 0;
            const f64 here = std::clamp(full - static_cast<f64>(row), 0.0, 1.0);
            const bool cut = row + 1 == height && bar > scale;
            text += cut ? "↑" : blocks[std::lround(here * eighths)];
        }
        text += "\n";
    }
    return text + std::string(labelWidth, ' ') + indexLine(bars.size(), perColumn, firstIndex) + "\n";
}

} // namespace ied::client
