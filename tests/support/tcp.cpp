#include "tests/support/tcp.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace ied::test {

namespace {

sockaddr_in localAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// A socket bound to a free port, and that port.
int bindFree(std::uint16_t &port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = localAddress(0);
    socklen_t size = sizeof address;
    if (fd < 0 || bind(fd, reinterpret_cast<sockaddr *>(&address), size) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size) != 0) {
        throw std::runtime_error("no free port");
    }
    port = ntohs(address.sin_port);
    return fd;
}

// Octets that lie in the receive queue of the other end of a connection on this host; 0 if that end is
// gone.
unsigned long unreadAtPeer(int fd) {
    sockaddr_in own{}, other{};
    socklen_t size = sizeof own;
    getsockname(fd, reinterpret_cast<sockaddr *>(&own), &size);
    size = sizeof other;
    getpeername(fd, reinterpret_cast<sockaddr *>(&other), &size);
    char wanted[32]; // ports of the other end's entry: its local one first
    std::snprintf(wanted, sizeof wanted, ":%04X %04X", ntohs(other.sin_port), ntohs(own.sin_port));
    std::ifstream table("/proc/net/tcp");
    std::string line;
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        std::string number, local, remote, state, queues;
        fields >> number >> local >> remote >> state >> queues;
        const std::size_t colon = queues.find(':');
        if (colon != std::string::npos &&
            local.substr(local.find(':')) + " " + remote.substr(remote.find(':') + 1) == wanted) {
            return std::stoul(queues.substr(colon + 1), nullptr, 16);
        }
    }
    return 0;
}

enum class Arrival {
    some,
    none,
    end
};

// Waits for octets of the peer and appends them.
Arrival receiveSome(RawClient &client, Milliseconds limit) {
    pollfd entry{client.socket, POLLIN, 0};
    if (client.socket < 0) {
        return Arrival::end;
    }
    if (poll(&entry, 1, static_cast<int>(limit.count())) <= 0) {
        return Arrival::none;
    }
    u8 buffer[65536];
    const ssize_t count = recv(client.socket, buffer, sizeof buffer, 0);
    if (count <= 0) {
        return Arrival::end;
    }
    client.pending.insert(client.pending.end(), buffer, buffer + count);
    return Arrival::some;
}

Milliseconds left(std::chrono::steady_clock::time_point deadline) {
    const auto rest = std::chrono::duration_cast<Milliseconds>(deadline - std::chrono::steady_clock::now());
    return std::max(rest, Milliseconds{0});
}

} // namespace

std::uint16_t freePort() {
    std::uint16_t port = 0;
    close(bindFree(port));
    return port;
}

RawClient::RawClient(RawClient &&other) noexcept
    : socket(std::exchange(other.socket, -1)), pending(std::move(other.pending)) {}

RawClient &RawClient::operator=(RawClient &&other) noexcept {
    std::swap(socket, other.socket);
    std::swap(pending, other.pending);
    return *this;
}

RawClient::~RawClient() {
    disconnect(*this);
}

void connectTo(RawClient &client, std::uint16_t port, Milliseconds limit) {
    disconnect(client);
    const sockaddr_in address = localAddress(port);
    const bool connected = waitUntil(
        [&] {
            client.socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
            if (connect(client.socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) {
                return true;
            }
            close(std::exchange(client.socket, -1));
            return false;
        },
        limit);
    if (!connected) {
        throw std::runtime_error("nothing listens on port " + std::to_string(port));
    }
    const int on = 1;
    setsockopt(client.socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void disconnect(RawClient &client) {
    if (client.socket >= 0) {
        close(std::exchange(client.socket, -1));
    }
    client.pending.clear();
}

void vanish(RawClient &client) {
    const linger reset{1, 0};
    setsockopt(client.socket, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    disconnect(client);
}

bool sendOctets(RawClient &client, std::span<const u8> octets) {
    std::size_t done = 0;
    while (done < octets.size()) {
        const ssize_t count = send(client.socket, octets.data() + done, octets.size() - done, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

void sendHex(RawClient &client, std::string_view hex) {
    sendOctets(client, octets(hex));
}

bool takenByPeer(const RawClient &client, Milliseconds limit) {
    return waitUntil(
        [&] {
            int unacknowledged = 0;
            return ioctl(client.socket, SIOCOUTQ, &unacknowledged) == 0 && unacknowledged == 0 &&
                   unreadAtPeer(client.socket) == 0;
        },
        limit);
}

std::optional<std::string> receiveFrame(RawClient &client, Milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        std::vector<u8> &in = client.pending;
        const std::size_t length = in.size() < 4 ? 0 : std::size_t{in[2]} << 8 | in[3];
        if (length >= 4 && in.size() >= length) {
            const std::string frame = hexText({in.data(), length});
            in.erase(in.begin(), in.begin() + static_cast<std::ptrdiff_t>(length));
            return frame;
        }
        if (receiveSome(client, left(deadline)) != Arrival::some) {
            return std::nullopt;
        }
    }
}

bool closedByPeer(RawClient &client, Milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const Arrival arrival = receiveSome(client, left(deadline));
        if (arrival != Arrival::some) {
            return arrival == Arrival::end;
        }
    }
}

ScriptedPeer::ScriptedPeer(std::vector<ScriptStep> steps) : script(std::move(steps)) {
    listener = bindFree(port);
    listen(listener, 1);
    thread = std::thread([this] { serve(); });
}

ScriptedPeer::~ScriptedPeer() {
    finish();
}

std::string ScriptedPeer::finish() {
    if (thread.joinable()) {
        thread.join();
    }
    if (listener >= 0) {
        close(std::exchange(listener, -1));
    }
    return fault;
}

void ScriptedPeer::serve() {
    pollfd entry{listener, POLLIN, 0};
    if (poll(&entry, 1, static_cast<int>(generous.count())) <= 0) {
        fault = "nobody connected";
        return;
    }
    RawClient client;
    client.socket = accept(listener, nullptr, nullptr);
    for (std::size_t i = 0; i < script.size(); ++i) {
        const std::optional<std::string> frame = receiveFrame(client);
        if (!frame || (!script[i].expect.empty() && *frame != canonical(script[i].expect))) {
            fault = "step " + std::to_string(i) + ": got " + frame.value_or("nothing");
            return;
        }
        sendHex(client, script[i].answer);
    }
    closedByPeer(client);
}

} // namespace ied::test
