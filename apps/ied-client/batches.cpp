#include "ied-client/readings.h"

#include <set>

namespace ied::client {

namespace {

constexpr std::size_t pduOverhead = 200; // presentation, invoke id and list headers around a list
constexpr std::size_t entryOverhead = 8;

using Results = std::map<std::string, AccessResult>;

std::size_t answerSize(const Variable &variable) {
    const Step *last = variable.reference.path.empty() ? nullptr : &variable.reference.path.back();
    if (last && last->range) {
        return (last->last - last->first + 1) * encodedSize(variable.type->parts.front()) + entryOverhead;
    }
    return encodedSize(*variable.type) + entryOverhead;
}

// One Read of `batch`, its results into `results`.
bool readBatch(Connection &connection, const std::vector<Variable> &batch, Results &results) {
    std::vector<VariableName> names;
    for (const Variable &variable : batch) {
        names.push_back(variableName(variable.reference));
    }
    const std::optional<Element> answer = request(connection, readRequest(names));
    if (!answer) {
        return false;
    }
    std::optional<std::vector<AccessResult>> values = readResponse(*answer);
    if (!values || values->size() != batch.size()) {
        connection.failure = {statusNoConnection, "the server sent a malformed answer to a read"};
        return false;
    }
    for (std::size_t i = 0; i < batch.size(); ++i) {
        results[variableKey(batch[i].reference)] = std::move((*values)[i]);
    }
    return true;
}

bool readAll(Connection &connection, const std::vector<Variable> &variables, Results &results) {
    const std::size_t limit =
        pduLimit(connection) > 2 * pduOverhead ? pduLimit(connection) - pduOverhead : pduOverhead;
    std::vector<Variable> batch;
    std::set<std::string> seen;
    std::size_t asked = 0;
    std::size_t answered = 0;
    for (const Variable &variable : variables) {
        if (!seen.insert(variableKey(variable.reference)).second) {
            continue;
        }
        const std::size_t ask = requestSize(variableName(variable.reference));
        const std::size_t answer = answerSize(variable);
        if (!batch.empty() && (asked + ask > limit || answered + answer > limit)) {
            if (!readBatch(connection, batch, results)) {
                return false;
            }
            batch.clear();
            asked = answered = 0;
        }
        batch.push_back(variable);
        asked += ask;
        answered += answer;
    }
    return batch.empty() || readBatch(connection, batch, results);
}

// The same variable without its range.
Variable wholeArray(Variable variable) {
    Step &last = variable.reference.path.back();
    last.range = last.indexed = false;
    return variable;
}

} // namespace

std::string variableKey(const Reference &reference) {
    return personal(reference);
}

std::optional<Results> readVariables(Connection &connection, const std::vector<Variable> &variables) {
    Results results;
    if (!readAll(connection, variables, results)) {
        return std::nullopt;
    }
    // A server may support no ranges, or none that reaches the last element.
    std::vector<Variable> refused;
    for (const Variable &variable : variables) {
        const bool range = !variable.reference.path.empty() && variable.reference.path.back().range;
        if (range && !results[variableKey(variable.reference)].value) {
            refused.push_back(variable);
        }
    }
    for (const Variable &variable : refused) {
        const Variable whole = wholeArray(variable);
        if (!readBatch(connection, {whole}, results)) {
            return std::nullopt;
        }
        AccessResult part = results[variableKey(whole.reference)];
        const Step &step = variable.reference.path.back();
        if (part.value && part.value->items.size() > step.last) {
            std::vector<Value> &items = part.value->items;
            items = {items.begin() + step.first, items.begin() + step.last + 1};
            results[variableKey(variable.reference)] = std::move(part);
        }
    }
    return results;
}

} // namespace ied::client
