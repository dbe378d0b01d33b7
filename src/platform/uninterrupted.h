#pragma once

#include <cerrno>

namespace ied {

// Repeats a call of the host for as long as a signal cuts it short.
template <class Call> auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

} // namespace ied
