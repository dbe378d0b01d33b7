#include "DebugInfo/DebugInfo.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/serverStart.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>

namespace ied {

namespace {

// Ends the process when a step failed, unless a hook takes the line: then false. The error record
// also says what the log's line does not.
bool require(bool done, const char *message) {
    if (!done) {
        const int error = errno;
        const std::string &bound = platformOptions.bindAddress;
        char cause[160];
        std::snprintf(cause, sizeof cause, "cannot listen on %s%sport %u: %s", bound.c_str(),
                      bound.empty() ? "" : " ", externGlbCfg.tcpPort, std::strerror(error));
        noteFailure(cause);
        errno = error;
        dbInfo(DbSOC, DbPAN, "socketInit", "%s", message);
    }
    return done;
}

bool setOption(int fd, int level, int name, int value) {
    return socketOps.setsockopt(fd, level, name, &value, sizeof value) == 0;
}

bool bindListener(int fd) {
    ::sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(externGlbCfg.tcpPort);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    const std::string &bound = platformOptions.bindAddress;
    if (!bound.empty() && inet_pton(AF_INET, bound.c_str(), &address.sin_addr) != 1) {
        errno = EADDRNOTAVAIL;
        return false;
    }
    return socketOps.bind(fd, reinterpret_cast<const ::sockaddr *>(&address), sizeof address) == 0;
}

bool setListenOptions(int fd) {
    const ::linger abortive{1, 0};
    return require(setOption(fd, SOL_SOCKET, SO_REUSEADDR, 1), "socket SO_REUSEADDR set error") &&
           require(setOption(fd, IPPROTO_TCP, TCP_NODELAY, 1), "socket TCP_NODELAY set error") &&
           require(socketOps.setsockopt(fd, SOL_SOCKET, SO_LINGER, &abortive, sizeof abortive) == 0,
                   "socket SO_LINGER set error");
}

bool startListening(int fd) {
    return require(bindListener(fd), "socket bind error") &&
           require(socketOps.listen(fd, externGlbCfg.listenBacklog) == 0, "socket listen error") &&
           require(socketOps.setNonBlocking(fd, true) == 0, "socket set FIONBIO error");
}

// Milliseconds that the keep-alive values give a silent peer.
int keepAliveTime(u32 idle, u32 cnt, u32 intvl) {
    const u64 ms = (u64{idle} + u64{cnt} * intvl) * 1000;
    return static_cast<int>(std::min<u64>(ms, INT_MAX));
}

} // namespace

::timeval splitTimeout(u32 milliseconds) {
    ::timeval timeout{};
    timeout.tv_sec = static_cast<decltype(timeout.tv_sec)>(milliseconds / 1000);
    timeout.tv_usec = static_cast<decltype(timeout.tv_usec)>(milliseconds % 1000 * 1000);
    return timeout;
}

void activeKeepAlive(int fd) {
    const char *failure = nullptr;
    int value = 0;
    u32 length = sizeof value;
    if (!setOption(fd, SOL_SOCKET, SO_KEEPALIVE, 1)) {
        failure = "socket SO_KEEPALIVE set error";
    } else if (socketOps.getsockopt(fd, SOL_SOCKET, SO_KEEPALIVE, &value, &length) != 0) {
        failure = "getsockopt SO_KEEPALIVE again failed";
    }
    if (failure != nullptr) {
        dbInfo(DbSOC, DbPAN, "activeKeepAlive", "%s", failure);
        socketOps.close(fd);
        processExit(1);
    }
}

void setKeepAliveParams(int fd, u32 idle, u32 cnt, u32 intvl) {
    struct Option {
        int name;
        int value;
        const char *failure;
    };
    // Keep-alive probes rest while octets are unacknowledged: the last option bounds that time too.
    const Option options[] = {
        {TCP_KEEPIDLE, static_cast<int>(idle), "TCP_KEEPIDLE failed"},
        {TCP_KEEPCNT, static_cast<int>(cnt), "TCP_KEEPCNT failed"},
        {TCP_KEEPINTVL, static_cast<int>(intvl), "TCP_KEEPINTVL failed"},
        {TCP_USER_TIMEOUT, keepAliveTime(idle, cnt, intvl), "TCP_USER_TIMEOUT failed"},
    };
    for (const Option &option : options) {
        if (!setOption(fd, IPPROTO_TCP, option.name, option.value)) {
            dbInfo(DbSOC, DbERR, "setKeepAliveParams", "%s", option.failure);
            return;
        }
    }
}

bool socketInit(int *listenFd) {
    const int fd = socketOps.socket(AF_INET, SOCK_STREAM, 0);
    if (!require(fd >= 0, "socket create error")) {
        return false;
    }
    bool listens = setListenOptions(fd);
    if (listens) {
        activeKeepAlive(fd);
        setKeepAliveParams(fd, externGlbCfg.keepIdle, externGlbCfg.keepCnt, externGlbCfg.keepIntvl);
        listens = startListening(fd);
    }
    if (!listens) {
        socketOps.close(fd);
        return false;
    }
    *listenFd = fd;
    return true;
}

} // namespace ied
