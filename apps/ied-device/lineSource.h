// Lines of a file descriptor or of a script, as they come, without ever blocking.
#pragma once

#include "platform/types.h"

#include <deque>
#include <string>

namespace ied::instrument {

struct LineSource {
    std::string name;     // of the script, for messages; empty for a descriptor
    u32 taken = 0;        // lines taken out so far
    bool refused = false; // a line could not be done
    int fd = -1;          // read without waiting; -1 for a source that has ended
    std::string partial;  // what stands behind the last line end
    std::deque<std::string> lines;
    u64 restUntilNs = 0; // a "wait" rests the source
};

// The lines of a whole file. False if it cannot be read.
bool loadScript(const std::string &path, LineSource *source);
// Takes the next line out; there must be one.
std::string takeLine(LineSource *source);
// Reads what is there; at the end of the input the rest is a line and fd becomes -1.
void readLines(LineSource *source);

} // namespace ied::instrument
