#include "ied-device/state.h"

#include "ied-device/instrument.h"
#include "ied-device/parameters.h"
#include "ied-device/quantityTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ied::instrument {

namespace {

bool isDelta(Region region) {
    return load(region, region::TVMod) == 1;
}

enum class Kind : u8 {
    Real,  // f32
    Angle, // u16 in hundredths of a degree
    Count, // u32
};

// One named value: `count` numbers, `stride` octets apart; the first `blank` ones are 0 and have no
// place.
struct Item {
    const char *block;  // "RT."
    const char *name;   // "PhV.phsA", or the start of it where `number` follows
    const char *ending; // ".ang" or nothing
    u32 number;         // behind the name, 0 for none
    u32 place;
    Kind kind;
    u32 count = 1;
    u32 stride = 0;
    u32 blank = 0;
};

template <class Visit> void visitQuantities(bool delta, const Visit &visit) {
    struct Copy {
        const char *block;
        u32 QuantityRow::*place;
        u32 shift;
    };
    constexpr Copy copies[] = {
        {"RT.", &QuantityRow::realTime, 0},
        {"DMD.avg.", &QuantityRow::demand, 0},
        {"DMD.min.", &QuantityRow::demand, demandLowest},
        {"DMD.max.", &QuantityRow::demand, demandHighest},
        {"DMD.pre.", &QuantityRow::predicted, 0},
        {"MON.rt.now.max.", &QuantityRow::extreme, 0},
        {"MON.rt.now.min.", &QuantityRow::extreme, extremeLowest},
        {"MON.rt.last.max.", &QuantityRow::extreme, extremeLastMonth},
        {"MON.rt.last.min.", &QuantityRow::extreme, extremeLastMonth + extremeLowest},
        {"MON.dmd.now.max.", &QuantityRow::maxDemand, 0},
        {"MON.dmd.last.max.", &QuantityRow::maxDemand, extremeLastMonth},
    };
    for (const Copy &copy : copies) {
        for (const QuantityRow &row : quantityRows()) {
            const char *name = delta ? row.deltaName : row.wyeName;
            if (name != nullptr && row.*copy.place != 0) {
                visit(Item{copy.block, name, "", 0, row.*copy.place + copy.shift, Kind::Real});
            }
        }
    }
}

template <class Visit> void visitSpectra(bool delta, const Visit &visit) {
    struct Set {
        const char *block;
        u32 shift;
    };
    constexpr Set sets[] = {{"DMD.avg.", 0}, {"DMD.min.", demandLowest}, {"DMD.max.", demandHighest}};
    for (int c = 0; c < channels; c++) {
        const SpectrumRow &row = spectrumRow(c);
        const char *name = delta ? row.deltaName : row.wyeName;
        if (name == nullptr) {
            continue;
        }
        visit(Item{"RT.", name, "", 0, row.realTime, Kind::Real, orders, 4});
        visit(Item{"RT.", delta ? row.interDeltaName : row.interWyeName, "", 0, row.inter, Kind::Real, orders,
                   4});
        for (const Set &set : sets) {
            visit(Item{set.block, name, "", 0, row.demand + set.shift, Kind::Real, orders,
                       demandSpectrumStride, demandFirstOrder});
        }
    }
}

template <class Visit> void visitItems(bool delta, const Visit &visit) {
    visitQuantities(delta, visit);
    visitSpectra(delta, visit);
    for (const AngleRow &row : angleRows()) {
        visit(Item{"RT.", delta ? row.deltaName : row.wyeName, ".ang", 0, row.realTime, Kind::Angle});
    }
    for (const auto rows : {shortTermRows(), longTermRows()}) {
        for (const FlickerRow &row : rows) {
            visit(Item{"RT.", delta ? row.deltaName : row.wyeName, "", 0, row.place, Kind::Real});
        }
    }
    for (const EnergyRow &row : energyRows()) {
        visit(Item{"ENG.", row.name, "", 0, row.place, Kind::Count});
    }
    for (u32 i = 0; i < region::pulseCount.count; i++) {
        visit(Item{"ENG.", "PlsCnt", "", i + 1, region::pulseCount.at(i), Kind::Count});
    }
}

f64 valueAt(Region region, const Item &item, u32 index) {
    if (index < item.blank) {
        return 0;
    }
    const u32 place = item.place + (index - item.blank) * item.stride;
    switch (item.kind) {
    case Kind::Real:
        return loadAt<f32>(region, place);
    case Kind::Angle:
        return loadAt<u16>(region, place) / 100.0;
    case Kind::Count:
        return loadAt<u32>(region, place);
    }
    return 0;
}

std::string nameOf(const Item &item) {
    std::string name = std::string(item.block) + item.name;
    if (item.number != 0) {
        name += std::to_string(item.number);
    }
    return name + item.ending;
}

bool isWanted(const std::string &name, const std::vector<std::string> &prefixes) {
    return prefixes.empty() || std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string &prefix) {
               return name.compare(0, prefix.size(), prefix) == 0;
           });
}

