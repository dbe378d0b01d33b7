#include "tests/support/conversation.h"

#include <gtest/gtest.h>

namespace ied::test {
namespace {

struct DecodeCase {
    const char *what;
    const char *octets;
    u32 consumed; // 0: refused
    i32 err;
};

std::string caseName(const testing::TestParamInfo<DecodeCase> &info) {
    return info.param.what;
}

class Tpkt : public testing::TestWithParam<DecodeCase> {};

TEST_P(Tpkt, Length) {
    const std::vector<u8> data = octets(GetParam().octets);
    TpduTpkt pdu{};
    i32 err = 99;
    EXPECT_EQ(dec_tpdu_tpkt(&pdu, data.data(), static_cast<u32>(data.size()), &err), GetParam().consumed);
    EXPECT_EQ(err, GetParam().err);
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, Tpkt,
    testing::Values(DecodeCase{"header_cut", "030000", 0, 1}, DecodeCase{"lone_header", "03000004", 4, 0},
                    DecodeCase{"zero", "03000000 02F080", 0, 1}, DecodeCase{"three", "03000003 02F080", 0, 1},
                    DecodeCase{"five", "03000005 02F080", 0, 1}, DecodeCase{"six", "03000006 02F080", 0, 1},
                    DecodeCase{"seven", "03000007 02F080", 4, 0},
                    DecodeCase{"beyond_what_is_there", "03000008 02F080", 0, 1},
                    DecodeCase{"other_version", "09550007 02F080", 4, 0},
                    DecodeCase{"two_frames", "03000007 02F080 03000007", 4, 0}),
    caseName);

class CotpFields : public testing::TestWithParam<DecodeCase> {};

TEST_P(CotpFields, Decode) {
    const std::vector<u8> data = octets(GetParam().octets);
    TpduCotp rec{};
    i32 err = 99;
    EXPECT_EQ(dec_tpdu_cotp(&rec, data.data(), static_cast<u32>(data.size()), &err), GetParam().consumed);
    EXPECT_EQ(err, GetParam().err);
}

INSTANTIATE_TEST_SUITE_P(
    Tpdus, CotpFields,
    testing::Values(DecodeCase{"one_octet", "02", 0, 12}, DecodeCase{"dt_cut", "02F0", 0, 12},
                    DecodeCase{"dt", "02F080 0102", 3, 0},
                    DecodeCase{"dt_whose_indicator_leaves_the_frame", "05F080 0102", 0, 12},
                    DecodeCase{"cr_cut", "06E0 0000 0001", 0, 12},
                    DecodeCase{"cr", "06E0 0000 0001 00", 7, 0},
                    DecodeCase{"cr_with_all", "11E0 0000 0001 00 C0010A C1020001 C2020001", 18, 0},
                    DecodeCase{"cr_whose_indicator_leaves_the_frame",
                               "12E0 0000 0001 00 C0010A C1020001 C2020001", 0, 12},
                    DecodeCase{"cr_with_unknown_parameter", "09E0 0000 0001 00 C60100", 0, 12},
                    DecodeCase{"cr_with_tsap_of_one_octet", "09E0 0000 0001 00 C10101", 0, 12},
                    DecodeCase{"cr_with_tsap_of_four_octets", "0CE0 0000 0001 00 C10400000001", 0, 12},
                    DecodeCase{"cr_whose_parameter_leaves_the_frame", "0AE0 0000 0001 00 C1030001", 0, 12},
                    DecodeCase{"cr_with_size_cut", "08E0 0000 0001 00 C001", 0, 12},
                    DecodeCase{"dr", "06 80 0000 0001 00", 0, 12}, DecodeCase{"er", "04 70 0000 00", 0, 12}),
    caseName);

struct ConfirmCase {
    const char *what;
    const char *request;
    const char *confirm;
};

class Confirm : public testing::TestWithParam<ConfirmCase> {};

TEST_P(Confirm, AnswersTheConnectionRequest) {
    Conversation client;
    EXPECT_EQ(client.send(GetParam().request), canonical(GetParam().confirm));
    EXPECT_EQ(client.status(), CS_COTP);
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, Confirm,
    testing::Values(ConfirmCase{"none", "0300000B 06E0 0000 ABCD 00", "0300000B 06D0 ABCD 1400 00"},
                    ConfirmCase{"all_in_the_order_C1_C2_C0",
                                "03000016 11E0 0000 0107 00 C0010A C1020003 C2020009",
                                "03000016 11D0 0107 1400 00 C1020003 C2020009 C0010A"},
                    ConfirmCase{"one_tsap_sends_none", "03000012 0DE0 0000 0002 00 C0010B C1020001",
                                "0300000E 09D0 0002 1400 00 C0010B"},
                    ConfirmCase{"class_and_destination_not_echoed", "0300000B 06E0 7777 0009 02",
                                "0300000B 06D0 0009 1400 00"}),
    [](const auto &one) { return std::string(one.param.what); });

// Gives a fragment of `payload` octets to the record.
u32 fragment(TpduCotp *rec, u32 payload, bool last, i32 *err) {
    std::vector<u8> data = octets(last ? "02F080" : "02F000");
    data.resize(data.size() + payload, 0x55);
    return dec_tpdu_cotp(rec, data.data(), static_cast<u32>(data.size()), err);
}

TEST(Reassembly, TakesExactlyItsCapacityAndNotAnOctetMore) {
    std::vector<u8> buffer(10);
    TpduCotp rec{};
    rec.reassemblyCapacity = 10;
    rec.reassemblyBuf = buffer.data();
    i32 err = 0;
    EXPECT_EQ(fragment(&rec, 6, false, &err), 9U);
    TpduCotp fuller = rec;
    EXPECT_EQ(fragment(&fuller, 5, true, &err), 0U);
    EXPECT_EQ(err, 13);
    EXPECT_EQ(fuller.reassemblyLen, 6U);
    EXPECT_EQ(fragment(&rec, 4, true, &err), 7U);
    EXPECT_EQ(err, 0);
    EXPECT_EQ(rec.reassemblyLen, 10U);
    EXPECT_EQ(rec.eot, 1);
}

TEST(Reassembly, StartsAgainAfterAPlainClearAndKeepsItsBuffer) {
    std::vector<u8> buffer(10);
    TpduCotp rec{};
    rec.reassemblyCapacity = 10;
    rec.reassemblyBuf = buffer.data();
    i32 err = 0;
    fragment(&rec, 8, false, &err);
    init_tpdu_cotp(&rec, false);
    EXPECT_EQ(fragment(&rec, 8, false, &err), 11U);
    EXPECT_EQ(rec.reassemblyLen, 8U);
    EXPECT_EQ(rec.reassemblyBuf, buffer.data());
}

} // namespace
} // namespace ied::test
