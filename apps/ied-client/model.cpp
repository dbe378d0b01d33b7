#include "ied-client/model.h"

#include <algorithm>

namespace ied::client {

namespace {

constexpr const char *valueFcs[] = {"MX", "ST", "SP", "SG"};

bool isValueFc(const std::string &fc) {
    return std::find(std::begin(valueFcs), std::end(valueFcs), fc) != std::end(valueFcs);
}

std::nullopt_t refuse(Model &model, const std::string &text) {
    model.connection.failure = {statusRefused, text};
    return std::nullopt;
}

// Says which part of a reference does not exist.
std::string missingText(Model &model, const Reference &reference) {
    const std::vector<std::string> *devices = deviceNames(model);
    if (devices && std::find(devices->begin(), devices->end(), reference.device) == devices->end()) {
        return "no logical device '" + reference.device + "'";
    }
    return "no logical node '" + reference.node + "' in " + reference.device;
}

// Why a path is not there: a name that is missing, or an index where none can be.
std::string pathText(const Type &node, const Reference &reference) {
    Reference known = reference;
    for (known.path.clear(); known.path.size() < reference.path.size();) {
        const Step &step = reference.path[known.path.size()];
        std::vector<Step> plain = known.path;
        plain.push_back(Step{step.name, false, 0, 0, false});
        bool found = false;
        for (const std::string &fc : node.names) {
            if (!reference.fc.empty() && fc != reference.fc) {
                continue;
            }
            const Type *type = typeAt(node, fc, plain);
            found = found || type;
            if (type && step.indexed && (type->kind != Kind::array || type->count == 0)) {
                return "'" + step.name + "' has no elements";
            }
            if (type && step.indexed && step.last >= type->count) {
                return "'" + step.name + "' has no element " + std::to_string(step.last) +
                       ": they are 0 to " + std::to_string(type->count - 1);
            }
        }
        if (!found) {
            return personal(known) + " has no '" + step.name + "'";
        }
        known.path.push_back(step);
    }
    return reference.device + "/" + reference.node + " has no functional constraint '" + reference.fc + "'";
}

std::optional<std::vector<Variable>> resolveDevice(Model &model, const Reference &reference) {
    const std::optional<std::vector<std::string>> nodes = nodeNames(model, reference.device);
    if (!nodes) {
        return std::nullopt;
    }
    std::vector<Variable> all;
    for (const std::string &node : *nodes) {
        const Type *type = nodeType(model, reference.device, node);
        if (!type) {
            return std::nullopt;
        }
        for (std::size_t i = 0; i < type->names.size(); ++i) {
            if (reference.fc.empty() ? isValueFc(type->names[i]) : type->names[i] == reference.fc) {
                all.push_back({Reference{reference.device, node, type->names[i], {}}, &type->parts[i]});
            }
        }
    }
    return all;
}

} // namespace

std::optional<std::vector<std::string>> nameList(Connection &connection, ObjectClass objectClass,
                                                 const std::string &domain) {
    std::vector<std::string> all;
    for (;;) {
        const std::string after = all.empty() ? "" : all.back();
        const std::optional<Element> answer =
            request(connection, getNameListRequest(objectClass, domain, after));
        const std::optional<Names> names = answer ? getNameListResponse(*answer) : std::nullopt;
        if (!names) {
            if (answer) {
                connection.failure = {statusNoConnection, "the server sent a malformed name list"};
            }
            return std::nullopt;
        }
        all.insert(all.end(), names->names.begin(), names->names.end());
        if (!names->more || names->names.empty()) {
            return all;
        }
    }
}

const std::vector<std::string> *deviceNames(Model &model) {
    if (!model.devices) {
        model.devices = nameList(model.connection, classDomain, "");
    }
    return model.devices ? &*model.devices : nullptr;
}

const std::vector<std::string> *itemNames(Model &model, const std::string &device) {
    const auto known = model.items.find(device);
    if (known != model.items.end()) {
        return &known->second;
    }
    std::optional<std::vector<std::string>> names = nameList(model.connection, classVariable, device);
    if (!names) {
        if (model.connection.failure.status == statusRefused) {
            refuse(model, missingText(model, Reference{device, "", "", {}}));
        }
        return nullptr;
    }
    return &model.items.emplace(device, std::move(*names)).first->second;
}

std::optional<std::vector<std::string>> nodeNames(Model &model, const std::string &device) {
    const std::vector<std::string> *items = itemNames(model, device);
    if (!items) {
        return std::nullopt;
    }
    std::vector<std::string> nodes;
    for (const std::string &item : *items) {
        if (item.find('$') == std::string::npos) {
            nodes.push_back(item);
        }
    }
    return nodes;
}

const Type *nodeType(Model &model, const std::string &device, const std::string &node) {
    const std::string name = device + "/" + node;
    const auto known = model.nodes.find(name);
    if (known != model.nodes.end()) {
        return &known->second;
    }
    const std::optional<Element> answer = request(model.connection, getTypeRequest(device, node));
    std::optional<Type> type = answer ? getTypeResponse(*answer) : std::nullopt;
    if (!type) {
        if (answer) {
            model.connection.failure = {statusNoConnection, "the server sent a malformed type of " + name};
        } else if (model.connection.failure.status == statusRefused) {
            refuse(model, missingText(model, Reference{device, node, "", {}}));
        }
        return nullptr;
    }
    return &model.nodes.emplace(name, std::move(*type)).first->second;
}

const Type *typeAt(const Type &node, const std::string &fc, const std::vector<Step> &path) {
    const Type *type = component(node, fc);
    for (const Step &step : path) {
        type = type ? component(*type, step.name) : nullptr;
        if (!type || !step.indexed) {
            continue;
        }
        if (type->kind != Kind::array || step.last >= type->count) {
            return nullptr;
        }
        if (!step.range) {
            type = &type->parts.front();
        }
    }
    return type;
}

std::optional<std::vector<Variable>> resolve(Model &model, const Reference &reference) {
    if (reference.node.empty()) {
        return resolveDevice(model, reference);
    }
    const Type *node = nodeType(model, reference.device, reference.node);
    if (!node) {
        return std::nullopt;
    }
    std::vector<Variable> values;
    std::vector<Variable> others;
    for (const std::string &fc : node->names) {
        if (!reference.fc.empty() && fc != reference.fc) {
            continue;
        }
        Variable variable{reference, typeAt(*node, fc, reference.path)};
        variable.reference.fc = fc;
        if (variable.type) {
            (isValueFc(fc) ? values : others).push_back(std::move(variable));
        }
    }
    if (values.empty() && others.empty()) {
        return refuse(model, pathText(*node, reference));
    }
    return values.empty() ? others : values;
}

std::optional<VariableList> dataSet(Model &model, const std::string &device, const std::string &item) {
    const std::optional<Element> answer = request(model.connection, getListRequest(device, item));
    std::optional<VariableList> list = answer ? getListResponse(*answer) : std::nullopt;
    if (answer && !list) {
        model.connection.failure = {statusNoConnection, "the server sent a malformed answer"};
    }
    return list;
}

std::optional<std::vector<Variable>> memberVariables(Model &model, const VariableList &list) {
    std::vector<Variable> variables;
    for (const VariableName &member : list.members) {
        const auto found = resolve(model, fromItem(member.domain, member.item));
        if (!found) {
            return std::nullopt;
        }
        variables.push_back(found->front());
    }
    return variables;
}

} // namespace ied::client
