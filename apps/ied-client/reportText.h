// A report as text for people and as JSON for programs.
#pragma once

#include "ied-client/format.h"
#include "ied-client/report.h"

namespace ied::client {

struct ShownReport {
    std::string block; // its reference
    const Report *report = nullptr;
    std::vector<Row> rows; // the members that are included
    u64 missing = 0;       // reports between the last one and this
};

// Lines of a report: what it is, then the gaps and overflows before it, then its rows.
std::string reportText(const ShownReport &shown, const Style &style);

// A report as one JSON object in one line.
std::string reportJson(const ShownReport &shown);

// How many reports of a block came, and what continues behind the last one.
std::string summaryText(const std::string &block, u64 reports, const std::optional<EntryPoint> &last);

} // namespace ied::client
