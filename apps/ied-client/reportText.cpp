#include "ied-client/reportText.h"

#include "ied-client/quantity.h"

namespace ied::client {

namespace {

std::string times(u64 count, const char *what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string indented(const std::string &lines) {
    std::string text;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = lines.find('\n', at);
        text += "  " + lines.substr(at, end - at) + "\n";
        at = end + 1;
    }
    return text;
}

} // namespace

std::string reportText(const ShownReport &shown, const Style &style) {
    const Report &report = *shown.report;
    std::string text = shown.block;
    if (report.timeOfEntry) {
        text += "  " + localTime(static_cast<f64>(*report.timeOfEntry) / 1000);
    }
    if (report.sqNum) {
        text += "  SqNum " + std::to_string(*report.sqNum);
    }
    if (!report.entryId.empty()) {
        text += "  entry " + hexDigits(report.entryId);
    }
    if (report.subSqNum && (*report.subSqNum > 0 || report.moreFollows)) {
        text += "  segment " + std::to_string(*report.subSqNum) + (report.moreFollows ? ", more follow" : "");
    }
    text += "\n";
    if (shown.missing > 0) {
        text += "  ! gap: " + times(shown.missing, "report") + " before this one did not arrive\n";
    }
    if (report.bufOvfl.value_or(false)) {
        text += "  ! buffer overflow: entries before this one were lost\n";
    }
    Style inner = style;
    inner.width = style.width > 2 ? style.width - 2 : style.width;
    return text + indented(rowsText(shown.rows, inner));
}

std::string reportJson(const ShownReport &shown) {
    const Report &report = *shown.report;
    std::string text = "{\"block\":" + jsonString(shown.block) + ",\"rptId\":" + jsonString(report.rptId);
    const auto number = [&text](const char *name, const std::optional<u64> &value) {
        text += value ? ",\"" + std::string(name) + "\":" + std::to_string(*value) : "";
    };
    number("sqNum", report.sqNum);
    if (report.timeOfEntry) {
        text += ",\"timeOfEntry\":" + jsonString(isoTime(static_cast<f64>(*report.timeOfEntry) / 1000));
    }
    if (!report.datSet.empty()) {
        text += ",\"dataSet\":" + jsonString(report.datSet);
    }
    if (report.bufOvfl) {
        text += std::string(",\"bufOvfl\":") + (*report.bufOvfl ? "true" : "false");
    }
    if (!report.entryId.empty()) {
        text += ",\"entryId\":" + jsonString(hexDigits(report.entryId));
    }
    number("confRev", report.confRev);
    number("subSqNum", report.subSqNum);
    if (report.subSqNum) {
        text += std::string(",\"moreFollows\":") + (report.moreFollows ? "true" : "false");
    }
    if (report.sqNum) {
        text += ",\"missing\":" + std::to_string(shown.missing);
    }
    text += ",\"values\":[";
    for (std::size_t i = 0; i < shown.rows.size(); ++i) {
        text += (i > 0 ? "," : "") + rowJson(shown.rows[i]);
    }
    return text + "]}";
}

std::string summaryText(const std::string &block, u64 reports, const std::optional<EntryPoint> &last) {
    const std::string text = (reports == 0 ? "no reports" : times(reports, "report")) + " of " + block;
    return last ? text + "; to go on: --resume " + entryText(*last) : text;
}

} // namespace ied::client
