// Reports of a server as a test sees them: the parts of an InformationReport, in hex.
#pragma once

#include "tests/support/rawMms.h"

namespace ied::test {

struct Report {
    std::string rptId; // as ASCII in hex
    unsigned optFlds = 0;
    std::optional<unsigned> sqNum;
    std::optional<std::string> time;    // binary-time
    std::optional<std::string> dataSet; // as ASCII in hex
    std::optional<bool> bufOvfl;
    std::optional<std::uint64_t> entryId;
    std::optional<unsigned> confRev;
    std::vector<bool> included;
    std::vector<std::string> references; // as ASCII in hex
    std::vector<std::string> values;     // whole elements
    std::vector<std::string> reasons;    // contents of the bit strings
};

// The report in an MMS PDU; nothing if it is none, or if its parts do not follow IEC 61850-8-1 17.2.
std::optional<Report> reportOf(const std::string &mmsPdu);

// Next report of the server; answers of requests that come before it are dropped.
std::optional<Report> receiveReport(RawClient &client, Milliseconds limit = generous);

// Writes one attribute of a control block "LD/LN$BR$name"; true for success. Reports that come before
// the answer are added to `reports`, or dropped.
bool writeAttribute(RawClient &client, const std::string &block, const std::string &attribute,
                    const std::string &data, std::vector<Report> *reports = nullptr);

} // namespace ied::test
