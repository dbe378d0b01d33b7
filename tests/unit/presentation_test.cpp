#include "tests/support/conversation.h"

#include <gtest/gtest.h>

namespace ied::test {
namespace {

struct DecodeCase {
    const char *what;
    std::string octets;
    int type;
    i32 err; // 0: decodes whole
};

const DecodeCase ppduCases[] = {
    {"release_with_reason", "610C 300A 020101 A005 6203 800100", PresentFinish, 0},
    {"release_without_reason", "6109 3007 020101 A002 6200", PresentFinish, 0},
    {"data", "6109 3007 020103 A002 8B00", PresentData, 0},
    {"data_longer_than_its_length", "6109 3007 020103 A002 8B00 00", PresentData, -801},
    {"data_shorter_than_its_length", "610A 3007 020103 A002 8B00", PresentData, -801},
    {"data_of_indefinite_length", "6180 3007 020103 A002 8B00 0000", PresentData, -801},
    {"data_where_none_is_due", "6109 3007 020103 A002 8B00", PresentNone, 100},
    {"data_in_a_connect", "6109 3007 020103 A002 8B00", PresentConnect, 100},
    {"connect_in_data", "3107 A003800101 A200", PresentData, -802},
    {"connect_without_parameters", "3105 A003800101", PresentConnect, 0},
    {"typed_data", "6209 3007 020103 A002 8B00", PresentData, -802},
    {"nothing", "", PresentData, -74}};

TEST(Ppdu, Decode) {
    for (const DecodeCase &each : ppduCases) {
        SCOPED_TRACE(each.what);
        const std::vector<u8> data = octets(each.octets);
        Ppdu8823 ppdu{};
        i32 err = 99;
        const u32 n = decPpdu8823(&ppdu, data.data(), static_cast<u32>(data.size()), each.type, &err);
        EXPECT_EQ(err, each.err);
        EXPECT_EQ(n, each.err == 0 ? data.size() : 0U);
        initPpdu8823(&ppdu, false);
    }
}

TEST(PpduCut, EveryCutOfAConnectIsRefusedAndFreed) {
    const std::vector<u8> whole = octets(cpType(aarq(initiateRequest)));
    const std::size_t modeAlone = 8; // a CP-type of that size has all that is mandatory
    for (std::size_t size = 0; size < whole.size(); size += size + 1 == modeAlone ? 2 : 1) {
        std::vector<u8> cut(whole.begin(), whole.begin() + static_cast<long>(size));
        if (size > 3) {
            cut[1] = 0x81; // the outer length fits, so that the cut is met inside
            cut[2] = static_cast<u8>(size - 3);
        }
        Ppdu8823 ppdu{};
        i32 err = 0;
        EXPECT_EQ(decPpdu8823(&ppdu, cut.data(), static_cast<u32>(size), PresentConnect, &err), 0U) << size;
        EXPECT_LT(err, 0) << size;
        initPpdu8823(&ppdu, false);
    }
}

// ------------------------------------------------------------ what a connect gets by its content

struct ConnectCase {
    const char *what;
    std::string cpType;
    bool accepted;
};

std::string withContexts(const std::string &contexts) {
    const std::string data = tlv("61", tlv("30", "020101" + tlv("A0", aarq(initiateRequest))));
    return tlv("31", "A003800101" + tlv("A2", contexts + data));
}

// With those fields of the AARQ before its user information.
std::string withFields(const std::string &fields) {
    return cpType(aarq(initiateRequest, fields));
}

const std::string context = "300F 020101 0604 52010001 3004 0602 5101";

const ConnectCase connectCases[] = {
    {"one_context", withContexts(tlv("A4", context)), true},
    {"three_contexts", withContexts(tlv("A4", context + context + context)), true},
    {"no_contexts", withContexts(""), true},
    {"unknown_context", withContexts(tlv("A4", "300F 020105 0604 29010203 3004 0602 5101" + context)), true},
    {"context_list_that_leaves_its_parent", withContexts("A47F" + context), false},
    {"members_of_the_set_exchanged",
     tlv("31", tlv("A2", tlv("61", tlv("30", "020101" + tlv("A0", aarq(initiateRequest))))) + "A003800101"),
     true},
    {"password", withFields("8A020780 8B03520301 AC088006736563726574"), true},
    {"authentication_bitstring", withFields("AC04 810205A0"), true},
    {"authentication_other", withFields("AC0B A309 0603530405 0402 0102"), true},
    {"titles", withFields("A206 0604 29018767 A303 02010C A603 0601 29 A703 02010C"), true},
    {"title_without_end", withFields("A20A 0608 FFFFFFFFFFFFFFFF"), true},
    {"title_that_leaves_its_parent", withFields("A204 0608 FFFF"), false},
    {"qualifier_of_nine_octets", withFields("A30B 0209 000000000000000001"), false},
    {"password_of_no_octet", withFields("8A020780 8B03520301 AC028000"), true},
    {"authentication_of_nine_unused_bits", withFields("AC04 810209A0"), false},
    {"authentication_of_another_kind", withFields("AC04 840205A0"), false},
    {"authentication_of_nothing", withFields("AC00"), false},
    {"no_user_data", tlv("31", "A003800101" + tlv("A2", tlv("A4", context))), false},
    {"user_data_without_entry", tlv("31", "A003800101 A202 6100"), false},
    {"simply_encoded_user_data", tlv("31", "A003800101 A203 400100"), false},
    {"no_user_information", cpType("6009 A107 0605 28CA220203"), false},
    {"user_information_without_entry", cpType("600B A107 0605 28CA220203 BE00"), false},
    {"octet_aligned_value", tlv("31", "A003800101" + tlv("A2", tlv("61", tlv("30", "020101 810100")))),
     false},
    {"mms_instead_of_acse", cpType(initiateRequest), false}};

TEST(Connect, Answer) {
    for (const ConnectCase &each : connectCases) {
        SCOPED_TRACE(each.what);
        Conversation client;
        client.send(crFrame);
        const std::string reply = client.send(frame(connectSpdu(each.cpType)));
        EXPECT_EQ(reply, each.accepted ? canonical(connectReply) : "");
        EXPECT_EQ(client.status(), each.accepted ? CS_ASSOCIATED : CS_COTP);
        client.restart();
        client.associate(); // whatever came before
    }
}

} // namespace
} // namespace ied::test
