// The debug log: one line a diagnostic, levelled, in sixteen categories, to the console, a
// size-rotated file, or both. A line of level 0 ends the process.
#pragma once

#include "platform/types.h"

#include <cstdio>

namespace ied {

// Categories: index of dbLevel of the configuration record and of dbInfoCatName.
enum DbCategory : u8 {
    DbSCL,
    DbGEN,
    DbSOC,
    DbISO,
    DbMMS,
    DbMOD,
    DbDAT,
    DbRPT,
    DbLOG,
    DbCTL,
    DbFIL,
    DbSET,
    DbGSE,
    DbUPD,
    DbWDG,
    DbOTH,
};

// Levels; a smaller one is graver. Level 0 ends the process, 0 and 1 carry errno.
enum DbLevel : u8 {
    DbPAN,
    DbSYS,
    DbERR,
    DbCRI,
    DbINF,
    DbDBG
};

// Destinations, values of dbDest.
enum DbDestination : u8 {
    DBINFO_DST_NONE,
    DBINFO_DST_CONSOLE,
    DBINFO_DST_FILE,
    DBINFO_DST_BOTH
};

extern const char *const dbInfoCatName[16];
extern const char *const dbInfoLvName[6];
extern const char *const dbInfoDstName[4];

// Writes one line, cut at 511 octets with its prefix, if `level` is at or below dbLevel of the
// category and dbDest is not 0. `funcName` is the caller's name. Any task may call it. With level
// 0 the process ends afterwards, also when the line was filtered.
void dbInfo(DbCategory category, DbLevel level, const char *funcName, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

// Writes a text as it is, without prefix, line end, category or level, unless dbDest is 0.
void dbInfoRaw(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Brings the log up; called once by taskMain before any other task runs. 0, or -1 on failure.
int debugInfoInit();

// Prints the settings in force through dbInfoRaw.
void printDbInfo();

// Puts settings loaded from a file into their ranges: dbDest 4 and above becomes 0, a level of 6
// and above becomes 3. Returns 0 if it changed anything, else 1.
int DbConfDeal();

// The open stream of the debug file, rotated when it is full, or null. Called with the log's own
// lock held.
std::FILE *getDbInfoFp();

} // namespace ied