void appendNumber(std::string *out, f64 value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", std::isfinite(value) ? value : 0.0);
    *out += text;
}

void appendKey(std::string *out, const std::string &name) {
    *out += out->back() == '{' ? "\"" : ",\"";
    *out += name + "\":";
}

std::string valuesJson(bool delta, const std::vector<f64> &values, const std::vector<std::string> &prefixes) {
    std::string out = "{";
    std::size_t at = 0;
    visitItems(delta, [&](const Item &item) {
        const std::size_t first = at;
        at += item.count;
        const std::string name = nameOf(item);
        if (at > values.size() || !isWanted(name, prefixes)) {
            return;
        }
        appendKey(&out, name);
        out += item.count > 1 ? "[" : "";
        for (std::size_t i = first; i < at; i++) {
            out += i > first ? "," : "";
            appendNumber(&out, values[i]);
        }
        out += item.count > 1 ? "]" : "";
    });
    return out;
}

// Parameters and states have no history: they stand behind the measurements in both pictures.
std::string settingsJson(Region region, const std::vector<std::string> &prefixes) {
    std::string out = "{";
    forEachParameter([&](const Parameter &parameter) {
        const std::string name = paramName(parameter);
        if (isWanted(name, prefixes)) {
            appendKey(&out, name);
            appendNumber(&out, loadParameter(region, region::liveArea, parameter));
        }
    });
    return out + "}";
}

std::string updatesJson(Region region) {
    struct Row {
        const char *name;
        u32 counter;
    };
    constexpr Row rows[] = {{"realTime", region::DspRealTime}, {"pst", region::DspPst},
                            {"plt", region::DspPlt},           {"energy", region::DspEnergy},
                            {"demand", region::DspDemand},     {"predicted", region::DspPreDemand},
                            {"pulses", region::DspPulse}};
    std::string out = "{";
    for (const Row &row : rows) {
        appendKey(&out, row.name);
        out += std::to_string(load(region, region::dspFlag, row.counter));
    }
    appendKey(&out, "thisMonth");
    out += std::to_string(load(region, region::statThisMonth));
    appendKey(&out, "lastMonth");
    return out + std::to_string(load(region, region::statLastMonth)) + "}";
}

// What the instrument's events have come to: states as they are now, and entries of each ring.
std::string eventsJson(const Instrument &instrument) {
    const Region region = instrument.shared.region;
    struct Row {
        const char *name;
        u32 state;
        u32 entries;
    };
    const Row rows[] = {
        {"di", load(region, region::diState), load(region, region::diRing.counter)},
        {"do", load(region, region::outputState), load(region, region::doRing.counter)},
        {"sp", instrument.setPoints.active, load(region, region::spRing.counter)},
        {"lg", instrument.logicGroups.active, load(region, region::lgRing.counter)},
    };
    std::string out = "{";
    for (const Row &row : rows) {
        appendKey(&out, row.name);
        out +=
            "{\"state\":" + std::to_string(row.state) + ",\"entries\":" + std::to_string(row.entries) + "}";
    }
    const Row counts[] = {{"pq", 0, load(region, region::pqCounter)},
                          {"wave1", 0, load(region, region::waveCount, 0)},
                          {"wave2", 0, load(region, region::waveCount, 1)},
                          {"check", 0, load(region, region::checkWord)}};
    for (const Row &row : counts) {
        appendKey(&out, row.name);
        out += std::to_string(row.entries);
    }
    return out + "}";
}

} // namespace

void readState(Region region, std::vector<f64> *values) {
    values->clear();
    visitItems(isDelta(region), [&](const Item &item) {
        for (u32 i = 0; i < item.count; i++) {
            values->push_back(valueAt(region, item, i));
        }
    });
}

std::string stateJson(const Instrument &instrument, const std::vector<std::string> &prefixes) {
    const Region region = instrument.shared.region;
    const bool delta = isDelta(region);
    const TimeStamp now = instrumentTime();
    char time[48];
    std::snprintf(time, sizeof time, "%u.%03u", now.sec, now.ms);
    const bool sameShape = instrument.stateBefore.size() == instrument.state.size();
    return std::string("{\"time\":") + time + ",\"wiring\":" + std::to_string(load(region, region::TVMod)) +
           ",\"held\":" + (instrument.held ? "true" : "false") + ",\"updates\":" + updatesJson(region) +
           ",\"events\":" + eventsJson(instrument) +
           ",\"values\":" + valuesJson(delta, instrument.state, prefixes) + "},\"before\":" +
           valuesJson(delta, sameShape ? instrument.stateBefore : instrument.state, prefixes) +
           "},\"settings\":" + settingsJson(region, prefixes) + "}\n";
}

bool writeStateFile(const Instrument &instrument, const std::string &path) {
    const std::string draft = path + ".new";
    std::FILE *file = std::fopen(draft.c_str(), "we");
    if (file == nullptr) {
        return false;
    }
    const std::string text = stateJson(instrument, {});
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return (std::fclose(file) == 0) && written && std::rename(draft.c_str(), path.c_str()) == 0;
}

} // namespace ied::instrument
