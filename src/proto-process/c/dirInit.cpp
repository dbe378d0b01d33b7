#include "device/externGlbCfg.h"
#include "platform/platform.h"
#include "proto-process/c/serverStart.h"

#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace ied {

namespace {

constexpr std::size_t pathBuffer = 100; // a path and its NUL
constexpr unsigned dirMode = 0755;

// Octets of the first item of `rest`: up to and including its "/". A "/" that leads the path is a
// part of its first item.
std::size_t itemLength(std::string_view rest, bool first) {
    const std::size_t from = first && rest.front() == '/' ? 1 : 0;
    const std::size_t slash = rest.find('/', from);
    return slash == std::string_view::npos ? rest.size() : slash + 1;
}

// Whether the path keeps the limits of the file systems; says which one it does not.
bool isSound(const char *path) {
    const std::string_view whole(path);
    u32 items = 0;
    bool longItem = false;
    for (std::size_t pos = 0; pos < whole.size(); ++items) {
        const std::size_t length = itemLength(whole.substr(pos), pos == 0);
        longItem = longItem || length >= externGlbCfg.dirMaxItemLen;
        pos += length;
    }
    if (items > externGlbCfg.dirMaxDepth + 1U) {
        std::fprintf(stderr, "\"%s\" is too deep!\n", path);
    } else if (longItem) {
        std::fprintf(stderr, "Some domain of \"%s\" is too long!\n", path);
    } else if (whole.size() >= pathBuffer) {
        std::fprintf(stderr, "\"%s\" is too long!\n", path);
    } else {
        return true;
    }
    return false;
}

} // namespace

bool dirInit(const char *path) {
    if (path == nullptr || *path == '\0') {
        return true;
    }
    if (!isSound(path)) {
        return false;
    }
    const std::string_view whole(path);
    char growing[pathBuffer];
    for (std::size_t pos = 0; pos < whole.size();) {
        const bool device = pos == 0;
        const std::size_t length = itemLength(whole.substr(pos), device);
        whole.copy(growing + pos, length, pos);
        pos += length;
        growing[pos] = '\0';
        if (fileOps.access(growing, F_OK) == 0) {
            continue;
        }
        if (device) {
            std::fprintf(stderr, "Invalid dev name \"%s\"!\n", growing);
            return true;
        }
        if (fileOps.mkdir(growing, dirMode) != 0) {
            std::fprintf(stderr, "Fail to create dir \"%s\"!\n", growing);
            return false;
        }
    }
    return true;
}

} // namespace ied
