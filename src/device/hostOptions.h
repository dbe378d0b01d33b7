// The host's command line: where this host differs from the instrument, which has none. Without
// options every built-in default of the configuration record stands.
#pragma once

namespace ied {

// Reads the command line into externGlbCfg (whose defaults are already in), hostModelOptions and
// platformOptions. Returns -1 when the process is to go on, else the status to exit with: 0 after
// --help or --version (text on the standard output), 2 after a usage error, an unknown field or a
// value outside its sound range (a message on the standard error stream that names it).
int readHostOptions(int argc, const char *const *argv, const char *version);

} // namespace ied
