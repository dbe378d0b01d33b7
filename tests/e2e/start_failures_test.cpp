// A start that cannot succeed says why, on the terminal, and ends.
#include "tests/support/serverProcess.h"
#include "tests/support/tcp.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using ied::u16;
using namespace ied::test;

namespace {

std::string withId(const std::string &text, const std::string &from, const std::string &to) {
    std::string changed = text;
    const std::size_t at = changed.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return changed.replace(at, from.size(), to);
}

struct BadIcd {
    const char *name;
    std::string (*content)(const std::string &full);
    std::vector<std::string> words; // of the message
    int status = 255;
};

class BadIcdFile : public testing::TestWithParam<BadIcd> {};

// Starts a server that should end by itself; what it said.
std::string startAndEnd(ServerProcess &server, int &status) {
    launchServer(server);
    const std::optional<int> end = waitExit(server.process);
    EXPECT_TRUE(end) << "still running";
    status = end.value_or(-1);
    return output(server.process) + errors(server.process);
}

const std::size_t middle = 250000;

} // namespace

TEST_P(BadIcdFile, EndsTheStartWithAMessageThatNamesTheFault) {
    TempFolder folder;
    const std::string path = folder.path + "/bad.icd";
    writeFile(path, GetParam().content(readFile(fullIcd())));
    ServerProcess server({path, {}, {}, true});
    int status = 0;
    const std::string said = startAndEnd(server, status);
    EXPECT_EQ(status, GetParam().status);
    for (const std::string &word : GetParam().words) {
        EXPECT_NE(said.find(word), std::string::npos) << "'" << word << "' is not in:\n" << said;
    }
    EXPECT_FALSE(listening(server.port));
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadIcdFile,
    testing::Values(
        BadIcd{"otherScl", // of a substation, without any IED
               [](const std::string &) {
                   return std::string(
                       "<?xml version=\"1.0\"?><SCL><Header id=\"s\"/><Substation name=\"S\"/></SCL>");
               },
               {"bad.icd", "no LDevice"}},
        BadIcd{"truncated",
               [](const std::string &full) { return full.substr(0, middle); },
               {"Parse error at line", "bad.icd:"}},
        BadIcd{"missingType",
               [](const std::string &full) { return withId(full, "lnType=\"MMXU\"", "lnType=\"NOSUCH\""); },
               {"NOSUCH", "MMXU1", "bad.icd:"}},
        BadIcd{
            "badAddress",
            [](const std::string &full) { return withId(full, "sAddr=\"RT.TotW\"", "sAddr=\"RT.NoSuch\""); },
            {"RT.NoSuch"},
            0}),
    [](const auto &parameter) { return std::string(parameter.param.name); });

// A server without rights over the files of root and low ports; the instrument is ready.
RunResult runAsNobody(const std::string &icd, const std::string &root, u16 port,
                      const std::vector<std::string> &more = {}) {
    const std::string instance = uniqueName();
    std::vector<std::string> arguments;
    if (geteuid() == 0) {
        arguments = {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
        arguments.insert(arguments.end(), more.begin(), more.end());
    }
    for (const std::string &argument :
         {binary("ied-server"), std::string("--icd"), icd, std::string("--root"), root,
          std::string("--instance"), instance, std::string("--port"), std::to_string(port)}) {
        arguments.push_back(argument);
    }
    Region region(instance);
    fchmod(region.descriptor, 0666);
    announceReady(region);
    return run(arguments);
}

TEST(StartFailure, AnUnreadableIcdFileIsNamed) {
    TempFolder folder;
    const std::string path = folder.path + "/secret.icd";
    writeFile(path, readFile(fullIcd()));
    chmod(folder.path.c_str(), 0755);
    chmod(path.c_str(), geteuid() == 0 ? 0600 : 0000);
    const RunResult result = runAsNobody(path, folder.path, freePort());
    EXPECT_EQ(result.status, 255) << result.out << result.err;
    EXPECT_NE((result.out + result.err).find("Permission denied"), std::string::npos)
        << result.out << result.err;
}

TEST(StartFailure, APortBelow1024WithoutTheRightIsNamed) {
    TempFolder folder;
    chmod(folder.path.c_str(), 0777);
    const std::string low = readFile("/proc/sys/net/ipv4/ip_unprivileged_port_start");
    if (std::atoi(low.c_str()) <= 1) {
        GTEST_SKIP() << "every port is free to all on this host";
    }
    const RunResult result =
        runAsNobody(fullIcd(), folder.path, 1, {"--bounding-set=-all", "--inh-caps=-all"});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_NE(result.err.find("port 1: Permission denied"), std::string::npos) << result.out << result.err;
}

TEST(StartFailure, AnOccupiedPortIsNamed) {
    ServerProcess first;
    ASSERT_TRUE(startServer(first));
    ServerProcess second;
    second.port = first.port;
    int status = 0;
    const std::string said = startAndEnd(second, status);
    EXPECT_EQ(status, 0);
    EXPECT_NE(said.find("port " + std::to_string(first.port) + ": Address already in use"), std::string::npos)
        << said;
    EXPECT_TRUE(running(first.process));
}

TEST(StartFailure, AnInstrumentThatIsNotReadyIsWaitedForAndSaidOnce) {
    ServerProcess server({"", {}, {}, false});
    launchServer(server);
    const auto said = [&] { return output(server.process) + errors(server.process); };
    const std::string waiting = "Waiting for the instrument";
    EXPECT_TRUE(waitUntil([&] { return said().find(waiting) != std::string::npos; }));
    EXPECT_FALSE(listening(server.port));
    announceReady(server.region);
    EXPECT_TRUE(waitUntil([&] { return listening(server.port); }));
    const std::string all = said();
    EXPECT_EQ(all.find(waiting), all.rfind(waiting)) << all;
    EXPECT_EQ(stop(server.process), 0);
}

// Nobody has made the region yet: the server makes it and waits as long as the instrument takes.
TEST(StartFailure, AMissingRegionIsWaitedForAndTheWaitCanBeEnded) {
    TempFolder folder;
    const std::string instance = uniqueName();
    Process server;
    start(server, {binary("ied-server"), "--icd", fullIcd(), "--root", folder.path, "--instance", instance,
                   "--port", std::to_string(freePort())});
    const std::string waiting = "Waiting for the instrument";
    const auto said = [&] { return output(server) + errors(server); };
    EXPECT_TRUE(waitUntil([&] { return said().find(waiting) != std::string::npos; })) << said();
    EXPECT_TRUE(running(server));
    EXPECT_EQ(stop(server), 0);
    EXPECT_EQ(said().find(waiting), said().rfind(waiting)) << said();
    const Region leftOver(instance); // takes what the server made with it
}

TEST(StartFailure, AFolderInTheIcdFilesPlaceIsNamed) {
    TempFolder folder;
    ServerProcess server({folder.path, {}, {}, true});
    int status = 0;
    const std::string said = startAndEnd(server, status);
    EXPECT_EQ(status, 255);
    EXPECT_NE(said.find(folder.path), std::string::npos) << said;
    EXPECT_NE(said.find("Is a directory"), std::string::npos) << said;
}

TEST(StartFailure, AWrongOptionEndsWithStatusTwoAndIsNamed) {
    const RunResult result = run({binary("ied-server"), "--set", "tickRate=0"});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("tickRate"), std::string::npos) << result.err;
}
