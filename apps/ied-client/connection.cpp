#include "ied-client/connection.h"

#include <unistd.h>

namespace ied::client {

namespace {

constexpr i64 proposedPduSize = 65000;

void closeSocket(Connection &connection) {
    if (connection.socket >= 0) {
        close(connection.socket);
    }
    connection.socket = -1;
}

bool lose(Connection &connection, const std::string &text) {
    closeSocket(connection);
    connection.failure = {statusNoConnection, text};
    return false;
}

bool sendOctets(Connection &connection, const Bytes &octets, Clock::time_point deadline) {
    std::string why;
    if (connection.socket < 0) {
        return lose(connection, "not connected");
    }
    return sendAll(connection.socket, octets, deadline, why) || lose(connection, "connection lost: " + why);
}

// Whether a message is an unconfirmed PDU (a report); it then goes to whoever wants it.
bool handleUnconfirmed(Connection &connection, const Received &received) {
    if (received.message != Message::data || parseAnswer(received.mms).kind != Answer::Kind::unconfirmed) {
        return false;
    }
    if (connection.unconfirmed) {
        connection.unconfirmed(received.mms);
    }
    return true;
}

// False, and the connection lost, at a message that ends or breaks the association.
bool isIntact(Connection &connection, const Received &received) {
    switch (received.message) {
    case Message::aborted:
        return lose(connection, "the server aborted the association");
    case Message::refused:
        return lose(connection, "the server refused the association: " + received.reason);
    case Message::malformed:
        return lose(connection, "the server sent a malformed message: " + received.reason);
    default:
        return true;
    }
}

// Next whole message that has arrived, but for unconfirmed PDUs, which may come at any time: these
// are handed on, and `handed` says that there was one. Nothing while octets are missing, or when the
// connection is lost.
std::optional<Received> takeMessage(Connection &connection, bool &handed) {
    while (std::optional<Received> received = nextMessage(connection.assembler)) {
        if (!isIntact(connection, *received)) {
            return std::nullopt;
        }
        if (!handleUnconfirmed(connection, *received)) {
            return received;
        }
        handed = true;
    }
    return std::nullopt;
}

// Next message of the server but for unconfirmed PDUs.
std::optional<Received> receive(Connection &connection, Clock::time_point deadline) {
    for (;;) {
        bool handed = false;
        std::optional<Received> received = takeMessage(connection, handed);
        if (received || connection.socket < 0) {
            return received;
        }
        std::string why;
        if (!receiveSome(connection.socket, connection.assembler.stream, deadline, why)) {
            lose(connection, "no answer: " + why);
            return std::nullopt;
        }
    }
}

std::optional<Received> exchange(Connection &connection, const Bytes &octets, Message wanted) {
    const Clock::time_point deadline = Clock::now() + connection.timeout;
    if (!sendOctets(connection, octets, deadline)) {
        return std::nullopt;
    }
    std::optional<Received> received = receive(connection, deadline);
    if (received && received->message != wanted) {
        lose(connection, "the server sent an unexpected message");
        return std::nullopt;
    }
    return received;
}

} // namespace

Connection::~Connection() {
    closeSocket(*this);
}

bool connect(Connection &connection, const std::string &host, u16 port) {
    std::string why;
    connection.socket = openStream(host, port, Clock::now() + connection.timeout, why);
    if (connection.socket < 0) {
        return lose(connection, "cannot connect to " + host + " port " + std::to_string(port) + ": " + why);
    }
    if (!exchange(connection, connectionRequest(), Message::connectionConfirm)) {
        if (connection.failure.text == std::string("no answer: ") + timedOut) {
            connection.failure.text += " (all places for clients may be taken)";
        }
        return false;
    }
    const std::optional<Received> accept =
        exchange(connection, associationRequest(initiateRequest(proposedPduSize)), Message::associated);
    if (!accept) {
        return false;
    }
    const std::optional<Negotiated> negotiated = initiateResponse(accept->mms);
    if (!negotiated) {
        return lose(connection, "the server did not accept the MMS association");
    }
    connection.negotiated = *negotiated;
    return true;
}

std::optional<Element> request(Connection &connection, View service) {
    const Clock::time_point deadline = Clock::now() + connection.timeout;
    const u32 id = ++connection.invokeId;
    if (!sendOctets(connection, dataRequest(confirmedRequest(id, service)), deadline)) {
        return std::nullopt;
    }
    while (std::optional<Received> received = receive(connection, deadline)) {
        if (received->message != Message::data) {
            lose(connection, "the server ended the association");
            return std::nullopt;
        }
        connection.pdu = std::move(received->mms);
        const Answer answer = parseAnswer(connection.pdu);
        if (answer.kind == Answer::Kind::malformed || answer.kind == Answer::Kind::other) {
            lose(connection, "the server sent a malformed MMS PDU");
            return std::nullopt;
        }
        if (answer.hasInvokeId && answer.invokeId != id) {
            continue; // the late answer to a request that was given up
        }
        if (answer.kind == Answer::Kind::response) {
            return answer.service;
        }
        connection.failure = {statusRefused, answer.text};
        return std::nullopt;
    }
    return std::nullopt;
}

bool listen(Connection &connection, Clock::time_point deadline) {
    for (bool handed = false; connection.socket >= 0;) {
        while (const std::optional<Received> received = takeMessage(connection, handed)) {
            if (received->message != Message::data) {
                return lose(connection, "the server ended the association");
            } // else the late answer to a request that was given up
        }
        if (handed || connection.socket < 0) {
            break;
        }
        std::string why;
        if (!receiveSome(connection.socket, connection.assembler.stream, deadline, why)) {
            return why == timedOut || lose(connection, "connection lost: " + why);
        }
    }
    return connection.socket >= 0;
}

void release(Connection &connection) {
    if (connection.socket >= 0 && exchange(connection, dataRequest(concludeRequest()), Message::data)) {
        exchange(connection, releaseRequest(), Message::released);
    }
    closeSocket(connection);
}

std::size_t pduLimit(const Connection &connection) {
    const i64 size = connection.negotiated.pduSize;
    return static_cast<std::size_t>(size > 0 && size < proposedPduSize ? size : proposedPduSize);
}

} // namespace ied::client
