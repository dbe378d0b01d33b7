#include "ied-client/subscription.h"

#include "ied-client/reportBits.h"

#include <algorithm>

namespace ied::client {

namespace {

Connection &connectionOf(Subscriber &subscriber) {
    return subscriber.session.model.connection;
}

// The data set of a block; each is asked for once.
int findSet(Subscriber &subscriber, Subscription &subscription) {
    const std::string name = attributeOctets(subscription.block, "DatSet");
    const std::string about = blockName(subscription.block);
    const std::size_t slash = name.find('/');
    if (slash == std::string::npos) {
        return fail(statusRefused,
                    about + (name.empty() ? " has no data set" : " names no data set: '" + name + "'"));
    }
    if (const auto known = subscriber.sets.find(name); known != subscriber.sets.end()) {
        subscription.set = &known->second;
        return statusGood;
    }
    Model &model = subscriber.session.model;
    const std::optional<VariableList> list = dataSet(model, name.substr(0, slash), name.substr(slash + 1));
    const std::optional<std::vector<Variable>> members = list ? memberVariables(model, *list) : std::nullopt;
    std::optional<Reading> reading = members ? prepareReading(model, *members) : std::nullopt;
    if (!reading) {
        return fail(subscriber.session, about + ", data set " + name);
    }
    subscription.set =
        &subscriber.sets.emplace(name, ReportedSet{*members, std::move(*reading)}).first->second;
    return statusGood;
}

std::string usedText(const ReportBlock &block) {
    return blockName(block) + " is in use by another client (" + stateText(block) + ")";
}

// The blocks of the arguments, none of them twice, none in use.
int findSubscriptions(Subscriber &subscriber) {
    Session &session = subscriber.session;
    std::vector<Variable> variables;
    for (const std::string &argument : session.options.arguments) {
        const std::optional<Reference> reference = referenceArgument(argument);
        if (!reference) {
            return statusUsage;
        }
        if (reference->path.empty()) {
            return fail(statusUsage, "'" + argument + "' is no report control block: write LD/LN.NAME");
        }
        const std::optional<std::vector<Variable>> found = findBlocks(session.model, *reference);
        if (!found) {
            return fail(session);
        }
        for (const Variable &variable : variables) {
            if (variableKey(variable.reference) == variableKey(found->front().reference)) {
                return fail(statusUsage, personal(variable.reference) + " is named twice");
            }
        }
        variables.push_back(found->front());
    }
    std::optional<std::vector<ReportBlock>> blocks = readBlocks(session.model, variables);
    if (!blocks) {
        return fail(session);
    }
    const std::vector<EntryPoint> &resume = session.options.resume;
    for (std::size_t i = 0; i < blocks->size(); ++i) {
        ReportBlock &block = (*blocks)[i];
        if (isTrue(block, "RptEna") || isTrue(block, "Resv")) {
            return fail(statusRefused, usedText(block));
        }
        Subscription &subscription = subscriber.subscriptions.emplace_back();
        subscription.block = std::move(block);
        subscription.resume = resume.empty() ? nullptr : &resume.at(i);
    }
    return statusGood;
}

// What the options set, in the order in which it is written.
int configure(Subscriber &subscriber, Subscription &subscription) {
    const Options &options = subscriber.session.options;
    const std::pair<const char *, std::string> attributes[] = {
        {"TrgOps", options.trgOps},
        {"OptFlds", options.optFlds},
        {"BufTm", options.bufTm ? std::to_string(*options.bufTm) : ""},
        {"IntgPd", options.intgPd ? std::to_string(*options.intgPd) : ""},
        {"PurgeBuf", options.purge ? "true" : ""},
    };
    for (const auto &[name, text] : attributes) {
        const int status = text.empty() ? statusGood : setAttribute(subscriber, subscription, name, text);
        if (status != statusGood) {
            return status;
        }
    }
    if (!readAgain(subscriber.session.model, subscription.block)) {
        return fail(subscriber.session);
    }
    std::string missing = options.optFlds;
    for (unsigned bit = 0; bit < missing.size(); ++bit) {
        missing[bit] = isSet(attributeOctets(subscription.block, "OptFlds"), bit) ? '0' : missing[bit];
    }
    if (missing.find('1') != std::string::npos) {
        fail(statusGood, blockName(subscription.block) + " does not take " + bitsText(missing, optFldsNames) +
                             " in its OptFlds");
    }
    if (options.gi && !isSet(attributeOctets(subscription.block, "TrgOps"), trgGi)) {
        return fail(statusUsage,
                    "--gi: the TrgOps of " + blockName(subscription.block) + " have no gi: see --trgops");
    }
    return statusGood;
}

int take(Subscriber &subscriber, Subscription &subscription) {
    const Options &options = subscriber.session.options;
    const bool buffered = isBuffered(subscription.block);
    if (!buffered && (options.purge || subscription.resume)) {
        return fail(statusUsage, blockName(subscription.block) + " is unbuffered: it has nothing to " +
                                     (options.purge ? "purge" : "resume"));
    }
    if (!buffered) {
        const int status = setAttribute(subscriber, subscription, "Resv", "true");
        if (status != statusGood) {
            return status;
        }
        subscription.reserved = true;
    }
    int status = configure(subscriber, subscription);
    if (status == statusGood && subscription.resume) {
        status = resumeAfter(subscriber, subscription, *subscription.resume);
    }
    return status;
}

// Whether reports of two blocks could be taken for each other's.
bool confusable(const ReportBlock &one, const ReportBlock &other) {
    const auto same = [&](const char *name) {
        return attributeOctets(one, name) == attributeOctets(other, name);
    };
    const auto told = [](const ReportBlock &block) {
        return isSet(attributeOctets(block, "OptFlds"), optDatSet);
    };
    return same("RptID") && !attributeOctets(one, "RptID").empty() &&
           (same("DatSet") || !told(one) || !told(other));
}

int checkDistinct(const Subscriber &subscriber) {
    const std::vector<Subscription> &all = subscriber.subscriptions;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t k = i + 1; k < all.size(); ++k) {
            if (confusable(all[i].block, all[k].block)) {
                return fail(statusRefused, blockName(all[i].block) + " and " + blockName(all[k].block) +
                                               " have the same RptID, so that their reports cannot be told "
                                               "apart on one association");
            }
        }
    }
    return statusGood;
}

