// One association with a server over TCP: connect, confirmed requests one at a time, release.
// Nothing here raises; a call that gives nothing has said why in `failure`.
#pragma once

#include "ied-client/frames.h"
#include "ied-client/mms.h"
#include "ied-client/socket.h"

#include <chrono>
#include <functional>
#include <string>

namespace ied::client {

// Exit statuses of the program.
enum Status : int {
    statusGood = 0,
    statusRefused = 1,
    statusUsage = 2,
    statusNoConnection = 3
};

struct Failure {
    Status status = statusGood;
    std::string text;
};

struct Connection {
    Connection() = default;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection();

    int socket = -1;
    std::chrono::milliseconds timeout{10000}; // for each answer
    Assembler assembler;
    Bytes pdu; // the last answer, which the elements given out lie in
    u32 invokeId = 0;
    Negotiated negotiated;
    Failure failure;
    std::function<void(View)> unconfirmed; // gets each unconfirmed PDU that comes between answers
};

// Resolve, connect, associate. `host` is a name or an address of either family.
bool connect(Connection &connection, const std::string &host, u16 port);

// Send one confirmed request and wait for its answer: the service's element, valid until the next
// request. Nothing when the server refused (status 1) or the connection is lost or silent (3).
std::optional<Element> request(Connection &connection, View service);

// Hands on the unconfirmed PDUs that have arrived; if there is none yet, waits for one until the
// deadline. False when the connection is lost (3); at the deadline it is not.
bool listen(Connection &connection, Clock::time_point deadline);

// Conclude and release in order, as far as the server plays along, and close.
void release(Connection &connection);

// Octets of MMS PDU that either side may send.
std::size_t pduLimit(const Connection &connection);

} // namespace ied::client
