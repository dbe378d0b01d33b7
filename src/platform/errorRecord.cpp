#include "platform/platform.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <syslog.h>

namespace ied {

namespace {

constexpr int keptFailures = 6;
constexpr std::size_t longestFailure = 512; // with its NUL

// Texts of the latest failures of a task, the oldest first.
struct Failures {
    char text[keptFailures][longestFailure];
    int count;
};
thread_local Failures failures;

// A record is one line whatever its texts hold.
void joinLines(char *text) {
    std::replace_if(
        text, text + std::strlen(text), [](char c) { return c == '\r' || c == '\n'; }, ' ');
}

} // namespace

void noteFailure(const char *text) {
    if (text == nullptr || text[0] == 0) {
        failures.count = 0;
        return;
    }
    if (failures.count == keptFailures) {
        std::memmove(failures.text[0], failures.text[1], sizeof failures.text - sizeof failures.text[0]);
        failures.count--;
    }
    std::snprintf(failures.text[failures.count++], sizeof failures.text[0], "%s", text);
}

void edrErrorInject(int kind, const char *sourcePath, int line, int /*a*/, int /*b*/, const char *text) {
    char record[(keptFailures + 2) * longestFailure];
    std::size_t used = 0;
    const auto add = [&](const char *before, const char *part) {
        const int length = std::snprintf(record + used, sizeof record - used, "%s%s", before, part);
        used = std::min(used + static_cast<std::size_t>(length), sizeof record - 1);
    };
    char place[128];
    std::snprintf(place, sizeof place, "error record %d, %s:%d: ", kind, sourcePath, line);
    add(place, text);
    for (int i = 0; i < failures.count; i++) {
        add(i == 0 ? " Cause: " : "; ", failures.text[i]);
    }
    joinLines(record);
    std::fprintf(stderr, "%s\n", record);
    syslog(LOG_DAEMON | LOG_ERR, "%s", record);
}

} // namespace ied
