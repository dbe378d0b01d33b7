// The debug log: form of a line, filters, destinations, rotation, and the end that level 0 is.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/commonInterface.h"
#include "device/externGlbCfg.h"
#include "platform/platform.h"
#include "tests/support/process.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ied {
namespace {

std::vector<std::string> hooked;

class DebugLog : public testing::Test {
  protected:
    DebugLog() {
        externGlbCfgInit();
        hooked.clear();
        platformOptions.root = folder.path;
        externGlbCfg.dbDest = DBINFO_DST_FILE;
        noteFailure(nullptr);
    }
    ~DebugLog() override {
        platformOptions.root.clear();
        heldClockStop();
    }
    static void hook() {
        externGlbCfg.dbHook = [](const char *line) { hooked.emplace_back(line); };
    }
    std::string file(const char *name = "DebugInfo.dbg") const {
        return test::readFile(folder.path + "/" + name);
    }
    // Runs `body` in a process of its own, for the log keeps its stream; gives its exit status.
    static int inChild(const std::function<void()> &body) {
        const pid_t child = fork();
        if (child == 0) {
            body();
            _exit(99);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    test::TempFolder folder;
};

// ---------------------------------------------------------------------------------- form of lines

TEST_F(DebugLog, ALineHoldsTimeCategoryLevelTaskFunctionAndText) {
    hook();
    heldClockStart(951782399, false); // 2000-02-28 23:59:59 UTC
    heldClockAdvance(1007);
    dbInfo(DbSOC, DbCRI, "accept", "client num: %u!", 3U);
    errno = ECONNRESET;
    dbInfo(DbSCL, DbSYS, "recv", "Receive Error!");
    ASSERT_EQ(hooked.size(), 2U);
    EXPECT_EQ(hooked[0], "[2000-02-29 00:00:00.007][SOC][CRI][tInit][accept][client num: 3!]\r\n");
    EXPECT_EQ(hooked[1], "[2000-02-29 00:00:00.007][SCL][SYS][tInit][recv][errno: 0x68][Receive Error!]\r\n");
}

TEST_F(DebugLog, LongTextsAndLongLinesAreCutAt511Octets) {
    hook();
    dbInfo(DbOTH, DbCRI, "f", "%s", std::string(600, 'x').c_str());
    const std::string prefix = "[2000-01-01 00:00:00.000][OTH][CRI][tInit][f][";
    ASSERT_EQ(hooked[0].size(), 511U);
    EXPECT_EQ(hooked[0].substr(prefix.size()), std::string(511 - prefix.size(), 'x'))
        << "the line end is lost";
    dbInfo(DbOTH, DbCRI, "f", "%s", std::string(511 - prefix.size() - 3, 'y').c_str());
    ASSERT_EQ(hooked[1].size(), 511U);
    EXPECT_EQ(hooked[1].substr(508), "]\r\n");
    dbInfoRaw("%s", std::string(600, 'z').c_str());
    EXPECT_EQ(hooked[2], std::string(511, 'z'));
}

TEST_F(DebugLog, AllNamesAreThoseOfTheTables) {
    hook();
    std::fill_n(externGlbCfg.dbLevel, 16, u8{5});
    std::string categories, levels;
    for (int c = DbSCL; c <= DbOTH; c++) {
        dbInfo(static_cast<DbCategory>(c), DbDBG, "f", "t");
        categories += hooked.back().substr(26, 3) + " ";
    }
    for (int l = DbPAN; l <= DbDBG; l++) {
        dbInfo(DbSCL, static_cast<DbLevel>(l), "f", "t"); // with a hook level 0 does not end the process
        levels += hooked.back().substr(31, 3) + " ";
    }
    EXPECT_EQ(categories, "SCL GEN SOC ISO MMS MOD DAT RPT LOG CTL FIL SET GSE UPD WDG OTH ");
    EXPECT_EQ(levels, "PAN SYS ERR CRI INF DBG ");
}

// --------------------------------------------------------------------------------------- filters

TEST_F(DebugLog, ALineShowsAtTheLevelOfItsCategoryAndBelow) {
    hook();
    externGlbCfg.dbLevel[DbMMS] = DbERR;
    dbInfo(DbMMS, DbERR, "f", "shown");
    dbInfo(DbMMS, DbCRI, "f", "hidden");
    dbInfo(DbISO, DbCRI, "f", "another category");
    externGlbCfg.dbDest = DBINFO_DST_NONE;
    dbInfo(DbMMS, DbERR, "f", "nowhere");
    dbInfoRaw("nowhere");
    ASSERT_EQ(hooked.size(), 2U);
    EXPECT_NE(hooked[0].find("shown"), std::string::npos);
    EXPECT_NE(hooked[1].find("another category"), std::string::npos);
}

TEST_F(DebugLog, SettingsAreShownFourToALineAndPutIntoTheirRanges) {
    hook();
    externGlbCfg.dbLevel[4] = 6;
    externGlbCfg.dbLevel[5] = 5;
    externGlbCfg.dbDest = 4;
    EXPECT_EQ(DbConfDeal(), 0);
    EXPECT_EQ(externGlbCfg.dbDest, 0);
    EXPECT_EQ(DbConfDeal(), 1);
    externGlbCfg.dbDest = 3;
    printDbInfo();
    std::string all;
    for (const std::string &text : hooked) {
        all += text;
    }
    EXPECT_EQ(all, "[DB_DST]=3\n[SCL]=3,[GEN]=3,[SOC]=3,[ISO]=3\n[MMS]=3,[MOD]=5,[DAT]=3,[RPT]=3\n"
                   "[LOG]=3,[CTL]=3,[FIL]=3,[SET]=3\n[GSE]=3,[UPD]=3,[WDG]=3,[OTH]=3\n");
}

// ------------------------------------------------------------------------------------ destinations

TEST_F(DebugLog, TheConsoleTakesGraveLinesOnTheErrorStreamAndOthersOnTheOutput) {
    externGlbCfg.dbDest = DBINFO_DST_CONSOLE;
    ASSERT_EQ(debugInfoInit(), 0);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    dbInfo(DbOTH, DbERR, "f", "grave");
    dbInfo(DbOTH, DbCRI, "f", "plain");
    dbInfoRaw("raw\n");
    std::fflush(stdout);
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("[OTH][ERR][tInit][f][grave]\r\n"), std::string::npos) << err;
    EXPECT_EQ(err.find("plain"), std::string::npos);
    EXPECT_NE(out.find("[OTH][CRI][tInit][f][plain]\r\nraw\n"), std::string::npos) << out;
    EXPECT_EQ(out.find("grave"), std::string::npos);
    EXPECT_EQ(access((folder.path + "/DebugInfo.dbg").c_str(), F_OK), -1);
}

TEST_F(DebugLog, FineLinesWaitInTheStreamUntilAGraverOneOrTheEnd) {
    EXPECT_EQ(inChild([this] {
                  debugInfoInit();
                  externGlbCfg.dbLevel[DbOTH] = DbDBG;
                  dbInfo(DbOTH, DbINF, "f", "first");
                  const bool waits = file().empty();
                  dbInfo(DbOTH, DbCRI, "f", "second");
                  const bool written = file().find("first") < file().find("second");
                  dbInfo(DbOTH, DbDBG, "f", "third");
                  const bool waitsAgain = file().find("third") == std::string::npos;
                  processExit(waits && written && waitsAgain ? 7 : 8);
              }),
              7);
    EXPECT_NE(file().find("third"), std::string::npos) << "flushed by the end of the process";
}

// ----------------------------------------------------------------------------------------- files

TEST_F(DebugLog, AFullFileIsPutAsideWhenTheNextLineComes) {
    externGlbCfg.dbFileSize = 1000;
    test::writeFile(folder.path + "/DebugInfo.dbg", std::string(999, 'a'));
    test::writeFile(folder.path + "/BakDebugInfo.dbg", "old");
    EXPECT_EQ(inChild([this] {
                  debugInfoInit();
                  dbInfoRaw("1"); // to exactly the size
                  const bool kept = file("BakDebugInfo.dbg") == "old";
                  dbInfoRaw("2");
                  const bool rotated =
                      file("BakDebugInfo.dbg") == std::string(999, 'a') + "1" && file() == "2";
                  dbInfoRaw("%s", std::string(500, 'b').c_str());
                  dbInfoRaw("%s", std::string(500, 'c').c_str());
                  dbInfoRaw("3");
                  _exit(kept && rotated ? 7 : 8);
              }),
              7);
    EXPECT_EQ(file("BakDebugInfo.dbg"), "2" + std::string(500, 'b') + std::string(500, 'c'));
    EXPECT_EQ(file(), "3");
}

TEST_F(DebugLog, ManyTasksLogWholeLines) {
    constexpr int tasks = 4;
    constexpr int lines = 200;
    externGlbCfg.dbFileSize = 40000; // one rotation on the way
    EXPECT_EQ(inChild([] {
                  debugInfoInit();
                  static std::atomic<int> finished;
                  for (int i = 0; i < tasks; i++) {
                      taskSpawn(
                          "tLog", 200, taskOptionFp, 0x20000,
                          [](TaskArgument) {
                              for (int n = 0; n < lines; n++) {
                                  dbInfo(DbOTH, DbCRI, "f", "line");
                              }
                              finished++;
                          },
                          0, 2, 3, 4, 5, 6, 7, 8, 9, 10);
                  }
                  processExit(test::waitUntil([] { return finished == tasks; }) ? 7 : 8);
              }),
              7);
    const std::string all = file("BakDebugInfo.dbg") + file();
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), tasks * lines);
    constexpr std::size_t length = sizeof "[2000-01-01 00:00:00.000][OTH][CRI][tLog][f][line]\r\n" - 1;
    ASSERT_EQ(all.size(), tasks * lines * length);
    for (std::size_t at = 0; at < all.size(); at += length) {
        ASSERT_EQ(all.substr(at + 25, length - 25), "[OTH][CRI][tLog][f][line]\r\n") << at;
    }
}

