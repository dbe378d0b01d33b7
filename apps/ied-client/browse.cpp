#include "ied-client/commands.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fnmatch.h>

namespace ied::client {

namespace {

std::string jsonList(const std::vector<std::string> &names) {
    std::string text = "[";
    for (const std::string &name : names) {
        text += (text.size() > 1 ? "," : "") + jsonString(name);
    }
    return text + "]\n";
}

void printNames(const Session &session, const std::vector<std::string> &names) {
    if (session.options.json) {
        return print(jsonList(names));
    }
    for (const std::string &name : names) {
        print(printable(name) + "\n");
    }
}

// Lines of a tree: the name indented, the type of a leaf behind it.
void addTree(const std::string &name, const Type &type, int indent, int depth,
             std::vector<std::vector<std::string>> &lines) {
    const Type *inner = type.kind == Kind::array && !type.parts.empty() ? &type.parts.front() : &type;
    std::string text = type.kind == Kind::structure ? "" : typeName(type);
    if (type.kind == Kind::array && inner->kind != Kind::structure) {
        text += " of " + typeName(*inner);
    }
    lines.push_back({std::string(static_cast<std::size_t>(indent) * 2, ' ') + printable(name), text});
    if (depth <= 0 || inner->kind != Kind::structure) {
        return;
    }
    for (std::size_t i = 0; i < inner->parts.size(); ++i) {
        addTree(inner->names[i], inner->parts[i], indent + 1, depth - 1, lines);
    }
}

// One JSON object a leaf: reference and type.
void addLeaves(const Reference &reference, const Type &type, std::string &text) {
    if (type.kind != Kind::structure) {
        text += (text.empty() ? "" : ",") + std::string("{\"reference\":") + jsonString(personal(reference)) +
                ",\"type\":" + jsonString(typeName(type)) + "}";
        return;
    }
    for (std::size_t i = 0; i < type.parts.size(); ++i) {
        Reference inner = reference;
        if (inner.fc.empty()) {
            inner.fc = type.names[i];
        } else {
            inner.path.push_back(Step{type.names[i], false, 0, 0, false});
        }
        addLeaves(inner, type.parts[i], text);
    }
}

// The logical nodes that a device or a reference to one node stands for.
std::optional<std::vector<std::string>> nodesOf(Session &session, const Reference &reference) {
    if (!reference.node.empty()) {
        return std::vector<std::string>{reference.node};
    }
    return nodeNames(session.model, reference.device);
}

// Trees of one device's nodes; the status.
int showDevice(Session &session, const Reference &reference, std::string &json) {
    const std::optional<std::vector<std::string>> nodes = nodesOf(session, reference);
    if (!nodes) {
        return fail(session);
    }
    const bool whole = reference.node.empty();
    if (whole && !session.options.json) {
        print(printable(reference.device) + "\n");
    }
    for (const std::string &node : *nodes) {
        const int depth = session.options.depth - (whole ? 1 : 0);
        const Type *type =
            depth < 0 && !session.options.json ? nullptr : nodeType(session.model, reference.device, node);
        if (!type && depth >= 0) {
            return fail(session);
        }
        std::vector<std::vector<std::string>> lines;
        if (session.options.json) {
            addLeaves(Reference{reference.device, node, reference.fc, {}}, *type, json);
        } else if (type) {
            addTree(whole ? node : reference.device + "/" + node, *type, whole ? 1 : 0, depth, lines);
        }
        print(alignedText(lines));
    }
    return statusGood;
}

// Trees of the variables that a reference with a path or an FC stands for.
int showVariables(Session &session, const Reference &reference, std::string &json) {
    std::vector<Variable> variables;
    const Type *node = nodeType(session.model, reference.device, reference.node);
    for (std::size_t i = 0; node && i < node->names.size(); ++i) {
        Variable variable{reference, typeAt(*node, node->names[i], reference.path)};
        variable.reference.fc = node->names[i];
        if (variable.type && (reference.fc.empty() || reference.fc == node->names[i])) {
            variables.push_back(std::move(variable));
        }
    }
    if (variables.empty()) {
        const auto none = resolve(session.model, reference);
        return none ? statusRefused : fail(session);
    }
    std::vector<std::vector<std::string>> lines;
    for (const Variable &variable : variables) {
        if (session.options.json) {
            addLeaves(variable.reference, *variable.type, json);
        } else {
            addTree(personal(variable.reference), *variable.type, 0, session.options.depth, lines);
        }
    }
    print(alignedText(lines));
    return statusGood;
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// Whether a text contains a pattern, or is what one with * or ? describes.
bool textMatches(const std::string &text, const std::string &pattern) {
    if (pattern.find_first_of("*?") == std::string::npos) {
        return lower(text).find(lower(pattern)) != std::string::npos;
    }
    std::string escaped;
    for (char c : lower(pattern)) {
        escaped += c == '[' ? "\\[" : std::string(1, c);
    }
    return fnmatch(escaped.c_str(), lower(text).c_str(), 0) == 0;
}

// A pattern with a separator is held against the whole reference, with its FC and without, any
// other against the last name.
bool matches(const Reference &reference, const std::string &pattern) {
    if (pattern.find_first_of("/.[$") == std::string::npos) {
        return textMatches(reference.path.empty() ? reference.node : reference.path.back().name, pattern);
    }
    Reference withoutFc = reference;
    withoutFc.fc.clear();
    return textMatches(personal(reference), pattern) || textMatches(personal(withoutFc), pattern);
}

} // namespace

int identify(Session &session) {
    Connection &connection = session.model.connection;
    const std::optional<Element> answer = request(connection, identifyRequest());
    const std::optional<Identity> identity = answer ? identifyResponse(*answer) : std::nullopt;
    if (!identity) {
        return answer ? failMalformed() : fail(session);
    }
    const std::string size = std::to_string(connection.negotiated.pduSize);
    if (session.options.json) {
        print("{\"vendor\":" + jsonString(identity->vendor) + ",\"model\":" + jsonString(identity->model) +
              ",\"revision\":" + jsonString(identity->revision) + ",\"pduSize\":" + size + "}\n");
    } else {
        print(alignedText({{"vendor", printable(identity->vendor)},
                           {"model", printable(identity->model)},
                           {"revision", printable(identity->revision)},
                           {"PDU size", size + " octets"}}));
    }
    return statusGood;
}

int listDevices(Session &session) {
    const std::vector<std::string> *names = deviceNames(session.model);
    if (!names) {
        return fail(session);
    }
    printNames(session, *names);
    return statusGood;
}

int showTree(Session &session) {
    std::string json;
    int status = statusGood;
    if (session.options.arguments.empty()) {
        const std::vector<std::string> *devices = deviceNames(session.model);
        if (!devices) {
            return fail(session);
        }
        for (std::size_t i = 0; i < devices->size() && status == statusGood; ++i) {
            status = showDevice(session, Reference{(*devices)[i], "", "", {}}, json);
        }
    } else {
        const std::optional<Reference> reference = referenceArgument(session.options.arguments[0]);
        if (!reference) {
            return statusUsage;
        }
        const bool below = !reference->path.empty() || !reference->fc.empty();
        status = below ? showVariables(session, *reference, json) : showDevice(session, *reference, json);
    }
    if (session.options.json && status == statusGood) {
        print("[" + json + "]\n");
    }
    return status;
}

int findNames(Session &session) {
    const std::vector<std::string> *devices = deviceNames(session.model);
    if (!devices) {
        return fail(session);
    }
    std::vector<std::string> found;
    for (const std::string &device : *devices) {
        const std::vector<std::string> *items = itemNames(session.model, device);
        if (!items) {
            return fail(session);
        }
        for (const std::string &item : *items) {
            const Reference reference = fromItem(device, item);
            const bool named = !reference.path.empty() || reference.fc.empty();
            if (named && matches(reference, session.options.arguments[0])) {
                found.push_back(personal(reference));
            }
        }
    }
    printNames(session, found);
    return found.empty() ? fail(statusRefused, "nothing matches '" + session.options.arguments[0] + "'")
                         : statusGood;
}

} // namespace ied::client
