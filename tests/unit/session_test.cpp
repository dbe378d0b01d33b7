#include "tests/support/conversation.h"

#include <gtest/gtest.h>

namespace ied::test {
namespace {

// ISO 8327 SPDUs without the presentation data behind them.
const char *const connectHead = "0D16 0506130100160102 14020002 33020001 34020001 C100";

struct SpduCase {
    const char *what;
    std::string octets;
    u32 consumed = 0; // 0: refused with 22
    int presentType = 0;
};

u32 decode(Spdu8327 *rec, const std::vector<u8> &data, i32 *err) {
    return dec_spdu_8327(rec, data.data(), static_cast<u32>(data.size()), err);
}

class Spdu : public testing::TestWithParam<SpduCase> {};

TEST_P(Spdu, Decode) {
    Spdu8327 rec{};
    i32 err = 99;
    EXPECT_EQ(decode(&rec, octets(GetParam().octets), &err), GetParam().consumed);
    EXPECT_EQ(err, GetParam().consumed == 0 ? 22 : 0);
    if (GetParam().consumed != 0) {
        EXPECT_EQ(getPresentType(&rec), GetParam().presentType);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, Spdu,
    testing::Values(
        SpduCase{"connect", connectHead, 24, PresentConnect},
        SpduCase{"connect_without_calling_selector", "0D12 0506130100160102 14020002 34020001 C100"},
        SpduCase{"connect_in_another_order", "0D16 14020002 0506130100160102 33020001 34020001 C100"},
        SpduCase{"connect_without_user_data", "0D14 0506130100160102 14020002 33020001 34020001"},
        SpduCase{"connect_with_empty_selector", "0D14 0506130100160102 14020002 3300 34020001 C100"},
        SpduCase{"connect_with_selector_of_16", "0D24 0506130100160102 14020002 3310"
                                                "00000000000000000000000000000001 34020001 C100"},
        SpduCase{"connect_with_called_selector_of_17",
                 "0D25 0506130100160102 14020002 33020001 3411" + std::string(34, '0') + "C100"},
        SpduCase{"connect_whose_length_leaves_the_frame",
                 "0D17 0506130100160102 14020002 33020001 34020001 C100"},
        SpduCase{"connect_whose_item_leaves_the_frame",
                 "0D16 0517130100160102 14020002 33020001 34020001 C100"},
        SpduCase{"connect_whose_user_data_leave_the_frame",
                 "0D16 0506130100160102 14020002 33020001 34020001 C101"},
        SpduCase{"connect_with_three_octet_length",
                 "0DFF0016 0506130100160102 14020002 33020001 34020001 C100"},
        SpduCase{"data", "01000100 61", 4, PresentData}, SpduCase{"lone_give_tokens", "0100", 2, PresentNone},
        SpduCase{"give_tokens_and_something_else", "0100 61", 2, PresentNone}, SpduCase{"data_cut", "010001"},
        SpduCase{"data_whose_length_leaves_the_frame", "01000105"}, SpduCase{"give_tokens_cut", "01"},
        SpduCase{"finish", "0902 C100", 4, PresentFinish},
        SpduCase{"finish_without_user_data", "0900", 2, PresentFinish},
        SpduCase{"finish_whose_user_data_leave_the_frame", "0902 C101"},
        SpduCase{"finish_whose_length_leaves_the_frame", "0903 C100"},
        SpduCase{"abort_of_3", "6403 800100", 5, PresentNone},
        SpduCase{"abort_of_6", "6406 800101 810102", 8, PresentNone}, SpduCase{"abort_of_2", "6402 800100"},
        SpduCase{"abort_of_5", "6405 800100 8101"}, SpduCase{"abort_with_other_parameter", "6403 810100"},
        SpduCase{"abort_of_6_with_other_parameter", "6406 800100 820100"},
        SpduCase{"abort_as_the_standard_codes_it", "1903 110100"}, SpduCase{"refuse", "0C00"},
        SpduCase{"nothing", ""}),
    [](const auto &one) { return std::string(one.param.what); });

TEST(Spdu, EveryCutOfAConnectIsRefusedWithinItsOctets) {
    const std::vector<u8> whole = octets(connectHead);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Spdu8327 rec{};
        i32 err = 0;
        EXPECT_EQ(decode(&rec, std::vector<u8>(whole.begin(), whole.begin() + static_cast<long>(size)), &err),
                  0U)
            << size;
    }
}

struct ReplyCase {
    const char *what;
    const char *request;
    const char *reply;
};

class SpduReply : public testing::TestWithParam<ReplyCase> {};

TEST_P(SpduReply, DerivesFromTheRequest) {
    Spdu8327 request{};
    i32 err = 0;
    ASSERT_NE(decode(&request, octets(GetParam().request), &err), 0U);
    Spdu8327 reply{};
    ASSERT_EQ(process_spdu_8327(&request, &reply), 1);
    std::vector<u8> buf(reply.encodedSize);
    EXPECT_EQ(enc_spdu_8327(&reply, buf.data(), reply.encodedSize), buf.size());
    EXPECT_EQ(hexText(buf), canonical(GetParam().reply));
}

INSTANTIATE_TEST_SUITE_P(Kinds, SpduReply,
                         testing::Values(ReplyCase{"accept", connectHead,
                                                   "0E0E 0506130100160102 14020002 C100"},
                                         ReplyCase{"accept_copies_the_values",
                                                   "0D16 0506130107160103 14020649 33020001 34020001 C100",
                                                   "0E0E 0506130107160103 14020649 C100"},
                                         ReplyCase{"data", "01000100", "01000100"},
                                         ReplyCase{"disconnect", "0902C100", "0A02C100"},
                                         ReplyCase{"disconnect_without_user_data", "0900", "0A00"},
                                         ReplyCase{"abort_of_3", "6403800100", "190711010531023210"},
                                         ReplyCase{"abort_of_6", "6406800100810100", "190711010531023210"}),
                         [](const auto &one) { return std::string(one.param.what); });

TEST(SpduReport, TravelsAsSessionData) {
    Spdu8327 rec{};
    EXPECT_EQ(rpt_spdu_8327(&rec), 4);
    std::vector<u8> buf(4);
    EXPECT_EQ(enc_spdu_8327(&rec, buf.data(), 4), 4U);
    EXPECT_EQ(hexText(buf), "01000100");
}

} // namespace
} // namespace ied::test
