#include "platform/platform.h"
#include "platform/uninterrupted.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ied {

namespace {

int hostSocket(int domain, int type, int protocol) {
    return ::socket(domain, type | SOCK_CLOEXEC, protocol);
}

int hostSetsockopt(int fd, int level, int name, const void *value, u32 length) {
    return ::setsockopt(fd, level, name, value, length);
}

int hostGetsockopt(int fd, int level, int name, void *value, u32 *length) {
    return ::getsockopt(fd, level, name, value, length);
}

int hostBind(int fd, const ::sockaddr *address, u32 length) {
    return ::bind(fd, address, length);
}

int hostListen(int fd, int backlog) {
    return ::listen(fd, backlog);
}

// A descriptor beyond what the sets of select hold cannot be served: its connection is refused.
int hostAccept(int fd, ::sockaddr *address, u32 *length) {
    const int accepted = uninterrupted([&] { return ::accept4(fd, address, length, SOCK_CLOEXEC); });
    if (accepted >= FD_SETSIZE) {
        ::close(accepted);
        errno = EMFILE;
        return ERROR;
    }
    return accepted;
}

// A descriptor that the sets cannot hold is an error, not a write beyond them. An interrupted call
// goes on with what the host left of the time.
int hostSelect(int width, ::fd_set *read, ::fd_set *write, ::fd_set *except, ::timeval *timeout) {
    if (width > FD_SETSIZE) {
        errno = EINVAL;
        return ERROR;
    }
    return uninterrupted([&] { return ::select(width, read, write, except, timeout); });
}

long hostRecv(int fd, void *buffer, std::size_t length, int flags) {
    return uninterrupted([&] { return ::recv(fd, buffer, length, flags); });
}

long hostSend(int fd, const void *buffer, std::size_t length, int flags) {
    return uninterrupted([&] { return ::send(fd, buffer, length, flags | MSG_NOSIGNAL); });
}

int hostSetNonBlocking(int fd, bool on) {
    int value = on ? 1 : 0;
    return ::ioctl(fd, FIONBIO, &value);
}

int hostShutdown(int fd, int how) {
    return ::shutdown(fd, how);
}

int hostClose(int fd) {
    return ::close(fd);
}

} // namespace

SocketOps socketOps = {hostSocket, hostSetsockopt,     hostGetsockopt, hostBind,
                       hostListen, hostAccept,         hostSelect,     hostRecv,
                       hostSend,   hostSetNonBlocking, hostShutdown,   hostClose};

} // namespace ied
