#include "ied-client/commands.h"

#include <cstdio>
#include <ctime>

namespace ied::client {

namespace {

// "LD/LN.NAME" of a data set's MMS name LN$NAME.
std::string personalList(const std::string &device, std::string item) {
    const std::size_t separator = item.find('$');
    if (separator != std::string::npos) {
        item[separator] = '.';
    }
    return device + "/" + item;
}

// MMS name of "LD/LN.NAME" or "LD/LN$NAME".
bool splitList(const std::string &text, std::string &device, std::string &item) {
    const std::size_t slash = text.find('/');
    const std::size_t separator = text.find_first_of(".$", slash == std::string::npos ? 0 : slash);
    if (slash == std::string::npos || slash == 0 || separator == std::string::npos ||
        separator + 1 == text.size()) {
        return false;
    }
    device = text.substr(0, slash);
    item = text.substr(slash + 1);
    item[separator - slash - 1] = '$';
    return true;
}

std::string membersJson(const std::string &name, const VariableList &list) {
    std::string text = "{\"dataset\":" + jsonString(name) +
                       ",\"deletable\":" + (list.deletable ? "true" : "false") + ",\"members\":[";
    for (std::size_t i = 0; i < list.members.size(); ++i) {
        text +=
            (i > 0 ? "," : "") + jsonString(personal(fromItem(list.members[i].domain, list.members[i].item)));
    }
    return text + "]}\n";
}

int showValues(Session &session, const VariableList &list) {
    const std::optional<std::vector<Variable>> variables = memberVariables(session.model, list);
    const std::optional<Reading> reading =
        variables ? prepareReading(session.model, *variables) : std::nullopt;
    const std::optional<std::vector<Row>> rows = reading ? readRows(session.model, *reading) : std::nullopt;
    if (!rows) {
        return fail(session);
    }
    const f64 time = static_cast<f64>(std::time(nullptr));
    print(session.options.json ? rowsJson(*rows, time) + "\n" : rowsText(*rows, session.style));
    return statusGood;
}

} // namespace

int listDataSets(Session &session) {
    const std::vector<std::string> *devices = deviceNames(session.model);
    if (!devices) {
        return fail(session);
    }
    std::string text;
    for (const std::string &device : *devices) {
        const std::optional<std::vector<std::string>> names =
            nameList(session.model.connection, classVariableList, device);
        if (!names) {
            return fail(session, device);
        }
        for (const std::string &name : *names) {
            const std::string reference = personalList(device, name);
            text += session.options.json ? (text.empty() ? "" : ",") + jsonString(reference)
                                         : printable(reference) + "\n";
        }
    }
    print(session.options.json ? "[" + text + "]\n" : text);
    return statusGood;
}

int showDataSet(Session &session) {
    std::string device;
    std::string item;
    const std::string &argument = session.options.arguments[0];
    if (!splitList(argument, device, item)) {
        return fail(statusUsage, "'" + argument + "' is no data set: write LD/LN.NAME");
    }
    const std::optional<VariableList> list = dataSet(session.model, device, item);
    if (!list) {
        return fail(session, argument);
    }
    if (session.options.values) {
        return showValues(session, *list);
    }
    if (session.options.json) {
        print(membersJson(personalList(device, item), *list));
        return statusGood;
    }
    for (const VariableName &member : list->members) {
        print(printable(personal(fromItem(member.domain, member.item))) + "\n");
    }
    return statusGood;
}

} // namespace ied::client
