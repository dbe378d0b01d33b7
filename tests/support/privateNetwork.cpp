#include "tests/support/privateNetwork.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ied::test {

namespace {

constexpr const char *nearAddress = "192.0.2.1"; // RFC 5737, TEST-NET-1
constexpr const char *farAddress = "192.0.2.2";

int present() {
    return open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC);
}

// "" or what the command had to say.
std::string ip(const std::vector<std::string> &arguments) {
    std::vector<std::string> all = {"/usr/bin/env", "ip"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const RunResult result = run(all, {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"});
    return result.status == 0 ? "" : "ip " + arguments.front() + ": " + result.err;
}

} // namespace

PrivateNetwork::PrivateNetwork() : host(present()) {
    if (host < 0 || unshare(CLONE_NEWNET) != 0 || (far = present()) < 0 || unshare(CLONE_NEWNET) != 0 ||
        (near = present()) < 0) {
        fault = std::string("no network namespace: ") + std::strerror(errno);
        return;
    }
    const std::string farPath = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(far);
    const std::vector<std::vector<std::string>> nearSide = {
        {"link", "set", "lo", "up"},
        {"link", "add", "near", "type", "veth", "peer", "name", "far", "netns", farPath},
        {"address", "add", std::string(nearAddress) + "/24", "dev", "near"},
        {"link", "set", "near", "up"}};
    const std::vector<std::vector<std::string>> farSide = {
        {"address", "add", std::string(farAddress) + "/24", "dev", "far"}, {"link", "set", "far", "up"}};
    for (const auto &command : nearSide) {
        fault += ip(command);
    }
    setns(far, CLONE_NEWNET);
    for (const auto &command : farSide) {
        fault += ip(command);
    }
    setns(near, CLONE_NEWNET);
}

PrivateNetwork::~PrivateNetwork() {
    if (host >= 0) {
        setns(host, CLONE_NEWNET);
    }
    for (const int fd : {host, near, far}) {
        if (fd >= 0) {
            close(fd);
        }
    }
}

bool PrivateNetwork::connectFromAfar(RawClient &client, std::uint16_t port) {
    setns(far, CLONE_NEWNET); // a socket stays in the network in which it was made
    client.socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    setns(near, CLONE_NEWNET);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    inet_pton(AF_INET, nearAddress, &address.sin_addr);
    const int on = 1;
    setsockopt(client.socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return connect(client.socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

bool PrivateNetwork::cut() {
    setns(far, CLONE_NEWNET);
    const std::string said = ip({"link", "set", "far", "down"});
    setns(near, CLONE_NEWNET);
    return said.empty();
}

} // namespace ied::test
