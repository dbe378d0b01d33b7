#include "device/externGlbCfg.h"
#include "proto-process/c/settingGroup.h"

#include <cstdio>

namespace ied {

bool genSgFileName(const SGCB *sg, char *path) {
    constexpr std::size_t pathSize = 100;
    if (sg == nullptr || path == nullptr) {
        return false;
    }
    std::snprintf(path, pathSize, "%s%s.sg", externGlbCfg.sgDir, sg->name);
    return true;
}

} // namespace ied
