#include "basicInterface/commonInterface.h"

#include "device/externGlbCfg.h"
#include "platform/platform.h"

#include <cstdio>
#include <fcntl.h>

namespace ied {

int checkFile(const char *path, const char *callerName, struct ::stat *stat) {
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; round++) {
        if (fileOps.stat(path, stat) == 0 && (externGlbCfg.fileCheckDisable != 0 || S_ISREG(stat->st_mode))) {
            return 0;
        }
        fileOps.remove(path);
        std::fprintf(stderr, "%s: \"%s\" is not a regular file, creating!\n", callerName, path);
        const int fd = fileOps.open(path, O_WRONLY | O_CREAT | O_APPEND, 0644);
        if (fd >= 0) {
            fileOps.close(fd);
        } else {
            std::fprintf(stderr, "%s: fail to create \"%s\", retry!\n", callerName, path);
        }
    }
    std::fprintf(stderr, "%s: retry times out!\n", callerName);
    stopProcess("src/basicInterface/commonInterface", 1424);
}

void stopProcess(const char *sourcePath, int line) {
    edrErrorInject(513, sourcePath, line, 0, 0, "IEC61850 error!");
    processExit(0);
}

} // namespace ied
