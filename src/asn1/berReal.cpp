// REAL (ISO 8825-1 8.5).
#include "asn1/asnKinds.h"

#include <cmath>
#include <limits>

namespace ied::asn {

namespace {

constexpr u8 plusInfinity = 0x40, minusInfinity = 0x41, notANumber = 0x42;

// The mantissa of a number in [0.5, 1) as octets behind a binary point, without trailing zeros;
// returns their count.
u32 mantissaOctets(f64 fraction, u8 octets[8]) {
    u32 count = 0;
    while (fraction != 0 && count < 8) {
        fraction *= 256;
        octets[count] = static_cast<u8>(fraction);
        fraction -= octets[count++];
    }
    return count;
}

// Sign-extended exponent of `octets` octets, which are there. Beyond four octets no finite number
// of this width is meant.
i32 takeExponent(Reader &reader, u32 octets) {
    AsnInt exponent = 0;
    if (octets > 4) {
        berFail(-68, "BDecAsnRealContent: ERROR - unsupported base for a binary real number.\n");
    }
    Integer::decode(reader, 0, octets, &exponent);
    return exponent;
}

} // namespace

u32 Real::encode(GenBuf *gen, const AsnReal *value) {
    if (*value == 0) {
        return 0;
    }
    if (!std::isfinite(*value)) {
        putOctet(gen, std::isnan(*value) ? notANumber : *value > 0 ? plusInfinity : minusInfinity);
        return 1;
    }
    u8 octets[8];
    int exponent = 0;
    const u32 mantissa = mantissaOctets(std::frexp(std::fabs(*value), &exponent), octets);
    putOctets(gen, octets, mantissa);
    const AsnInt scaled = exponent - static_cast<AsnInt>(8 * mantissa);
    const u32 exponentOctets = Integer::encode(gen, &scaled);
    putOctet(gen, static_cast<u8>(0x80 | (*value < 0 ? 0x40 : 0) | (exponentOctets - 1)));
    return 1 + exponentOctets + mantissa;
}

void Real::decode(Reader &reader, u32, u32 len, AsnReal *value) {
    if (len == berIndefinite) {
        berFail(-66, "BDecAsnRealContent: ERROR - indefinite length on primitive.\n");
    }
    if (len > left(reader)) {
        berFail(-70, "BDecAsnRealContent: ERROR - decoded past end of data\n");
    }
    *value = 0;
    if (len == 0) {
        return;
    }
    const u8 *end = reader.block->curr + len;
    const u8 first = *reader.block->curr++;
    if (len == 1 || (first & 0xC0) == 0x40) {
        if (len != 1 || (first != plusInfinity && first != minusInfinity)) {
            berFail(-67, "BDecAsnRealContent: ERROR - unrecognized real number of length 1 octet.\n");
        }
        const f64 infinity = std::numeric_limits<f64>::infinity();
        *value = first == plusInfinity ? infinity : -infinity;
        return;
    }
    if (!(first & 0x80)) {
        berFail(-69, "BDecAsnRealContent: ERROR - decimal REAL form is not currently supported\n");
    }
    constexpr int bitsOfBase[] = {1, 3, 4, 0}; // 2, 8, 16, reserved
    const int bits = bitsOfBase[first >> 4 & 3];
    if (bits == 0) {
        berFail(-68, "BDecAsnRealContent: ERROR - unsupported base for a binary real number.\n");
    }
    const u32 exponentOctets = (first & 3) < 3 ? (first & 3) + u32{1} : *reader.block->curr++;
    if (exponentOctets > static_cast<u32>(end - reader.block->curr)) {
        berFail(-70, "BDecAsnRealContent: ERROR - decoded past end of data\n");
    }
    const i64 exponent = i64{takeExponent(reader, exponentOctets)} * bits + (first >> 2 & 3);
    f64 mantissa = 0;
    while (reader.block->curr < end) {
        mantissa = mantissa * 256 + *reader.block->curr++;
    }
    constexpr i64 limit = 100000; // far beyond every finite number, within the exponent's type
    const int shift = static_cast<int>(exponent > limit ? limit : exponent < -limit ? -limit : exponent);
    *value = std::ldexp(first & 0x40 ? -mantissa : mantissa, shift);
}

} // namespace ied::asn
