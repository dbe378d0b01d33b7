// ied-device as a process: its spy on the server's queues, and the instrument itself.

#include "device/peerInterface.h"
#include "tests/support/process.h"

#include <csignal>
#include <cstring>
#include <gtest/gtest.h>

namespace ied {
namespace {

constexpr u32 readyAt = 37549840;

class DeviceProcess : public testing::Test {
  protected:
    void SetUp() override {
        platformOptions.instance = test::uniqueName();
        commands = msgQOpen("/msgqDataManager", 80, 20, 0, 0x10000000, 0);
        watchdog = msgQOpen("/wdtMsgQ", 100, 52, 0, 0x50000000, 0);
        ASSERT_NE(commands, nullptr);
        ASSERT_NE(watchdog, nullptr);
    }
    void TearDown() override {
        test::stop(device);
        removeSharedObjects(peer::sharedNames);
    }

    void run(std::vector<std::string> arguments, bool withInput = false) {
        arguments.insert(arguments.begin(),
                         {test::binary("ied-device"), "--instance", platformOptions.instance});
        test::start(device, arguments, {}, withInput);
    }
    // Waits until the output is exactly this.
    void expectOutput(const std::string &expected) {
        EXPECT_TRUE(test::waitUntil([&] { return test::output(device) == expected; }))
            << test::output(device);
    }
    void send(u32 data0, u32 data1, u32 data2) {
        const manageMsg message{1, 1, data0, data1, data2};
        ASSERT_EQ(msgQSend(commands, &message, sizeof message, NO_WAIT, 0), OK);
    }
    void sendWatchdog(u32 command, const char *name, i32 timeout) {
        WdgMessage message{};
        message.command = command;
        std::strncpy(message.taskName, name, sizeof message.taskName - 1);
        message.timeout = timeout;
        ASSERT_EQ(msgQSend(watchdog, &message, sizeof message, NO_WAIT, 0), OK);
    }
    static const u8 *region() {
        return static_cast<const u8 *>(sdOpen("/sd_commdata", 1, 0x10000000, 37549884, 0, 219));
    }

    test::Process device;
    MsgQId commands = nullptr;
    MsgQId watchdog = nullptr;
};

TEST_F(DeviceProcess, SpyPrintsEachRecordOfBothQueuesAsOneLine) {
    run({"--spy"});
    std::string expected = "{\"spy\":\"ready\"}\n";
    expectOutput(expected);
    send(85, 0, 0);
    expected += "{\"queue\":\"command\",\"sendID\":1,\"cmdType\":1,\"data0\":85,\"data1\":0,\"data2\":0}\n";
    expectOutput(expected);
    sendWatchdog(WdgRegister, "t61850Monitor", 300);
    expected += "{\"queue\":\"watchdog\",\"command\":0,\"taskName\":\"t61850Monitor\",\"timeout\":300}\n";
    expectOutput(expected);
    sendWatchdog(WdgFeed, "not carried", 7);
    expected += "{\"queue\":\"watchdog\",\"command\":2}\n";
    expectOutput(expected);
    EXPECT_EQ(test::stop(device), 0);
}

TEST_F(DeviceProcess, SpyTakesWhatWasSentBeforeItCameAndLeavesTheRegionAlone) {
    send(99, 0, 27);
    run({"--spy"});
    expectOutput(
        "{\"spy\":\"ready\"}\n"
        "{\"queue\":\"command\",\"sendID\":1,\"cmdType\":1,\"data0\":99,\"data1\":0,\"data2\":27}\n");
    kill(device.pid, SIGINT);
    EXPECT_EQ(test::waitExit(device), 0);
    const u8 *base = region();
    ASSERT_NE(base, nullptr);
    for (const u32 at : {0u, 700u, 11812u, 21360u, 37549860u, readyAt}) {
        EXPECT_EQ(base[at], 0) << at;
    }
}

TEST_F(DeviceProcess, InstrumentFillsTheRegionServesTheQueuesAndQuits) {
    run({"--show-queues", "--speed", "100"}, true);
    expectOutput("ready\n");
    const u8 *base = region();
    ASSERT_NE(base, nullptr);
    EXPECT_EQ(*reinterpret_cast<const u32 *>(base + readyAt), 43605u);
    send(0, 65, 49);
    const std::string shown =
        "ready\n{\"queue\":\"command\",\"sendID\":1,\"cmdType\":1,\"data0\":0,\"data1\":65,\"data2\":49}\n";
    expectOutput(shown);
    test::writeLine(device, "hold");
    test::writeLine(device, "state RT.Hz ENG.TotWh");
    EXPECT_TRUE(
        test::waitUntil([&] { return test::output(device).find("\"ENG.TotWh\":") != std::string::npos; }));
    test::writeLine(device, "quit");
    EXPECT_EQ(test::waitExit(device), 0);
}

TEST_F(DeviceProcess, NamesFileAndLineOfAWrongScriptAndDoesTheRest) {
    const test::TempFolder folder;
    const std::string path = folder.path + "/evening.txt";
    test::writeFile(
        path,
        "# load of the evening\n\nfrequency 50.1\nlaod 3\ninput 9 1\nset SET.no 1\nstate RT.Hz\nquit\n");
    const auto result =
        test::run({test::binary("ied-device"), "--instance", platformOptions.instance, "--script", path});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, path + ":4: unknown command laod; \"help\" lists all\n" + path +
                              ":5: usage: input INPUT 0|1|toggle [TIMES]\n" + path +
                              ":6: no parameter SET.no\n");
    EXPECT_NE(result.out.find("\"RT.Hz\":"), std::string::npos) << result.out;
}

TEST_F(DeviceProcess, RefusesOptionsItDoesNotKnowOrCannotUse) {
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"--speed", "0"},
                                                      {"--spi"},
                                                      {"--script", "/no/such/file"},
                                                      {"--instance", "a b", "--remove"}}) {
        std::vector<std::string> all = arguments;
        all.insert(all.begin(), test::binary("ied-device"));
        const auto result = test::run(all);
        EXPECT_EQ(result.status, 2) << arguments[0];
        EXPECT_NE(result.err.find(arguments[0]), std::string::npos) << result.err;
    }
    EXPECT_EQ(test::run({test::binary("ied-device"), "--version"}).status, 0);
}

} // namespace
} // namespace ied
