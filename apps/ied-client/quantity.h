// What turns octets into quantities for people: units, quality and time of IEC 61850-7-3.
#pragma once

#include "ied-client/value.h"

#include <optional>
#include <string>

namespace ied::client {

// Symbol of a SIUnit code with its multiplier (IEC 61850-7-3 tables A.1 and A.2), such as "kW";
// percent for the dimensionless unit in hundredths. Empty for a plain number.
std::string unitSymbol(i64 siUnit, i64 multiplier);

// Unit of a `units` structure {SIUnit, multiplier}.
std::string unitSymbol(const Value &units, const Type &type);

// Quality of 13 bits: "good", or validity and details, such as "invalid, overflow, test".
std::string qualityText(const Value &quality);

// UtcTime in seconds since 1970, and BinaryTime (TimeOfDay since 1984) likewise.
std::optional<f64> secondsOf(const Value &time);

// "2026-11-24 22:36:00.123" in local time; ISO 8601 in UTC with "Z" for machines.
std::string localTime(f64 seconds);
std::string isoTime(f64 seconds);
// Milliseconds since 1970 of what isoTime writes; nothing for another text.
std::optional<i64> parseIsoTime(const std::string &text);

} // namespace ied::client
