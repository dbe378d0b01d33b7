// CPU time of the server for a Read, against echo servers that move the same octets in the same
// frames; what each further leaf costs; private memory after start. Everything runs on this host over
// loopback: the client on one CPU, the servers in turn on another, each a process of its own.
//
// Prints a row a figure, its fields parted by tabs: what, measured, held against, ratio, aim.
#include "bench/echoServer.h"
#include "bench/processFigures.h"
#include "tests/support/rawMms.h"
#include "tests/support/serverProcess.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>

namespace ied::bench {
namespace {

using namespace ied::test;

constexpr int clientCpu = 0, serverCpu = 1;
constexpr int listLeaves = 50;
constexpr const char *domain = "ZRX418MEAS";
constexpr const char *leafItem = "MMXU1$MX$TotW$mag$f";
constexpr double furtherLeafAim = 1.0 / 40;

int fromEnvironment(const char *name, int otherwise) {
    const char *text = std::getenv(name);
    return text == nullptr ? otherwise : std::atoi(text);
}

// A Read of one variable `times` times.
std::string readList(const std::string &item, int times) {
    const std::string variable = tlv("30", tlv("A0", objectName(domain, item)));
    std::string variables;
    for (int i = 0; i < times; ++i)
        variables += variable;
    return confirmedRequest(1, tlv("A4", tlv("A1", tlv("A0", variables))));
}

// Primitive values below an element of a hex text, which ends behind it.
int primitives(const std::string &text, std::size_t &at) {
    const unsigned tag = static_cast<unsigned>(std::stoul(text.substr(at, 2), nullptr, 16));
    std::size_t length = std::stoul(text.substr(at + 2, 2), nullptr, 16);
    at += 4;
    if (length >= 0x80) {
        const std::size_t digits = 2 * (length - 0x80);
        length = std::stoul(text.substr(at, digits), nullptr, 16);
        at += digits;
    }
    const std::size_t end = at + 2 * length;
    int count = (tag & 0x20U) == 0 ? 1 : 0;
    while ((tag & 0x20U) != 0 && at < end)
        count += primitives(text, at);
    at = end;
    return count;
}

// Values of a Read response, its invoke id apart.
int leavesOf(const std::vector<std::string> &frames) {
    std::vector<std::string> texts;
    for (const std::string &frame : frames)
        texts.push_back(hex(frame));
    const std::optional<std::string> pdu = mmsOf(texts);
    std::size_t at = 0;
    if (!pdu || !pdu->starts_with("A1"))
        throw std::runtime_error("no answer to a Read");
    return primitives(*pdu, at) - 1;
}

// One end of a conversation in which the same request is asked again and again.
struct Peer {
    RawClient client;
    pid_t process = -1;
    pid_t thread = -1;
    std::vector<double> nsPerRequest; // one of each round
    double median() {
        std::sort(nsPerRequest.begin(), nsPerRequest.end());
        return nsPerRequest[nsPerRequest.size() / 2];
    }
};

std::vector<std::string> exchangeOnce(RawClient &client, const std::string &request) {
    std::vector<std::string> frames;
    sendOctets(client, request);
    do {
        const std::optional<std::string> frame = receiveFrame(client);
        if (!frame)
            throw std::runtime_error("no answer");
        frames.push_back(octets(*frame));
    } while (frames.back()[6] == 0);
    return frames;
}

void receiveAnswer(const RawClient &client, std::string &room) {
    if (recv(client.socket, room.data(), room.size(), MSG_WAITALL) != static_cast<ssize_t>(room.size()))
        throw std::runtime_error("an answer is missing");
}

void round(Peer &peer, const Exchange &exchange, const std::string &request, int requests) {
    std::string answer;
    for (const std::string &frame : exchange.frames)
        answer += frame;
    const auto settle = [] { std::this_thread::sleep_for(Milliseconds{3}); };
    settle();
    const std::uint64_t before = cpuNs(peer.process, peer.thread);
    for (int i = 0; i < requests; ++i) {
        sendOctets(peer.client, request);
        receiveAnswer(peer.client, answer);
    }
    settle();
    peer.nsPerRequest.push_back(static_cast<double>(cpuNs(peer.process, peer.thread) - before) / requests);
}

struct Case {
    const char *name;
    std::string item;
    int times;
    double aim; // greatest ratio to the echo of the same calls; 0: none
};

struct Result {
    double server, paced, bare;
    int leaves;
};

// Server and echo servers take turns, so that what else the host does meets all alike.
Result measure(Peer &own, const Case &c) {
    const int rounds = fromEnvironment("IED_BENCH_ROUNDS", 15);
    const int requests = fromEnvironment("IED_BENCH_REQUESTS", 200);
    const std::string request = octets(dataFrame(readList(c.item, c.times)));
    const Exchange exchange{request.size(), exchangeOnce(own.client, request)};
    const EchoServer pacedServer(EchoKind::paced, exchange), bareServer(EchoKind::bare, exchange);
    Peer paced, bare;
    paced.process = paced.thread = pacedServer.pid;
    bare.process = bare.thread = bareServer.pid;
    connectTo(paced.client, pacedServer.port);
    connectTo(bare.client, bareServer.port);
    for (Peer *peer : {&own, &paced, &bare}) {
        bindTo(peer->thread, serverCpu);
        round(*peer, exchange, request, requests / 4);
        peer->nsPerRequest.clear();
    }
    for (int i = 0; i < rounds; ++i)
        for (Peer *peer : {&own, &paced, &bare})
            round(*peer, exchange, request, requests);
    const Result result{own.median(), paced.median(), bare.median(), leavesOf(exchange.frames)};
    std::printf(
        "Read of %s (%zu octets, answer of %zu frames, %d leaves)\t%.1f us\t%.1f us paced echo\t%.2f\t",
        c.name, request.size(), exchange.frames.size(), result.leaves, result.server / 1e3,
        result.paced / 1e3, result.server / result.paced);
    std::printf(c.aim > 0 ? "%.2f\n" : "\n", c.aim);
    std::printf("the same\t%.1f us\t%.1f us bare echo\t%.2f\t\n", result.server / 1e3, result.bare / 1e3,
                result.server / result.bare);
    std::fflush(stdout);
    return result;
}

void printFurtherLeaf(const char *what, const Result &one, const Result &many) {
    const double each = (many.server - one.server) / (many.leaves - one.leaves);
    std::printf("further leaf of %s\t%.0f ns\t%.1f us single leaf\t%.4f\t%.4f\n", what, each,
                one.server / 1e3, each / one.server, furtherLeafAim);
}

void printMemory(const ServerProcess &server) {
    constexpr double mib = 1024.0 * 1024.0;
    const PrivateMemory memory = privateMemory(server.process.pid);
    std::printf("private memory after start\t%.1f MiB\tthe region's pages apart: %.1f MiB\t\t40 MiB\n",
                static_cast<double>(memory.own) / mib, static_cast<double>(memory.region) / mib);
}

void run() {
    ServerProcess server(ServerOptions{"", {"tickRate=1000"}, {}, true});
    if (!startServer(server))
        throw std::runtime_error("no server");
    std::this_thread::sleep_for(std::chrono::seconds{1}); // the first refresh
    printMemory(server);
    Peer own;
    if (!associate(own.client, server.port))
        throw std::runtime_error("the server does not associate");
    own.process = server.process.pid;
    own.thread = threadNamed(own.process, "t61850Client0");
    bindTo(0, clientCpu);
    const Result leaf = measure(own, {"one leaf", leafItem, 1, 1.25});
    const Result wye = measure(own, {"a WYE object", "MMXU1$MX$PhV", 1, 0});
    const Result node = measure(own, {"a logical node, MMXU1", "MMXU1", 1, 0});
    const Result list = measure(own, {"a list", leafItem, listLeaves, 0});
    printFurtherLeaf("a WYE object", leaf, wye);
    printFurtherLeaf("a logical node", leaf, node);
    printFurtherLeaf("a list", leaf, list);
    stop(server.process);
}

} // namespace
} // namespace ied::bench

int main() {
    try {
        ied::bench::run();
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "read_bench: %s\n", failure.what());
        return 1;
    }
    return 0;
}
