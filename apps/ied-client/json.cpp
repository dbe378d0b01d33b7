#include "ied-client/format.h"
#include "ied-client/quantity.h"

#include <cmath>

namespace ied::client {

std::string rowJson(const Row &row) {
    std::string text = "{\"reference\":" + jsonString(personal(row.reference));
    if (!row.reason.empty()) {
        text += ",\"reason\":[";
        for (const std::string &reason : split(row.reason, ',')) {
            text += (text.back() == '[' ? "" : ",") + jsonString(reason);
        }
        text += "]";
    }
    if (!row.value) {
        return text + ",\"error\":" + jsonString(row.error) + "}";
    }
    text += ",\"value\":" + jsonValue(*row.value, row.type);
    if (!row.unit.empty()) {
        text += ",\"unit\":" + jsonString(row.unit);
    }
    if (row.scale != 1) {
        text += ",\"scale\":" + numberText(row.scale, true);
    }
    if (row.quality) {
        text += ",\"quality\":" + jsonString(qualityText(*row.quality));
    }
    if (const std::optional<f64> time = row.time ? secondsOf(*row.time) : std::nullopt) {
        text += ",\"time\":" + jsonString(isoTime(*time));
    }
    return text + "}";
}

namespace {

std::string itemsJson(const Value &value, const Type *type) {
    const bool named = value.kind == Kind::structure && type && type->parts.size() == value.items.size();
    std::string text;
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        text += i > 0 ? "," : "";
        if (named) {
            text += jsonString(type->names[i]) + ":" + jsonValue(value.items[i], &type->parts[i]);
        } else {
            text += jsonValue(value.items[i], type && !type->parts.empty() ? &type->parts.front() : nullptr);
        }
    }
    return named ? "{" + text + "}" : "[" + text + "]";
}

} // namespace

std::string jsonString(const std::string &text) {
    std::string out = "\"";
    for (char c : printable(text)) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    return out + "\"";
}

std::string jsonValue(const Value &value, const Type *type) {
    switch (value.kind) {
    case Kind::array:
    case Kind::structure:
        return itemsJson(value, type);
    case Kind::boolean:
    case Kind::integer:
    case Kind::unsignedInt:
        return valueText(value);
    case Kind::floating:
        return std::isfinite(value.real) ? valueText(value) : "null";
    case Kind::bitString:
        return jsonString(value.octets);
    case Kind::utcTime:
    case Kind::binaryTime: {
        const std::optional<f64> seconds = secondsOf(value);
        return seconds ? jsonString(isoTime(*seconds)) : "null";
    }
    default:
        return jsonString(valueText(value));
    }
}

std::string rowsJson(const std::vector<Row> &rows, f64 seconds) {
    std::string text = "{\"time\":" + jsonString(isoTime(seconds)) + ",\"values\":[";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        text += (i > 0 ? "," : "") + rowJson(rows[i]);
    }
    return text + "]}";
}

} // namespace ied::client
