#include "ied-device/parameters.h"

#include "ied-device/parameterRules.h"

#include <cmath>
#include <set>

namespace ied::instrument {

namespace {

constexpr u32 firstCount = 1000; // of every change counter; the group's number is added

// Values of single parameters that differ from their family's.
struct Special {
    const char *name;
    f64 value;
};
constexpr Special specials[] = {
    {"SET.IO.DIMod7", 1}, // pulses of a meter
    {"SET.IO.DIMod8", 1},
    {"SET.setpoint1.TrgMod", 1}, // a phase voltage is too high
    {"SET.setpoint1.MonObj", 1},
    {"SET.setpoint1.OvStrVar", 253},
    {"SET.setpoint1.UnStrVar", 250},
    {"SET.setpoint2.TrgMod", 2}, // or too low
    {"SET.setpoint2.MonObj", 1},
    {"SET.setpoint2.OvStrVar", 210},
    {"SET.setpoint2.UnStrVar", 207},
    {"SET.setpoint3.TrgMod", 1}, // distortion of a voltage
    {"SET.setpoint3.MonObj", 27},
    {"SET.setpoint3.OvStrVar", 0.08},
    {"SET.setpoint3.UnStrVar", 0.07},
    {"SET.setpoint4.TrgMod", 1}, // input 1 is closed
    {"SET.setpoint4.MonObj", 11},
    {"SET.setpoint4.ActTm", 0},
    {"SET.setpoint4.RetTm", 0},
    {"SET.setpoint5.TrgMod", 1}, // input 2 is closed
    {"SET.setpoint5.MonObj", 12},
    {"SET.setpoint5.ActTm", 0},
    {"SET.setpoint5.RetTm", 0},
    {"SET.setpoint6.TrgMod", 1}, // a phase current
    {"SET.setpoint6.MonObj", 3},
    {"SET.setpoint6.OvStrVar", 160},
    {"SET.setpoint6.UnStrVar", 150},
    {"SET.setpoint7.TrgMod", 1}, // deviation of the frequency
    {"SET.setpoint7.MonObj", 6},
    {"SET.setpoint7.OvStrVar", 0.5},
    {"SET.setpoint7.UnStrVar", 0.4},
    {"SET.setpoint8.TrgMod", 1}, // reverse phase sequence
    {"SET.setpoint8.MonObj", 38},
    {"SET.setpoint25.TrgMod", 2}, // a phase voltage, without delay
    {"SET.setpoint25.MonObj", 1},
    {"SET.setpoint25.ActTm", 0},
    {"SET.setpoint25.RetTm", 0},
    {"SET.setpoint25.OvStrVar", 210},
    {"SET.setpoint25.UnStrVar", 207},
    {"SET.logic1.LogicEna", 1}, // the voltage is too high or too low
    {"SET.logic1.input1", 1},
    {"SET.logic1.input2", 2},
    {"SET.logic1.logic1", 1},
    {"SET.logic2.LogicEna", 1}, // both inputs are closed
    {"SET.logic2.input1", 4},
    {"SET.logic2.input2", 5},
    {"SET.sys.VarTrg1", 31}, // a wave record of each voltage event
    {"SET.sys.TransTrg1", 32},
    {"SET.EngBill.var2", 2},
    {"SET.EngBill.var3", 3},
    {"SET.EngBill.var4", 4},
};

constexpr u32 serial = 418000127;
constexpr u16 hardware = 10203; // 1.02.03
constexpr u16 software = 20108;
constexpr u16 configuration = 105;
constexpr u16 timeSourceVariant = 1;

std::string expanded(const char *pattern, u32 group, u32 member) {
    std::string name;
    for (; *pattern != 0; pattern++) {
        if (*pattern == '#') {
            name += std::to_string(group);
        } else if (*pattern == '*') {
            name += std::to_string(member);
        } else {
            name += *pattern;
        }
    }
    return name;
}

template <class T> void storeCut(Region region, u32 offset, f64 value) {
    storeAt<T>(region, offset, static_cast<T>(static_cast<i64>(value)));
}

} // namespace

u32 paramOffset(const Parameter &parameter) {
    const ParamRow &row = *parameter.row;
    return row.offset + parameter.group * row.groupStride + parameter.member * row.memberStride;
}

std::string paramName(const Parameter &parameter) {
    return expanded(parameter.row->name, parameter.row->firstGroup + parameter.group, parameter.member + 1);
}

u32 paramArm(const Parameter &parameter) {
    const ParamRow &row = *parameter.row;
    return row.arm == 0 ? 0 : row.arm + row.firstGroup - 1u + parameter.group;
}

void forEachParameter(const std::function<void(const Parameter &)> &visit) {
    for (const ParamRow &row : paramRows()) {
        for (u32 group = 0; group < row.groups; group++) {
            for (u32 member = 0; member < row.members; member++) {
                visit({&row, group, member});
            }
        }
    }
}

Parameter findParameter(std::string_view name) {
    Parameter found{};
    forEachParameter([&](const Parameter &parameter) {
        if (found.row == nullptr && paramName(parameter) == name) {
            found = parameter;
        }
    });
    return found;
}

f64 loadParameter(Region region, u32 area, const Parameter &parameter) {
    const u32 offset = area + paramOffset(parameter);
    switch (parameter.row->type) {
    case ParamU8:
        return loadAt<u8>(region, offset);
    case ParamU16:
        return loadAt<u16>(region, offset);
    case ParamU32:
        return loadAt<u32>(region, offset);
    case ParamI16:
        return loadAt<i16>(region, offset);
    case ParamF32:
        return loadAt<f32>(region, offset);
    }
    return 0;
}

void storeParameter(Region region, u32 area, const Parameter &parameter, f64 value) {
    const u32 offset = area + paramOffset(parameter);
    switch (parameter.row->type) {
    case ParamU8:
        return storeCut<u8>(region, offset, value);
    case ParamU16:
        return storeCut<u16>(region, offset, value);
    case ParamU32:
        return storeCut<u32>(region, offset, value);
    case ParamI16:
        return storeCut<i16>(region, offset, value);
    case ParamF32:
        return storeAt<f32>(region, offset, static_cast<f32>(value));
    }
}

f64 inForce(Region region, const Parameter &family, u32 group, u32 member) {
    return loadParameter(region, region::liveArea,
                         {family.row, family.group + group, family.member + member});
}

bool parameterAllows(const ParamRow &row, f64 value) {
    if (!std::isfinite(value)) {
        return false;
    }
    const bool isFree = row.type == ParamF32;
    return isFree || (value == std::floor(value) && value >= row.low && value <= row.high);
}

void fillParameters(Region region) {
    for (u32 i = 0; i < region::armFlag.count; i++) {
        store(region, region::armFlag, firstCount + i, i);
    }
    forEachParameter([&](const Parameter &parameter) {
        storeParameter(region, region::liveArea, parameter, parameter.row->initial);
    });
    for (const Special &special : specials) {
        storeParameter(region, region::liveArea, findParameter(special.name), special.value);
    }
    store(region, region::ratedCurrent, 0);
    store(region, region::serialNumber, serial);
    store(region, region::timeSource, timeSourceVariant);
    store(region, region::hwVersion, hardware);
    store(region, region::swVersion, software);
    store(region, region::cfgVersion, configuration);
}

bool commitEdit(Region region) {
    bool allowed = true;
    std::set<u32> changed;
    const auto differs = [&](const Parameter &p) {
        return loadParameter(region, region::editArea, p) != loadParameter(region, region::liveArea, p);
    };
    const auto isAllowed = [&](const Parameter &p) {
        return parameterAllows(*p.row, loadParameter(region, region::editArea, p)) &&
               fitsOthers(region, region::editArea, p);
    };
    forEachParameter([&](const Parameter &p) { allowed = allowed && (!differs(p) || isAllowed(p)); });
    if (!allowed) {
        return false;
    }
    forEachParameter([&](const Parameter &p) {
        if (differs(p)) {
            storeParameter(region, region::liveArea, p, loadParameter(region, region::editArea, p));
            changed.insert(paramArm(p));
        }
    });
    for (const u32 arm : changed) {
        if (arm != 0) {
            raise(region, region::armFlag, arm);
        }
    }
    return true;
}

} // namespace ied::instrument