TEST_F(DebugLog, AMissingFileIsMadeAndSaysSo) {
    struct stat info {};
    testing::internal::CaptureStderr();
    EXPECT_EQ(checkFile("/a", "caller", &info), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "caller: \"/a\" is not a regular file, creating!\n");
    EXPECT_EQ(info.st_mode & 0777, 0644U);
    testing::internal::CaptureStderr();
    EXPECT_EQ(checkFile("/a", "caller", &info), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DebugLog, AFolderInAFilesPlaceIsReplacedUnlessTheCheckIsOff) {
    struct stat info {};
    ASSERT_EQ(fileOps.mkdir("/a", 0755), 0);
    externGlbCfg.fileCheckDisable = 1;
    EXPECT_EQ(checkFile("/a", "caller", &info), 0);
    EXPECT_TRUE(S_ISDIR(info.st_mode));
    externGlbCfg.fileCheckDisable = 0;
    testing::internal::CaptureStderr();
    EXPECT_EQ(checkFile("/a", "caller", &info), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "caller: \"/a\" is not a regular file, creating!\n");
    EXPECT_TRUE(S_ISREG(info.st_mode));
}

TEST_F(DebugLog, AFileThatCannotBeMadeEndsTheProcessAfterThreeRounds) {
    struct stat info {};
    const std::string round = "caller: \"/none/a\" is not a regular file, creating!\n"
                              "caller: fail to create \"/none/a\", retry!\n";
    EXPECT_EXIT(checkFile("/none/a", "caller", &info), testing::ExitedWithCode(0),
                "^" + round + round + round +
                    "caller: retry times out!\n"
                    "error record 513, src/basicInterface/commonInterface:1424: IEC61850 error!\n$");
}

TEST_F(DebugLog, AFullDiskLosesLinesOfTheFileAndNothingElse) {
    externGlbCfg.dbDest = DBINFO_DST_BOTH;
    EXPECT_EQ(inChild([] {
                  if (std::freopen("/dev/null", "w", stdout) == nullptr || debugInfoInit() != 0) {
                      _exit(1);
                  }
                  fileOps.open = [](const char *, int, unsigned) {
                      return ::open("/dev/full", O_RDWR | O_CLOEXEC);
                  };
                  for (int i = 0; i < 20000; i++) { // more than any buffer holds, flushed and not
                      dbInfo(DbOTH, i % 2 == 0 ? DbCRI : DbINF, "f", "line %d", i);
                  }
                  dbInfoRaw("%s", "raw");
                  processExit(7); // the flush at the end fails likewise
              }),
              7);
    EXPECT_EQ(file(), "");
}

TEST_F(DebugLog, AFileThatOpensNoMoreKeepsTheConsole) {
    externGlbCfg.dbDest = DBINFO_DST_BOTH;
    EXPECT_EQ(inChild([this] {
                  const std::string console = folder.path + "/console";
                  if (std::freopen(console.c_str(), "w", stdout) == nullptr || debugInfoInit() != 0) {
                      _exit(1);
                  }
                  fileOps.open = [](const char *, int, unsigned) {
                      errno = ENOSPC;
                      return -1;
                  };
                  dbInfo(DbOTH, DbCRI, "f", "first");
                  dbInfo(DbOTH, DbCRI, "f", "second");
                  processExit(7);
              }),
              7);
    EXPECT_NE(file("console").find("[first]"), std::string::npos);
    EXPECT_NE(file("console").find("[second]"), std::string::npos);
}

// ----------------------------------------------------------------------------------- the stop

TEST_F(DebugLog, LevelZeroEndsTheProcessEvenWhenTheLineIsHidden) {
    const char *record = "error record 513, src/DebugInfo/DebugInfo:576: IEC61850 error! Cause: no more\n$";
    externGlbCfg.dbDest = DBINFO_DST_NONE;
    EXPECT_EXIT(dbInfo(DbSCL, DbPAN, "f", "no %s", "more"), testing::ExitedWithCode(0),
                std::string("^") + record);
    externGlbCfg.dbDest = DBINFO_DST_CONSOLE;
    ASSERT_EQ(debugInfoInit(), 0);
    EXPECT_EXIT(dbInfo(DbSCL, DbPAN, "f", "no more"), testing::ExitedWithCode(0),
                std::string("\\[SCL\\]\\[PAN\\]\\[tInit\\]\\[f\\]\\[errno: .*\\]\\[no more\\]\r\n") + record);
}

TEST_F(DebugLog, AStopCarriesTheFailuresThatLedToItAndTheReasonOfTheHost) {
    externGlbCfg.dbDest = DBINFO_DST_NONE;
    errno = EADDRINUSE;
    dbInfo(DbSOC, DbSYS, "f", "bind");
    dbInfo(DbGEN, DbCRI, "f", "nothing wrong");
    dbInfo(DbGEN, DbERR, "f", "Model init failed!");
    EXPECT_EXIT(stopProcess("src/proto-process/c/taskMain", 245), testing::ExitedWithCode(0),
                "^error record 513, src/proto-process/c/taskMain:245: IEC61850 error! "
                "Cause: bind: Address already in use; Model init failed!\n$");
}

} // namespace
} // namespace ied
