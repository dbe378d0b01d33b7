// The instrument's parameters: place, type, limits and first value of each, and the change counter
// that is raised when it changes.
#pragma once

#include "ied-device/regionAccess.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace ied::instrument {

enum ParamType : u8 {
    ParamU8,
    ParamU16,
    ParamU32,
    ParamI16,
    ParamF32
};

// One parameter or a family: "#" in the name stands for the number of a group, "*" for the number of
// a member of the group.
struct ParamRow {
    const char *name;
    ParamType type;
    u32 offset; // in a parameter area, of the first one
    u16 firstGroup;
    u16 groups;
    u16 groupStride; // octets
    u16 members;
    u16 memberStride;
    i32 low;
    i32 high; // low and high equal: any value
    i32 initial;
    u8 arm; // change counter, of group 1; 0 for none
};
std::span<const ParamRow> paramRows();

// One parameter of a family.
struct Parameter {
    const ParamRow *row;
    u32 group;  // from 0, within the row
    u32 member; // from 0
};
u32 paramOffset(const Parameter &parameter);
std::string paramName(const Parameter &parameter);
// Index of its change counter, 0 for none.
u32 paramArm(const Parameter &parameter);
void forEachParameter(const std::function<void(const Parameter &)> &visit);
// The parameter of that name ("SET.sys.TVMod"), or one without a row.
Parameter findParameter(std::string_view name);

// Value in the parameter area that begins at `area` (region::liveArea or region::editArea).
f64 loadParameter(Region region, u32 area, const Parameter &parameter);
void storeParameter(Region region, u32 area, const Parameter &parameter, f64 value);
// The value in force of a member of a parameter's family, so many groups and members behind it.
f64 inForce(Region region, const Parameter &family, u32 group = 0, u32 member = 0);
// Whether the value is within the limits and whole where it has to be.
bool parameterAllows(const ParamRow &row, f64 value);

// First values of everything in the live area, and change counters far from 1.
void fillParameters(Region region);

// Takes over what an edit has left in the edit area: every parameter that differs goes to the live
// area, and the counters of their groups are raised. False, with nothing done, if one of them is
// not allowed.
bool commitEdit(Region region);

} // namespace ied::instrument
