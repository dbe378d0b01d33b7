#include "ied-client/commands.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using namespace ied::client;

// What the output can show: colours and charts only on a terminal, colours not against NO_COLOR.
Style outputStyle(const Options &options) {
    Style style;
    style.terminal = isatty(STDOUT_FILENO) && !options.plain;
    const char *noColour = std::getenv("NO_COLOR");
    style.colour = style.terminal && !(noColour && *noColour);
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        style.width = size.ws_col;
    }
    return style;
}

} // namespace

int main(int argc, char **argv) {
    int status = statusGood;
    const std::optional<Options> options = parseOptions(argc, argv, status);
    if (!options) {
        return status;
    }
    Connection connection;
    connection.timeout = std::chrono::milliseconds(static_cast<long>(options->timeout * 1000));
    Session session{*options, outputStyle(*options), Model{connection, {}, {}, {}}};
    if (options->watch || options->command == Command::report) {
        watchSignals();
    }
    if (!connect(connection, options->host, options->port)) {
        return fail(session);
    }
    status = runCommand(session);
    release(connection);
    return status;
}
