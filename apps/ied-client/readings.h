// Reading variables together with what belongs to them: unit, quality and time.
#pragma once

#include "ied-client/model.h"

#include <map>
#include <string>
#include <vector>

namespace ied::client {

// One attribute as it was read; a whole array is one row.
struct Row {
    Reference reference;
    const Type *type = nullptr;
    std::optional<Value> value;
    std::string error; // why there is no value
    std::string unit;  // empty: a plain number
    f64 scale = 1;     // pulsQty of a counter: the quantity is value x scale
    std::optional<Value> quality;
    std::optional<Value> time;
    std::string reason; // names, between commas, of why a report includes it; empty: not told
};

// What is read in each round, and the units that were read once.
struct Reading {
    std::vector<Variable> wanted;                  // small enough to be read each in one answer
    std::vector<Variable> companions;              // quality and time that lie beside a wanted attribute
    std::map<std::string, Variable> unitVariables; // by key, see variableKey
    std::map<std::string, Value> units;
};

// Name of a variable among results: device, item and selection.
std::string variableKey(const Reference &reference);

// Prepares the reading of variables: cuts those whose answer would exceed the PDU size into their
// components, finds their companions, and reads their units.
std::optional<Reading> prepareReading(Model &model, const std::vector<Variable> &variables);

// One round. A variable that the server refuses gives one row with the error.
std::optional<std::vector<Row>> readRows(Model &model, const Reading &reading);

// Rows of a variable that came by itself, with the units of a reading that was prepared for it.
std::vector<Row> valueRows(const Variable &variable, const AccessResult &result, const Reading &reading);

// Reads variables in as few requests as the PDU size allows; results by key. A range that the server
// refuses is cut out of the whole array.
std::optional<std::map<std::string, AccessResult>> readVariables(Connection &connection,
                                                                 const std::vector<Variable> &variables);

} // namespace ied::client
