#include "DebugInfo/DebugInfo.h"

#include "basicInterface/commonInterface.h"
#include "device/externGlbCfg.h"
#include "platform/platform.h"
#include "platform/shared.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <ctime>
#include <fcntl.h>

namespace ied {

const char *const dbInfoCatName[16] = {"SCL", "GEN", "SOC", "ISO", "MMS", "MOD", "DAT", "RPT",
                                       "LOG", "CTL", "FIL", "SET", "GSE", "UPD", "WDG", "OTH"};
const char *const dbInfoLvName[6] = {"PAN", "SYS", "ERR", "CRI", "INF", "DBG"};
const char *const dbInfoDstName[4] = {"DBINFO_DST_NONE", "DBINFO_DST_CONSOLE", "DBINFO_DST_FILE",
                                      "DBINFO_DST_BOTH"};

namespace {

constexpr std::size_t lineSize = 512;
constexpr const char *fileTitle = "DebugInfo";

SemId semDbInfo;     // serialises writing and rotation; nothing else is taken while it is held
std::FILE *dbInfoFp; // the debug file, null while closed

bool toConsole() {
    return (externGlbCfg.dbDest & DBINFO_DST_CONSOLE) != 0;
}
bool toFile() {
    return (externGlbCfg.dbDest & DBINFO_DST_FILE) != 0;
}

// Takes the log's lock for at most 20 seconds; a line that does not get it is lost.
bool lockLog() {
    return semTake(semDbInfo, static_cast<int>(20 * sysClkRateGet())) == OK;
}

// snprintf for a text that may be cut.
void putCut(char *out, std::size_t size, const char *format, ...) __attribute__((format(printf, 3, 4)));
void putCut(char *out, std::size_t size, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(out, size, format, arguments);
    va_end(arguments);
}

void debugPath(char (&path)[100], const char *prefix, const char *ending) {
    std::snprintf(path, sizeof path, "%s%s%s.%s", externGlbCfg.debugDir, prefix, fileTitle, ending);
}

std::FILE *openDebugFile(const char *path) {
    const int fd = fileOps.open(path, O_RDWR | O_CREAT | O_APPEND, 0666);
    return fd < 0 ? nullptr : fdopen(fd, "a+");
}

// "2024-01-31 23:59:59.007", UTC.
void formatTime(char (&out)[30]) {
    TimeStamp now;
    loadShared(clockOps.realTime)(&now);
    const time_t seconds = now.sec;
    tm utc{};
    gmtime_r(&seconds, &utc);
    char date[30];
    std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &utc);
    std::snprintf(out, sizeof out, "%.24s.%03u", date, now.ms % 1000);
}

void formatLine(char (&line)[lineSize], DbCategory category, DbLevel level, const char *funcName, int error,
                const char *text) {
    char time[30];
    formatTime(time);
    const char *task = taskName(taskNone);
    if (level <= DbSYS) {
        putCut(line, sizeof line, "[%s][%s][%s][%s][%s][errno: 0x%x][%s]\r\n", time, dbInfoCatName[category],
               dbInfoLvName[level], task, funcName, static_cast<unsigned>(error), text);
    } else {
        putCut(line, sizeof line, "[%s][%s][%s][%s][%s][%s]\r\n", time, dbInfoCatName[category],
               dbInfoLvName[level], task, funcName, text);
    }
}

// Writes a finished line. False if it is lost, which also keeps a line of level 0 from its end.
bool writeLine(DbLevel level, const char *line) {
    if (!lockLog()) {
        return false;
    }
    std::FILE *last = nullptr;
    if (toConsole()) {
        last = level <= DbERR ? stderr : stdout;
        std::fputs(line, last);
    }
    if (toFile()) {
        last = getDbInfoFp();
        if (last == nullptr) {
            semGive(semDbInfo);
            return false;
        }
        std::fputs(line, last);
    }
    if (level <= DbCRI && last != nullptr) {
        std::fflush(last);
    }
    semGive(semDbInfo);
    return true;
}

// Keeps a failure for the error record that may follow. Of the calls of the host that fail, the
// reason is what a person needs to know.
void keepFailure(DbCategory category, DbLevel level, int error, const char *text) {
    const bool hostFailed = level == DbSYS || (level == DbPAN && (category == DbSOC || category == DbOTH));
    if (!hostFailed || error == 0) {
        noteFailure(text);
        return;
    }
    char reason[128];
    char both[lineSize + sizeof reason];
    putCut(both, sizeof both, "%s: %s", text, strerror_r(error, reason, sizeof reason));
    noteFailure(both);
}

// Brings to the medium's side what the streams still hold; gives up on a task that is stuck in
// writing, since the process ends.
void flushAtEnd() {
    if (semDbInfo != nullptr && semTake(semDbInfo, static_cast<int>(sysClkRateGet())) == OK) {
        std::fflush(stdout);
        if (dbInfoFp != nullptr) {
            std::fflush(dbInfoFp);
        }
        semGive(semDbInfo);
    }
}

} // namespace

