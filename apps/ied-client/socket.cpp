#include "ied-client/socket.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ied::client {

namespace {

bool waitFor(int descriptor, short events, Clock::time_point deadline, std::string &why) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd entry{descriptor, events, 0};
        const int ready = poll(&entry, 1, static_cast<int>(std::clamp<long long>(left, 0, 1 << 30)));
        if (ready > 0) {
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            why = std::strerror(errno);
            return false;
        }
        if (ready == 0) {
            why = timedOut;
            return false;
        }
    }
}

// Keep-alives tell within half a minute that a silent server's host has gone, however long a client
// waits for the next report.
void keepAlive(int descriptor) {
    constexpr int on = 1;
    constexpr int idle = 15;
    constexpr int interval = 5;
    constexpr int probes = 3;
    setsockopt(descriptor, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
    setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, &idle, sizeof idle);
    setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof interval);
    setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPCNT, &probes, sizeof probes);
}

// Connects to one of the addresses of the host.
int openAddress(const addrinfo &address, Clock::time_point deadline, std::string &why) {
    const int descriptor =
        ::socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, address.ai_protocol);
    if (descriptor < 0) {
        why = std::strerror(errno);
        return -1;
    }
    int error = ::connect(descriptor, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS && waitFor(descriptor, POLLOUT, deadline, why)) {
        socklen_t size = sizeof error;
        getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
    }
    if (error != 0) {
        if (error != EINPROGRESS) {
            why = std::strerror(error);
        }
        close(descriptor);
        return -1;
    }
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    keepAlive(descriptor);
    return descriptor;
}

} // namespace

int openStream(const std::string &host, u16 port, Clock::time_point deadline, std::string &why) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (const int error = getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found);
        error != 0) {
        why = gai_strerror(error);
        return -1;
    }
    int descriptor = -1;
    for (const addrinfo *address = found; address && descriptor < 0; address = address->ai_next) {
        descriptor = openAddress(*address, deadline, why);
    }
    freeaddrinfo(found);
    return descriptor;
}

bool sendAll(int descriptor, View octets, Clock::time_point deadline, std::string &why) {
    while (!octets.empty()) {
        const ssize_t sent = send(descriptor, octets.data(), octets.size(), MSG_NOSIGNAL);
        if (sent > 0) {
            octets = octets.subspan(static_cast<std::size_t>(sent));
        } else if (errno == EAGAIN || errno == EINTR) {
            if (!waitFor(descriptor, POLLOUT, deadline, why)) {
                return false;
            }
        } else {
            why = std::strerror(errno);
            return false;
        }
    }
    return true;
}

bool receiveSome(int descriptor, Bytes &into, Clock::time_point deadline, std::string &why) {
    u8 buffer[16384];
    for (;;) {
        if (!waitFor(descriptor, POLLIN, deadline, why)) {
            return false;
        }
        const ssize_t count = recv(descriptor, buffer, sizeof buffer, 0);
        if (count > 0) {
            appendTo(into, View(buffer, static_cast<std::size_t>(count)));
            return true;
        }
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            continue;
        }
        why = count == 0 ? "the server closed the connection" : std::strerror(errno);
        return false;
    }
}

} // namespace ied::client
