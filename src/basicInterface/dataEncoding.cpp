#include "basicInterface/memory.h"
#include "basicInterface/sharedText.h"
#include "basicInterface/shorts.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace ied {

namespace {

constexpr u32 maxSec = ~u32{0};
constexpr u32 secondsPerDay = 86400;
constexpr u32 firstEntryDay = 5113;         // 1984-01-01, counted from 1970-01-01
constexpr u32 firstEntrySecond = 441763200; // the same in seconds
constexpr u8 entryTimeQuality = 10;         // accuracy class of a time that came without one

void storeBe32(u8 *out, u32 value) {
    for (int i = 3; i >= 0; --i, value >>= 8) {
        out[i] = static_cast<u8>(value);
    }
}

u32 loadBe32(const u8 *in) {
    return u32{in[0]} << 24 | u32{in[1]} << 16 | u32{in[2]} << 8 | u32{in[3]};
}

// The time with its milliseconds below 1000: what is more goes to the seconds, which stop at the end
// of their range.
TimeStamp carried(u64 sec, u64 ms, u8 tq) {
    sec += ms / 1000;
    if (sec > maxSec) {
        return {maxSec, 999, tq};
    }
    return {static_cast<u32>(sec), static_cast<u32>(ms % 1000), tq};
}

// A new block of `length` octets, or the caller's.
void takeBlock(AsnOcts *octs, u32 length, bool alloc) {
    if (alloc) {
        octs->octs = static_cast<u8 *>(Malloc(length));
    }
    octs->octetLen = length;
}

void float32Bytes(std::array<u8, 4> &bytes) {
    if (externGlbCfg.hostLittleEndian != 0) {
        std::reverse(bytes.begin(), bytes.end());
    }
}

} // namespace

void fp2Octs(AsnOcts *octs, f32 value, bool alloc) {
    takeBlock(octs, 5, alloc);
    auto bytes = std::bit_cast<std::array<u8, 4>>(value);
    float32Bytes(bytes);
    octs->octs[0] = 8;
    std::memcpy(octs->octs + 1, bytes.data(), bytes.size());
}

void octs2Fp(f32 *value, const AsnOcts *octs) {
    if (octs->octs == nullptr || octs->octetLen < 2) {
        return;
    }
    std::array<u8, 4> bytes = {};
    std::memcpy(bytes.data(), octs->octs + 1, std::min<std::size_t>(octs->octetLen - 1, bytes.size()));
    float32Bytes(bytes);
    *value = std::bit_cast<f32>(bytes);
}

void timestamp2Octs(AsnOcts *octs, const TimeStamp *timeStamp, bool alloc) {
    takeBlock(octs, 8, alloc);
    const TimeStamp time = carried(timeStamp->sec, timeStamp->ms, timeStamp->tq);
    const auto fraction = static_cast<u32>(static_cast<f32>(time.ms / 1000.0) * 4294967296.0F);
    storeBe32(octs->octs + 4, fraction);
    storeBe32(octs->octs, time.sec);
    octs->octs[7] = time.tq;
}

void octs2Timestamp(TimeStamp *timeStamp, const AsnOcts *octs) {
    if (octs->octs == nullptr || octs->octetLen < 8) {
        return;
    }
    const u32 fraction = loadBe32(octs->octs + 4) >> 8;
    const f32 exact = static_cast<f32>(fraction) * std::bit_cast<f32>(u32{0x387A0000}); // 1000 / 2^24
    auto ms = static_cast<u32>(exact);
    if (exact - static_cast<f32>(ms) > 0.5F) {
        ++ms;
    }
    *timeStamp = carried(loadBe32(octs->octs), ms, octs->octs[7]);
}

void timestamp2Bittime(AsnOcts *octs, const TimeStamp *timeStamp, bool alloc) {
    takeBlock(octs, 6, alloc);
    const TimeStamp time = carried(timeStamp->sec, timeStamp->ms, timeStamp->tq);
    const u32 days = time.sec / secondsPerDay;
    const bool known = days > firstEntryDay;
    storeBe32(octs->octs, known ? time.sec % secondsPerDay * 1000 + time.ms : 0);
    enc_short(octs->octs + 4, static_cast<u16>(known ? days - firstEntryDay : 0));
}

bool bittime2Timestamp(const AsnOcts *octs, TimeStamp *timeStamp) {
    if (octs == nullptr || timeStamp == nullptr || octs->octetLen != 6 || octs->octs == nullptr) {
        return false;
    }
    const u64 days = dec_short(octs->octs + 4);
    *timeStamp = carried(days * secondsPerDay + firstEntrySecond, loadBe32(octs->octs), entryTimeQuality);
    return true;
}

void int2Bits8(AsnBits *bits, u8 value, u32 length, bool alloc) {
    if (alloc) {
        bits->bitLen = length;
        bits->bits = static_cast<u8 *>(Malloc(1));
    }
    bits->bits[0] = value;
}

void int2Bits16(AsnBits *bits, u16 value, u32 length, bool alloc) {
    bits->bitLen = length;
    if (alloc) {
        bits->bits = static_cast<u8 *>(Malloc(2));
    }
    enc_short(bits->bits, value);
}

u8 bits2Int8(const AsnBits *bits) {
    return bits->bits == nullptr || bits->bitLen == 0 ? u8{0} : bits->bits[0];
}

u16 bits2Int16(const AsnBits *bits) {
    return static_cast<u16>(bits2Int8(bits) << 8 |
                            (bits->bits != nullptr && bits->bitLen > 8 ? bits->bits[1] : 0));
}

void str2Octs(AsnOcts *octs, const char *text, bool alloc) {
    if (alloc) {
        octs->octetLen = sharedTextLength(text, maxSec - 1);
        octs->octs = static_cast<u8 *>(Malloc(octs->octetLen + 1));
    }
    const u32 copied = copySharedText(octs->octs, text, octs->octetLen);
    std::memset(octs->octs + copied, 0, octs->octetLen - copied);
}

void str2OctsLen(const char *text, u32 capacity, bool alloc, AsnOcts *octs) {
    if (alloc) {
        octs->octs = static_cast<u8 *>(Malloc(capacity + 1));
    }
    octs->octetLen = copySharedText(octs->octs, text, capacity);
    octs->octs[octs->octetLen] = 0;
}

bool octs2Str(char *target, const AsnOcts *octs, u32 max) {
    if (octs->octetLen > max) {
        return false;
    }
    storeSharedText(target, octs->octs, octs->octetLen);
    return true;
}

void octsCopy(AsnOcts *target, const AsnOcts *source) {
    Free(target->octs);
    *target = {source->octetLen, static_cast<u8 *>(Malloc(source->octetLen + std::size_t{1}))};
    if (source->octetLen != 0) {
        std::memcpy(target->octs, source->octs, source->octetLen);
    }
}

bool fp32Cmp(f32 a, f32 b, u32 tolerance) {
    const u32 left = std::bit_cast<u32>(a);
    const u32 right = std::bit_cast<u32>(b);
    if ((left ^ right) >> 31 != 0) {
        return false;
    }
    return (left > right ? left - right : right - left) <= tolerance;
}

} // namespace ied
