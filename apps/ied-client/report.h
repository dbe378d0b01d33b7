// Reports as they come in InformationReport PDUs (ISO 9506-2, IEC 61850-8-1 17.2.3), taken apart by
// what their own option bits say.
#pragma once

#include "ied-client/mms.h"

#include <optional>
#include <string>
#include <vector>

namespace ied::client {

// A place in the buffer of a BRCB: the entry of this number and time.
struct EntryPoint {
    std::string octets;      // of the EntryID
    std::optional<i64> time; // TimeOfEntry, milliseconds since 1970; not always told
};
// EntryID that stands before the oldest entry.
inline const std::string noEntry(8, '\0');

// One member of the data set that a report includes.
struct ReportedMember {
    std::size_t member = 0; // from 0
    std::string reference;  // as the report names it; empty: it does not
    AccessResult result;
    std::string reason; // bits; empty: the report does not say
};

struct Report {
    std::string rptId;
    std::string optFlds; // bits
    std::optional<u64> sqNum;
    std::optional<i64> timeOfEntry; // milliseconds since 1970
    std::string datSet;             // empty: not told
    std::optional<bool> bufOvfl;
    std::string entryId; // octets; empty: not told
    std::optional<u64> confRev;
    std::optional<u64> subSqNum;
    bool moreFollows = false;
    std::size_t memberCount = 0; // inclusion bits
    std::vector<ReportedMember> members;
};

// What an unconfirmed PDU turned out to be.
struct Unconfirmed {
    enum class Kind {
        report,
        other, // no report: another list or variable, another service
        malformed
    };
    Kind kind = Kind::other;
    Report report;
    std::string why; // malformed: what is wrong
};
Unconfirmed parseUnconfirmed(View pdu);

// Milliseconds since 1970 of an entry time.
std::optional<i64> entryMillis(const Value &time);

// "0000000000000005@2026-11-25T08:38:17.452Z", or the number alone where the time is not known.
std::string entryText(const EntryPoint &entry);
// The same back from what a person writes; `why` says what is wrong with another text.
std::optional<EntryPoint> parseEntryPoint(const std::string &text, std::string &why);

} // namespace ied::client
