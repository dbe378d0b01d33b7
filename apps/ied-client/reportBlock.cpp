#include "ied-client/reportBlock.h"

#include "ied-client/format.h"

#include <algorithm>
#include <cstdlib>

namespace ied::client {

namespace {

constexpr const char *blockFcs[] = {"BR", "RP"};

bool isBlockFc(const std::string &fc) {
    return std::find(std::begin(blockFcs), std::end(blockFcs), fc) != std::end(blockFcs);
}

// Whether a name of a device's list is that of a whole block.
bool isBlock(const Reference &reference) {
    return isBlockFc(reference.fc) && reference.path.size() == 1;
}

std::nullopt_t refuse(Model &model, const std::string &text) {
    model.connection.failure = {statusRefused, text};
    return std::nullopt;
}

// Appends the blocks of a device, or of one of its logical nodes.
bool addBlocks(Model &model, const Reference &within, std::vector<Variable> &out) {
    const std::vector<std::string> *items = itemNames(model, within.device);
    if (!items) {
        return false;
    }
    for (const std::string &item : *items) {
        const Reference reference = fromItem(within.device, item);
        if (!isBlock(reference) || (!within.node.empty() && within.node != reference.node) ||
            (!within.fc.empty() && within.fc != reference.fc)) {
            continue;
        }
        const Type *node = nodeType(model, reference.device, reference.node);
        const Type *type = node ? typeAt(*node, reference.fc, reference.path) : nullptr;
        if (!node) {
            return false;
        }
        if (type) {
            out.push_back({reference, type});
        }
    }
    return true;
}

} // namespace

std::optional<std::vector<Variable>> findBlocks(Model &model) {
    const std::vector<std::string> *devices = deviceNames(model);
    std::vector<Variable> all;
    for (std::size_t i = 0; devices && i < devices->size(); ++i) {
        if (!addBlocks(model, Reference{(*devices)[i], "", "", {}}, all)) {
            return std::nullopt;
        }
    }
    return devices ? std::optional(std::move(all)) : std::nullopt;
}

std::optional<std::vector<Variable>> findBlocks(Model &model, const Reference &within) {
    std::vector<Variable> found;
    if (within.path.empty()) {
        if (!within.node.empty() && !nodeType(model, within.device, within.node)) {
            return std::nullopt;
        }
        if (!addBlocks(model, within, found)) {
            return std::nullopt;
        }
        return found.empty() ? refuse(model, personal(within) + " has no report control block")
                             : std::optional(std::move(found));
    }
    std::optional<std::vector<Variable>> variables = resolve(model, within);
    if (!variables) {
        return std::nullopt;
    }
    for (const Variable &variable : *variables) {
        if (isBlock(variable.reference)) {
            found.push_back(variable);
        }
    }
    return found.empty() ? refuse(model, personal(within) + " is no report control block")
                         : std::optional(std::move(found));
}

std::optional<std::vector<ReportBlock>> readBlocks(Model &model, const std::vector<Variable> &variables) {
    auto results = readVariables(model.connection, variables);
    if (!results) {
        return std::nullopt;
    }
    std::vector<ReportBlock> blocks;
    for (const Variable &variable : variables) {
        AccessResult &result = results->at(variableKey(variable.reference));
        if (!result.value) {
            return refuse(model, personal(variable.reference) + ": " + dataAccessError(result.error));
        }
        blocks.push_back({variable, std::move(*result.value)});
    }
    return blocks;
}

bool readAgain(Model &model, ReportBlock &block) {
    std::optional<std::vector<ReportBlock>> blocks = readBlocks(model, {block.variable});
    if (blocks) {
        block = std::move(blocks->front());
    }
    return blocks.has_value();
}

const Value *attribute(const ReportBlock &block, const std::string &name) {
    const std::vector<std::string> &names = block.variable.type->names;
    for (std::size_t i = 0; i < names.size() && i < block.state.items.size(); ++i) {
        if (names[i] == name) {
            return &block.state.items[i];
        }
    }
    return nullptr;
}

bool isTrue(const ReportBlock &block, const std::string &name) {
    const Value *value = attribute(block, name);
    return value && value->kind == Kind::boolean && value->integer != 0;
}

std::string attributeOctets(const ReportBlock &block, const std::string &name) {
    const Value *value = attribute(block, name);
    return value ? value->octets : "";
}

std::string attributeText(const ReportBlock &block, const std::string &name) {
    const Value *value = attribute(block, name);
    return value ? valueText(*value) : "";
}

std::string stateText(const ReportBlock &block) {
    const std::string state = isTrue(block, "RptEna") ? "enabled"
                              : isTrue(block, "Resv") ? "reserved"
                                                      : "free";
    const bool owned = attributeOctets(block, "Owner").find_first_not_of('\0') != std::string::npos;
    return owned ? state + " by " + attributeText(block, "Owner") : state;
}

std::optional<i64> writeAttribute(Connection &connection, const ReportBlock &block, const std::string &name,
                                  const std::string &text) {
    const Type *type = component(*block.variable.type, name);
    if (!type) {
        connection.failure = {statusRefused, blockName(block) + " has no " + name};
        return std::nullopt;
    }
    std::string why;
    std::string fitting = text;
    if (type->kind == Kind::bitString) {
        fitting.resize(static_cast<std::size_t>(std::abs(type->size)), '0');
    }
    const std::optional<Value> value = parseValue(fitting, *type, why);
    if (!value) {
        connection.failure = {statusUsage, name + " of " + blockName(block) + " takes " + why};
        return std::nullopt;
    }
    Reference reference = block.variable.reference;
    reference.path.push_back(Step{name, false, 0, 0, false});
    const std::optional<Element> answer = request(connection, writeRequest(variableName(reference), *value));
    const std::optional<i64> result = answer ? writeResponse(*answer) : std::nullopt;
    if (answer && !result) {
        connection.failure = {statusNoConnection, "the server sent a malformed answer to a write"};
    }
    return result;
}

} // namespace ied::client
