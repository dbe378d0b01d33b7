#include "ied-device/parameterRules.h"

#include <algorithm>
#include <string_view>

namespace ied::instrument {

namespace {

// The parameters of one area.
struct Area {
    Region region;
    u32 begin;

    u32 value(const Parameter &parameter, u32 group = 0) const {
        return static_cast<u32>(
            loadParameter(region, begin, {parameter.row, parameter.group + group, parameter.member}));
    }
};

// A day and an hour, or the end of the month.
bool settlement(const Area &area, const Parameter &parameter) {
    constexpr u32 endOfMonth = 65535;
    const u32 value = area.value(parameter);
    const u32 day = value / 100;
    return value == endOfMonth || value == 0 || (day >= 1 && day <= 28 && value % 100 < 24);
}

bool roomForRecords(const Area &area, const Parameter &) {
    static const Parameter room = findParameter("SET.wave1.MaxNumRcd");
    return area.value(room, 0) + area.value(room, 1) <= 128;
}

// The more samples a cycle has, the fewer cycles fit before the trigger.
bool cyclesBefore(const Area &area, const Parameter &parameter) {
    static const Parameter rate = findParameter("SET.wave1.SmpRat");
    return area.value(parameter) <= 192u >> area.value(rate, parameter.group);
}

bool belowDip(const Area &area, const Parameter &parameter) {
    static const Parameter dip = findParameter("SET.sys.DipStrVar");
    return area.value(parameter) < area.value(dip);
}

// Only one input can synchronise the demand, and one the time.
bool soleSynchroniser(const Area &area, const Parameter &parameter) {
    const u32 mode = area.value(parameter);
    u32 alike = 0;
    for (u32 i = 0; i < parameter.row->members; i++) {
        alike += area.value({parameter.row, 0, i}) == mode ? 1 : 0;
    }
    return mode < 2 || alike == 1;
}

// A transient is too short for the snapshots.
bool transientAction(const Area &area, const Parameter &parameter) {
    const u32 action = area.value(parameter);
    return action <= 6 || action >= 31;
}

// Pulses of energy must not come too fast at the rated power of a phase.
bool pulseFactor(const Area &area, const Parameter &parameter) {
    const u32 amperes = load(area.region, region::ratedCurrent) == 1 ? 1 : 5;
    static const Parameter volts = findParameter("SET.sys.RtgVolt");
    const u32 power = amperes * area.value(volts);
    const u32 highest = power <= 500 ? 4 : power <= 690 ? 2 : power <= 1900 ? 1 : 0;
    return area.value(parameter) <= highest;
}

bool timeSource(const Area &area, const Parameter &parameter) {
    const u32 source = area.value(parameter);
    return load(area.region, region::timeSource) != 0 || source <= 1 || source == 3;
}

bool withinInterval(const Area &area, const Parameter &parameter) {
    constexpr u32 firstLong = 8; // the groups before have no such limit
    static const Parameter interval = findParameter("SET.snap9.LogIntv");
    return parameter.group < firstLong ||
           area.value(parameter) <= (area.value(interval, parameter.group - firstLong) & 0xFFFF);
}

struct Rule {
    std::string_view name; // of the row
    bool (*holds)(const Area &, const Parameter &);
};

constexpr Rule rules[] = {
    {"SET.sys.SettleTime", settlement},  {"SET.wave#.MaxNumRcd", roomForRecords},
    {"SET.wave#.PreCyc", cyclesBefore},  {"SET.sys.IntrStrVar", belowDip},
    {"SET.IO.DIMod*", soleSynchroniser}, {"SET.sys.TransTrg*", transientAction},
    {"SET.sys.EngPlsFac", pulseFactor},  {"SET.sys.TmSrc", timeSource},
    {"SET.snap#.OfsTm", withinInterval},
};

} // namespace

bool fitsOthers(Region region, u32 area, const Parameter &parameter) {
    return std::all_of(std::begin(rules), std::end(rules), [&](const Rule &rule) {
        return rule.name != parameter.row->name || rule.holds({region, area}, parameter);
    });
}

bool keepsFit(Region before, Region after) {
    bool keeps = true;
    forEachParameter([&](const Parameter &parameter) {
        keeps = keeps && (fitsOthers(after, region::liveArea, parameter) ||
                          !fitsOthers(before, region::liveArea, parameter));
    });
    return keeps;
}

} // namespace ied::instrument
