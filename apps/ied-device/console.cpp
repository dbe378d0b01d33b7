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
    for (const auto commands : allCommands) {
        for (const CommandRow &row : commands()) {
            std::string line = std::string(row.name) + " " + row.arguments;
            line.resize(std::max(line.size() + 2, column), ' ');
            text += line + row.effect + "\n";
        }
    }
    return text;
}

Reply executeLine(Instrument *instrument, const std::string &line) {
    std::istringstream stream(line);
    Words words{std::istream_iterator<std::string>(stream), {}};
    words.erase(
        std::find_if(words.begin(), words.end(), [](const std::string &word) { return word[0] == '#'; }),
        words.end());
    Reply reply;
    if (words.empty()) {
        return reply;
    }
    const CommandRow *row = findCommand(words[0]);
    if (row == nullptr) {
        refuse(&reply, "unknown command " + words[0] + "; \"help\" lists all");
        return reply;
    }
    Arguments arguments(words);
    if (!row->run(instrument, arguments, &reply)) {
        reply = {};
        refuse(&reply, std::string("usage: ") + row->name + " " + row->arguments);
    }
    if (reply.text.empty()) {
        reply.text = "ok\n";
    }
    return reply;
}

} // namespace ied::instrument
