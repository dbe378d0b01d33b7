#include "bench/echoServer.h"

#include "platform/platform.h"

#include <arpa/inet.h>
#include <csignal>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ied::bench {

namespace {

constexpr std::size_t bufferSize = 103136; // the server's receive buffer
constexpr int ticks = 1;                   // the server's rest with one client

int listenOn(std::uint16_t &port) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    socklen_t size = sizeof address;
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int on = 1; // as the server: each frame leaves at once
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (fd < 0 || bind(fd, reinterpret_cast<sockaddr *>(&address), size) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size) != 0 || listen(fd, 1) != 0) {
        throw std::runtime_error("an echo server cannot listen");
    }
    port = ntohs(address.sin_port);
    return fd;
}

bool waitReadable(int fd) {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(fd, &readable);
    timeval timeout{1, 0};
    return select(fd + 1, &readable, nullptr, nullptr, &timeout) > 0;
}

void serve(int fd, EchoKind kind, const Exchange &exchange) {
    static char buffer[bufferSize];
    std::size_t held = 0;
    for (;;) {
        if (kind == EchoKind::paced && !waitReadable(fd)) {
            continue;
        }
        const ssize_t got = recv(fd, buffer, sizeof buffer, 0);
        if (got <= 0) {
            return;
        }
        held += static_cast<std::size_t>(got);
        if (held < exchange.requestOctets) {
            continue;
        }
        held -= exchange.requestOctets;
        for (const std::vector<u8> &frame : exchange.frames) {
            if (send(fd, frame.data(), frame.size(), MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
                return;
            }
        }
        if (kind == EchoKind::paced) {
            taskDelay(ticks);
        }
    }
}

} // namespace

EchoServer::EchoServer(EchoKind kind, const Exchange &exchange) {
    const int listener = listenOn(port);
    pid = fork();
    if (pid < 0) {
        throw std::runtime_error("no process for an echo server");
    }
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        sysClkRateSet(1000);
        for (;;) {
            const int fd = accept(listener, nullptr, nullptr);
            if (fd < 0) {
                _exit(1);
            }
            serve(fd, kind, exchange);
            close(fd);
        }
    }
    close(listener);
}

EchoServer::~EchoServer() {
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

} // namespace ied::bench
