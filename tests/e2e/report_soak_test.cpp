// Ring entries without pause while eight clients are subscribed: every entry of every block reaches
// the clients that read once and in order, whatever the others do.
#include "tests/support/reports.h"
#include "tests/support/ringEvents.h"
#include "tests/support/serverFixture.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace ied::test;
using ied::u16;
using ied::u32;
using ied::u8;

namespace {

constexpr Ring rings[] = {inputRing, outputRing, setpointRing, logicRing};

// Blocks that the rings feed, without the number of the instance, and the entries for one of a ring.
struct Block {
    const char *name;
    std::vector<std::size_t> ringsOf; // index into `rings`, 4 for the log of voltage events
};
const Block blocks[] = {
    {"ZRX418STEV/LLN0$BR$brcbInd", {0, 3}},
    {"ZRX418CTRL/LLN0$BR$brcbOut", {1}},
    {"ZRX418STEV/LLN0$BR$brcbAlm", {2}},
    {"ZRX418STEV/LLN0$BR$brcbVar", {4}},
};
constexpr std::size_t pqRing = 4;

std::string instance(const Block &block, std::size_t client) {
    return block.name + std::string("0") + std::to_string(client + 1);
}

// What one client has got of one block.
struct Received {
    std::uint64_t lastId = 0;
    u32 entries = 0;
    std::array<u32, 5> ofRing{}; // numbers of the next entries
    std::string fault;           // the first one
};

void note(Received *got, const std::string &fault) {
    if (got->fault.empty()) {
        got->fault = fault;
    }
}

// Seconds of the times in the values of a report, in its order.
std::vector<u32> secondsIn(const Report &report) {
    std::vector<u32> seconds;
    for (const std::string &value : report.values) {
        const std::size_t at = value.rfind("9108");
        if (at != std::string::npos && at + 12 <= value.size()) {
            seconds.push_back(static_cast<u32>(std::stoul(value.substr(at + 4, 8), nullptr, 16)));
        }
    }
    return seconds;
}

// Holds a report of a block against those before it.
void take(const Block &block, Received *got, const Report &report) {
    if (!report.entryId || *report.entryId != got->lastId + 1) {
        note(got, "entry " + std::to_string(report.entryId.value_or(0)) + " behind " +
                      std::to_string(got->lastId));
    }
    if (report.bufOvfl.value_or(true)) {
        note(got, "overflow at entry " + std::to_string(report.entryId.value_or(0)));
    }
    got->lastId = report.entryId.value_or(0);
    got->entries++;
    if (block.ringsOf.front() == pqRing) {
        return;
    }
    if (report.values.size() != 1) {
        return note(got, std::to_string(report.values.size()) + " members in one entry");
    }
    const std::size_t inputs = 8; // members of the block of inputs and logic before the logic
    const auto member =
        static_cast<std::size_t>(std::ranges::find(report.included, true) - report.included.begin());
    const std::size_t ring =
        block.ringsOf.size() == 1 || member < inputs ? block.ringsOf[0] : block.ringsOf[1];
    const std::vector<u32> seconds = secondsIn(report);
    if (seconds.size() != 1 || seconds[0] != firstRingSecond + got->ofRing[ring]) {
        note(got, "not the entry " + std::to_string(got->ofRing[ring]) + " of its ring");
    }
    got->ofRing[ring]++;
}

// One subscribed client and what it got.
struct Subscriber {
    std::size_t number = 0;
    RawClient client;
    std::array<Received, std::size(blocks)> got;

    void connect(std::uint16_t port) { ASSERT_TRUE(associate(client, port)); }

