// The instrument's measurements, one object a line: where each value lies in the shared region and
// in which wiring it is shown. Written down apart from the server's own tables, so that a test can
// hold the two against each other.
#pragma once

#include "platform/types.h"

#include <string>
#include <vector>

namespace ied::test {

// Wiring in which a row is shown.
enum class RowWiring : u8 {
    wye,
    delta,
    any,
    never,
};

// Whether a row is shown in the instrument's wiring mode: 0 wye, 1 delta, 2 counts as wye.
constexpr bool isShown(RowWiring row, u16 mode) {
    return row == RowWiring::any || row == (mode == 1 ? RowWiring::delta : RowWiring::wye);
}

// One value of an object, and its angle where it has one.
struct MeasComponent {
    const char *name; // below the object: "phsA", "phsAHar"; empty for the object's only value
    RowWiring wiring;
    u32 source; // octets from the base of the region
    u32 angle;  // source of the angle, 0 for none
    RowWiring angleWiring;

    constexpr MeasComponent(const char *component, RowWiring shown, u32 at, u32 angleAt = 0)
        : MeasComponent(component, shown, at, angleAt, shown) {}
    constexpr MeasComponent(const char *component, RowWiring shown, u32 at, u32 angleAt, RowWiring angleShown)
        : name(component), wiring(shown), source(at), angle(angleAt), angleWiring(angleShown) {}
};

struct MeasObject {
    std::string name; // short address behind the set's prefix
    std::vector<MeasComponent> components;
};

// A table is walked once for each set.
struct MeasSet {
    std::string prefix; // of the short addresses
    u32 shift;          // added to every source
};

struct MeasTable {
    std::string name;
    std::vector<MeasSet> sets;
    std::vector<MeasObject> objects;
};

const std::vector<MeasTable> &measurementTables();
const MeasTable &measurementTable(const std::string &name);
// Values and angles of one set.
u32 rowCount(const MeasTable &table);

// Short addresses of objects that the instrument measures nothing for.
std::vector<std::string> unfedObjects();

} // namespace ied::test
