// What no PDU may be, and what a decode of it must not cost.
#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "tests/support/asnTesting.h"
#include "tests/support/mmsPdus.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace ied::test {
namespace {

struct Malformed {
    const char *what;
    std::string hex;
};

class MalformedPdu : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedPdu, IsOneError) {
    MMSpdu pdu{};
    EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, GetParam().hex, pdu), -820);
    FreeMMSpdu(&pdu);
}

const std::string anAccess = "820103";

INSTANTIATE_TEST_SUITE_P(
    Mms, MalformedPdu,
    testing::Values(
        Malformed{"reject_at_a_server", "A406 8001 07 8101 00"}, Malformed{"nothing_inside", "A000"},
        Malformed{"no_service", "A003 020107"}, Malformed{"no_invoke_id", "A002 8200"},
        Malformed{"invoke_id_of_no_octet", "A004 0200 8200"},
        Malformed{"invoke_id_of_five_octets", "A009 0205 00FFFFFFFF 8200"},
        Malformed{"length_beyond_the_pdu", "A007 020107 8202 00"},
        Malformed{"length_beyond_the_parent", requestHex("A406 A107 A105 8003 414243")},
        Malformed{"content_behind_the_last_component", requestHex("8200 8200")},
        Malformed{"two_values_in_an_explicit_tag", requestHex(tlv("A4", tlv("A1", "A105 8003 414243 8400")))},
        Malformed{"nothing_in_an_explicit_tag", requestHex("A402 A100")},
        Malformed{"components_out_of_order", requestHex(tlv("A4", "A107 A105 8003 414243 800101"))},
        Malformed{"component_twice", requestHex(tlv("A4", "800101 800101 A107 A105 8003 414243"))},
        Malformed{"domain_without_item", requestHex(tlv("A6", "A007 A105 1A03 414243"))},
        Malformed{"name_with_an_octet_above_128", requestHex(tlv("A6", "A003 8001 81"))},
        Malformed{"alternate_access_of_a_primitive", readHex("0500")},
        Malformed{"access_that_goes_on_to_nothing", readHex("A003 810103")},
        Malformed{"negative_index", readHex("8201FF")},
        Malformed{"index_beyond_32_bits", readHex("8205 0100000000")},
        Malformed{"undecoded_content_that_is_cut", requestHex("A304 A003 0201")},
        Malformed{"undecoded_content_past_its_parent", requestHex("A304 A003 020105").replace(10, 2, "A3")},
        Malformed{"undecoded_content_without_end", requestHex("A302 A080")},
        Malformed{"undecoded_primitive_of_indefinite_length", requestHex("8380")},
        Malformed{"undecoded_with_an_end_in_a_definite_length", requestHex("A302 0000")},
        Malformed{"extension_of_another_tag", requestHex("8200 BF4E00")},
        Malformed{"end_of_contents_cut", "A080 020107 8200 00"},
        Malformed{"end_of_contents_wrong", "A080 020107 8200 0001"},
        Malformed{"indefinite_primitive", "A080 028007 0000 8200 0000"},
        Malformed{"empty_boolean", requestHex("8000")}, Malformed{"null_with_content", requestHex("820100")},
        Malformed{"write_without_data", requestHex(tlv("A5", tlv("A0", variableHex)))},
        Malformed{"write_of_an_unknown_type", requestHex(tlv("A5", tlv("A0", variableHex) + "A002 8B00"))},
        Malformed{"initiate_without_detail", "A806 810105 820105"},
        Malformed{"initiate_with_a_size_of_2_to_32", "A80D 8005 0100000000 810105 820105"},
        Malformed{"initiate_with_a_size_beyond_31_bits", "A80D 8005 00FFFFFFFF 810105 820105"},
        Malformed{"journal_range_of_nothing", requestHex(tlv("BF41", tlv("A0", nameHex) + "A100"))},
        Malformed{"file_name_of_another_string", requestHex(tlv("BF48", "A003 1A01 61 810100"))},
        Malformed{"universal_tag", requestHex("0500")},
        Malformed{"tag_without_end", requestHex("BFFFFFFF01")},
        Malformed{"tag_in_a_longer_form", requestHex("9F02 00")}),
    [](const auto &one) { return std::string(one.param.what); });

