#include "ied-client/quantity.h"

#include <cmath>
#include <cstdio>
#include <ctime>

namespace ied::client {

namespace {

struct Symbol {
    int code;
    const char *text;
};

constexpr Symbol units[] = {
    {1, ""},      {2, "m"},      {3, "kg"},     {4, "s"},     {5, "A"},     {6, "K"},     {7, "mol"},
    {8, "cd"},    {9, "°"},      {10, "rad"},   {11, "sr"},   {21, "Gy"},   {22, "Bq"},   {23, "°C"},
    {24, "Sv"},   {25, "F"},     {26, "C"},     {27, "S"},    {28, "H"},    {29, "V"},    {30, "Ω"},
    {31, "J"},    {32, "N"},     {33, "Hz"},    {34, "lx"},   {35, "lm"},   {36, "Wb"},   {37, "T"},
    {38, "W"},    {39, "Pa"},    {41, "m²"},    {42, "m³"},   {43, "m/s"},  {44, "m/s²"}, {45, "m³/s"},
    {46, "m/m³"}, {47, "M"},     {48, "kg/m³"}, {49, "m²/s"}, {50, "W/mK"}, {51, "J/K"},  {52, "ppm"},
    {53, "1/s"},  {54, "rad/s"}, {61, "VA"},    {62, "W"},    {63, "var"},  {64, "°"},    {65, ""},
    {66, "Vs"},   {67, "V²"},    {68, "As"},    {69, "A²"},   {70, "A²t"},  {71, "VAh"},  {72, "Wh"},
    {73, "varh"}, {74, "V/Hz"},
};

constexpr Symbol multipliers[] = {
    {-24, "y"}, {-21, "z"}, {-18, "a"}, {-15, "f"}, {-12, "p"}, {-9, "n"}, {-6, "µ"},
    {-3, "m"},  {-2, "c"},  {-1, "d"},  {0, ""},    {1, "da"},  {2, "h"},  {3, "k"},
    {6, "M"},   {9, "G"},   {12, "T"},  {15, "P"},  {18, "E"},  {21, "Z"}, {24, "Y"},
};

constexpr i64 dimensionless = 1;

// Detail bits of Quality behind the two of the validity.
constexpr const char *details[] = {
    "overflow",     "out of range", "bad reference", "oscillatory", "failure",          "old data",
    "inconsistent", "inaccurate",   "substituted",   "test",        "operator blocked",
};
constexpr const char *validities[] = {"good", "invalid", "reserved", "questionable"};

template <std::size_t N> const char *find(const Symbol (&table)[N], i64 code) {
    for (const Symbol &row : table) {
        if (row.code == code) {
            return row.text;
        }
    }
    return nullptr;
}

u64 bigEndian(const std::string &octets, std::size_t at, std::size_t count) {
    u64 value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = value << 8 | static_cast<u8>(octets[at + i]);
    }
    return value;
}

std::string formatTime(f64 seconds, bool local, const char *pattern, const char *end) {
    const i64 millis = std::llround(seconds * 1000);
    const std::time_t whole = static_cast<std::time_t>(millis / 1000);
    std::tm parts{};
    local ? localtime_r(&whole, &parts) : gmtime_r(&whole, &parts);
    char day[64];
    char rest[16];
    std::strftime(day, sizeof day, pattern, &parts);
    std::snprintf(rest, sizeof rest, ".%03d%s", static_cast<int>(millis % 1000), end);
    return std::string(day) + rest;
}

i64 wholeNumber(const Value &value) {
    return value.kind == Kind::unsignedInt ? static_cast<i64>(value.unsignedInt) : value.integer;
}

} // namespace

std::string unitSymbol(i64 siUnit, i64 multiplier) {
    const char *unit = find(units, siUnit);
    const char *prefix = find(multipliers, multiplier);
    if (siUnit == dimensionless || !*(unit ? unit : "?")) {
        return multiplier == 0 ? "" : multiplier == -2 ? "%" : "×10^" + std::to_string(multiplier);
    }
    const std::string text = unit ? unit : "unit " + std::to_string(siUnit);
    return prefix ? prefix + text : "×10^" + std::to_string(multiplier) + " " + text;
}

std::string unitSymbol(const Value &value, const Type &type) {
    i64 siUnit = dimensionless;
    i64 multiplier = 0;
    for (std::size_t i = 0; i < value.items.size() && i < type.names.size(); ++i) {
        if (type.names[i] == "SIUnit") {
            siUnit = wholeNumber(value.items[i]);
        }
        if (type.names[i] == "multiplier") {
            multiplier = wholeNumber(value.items[i]);
        }
    }
    return unitSymbol(siUnit, multiplier);
}

std::string qualityText(const Value &quality) {
    const std::string &bits = quality.octets;
    if (bits.size() < 2) {
        return "?";
    }
    std::string text = validities[(bits[0] == '1' ? 2 : 0) + (bits[1] == '1' ? 1 : 0)];
    for (std::size_t i = 0; i < std::size(details) && i + 2 < bits.size(); ++i) {
        if (bits[i + 2] == '1') {
            text += std::string(", ") + details[i];
        }
    }
    return text;
}

std::optional<f64> secondsOf(const Value &time) {
    constexpr f64 days1970To1984 = 5113;
    if (time.kind == Kind::utcTime && time.octets.size() == 8) {
        return static_cast<f64>(bigEndian(time.octets, 0, 4)) +
               static_cast<f64>(bigEndian(time.octets, 4, 3)) / 16777216.0;
    }
    if (time.kind == Kind::binaryTime && time.octets.size() == 6) {
        return static_cast<f64>(bigEndian(time.octets, 0, 4)) / 1000 +
               (static_cast<f64>(bigEndian(time.octets, 4, 2)) + days1970To1984) * 86400;
    }
    return std::nullopt;
}

std::string localTime(f64 seconds) {
    return formatTime(seconds, true, "%Y-%m-%d %H:%M:%S", "");
}

std::string isoTime(f64 seconds) {
    return formatTime(seconds, false, "%Y-%m-%dT%H:%M:%S", "Z");
}

std::optional<i64> parseIsoTime(const std::string &text) {
    std::tm parts{};
    const char *rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &parts);
    int millis = 0;
    int length = 0;
    if (!rest || std::sscanf(rest, ".%3dZ%n", &millis, &length) != 1 || length != 5 || rest[length] != '\0') {
        return std::nullopt;
    }
    return static_cast<i64>(timegm(&parts)) * 1000 + millis;
}

} // namespace ied::client
