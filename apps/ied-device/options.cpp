#include "ied-device/options.h"

#include "ied-device/console.h"
#include "platform/platform.h"

#include <CLI/CLI.hpp>

namespace ied::instrument {

int readOptions(int argc, const char *const *argv, Options *options) {
    CLI::App app{
        "A simulated power-quality instrument: fills the shared region that ied-server reads, takes its\n"
        "commands, and line commands on the standard input (\"help\" lists them)."};
    app.set_version_flag("--version", "ied-device " IED_VERSION);
    app.add_option("--instance", platformOptions.instance, "name behind the names of all shared objects")
        ->type_name("NAME")
        ->check(instanceNameProblem);
    app.add_option("--speed", options->speed, "seconds of the instrument that pass in a second")
        ->type_name("FACTOR")
        ->check(CLI::Range(0.01, 1000.0));
    app.add_option("--script", options->script, "file of line commands to begin with")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    app.add_option("--state", options->stateFile, "file that is rewritten with the state at every update")
        ->type_name("FILE");
    app.add_flag("--show-queues", options->showQueues,
                 "print what arrives on the command and watchdog queues");
    CLI::Option *spy = app.add_flag("--spy", options->spy, "only take records off the queues and print them");
    app.add_flag("--remove", options->remove, "remove the shared objects of the instance and end")
        ->excludes(spy);
    app.footer("Line commands, of the script and of the standard input:\n" + commandHelp());
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    return -1;
}

} // namespace ied::instrument
