// The client as people and scripts run it, against the server.
#include "tests/support/serverFixture.h"

#include <algorithm>
#include <sstream>

using namespace ied::test;

namespace {

class ClientCommands : public ServerSuite {
  protected:
    static void SetUpTestSuite() {
        startSuite();
        Region &region = server->region;
        put(region, 21576, 72000.0F);                  // total active power, W
        put(region, 58616, 49.98F);                    // frequency, Hz
        put(region, 21360, std::uint32_t{1700000000}); // time of the real-time block
        put(region, 21364, std::uint32_t{250});
        put(region, 21368, std::uint8_t{10});
        for (std::size_t order = 2; order <= 50; ++order) { // spectrum of the current of phase A
            put(region, 24380 + 4 * (order - 1), 0.5F / static_cast<float>(order));
        }
        raise(region, 11812);
        EXPECT_TRUE(waitUntil([] {
            return client({"read", "ZRX418MEAS/MMXU1.Hz"}).out.find("49.98") != std::string::npos;
        }));
    }
    void TearDown() override { expectIntact(); }

    static RunResult client(std::vector<std::string> arguments,
                            std::vector<std::string> environment = {"TZ=UTC"}) {
        arguments.insert(arguments.begin(), {binary("ied-client"), "--timeout", "60",
                                             "127.0.0.1:" + std::to_string(server->port)});
        return run(arguments, environment);
    }
    static std::string json(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--json");
        const RunResult result = client(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.out;
    }
};

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST_F(ClientCommands, ValuesComeWithUnitQualityAndLocalTime) {
    const RunResult utc = client({"read", "ZRX418MEAS/MMXU1.TotW.mag.f[MX]"});
    EXPECT_EQ(utc.out, "ZRX418MEAS/MMXU1.TotW.mag.f[MX]  72 kW  good  2023-11-14 22:13:20.250\n");
    EXPECT_EQ(utc.status, 0);
    const RunResult east = client({"read", "ZRX418MEAS/MMXU1$MX$TotW$mag$f"}, {"TZ=EST-5"});
    EXPECT_EQ(east.out, "ZRX418MEAS/MMXU1.TotW.mag.f[MX]  72 kW  good  2023-11-15 03:13:20.250\n");
}

TEST_F(ClientCommands, AReadIsOneJsonDocumentAndARoundOneLine) {
    const std::string document = json({"read", "ZRX418MEAS/MMXU1.TotW", "ZRX418MEAS/MMXU1.Hz"});
    EXPECT_TRUE(contains(document,
                         "{\"reference\":\"ZRX418MEAS/MMXU1.TotW.mag.f[MX]\",\"value\":72,\"unit\":\"kW\","
                         "\"quality\":\"good\",\"time\":\"2023-11-14T22:13:20.250Z\"},"
                         "{\"reference\":\"ZRX418MEAS/MMXU1.Hz.mag.f[MX]\",\"value\":49.98,\"unit\":\"Hz\","))
        << document;
    const std::string rounds =
        json({"read", "--watch", "--rounds", "3", "--interval", "0.01", "ZRX418MEAS/MMXU1.Hz"});
    EXPECT_EQ(std::count(rounds.begin(), rounds.end(), '\n'), 3);
}

TEST_F(ClientCommands, AReferenceStandsForAnAttributeAnObjectANodeOrADevice) {
    const auto lines = [](const std::string &reference) {
        const RunResult result = client({"read", reference});
        EXPECT_EQ(result.status, 0) << result.err;
        return std::count(result.out.begin(), result.out.end(), '\n');
    };
    const auto node = lines("ZRX418MEAS/MMXU1");
    EXPECT_EQ(lines("ZRX418MEAS/MMXU1.PhV"), 7);
    EXPECT_GT(node, 30);
    EXPECT_EQ(node, lines("ZRX418MEAS/MMXU1[MX]") + lines("ZRX418MEAS/MMXU1[ST]"));
    EXPECT_GT(lines("ZRX418MEAS"), 10 * node);
    EXPECT_TRUE(contains(client({"read", "ZRX418MEAS/MMXU1.TotW.units"}).out, "multiplier[CF]  3"));
}

TEST_F(ClientCommands, ArrayElementsAndRangesAreThoseOfTheWholeArray) {
    const std::string array = "ZRX418MEAS/MHAI1.HA.phsAHar";
    const std::string whole = client({"read", array}).out;
    EXPECT_EQ(std::count(whole.begin(), whole.end(), '\n'), 64);
    EXPECT_TRUE(contains(client({"read", array + "[2..10]"}).out, "phsAHar[10][MX]"));
    const auto element = [&](const std::string &text, const std::string &index) {
        const std::size_t at = text.find("[" + index + "]");
        const std::size_t value = text.find_first_not_of(' ', text.find(' ', at));
        return text.substr(value, text.find(' ', value) - value);
    };
    EXPECT_NE(element(whole, "5"), "0");
    for (const char *index : {"0", "5", "63"}) {
        EXPECT_EQ(element(client({"read", array + "[" + index + "]"}).out + " ", index),
                  element(whole, index))
            << index;
    }
    EXPECT_EQ(element(client({"read", array + "[60..63]"}).out, "63"), element(whole, "63"));
    EXPECT_TRUE(contains(json({"read", array + "[5].mag.f[MX]"}), "\"value\":" + element(whole, "5")));
}

TEST_F(ClientCommands, TheModelIsShownWithTypesAndFoundByPattern) {
    EXPECT_TRUE(contains(client({"devices"}).out, "ZRX418MEAS\n"));
    EXPECT_TRUE(contains(json({"tree", "ZRX418MEAS/MMXU1.TotW[MX]"}),
                         "{\"reference\":\"ZRX418MEAS/MMXU1.TotW.mag.f[MX]\",\"type\":\"FLOAT32\"}"));
    EXPECT_TRUE(contains(client({"tree", "ZRX418MEAS/MHAI1"}).out, "phsAHar         array[64]\n"));
    EXPECT_TRUE(contains(client({"tree", "--depth", "0"}).out, "ZRX418MEAS\n"));
    EXPECT_TRUE(contains(client({"find", "totva*"}).out, "ZRX418MEAS/MMXU1.TotVAr[MX]\n"));
    EXPECT_TRUE(contains(client({"find", "MEAS/*.TotW.units[CF]"}).out +
                             client({"find", "*MEAS/MMXU1.TotW.units[CF]"}).out,
                         "ZRX418MEAS/MMXU1.TotW.units[CF]\n"));
    const std::string views = client({"find", "ZRX418MEAS/MMXU?.TotPF"}).out;
    EXPECT_TRUE(contains(views, "ZRX418MEAS/MMXU1.TotPF[MX]\nZRX418MEAS/MMXU1.TotPF[CF]\n")) << views;
    EXPECT_FALSE(contains(views, "TotPF.")) << views;
    EXPECT_TRUE(contains(client({"datasets"}).out, "ZRX418MEAS/LLN0.dsRms\n"));
    EXPECT_TRUE(contains(client({"dataset", "ZRX418MEAS/LLN0.dsRms"}).out, "ZRX418MEAS/MMXU1.TotW[MX]\n"));
    EXPECT_TRUE(contains(client({"dataset", "ZRX418MEAS/LLN0$dsRms", "--values"}).out, "72 kW"));
    EXPECT_TRUE(
        contains(json({"identify"}), "{\"vendor\":\"ORV\",\"model\":\"QTM5-2\",\"revision\":\"V1.3150519\""));
}

TEST_F(ClientCommands, AWriteIsSeenByTheNextRead) {
    const std::string db = "ZRX418MEAS/MMXU1.TotW.db";
    for (const char *value : {"5000", "0"}) {
        EXPECT_EQ(client({"write", db, value}).out, db + "[CF] = " + value + "\n");
        EXPECT_TRUE(contains(json({"read", db}), std::string("\"value\":") + value + "}"));
    }
}

TEST_F(ClientCommands, TheExitStatusTellsRefusalUsageAndNoConnection) {
    struct Row {
        std::vector<std::string> arguments;
        int status;
        const char *message;
    };
    for (const Row &row :
         {Row{{"read", "NOSUCH/LLN0"}, 1, "no logical device 'NOSUCH'"},
          Row{{"read", "ZRX418MEAS/NOSUCH1"}, 1, "no logical node 'NOSUCH1' in ZRX418MEAS"},
          Row{{"read", "ZRX418MEAS/MMXU1.TotX"}, 1, "ZRX418MEAS/MMXU1 has no 'TotX'"},
          Row{{"read", "ZRX418MEAS/MHAI1.HA.phsAHar[64]"},
              1,
              "'phsAHar' has no element 64: they are 0 to 63"},
          Row{{"write", "ZRX418MEAS/MMXU1.TotW.mag.f", "-1"}, 1, "object-access-denied"},
          Row{{"write", "ZRX418MEAS/MMXU1.TotW.db", "100001"}, 1, "object-value-invalid"},
          Row{{"dataset", "ZRX418MEAS/LLN0.nosuch"}, 1, "object-undefined"},
          Row{{"find", "nosuchname"}, 1, "nothing matches"},
          Row{{"write", "ZRX418MEAS/MMXU1.TotW.db", "x"}, 2, "takes a whole number"},
          Row{{"read", "..."}, 2, "a reference begins with"}, Row{{"read"}, 2, "REF is required"},
          Row{{"nosuch"}, 2, "subcommand is required"}}) {
        const RunResult result = client(row.arguments);
        EXPECT_EQ(result.status, row.status) << row.message;
        EXPECT_TRUE(contains(result.err, row.message)) << result.err;
    }
    EXPECT_EQ(run({binary("ied-client"), "127.0.0.1:" + std::to_string(freePort()), "identify"}).status, 3);
    // What can be read is shown although something else cannot.
    const RunResult mixed = client({"read", "ZRX418MEAS/MMXU1.Hz", "ZRX418MEAS/MMXU1.NoSuch"});
    EXPECT_EQ(mixed.status, 1);
    EXPECT_TRUE(contains(mixed.out, "49.98 Hz"));
}

TEST(ClientOfASmallServer, SplitsWhatExceedsThePduSizeAndShowsTheSame) {
    ServerProcess small({"", {"tickRate=1000", "maxMmsPduSize=1000"}, {}, true});
    ServerProcess large({"", fastTicks, {}, true});
    launchServer(large);
    ASSERT_TRUE(startServer(small));
    ASSERT_TRUE(waitUntil([&] { return listening(large.port); }));
    const auto names = [](const ServerProcess &server, const char *reference) {
        const RunResult result = run({binary("ied-client"), "--timeout", "60",
                                      "127.0.0.1:" + std::to_string(server.port), "read", reference});
        EXPECT_EQ(result.status, 0) << result.err;
        std::vector<std::string> references;
        std::istringstream lines(result.out);
        for (std::string line; std::getline(lines, line);) {
            references.push_back(line.substr(0, line.find(' ')));
        }
        std::sort(references.begin(), references.end());
        return references;
    };
    for (const char *reference : {"ZRX418MEAS/MMXU1", "ZRX418MEAS/MSQI1", "ZRX418SETSYS/trGGIO1"}) {
        const std::vector<std::string> split = names(small, reference);
        EXPECT_GT(split.size(), 5U);
        EXPECT_EQ(split, names(large, reference)) << reference;
    }
}
