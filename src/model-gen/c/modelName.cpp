#include "model-gen/c/modelName.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace ied {

NodeName joinName(std::initializer_list<const char *> pieces) {
    constexpr std::size_t bound = 31;
    NodeName name{};
    std::size_t length = 0;
    for (const char *piece : pieces) {
        if (piece == nullptr) {
            continue;
        }
        const std::size_t more = strnlen(piece, bound);
        if (length + more < bound) {
            std::memcpy(name.text + length, piece, more);
            length += more;
        }
    }
    return name;
}

NodeName blockName(const char *name, int instance, int count) {
    if (count <= 1 || name == nullptr) {
        return joinName({name});
    }
    NodeName out{};
    char digits[12];
    std::snprintf(digits, sizeof digits, "%02d", instance);
    const std::size_t length = strnlen(name, sizeof out.text - 1);
    std::memcpy(out.text, name, length);
    const std::size_t room = sizeof out.text - 1 - length;
    std::memcpy(out.text + length, digits, std::min(room, std::strlen(digits)));
    return out;
}

i32 decimalI32(const char *text) {
    if (text == nullptr) {
        return 0;
    }
    const long long value = std::strtoll(text, nullptr, 10);
    return static_cast<i32>(
        std::clamp<long long>(value, std::numeric_limits<i32>::min(), std::numeric_limits<i32>::max()));
}

u32 decimalU32(const char *text) {
    if (text == nullptr) {
        return 0;
    }
    // As a 32-bit strtoul: a minus sign counts down from 2^32, a magnitude beyond 32 bits saturates.
    const long long value = std::strtoll(text, nullptr, 10);
    constexpr long long most = std::numeric_limits<u32>::max();
    if (value > most || value < -most) {
        return std::numeric_limits<u32>::max();
    }
    return static_cast<u32>(value);
}

bool isTrue(const char *text) {
    return text != nullptr && std::strcmp(text, "true") == 0;
}

bool isGiven(const char *text) {
    return text != nullptr && *text != '\0';
}

} // namespace ied