TEST(MmsNesting, IsFollowedToItsLimit) {
    const struct {
        const char *what;
        std::string (*request)(int levels);
    } cases[] = {
        {"structures",
         [](int n) {
             return requestHex(tlv("A5", tlv("A0", variableHex) + tlv("A0", wrapped("A2", n, "830101"))));
         }},
        {"arrays",
         [](int n) {
             return requestHex(tlv("A5", tlv("A0", variableHex) + tlv("A0", wrapped("A1", n, "830101"))));
         }},
        {"accesses",
         [](int n) {
             std::string access = anAccess;
             for (int i = 1; i < n; ++i) {
                 access = tlv("A0", "810103" + tlv("30", access));
             }
             return readHex(access);
         }},
        {"descriptions",
         [](int n) {
             std::string type = "850120";
             for (int i = 0; i < n; ++i) {
                 type = i % 2 ? tlv("A1", "810102" + tlv("A2", type))
                              : tlv("A2", tlv("A1", tlv("30", tlv("A1", type))));
             }
             return requestHex(tlv("A4", tlv("A1", tlv("A0", tlv("30", tlv("A2", "800105" + type))))));
         }},
        {"undecoded", [](int n) { return requestHex(wrapped("A3", n, "020105")); }},
    };
    for (const auto &c : cases) {
        for (const int levels : {31, 32, 33, 300}) {
            MMSpdu pdu{};
            EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, c.request(levels), pdu), levels <= 32 ? 0 : -820)
                << c.what << " " << levels;
            FreeMMSpdu(&pdu);
        }
    }
}

TEST(MmsCost, ALengthThatNothingStandsBehindCostsNothing) {
    for (const char *hex :
         {"A0847FFFFFFF 020107 A4847FFFFFFE A1847FFFFFFD A1847FFFFFFC 80847FFFFFFB 41",
          "A080 020107 A480 A180 A180 80847FFFFFFB 41",
          "A080 020107 A580 A180 8003414243 A080 89847FFFFFF0 41",
          "A080 020107 A580 A180 8003414243 A080 A980 04847FFFFFF0 41", "A080 020107 A380 84847FFFFFF0 41"}) {
        const u32 before = allocBytes;
        MMSpdu pdu{};
        EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, hex, pdu), -820) << hex;
        EXPECT_LT(allocBytes - before, 1000U) << hex;
        FreeMMSpdu(&pdu);
    }
}

TEST(MmsCost, ManySmallElementsCostABoundedMultipleOfTheirOctets) {
    std::string elements;
    for (int i = 0; i < 20000; ++i) {
        elements += "A900"; // the dearest per octet: a string in no segment
    }
    const std::string hex = requestHex(tlv("A5", tlv("A0", variableHex) + tlv("A0", elements)));
    const u32 before = allocBytes;
    MMSpdu pdu{};
    EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, hex, pdu), 0);
    EXPECT_LT(allocBytes - before, 40 * elements.size() / 2);
    EXPECT_EQ(pdu.confirmed_RequestPDU->service->write->listOfData->count, 20000U);
    FreeMMSpdu(&pdu);
}

// One of the ways in which octets go wrong, at a random place.
void mutate(std::vector<u8> &data, std::mt19937 &random) {
    const auto at = [&] { return data.begin() + static_cast<long>(random() % data.size()); };
    static constexpr u8 telling[] = {0,    1,    2,    0x7F, 0x80, 0x81, 0x82, 0x84,
                                     0x30, 0xA0, 0xA1, 0xA2, 0x1F, 0xBF, 0xFF};
    switch (random() % 6) {
    case 0:
        *at() = static_cast<u8>(random());
        break;
    case 1:
        *at() = telling[random() % std::size(telling)];
        break;
    case 2:
        data.insert(at(), static_cast<u8>(random()));
        break;
    case 3:
        if (data.size() > 1) {
            data.erase(at());
        }
        break;
    case 4:
        ++*at();
        break;
    default:
        *at() ^= 0x20; // the other form
    }
}

TEST(MmsMutations, AreRefusedOrReadIntoAValueThatStaysItself) {
    std::mt19937 random(61850); // NOLINT: the same round every time
    std::vector<KnownPdu> seeds = requestPdus();
    for (KnownPdu &pdu : responsePdus()) {
        seeds.push_back(std::move(pdu));
    }
    int accepted = 0;
    constexpr int rounds = 40000;
    for (int i = 0; i < rounds; ++i) {
        std::vector<u8> data = octets(seeds[random() % seeds.size()].hex);
        for (auto n = 1 + random() % 3; n > 0; --n) {
            mutate(data, random);
        }
        DecodeEnv env;
        env.acceptRejectPdu = true;
        MMSpdu pdu{}, again{};
        const i32 error = decodeError<MMSpdu>(BDecMMSpdu, data, pdu, env);
        if (error >= 0 && pdu.choiceId != MMSpdu::confirmedResponsePDU) {
            ++accepted;
            const std::string written = encoded<MMSpdu>(BEncMMSpduContent, pdu);
            EXPECT_EQ(decodeError<MMSpdu>(BDecMMSpdu, written, again, env), 0) << hexText(data) << "\n"
                                                                               << written;
            EXPECT_EQ(encoded<MMSpdu>(BEncMMSpduContent, again), written);
        }
        FreeMMSpdu(&pdu);
        FreeMMSpdu(&again);
    }
    EXPECT_GT(accepted, rounds / 20);
    EXPECT_LT(accepted, rounds - rounds / 20);
}

} // namespace
} // namespace ied::test
