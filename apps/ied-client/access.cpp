#include "ied-client/commands.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace ied::client {

namespace {

// Views that a value without an FC is written to, the most likely first.
constexpr const char *writableFcs[] = {"SP", "SE", "CF", "CO", "SV", "RP", "BR", "LG", "DC", "ST", "MX"};

f64 now() {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<f64>(since).count();
}

void pauseFor(f64 seconds) {
    timespec time{};
    time.tv_sec = static_cast<std::time_t>(seconds);
    time.tv_nsec = static_cast<long>((seconds - static_cast<f64>(time.tv_sec)) * 1e9);
    nanosleep(&time, nullptr); // a signal cuts it short, and the loop then ends
}

bool hasError(const std::vector<Row> &rows) {
    for (const Row &row : rows) {
        if (!row.value) {
            return true;
        }
    }
    return false;
}

void printRows(const Session &session, const std::vector<Row> &rows, bool first) {
    const bool redraw = session.options.watch && session.style.terminal;
    std::string text;
    if (session.options.json) {
        text = rowsJson(rows, now()) + "\n";
    } else {
        text = (redraw ? "\033[H\033[2J" : first ? "" : "\n") + rowsText(rows, session.style);
    }
    print(text);
    std::fflush(stdout);
}

// The variables that the arguments stand for; `status` becomes that of the arguments that failed.
std::vector<Variable> wantedVariables(Session &session, int &status) {
    std::vector<Variable> variables;
    for (const std::string &argument : session.options.arguments) {
        const std::optional<Reference> reference = referenceArgument(argument);
        if (!reference) {
            status = statusUsage;
            continue;
        }
        const std::optional<std::vector<Variable>> found = resolve(session.model, *reference);
        if (found) {
            variables.insert(variables.end(), found->begin(), found->end());
        } else {
            status = fail(session);
        }
        if (session.model.connection.socket < 0) {
            break;
        }
    }
    return variables;
}

// The one attribute that a reference names for writing.
std::optional<Variable> writeTarget(Session &session, const Reference &reference) {
    const Type *node =
        reference.node.empty() ? nullptr : nodeType(session.model, reference.device, reference.node);
    if (node && reference.fc.empty() && !reference.path.empty()) {
        for (const char *fc : writableFcs) {
            if (const Type *type = typeAt(*node, fc, reference.path)) {
                Variable variable{reference, type};
                variable.reference.fc = fc;
                return variable;
            }
        }
    }
    const std::optional<std::vector<Variable>> found = resolve(session.model, reference);
    return found && !found->empty() ? std::optional(found->front()) : std::nullopt;
}

} // namespace

int readValues(Session &session) {
    int status = statusGood;
    const std::vector<Variable> variables = wantedVariables(session, status);
    if (variables.empty()) {
        return status;
    }
    const std::optional<Reading> reading = prepareReading(session.model, variables);
    if (!reading) {
        return fail(session);
    }
    for (u32 round = 1;; ++round) {
        const std::optional<std::vector<Row>> rows = readRows(session.model, *reading);
        if (!rows) {
            return fail(session);
        }
        printRows(session, *rows, round == 1);
        if (status == statusGood && hasError(*rows)) {
            status = statusRefused;
        }
        if (!session.options.watch || round == session.options.rounds || stopRequested()) {
            return status;
        }
        pauseFor(session.options.interval);
        if (stopRequested()) {
            return status;
        }
    }
}

int writeValue(Session &session) {
    const std::string &text = session.options.arguments[1];
    const std::optional<Reference> reference = referenceArgument(session.options.arguments[0]);
    if (!reference) {
        return statusUsage;
    }
    const std::optional<Variable> target = writeTarget(session, *reference);
    if (!target) {
        return fail(session);
    }
    std::string why;
    const std::optional<Value> value = parseValue(text, *target->type, why);
    const std::string name = personal(target->reference);
    if (!value && (target->type->kind == Kind::structure || target->type->kind == Kind::array)) {
        return fail(statusUsage, name + " holds several values: name one of them");
    }
    if (!value) {
        return fail(statusUsage, name + " is of type " + typeName(*target->type) + " and takes " + why);
    }
    const std::optional<Element> answer =
        request(session.model.connection, writeRequest(variableName(target->reference), *value));
    const std::optional<i64> result = answer ? writeResponse(*answer) : std::nullopt;
    if (!result) {
        return answer ? failMalformed() : fail(session, name);
    }
    if (*result >= 0) {
        return fail(statusRefused, name + " was not written: " + dataAccessError(*result));
    }
    if (session.options.json) {
        std::printf("{\"reference\":%s,\"written\":%s}\n", jsonString(name).c_str(),
                    jsonValue(*value, target->type).c_str());
    } else {
        std::printf("%s = %s\n", name.c_str(), valueText(*value).c_str());
    }
    return statusGood;
}

} // namespace ied::client
