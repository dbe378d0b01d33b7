#include "ied-client/options.h"

#include "ied-client/reportBits.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace ied::client {

namespace {

struct CommandRow {
    Command command;
    const char *name;
    const char *help;
};
constexpr CommandRow commands[] = {
    {Command::identify, "identify", "vendor, model and revision of the server"},
    {Command::devices, "devices", "names of the logical devices"},
    {Command::tree, "tree", "the model, or what lies below REF, with types"},
    {Command::find, "find", "references whose name contains PATTERN (or matches it, with * and ?)"},
    {Command::read, "read", "values: an attribute, an object, a whole logical node or device"},
    {Command::write, "write", "write VALUE to the attribute REF"},
    {Command::datasets, "datasets", "names of the data sets"},
    {Command::dataset, "dataset", "members of the data set REF"},
    {Command::reports, "reports", "report control blocks with their state"},
    {Command::report, "report", "take report control blocks and show their reports as they come"},
};

constexpr const char *footer =
    "References are LD/LN.DO.DA[FC] or LD/LN$FC$DO$DA; array elements are NAME[3], ranges NAME[2..10].\n"
    "Exit status: 0 good, 1 refused by the server or no such thing, 2 wrong usage, 3 no connection.";

// An option that takes bits by name.
void addBits(CLI::App &sub, const std::string &name, std::string &bits, std::span<const BitName> names,
             const std::string &what) {
    sub.add_option_function<std::string>(
        name,
        [&bits, names, name](const std::string &text) {
            std::string why;
            const std::optional<std::string> parsed = parseBitNames(text, names, why);
            if (!parsed) {
                throw CLI::ValidationError(name, why);
            }
            bits = *parsed;
        },
        what + ": " + bitNamesText(names));
}

// An option for seconds takes these. CLI::Range alone lets "nan" through.
void checkSeconds(CLI::Option *option, f64 least, f64 most) {
    option->check(CLI::Range(least, most))->check([](const std::string &text) {
        return std::isnan(std::strtod(text.c_str(), nullptr)) ? text + " is no number" : "";
    });
}

void addReportArguments(CLI::App &sub, Options &options) {
    sub.add_option("REF", options.arguments, "control blocks: LD/LN.NAME or LD/LN$BR$NAME")->required();
    addBits(sub, "--trgops", options.trgOps, trgOpsNames, "triggers");
    addBits(sub, "--optflds", options.optFlds, optFldsNames, "optional fields");
    sub.add_option("--buftm", options.bufTm, "milliseconds that changes are gathered");
    sub.add_option("--intgpd", options.intgPd, "milliseconds between integrity reports; 0: none");
    sub.add_flag("--gi", options.gi, "ask for a general interrogation");
    CLI::Option *purge = sub.add_flag("--purge", options.purge, "buffered: drop what the buffer holds first");
    sub.add_option_function<std::vector<std::string>>(
           "--resume",
           [&options](const std::vector<std::string> &texts) {
               for (const std::string &text : texts) {
                   std::string why;
                   const std::optional<EntryPoint> entry = parseEntryPoint(text, why);
                   if (!entry) {
                       throw CLI::ValidationError("--resume", why);
                   }
                   options.resume.push_back(*entry);
               }
           },
           "buffered: go on behind ENTRYID@TIME, as the end of `report` prints it; ENTRYID alone is taken "
           "as it is, 0000000000000000 begins with the oldest entry; once for each REF, in their order")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->excludes(purge);
    sub.add_option("--count", options.count, "end after so many reports in all");
    checkSeconds(sub.add_option("--for", options.span, "end after so many seconds"), 0.001, 1e9);
}

void addArguments(CLI::App &sub, Command command, Options &options, std::string &first, std::string &second) {
    switch (command) {
    case Command::tree:
        sub.add_option("REF", first, "a device, node or object");
        sub.add_option("--depth", options.depth, "levels to show below the start")
            ->check(CLI::Range(0, maxNesting));
        break;
    case Command::find:
        sub.add_option(
               "PATTERN", first,
               "part of a name, or of a reference where / . or [ stand in it; * is any text, ? any letter")
            ->required();
        break;
    case Command::read:
        sub.add_option("REF", options.arguments, "an attribute, object, node, device, array element or range")
            ->required();
        sub.add_flag("--watch", options.watch, "read again and again");
        checkSeconds(
            sub.add_option("--interval", options.interval, "seconds between the rounds of --watch [1]"), 0.0,
            86400.0);
        sub.add_option("--rounds", options.rounds, "end --watch after so many rounds");
        break;
    case Command::write:
        sub.add_option("REF", first, "one attribute")->required();
        sub.add_option(
               "VALUE", second,
               "by type: true or false, a number, a text, binary or hexadecimal digits, seconds since 1970")
            ->required();
        break;
    case Command::dataset:
        sub.add_option("REF", first, "LD/LN.NAME")->required();
        sub.add_flag("--values", options.values, "with the values of the members");
        break;
    case Command::reports:
        sub.add_option("REF", options.arguments, "only those of a device or node, or one block");
        break;
    case Command::report:
        addReportArguments(sub, options);
        break;
    default:
        break;
    }
}

// A negative number is an argument, not an option: a value to write may be one.
bool isNegativeNumber(const std::string &text) {
    return text.size() > 1 && text[0] == '-' &&
           text.find_first_not_of("0123456789.eE+-", 1) == std::string::npos && text[1] != '-';
}

// The arguments in the order that the parser wants (the last one first).
std::vector<std::string> reversedArguments(int argc, char **argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto negative = std::find_if(arguments.begin(), arguments.end(), isNegativeNumber);
    if (negative != arguments.end() && std::find(arguments.begin(), negative, "write") != negative) {
        arguments.insert(negative, "--");
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

// The word that stands where a command was expected, or nothing if that is not what was wrong.
std::string unknownCommand(const CLI::App &app) {
    const std::vector<std::string> rest = app.remaining();
    return app.get_subcommands().empty() && !rest.empty() && rest[0][0] != '-' ? rest[0] : "";
}

// What is wrong with the number of --resume, or "".
std::string resumeFault(const Options &options) {
    const std::size_t given = options.resume.size();
    const std::size_t blocks = options.arguments.size();
    return given == 0 || given == blocks
               ? ""
               : "--resume stands " + std::to_string(given) + (given == 1 ? " time" : " times") + " for " +
                     std::to_string(blocks) + (blocks == 1 ? " control block" : " control blocks") +
                     ": give it once for each REF, in their order";
}

} // namespace

bool splitServer(const std::string &text, std::string &host, u16 &port) {
    std::size_t colon = text.rfind(':');
    const bool bracketed = !text.empty() && text[0] == '[';
    const std::size_t close = text.find(']');
    if (bracketed && close == std::string::npos) {
        return false;
    }
    if (bracketed) {
        host = text.substr(1, close - 1);
        colon = close + 1 < text.size() ? close + 1 : std::string::npos;
        if (colon != std::string::npos && text[colon] != ':') {
            return false;
        }
    } else {
        if (colon != text.find(':')) {
            colon = std::string::npos; // an IPv6 address without a port
        }
        host = text.substr(0, colon);
    }
    if (colon == std::string::npos) {
        return !host.empty();
    }
    unsigned number = 0;
    const char *end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data() + colon + 1, end, number);
    port = static_cast<u16>(number);
    return !host.empty() && error == std::errc() && at == end && number > 0 && number < 65536;
}

std::optional<Options> parseOptions(int argc, char **argv, int &status) {
    Options options;
    std::string server;
    std::string first;
    std::string second;
    CLI::App app("Browses, reads and writes an IEC 61850 server over MMS.", "ied-client");
    app.footer(footer);
    app.set_version_flag("--version", "ied-client " IED_VERSION);
    app.add_option("HOST[:PORT]", server, "the server; port 102 unless given")->required();
    app.add_flag("--json", options.json, "one JSON document a read, one line a round");
    app.add_flag("--plain", options.plain, "no colours and no charts, as when the output is no terminal");
    checkSeconds(app.add_option("--timeout", options.timeout, "seconds to wait for each answer [10]"), 0.1,
                 3600.0);
    app.require_subcommand(1);
    for (const CommandRow &row : commands) {
        CLI::App *sub = app.add_subcommand(row.name, row.help);
        sub->fallthrough();
        sub->callback([&options, command = row.command] { options.command = command; });
        addArguments(*sub, row.command, options, first, second);
    }
    try {
        app.parse(reversedArguments(argc, argv));
    } catch (const CLI::ParseError &error) {
        status = error.get_exit_code() == 0 ? statusGood : statusUsage;
        const std::string unknown = status == statusGood ? "" : unknownCommand(app);
        if (unknown.empty()) {
            app.exit(error);
        } else {
            std::fprintf(stderr,
                         "ied-client: '%s' is none, but a subcommand is required: --help lists them\n",
                         unknown.c_str());
        }
        return std::nullopt;
    }
    if (!first.empty()) {
        options.arguments.push_back(first);
    }
    if (options.command == Command::write) {
        options.arguments.push_back(second);
    }
    const std::string wrong = splitServer(server, options.host, options.port)
                                  ? resumeFault(options)
                                  : "'" + server + "' is no HOST[:PORT]";
    if (!wrong.empty()) {
        std::fprintf(stderr, "ied-client: %s\n", wrong.c_str());
        status = statusUsage;
        return std::nullopt;
    }
    return options;
}

} // namespace ied::client
