// From an entry of a ring in the instrument's region to the report on the client's socket: how long an
// event takes, and how many in a second pass without loss. The real server with ticks of a millisecond;
// the bench is instrument and client.
//
// Prints a row a figure, its fields parted by tabs: what, measured, held against, ratio, bound.
#include "bench/driver.h"
#include "tests/support/reports.h"
#include "tests/support/ringEvents.h"
#include "tests/support/serverProcess.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>
#include <random>
#include <stdexcept>
#include <thread>

namespace ied::bench {
namespace {

using namespace ied::test;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// 10 ticks of the refresh, then 10 of the report task.
constexpr double pacingMs = 20;
constexpr double graceMs = 2;
constexpr double seconds = 6; // of each try of a rate

struct Source {
    const Ring *ring;
    const char *block;
    u32 next = 0; // number of its next entry
    u32 state = 0;
};

struct Bench {
    ServerProcess server{ServerOptions{"", {"tickRate=1000"}, {}, true}};
    RawClient client;
    std::array<Source, 3> sources{{{&inputRing, "ZRX418STEV/LLN0$BR$brcbInd01"},
                                   {&outputRing, "ZRX418CTRL/LLN0$BR$brcbOut01"},
                                   {&setpointRing, "ZRX418STEV/LLN0$BR$brcbAlm01"}}};

    void addEntry(Source &source) { addState(server.region, *source.ring, source.next++, &source.state); }
    void set(const Source &source, const char *attribute, const char *value) {
        if (!writeAttribute(client, source.block, attribute, value)) {
            throw std::runtime_error(std::string(source.block) + ": " + attribute + " is refused");
        }
    }
    // From an empty buffer on.
    void enable(const Source &source) {
        set(source, "RptEna", "830100");
        set(source, "BufTm", "860100");
        set(source, "PurgeBuf", "830101");
        set(source, "RptEna", "830101");
    }
};

Report nextReport(Bench &bench) {
    std::optional<Report> report = receiveReport(bench.client);
    if (!report) {
        throw std::runtime_error("a report is missing");
    }
    return *report;
}

void printLatency(Bench &bench) {
    constexpr int events = 500;
    Source &inputs = bench.sources[0];
    bench.enable(inputs);
    std::minstd_rand random; // moments that keep no step with the server's rounds
    std::vector<double> ms;
    for (int i = 0; i < events; i++) {
        std::this_thread::sleep_for(std::chrono::microseconds(25000 + random() % 15000));
        const Clock::time_point start = Clock::now();
        bench.addEntry(inputs);
        nextReport(bench);
        ms.push_back(Seconds(Clock::now() - start).count() * 1e3);
    }
    std::sort(ms.begin(), ms.end());
    const auto row = [&](const char *what, double part, double bound) {
        const double figure = ms[static_cast<std::size_t>(part * (events - 1))];
        std::printf("event to report, %s\t%.1f ms\t%.0f ms, the pacing\t%.2f\t", what, figure, pacingMs,
                    figure / pacingMs);
        std::printf(bound > 0 ? "%.2f\n" : "\n", bound);
    };
    row("quickest", 0, 0);
    row("median", 0.5, 0);
    row("99 of 100", 0.99, (pacingMs + graceMs) / pacingMs);
    row("slowest", 1, 0);
}

// Whether each of the sources can have so many entries a second and every one arrives.
bool passes(Bench &bench, double rate) {
    const auto entries = static_cast<u32>(rate * seconds);
    for (const Source &source : bench.sources) {
        bench.enable(source);
    }
    std::thread instrument([&] {
        const Clock::time_point start = Clock::now();
        for (u32 i = 0; i < entries; i++) {
            std::this_thread::sleep_until(start +
                                          std::chrono::duration_cast<Clock::duration>(Seconds(i / rate)));
            for (Source &source : bench.sources) {
                bench.addEntry(source);
            }
        }
    });
    std::size_t arrived = 0;
    bool lost = false;
    while (arrived < bench.sources.size() * entries) {
        const std::optional<Report> report = receiveReport(bench.client, Milliseconds(1000));
        if (!report) {
            break;
        }
        lost = lost || report->bufOvfl.value_or(true);
        arrived += report->values.size();
    }
    instrument.join();
    return !lost && arrived == bench.sources.size() * entries;
}

void printRate(Bench &bench) {
    double most = 0;
    for (double step = 64; step >= 4; step /= 2) {
        if (passes(bench, most + step)) {
            most += step;
        }
    }
    std::printf("events in a second without loss for %.0f s, of each block\t%.0f\t%.0f, one report in 10 "
                "ticks\t%.2f\t\n",
                seconds, most, 100.0, most / 100);
}

void run() {
    Bench bench;
    if (!startServer(bench.server)) {
        throw std::runtime_error("no server");
    }
    if (!associate(bench.client, bench.server.port)) {
        throw std::runtime_error("the server does not associate");
    }
    printLatency(bench);
    printRate(bench);
    stop(bench.server.process);
}

} // namespace
} // namespace ied::bench

int main() {
    return ied::bench::drive("event_bench", ied::bench::run);
}
