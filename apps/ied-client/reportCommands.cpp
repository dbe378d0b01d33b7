// The commands about reports: listing control blocks, and showing what they send.
#include "ied-client/commands.h"
#include "ied-client/quantity.h"
#include "ied-client/reportBits.h"
#include "ied-client/reportText.h"
#include "ied-client/subscription.h"

#include <cstdio>

namespace ied::client {

namespace {

// Longest wait without a look at signals.
constexpr std::chrono::milliseconds patience{100};

std::string attributeCell(const ReportBlock &block, const std::string &name) {
    const std::string text = attributeOctets(block, name);
    return name == "TrgOps"    ? bitsText(text, trgOpsNames)
           : name == "OptFlds" ? bitsText(text, optFldsNames)
                               : attributeText(block, name);
}

std::string blocksText(const std::vector<ReportBlock> &blocks) {
    static constexpr const char *shown[] = {"DatSet", "RptID", "TrgOps",  "OptFlds",    "BufTm",
                                            "IntgPd", "SqNum", "EntryID", "TimeOfEntry"};
    std::vector<std::vector<std::string>> lines(1, {"block", "state"});
    lines[0].insert(lines[0].end(), std::begin(shown), std::end(shown));
    for (const ReportBlock &block : blocks) {
        std::vector<std::string> line = {blockName(block), stateText(block)};
        for (const char *name : shown) {
            line.push_back(attributeCell(block, name));
        }
        lines.push_back(std::move(line));
    }
    return alignedText(lines);
}

std::string blocksJson(const std::vector<ReportBlock> &blocks) {
    std::string text;
    for (const ReportBlock &block : blocks) {
        text += (text.empty() ? "" : ",\n") + std::string("{\"block\":") + jsonString(blockName(block)) +
                ",\"buffered\":" + (isBuffered(block) ? "true" : "false") +
                ",\"state\":" + jsonString(stateText(block)) +
                ",\"attributes\":" + jsonValue(block.state, block.variable.type) + "}";
    }
    return "[" + text + "]\n";
}

// The blocks that the arguments stand for; all of them without arguments.
std::optional<std::vector<Variable>> wantedBlocks(Session &session, int &status) {
    if (session.options.arguments.empty()) {
        return findBlocks(session.model);
    }
    std::vector<Variable> all;
    for (const std::string &argument : session.options.arguments) {
        const std::optional<Reference> reference = referenceArgument(argument);
        if (!reference) {
            status = statusUsage;
            return std::nullopt;
        }
        const std::optional<std::vector<Variable>> found = findBlocks(session.model, *reference);
        if (!found) {
            return std::nullopt;
        }
        all.insert(all.end(), found->begin(), found->end());
    }
    return all;
}

void printReport(const Session &session, const Subscription &subscription, const Report &report,
                 u64 missing) {
    ShownReport shown{blockName(subscription.block), &report, {}, missing};
    for (const ReportedMember &member : report.members) {
        const Variable &variable = subscription.set->members[member.member];
        for (Row &row : valueRows(variable, member.result, subscription.set->reading)) {
            row.reason = member.reason.empty() ? "" : bitsText(member.reason, reasonNames);
            shown.rows.push_back(std::move(row));
        }
    }
    print(session.options.json ? reportJson(shown) + "\n" : reportText(shown, session.style));
    std::fflush(stdout);
}

// Shows a report of a subscription, unless it only confirms where the reports begin.
int takeReport(Subscriber &subscriber, Subscription &subscription, const Report &report) {
    const std::string why = misfit(subscription, report);
    if (!why.empty()) {
        return fail(statusNoConnection,
                    "a malformed report of " + blockName(subscription.block) + ": " + why);
    }
    if (subscription.awaited && !subscription.enabled) {
        return statusGood; // let go of before it was known where the reports begin
    }
    if (subscription.awaited) {
        bool shown = false;
        const int status = confirmResume(subscriber, subscription, report, shown);
        if (status != statusGood || !shown) {
            return status;
        }
    }
    printReport(subscriber.session, subscription, report, countMissing(subscription, report));
    ++subscription.reports;
    if (!report.entryId.empty()) {
        subscription.last = EntryPoint{report.entryId, report.timeOfEntry};
    }
    return statusGood;
}

int takeMessage(Subscriber &subscriber, const Bytes &pdu) {
    const Unconfirmed message = parseUnconfirmed(pdu);
    if (message.kind == Unconfirmed::Kind::malformed) {
        return fail(statusNoConnection, "the server sent a malformed report: " + message.why);
    }
    if (message.kind == Unconfirmed::Kind::other) {
        return statusGood;
    }
    Subscription *subscription = subscriptionOf(subscriber, message.report);
    if (!subscription) {
        return fail(statusGood, "a report came that is not of one of these blocks for certain: RptID '" +
                                    message.report.rptId + "'");
    }
    return takeReport(subscriber, *subscription, message.report);
}

u64 countReports(const Subscriber &subscriber) {
    u64 count = 0;
    for (const Subscription &subscription : subscriber.subscriptions) {
        count += subscription.reports;
    }
    return count;
}

bool isEnough(const Subscriber &subscriber) {
    const u32 count = subscriber.session.options.count;
    return count > 0 && countReports(subscriber) >= count;
}

// Shows what has arrived, up to the number of --count.
int showArrived(Subscriber &subscriber) {
    int status = statusGood;
    while (status == statusGood && !subscriber.arrived.empty() && !isEnough(subscriber)) {
        const Bytes pdu = std::move(subscriber.arrived.front());
        subscriber.arrived.pop_front();
        status = takeMessage(subscriber, pdu);
    }
    return status;
}

// Shows reports until enough have come, the time is over, a signal asks for the end, or something
// fails.
int follow(Subscriber &subscriber) {
    const Options &options = subscriber.session.options;
    Connection &connection = subscriber.session.model.connection;
    const auto span = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<f64>(options.span));
    const Clock::time_point end = options.span > 0 ? Clock::now() + span : Clock::time_point::max();
    for (;;) {
        const int status = showArrived(subscriber);
        if (status != statusGood || isEnough(subscriber)) {
            return status;
        }
        const Clock::time_point now = Clock::now();
        if (stopRequested() || now >= end) {
            return statusGood;
        }
        if (!listen(connection, std::min(end, now + patience))) {
            return fail(subscriber.session);
        }
    }
}

// What continues behind the last report of a block. Several blocks are resumed together, so that
// one that had none needs an entry too.
std::optional<EntryPoint> nextStart(const Subscriber &subscriber, const Subscription &subscription) {
    const bool needed = subscriber.subscriptions.size() > 1 && isBuffered(subscription.block);
    return !subscription.last && subscription.reports == 0 && needed ? EntryPoint{noEntry, std::nullopt}
                                                                     : subscription.last;
}

// Says what came of each block: on the standard output, or beside the JSON lines.
void printSummary(const Subscriber &subscriber) {
    std::fflush(stdout);
    for (const Subscription &subscription : subscriber.subscriptions) {
        const std::string text = summaryText(blockName(subscription.block), subscription.reports,
                                             nextStart(subscriber, subscription));
        std::fprintf(subscriber.session.options.json ? stderr : stdout, "%s\n", printable(text).c_str());
    }
}

} // namespace

int listReportBlocks(Session &session) {
    int status = statusGood;
    const std::optional<std::vector<Variable>> variables = wantedBlocks(session, status);
    if (!variables) {
        return status == statusGood ? fail(session) : status;
    }
    const std::optional<std::vector<ReportBlock>> blocks = readBlocks(session.model, *variables);
    if (!blocks) {
        return fail(session);
    }
    print(session.options.json ? blocksJson(*blocks) : blocksText(*blocks));
    return statusGood;
}

int showReports(Session &session) {
    Subscriber subscriber{session, {}, {}, {}};
    const int subscribed = subscribe(subscriber);
    const int followed = subscribed == statusGood ? follow(subscriber) : subscribed;
    const int ended = unsubscribe(subscriber);
    if (subscribed != statusGood) {
        return subscribed;
    }
    const int rest = showArrived(subscriber);
    printSummary(subscriber);
    return followed != statusGood ? followed : ended != statusGood ? ended : rest;
}

} // namespace ied::client
