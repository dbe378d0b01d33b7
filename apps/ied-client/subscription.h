// Report control blocks that this client has taken: reserving, configuring and enabling them,
// taking apart what they send, and letting go of them. Functions that give a status have said what
// was wrong.
#pragma once

#include "ied-client/commands.h"
#include "ied-client/report.h"
#include "ied-client/reportBlock.h"

#include <deque>
#include <map>
#include <vector>

namespace ied::client {

// The members of a data set with their types and units.
struct ReportedSet {
    std::vector<Variable> members;
    Reading reading;
};

struct Subscription {
    ReportBlock block;
    const ReportedSet *set = nullptr;
    const EntryPoint *resume = nullptr; // entry behind which its reports begin; null: not asked for
    bool reserved = false;              // by this client
    bool enabled = false;               // by this client
    u32 reports = 0;                    // shown
    std::optional<u64> nextSqNum;
    std::optional<EntryPoint> last;    // entry of the last report shown
    std::optional<EntryPoint> awaited; // entry that the next report must be of, see resume.cpp
    bool fromOldest = false;           // the reports began with the oldest entry kept
};

struct Subscriber {
    Session &session;
    std::vector<Subscription> subscriptions;
    std::map<std::string, ReportedSet> sets; // by the name that DatSet has
    std::deque<Bytes> arrived;               // unconfirmed PDUs that nobody has looked at
};

// Takes the blocks that the arguments name and enables them. What arrives from then on is kept in
// `arrived`. After a failure, too, unsubscribe must follow.
int subscribe(Subscriber &subscriber);

// Disables and frees the blocks as far as the connection allows. Reports that come before the answers
// are still in `arrived` then, later ones are not.
int unsubscribe(Subscriber &subscriber);

// The subscription that a report belongs to, by its RptID and its data set; null if there is none, or
// more than one.
Subscription *subscriptionOf(Subscriber &subscriber, const Report &report);

// Whether a report does not fit the data set of its subscription; "" when it does.
std::string misfit(const Subscription &subscription, const Report &report);

// How many reports are missing between the last one of a subscription and this one, by their
// sequence numbers: of 8 bits in a URCB, of 16 in a BRCB (IEC 61850-8-1 17.2.3).
u64 countMissing(Subscription &subscription, const Report &report);

// Writes an attribute; says the failure, with the culprit, when it is not written.
int setAttribute(Subscriber &subscriber, const Subscription &subscription, const std::string &name,
                 const std::string &text);
// The same in two steps: a write that gives the DataAccessError of a refusal (-1: written), and what
// is said of that: who has the block, or the error and the value that the server has set instead.
int tryAttribute(Subscriber &subscriber, const Subscription &subscription, const std::string &name,
                 const std::string &text, i64 &error);
int refused(Subscriber &subscriber, const Subscription &subscription, const std::string &name, i64 error);

// Where the reports of a block that is not yet enabled begin: behind `entry` if the block still
// holds it, else with the oldest entry kept.
int resumeAfter(Subscriber &subscriber, Subscription &subscription, const EntryPoint &entry);

// Looks at the first report behind resumeAfter: `shown` is false when it is the entry itself, or
// when the block had to begin anew.
int confirmResume(Subscriber &subscriber, Subscription &subscription, const Report &report, bool &shown);

} // namespace ied::client
