#include "ied-client/report.h"

#include "ied-client/format.h"
#include "ied-client/quantity.h"
#include "ied-client/reportBits.h"

#include <cmath>

namespace ied::client {

namespace {

// The results of a report one behind the other; the first that is not what belongs there is the
// fault.
struct Walk {
    std::vector<AccessResult> results;
    std::size_t at = 0;
    std::string why;
};

// Next result, of one of two kinds.
Value takeValue(Walk &walk, Kind kind, Kind otherKind, const char *name) {
    if (!walk.why.empty()) {
        return {};
    }
    if (walk.at >= walk.results.size()) {
        walk.why = std::string("it ends before ") + name;
        return {};
    }
    std::optional<Value> &value = walk.results[walk.at++].value;
    if (!value || (value->kind != kind && value->kind != otherKind)) {
        walk.why = std::string("another kind of value stands in place of ") + name;
        return {};
    }
    return std::move(*value);
}

Value takeValue(Walk &walk, Kind kind, const char *name) {
    return takeValue(walk, kind, kind, name);
}

u64 takeNumber(Walk &walk, const char *name) {
    const Value value = takeValue(walk, Kind::unsignedInt, Kind::integer, name);
    return value.kind == Kind::integer ? static_cast<u64>(value.integer) : value.unsignedInt;
}

std::string takeText(Walk &walk, const char *name) {
    return takeValue(walk, Kind::visibleString, Kind::mmsString, name).octets;
}

// The components in front of the inclusion bits, in the order of IEC 61850-8-1.
void takeHead(Walk &walk, Report &report) {
    report.rptId = takeText(walk, "RptID");
    report.optFlds = takeValue(walk, Kind::bitString, "OptFlds").octets;
    const std::string &options = report.optFlds;
    if (isSet(options, optSqNum)) {
        report.sqNum = takeNumber(walk, "SqNum");
    }
    if (isSet(options, optTimeOfEntry)) {
        report.timeOfEntry = entryMillis(takeValue(walk, Kind::binaryTime, Kind::utcTime, "TimeOfEntry"));
    }
    if (isSet(options, optDatSet)) {
        report.datSet = takeText(walk, "DatSet");
    }
    if (isSet(options, optBufOvfl)) {
        report.bufOvfl = takeValue(walk, Kind::boolean, "BufOvfl").integer != 0;
    }
    if (isSet(options, optEntryId)) {
        report.entryId = takeValue(walk, Kind::octetString, "EntryID").octets;
    }
    if (isSet(options, optConfRev)) {
        report.confRev = takeNumber(walk, "ConfRev");
    }
    if (isSet(options, optSegmentation)) {
        report.subSqNum = takeNumber(walk, "SubSeqNum");
        report.moreFollows = takeValue(walk, Kind::boolean, "MoreSegmentsFollow").integer != 0;
    }
}

// References, values and reasons: three lists of one entry a member that is included.
void takeMembers(Walk &walk, Report &report) {
    const std::string inclusion = takeValue(walk, Kind::bitString, "the inclusion bits").octets;
    report.memberCount = inclusion.size();
    for (std::size_t i = 0; i < inclusion.size(); ++i) {
        if (inclusion[i] == '1') {
            report.members.push_back({i, "", {}, ""});
        }
    }
    if (isSet(report.optFlds, optDataReference)) {
        for (ReportedMember &member : report.members) {
            member.reference = takeText(walk, "a data reference");
        }
    }
    for (ReportedMember &member : report.members) {
        if (walk.why.empty() && walk.at >= walk.results.size()) {
            walk.why = "it ends before the last value";
        }
        if (walk.why.empty()) {
            member.result = std::move(walk.results[walk.at++]);
        }
    }
    if (isSet(report.optFlds, optReason)) {
        for (ReportedMember &member : report.members) {
            member.reason = takeValue(walk, Kind::bitString, "a reason").octets;
        }
    }
    if (walk.why.empty() && walk.at != walk.results.size()) {
        walk.why = "something follows behind its last component";
    }
}

Unconfirmed malformed(const std::string &why) {
    return {Unconfirmed::Kind::malformed, {}, why};
}

Unconfirmed parseReport(View results) {
    std::optional<std::vector<AccessResult>> list = accessResults(results);
    if (!list) {
        return malformed("a value that cannot be decoded");
    }
    Walk walk{std::move(*list), 0, ""};
    Unconfirmed out;
    out.kind = Unconfirmed::Kind::report;
    takeHead(walk, out.report);
    takeMembers(walk, out.report);
    return walk.why.empty() ? std::move(out) : malformed(walk.why);
}

} // namespace

Unconfirmed parseUnconfirmed(View pdu) {
    constexpr std::string_view reportList = "RPT"; // IEC 61850-8-1 17.2.3, vmd-specific
    Reader outer{pdu};
    Reader services{expect(outer, 0xA3)};
    const Element service = next(services);
    if (outer.failed || services.failed) {
        return malformed("no unconfirmed service");
    }
    Reader reader{service.content};
    const std::optional<Element> listName = service.tag == 0xA0 ? take(reader, 0xA1) : std::nullopt;
    if (!listName) {
        return {};
    }
    Reader nameReader{listName->content};
    const Element name = next(nameReader);
    const View results = expect(reader, 0xA0);
    if (nameReader.failed || reader.failed) {
        return malformed("no list of results");
    }
    return name.tag == 0x80 && toText(name.content) == reportList ? parseReport(results) : Unconfirmed{};
}

std::optional<i64> entryMillis(const Value &time) {
    const std::optional<f64> seconds = secondsOf(time);
    return seconds ? std::optional(std::llround(*seconds * 1000)) : std::nullopt;
}

std::string entryText(const EntryPoint &entry) {
    const std::string number = hexDigits(entry.octets);
    return entry.time ? number + "@" + isoTime(static_cast<f64>(*entry.time) / 1000) : number;
}

std::optional<EntryPoint> parseEntryPoint(const std::string &text, std::string &why) {
    Type type;
    type.kind = Kind::octetString;
    const std::size_t at = text.find('@');
    const std::optional<Value> number = parseValue(text.substr(0, at), type, why);
    why = "write ENTRYID or ENTRYID@TIME, as in 0000000000000005@2026-11-25T08:38:17.452Z";
    if (!number || number->octets.empty()) {
        return std::nullopt;
    }
    EntryPoint entry{number->octets, std::nullopt};
    if (at != std::string::npos) {
        entry.time = parseIsoTime(text.substr(at + 1));
        if (!entry.time) {
            return std::nullopt;
        }
    }
    return entry;
}

} // namespace ied::client
