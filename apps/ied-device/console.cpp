#include "ied-device/console.h"

#include "ied-device/commandTable.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace ied::instrument {

namespace {

constexpr auto allCommands = {gridCommands, eventCommands, generalCommands};

const CommandRow *findCommand(const std::string &name) {
    for (const auto commands : allCommands) {
        for (const CommandRow &row : commands()) {
            if (name == row.name) {
                return &row;
            }
        }
    }
    return nullptr;
}

} // namespace

std::string commandHelp() {
    constexpr std::size_t column = 54;
    std::string text;
    const auto add = [&](const CommandRow &row) {
        std::string line = std::string(row.name) + " " + row.arguments;
        line.resize(std::max(line.size() + 2, column), ' ');
        text += line + row.effect + "\n";
    };
    for (const auto commands : allCommands) {
        for (const CommandRow &row : commands()) {
            add(row);
        }
    }
    add({"help", "", "this list", nullptr});
    return text;
}

Reply executeLine(Instrument *instrument, const std::string &line) {
    std::istringstream stream(line);
    const Words words{std::istream_iterator<std::string>(stream), {}};
    Reply reply;
    if (words.empty() || words[0][0] == '#') {
        return reply;
    }
    if (words[0] == "help") {
        return {commandHelp(), false, After::GoOn, 0};
    }
    const CommandRow *row = findCommand(words[0]);
    if (row == nullptr) {
        return {"unknown command " + words[0] + "; \"help\" lists all\n", true, After::GoOn, 0};
    }
    Arguments arguments(words);
    if (!row->run(instrument, arguments, &reply)) {
        return {std::string("usage: ") + row->name + " " + row->arguments + "\n", true, After::GoOn, 0};
    }
    if (reply.text.empty()) {
        reply.text = "ok\n";
    }
    return reply;
}

} // namespace ied::instrument
