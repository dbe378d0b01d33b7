#include "ied-client/reportBits.h"

#include "ied-client/reference.h"

#include <algorithm>

namespace ied::client {

namespace {

constexpr BitName trgOpsTable[] = {
    {trgDataChange, "dchg", "data-change"},
    {trgQualityChange, "qchg", "quality-change"},
    {trgDataUpdate, "dupd", "data-update"},
    {trgIntegrity, "period", "integrity"},
    {trgGi, "gi", "GI"},
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
    {trgDataChange, "data-change", nullptr},   {trgQualityChange, "quality-change", nullptr},
    {trgDataUpdate, "data-update", nullptr},   {trgIntegrity, "integrity", nullptr},
    {trgGi, "general-interrogation", nullptr}, {reasonApplicationTrigger, "application-trigger", nullptr},
};

const BitName *named(const std::string &text, std::span<const BitName> names) {
    const auto row = std::find_if(names.begin(), names.end(), [&](const BitName &name) {
        return text == name.name || (name.alias && text == name.alias);
    });
    return row == names.end() ? nullptr : &*row;
}

std::size_t bitCount(std::span<const BitName> names) {
    return names.back().bit + 1;
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

std::string bitNamesText(std::span<const BitName> names) {
    std::string text;
    for (const BitName &name : names) {
        text += (text.empty() ? "" : ", ") + std::string(name.name) +
                (name.alias ? " (" + std::string(name.alias) + ")" : "");
    }
    return text + "; all, none or " + std::to_string(bitCount(names)) + " binary digits";
}

std::optional<std::string> parseBitNames(const std::string &text, std::span<const BitName> names,
                                         std::string &why) {
    std::string bits(bitCount(names), '0');
    if (text == "none") {
        return bits;
    }
    if (text == "all") {
        for (const BitName &name : names) {
            bits[name.bit] = '1';
        }
        return bits;
    }
    if (text.size() == bits.size() && text.find_first_not_of("01") == std::string::npos) {
        return text;
    }
    for (const std::string &part : split(text, ',')) {
        const BitName *name = named(part, names);
        if (!name) {
            why = "'" + part + "' is none of " + bitNamesText(names);
            return std::nullopt;
        }
        bits[name->bit] = '1';
    }
    return bits;
}

} // namespace ied::client
