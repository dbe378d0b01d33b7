// The primitives of ISO 8825-1, octets written by hand from its clauses.
#include "asn1/berTypes.h"
#include "basicInterface/memory.h"
#include "tests/support/asnTesting.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace ied::test {
namespace {

// `hex` holds the encodings of the values, in their order.
template <class T>
void expectBothWays(u32 encode(GenBuf *, const T *), void decode(GenBuf *, T *, u32 *, DecodeEnv *),
                    const std::vector<T> &values, const char *hex) {
    const std::vector<std::string> encodings = parts(hex, ' ');
    ASSERT_EQ(encodings.size(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(encoded<T>(encode, values[i]), encodings[i]);
        T back = 7;
        EXPECT_EQ(decodeError<T>(decode, encodings[i], back), 0) << encodings[i];
        EXPECT_EQ(back, values[i]);
    }
}

TEST(BerInteger, TakesTheShortestFormBothWays) {
    expectBothWays<AsnInt>(BEncAsnInt, BDecAsnInt,
                           {0, 127, 128, -1, -128, -129, 32767, 32768, -32769, 8388608, INT32_MAX, INT32_MIN},
                           "020100 02017F 02020080 0201FF 020180 0202FF7F 02027FFF 0203008000 0203FF7FFF "
                           "020400800000 02047FFFFFFF 020480000000");
}

TEST(BerUnsigned, HasALeadingZeroOctetWhenItsTopBitIsSet) {
    expectBothWays<UAsnInt>(BEncUAsnInt, BDecUAsnInt,
                            {0, 127, 128, 65535, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF},
                            "020100 02017F 02020080 020300FFFF 02047FFFFFFF 02050080000000 020500FFFFFFFF");
}

TEST(BerLength, TakesTheShortestForm) {
    const u32 lengths[] = {0, 127, 128, 255, 256, 65535, 65536, 0xFFFFA5, 0xFFFFA6, 0xFFFFFFFE};
    std::string written;
    for (const u32 length : lengths) {
        const auto encode = [](GenBuf *gen, const u32 *len) { return BEncDefLen(gen, *len); };
        written += encoded<u32>(encode, length) + " ";
    }
    EXPECT_EQ(written, "00 7F 8180 81FF 820100 82FFFF 83010000 83FFFFA5 8400FFFFA6 84FFFFFFFE ");
}

i32 lengthError(std::string_view hex, u32 &len) {
    const auto decode = [](GenBuf *gen, u32 *value, u32 *count, DecodeEnv *env) {
        *value = BDecLen(gen, count, env);
    };
    return decodeError<u32>(decode, hex, len);
}

TEST(BerLength, IsReadInEveryFormUpToFourOctets) {
    const struct {
        const char *hex;
        i32 error;
        u32 len;
    } cases[] = {{"05", 0, 5},           {"80", 0, berIndefinite}, {"8105", 0, 5},
                 {"840000007F", 0, 127}, {"8100", 0, 0},           {"84FFFFFFFE", 0, 0xFFFFFFFE},
                 {"84FFFFFFFF", -42, 0}, {"850000000001", -42, 0}, {"FF", -42, 0},
                 {"", -41, 0},           {"82", -43, 0},           {"8201", -43, 0}};
    for (const auto &c : cases) {
        u32 len = 0;
        EXPECT_EQ(lengthError(c.hex, len), c.error) << c.hex;
        EXPECT_EQ(len, c.len) << c.hex;
    }
}

TEST(BerTag, HoldsUpToFourOctetsFromTheTop) {
    const struct {
        const char *hex;
        i32 error;
        u32 tag;
    } cases[] = {{"A1", 0, 0xA1000000},     {"BF25", 0, 0xBF250000},
                 {"9F8A07", 0, 0x9F8A0700}, {"9F818203", 0, 0x9F818203},
                 {"9F81828384", -74, 0},    {"BF", -74, 0},
                 {"9F81", -74, 0},          {"", -74, 0}};
    for (const auto &c : cases) {
        u32 tag = 0;
        const auto decode = [](GenBuf *gen, u32 *value, u32 *count, DecodeEnv *env) {
            *value = BDecTag(gen, count, env);
        };
        EXPECT_EQ(decodeError<u32>(decode, c.hex, tag), c.error) << c.hex;
        EXPECT_EQ(tag, c.tag) << c.hex;
        if (c.error == 0) {
            const auto encode = [](GenBuf *gen, const u32 *value) { return BEncTag(gen, *value); };
            EXPECT_EQ(encoded<u32>(encode, c.tag), c.hex);
        }
    }
}

TEST(BerBoolean, TrueIsWrittenAsOneAndReadFromAnythingButZero) {
    EXPECT_EQ(encoded<AsnBool>(BEncAsnBool, 7), "010101");
    EXPECT_EQ(encoded<AsnBool>(BEncAsnBool, 0), "010100");
    AsnBool value = 0;
    EXPECT_EQ(decodeError<AsnBool>(BDecAsnBool, "0101FF", value), 0);
    EXPECT_EQ(value, 1);
}

TEST(BerBits, UnusedBitsStandInFront) {
    u8 bits[] = {0xF1, 0x00};
    EXPECT_EQ(encoded<AsnBits>(BEncAsnBits, {11, bits}), "030305F100");
    EXPECT_EQ(encoded<AsnBits>(BEncAsnBits, {16, bits}), "030300F100");
    EXPECT_EQ(encoded<AsnBits>(BEncAsnBits, {0, bits}), "030100");
    EXPECT_EQ(encoded<AsnBits>(BEncAsnBits, {11, nullptr}), "030100");
    AsnBits back{};
    EXPECT_EQ(decodeError<AsnBits>(BDecAsnBits, "030305F100", back), 0);
    EXPECT_EQ(back.bitLen, 11U);
    EXPECT_EQ(hexText({back.bits, 2}), "F100");
    FreeAsnBits(&back);
}

TEST(BerStrings, SegmentsOfAllLevelsAreJoinedInOrder) {
    AsnOcts octs{};
    EXPECT_EQ(decodeError<AsnOcts>(BDecAsnOcts, "240A 04024142 2404 04024344", octs), 0);
    EXPECT_EQ(octs.octetLen, 4U);
    EXPECT_STREQ(reinterpret_cast<char *>(octs.octs), "ABCD");
    FreeAsnOcts(&octs);
    EXPECT_EQ(octs.octs, nullptr);
    EXPECT_EQ(decodeError<AsnOcts>(BDecAsnOcts, "2480 2480 040141 0000 040142 0000", octs), 0);
    EXPECT_STREQ(reinterpret_cast<char *>(octs.octs), "AB");
    FreeAsnOcts(&octs);
    AsnBits bits{};
    EXPECT_EQ(decodeError<AsnBits>(BDecAsnBits, "2309 0302000A 0303 05 F100", bits), 0);
    EXPECT_EQ(bits.bitLen, 19U);
    EXPECT_EQ(hexText({bits.bits, 3}), "0AF100");
    FreeAsnBits(&bits);
}

TEST(BerStrings, AnEmptyStringIsThereAndAnAbsentOneIsNot) {
    AsnOcts octs{};
    EXPECT_EQ(decodeError<AsnOcts>(BDecAsnOcts, "0400", octs), 0);
    EXPECT_NE(octs.octs, nullptr);
    EXPECT_EQ(octs.octetLen, 0U);
    EXPECT_EQ(encoded<AsnOcts>(BEncAsnOcts, octs), "0400");
    FreeAsnOcts(&octs);
}

TEST(BerText, AnOctetThatTheTypeForbidsMarksTheBufferAndGoesOut) {
    u8 room[16];
    BerBuf buf;
    const struct {
        u32 (*encode)(GenBuf *, const AsnOcts *);
        const char *text, *hex;
        u32 error;
    } cases[] = {{BEncVisibleString, "a\x80", "1A026180", 0},
                 {BEncVisibleString, "a\x81", "1A026181", 1},
                 {BEncUTF8String, "\xC3\xA4", "0C02C3A4", 0},
                 {BEncUTF8String, "\xC3", "0C01C3", 1},
                 {BEncGraphicString, "\xFF", "1901FF", 0}};
    for (const auto &c : cases) {
        berBufWrite(&buf, room, sizeof room);
        const AsnOcts text = textOf(c.text);
        const u32 count = c.encode(&buf.gen, &text);
        EXPECT_EQ(hexText({buf.block.dataStart, count}), c.hex);
        EXPECT_EQ(buf.gen.ops->BufWriteError(buf.gen.bufInfo), c.error) << c.hex;
    }
}

// 1 is 128 * 2^-7, 0.75 is 192 * 2^-8, 1000 is 250 * 2^2.
TEST(BerReal, ValuesOfEveryKindGoBothWays) {
    const f64 infinity = std::numeric_limits<f64>::infinity();
    expectBothWays<AsnReal>(
        BEncAsnReal, BDecAsnReal, {0, infinity, -infinity, 1, -1, 0.75, 1000, std::ldexp(1, 300), 1.0 / 3},
        "0900 090140 090141 090380F980 0903C0F980 090380F8C0 09038002FA 090481012580 090980C7AAAAAAAAAAAAA8");
}

TEST(BerReal, OtherBasesAndFactorsAreRead) {
    const struct {
        const char *hex;
        f64 value;
    } cases[] = {{"0903900101", 8},      {"0903A00101", 16},     {"0903840101", 4},
                 {"090583020001 01", 2}, {"0904C0010100", -512}, {"0908 83 05 0000000001 01", 0}};
    for (const auto &c : cases) {
        AsnReal value = 0;
        const i32 error = decodeError<AsnReal>(BDecAsnReal, c.hex, value);
        EXPECT_EQ(error, c.value == 0 ? -68 : 0) << c.hex; // no exponent has five octets
        EXPECT_EQ(value, c.value) << c.hex;
    }
}

// Decodes `hex` as the type that `decode` reads, whatever it is, and frees what came of it.
template <class T, void Decode(GenBuf *, T *, u32 *, DecodeEnv *), void Release(T *)>
i32 errorOf(std::string_view hex) {
    T value{};
    const i32 error = decodeError<T>(Decode, hex, value);
    Release(&value);
    return error;
}

constexpr auto boolean = errorOf<AsnBool, BDecAsnBool, FreeAsnBool>;
constexpr auto integer = errorOf<AsnInt, BDecAsnInt, FreeAsnInt>;
constexpr auto unsignedInt = errorOf<UAsnInt, BDecUAsnInt, FreeUAsnInt>;
constexpr auto null = errorOf<AsnNull, BDecAsnNull, FreeAsnNull>;
constexpr auto bits = errorOf<AsnBits, BDecAsnBits, FreeAsnBits>;
constexpr auto octs = errorOf<AsnOcts, BDecAsnOcts, FreeAsnOcts>;
constexpr auto oid = errorOf<AsnOid, BDecAsnOid, FreeAsnOid>;
constexpr auto real = errorOf<AsnReal, BDecAsnReal, FreeAsnReal>;
constexpr auto visible = errorOf<VisibleString, BDecVisibleString, FreeVisibleString>;
constexpr auto utf8 = errorOf<UTF8String, BDecUTF8String, FreeUTF8String>;
constexpr auto any = errorOf<AsnAny, BDecAsnAny, FreeAsnAny>;

struct Malformed {
    const char *what;
    i32 (*decode)(std::string_view);
    std::string hex;
    i32 error;
};

class MalformedPrimitive : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedPrimitive, IsRefusedWithItsCode) {
    EXPECT_EQ(GetParam().decode(GetParam().hex), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Ber, MalformedPrimitive,
    testing::Values(
        Malformed{"boolean_empty", boolean, "0100", -25},
        Malformed{"boolean_two_octets", boolean, "01020101", -25},
        Malformed{"boolean_cut", boolean, "0101", -26},
        Malformed{"boolean_constructed", boolean, "210101", -99},
        Malformed{"integer_five_octets", integer, "02050000000001", -34},
        Malformed{"integer_nine_octets", integer, "0209000000000000000001", -34},
        Malformed{"integer_indefinite", integer, "0280010000", -34},
        Malformed{"integer_empty", integer, "0200", -35}, Malformed{"integer_cut", integer, "020201", -35},
        Malformed{"unsigned_six_octets", unsignedInt, "0206000000000001", -37},
        Malformed{"unsigned_negative", unsignedInt, "0201FF", -38},
        Malformed{"unsigned_beyond_32_bits", unsignedInt, "02050100000000", -39},
        Malformed{"unsigned_empty", unsignedInt, "0200", -40},
        Malformed{"unsigned_cut", unsignedInt, "020301", -40},
        Malformed{"null_with_content", null, "050100", -52},
        Malformed{"bits_eight_unused", bits, "03020800", -14},
        Malformed{"bits_unused_of_nothing", bits, "030101", -14}, Malformed{"bits_empty", bits, "0300", -15},
        Malformed{"bits_unused_before_the_last", bits, "2308 03020100 03020000", -16},
        Malformed{"bits_segment_past_end", bits, "2304 03050000", -17},
        Malformed{"bits_other_segment", bits, "2303 040100", -18},
        Malformed{"bits_indefinite_primitive", bits, "0380000000", -19},
        Malformed{"bits_empty_segment", bits, "2302 0300", -20}, Malformed{"bits_cut", bits, "030500", -21},
        Malformed{"octets_past_parent", octs, "2404 04050000", -56},
        Malformed{"octets_other_segment", octs, "2403 020100", -57},
        Malformed{"octets_indefinite_primitive", octs, "0480410000", -58},
        Malformed{"octets_cut", octs, "040541", -59}, Malformed{"octets_huge", octs, "04847FFFFFFF41", -59},
        Malformed{"octets_unclosed", octs, "2480 040141", -74},
        Malformed{"octets_half_closed", octs, "2480 040141 0001", -49},
        Malformed{"octets_end_in_definite", octs, "2402 0000", -48},
        Malformed{"oid_indefinite", oid, "06802A0000", -61}, Malformed{"oid_cut", oid, "06052A", -62},
        Malformed{"real_indefinite", real, "0980400000", -66},
        Malformed{"real_one_octet", real, "090142", -67},
        Malformed{"real_special_with_more", real, "09024000", -67},
        Malformed{"real_reserved_base", real, "0903B00101", -68},
        Malformed{"real_decimal", real, "0903013130", -69},
        Malformed{"real_exponent_past_end", real, "09028201", -70},
        Malformed{"real_cut", real, "090380", -70}, Malformed{"visible_above_128", visible, "1A026181", -93},
        Malformed{"visible_128", visible, "1A026180", 0},
        Malformed{"utf8_lone_continuation", utf8, "0C0180", -91},
        Malformed{"utf8_cut", utf8, "0C02E282", -91}, Malformed{"utf8_lead_fe", utf8, "0C01FE", -91},
        Malformed{"utf8_six_octets", utf8, "0C06FC8480808080", 0},
        Malformed{"any_indefinite", any, "30800000", -95}, Malformed{"any_cut", any, "300501", -96},
        Malformed{"other_tag", integer, "010101", -99},
        Malformed{"strings_32_deep", octs, wrapped("24", 32, "040141"), 0},
        Malformed{"strings_33_deep", octs, wrapped("24", 33, "040141"), -97},
        Malformed{"strings_without_bottom", octs, wrapped("24", 300, "040141"), -97}),
    [](const auto &one) { return std::string(one.param.what); });

std::string lastText;

TEST(BerErrors, ReachTheHandlerInForce) {
    Asn1ErrorHandler before = Asn1InstallErrorHandler([](const char *text) { lastText = text; });
    EXPECT_EQ(before, Asn1DefaultErrorHandler);
    AsnBool value = 0;
    EXPECT_EQ(decodeError<AsnBool>(BDecAsnBool, "0100", value), -25);
    EXPECT_EQ(lastText, "BDecAsnBoolContent: ERROR - BOOLEAN length must be 1\n");
    EXPECT_NE(Asn1InstallErrorHandler(nullptr), Asn1DefaultErrorHandler);
    EXPECT_EQ(asn1CurrentErrorHandler, Asn1DefaultErrorHandler);
}

TEST(BerBuf, AnEncodingLargerThanItsMemoryIsToldFromOneThatFits) {
    u8 room[8] = {};
    u8 content[3000];
    std::fill(std::begin(content), std::end(content), u8{0x55});
    for (const u32 len : {4U, 6U, 7U, 3000U}) {
        BerBuf buf;
        berBufWrite(&buf, room, sizeof room);
        const AsnOcts value{len, content};
        EXPECT_EQ(BEncAsnOcts(&buf.gen, &value), len + (len < 128 ? 2 : 4));
        EXPECT_EQ(berBufFits(&buf), len <= 6) << len;
        berBufRelease(&buf);
        EXPECT_TRUE(berBufFits(&buf));
    }
}

TEST(ExpBuf, ReadsToTheEndOfItsDataAndNoFurther) {
    u8 data[] = {1, 2, 3, 4};
    ExpBuf *block = ExpBufAllocBuf();
    ExpBufInstallDataInBuf(block, data, sizeof data);
    GenBuf *gen = nullptr;
    ExpBuftoGenBuf(block, &gen);
    const GenBufOps &ops = *gen->ops;
    ExpBuf **word = gen->bufInfo;
    EXPECT_EQ(ops.BufPeekByte(word), 1);
    EXPECT_EQ(ops.BufGetByte(word), 1);
    u32 len = 1;
    EXPECT_EQ(*ops.BufGetSeg(word, &len), 2);
    u8 copy[8] = {};
    EXPECT_EQ(ops.BufPeekCopy(word, copy, 2), 2U);
    EXPECT_EQ(ops.BufReadError(word), 0U);
    EXPECT_EQ(ops.BufCopy(word, copy, 3), 2U);
    EXPECT_EQ(copy[1], 4);
    EXPECT_EQ(ops.BufReadError(word), 1U);
    EXPECT_EQ(ops.BufGetByte(word), 0);
    ops.BufResetInReadMode(word);
    EXPECT_EQ(ops.BufReadError(word), 0U);
    ops.BufSkip(word, 3);
    len = 9;
    ops.BufPeekSeg(word, &len);
    EXPECT_EQ(len, 1U);
    ops.BufSkip(word, 2);
    EXPECT_EQ(ops.BufReadError(word), 1U);
    Free(gen);
    Free(block);
}

TEST(ExpBuf, AWholeElementIsCopiedWithItsHeader) {
    const std::vector<u8> data = octets("BF2503 020105 FF");
    BerBuf buf;
    berBufRead(&buf, data.data(), static_cast<u32>(data.size()));
    AsnOcts element{};
    u32 count = 0;
    buf.gen.ops->BufCopyAny(buf.gen.bufInfo, &element, &count);
    EXPECT_EQ(count, 6U);
    EXPECT_EQ(hexText({element.octs, element.octetLen}), "BF2503020105");
    FreeAsnOcts(&element);
}

} // namespace
} // namespace ied::test
