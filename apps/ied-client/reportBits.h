// The bit strings of report control by the names of their bits: TrgOps, OptFlds and the reasons for
// inclusion (IEC 61850-7-2 17.2.3, IEC 61850-8-1 8.1.3). A bit string is a text of '0' and '1', bit 0 first.
#pragma once

#include <optional>
#include <span>
#include <string>

namespace ied::client {

struct BitName {
    unsigned bit;
    const char *name;
    const char *alias; // another spelling that is understood, or null
};

// A reason for inclusion has the bit of its trigger.
enum TrgOpsBit : unsigned {
    trgDataChange = 1,
    trgQualityChange = 2,
    trgDataUpdate = 3,
    trgIntegrity = 4,
    trgGi = 5
};
enum OptFldsBit : unsigned {
    optSqNum = 1,
    optTimeOfEntry = 2,
    optReason = 3,
    optDatSet = 4,
    optDataReference = 5,
    optBufOvfl = 6,
    optEntryId = 7,
    optConfRev = 8,
    optSegmentation = 9
};
constexpr unsigned reasonApplicationTrigger = 6;

extern const std::span<const BitName> trgOpsNames;
extern const std::span<const BitName> optFldsNames;
extern const std::span<const BitName> reasonNames;

// Whether a bit is there and set.
bool isSet(const std::string &bits, unsigned bit);

// Names of the bits that are set, between `separator`; "none" without any. A bit without a name is
// "bit N".
std::string bitsText(const std::string &bits, std::span<const BitName> names, const char *separator = ",");

// What parseBitNames takes: "dchg (data-change), ...; all, none or 6 binary digits".
std::string bitNamesText(std::span<const BitName> names);

// Bits from names between commas, from "none", from "all", or from binary digits; the result has
// one digit for each bit up to the last that has a name. Nothing for another text; `why` then says
// what can be written.
std::optional<std::string> parseBitNames(const std::string &text, std::span<const BitName> names,
                                         std::string &why);

} // namespace ied::client
