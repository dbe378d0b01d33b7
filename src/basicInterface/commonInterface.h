// What everything that keeps files on the device, or cannot go on, has in common.
#pragma once

#include "platform/types.h"

#include <sys/stat.h>

namespace ied {

// Makes sure that `path` is a regular file (any existing object with fileCheckDisable), making an
// empty one with mode 0644 where it is not. `callerName` names the caller in the messages on the
// standard error stream. Returns 0 with `stat` filled; after three vain rounds the process ends.
int checkFile(const char *path, const char *callerName, struct ::stat *stat);

// Ends the process as a broken invariant does: the error record at `sourcePath`:`line`, status 0.
[[noreturn]] void stopProcess(const char *sourcePath, int line);

} // namespace ied
