// Times as texts.
#pragma once

#include "asn1/berTypes.h"

#include <ctime>

namespace ied {

// GeneralizedTime "YYYYMMDDhhmmssZ" of 15 heap octets; changes `tm` to full year and month.
void generalizeTime(AsnOcts *octs, std::tm *tm);
// "YYYY-MM-DD hh:mm:ss.mmm" in local time; null takes the clock.
void sprintTime(const TimeStamp *timestamp, u32 size, char *out);

} // namespace ied
