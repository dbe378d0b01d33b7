#include "device/hostOptions.h"

#include "device/externGlbCfg.h"
#include "platform/platform.h"

#include <CLI/CLI.hpp>
#include <arpa/inet.h>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace ied {

namespace {

constexpr int usageError = 2;

struct Options {
    std::optional<std::string> icd;
    std::optional<std::string> port;
    std::vector<std::string> settings;
    std::optional<std::string> debug;
    u32 modelPool = 0;
    bool version = false;
};

// Default and sound range of a field.
std::string rangeText(const ConfigField &field) {
    const std::string range = std::to_string(field.least) + " to " + std::to_string(field.greatest);
    const std::string count = std::to_string(field.count);
    switch (field.kind) {
    case ConfigKind::Text:
        return std::string("default \"") + field.text + "\", text of " + range + " characters";
    case ConfigKind::Levels:
        return "default " + std::to_string(field.init) + " each, exactly " + count + " numbers of " + range;
    case ConfigKind::Services:
        return std::string("default ") + field.text + "; up to " + count + " numbers of " + range;
    default:
        return "default " + std::to_string(field.init) + ", " + range;
    }
}

std::string fieldList() {
    std::string out = "Fields of --set:\n";
    u32 count = 0;
    const ConfigField *fields = configFields(&count);
    for (u32 i = 0; i < count; i++) {
        if (fields[i].kind != ConfigKind::Hook) {
            std::string name = fields[i].name;
            name.resize(20, ' ');
            out += "  " + name + fields[i].meaning + " (" + rangeText(fields[i]) + ")\n";
        }
    }
    return out;
}

void declareOptions(CLI::App *app, Options *options) {
    app->option_defaults()->always_capture_default(false);
    app->add_option("--icd", options->icd, "SCL file to serve, a path of this host")->type_name("PATH");
    app->add_option("--port", options->port, "TCP port to listen on (default 102)")->type_name("N");
    app->add_option("--root", platformOptions.root, "folder that stands in for \"/\" of device paths")
        ->type_name("DIR");
    app->add_option("--instance", platformOptions.instance,
                    "name of this instance: \".NAME\" ends the names of its shared objects")
        ->type_name("NAME")
        ->check(instanceNameProblem);
    app->add_option("--set", options->settings, "sets a field of the configuration record; may be repeated")
        ->type_name("FIELD=VALUE")
        ->allow_extra_args(false);
    app->add_option("--model-pool", options->modelPool, "octets of the model's memory pool")
        ->type_name("BYTES")
        ->check(CLI::Range(modelPoolLeast, modelPoolMost));
    app->add_option("--bind", platformOptions.bindAddress, "IPv4 address to listen on (default: any)")
        ->type_name("ADDRESS")
        ->check([](const std::string &address) {
            in_addr parsed{};
            const bool sound = inet_pton(AF_INET, address.c_str(), &parsed) == 1;
            return std::string(sound ? "" : "no IPv4 address: " + address);
        });
    app->add_option("--debug", options->debug, "debug log on the terminal, every category at LEVEL 0 to 5")
        ->type_name("LEVEL")
        ->check(CLI::Range(0, 5));
    app->add_flag("--realtime", platformOptions.realtime, "real-time scheduling, where permitted");
    app->add_flag("--version", options->version, "shows the version and ends");
    app->footer(fieldList);
}

// Sets a field and says on the error stream what is wrong with it.
bool setField(const std::string &name, const std::string &value) {
    const char *problem = setConfigField(name.c_str(), value.c_str());
    if (problem != nullptr) {
        std::fprintf(stderr, "ied-server: %s\n", problem);
    }
    return problem == nullptr;
}

bool applySetting(const std::string &setting) {
    const std::size_t at = setting.find('=');
    if (at == std::string::npos) {
        std::fprintf(stderr, "ied-server: --set %s: FIELD=VALUE is needed\n", setting.c_str());
        return false;
    }
    if (setting.compare(0, at, "icdPath") == 0) {
        hostModelOptions.icdOnHost = false;
    }
    return setField(setting.substr(0, at), setting.substr(at + 1));
}

bool applyDebug(const std::string &level) {
    std::string levels = level;
    for (std::size_t i = 1; i < sizeof externGlbCfg.dbLevel; i++) {
        levels += "," + level;
    }
    return setField("dbDest", "1") && setField("dbLevel", levels);
}

// --set comes last: it is the more exact of two that name the same field.
bool applyAll(const Options &options) {
    if (options.modelPool != 0) {
        hostModelOptions.modelPool = options.modelPool;
    }
    if (options.icd) {
        hostModelOptions.icdOnHost = true;
        if (!setField("icdPath", *options.icd)) {
            return false;
        }
    }
    if ((options.port && !setField("tcpPort", *options.port)) ||
        (options.debug && !applyDebug(*options.debug))) {
        return false;
    }
    for (const std::string &setting : options.settings) {
        if (!applySetting(setting)) {
            return false;
        }
    }
    const char *problem = checkConfig();
    if (problem != nullptr) {
        std::fprintf(stderr, "ied-server: %s\n", problem);
    }
    return problem == nullptr;
}

} // namespace

int readHostOptions(int argc, const char *const *argv, const char *version) {
    CLI::App app("IEC 61850 server of a power-quality instrument", "ied-server");
    Options options;
    declareOptions(&app, &options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &problem) {
        return app.exit(problem) == 0 ? 0 : usageError;
    }
    if (options.version) {
        std::printf("ied-server %s\n", version);
        return 0;
    }
    return applyAll(options) ? -1 : usageError;
}

} // namespace ied