    void enable(const Block &block) {
        EXPECT_TRUE(writeAttribute(client, instance(block, number), "RptEna", "830101")) << number;
    }
    void subscribe(std::uint16_t port) {
        connect(port);
        for (const Block &block : blocks) {
            EXPECT_TRUE(writeAttribute(client, instance(block, number), "BufTm", "860100"));
            EXPECT_TRUE(writeAttribute(client, instance(block, number), "PurgeBuf", "830101"));
            enable(block);
        }
    }
    void accept(const Report &report) {
        for (std::size_t i = 0; i < std::size(blocks); i++) {
            const std::string name = instance(blocks[i], number);
            if (report.rptId.ends_with(ascii(name.substr(name.rfind('$') + 1)))) {
                take(blocks[i], &got[i], report);
            }
        }
    }
    u32 total() const {
        u32 sum = 0;
        for (const Received &received : got) {
            sum += received.entries;
        }
        return sum;
    }
};

struct Plan {
    u32 entries;       // of each ring
    Milliseconds pace; // from one to the next
    std::uint16_t port = 0;
    std::atomic<bool> done = false;
    std::uint64_t memoryEarly = 0; // private octets of the server, all clients at work
    std::uint64_t memoryLate = 0;
};

u32 expectedTotal(const Plan &plan) {
    return plan.entries * (static_cast<u32>(std::size(rings)) + 2);
}

void readAll(Subscriber *subscriber, const Plan *plan) {
    while (subscriber->total() < expectedTotal(*plan)) {
        const auto report = receiveReport(subscriber->client);
        if (!report) {
            ADD_FAILURE() << "client " << subscriber->number << " has " << subscriber->total() << " of "
                          << expectedTotal(*plan);
            return;
        }
        subscriber->accept(*report);
    }
}

// Writes again until the slot of a client that has gone no longer owns the block.
bool writeWhenFree(Subscriber *subscriber, const std::string &block, const char *attribute,
                   const std::string &data, std::vector<Report> *reports = nullptr) {
    return waitUntil([&] { return writeAttribute(subscriber->client, block, attribute, data, reports); });
}

// Reads for a while, vanishes, comes back and goes on behind the last entry that it had.
void vanishAndResume(Subscriber *subscriber, const Plan *plan) {
    while (subscriber->total() < expectedTotal(*plan) / 3) {
        const auto report = receiveReport(subscriber->client);
        ASSERT_TRUE(report);
        subscriber->accept(*report);
    }
    vanish(subscriber->client);
    subscriber->client = RawClient();
    subscriber->connect(plan->port);
    for (std::size_t i = 0; i < std::size(blocks); i++) {
        const std::string block = instance(blocks[i], subscriber->number);
        const std::string id =
            subscriber->got[i].lastId == 0 ? "" : tlv("89", hexNumber(subscriber->got[i].lastId, 8));
        std::vector<Report> early;
        EXPECT_TRUE(id.empty() || writeWhenFree(subscriber, block, "EntryID", id, &early)) << block;
        EXPECT_TRUE(writeWhenFree(subscriber, block, "RptEna", "830101", &early)) << block;
        for (const Report &report : early) {
            subscriber->accept(report);
        }
    }
    readAll(subscriber, plan);
}

// Enables and disables a block without pause. Each entry still comes once and in order.
void switchOnAndOff(Subscriber *subscriber, const Plan *plan) {
    const std::string block = instance(blocks[0], subscriber->number);
    std::vector<Report> reports;
    const auto acceptAll = [&] {
        for (const Report &report : reports) {
            subscriber->accept(report);
        }
        reports.clear();
    };
    while (!plan->done) {
        EXPECT_TRUE(writeAttribute(subscriber->client, block, "RptEna", "830100", &reports));
        EXPECT_TRUE(writeAttribute(subscriber->client, block, "RptEna", "830101", &reports));
        acceptAll();
    }
    readAll(subscriber, plan);
}

// Asks for more and more, and reads nothing of it.
void neverRead(Subscriber *subscriber, const Plan *plan) {
    const std::string harmonics = "LLN0$RP$urcbHarm0" + std::to_string(subscriber->number + 1);
    sendHex(subscriber->client, dataFrame(write(1, "ZRX418MEAS", harmonics + "$RptEna", "830101")));
    const std::string ask = dataFrame(write(1, "ZRX418MEAS", harmonics + "$GI", "830101"));
    while (!plan->done && sendOctets(subscriber->client, octets(ask))) {
        std::this_thread::sleep_for(Milliseconds(20));
    }
}

// After the client that never read, from the oldest entry on: of each block the newest are there, in
// order, and the first one says that older ones are lost.
void expectOnlyTheOldestLost(Subscriber *subscriber, const Plan &plan) {
    constexpr u32 leastDepth = 20, mostDepth = 100;
    for (const Block &block : blocks) {
        const std::string name = instance(block, subscriber->number);
        const u32 entries =
            plan.entries * (block.ringsOf.front() == pqRing ? 2 : static_cast<u32>(block.ringsOf.size()));
        ASSERT_TRUE(writeWhenFree(subscriber, name, "EntryID", "8908 0000000000000000")) << name;
        ASSERT_TRUE(writeAttribute(subscriber->client, name, "RptEna", "830101")) << name;
        std::uint64_t last = 0;
        u32 arrived = 0;
        while (last < entries) {
            const auto report = receiveReport(subscriber->client);
            ASSERT_TRUE(report && report->entryId) << name << " behind entry " << last;
            EXPECT_EQ(report->bufOvfl, arrived == 0 && *report->entryId != 1)
                << name << " entry " << *report->entryId;
            EXPECT_TRUE(arrived == 0 || *report->entryId == last + 1) << name << " behind entry " << last;
            last = *report->entryId;
            if (block.ringsOf.size() == 1 && block.ringsOf.front() != pqRing) {
                EXPECT_EQ(secondsIn(*report), std::vector<u32>{firstRingSecond + static_cast<u32>(last) - 1})
                    << name;
            }
            ++arrived;
        }
        EXPECT_GE(arrived, std::min(entries, leastDepth)) << name;
        EXPECT_LE(arrived, mostDepth) << name;
    }
}

void expectSteadyMemory(const Plan &plan) {
    std::printf("private memory %.1f MiB, later %.1f MiB\n", static_cast<double>(plan.memoryEarly) / 1048576,
                static_cast<double>(plan.memoryLate) / 1048576);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they keep what was freed
    constexpr std::uint64_t tolerance = 512 * 1024;                 // what the heap keeps moves
    EXPECT_LE(plan.memoryLate, plan.memoryEarly + tolerance);
#endif
}

// Eight new clients at once, each of which is served.
void expectRoomForEight(const Plan &plan) {
    std::array<Subscriber, 8> fresh;
    for (std::size_t i = 0; i < fresh.size(); i++) {
        fresh[i].number = i;
        fresh[i].connect(plan.port);
    }
    for (Subscriber &subscriber : fresh) {
        const std::string block = instance(blocks[0], subscriber.number);
        EXPECT_TRUE(writeWhenFree(&subscriber, block, "PurgeBuf", "830101"));
        EXPECT_TRUE(writeWhenFree(&subscriber, block, "RptEna", "830101"));
        EXPECT_TRUE(writeAttribute(subscriber.client, block, "GI", "830101"));
        const auto report = receiveReport(subscriber.client);
        EXPECT_TRUE(report && report->entryId == 1U) << block;
        disconnect(subscriber.client);
    }
}

void playInstrument(ServerProcess &server, Plan *plan) {
    std::array<u32, std::size(rings)> states{};
    for (u32 number = 0; number < plan->entries; number++) {
        for (std::size_t i = 0; i < std::size(rings); i++) {
            addState(server.region, rings[i], number, &states[i]);
        }
        // A transient, which is shown by two entries.
        putEvent(putsInto(server.region), number, {2, 0, firstRingSecond + number, 0, 150, 500});
        raise(server.region, 11812); // and the measurements
        std::this_thread::sleep_for(plan->pace);
        if (number == plan->entries / 3) {
            plan->memoryEarly = privateOctets(server.process.pid);
        }
    }
    plan->memoryLate = privateOctets(server.process.pid);
    plan->done = true;
}

} // namespace

