// The instrument's parameters, one a line: where each lies in a parameter area and what it may be.
// Written down apart from the server's own maps, so that a test can hold the two against each other.
#pragma once

#include "device/parameterRefresh.h"

#include <string>
#include <vector>

namespace ied::test {

// A value at an edge, with what the other parameters stand at where the edge depends on them.
struct ParameterEdge {
    struct Other {
        std::string sAddr; // under edit
        f64 value;
    };
    std::vector<Other> others;
    std::vector<f64> passing, refused;
    struct Word {
        u32 source, value;
    };
    std::vector<Word> words = {}; // what the edge depends on in the edit area
};

// What a parameter may be: from `least` to `greatest`, or, where these are equal, as a ParaRange says.
struct ParameterLimits {
    i32 least, greatest;

    constexpr ParameterLimits(i32 from, i32 to) : least(from), greatest(to) {}
    constexpr ParameterLimits(ParaRange check) : least(check), greatest(check) {}
    constexpr bool isCheck() const { return least == greatest; }
};

struct ParameterRow {
    std::string sAddr;
    u16 cdc;
    ParaType type;
    u32 source; // octets from the start of a parameter area
    ParameterLimits limits;
};

// A map of the server.
struct ParameterMap {
    std::string name;
    std::vector<ParameterRow> parameters;
};

// In the order of ParaGroup.
const std::vector<ParameterMap> &parameterMaps();

// What the parameter may just be and what not. Edges suppose a device with a rated current of 5 A and the
// first variant of time sources.
std::vector<ParameterEdge> parameterEdges(const ParameterRow &row);

} // namespace ied::test
