// What the benches that drive the server's binary share.
#pragma once

#include <cstdio>
#include <exception>

namespace ied::bench {

// Runs the bench of that name. Returns the exit status; a failure is named on the error stream.
inline int drive(const char *name, void (*run)()) {
    try {
        run();
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s: %s\n", name, failure.what());
        return 1;
    }
    return 0;
}

} // namespace ied::bench
