// Reports as people and scripts follow them with the client, from the server.
#include "tests/support/serverFixture.h"

#include <algorithm>

using namespace ied::test;

namespace {

const std::string unbuffered = "ZRX418MEAS/LLN0.urcbRms01";
// Over the same data set, four entries deep.
const std::string buffered = "ZRX418MEAS/LLN0.brcbTest";
const std::string other = "ZRX418MEAS/LLN0.brcbOther";

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

// A text with one blank in place of several.
std::string squeezed(std::string text) {
    const auto end =
        std::unique(text.begin(), text.end(), [](char a, char b) { return a == ' ' && b == ' '; });
    text.erase(end, text.end());
    return text;
}

std::vector<std::string> arguments(const ServerProcess &server, std::vector<std::string> rest) {
    rest.insert(rest.begin(),
                {binary("ied-client"), "--timeout", "60", "127.0.0.1:" + std::to_string(server.port)});
    return rest;
}

RunResult client(const ServerProcess &server, std::vector<std::string> rest) {
    return run(arguments(server, std::move(rest)), {"TZ=UTC"});
}

// The instrument's model with two buffered blocks more.
std::string icdWithBlocks() {
    static const TempFolder folder;
    std::string text = readFile(fullIcd());
    const std::string place = "<ReportControl name=\"urcbRms\"";
    for (const std::string name : {"brcbTest", "brcbOther"}) {
        text.insert(text.find(place),
                    "<ReportControl name=\"" + name + "\" datSet=\"dsRms\" intgPd=\"0\" rptID=\"" + name +
                        "\" confRev=\"1\" buffered=\"true\" bufTime=\"0\"><TrgOps dchg=\"true\"/>"
                        "<OptFields seqNum=\"true\" timeStamp=\"true\" reasonCode=\"true\" entryID=\"true\" "
                        "bufOvfl=\"true\"/><RptEnabled max=\"1\"/></ReportControl>");
    }
    const std::string path = folder.path + "/blocks.icd";
    writeFile(path, text);
    return path;
}

ServerOptions options() {
    return {icdWithBlocks(), {"tickRate=1000", "minRptBufNum=4", "maxRptBufNum=4"}, {}, true};
}

// EntryID of the newest entry of the buffered block.
std::string newestEntry(const ServerProcess &server) {
    const std::string line = client(server, {"read", buffered + ".EntryID"}).out;
    const std::size_t at = line.find_last_of(' ');
    return at == std::string::npos ? "" : line.substr(at + 1, 16);
}

// The instrument measures a total active power that it did not measure before: one entry more.
void measure(ServerProcess &server, float watts) {
    const std::string before = newestEntry(server);
    put(server.region, 21576, watts);
    raise(server.region, 11812);
    EXPECT_TRUE(waitUntil([&] { return newestEntry(server) != before; }));
}

// The first measurements, whose entries are then dropped, so that the next one is number 1.
void prepare(ServerProcess &server) {
    ASSERT_TRUE(startServer(server));
    put(server.region, 58616, 49.98F);                    // frequency, Hz
    put(server.region, 21360, std::uint32_t{1700000000}); // time of the real-time block
    put(server.region, 21364, std::uint32_t{250});
    put(server.region, 21368, std::uint8_t{10});
    raise(server.region, 11812);
    ASSERT_TRUE(waitUntil([&] {
        return contains(client(server, {"read", "ZRX418MEAS/MMXU1.Hz"}).out, "49.98");
    }));
    for (const std::string &block : {buffered, other}) {
        ASSERT_EQ(client(server, {"write", block + ".PurgeBuf", "true"}).status, 0);
    }
}

// What stands behind "--resume " in a text of the block.
std::string resumeText(const std::string &text, const std::string &block = buffered) {
    const std::string before = " of " + block + "[BR]; to go on: --resume ";
    const std::size_t at = text.find(before);
    const std::size_t begin = at + before.size();
    return at == std::string::npos ? "" : text.substr(begin, text.find('\n', begin) - begin);
}

// The entries of a text of reports of the block, by the end of their numbers: "34".
std::string entriesOf(const std::string &text, const std::string &block = buffered) {
    std::string entries;
    for (std::size_t at = text.find(block + "[BR]  "); at != std::string::npos;
         at = text.find(block + "[BR]  ", at + 1)) {
        entries += text[text.find("  entry ", at) + 8 + 15];
    }
    return entries;
}

class ReportClient : public ServerSuite {
  protected:
    static void SetUpTestSuite() {
        server = std::make_unique<ServerProcess>(options());
        prepare(*server);
        idleSockets = socketCount(server->process.pid);
        idleDescriptors = descriptorCount(server->process.pid);
    }
    void TearDown() override { expectIntact(); }
    static bool isFree(const std::string &block) {
        return contains(client(*server, {"--json", "reports", block}).out, "\"state\":\"free\"");
    }
};

} // namespace

