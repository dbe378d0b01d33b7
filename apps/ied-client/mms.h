// MMS PDUs of the calling side (ISO 9506-2): requests as octets, answers taken apart.
#pragma once

#include "ied-client/value.h"

#include <string>
#include <variant>
#include <vector>

namespace ied::client {

// ------------------------------------------------------------------------------------- PDUs

struct Negotiated {
    i64 pduSize = 0; // octets of an MMS PDU; 0: the server sets no bound
    i64 outstanding = 1;
    std::vector<int> services; // bit numbers of ServiceSupportOptions
};

// Initiate with this proposed PDU size; the answer, or nothing if it is not one.
Bytes initiateRequest(i64 pduSize);
std::optional<Negotiated> initiateResponse(View pdu);
Bytes concludeRequest();

Bytes confirmedRequest(u32 invokeId, View service);

// What an MMS PDU from the server is to a caller that waits for the answer to `invokeId`.
struct Answer {
    enum class Kind {
        response,
        error,
        rejected,
        unconfirmed,
        concluded,
        other,
        malformed
    };
    Kind kind = Kind::malformed;
    u32 invokeId = 0; // response, error, rejected
    bool hasInvokeId = false;
    Element service;  // response: the service's element
    std::string text; // error, rejected: what the server said, for people
};
Answer parseAnswer(View pdu);

// Names of DataAccessError values.
std::string dataAccessError(i64 code);

// ---------------------------------------------------------------------------------- services

// A variable: domain and item, with the selection inside an array if there is one.
struct Selection {
    bool indexed = false;
    u32 first = 0;
    u32 count = 0;                  // 0: the one element `first`; else a range
    std::vector<std::string> below; // components inside the one element
};
struct VariableName {
    std::string domain;
    std::string item;
    Selection selection;
};

enum ObjectClass : u8 {
    classVariable = 0,
    classVariableList = 2,
    classJournal = 8,
    classDomain = 9
};

Bytes identifyRequest();
Bytes getNameListRequest(ObjectClass objectClass, const std::string &domain, const std::string &after);
Bytes getTypeRequest(const std::string &domain, const std::string &item);
Bytes readRequest(const std::vector<VariableName> &variables);
Bytes writeRequest(const VariableName &variable, const Value &value);
Bytes getListRequest(const std::string &domain, const std::string &list);

struct Identity {
    std::string vendor, model, revision;
};
struct Names {
    std::vector<std::string> names;
    bool more = true;
};
struct AccessResult {
    std::optional<Value> value;
    i64 error = 0; // DataAccessError when there is no value
};
// The elements of a listOfAccessResult; nothing if one is malformed.
std::optional<std::vector<AccessResult>> accessResults(View content);

struct VariableList {
    bool deletable = false;
    std::vector<VariableName> members;
};

// Answers to the services; nothing if the element is not the service's answer.
std::optional<Identity> identifyResponse(const Element &service);
std::optional<Names> getNameListResponse(const Element &service);
std::optional<Type> getTypeResponse(const Element &service);
std::optional<std::vector<AccessResult>> readResponse(const Element &service);
// DataAccessError of the one variable, or -1 when it was written.
std::optional<i64> writeResponse(const Element &service);
std::optional<VariableList> getListResponse(const Element &service);

// Octets that a variable takes in a Read request.
std::size_t requestSize(const VariableName &variable);

} // namespace ied::client
