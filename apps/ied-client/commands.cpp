#include "ied-client/commands.h"

#include <csignal>
#include <cstdio>

namespace ied::client {

namespace {

volatile std::sig_atomic_t stopping = 0;

void stop(int) {
    stopping = 1;
}

} // namespace

int runCommand(Session &session) {
    switch (session.options.command) {
    case Command::identify:
        return identify(session);
    case Command::devices:
        return listDevices(session);
    case Command::tree:
        return showTree(session);
    case Command::find:
        return findNames(session);
    case Command::read:
        return readValues(session);
    case Command::write:
        return writeValue(session);
    case Command::datasets:
        return listDataSets(session);
    case Command::dataset:
        return showDataSet(session);
    case Command::reports:
        return listReportBlocks(session);
    case Command::report:
        return showReports(session);
    }
    return statusUsage;
}

int fail(const Session &session, const std::string &about) {
    const Failure &failure = session.model.connection.failure;
    return fail(failure.status, about.empty() ? failure.text : about + ": " + failure.text);
}

int fail(Status status, const std::string &text) {
    std::fflush(stdout);
    std::fprintf(stderr, "ied-client: %s\n", printable(text).c_str());
    return status;
}

int failMalformed() {
    return fail(statusNoConnection, "the server sent a malformed answer");
}

void print(const std::string &text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::optional<Reference> referenceArgument(const std::string &text) {
    std::string why;
    std::optional<Reference> reference = parseReference(text, why);
    if (!reference) {
        fail(statusUsage, "'" + text + "': " + why);
    }
    return reference;
}

bool stopRequested() {
    return stopping != 0;
}

void watchSignals() {
    struct sigaction action {};
    action.sa_handler = stop;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace ied::client
