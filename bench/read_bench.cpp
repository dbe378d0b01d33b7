// CPU time of the server for a Read, against echo servers that move the same octets in the same
// frames; what each further leaf costs; private memory after start. Everything runs on this host over
// loopback: the client on one CPU, the servers in turn on another, each a process of its own.
//
// Prints a row a figure, its fields parted by tabs: what, measured, held against, ratio, bound.
#include "bench/driver.h"
#include "bench/echoServer.h"
#include "bench/processFigures.h"
#include "tests/support/rawMms.h"
#include "tests/support/serverProcess.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <sys/socket.h>
#include <thread>

namespace ied::bench {
namespace {

using namespace ied::test;

constexpr int clientCpu = 0, serverCpu = 1;
constexpr std::size_t listLeaves = 50;
constexpr const char *domain = "ZRX418MEAS";
constexpr const char *leafItem = "MMXU1$MX$TotW$mag$f";

int fromEnvironment(const char *name, int otherwise) {
    const char *text = std::getenv(name);
    return text == nullptr ? otherwise : std::atoi(text);
}

// A Read of these variables of one device.
std::string readOf(const std::vector<std::string> &items) {
    std::string variables;
    for (const std::string &item : items) {
        variables += tlv("30", tlv("A0", objectName(domain, item)));
    }
    return confirmedRequest(1, tlv("A4", tlv("A1", tlv("A0", variables))));
}

// Contents of the primitive values at the front of a hex text, which gets shorter by their element.
void takePrimitives(std::string_view &text, std::vector<std::string> &values) {
    const auto number = [&text](std::size_t digits) {
        const std::size_t value = std::stoul(std::string(text.substr(0, digits)), nullptr, 16);
        text.remove_prefix(digits);
        return value;
    };
    const bool constructed = (number(2) & 0x20U) != 0;
    std::size_t length = number(2);
    if (length >= 0x80) {
        length = number(2 * (length - 0x80));
    }
    std::string_view content = text.substr(0, 2 * length);
    text.remove_prefix(2 * length);
    if (!constructed) {
        values.push_back(characters(content));
    }
    while (constructed && !content.empty()) {
        takePrimitives(content, values);
    }
}

// Values that a confirmed response holds behind its invoke id.
std::vector<std::string> valuesOf(const std::optional<std::string> &response) {
    if (!response || !response->starts_with("A1")) {
        throw std::runtime_error("no answer");
    }
    std::vector<std::string> values;
    std::string_view text = *response;
    takePrimitives(text, values);
    values.erase(values.begin());
    return values;
}

// All names of variables of the device, page by page.
std::vector<std::string> variableNames(RawClient &client) {
    const std::string noMore(1, '\0'); // moreFollows FALSE behind the last page
    std::vector<std::string> names;
    do {
        const std::string after = names.empty() ? "" : names.back();
        for (std::string &name : valuesOf(ask(client, getNameList(1, 0, domain, after)))) {
            names.push_back(std::move(name));
        }
    } while (names.back() != noMore);
    return names;
}

// Measured floats of the device, `count` of them from all over it.
std::vector<std::string> measuredLeaves(RawClient &client, std::size_t count) {
    std::vector<std::string> all, chosen;
    for (const std::string &name : variableNames(client)) {
        if (name.find("$MX$") != std::string::npos && name.ends_with("$f")) {
            all.push_back(name);
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        chosen.push_back(all.at(i * all.size() / count));
    }
    return chosen;
}

using Rounds = std::vector<double>;

double median(Rounds values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// What holds for a pair of figures of the same round.
template <class F> double medianOf(const Rounds &a, const Rounds &b, F figure) {
    Rounds all;
    for (std::size_t i = 0; i < a.size(); ++i) {
        all.push_back(figure(a[i], b[i]));
    }
    return median(all);
}

double ratio(const Rounds &a, const Rounds &b) {
    return medianOf(a, b, std::divides<>{});
}

// The serving end of a connection, and what it spent: nanoseconds of CPU a request, one of each round.
struct Peer {
    pid_t process = -1;
    pid_t thread = -1;
    Rounds spent;
};

// One request, answered by the server and by an echo server of each kind.
struct Case {
    const char *name;
    std::vector<u8> request;
    Exchange exchange;
    int leaves;
    Peer server, paced, bare;
    RawClient pacedClient, bareClient;
    std::unique_ptr<EchoServer> pacedServer, bareServer;
};

std::vector<std::vector<u8>> exchangeOnce(RawClient &client, const std::vector<u8> &request) {
    std::vector<std::vector<u8>> frames;
    sendOctets(client, request);
    do {
        const std::optional<std::string> frame = receiveFrame(client);
        if (!frame) {
            throw std::runtime_error("no answer");
        }
        frames.push_back(octets(*frame));
    } while (frames.back()[6] == 0); // more of the TSDU follows
    return frames;
}

void startEcho(EchoKind kind, const Exchange &exchange, std::unique_ptr<EchoServer> &server,
               RawClient &client, Peer &peer) {
    server = std::make_unique<EchoServer>(kind, exchange);
    connectTo(client, server->port);
    peer.process = peer.thread = server->pid;
    bindTo(peer.thread, serverCpu);
}

void prepare(Case &c, const Peer &server, RawClient &client, const char *name,
             const std::vector<std::string> &items) {
    const std::string pdu = readOf(items);
    c.name = name;
    c.request = octets(dataFrame(pdu));
    c.exchange = {c.request.size(), exchangeOnce(client, c.request)};
    c.leaves = static_cast<int>(valuesOf(ask(client, pdu)).size());
    c.server = server;
    startEcho(EchoKind::paced, c.exchange, c.pacedServer, c.pacedClient, c.paced);
    startEcho(EchoKind::bare, c.exchange, c.bareServer, c.bareClient, c.bare);
}

void askRepeatedly(Peer &peer, const RawClient &client, const Case &c, int requests) {
    std::vector<u8> answer;
    for (const std::vector<u8> &frame : c.exchange.frames) {
        answer.insert(answer.end(), frame.begin(), frame.end());
    }
    const auto settle = [] { std::this_thread::sleep_for(Milliseconds{3}); };
    settle();
    const std::uint64_t before = cpuNs(peer.process, peer.thread);
    for (int i = 0; i < requests; ++i) {
        if (send(client.socket, c.request.data(), c.request.size(), MSG_NOSIGNAL) < 0 ||
            recv(client.socket, answer.data(), answer.size(), MSG_WAITALL) !=
                static_cast<ssize_t>(answer.size())) {
            throw std::runtime_error("an answer is missing");
        }
    }
    settle();
    peer.spent.push_back(static_cast<double>(cpuNs(peer.process, peer.thread) - before) / requests);
}

// Cases and servers take turns, so that what else the host does meets all alike.
void measure(std::array<Case, 4> &cases, const RawClient &client) {
    const int rounds = fromEnvironment("IED_BENCH_ROUNDS", 21);
    const int requests = fromEnvironment("IED_BENCH_REQUESTS", 200);
    for (int i = 0; i < rounds; ++i) {
        for (Case &c : cases) {
            askRepeatedly(c.server, client, c, requests);
            askRepeatedly(c.paced, c.pacedClient, c, requests);
            askRepeatedly(c.bare, c.bareClient, c, requests);
        }
    }
}

void printCase(const Case &c, double bound) {
    std::size_t answer = 0;
    for (const std::vector<u8> &frame : c.exchange.frames) {
        answer += frame.size();
    }
    const Rounds &server = c.server.spent, &paced = c.paced.spent, &bare = c.bare.spent;
    std::printf("Read of %s: %zu octets, %zu in %zu frames, leaves: %d\t%.1f us\t%.1f us, echo with the same "
                "calls\t%.2f\t",
                c.name, c.request.size(), answer, c.exchange.frames.size(), c.leaves, median(server) / 1e3,
                median(paced) / 1e3, ratio(server, paced));
    std::printf(bound > 0 ? "%.2f\n" : "\n", bound);
    std::printf("the same\t%.1f us\t%.1f us, bare echo\t%.2f\t\n", median(server) / 1e3, median(bare) / 1e3,
                ratio(server, bare));
}

void printFurtherLeaf(const Case &one, const Case &many) {
    const double leaves = many.leaves - one.leaves;
    const Rounds &single = one.server.spent, &whole = many.server.spent;
    const double each = medianOf(whole, single, std::minus<>{}) / leaves;
    std::printf("each further leaf of %s\t%.0f ns\t%.1f us, a single leaf\t1/%.0f\t1/40\n", many.name, each,
                median(single) / 1e3, median(single) / each);
}

void run() {
    ServerProcess server(ServerOptions{"", {"tickRate=1000"}, {}, true});
    if (!startServer(server)) {
        throw std::runtime_error("no server");
    }
    std::this_thread::sleep_for(std::chrono::seconds{1}); // the first refresh
    std::printf("private memory after start\t%.1f MiB\t\t\t40 MiB\n",
                static_cast<double>(privateOctets(server.process.pid)) / (1024.0 * 1024.0));
    RawClient client;
    if (!associate(client, server.port)) {
        throw std::runtime_error("the server does not associate");
    }
    Peer own{server.process.pid, threadNamed(server.process.pid, "t61850Client0"), {}};
    bindTo(own.thread, serverCpu);
    std::array<Case, 4> cases;
    auto &[leaf, object, node, list] = cases;
    prepare(leaf, own, client, "one leaf", {leafItem});
    prepare(object, own, client, "a WYE object", {"MMXU1$MX$PhV"});
    prepare(node, own, client, "a logical node", {"MMXU1"});
    prepare(list, own, client, "a list", measuredLeaves(client, listLeaves));
    bindTo(0, clientCpu);
    measure(cases, client);
    printCase(leaf, 1.25);
    for (const Case *many : {&object, &node, &list}) {
        printCase(*many, 0);
        printFurtherLeaf(leaf, *many);
    }
    stop(server.process);
}

} // namespace
} // namespace ied::bench

int main() {
    return ied::bench::drive("read_bench", ied::bench::run);
}
