#include "ied-client/readings.h"

#include "ied-client/quantity.h"

#include <algorithm>

namespace ied::client {

namespace {

// Octets of one result that leave room for the rest of its PDU.
constexpr std::size_t pieceOverhead = 300;

// Attributes that carry a quantity (IEC 61850-7-3); only these take the unit of their data object.
constexpr const char *quantityNames[] = {"f", "i", "actVal", "frVal", "setVal", "stVal"};

Reference below(const Reference &reference, const std::string &name) {
    Reference result = reference;
    result.path.push_back(Step{name, false, 0, 0, false});
    return result;
}

Reference above(const Reference &reference) {
    Reference result = reference;
    result.path.pop_back();
    return result;
}

bool hasProcessTime(const std::string &fc) {
    return fc == "MX" || fc == "ST";
}

// Cuts a variable into its components until each fits an answer.
void addPieces(const Variable &variable, std::size_t limit, std::vector<Variable> &out) {
    if (encodedSize(*variable.type) <= limit || variable.type->kind != Kind::structure) {
        out.push_back(variable);
        return;
    }
    for (std::size_t i = 0; i < variable.type->parts.size(); ++i) {
        addPieces({below(variable.reference, variable.type->names[i]), &variable.type->parts[i]}, limit, out);
    }
}

// Adds q and t of the nearest structure above a variable that has them.
void addCompanions(const Type &node, const Variable &variable, Reading &reading) {
    if (!hasProcessTime(variable.reference.fc)) {
        return;
    }
    for (Reference at = variable.reference; at.path.size() > 1;) {
        at = above(at);
        if (at.path.back().indexed) {
            continue;
        }
        const Type *type = typeAt(node, variable.reference.fc, at.path);
        const Type *quality = type ? component(*type, "q") : nullptr;
        const Type *time = type ? component(*type, "t") : nullptr;
        if (quality) {
            reading.companions.push_back({below(at, "q"), quality});
        }
        if (time) {
            reading.companions.push_back({below(at, "t"), time});
        }
        if (quality || time) {
            return;
        }
    }
}

// Collects the `units` and `pulsQty` attributes below a node of the CF view.
void addUnits(const Reference &at, const Type &type, Reading &reading) {
    if (type.kind != Kind::structure) {
        return;
    }
    for (std::size_t i = 0; i < type.names.size(); ++i) {
        const Variable variable{below(at, type.names[i]), &type.parts[i]};
        if (type.names[i] == "units" || type.names[i] == "pulsQty") {
            reading.unitVariables.emplace(variableKey(variable.reference), variable);
        } else {
            addUnits(variable.reference, type.parts[i], reading);
        }
    }
}

// Units of the data object, or of all objects of a node, that a variable belongs to.
void addUnits(const Type &node, const Variable &variable, Reading &reading) {
    Reference at{variable.reference.device, variable.reference.node, "CF", {}};
    const Type *objects = component(node, "CF");
    if (objects && !variable.reference.path.empty()) {
        at = below(at, variable.reference.path[0].name);
        objects = component(*objects, variable.reference.path[0].name);
    }
    if (objects) {
        addUnits(at, *objects, reading);
    }
}

bool isQuantity(const Row &row) {
    const std::string &name = row.reference.path.back().name;
    return row.type->kind == Kind::array ||
           std::find_if(std::begin(quantityNames), std::end(quantityNames),
                        [&](const char *known) { return name == known; }) != std::end(quantityNames);
}

// The unit of a row: that of the nearest level of its data object that has one; degrees for the
// angle of a vector.
void setUnit(Row &row, const Reading &reading) {
    if (row.reference.path.empty() || !isQuantity(row)) {
        return;
    }
    for (const Step &step : row.reference.path) {
        if (step.name == "ang") {
            row.unit = "°";
            return;
        }
    }
    Reference at = row.reference;
    at.fc = "CF";
    for (Step &step : at.path) {
        step.indexed = step.range = false;
    }
    for (; !at.path.empty(); at = above(at)) {
        const auto scale = reading.units.find(variableKey(below(at, "pulsQty")));
        if (scale != reading.units.end() && scale->second.kind == Kind::floating) {
            row.scale = scale->second.real;
        }
        const std::string key = variableKey(below(at, "units"));
        const auto unit = reading.units.find(key);
        if (unit != reading.units.end()) {
            row.unit = unitSymbol(unit->second, *reading.unitVariables.at(key).type);
            return;
        }
    }
}

struct Companions {
    std::optional<Value> quality;
    std::optional<Value> time;
};

// Appends the rows of a value; `beside` is the quality and time of the structure around it.
void addRows(const Reference &reference, const Type &type, const Value &value, Companions beside,
             const Reading &reading, std::vector<Row> &rows) {
    if (type.kind != Kind::structure || value.kind != Kind::structure) {
        Row row{reference, &type, value, "", "", 1, beside.quality, beside.time, ""};
        setUnit(row, reading);
        rows.push_back(std::move(row));
        return;
    }
    const bool process = hasProcessTime(reference.fc);
    const std::size_t count = std::min(type.parts.size(), value.items.size());
    for (std::size_t i = 0; process && i < count; ++i) {
        if (type.names[i] == "q") {
            beside.quality = value.items[i];
        }
        if (type.names[i] == "t") {
            beside.time = value.items[i];
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (!process || count <= 2 || (type.names[i] != "q" && type.names[i] != "t")) {
            addRows(below(reference, type.names[i]), type.parts[i], value.items[i], beside, reading, rows);
        }
    }
}

Row errorRow(const Variable &variable, const AccessResult &result) {
    return {variable.reference, variable.type, {}, dataAccessError(result.error), "", 1, {}, {}, ""};
}

} // namespace

std::optional<Reading> prepareReading(Model &model, const std::vector<Variable> &variables) {
    Reading reading;
    const std::size_t limit = pduLimit(model.connection);
    for (const Variable &variable : variables) {
        addPieces(variable, limit > 2 * pieceOverhead ? limit - pieceOverhead : pieceOverhead,
                  reading.wanted);
    }
    for (const Variable &variable : reading.wanted) {
        const Type *node = nodeType(model, variable.reference.device, variable.reference.node);
        if (!node) {
            return std::nullopt;
        }
        addCompanions(*node, variable, reading);
        addUnits(*node, variable, reading);
    }
    std::vector<Variable> units;
    for (const auto &[key, variable] : reading.unitVariables) {
        units.push_back(variable);
    }
    const auto results = readVariables(model.connection, units);
    if (!results) {
        return std::nullopt;
    }
    for (const auto &[key, result] : *results) {
        if (result.value) {
            reading.units.emplace(key, *result.value);
        }
    }
    return reading;
}

std::optional<std::vector<Row>> readRows(Model &model, const Reading &reading) {
    std::vector<Variable> all = reading.wanted;
    all.insert(all.end(), reading.companions.begin(), reading.companions.end());
    const auto results = readVariables(model.connection, all);
    if (!results) {
        return std::nullopt;
    }
    std::vector<Row> rows;
    for (const Variable &variable : reading.wanted) {
        const AccessResult &result = results->at(variableKey(variable.reference));
        if (!result.value) {
            rows.push_back(errorRow(variable, result));
            continue;
        }
        Companions beside;
        for (Reference at = variable.reference; at.path.size() > 1 && !beside.quality && !beside.time;) {
            at = above(at);
            const auto quality = results->find(variableKey(below(at, "q")));
            const auto time = results->find(variableKey(below(at, "t")));
            beside.quality = quality == results->end() ? std::nullopt : quality->second.value;
            beside.time = time == results->end() ? std::nullopt : time->second.value;
        }
        addRows(variable.reference, *variable.type, *result.value, beside, reading, rows);
    }
    return rows;
}

std::vector<Row> valueRows(const Variable &variable, const AccessResult &result, const Reading &reading) {
    if (!result.value) {
        return {errorRow(variable, result)};
    }
    std::vector<Row> rows;
    addRows(variable.reference, *variable.type, *result.value, {}, reading, rows);
    return rows;
}

} // namespace ied::client
