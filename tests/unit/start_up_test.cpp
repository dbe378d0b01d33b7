#include "device/externGlbCfg.h"
#include "platform/platform.h"
#include "platform/shared.h"
#include "proto-process/c/monitorTasks.h"
#include "proto-process/c/serverStart.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <unistd.h>

namespace ied {
namespace {

// ---------------------------------------------------------------------------------- directories

class Directories : public testing::Test {
  protected:
    Directories() {
        externGlbCfgInit();
        std::string name = (std::filesystem::temp_directory_path() / "ied-dirs-XXXXXX").string();
        root = ::mkdtemp(name.data());
        std::filesystem::create_directory(root / "tffs0");
        platformOptions.root = root.string();
    }
    ~Directories() override {
        platformOptions.root.clear();
        std::filesystem::remove_all(root);
    }
    bool exists(const char *path) const { return std::filesystem::is_directory(root / path); }

    std::filesystem::path root;
};

TEST_F(Directories, NothingToDoIsASuccess) {
    EXPECT_TRUE(dirInit(nullptr));
    EXPECT_TRUE(dirInit(""));
}

TEST_F(Directories, AreMadeItemByItemBelowTheDevice) {
    EXPECT_TRUE(dirInit("/tffs0/a/b/"));
    EXPECT_TRUE(exists("tffs0/a/b"));
    EXPECT_TRUE(dirInit("/tffs0/a/c"));
    EXPECT_TRUE(exists("tffs0/a/c"));
    EXPECT_TRUE(dirInit("/tffs0/a/b/")) << "they may exist";
    EXPECT_TRUE(dirInit("/tffs0"));
}

TEST_F(Directories, AnUnknownDeviceIsReportedAndTheStartGoesOn) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(dirInit("/nodev/a/b/"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Invalid dev name \"/nodev/\"!\n");
    EXPECT_FALSE(exists("nodev"));
}

struct RefusedPath {
    std::string path;
    std::string message;
};

TEST_F(Directories, BeyondTheLimitsAreRefusedWithTheirMessage) {
    const std::string deepest = "/tffs0/1/2/3/4/5/6/7/8";
    EXPECT_TRUE(dirInit((deepest + "/").c_str())) << "nine items";
    const std::string longItem(49, 'i');
    EXPECT_TRUE(dirInit(("/tffs0/" + longItem).c_str()));
    const RefusedPath refused[] = {
        {deepest + "/9", "\"" + deepest + "/9\" is too deep!\n"},
        {"/tffs0/" + longItem + "i", "Some domain of \"/tffs0/" + longItem + "i\" is too long!\n"},
        {"/tffs0/" + longItem + "/", "Some domain of \"/tffs0/" + longItem + "/\" is too long!\n"},
        {"/tffs0/" + std::string(40, 'j') + "/" + std::string(40, 'k') + "/" + std::string(12, 'l'),
         "\"/tffs0/" + std::string(40, 'j') + "/" + std::string(40, 'k') + "/" + std::string(12, 'l') +
             "\" is too long!\n"},
    };
    for (const RefusedPath &one : refused) {
        testing::internal::CaptureStderr();
        EXPECT_FALSE(dirInit(one.path.c_str()));
        EXPECT_EQ(testing::internal::GetCapturedStderr(), one.message);
    }
}

int mkdirRefused(const char *, unsigned) {
    errno = EROFS;
    return -1;
}

TEST_F(Directories, ThatCannotBeMadeAreAFailure) {
    const FileOps host = fileOps;
    fileOps.mkdir = mkdirRefused;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(dirInit("/tffs0/new/one/"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Fail to create dir \"/tffs0/new/\"!\n");
    fileOps = host;
}

// ------------------------------------------------------------------------- ends of a failed start

struct BadStart {
    const char *field;
    const char *value;
    const char *directory;
    const char *line;
};

class StartDirectories : public testing::TestWithParam<BadStart> {};

TEST_P(StartDirectories, ThatCannotBeMadeEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            externGlbCfgInit();
            setConfigField(GetParam().field, GetParam().value);
            setConfigField(GetParam().directory, "/a/b/c/d/e/f/g/h/i/j/");
            taskMain();
        },
        testing::ExitedWithCode(0),
        std::string("\"/a/b/c/d/e/f/g/h/i/j/\" is too deep!\n.*src/proto-process/c/taskMain:") +
            GetParam().line + ".*IEC61850 error!");
}

INSTANTIATE_TEST_SUITE_P(Kinds, StartDirectories,
                         testing::Values(BadStart{"dbDest", "2", "debugDir", "158"},
                                         BadStart{"dbDest", "3", "debugDir", "158"},
                                         BadStart{"sgFileEnable", "1", "sgDir", "167"},
                                         BadStart{"logEnable", "1", "logDir", "175"}),
                         [](const auto &one) { return std::string(one.param.directory) + one.param.value; });

// ---------------------------------------------------------------------------- the listening socket

int failingStep; // which call of the socket layer fails, counted from 1
int step;

bool failsNow() {
    errno = EACCES;
    return ++step == failingStep;
}
SocketOps host;
template <auto op, class... Arguments> int stepOf(Arguments... arguments) {
    return failsNow() ? -1 : (host.*op)(arguments...);
}
int stepSetsockopt(int fd, int level, int name, const void *value, u32 length) {
    const bool keepAlive = level == IPPROTO_TCP && name != TCP_NODELAY; // those do not end a start
    return !keepAlive && failsNow() ? -1 : host.setsockopt(fd, level, name, value, length);
}

void listenAndFail(int failing) {
    externGlbCfg.tcpPort = 0;
    host = socketOps;
    socketOps.socket = stepOf<&SocketOps::socket>;
    socketOps.setsockopt = stepSetsockopt;
    socketOps.getsockopt = stepOf<&SocketOps::getsockopt>;
    socketOps.bind = stepOf<&SocketOps::bind>;
    socketOps.listen = stepOf<&SocketOps::listen>;
    socketOps.setNonBlocking = stepOf<&SocketOps::setNonBlocking>;
    step = 0;
    failingStep = failing;
    int fd;
    std::exit(socketInit(&fd) ? 9 : 8);
}

void listenWithFailure(int failing) {
    externGlbCfgInit();
    listenAndFail(failing);
}

void takeLine(const char *) {}

// As above, while a hook takes the lines that would end the process.
void listenBesideHook(int failing) {
    externGlbCfgInit();
    externGlbCfg.dbDest = 1;
    externGlbCfg.dbHook = takeLine;
    atProcessEnd([] { std::fputs("flushed", stderr); });
    listenAndFail(failing);
}

TEST(Listening, ThatFailsBesideAHookIsAFailureAndKeepAliveAnOrderlyEnd) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    constexpr int socketStep = 1, keepAliveStep = 5, bindStep = 7, nonBlockingStep = 9;
    for (const int failing : {socketStep, bindStep, nonBlockingStep}) {
        EXPECT_EXIT(listenBesideHook(failing), testing::ExitedWithCode(8), "");
    }
    EXPECT_EXIT(listenBesideHook(keepAliveStep), testing::ExitedWithCode(1), "flushed");
}

