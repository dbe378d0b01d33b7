#include "ied-client/reference.h"

#include <algorithm>
#include <charconv>

namespace ied::client {

namespace {

constexpr u32 maxIndex = 0x7FFFFFFE;

bool parseNumber(std::string_view text, u32 &value) {
    const auto [at, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && at == text.data() + text.size();
}

// The inside of an index bracket: N or N..M.
bool parseIndex(const std::string &text, Step &step) {
    const std::size_t dots = text.find("..");
    step.indexed = true;
    step.range = dots != std::string::npos;
    if (!step.range) {
        const bool good = parseNumber(text, step.first);
        step.last = step.first;
        return good && step.first <= maxIndex;
    }
    return parseNumber(std::string_view(text).substr(0, dots), step.first) &&
           parseNumber(std::string_view(text).substr(dots + 2), step.last) && step.first <= step.last &&
           step.last <= maxIndex;
}

// One name with its index, if any.
std::optional<Step> parseStep(const std::string &text, std::string &why) {
    const std::size_t open = text.find('[');
    Step step;
    step.name = text.substr(0, open);
    if (step.name.empty()) {
        why = "a name is missing";
        return std::nullopt;
    }
    if (open == std::string::npos) {
        return step;
    }
    if (text.back() != ']' || !parseIndex(text.substr(open + 1, text.size() - open - 2), step)) {
        why = "'" + text.substr(open) + "' is no index: write [3] or [2..10]";
        return std::nullopt;
    }
    return step;
}

// Takes an FC in brackets off the end.
std::string takeFc(std::string &text) {
    if (text.size() < 4 || text.back() != ']' || text[text.size() - 4] != '[') {
        return "";
    }
    const std::string fc = text.substr(text.size() - 3, 2);
    if (!isFc(fc)) {
        return "";
    }
    text.resize(text.size() - 4);
    return fc;
}

bool parsePath(const std::vector<std::string> &names, std::size_t from, Reference &reference,
               std::string &why) {
    int indexed = 0;
    for (std::size_t i = from; i < names.size(); ++i) {
        std::optional<Step> step = parseStep(names[i], why);
        if (!step) {
            return false;
        }
        indexed += step->indexed;
        if (step->range && i + 1 < names.size()) {
            why = "a range must stand at the end";
            return false;
        }
        reference.path.push_back(std::move(*step));
    }
    if (indexed > 1) {
        why = "only one index is possible";
    }
    return indexed <= 1;
}

} // namespace

std::vector<std::string> split(const std::string &text, char separator) {
    std::vector<std::string> pieces(1);
    int depth = 0;
    for (char c : text) {
        depth += c == '[' ? 1 : c == ']' ? -1 : 0;
        if (c == separator && depth == 0) {
            pieces.emplace_back();
        } else {
            pieces.back().push_back(c);
        }
    }
    return pieces;
}

bool isFc(const std::string &text) {
    return text.size() == 2 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

std::optional<Reference> parseReference(const std::string &text, std::string &why) {
    std::string rest = text;
    std::replace(rest.begin(), rest.end(), '(', '[');
    std::replace(rest.begin(), rest.end(), ')', ']');
    Reference reference;
    reference.fc = takeFc(rest);
    const std::size_t slash = rest.find('/');
    reference.device = rest.substr(0, slash);
    if (reference.device.empty() || reference.device.find_first_of(".$[]") != std::string::npos) {
        why = "a reference begins with the name of a logical device, as in LD/LN.DO.DA";
        return std::nullopt;
    }
    if (slash == std::string::npos || slash + 1 == rest.size()) {
        return reference;
    }
    const bool mms = rest.find('$') != std::string::npos;
    const std::vector<std::string> names = split(rest.substr(slash + 1), mms ? '$' : '.');
    reference.node = names[0];
    if (reference.node.empty() || rest.find('/', slash + 1) != std::string::npos ||
        reference.node.find_first_of("[]") != std::string::npos) {
        why = "the name of a logical node must follow '/'";
        return std::nullopt;
    }
    if (mms && (!isFc(names[1]) || !reference.fc.empty())) {
        why = "in the form LD/LN$FC$DO the functional constraint is the second name";
        return std::nullopt;
    }
    if (mms) {
        reference.fc = names[1];
    }
    if (!parsePath(names, mms ? 2 : 1, reference, why)) {
        return std::nullopt;
    }
    return reference;
}

std::string personal(const Reference &reference) {
    std::string text = reference.device;
    if (!reference.node.empty()) {
        text += "/" + reference.node;
    }
    for (const Step &step : reference.path) {
        text += "." + step.name;
        if (step.range) {
            text += "[" + std::to_string(step.first) + ".." + std::to_string(step.last) + "]";
        } else if (step.indexed) {
            text += "[" + std::to_string(step.first) + "]";
        }
    }
    return reference.fc.empty() ? text : text + "[" + reference.fc + "]";
}

VariableName variableName(const Reference &reference) {
    VariableName variable{reference.device, reference.node, {}};
    if (!reference.fc.empty()) {
        variable.item += "$" + reference.fc;
    }
    for (const Step &step : reference.path) {
        if (variable.selection.indexed) {
            variable.selection.below.push_back(step.name);
            continue;
        }
        variable.item += "$" + step.name;
        variable.selection.indexed = step.indexed;
        variable.selection.first = step.first;
        variable.selection.count = step.range ? step.last - step.first + 1 : 0;
    }
    return variable;
}

Reference fromItem(const std::string &device, const std::string &item) {
    Reference reference;
    reference.device = device;
    const std::vector<std::string> names = split(item, '$');
    reference.node = names[0];
    if (names.size() > 1) {
        reference.fc = names[1];
    }
    for (std::size_t i = 2; i < names.size(); ++i) {
        reference.path.push_back(Step{names[i], false, 0, 0, false});
    }
    return reference;
}

} // namespace ied::client