int enable(Subscriber &subscriber, Subscription &subscription) {
    const int status = setAttribute(subscriber, subscription, "RptEna", "true");
    subscription.enabled = status == statusGood;
    return subscription.enabled && subscriber.session.options.gi
               ? setAttribute(subscriber, subscription, "GI", "true")
               : status;
}

// RptID of reports of a block without one: its own reference.
bool isNamed(const ReportBlock &block, const std::string &rptId) {
    const std::string own = attributeOctets(block, "RptID");
    const VariableName name = variableName(block.variable.reference);
    return rptId == own || (own.empty() && rptId == name.domain + "/" + name.item);
}

} // namespace

int subscribe(Subscriber &subscriber) {
    connectionOf(subscriber).unconfirmed = [&subscriber](View pdu) {
        subscriber.arrived.emplace_back(pdu.begin(), pdu.end());
    };
    int status = findSubscriptions(subscriber);
    for (const auto step : {findSet, take}) {
        for (Subscription &subscription : subscriber.subscriptions) {
            status = status == statusGood ? step(subscriber, subscription) : status;
        }
    }
    status = status == statusGood ? checkDistinct(subscriber) : status;
    for (Subscription &subscription : subscriber.subscriptions) {
        status = status == statusGood ? enable(subscriber, subscription) : status;
    }
    return status;
}

int unsubscribe(Subscriber &subscriber) {
    int status = statusGood;
    for (Subscription &subscription : subscriber.subscriptions) {
        const bool connected = connectionOf(subscriber).socket >= 0;
        if (subscription.enabled && connected) {
            status = std::max(status, setAttribute(subscriber, subscription, "RptEna", "false"));
        }
        if (subscription.reserved && connected) {
            // A server that frees a block when it is disabled may have given it to another client by
            // now, and refuses.
            writeAttribute(connectionOf(subscriber), subscription.block, "Resv", "false");
        }
        subscription.enabled = subscription.reserved = false;
    }
    connectionOf(subscriber).unconfirmed = nullptr;
    return status;
}

Subscription *subscriptionOf(Subscriber &subscriber, const Report &report) {
    Subscription *found = nullptr;
    for (Subscription &subscription : subscriber.subscriptions) {
        const std::string set = attributeOctets(subscription.block, "DatSet");
        if (!isNamed(subscription.block, report.rptId) || (!report.datSet.empty() && report.datSet != set)) {
            continue;
        }
        if (found) {
            return nullptr;
        }
        found = &subscription;
    }
    return found;
}

std::string misfit(const Subscription &subscription, const Report &report) {
    const std::vector<Variable> &members = subscription.set->members;
    if (report.memberCount != members.size()) {
        return "it has " + std::to_string(report.memberCount) + " inclusion bits for the " +
               std::to_string(members.size()) + " members of the data set";
    }
    for (const ReportedMember &member : report.members) {
        const VariableName name = variableName(members[member.member].reference);
        const std::string own = name.domain + "/" + name.item;
        if (!member.reference.empty() && member.reference != own) {
            return "it names '" + member.reference + "' where the data set has " + own;
        }
    }
    return "";
}

u64 countMissing(Subscription &subscription, const Report &report) {
    const u64 numbers = isBuffered(subscription.block) ? 0x10000 : 0x100;
    if (!report.sqNum) {
        return 0;
    }
    const u64 missing =
        subscription.nextSqNum ? (*report.sqNum + numbers - *subscription.nextSqNum) % numbers : 0;
    // All segments of a report have its number.
    subscription.nextSqNum = (*report.sqNum + (report.moreFollows ? 0 : 1)) % numbers;
    return missing;
}

int tryAttribute(Subscriber &subscriber, const Subscription &subscription, const std::string &name,
                 const std::string &text, i64 &error) {
    const std::optional<i64> result =
        writeAttribute(connectionOf(subscriber), subscription.block, name, text);
    error = result.value_or(-1);
    return result ? statusGood : fail(subscriber.session, blockName(subscription.block));
}

int setAttribute(Subscriber &subscriber, const Subscription &subscription, const std::string &name,
                 const std::string &text) {
    i64 error = -1;
    const int status = tryAttribute(subscriber, subscription, name, text, error);
    return status != statusGood || error < 0 ? status : refused(subscriber, subscription, name, error);
}

int refused(Subscriber &subscriber, const Subscription &subscription, const std::string &name, i64 error) {
    ReportBlock now = subscription.block;
    if (readAgain(subscriber.session.model, now) && !subscription.enabled &&
        (isTrue(now, "RptEna") || (isTrue(now, "Resv") && !subscription.reserved))) {
        return fail(statusRefused, usedText(now));
    }
    return fail(statusRefused,
                name + " of " + blockName(now) + " was not written: " + dataAccessError(error) +
                    (error == valueInvalid ? "; it is " + attributeText(now, name) + " now" : ""));
}

} // namespace ied::client
