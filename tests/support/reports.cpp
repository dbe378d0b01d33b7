#include "tests/support/reports.h"

#include <algorithm>

namespace ied::test {

namespace {

// One element of a hex text: its tag, content, and the text with both.
struct Element {
    std::string tag;
    std::string content;
    std::string whole;
};

std::optional<std::vector<Element>> elementsOf(const std::string &hex) {
    std::vector<Element> elements;
    for (std::size_t at = 0; at < hex.size();) {
        if (at + 4 > hex.size()) {
            return std::nullopt;
        }
        const std::size_t start = at;
        std::size_t length = std::stoul(hex.substr(at + 2, 2), nullptr, 16);
        at += 4;
        if (length >= 0x80) {
            const std::size_t digits = 2 * (length - 0x80);
            if (digits == 0 || digits > 8 || at + digits > hex.size()) {
                return std::nullopt;
            }
            length = std::stoul(hex.substr(at, digits), nullptr, 16);
            at += digits;
        }
        if (at + 2 * length > hex.size()) {
            return std::nullopt;
        }
        elements.push_back(
            {hex.substr(start, 2), hex.substr(at, 2 * length), hex.substr(start, at + 2 * length - start)});
        at += 2 * length;
    }
    return elements;
}

// The only element of a text, which has that tag; nothing otherwise.
std::optional<std::string> inside(const std::optional<std::string> &hex, std::string_view tag) {
    const auto elements = hex ? elementsOf(*hex) : std::nullopt;
    if (!elements || elements->size() != 1 || elements->front().tag != tag) {
        return std::nullopt;
    }
    return elements->front().content;
}

// Takes the parts of a report one by one.
struct Parts {
    std::vector<Element> elements;
    std::size_t next = 0;
    bool sound = true;

    std::string take(std::string_view tag) {
        if (next >= elements.size() || elements[next].tag != tag) {
            sound = false;
            return "";
        }
        return elements[next++].content;
    }
    unsigned takeNumber(std::string_view tag) {
        const std::string content = take(tag);
        return content.empty() ? 0 : static_cast<unsigned>(std::stoul(content, nullptr, 16));
    }
};

std::vector<bool> bitsOf(const std::string &content) {
    std::vector<bool> bits;
    if (content.size() < 2) {
        return bits;
    }
    const std::size_t unused = std::stoul(content.substr(0, 2), nullptr, 16);
    for (std::size_t at = 2; at + 2 <= content.size(); at += 2) {
        const unsigned long octet = std::stoul(content.substr(at, 2), nullptr, 16);
        for (unsigned bit = 0; bit < 8; bit++) {
            bits.push_back((octet >> (7 - bit) & 1) != 0);
        }
    }
    bits.resize(bits.size() > unused ? bits.size() - unused : 0);
    return bits;
}

// The results of an InformationReport whose list is named RPT.
std::optional<std::vector<Element>> resultsOf(const std::string &mmsPdu) {
    const auto service = inside(inside(mmsPdu, "A3"), "A0");
    const auto report = service ? elementsOf(*service) : std::nullopt;
    if (!report || report->size() != 2 || (*report)[0].whole != canonical("A1 05 80 03 52 50 54") ||
        (*report)[1].tag != "A0") {
        return std::nullopt;
    }
    return elementsOf((*report)[1].content);
}

bool has(const Report &report, unsigned bit) {
    return (report.optFlds & bit) != 0;
}

// What stands in front of the inclusion bits.
void takeHead(Parts &parts, Report &report) {
    report.rptId = parts.take("8A");
    const std::string options = parts.take("84");
    if (options.size() != 6 || !options.starts_with("06")) {
        parts.sound = false;
        return;
    }
    report.optFlds = static_cast<unsigned>(std::stoul(options.substr(2), nullptr, 16));
    if (has(report, 0x4000)) {
        report.sqNum = parts.takeNumber("86");
    }
    if (has(report, 0x2000)) {
        report.time = parts.take("8C");
    }
    if (has(report, 0x800)) {
        report.dataSet = parts.take("8A");
    }
    if (has(report, 0x200)) {
        report.bufOvfl = parts.takeNumber("83") != 0;
    }
    if (has(report, 0x100)) {
        const std::string id = parts.take("89");
        report.entryId = id.size() == 16 ? std::stoull(id, nullptr, 16) : 0;
    }
    if (has(report, 0x80)) {
        report.confRev = parts.takeNumber("86");
    }
    if (has(report, 0x40)) {
        parts.take("86");
        parts.take("83");
    }
}

// References, values and reasons of the members that are included.
void takeMembers(Parts &parts, Report &report) {
    report.included = bitsOf(parts.take("84"));
    const auto members =
        static_cast<std::size_t>(std::count(report.included.begin(), report.included.end(), true));
    for (std::size_t i = 0; has(report, 0x400) && i < members; i++) {
        report.references.push_back(parts.take("8A"));
    }
    for (std::size_t i = 0; i < members && parts.next < parts.elements.size(); i++) {
        report.values.push_back(parts.elements[parts.next++].whole);
    }
    for (std::size_t i = 0; has(report, 0x1000) && i < members; i++) {
        report.reasons.push_back(parts.take("84"));
    }
    parts.sound = parts.sound && report.values.size() == members;
}

} // namespace

std::optional<Report> reportOf(const std::string &mmsPdu) {
    auto results = resultsOf(mmsPdu);
    if (!results) {
        return std::nullopt;
    }
    Parts parts{std::move(*results)};
    Report report;
    takeHead(parts, report);
    takeMembers(parts, report);
    const bool whole = parts.sound && parts.next == parts.elements.size();
    return whole ? std::optional(report) : std::nullopt;
}

std::optional<Report> receiveReport(RawClient &client, Milliseconds limit) {
    while (const auto mms = receiveMms(client, limit)) {
        if (const auto report = reportOf(*mms)) {
            return report;
        }
    }
    return std::nullopt;
}

bool writeAttribute(RawClient &client, const std::string &block, const std::string &attribute,
                    const std::string &data, std::vector<Report> *reports) {
    const std::size_t slash = block.find('/');
    sendHex(client,
            dataFrame(write(1, block.substr(0, slash), block.substr(slash + 1) + "$" + attribute, data)));
    while (const auto mms = receiveMms(client)) {
        const auto report = reportOf(*mms);
        if (!report) {
            return *mms == canonical("A1 07 02 01 01 A5 02 81 00");
        }
        if (reports != nullptr) {
            reports->push_back(*report);
        }
    }
    return false;
}

} // namespace ied::test
