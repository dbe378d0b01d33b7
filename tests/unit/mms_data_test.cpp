// Values and type descriptions of MMS, octets by hand from ISO 9506-2.
#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "tests/support/asnTesting.h"

#include <gtest/gtest.h>

namespace ied::test {
namespace {

struct DataCase {
    const char *what;
    u32 choiceId;
    const char *hex;
    const char *written = nullptr; // where it differs
};

class EveryData : public testing::TestWithParam<DataCase> {};

TEST_P(EveryData, IsReadAndWritten) {
    Data data{};
    EXPECT_EQ(decodeError<Data>(BDecData, GetParam().hex, data), 0);
    EXPECT_EQ(data.choiceId, GetParam().choiceId);
    EXPECT_EQ(encoded<Data>(BEncDataContent, data),
              canonical(GetParam().written ? GetParam().written : GetParam().hex));
    FreeData(&data);
}

INSTANTIATE_TEST_SUITE_P(
    Mms, EveryData,
    testing::Values(
        DataCase{"array", Data::array, "A106 850101 850102"},
        DataCase{"structure", Data::structure, "A209 830101 A204 8602 00FF"},
        DataCase{"empty_structure", Data::structure, "A200"},
        DataCase{"boolean", Data::boolean, "8301FF", "830101"},
        DataCase{"bit_string", Data::bitString, "840303 0008"},
        DataCase{"bit_string_in_segments", Data::bitString, "A403 0301 00", "840100"},
        DataCase{"integer", Data::integer, "850480000000"},
        DataCase{"integer_not_shortest", Data::integer, "85020005", "850105"},
        DataCase{"unsigned", Data::unsignedInt, "860500FFFFFFFF"},
        DataCase{"floating_point", Data::floatingPoint, "8705083F800000"},
        DataCase{"floating_point_in_segments", Data::floatingPoint, "A707 0405083F800000", "8705083F800000"},
        DataCase{"floating_point_empty", Data::floatingPoint, "8700"},
        DataCase{"real", Data::real, "880380F980"}, DataCase{"octet_string", Data::octetString, "890200FF"},
        DataCase{"octet_string_in_segments", Data::octetString, "A980 040141 040142 0000", "89024142"},
        DataCase{"visible_string", Data::visibleString, "8A03414243"},
        DataCase{"visible_string_in_segments", Data::visibleString, "AA03 040141", "8A0141"},
        DataCase{"binary_time", Data::binaryTime, "8C06000102030405"},
        DataCase{"binary_time_in_segments", Data::binaryTime, "AC06 040400010203", "8C0400010203"},
        DataCase{"bcd", Data::bcd, "8D0109"}, DataCase{"boolean_array", Data::booleanArray, "8E0204F0"},
        DataCase{"boolean_array_in_segments", Data::booleanArray, "AE04 030204F0", "8E0204F0"},
        DataCase{"object_identifier", Data::objId, "8F0328CA22"},
        DataCase{"mms_string", Data::mMSString, "9003 41C3A4"},
        DataCase{"mms_string_in_segments", Data::mMSString, "B005 0403 41C3A4", "900341C3A4"},
        DataCase{"utc_time", Data::utcTime, "9108 0001020304050607"},
        DataCase{"utc_time_in_segments", Data::utcTime, "B10A 0408 0001020304050607",
                 "9108 0001020304050607"}),
    [](const auto &one) { return std::string(one.param.what); });

TEST(MmsData, ValuesStandInTheFieldOfTheirChoice) {
    Data data{};
    EXPECT_EQ(decodeError<Data>(BDecData, "8705083F800000", data), 0);
    EXPECT_EQ(data.octs->octetLen, 5U);
    EXPECT_EQ(hexText({data.octs->octs, 5}), "083F800000");
    FreeData(&data);
    EXPECT_EQ(decodeError<Data>(BDecData, "8502FF7F", data), 0);
    EXPECT_EQ(data.int_, -129);
    EXPECT_EQ(decodeError<Data>(BDecData, "880380F980", data), 0);
    EXPECT_EQ(data.real_, 1.0);
}

TEST(MmsData, AResultIsAFailureByItsTagAndOtherwiseAValue) {
    AccessResult result{};
    EXPECT_EQ(decodeError<AccessResult>(BDecAccessResult, "80010A", result), 0);
    EXPECT_EQ(result.choiceId, AccessResult::failure);
    EXPECT_EQ(result.failure_, 10);
    EXPECT_EQ(encoded<AccessResult>(BEncAccessResultContent, result), "80010A");
    result = {};
    EXPECT_EQ(decodeError<AccessResult>(BDecAccessResult, "830101", result), 0);
    EXPECT_EQ(result.choiceId, AccessResult::success);
    EXPECT_EQ(result.success_->choiceId, Data::boolean);
    EXPECT_EQ(encoded<AccessResult>(BEncAccessResultContent, result), "830101");
    FreeAccessResult(&result);
}

TEST(MmsData, AnArrayOfVectorsReadsAsStructuresOfFloats) {
    u8 one[] = {8, 0x3F, 0x80, 0, 0}, two[] = {8, 0x40, 0, 0, 0};
    AsnOcts mags[] = {{5, one}, {5, two}}, angs[] = {{5, two}, {5, one}};
    DataArrayVec both{2, mags, angs}, magOnly{2, mags, nullptr}, none{0, mags, angs};
    Data data{};
    data.choiceId = Data::arrayVec;
    data.vec = &both;
    EXPECT_EQ(encoded<Data>(BEncDataContent, data),
              canonical("A128 A212 A207 8705083F800000 A207 87050840000000 "
                        "A212 A207 87050840000000 A207 8705083F800000"));
    data.vec = &magOnly;
    EXPECT_EQ(encoded<Data>(BEncDataContent, data),
              canonical("A116 A209 A207 8705083F800000 A209 A207 87050840000000"));
    data.vec = &none;
    EXPECT_EQ(encoded<Data>(BEncDataContent, data), "A100");
}

TEST(MmsData, TheOctetsOfVectorsAreFreedWithTheirValue) {
    Data data{};
    data.choiceId = Data::arrayVec;
    data.vec = MallocOf<DataArrayVec>();
    data.vec->count = 2;
    data.vec->ang = MallocArray<AsnOcts>(2);
    for (u32 i = 0; i < 2; ++i) {
        data.vec->ang[i] = {5, MallocArray<u8>(5)};
    }
    FreeData(&data);
    EXPECT_EQ(data.vec, nullptr);
}

TEST(MmsData, AnUnknownChoiceEncodesNothing) {
    Data data{};
    data.choiceId = 17;
    EXPECT_EQ(encoded<Data>(BEncDataContent, data), "");
}

struct TypeCase {
    const char *what;
    u32 choiceId;
    std::string hex;
};

class EveryType : public testing::TestWithParam<TypeCase> {};

TEST_P(EveryType, IsReadAndWritten) {
    TypeSpecification type{};
    EXPECT_EQ(decodeError<TypeSpecification>(BDecTypeSpecification, GetParam().hex, type), 0);
    EXPECT_EQ(type.choiceId, GetParam().choiceId);
    EXPECT_EQ(encoded<TypeSpecification>(BEncTypeSpecificationContent, type), canonical(GetParam().hex));
    FreeTypeSpecification(&type);
}

using Type = TypeSpecification;

// A structure with an array "mag" of 128 structures with a float "f".
std::string structureOfArray() {
    const std::string component = tlv("30", "800166" + tlv("A1", "A706 020120 020108"));
    const std::string element = tlv("A2", tlv("A1", component));
    const std::string array = tlv("A1", "81020080" + tlv("A2", element));
    return tlv("A2", tlv("A1", tlv("30", "80036D6167" + tlv("A1", array))));
}

INSTANTIATE_TEST_SUITE_P(
    Mms, EveryType,
    testing::Values(
        TypeCase{"name", Type::typesName, "A003 8001 41"},
        TypeCase{"array", Type::array, "A108 810140 A203 850120"},
        TypeCase{"packed_array", Type::array, "A10A 800101 810140 A202 8300"},
        TypeCase{"structure", Type::structure, "A20D A10B 3009 8002 7374 A103 860110"},
        TypeCase{"structure_of_array", Type::structure, structureOfArray()},
        TypeCase{"boolean", Type::boolean, "8300"}, TypeCase{"bit_string", Type::bitString, "8401F3"},
        TypeCase{"integer", Type::integer, "850120"}, TypeCase{"unsigned", Type::unsignedInt, "860110"},
        TypeCase{"floating_point", Type::floatingPoint, "A706 020120 020108"},
        TypeCase{"real", Type::real, "A809 800102 810108 820117"},
        TypeCase{"octet_string", Type::octetString, "890140"},
        TypeCase{"visible_string", Type::visibleString, "8A02FF7F"},
        TypeCase{"generalized_time", Type::generalizedTime, "8B00"},
        TypeCase{"binary_time", Type::binaryTime, "8C0101"}, TypeCase{"bcd", Type::bcd, "8D0104"},
        TypeCase{"boolean_array", Type::booleanArray, "8E0204F0"},
        TypeCase{"object_identifier", Type::objId, "8F00"},
        TypeCase{"mms_string", Type::mMSString, "9002FF01"}, TypeCase{"utc_time", Type::utcTime, "9100"}),
    [](const auto &one) { return std::string(one.param.what); });

} // namespace
} // namespace ied::test
