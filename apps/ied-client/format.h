// Rows as text for people and as JSON for programs.
#pragma once

#include "ied-client/readings.h"

#include <string>
#include <vector>

namespace ied::client {

struct Style {
    bool terminal = false; // draw charts of arrays
    bool colour = false;
    std::size_t width = 80; // columns of the terminal
};

// A simple value for people; a structure or array in braces.
std::string valueText(const Value &value);

// Shortest decimal text that reads back as the same number.
std::string numberText(f64 value, bool single);

// Octets as pairs of hexadecimal digits.
std::string hexDigits(const std::string &octets);

// Text with control characters and broken UTF-8 made visible.
std::string printable(const std::string &text);

// Columns that a UTF-8 text takes on a terminal.
std::size_t columns(const std::string &text);

// Cells in aligned columns, one row a line; the last column is not padded.
std::string alignedText(const std::vector<std::vector<std::string>> &rows);

// Rows of one round: reference, value with unit, quality and local time; an array element by
// element, or as a chart on a terminal.
std::string rowsText(const std::vector<Row> &rows, const Style &style);

// Bar chart of the magnitudes of an array, `rows` lines high, one column an element. Where one
// element dwarfs the others the scale follows the others, and that bar is cut.
std::string chartText(const std::vector<f64> &values, u32 firstIndex, const std::string &unit,
                      std::size_t width);

// The magnitude of each element of an array: the element itself, or the first float in it.
// Empty if an element has none.
std::vector<f64> magnitudes(const Value &array);

// Rows of one round as one JSON document in one line. `seconds` is the time of the round.
std::string rowsJson(const std::vector<Row> &rows, f64 seconds);

// One row as a JSON object.
std::string rowJson(const Row &row);

// JSON string with its quotes; a value as JSON, structures as objects by the type's names.
std::string jsonString(const std::string &text);
std::string jsonValue(const Value &value, const Type *type);

} // namespace ied::client
