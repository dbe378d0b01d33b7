// How the tables of the address tree are written and laid out: a table is a few lines of names with
// the common data class of their record or the table below; the places of its rows follow from the
// sizes of the records.
#pragma once

#include "device/recordTypes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace ied {

// nodeType of a row that has a table below it.
inline constexpr u8 mapInner = 66;

struct MapTable;

struct MapRow {
    char name[16];
    u32 offset;           // octets from the start of the parent's part of the mirror
    const MapTable *next; // table below, null for a leaf
    u8 nodeType;          // CDC of the record, mapInner with a table below
};

struct MapTable {
    const MapRow *rows;
    u32 count;
    u32 size; // octets of the mirror that one instance takes
};

// A line of a table: names separated by blanks, all with one CDC or one table below. With numbers,
// each number from `first` to `last` gives the names in turn with the number behind them.
struct MapLine {
    std::string_view names;
    u8 nodeType;
    const MapTable *next;
    u8 first, last;

    constexpr MapLine(std::string_view text, CdcCode cdc, u8 from = 0, u8 to = 0)
        : names(text), nodeType(cdc), next(nullptr), first(from), last(to) {}
    constexpr MapLine(std::string_view text, const MapTable *below, u8 from = 0, u8 to = 0)
        : names(text), nodeType(mapInner), next(below), first(from), last(to) {}
};

// Calls `use` with each of the names that blanks separate, in order.
template <class Use> constexpr void forEachName(std::string_view names, Use use) {
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(' ', at), names.size());
        use(names.substr(at, end - at));
        at = end + 1;
    }
}

// A name with a number below 100 behind it, none for 0. When it is compiled, one that does not fit
// `size` octets with its NUL is an error.
template <std::size_t size> struct NumberedName {
    char text[size] = {};
    std::size_t length = 0;

    constexpr NumberedName(std::string_view name, u32 number) {
        const std::size_t digits = number == 0 ? 0 : number < 10 ? 1 : 2;
        if (number >= 100 || name.size() + digits >= size) {
            throw "name too long";
        }
        length = name.copy(text, size);
        if (digits == 2) {
            text[length++] = static_cast<char>('0' + number / 10);
        }
        if (digits > 0) {
            text[length++] = static_cast<char>('0' + number % 10);
        }
    }
    constexpr std::string_view view() const { return {text, length}; }
};

// Calls `row` with each name, number (0 for none) and line of a table, in order.
template <class Lines, class Row> constexpr void forEachRow(const Lines &lines, Row row) {
    for (const MapLine &line : lines) {
        for (u32 number = line.first; number <= line.last; number++) {
            forEachName(line.names, [&](std::string_view name) { row(name, number, line); });
        }
    }
}

template <const auto &lines> consteval u32 countRows() {
    u32 count = 0;
    forEachRow(lines, [&count](std::string_view, u32, const MapLine &) { count++; });
    return count;
}

constexpr u32 alignUp(u32 value, u32 align) {
    return (value + align - 1) / align * align;
}

template <u32 N> struct MapLayout {
    std::array<MapRow, N> rows;
    u32 size;
};

// Gives every row of a table its name and place.
template <const auto &lines> consteval auto layOut() {
    MapLayout<countRows<lines>()> out{};
    u32 index = 0;
    forEachRow(lines, [&](std::string_view name, u32 number, const MapLine &line) {
        MapRow &row = out.rows[index++];
        NumberedName<sizeof row.name>(name, number).view().copy(row.name, sizeof row.name);
        // Not by a test of the pointer: the sanitizers make that no constant expression.
        const bool inner = line.nodeType == mapInner;
        row.offset = alignUp(out.size, inner ? 8 : recordShape(line.nodeType).align);
        row.next = line.next;
        row.nodeType = line.nodeType;
        out.size = row.offset + (inner ? line.next->size : recordShape(line.nodeType).size);
    });
    out.size = alignUp(out.size, 8);
    return out;
}

template <const auto &lines> inline constexpr auto mapLayout = layOut<lines>();
template <const auto &lines>
inline constexpr MapTable mapTableOf{mapLayout<lines>.rows.data(),
                                     static_cast<u32>(mapLayout<lines>.rows.size()), mapLayout<lines>.size};

} // namespace ied