TEST(Listening, EachStepThatFailsEndsTheProcessWithItsMessageAndTheReason) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const char *const messages[] = {
        "cannot listen on port 0: Permission denied.*socket create error",
        "socket SO_REUSEADDR set error",
        "socket TCP_NODELAY set error",
        "socket SO_LINGER set error",
        "socket SO_KEEPALIVE set error",
        "getsockopt SO_KEEPALIVE again failed",
        "cannot listen on port 0: Permission denied.*socket bind error",
        "socket listen error",
        "socket set FIONBIO error",
    };
    for (int i = 0; i < static_cast<int>(std::size(messages)); ++i) {
        EXPECT_EXIT(listenWithFailure(i + 1), testing::ExitedWithCode(0), messages[i]);
    }
    EXPECT_EXIT(listenWithFailure(99), testing::ExitedWithCode(9), "");
}

int openListener(u16 *port) {
    externGlbCfgInit();
    externGlbCfg.tcpPort = 0;
    platformOptions.bindAddress = "127.0.0.1";
    int fd = -1;
    EXPECT_TRUE(socketInit(&fd));
    ::sockaddr_in address{};
    socklen_t length = sizeof address;
    ::getsockname(fd, reinterpret_cast<::sockaddr *>(&address), &length);
    EXPECT_EQ(ntohl(address.sin_addr.s_addr), INADDR_LOOPBACK);
    *port = ntohs(address.sin_port);
    return fd;
}

TEST(Listening, GivesASilentPeerTheTimeOfTheKeepAliveValues) {
    u16 port = 0;
    const int fd = openListener(&port);
    const struct {
        int level, name, value;
    } options[] = {{SOL_SOCKET, SO_KEEPALIVE, 1},   {IPPROTO_TCP, TCP_NODELAY, 1},
                   {IPPROTO_TCP, TCP_KEEPIDLE, 5},  {IPPROTO_TCP, TCP_KEEPCNT, 5},
                   {IPPROTO_TCP, TCP_KEEPINTVL, 5}, {IPPROTO_TCP, TCP_USER_TIMEOUT, 30000}};
    for (const auto &option : options) {
        int value = -1;
        socklen_t length = sizeof value;
        ASSERT_EQ(::getsockopt(fd, option.level, option.name, &value, &length), 0);
        EXPECT_EQ(value, option.value) << option.name;
    }
    ::linger linger{};
    socklen_t length = sizeof linger;
    ::getsockopt(fd, SOL_SOCKET, SO_LINGER, &linger, &length);
    EXPECT_EQ(linger.l_onoff, 1);
    EXPECT_EQ(linger.l_linger, 0);
    EXPECT_EQ(socketOps.accept(fd, nullptr, nullptr), -1) << "it does not block";
    ::close(fd);
}

// ------------------------------------------------------------------------------------- monitor

TEST(MonitorRound, HandsTheRefreshBackWhenThereWasOneAndWaitsTenTicksWhenNot) {
    externGlbCfgInit();
    heldClockStart(1'600'000'000, true);
    semMonitor = semBCreate(semQPriority, semEmpty);
    semRefresh = semBCreate(semQPriority, semEmpty);
    u32 start = tickGet();
    monitorRound();
    EXPECT_EQ(tickGet() - start, 10U);
    EXPECT_EQ(semTake(semRefresh, NO_WAIT), ERROR);
    publish(handedOver, handedOver + 1);
    semGive(semMonitor);
    start = tickGet();
    monitorRound();
    EXPECT_EQ(tickGet(), start);
    EXPECT_EQ(semTake(semRefresh, NO_WAIT), OK);
    EXPECT_EQ(lookedAt, handedOver);
    reportRound();
    EXPECT_EQ(tickGet() - start, 10U);
    heldClockStop();
}

} // namespace
} // namespace ied