TEST_F(ReportClient, AGeneralInterrogationShowsAllMembersWithUnitQualityAndReason) {
    measure(*server, 72000);
    const RunResult result = client(
        *server, {"report", unbuffered, "--trgops", "gi", "--optflds", "none", "--gi", "--count", "1"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(result.out.starts_with(unbuffered + "[RP]\n")) << result.out;
    EXPECT_TRUE(contains(squeezed(result.out),
                         " ZRX418MEAS/MMXU1.TotW.mag.f[MX] 72 kW good 2023-11-14 22:13:20.250\n"))
        << result.out;
    EXPECT_TRUE(result.out.ends_with("1 report of " + unbuffered + "[RP]\n")) << result.out;
    const RunResult reasons =
        client(*server, {"--json", "report", unbuffered, "--optflds", "all", "--gi", "--count", "1"});
    EXPECT_TRUE(contains(reasons.out, "{\"reference\":\"ZRX418MEAS/MMXU1.TotW.mag.f[MX]\",\"reason\":"
                                      "[\"general-interrogation\"],\"value\":72,\"unit\":\"kW\","))
        << reasons.out;
    EXPECT_TRUE(contains(reasons.out, "\"dataSet\":\"ZRX418MEAS/LLN0$dsRms\",\"confRev\":1,\"subSqNum\":0,"));
    EXPECT_TRUE(contains(reasons.err, "does not take bufOvfl,entryID in its OptFlds")) << reasons.err;
    EXPECT_TRUE(isFree(unbuffered));
    const RunResult list = client(*server, {"reports", unbuffered});
    EXPECT_TRUE(
        contains(squeezed(list.out), unbuffered + "[RP] free ZRX418MEAS/LLN0$dsRms MEAS/urcbRms01 gi "))
        << list.out;
}

TEST_F(ReportClient, ChangesOfTwoBlocksArriveAsTheyHappenUntilASignal) {
    Process follower;
    start(follower,
          arguments(*server, {"--json", "report", buffered, unbuffered, "--trgops", "dchg", "--purge"}));
    EXPECT_EQ(waitExit(follower), 2);
    EXPECT_TRUE(contains(errors(follower), unbuffered + "[RP] is unbuffered")) << errors(follower);

    Process both;
    start(both, arguments(*server, {"--json", "report", buffered, unbuffered, "--trgops", "dchg"}));
    ASSERT_TRUE(waitUntil([] { return !isFree(unbuffered) && !isFree(buffered); }));
    const RunResult second = client(*server, {"report", unbuffered});
    EXPECT_EQ(second.status, 1);
    EXPECT_TRUE(contains(second.err, unbuffered + "[RP] is in use by another client")) << second.err;
    measure(*server, 81000);
    const std::string reason = "\"reason\":[\"data-change\"],\"value\":81,\"unit\":\"kW\"";
    EXPECT_TRUE(waitUntil([&] {
        const std::string text = output(both);
        return contains(text, reason) && contains(text.substr(text.find(reason) + 1), reason);
    })) << output(both);
    EXPECT_EQ(stop(both), 0);
    EXPECT_TRUE(contains(errors(both), " of " + buffered + "[BR]; to go on: --resume ")) << errors(both);
    EXPECT_TRUE(contains(errors(both), "1 report of " + unbuffered + "[RP]\n")) << errors(both);
    EXPECT_TRUE(isFree(unbuffered) && isFree(buffered));
}

TEST_F(ReportClient, RefusalsNameTheCulprit) {
    struct Row {
        std::vector<std::string> arguments;
        int status;
        const char *message;
    };
    for (const Row &row : {
             Row{{"ZRX418MEAS/LLN0.nosuch"}, 1, "ZRX418MEAS/LLN0 has no 'nosuch'"},
             Row{{"ZRX418MEAS/MMXU1.Hz"}, 1, "ZRX418MEAS/MMXU1.Hz is no report control block"},
             Row{{unbuffered, "--buftm", "3600001"},
                 1,
                 "BufTm of ZRX418MEAS/LLN0.urcbRms01[RP] was not written: "
                 "object-value-invalid; it is 3600000 now"},
             Row{{unbuffered, "--intgpd", "4999"},
                 1,
                 "IntgPd of ZRX418MEAS/LLN0.urcbRms01[RP] was not written: "
                 "object-value-invalid; it is 5000 now"},
             Row{{unbuffered, unbuffered}, 2, "ZRX418MEAS/LLN0.urcbRms01[RP] is named twice"},
             Row{{unbuffered, "--resume", "01"}, 2, "is unbuffered"},
             Row{{unbuffered, "--trgops", "dchg", "--gi"}, 2, "have no gi"},
             Row{{buffered, "--optflds", "seqNum", "--resume", "0000000000000001@1999-01-01T00:00:00.000Z"},
                 2,
                 "needs entryID and timeStamp in the OptFlds"},
             Row{{buffered, other, "--resume", "01"}, 2, "--resume stands 1 time for 2 control blocks"},
             Row{{buffered, "--trgops", "often"}, 2, "'often' is none of dchg (data-change), qchg"},
             Row{{buffered, "--for", "nan"}, 2, "nan is no number"},
         }) {
        std::vector<std::string> words = {"report"};
        words.insert(words.end(), row.arguments.begin(), row.arguments.end());
        const RunResult result = client(*server, words);
        EXPECT_EQ(result.status, row.status) << row.message;
        EXPECT_TRUE(contains(result.err, row.message)) << result.err;
        EXPECT_TRUE(isFree(unbuffered) && isFree(buffered)) << row.message;
    }
    EXPECT_TRUE(contains(client(*server, {"report", "--help"}).out, "qchg (quality-change), "));
}

TEST(ReportClientResume, TakesAnEntryForEachBlock) {
    ServerProcess server(options());
    prepare(server);
    const auto both = [&](const std::string &first, const std::string &second, const char *end,
                          const char *value) {
        return client(server, {"report", buffered, other, "--resume", first, "--resume", second, end, value});
    };
    const RunResult none = client(server, {"report", buffered, other, "--for", "0.1"});
    EXPECT_TRUE(none.out.starts_with("no reports of " + buffered)) << none.out;
    const std::string oldest = resumeText(none.out);
    EXPECT_EQ(oldest, "0000000000000000");
    EXPECT_EQ(resumeText(none.out, other), oldest);
    EXPECT_EQ(both(oldest, oldest, "--for", "0.1").err, "");
    for (const float watts : {1000.0F, 2000.0F, 3000.0F}) {
        measure(server, watts);
    }
    const RunResult all = both(oldest, oldest, "--count", "6");
    EXPECT_EQ(entriesOf(all.out) + " " + entriesOf(all.out, other), "123 123") << all.out;
    measure(server, 4000);
    const RunResult two = client(server, {"report", other, "--resume", oldest, "--count", "2"});
    const RunResult rest = both(resumeText(all.out), resumeText(two.out, other), "--count", "3");
    EXPECT_EQ(entriesOf(rest.out) + " " + entriesOf(rest.out, other), "4 34") << rest.out << rest.err;
    EXPECT_EQ(rest.err, "");
    EXPECT_EQ(stop(server.process), 0);
}

TEST(ReportClientResume, GoesOnBehindTheLastEntryButNotInTheBufferOfAnotherStart) {
    const auto resumed = [](const ServerProcess &server, const std::string &entry, const char *count) {
        return client(server, {"report", buffered, "--count", count, "--resume", entry});
    };
    std::string known;
    {
        ServerProcess first(options());
        prepare(first);
        measure(first, 1000);
        measure(first, 2000);
        const RunResult two = client(first, {"report", buffered, "--count", "2"});
        EXPECT_EQ(entriesOf(two.out), "12") << two.out;
        known = resumeText(two.out);
        ASSERT_TRUE(known.starts_with("0000000000000002@")) << two.out;
        measure(first, 3000);
        measure(first, 4000);
        const RunResult rest = resumed(first, known, "2");
        EXPECT_EQ(entriesOf(rest.out), "34") << rest.out << rest.err;
        EXPECT_EQ(rest.err, "");
        EXPECT_EQ(entriesOf(resumed(first, known, "2").out), "34");

        measure(first, 5000); // entry 1 goes, so that 2 is the oldest
        EXPECT_EQ(entriesOf(resumed(first, known, "3").out), "345");
        measure(first, 6000); // and then 2 itself
        const RunResult lost = resumed(first, known, "4");
        EXPECT_EQ(entriesOf(lost.out), "3456") << lost.out;
        EXPECT_TRUE(contains(lost.out, "! buffer overflow")) << lost.out;
        EXPECT_TRUE(contains(lost.err, "holds the entry " + known + " no longer")) << lost.err;

        Process follower;
        start(follower, arguments(first, {"report", buffered}));
        ASSERT_TRUE(waitUntil([&] {
            return contains(client(first, {"reports", buffered}).out, "  enabled  ");
        }));
        EXPECT_EQ(stop(first.process), 0);
        EXPECT_EQ(waitExit(follower), 3);
        EXPECT_TRUE(contains(errors(follower), "connection lost: ")) << errors(follower);
        EXPECT_TRUE(contains(output(follower), " of " + buffered)) << output(follower);
    }
    ServerProcess again(options());
    prepare(again);
    measure(again, 10000);
    measure(again, 20000);
    measure(again, 30000);
    const RunResult other = resumed(again, known, "3"); // an entry of this number is there, but a new one
    EXPECT_EQ(entriesOf(other.out), "123") << other.out;
    EXPECT_TRUE(contains(other.err, "holds the entry " + known + " no longer")) << other.err;
    EXPECT_EQ(stop(again.process), 0);
}