void dbInfo(DbCategory category, DbLevel level, const char *funcName, const char *format, ...) {
    const int error = errno;
    const bool shown = externGlbCfg.dbDest != 0 && externGlbCfg.dbLevel[category] >= level;
    // While the process serves, the initial task only accepts, so filtered lines stay cheap.
    const bool kept = level == DbPAN || (level <= DbERR && taskIsInitial());
    if (!shown && !kept) {
        return;
    }
    char text[lineSize] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (kept) {
        keepFailure(category, level, error, text);
    }
    if (shown) {
        char line[lineSize] = {};
        formatLine(line, category, level, funcName, error, text);
        if (externGlbCfg.dbHook != nullptr) {
            externGlbCfg.dbHook(line);
            return;
        }
        if (!writeLine(level, line)) {
            return;
        }
    }
    if (level == DbPAN) {
        stopProcess("src/DebugInfo/DebugInfo", 576);
    }
}

void dbInfoRaw(const char *format, ...) {
    if (externGlbCfg.dbDest == DBINFO_DST_NONE) {
        return;
    }
    char text[lineSize] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (externGlbCfg.dbHook != nullptr) {
        externGlbCfg.dbHook(text);
        return;
    }
    if (!lockLog()) {
        return;
    }
    if (toConsole()) {
        std::fputs(text, stdout);
    }
    if (std::FILE *file = toFile() ? getDbInfoFp() : nullptr) {
        std::fputs(text, file);
        std::fflush(file);
    }
    semGive(semDbInfo);
}

std::FILE *getDbInfoFp() {
    char path[100];
    debugPath(path, "", "dbg");
    struct stat info {};
    if (checkFile(path, "getDbInfoFp", &info) != 0) {
        return nullptr;
    }
    if (static_cast<u64>(info.st_size) >= externGlbCfg.dbFileSize) {
        if (dbInfoFp != nullptr) {
            std::fclose(dbInfoFp);
            dbInfoFp = nullptr;
        }
        char backup[100];
        debugPath(backup, "Bak", "dbg");
        fileOps.remove(backup);
        if (fileOps.rename(path, backup) != 0 || checkFile(path, "getDbInfoFp", &info) != 0) {
            return nullptr;
        }
    }
    if (dbInfoFp == nullptr) {
        dbInfoFp = openDebugFile(path);
    }
    return dbInfoFp;
}

int debugInfoInit() {
    if (semDbInfo == nullptr) {
        constexpr u32 options = semQPriority | semDeleteSafe | semInversionSafe;
        semDbInfo = semMCreate(options);
        if (semDbInfo == nullptr) {
            std::fputs("fail to create semDbInfo!\n", stderr);
            return -1;
        }
        atProcessEnd(flushAtEnd);
    }
    if (!toFile()) {
        return 0;
    }
    char path[100];
    debugPath(path, "", "dbg");
    struct stat info {};
    return checkFile(path, "debugInfoInit", &info) == 0 ? 0 : -1;
}

void printDbInfo() {
    dbInfoRaw("[DB_DST]=%d\n", externGlbCfg.dbDest);
    for (int category = DbSCL; category <= DbOTH; category++) {
        const char *ending = category % 4 == 3 ? "\n" : ",";
        dbInfoRaw("[%s]=%d%s", dbInfoCatName[category], externGlbCfg.dbLevel[category], ending);
    }
}

int DbConfDeal() {
    bool changed = false;
    const auto put = [&changed](u8 &field, u8 limit, u8 value) {
        if (field >= limit) {
            field = value;
            changed = true;
        }
    };
    put(externGlbCfg.dbDest, 4, DBINFO_DST_NONE);
    for (u8 &level : externGlbCfg.dbLevel) {
        put(level, 6, DbCRI);
    }
    return changed ? 0 : 1;
}

} // namespace ied