TEST(ReportSoak, EveryEntryReachesThoseWhoReadOnceAndInOrder) {
    const char *wanted = std::getenv("IED_RING_ENTRIES");
    const u32 total = wanted != nullptr ? static_cast<u32>(std::strtoul(wanted, nullptr, 10)) : 1000;
    // A block gets at most two entries in 50 ticks of 1 ms.
    Plan plan{.entries = std::max<u32>(total / 5, 3), .pace = Milliseconds(50)};
    ServerProcess server({"", {"tickRate=1000", "maxSendFail=5", "dbDest=2"}, {"--debug", "2"}, true});
    ASSERT_TRUE(startServer(server));
    plan.port = server.port;
    const std::size_t idleSockets = socketCount(server.process.pid);
    const std::size_t idleDescriptors = descriptorCount(server.process.pid);

    std::array<Subscriber, 8> subscribers;
    for (std::size_t i = 0; i < subscribers.size(); i++) {
        subscribers[i].number = i;
        subscribers[i].subscribe(server.port);
    }
    std::vector<std::thread> threads;
    threads.emplace_back(neverRead, &subscribers[5], &plan);
    threads.emplace_back(vanishAndResume, &subscribers[6], &plan);
    threads.emplace_back(switchOnAndOff, &subscribers[7], &plan);
    for (std::size_t i = 0; i < 5; i++) {
        threads.emplace_back(readAll, &subscribers[i], &plan);
    }
    playInstrument(server, &plan);
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (Subscriber &subscriber : subscribers) {
        for (std::size_t i = 0; i < std::size(blocks) && subscriber.number != 5; i++) {
            EXPECT_EQ(subscriber.got[i].fault, "") << instance(blocks[i], subscriber.number);
        }
        disconnect(subscriber.client);
    }
    Subscriber successor;
    successor.number = 5;
    successor.connect(server.port);
    expectOnlyTheOldestLost(&successor, plan);
    disconnect(successor.client);
    expectRoomForEight(plan);
    expectSteadyMemory(plan);
    EXPECT_TRUE(servesHonestClient(server.port));
    EXPECT_TRUE(waitUntil([&] { return socketCount(server.process.pid) == idleSockets; }));
    EXPECT_EQ(descriptorCount(server.process.pid), idleDescriptors);
    EXPECT_EQ(stop(server.process), 0);
    std::printf("%u entries of each ring, %u reports to each client that reads\n", plan.entries,
                expectedTotal(plan));
}
