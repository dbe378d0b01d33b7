// Going on behind the last entry that was received from a BRCB. A server may number the entries of a
// buffer anew when it starts, so that a number alone does not tell whether the entry of that number
// is still the one that was received. If the newest entry of the block is older than the known one,
// it is not. Else the reports begin one entry early: the first one must then be the known entry, with
// its time, and is not shown again.
#include "ied-client/format.h"
#include "ied-client/reportBits.h"
#include "ied-client/subscription.h"

#include <algorithm>

namespace ied::client {

namespace {

// Counting numbers (four octets of zeros in front) have a predecessor.
bool isCounted(const std::string &octets) {
    return octets.size() == noEntry.size() && octets.compare(0, 4, noEntry, 0, 4) == 0 && octets != noEntry;
}

std::string predecessor(std::string octets) {
    for (std::size_t i = octets.size(); i-- > 0;) {
        const u8 octet = static_cast<u8>(octets[i]);
        octets[i] = static_cast<char>(octet - 1);
        if (octet != 0) {
            break;
        }
    }
    return octets;
}

// Whether the newest entry of a block is older than `entry`, which is then no entry of its buffer. Its
// EntryID tells nothing: where a client has written a position, it reads back as that.
bool isOlder(const ReportBlock &block, const EntryPoint &entry) {
    const Value *value = attribute(block, "TimeOfEntry");
    const std::optional<i64> newest = value ? entryMillis(*value) : std::nullopt;
    return newest && entry.time && *newest < *entry.time;
}

// Writes EntryID; `known` says whether the block holds that entry.
int writeEntry(Subscriber &subscriber, Subscription &subscription, const std::string &octets, bool &known) {
    i64 error = -1;
    const int status = tryAttribute(subscriber, subscription, "EntryID", hexDigits(octets), error);
    known = status == statusGood && error < 0;
    return error >= 0 && error != valueInvalid ? refused(subscriber, subscription, "EntryID", error) : status;
}

// Begins with the oldest entry; a block that holds none begins with its first.
int beginWithOldest(Subscriber &subscriber, Subscription &subscription, const EntryPoint &entry) {
    bool known = false;
    subscription.fromOldest = true;
    fail(statusGood, blockName(subscription.block) + " holds the entry " + entryText(entry) +
                         " no longer: reports begin with the oldest entry that it holds");
    return writeEntry(subscriber, subscription, noEntry, known);
}

bool tellsEntries(const ReportBlock &block) {
    const std::string options = attributeOctets(block, "OptFlds");
    return isSet(options, optEntryId) && isSet(options, optTimeOfEntry);
}

} // namespace

int resumeAfter(Subscriber &subscriber, Subscription &subscription, const EntryPoint &entry) {
    subscription.last = entry;
    if (isOlder(subscription.block, entry)) {
        return beginWithOldest(subscriber, subscription, entry);
    }
    bool known = false;
    if (!entry.time || !isCounted(entry.octets)) { // an EntryID that does not count holds the time itself
        const int status = writeEntry(subscriber, subscription, entry.octets, known);
        const bool lost = !known && entry.octets != noEntry; // an empty buffer does not know that either
        return status == statusGood && lost ? beginWithOldest(subscriber, subscription, entry) : status;
    }
    if (!tellsEntries(subscription.block)) {
        return fail(statusUsage, "--resume with a time needs entryID and timeStamp in the OptFlds of " +
                                     blockName(subscription.block) + ": see --optflds");
    }
    subscription.awaited = entry;
    int status = writeEntry(subscriber, subscription, predecessor(entry.octets), known);
    if (status == statusGood && !known) { // then the entry itself is the oldest, or gone
        subscription.fromOldest = true;
        status = writeEntry(subscriber, subscription, noEntry, known);
    }
    return status;
}

int confirmResume(Subscriber &subscriber, Subscription &subscription, const Report &report, bool &shown) {
    const EntryPoint entry = *subscription.awaited;
    subscription.awaited.reset();
    shown = false;
    if (report.entryId == entry.octets && report.timeOfEntry == entry.time) {
        countMissing(subscription, report);
        return statusGood;
    }
    if (subscription.fromOldest) {
        shown = true;
        fail(statusGood, blockName(subscription.block) + " holds the entry " + entryText(entry) +
                             " no longer: this is the oldest entry that it holds");
        return statusGood;
    }
    int status = setAttribute(subscriber, subscription, "RptEna", "false");
    if (status == statusGood) {
        subscription.enabled = false;
        status = beginWithOldest(subscriber, subscription, entry);
    }
    // What came before the block was disabled comes again.
    std::erase_if(subscriber.arrived, [&](const Bytes &pdu) {
        const Unconfirmed message = parseUnconfirmed(pdu);
        return message.kind == Unconfirmed::Kind::report &&
               subscriptionOf(subscriber, message.report) == &subscription;
    });
    if (status == statusGood) {
        status = setAttribute(subscriber, subscription, "RptEna", "true");
        subscription.enabled = status == statusGood;
    }
    return status;
}

} // namespace ied::client
