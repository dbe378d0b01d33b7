#include "platform/platform.h"

namespace ied {

// Never destroyed: tasks still read it while the process ends.
PlatformOptions &platformOptions = *new PlatformOptions;

std::string instanceNameProblem(const std::string &name) {
    constexpr std::size_t longest = 64;
    const char *allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    const bool sound = name.size() <= longest && name.find_first_not_of(allowed) == std::string::npos;
    return sound ? "" : "up to 64 letters, digits, \"_\", \"-\" and \".\"";
}

} // namespace ied
