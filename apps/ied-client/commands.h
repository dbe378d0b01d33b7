// The commands of the client over an open association. Each prints its result and returns the exit
// status; what went wrong is one line on the standard error stream.
#pragma once

#include "ied-client/format.h"
#include "ied-client/options.h"

namespace ied::client {

struct Session {
    Options options;
    Style style;
    Model model;
};

// Runs the command that the options name.
int runCommand(Session &session);

int identify(Session &session);
int listDevices(Session &session);
int showTree(Session &session);
int findNames(Session &session);
int readValues(Session &session);
int writeValue(Session &session);
int listDataSets(Session &session);
int showDataSet(Session &session);
int listReportBlocks(Session &session);
int showReports(Session &session);

// Says the connection's failure, with what it is about in front if given; returns its status.
int fail(const Session &session, const std::string &about = "");

// Says a text as a failure; returns `status`.
int fail(Status status, const std::string &text);

// Says that the server's answer makes no sense; returns the status of a lost connection.
int failMalformed();

// Writes a result to the standard output.
void print(const std::string &text);

// A reference from the command line, or nothing after a message.
std::optional<Reference> referenceArgument(const std::string &text);

// Set by SIGINT and SIGTERM: --watch ends after its round, `report` disables its blocks. A second
// signal ends the process at once.
bool stopRequested();
void watchSignals();

} // namespace ied::client
