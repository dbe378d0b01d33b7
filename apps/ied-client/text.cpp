#include "ied-client/format.h"
#include "ied-client/quantity.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace ied::client {

namespace {

constexpr const char *red = "\033[31m";
constexpr const char *yellow = "\033[33m";
constexpr const char *plain = "\033[0m";

// Length of the valid UTF-8 sequence at `at`, or 0.
std::size_t sequenceLength(const std::string &text, std::size_t at) {
    const u8 lead = static_cast<u8>(text[at]);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || at + length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<u8>(text[at + i]) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

// An element {mag, ang} of an array of vectors as "MAGNITUDE UNIT ∠ ANGLE°", or nothing.
std::string vectorText(const Row &row) {
    const Type *type = row.type->kind == Kind::array ? &row.type->parts.front() : row.type;
    const bool vector = type->names == std::vector<std::string>{"mag", "ang"};
    if (!vector || row.value->items.size() != 2) {
        return "";
    }
    const std::vector<f64> parts = magnitudes(*row.value);
    if (parts.size() != 2) {
        return "";
    }
    const std::string unit = row.unit.empty() ? "" : " " + row.unit;
    return numberText(parts[0], true) + unit + " ∠ " + numberText(parts[1], true) + "°";
}

std::string valueCell(const Row &row) {
    if (!row.value) {
        return row.error;
    }
    if (const std::string vector = row.value->kind == Kind::structure ? vectorText(row) : "";
        !vector.empty()) {
        return vector;
    }
    std::string text = valueText(*row.value);
    if (row.scale != 1 && !row.unit.empty()) {
        const Value &value = *row.value;
        const f64 count = value.kind == Kind::unsignedInt ? static_cast<f64>(value.unsignedInt)
                                                          : static_cast<f64>(value.integer);
        return text + " = " + numberText(count * row.scale, true) + " " + row.unit;
    }
    return row.unit.empty() ? text : text + " " + row.unit;
}

std::string qualityCell(const Row &row, const Style &style) {
    if (!row.quality) {
        return "";
    }
    const std::string text = qualityText(*row.quality);
    if (!style.colour || text == "good") {
        return text;
    }
    return (text.starts_with("invalid") ? red : yellow) + text + plain;
}

std::vector<std::string> cells(const std::string &reference, const Row &row, const Style &style) {
    const std::optional<f64> time = row.time ? secondsOf(*row.time) : std::nullopt;
    std::string value = valueCell(row);
    if (!row.value && style.colour) {
        value = red + value + plain;
    }
    return {reference, value, qualityCell(row, style), time ? localTime(*time) : "", row.reason};
}

u32 firstIndex(const Row &row) {
    const Step *last = row.reference.path.empty() ? nullptr : &row.reference.path.back();
    return last && last->range ? last->first : 0;
}

// Rows of an array, one an element.
void addElements(const Row &row, const Style &style, std::vector<std::vector<std::string>> &lines) {
    Row element = row;
    Reference &at = element.reference;
    for (std::size_t i = 0; i < row.value->items.size(); ++i) {
        Step &last = at.path.back();
        last.indexed = true;
        last.range = false;
        last.first = last.last = firstIndex(row) + static_cast<u32>(i);
        element.value = row.value->items[i];
        lines.push_back(cells(personal(at), element, style));
    }
}

} // namespace

std::string hexDigits(const std::string &octets) {
    std::string text;
    char digits[3];
    for (char octet : octets) {
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(static_cast<u8>(octet)));
        text += digits;
    }
    return text;
}

std::string numberText(f64 value, bool single) {
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "not a number" : value < 0 ? "-infinity" : "infinity";
    }
    char digits[64];
    const std::to_chars_result end =
        single ? std::to_chars(digits, digits + sizeof digits, static_cast<f32>(value))
               : std::to_chars(digits, digits + sizeof digits, value);
    return std::string(digits, end.ptr);
}

std::string printable(const std::string &text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = sequenceLength(text, at);
        const u8 octet = static_cast<u8>(text[at]);
        const bool c1 = length == 2 && octet == 0xC2 && static_cast<u8>(text[at + 1]) < 0xA0;
        if (length == 0 || octet < 0x20 || octet == 0x7F || c1) {
            out += "\\x" + hexDigits(text.substr(at, 1));
            ++at;
        } else {
            out += text.substr(at, length);
            at += length;
        }
    }
    return out;
}

std::string valueText(const Value &value) {
    static constexpr const char *positions[] = {"intermediate", "off", "on", "bad"};
    switch (value.kind) {
    case Kind::array:
    case Kind::structure: {
        std::string text = "{";
        for (const Value &item : value.items) {
            text += (text.size() > 1 ? ", " : "") + valueText(item);
        }
        return text + "}";
    }
    case Kind::boolean:
        return value.integer ? "true" : "false";
    case Kind::integer:
        return std::to_string(value.integer);
    case Kind::unsignedInt:
        return std::to_string(value.unsignedInt);
    case Kind::floating:
        return numberText(value.real, value.single);
    case Kind::bitString:
        if (value.octets.size() == 2) {
            return value.octets + " (" +
                   positions[(value.octets[0] == '1' ? 2 : 0) + (value.octets[1] == '1')] + ")";
        }
        return value.octets;
    case Kind::octetString:
        return hexDigits(value.octets);
    case Kind::utcTime:
    case Kind::binaryTime: {
        const std::optional<f64> seconds = secondsOf(value);
        return seconds ? localTime(*seconds) : hexDigits(value.octets);
    }
    default:
        return printable(value.octets);
    }
}

std::size_t columns(const std::string &text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\033') {
            while (at < text.size() && text[at] != 'm') {
                ++at;
            }
        } else if ((static_cast<u8>(text[at]) & 0xC0) != 0x80) {
            ++count;
        }
    }
    return count;
}

std::string alignedText(const std::vector<std::vector<std::string>> &rows) {
    std::vector<std::size_t> widths;
    for (const auto &row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths.resize(std::max(widths.size(), row.size()));
            widths[i] = std::max(widths[i], columns(row[i]));
        }
    }
    std::string text;
    for (const auto &row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i] + std::string(widths[i] - columns(row[i]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

std::string rowsText(const std::vector<Row> &rows, const Style &style) {
    std::vector<std::vector<std::string>> lines;
    std::string text;
    for (const Row &row : rows) {
        const std::string reference = personal(row.reference);
        if (!row.value || row.value->kind != Kind::array) {
            lines.push_back(cells(reference, row, style));
            continue;
        }
        const std::vector<f64> values = style.terminal ? magnitudes(*row.value) : std::vector<f64>{};
        if (values.size() < 2) {
            addElements(row, style, lines);
            continue;
        }
        std::vector<std::string> head = cells(reference, row, style);
        head[1] = std::to_string(values.size()) + " elements";
        text += alignedText(lines) + alignedText({head});
        lines.clear();
        text += chartText(values, firstIndex(row), row.unit, style.width);
    }
    return text + alignedText(lines);
}

} // namespace ied::client
