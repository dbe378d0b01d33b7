// The widths that the wire, the files and the shared region prescribe, under short names.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ied {

using u8 = std::uint8_t;
using u16 = std::uint16_t;
using u32 = std::uint32_t;
using u64 = std::uint64_t;
using i8 = std::int8_t;
using i16 = std::int16_t;
using i32 = std::int32_t;
using i64 = std::int64_t;
using f32 = float;
using f64 = double;

// Instant as the clock device gives it and as every timed field of the model holds it.
struct TimeStamp {
    u32 sec; // seconds since 1970-01-01 00:00:00 UTC
    u32 ms;  // milliseconds of that second, 0 to 999
    u8 tq;   // time quality octet of IEC 61850-8-1 UtcTime
};

} // namespace ied
