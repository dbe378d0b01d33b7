#include "ied-client/reportBits.h"

#include "ied-client/reference.h"

#include <algorithm>

namespace ied::client {

namespace {

constexpr BitName trgOpsTable[] = {
    {1, "dchg", "data-change"},
    {2, "qchg", "quality-change"},
    {3, "dupd", "data-update"},
    {4, "period", "integrity"},
    {5, "gi", "GI"},
};
// Named as in SCL (IEC 61850-6 9.3.8), with the names of IEC 61850-7-2 beside.
constexpr BitName optFldsTable[] = {
    {optSqNum, "seqNum", "sequence-number"},
    {optTimeOfEntry, "timeStamp", "report-time-stamp"},
    {optReason, "reasonCode", "reason-for-inclusion"},
    {optDatSet, "dataSet", "data-set-name"},
    {optDataReference, "dataRef", "data-reference"},
    {optBufOvfl, "bufOvfl", "buffer-overflow"},
    {optEntryId, "entryID", "EntryID"},
    {optConfRev, "configRef", "conf-revision"},
    {optSegmentation, "segmentation", nullptr},
};
constexpr BitName reasonTable[] = {
    {1, "data-change", nullptr}, {2, "quality-change", nullptr},        {3, "data-update", nullptr},
    {4, "integrity", nullptr},   {5, "general-interrogation", nullptr}, {6, "application-trigger", nullptr},
};

const BitName *named(const std::string &text, std::span<const BitName> names) {
    const auto row = std::find_if(names.begin(), names.end(), [&](const BitName &name) {
        return text == name.name || (name.alias && text == name.alias);
    });
    return row == names.end() ? nullptr : &*row;
}

std::string allNames(std::span<const BitName> names) {
    std::string text;
    for (const BitName &name : names) {
        text += (text.empty() ? "" : ",") + std::string(name.name);
    }
    return text;
}

} // namespace

const std::span<const BitName> trgOpsNames = trgOpsTable;
const std::span<const BitName> optFldsNames = optFldsTable;
const std::span<const BitName> reasonNames = reasonTable;

bool isSet(const std::string &bits, unsigned bit) {
    return bit < bits.size() && bits[bit] == '1';
}

std::string bitsText(const std::string &bits, std::span<const BitName> names, const char *separator) {
    std::string text;
    for (unsigned bit = 0; bit < bits.size(); ++bit) {
        if (!isSet(bits, bit)) {
            continue;
        }
        const auto row =
            std::find_if(names.begin(), names.end(), [bit](const BitName &name) { return name.bit == bit; });
        text += (text.empty() ? "" : separator) +
                (row == names.end() ? "bit " + std::to_string(bit) : std::string(row->name));
    }
    return text.empty() ? "none" : text;
}

std::optional<std::string> parseBitNames(const std::string &text, std::span<const BitName> names,
                                         std::string &why) {
    const std::size_t count = names.back().bit + 1;
    std::string bits(count, '0');
    if (text == "none") {
        return bits;
    }
    if (text.size() == count && text.find_first_not_of("01") == std::string::npos) {
        return text;
    }
    for (const std::string &part : split(text == "all" ? allNames(names) : text, ',')) {
        const BitName *name = named(part, names);
        if (!name) {
            why = "'" + part + "' is none of " + allNames(names) + "; all, none or " + std::to_string(count) +
                  " binary digits may be written too";
            return std::nullopt;
        }
        bits[name->bit] = '1';
    }
    return bits;
}

} // namespace ied::client
