// Presentation and ACSE values, octets by hand from ISO 8823 and ISO 8650.
#include "asn1/presentationCodec.h"
#include "tests/support/asnTesting.h"

#include <gtest/gtest.h>
#include <random>

namespace ied::test {
namespace {

const std::string conclude = "8B00";
const std::string contextName = "A107 0605 28CA220203";
const std::string userInformation = tlv("BE", tlv("28", "020103" + tlv("A0", conclude)));

std::string pdv(const std::string &apdu) {
    return tlv("61", tlv("30", "020101" + tlv("A0", apdu)));
}

std::string aarqOf(const std::string &fields) {
    return tlv("60", contextName + fields + userInformation);
}

const std::string contexts = tlv("A4", tlv("30", "020101 0604 52010001 3004 0602 5101") +
                                           tlv("30", "020103 0605 28CA220201 3008 0602 5101 0602 5102"));

std::string cpOf(const std::string &apdu) {
    return tlv("31",
               "A003 800101" + tlv("A2", "8002 0780 8104 00000001 8204 00000002" + contexts +
                                             "A606 8001 51 8101 52 8802 0640 8903 04 FFF0" + pdv(apdu)));
}

const std::string bareAare = tlv("61", "8002 0780" + contextName + "A203 020100 A305 A103 020100" +
                                           "A407 0605 2901876701 A503 02010C" + userInformation);

struct ValueCase {
    const char *what;
    std::string hex;
};

const auto nameOf = [](const auto &one) { return std::string(one.param.what); };

class EveryApdu : public testing::TestWithParam<ValueCase> {};

TEST_P(EveryApdu, IsReadAndWritten) {
    User_data data{};
    EXPECT_EQ(decodeError<User_data>(BDecUser_data, pdv(GetParam().hex), data), 0);
    EXPECT_EQ(encoded<User_data>(BEncUser_dataContent, data), canonical(pdv(GetParam().hex)));
    FreeUser_data(&data);
}

INSTANTIATE_TEST_SUITE_P(
    Acse, EveryApdu,
    testing::Values(
        ValueCase{"aarq", aarqOf("")}, ValueCase{"aarq_of_names_only", tlv("60", contextName)},
        ValueCase{"aarq_with_everything",
                  tlv("60", "8002 0780" + contextName +
                                "A203 0601 29 A303 020101 A403 020102 A503 020103 A603 0601 2A A703 020104 "
                                "A803 020105 A903 020106 8A02 0780 8B03 520301 AC05 8003 707764 "
                                "AD06 3004 0602 5101 9D02 4142" +
                                userInformation)},
        ValueCase{"aarq_with_bits", aarqOf("AC05 8103 04FFF0")},
        ValueCase{"aarq_with_external", aarqOf("AC09 A207 0602 5101 810141")},
        ValueCase{"aarq_with_other", aarqOf("AC0C A30A 0603 520304 0403 414243")},
        ValueCase{"aare", bareAare},
        ValueCase{"aare_of_a_provider_with_everything",
                  tlv("61", contextName + "A203 020101 A305 A203 020102 A403 0601 29 A503 020101 A603 020102 "
                                          "A703 020103 8802 0780 8903 520301 AA05 8003 707764 AB00 9D01 41")},
        ValueCase{"rlrq", "6203 800100"}, ValueCase{"rlrq_empty", "6200"},
        ValueCase{"rlre", tlv("63", "800101" + userInformation)}, ValueCase{"abrt", "6406 800101 810102"}),
    nameOf);

TEST(Acse, TheValueOfAnUnknownMechanismIsKeptWhole) {
    User_data data{};
    EXPECT_EQ(decodeError<User_data>(BDecUser_data, pdv(aarqOf("AC0C A30A 0603 520304 0403 414243")), data),
              0);
    const PDV_list *list = asnListValue<PDV_list>(data.fully_encoded_data->first);
    EXPECT_EQ(list->presentation_context_identifier, 1);
    EXPECT_EQ(list->presentation_data_values->choiceId, PDV_listChoice::acse);
    const AARQ_apdu *aarq = list->presentation_data_values->acseApdu->aarq_;
    const Authentication_value *value = aarq->calling_authentication_value;
    EXPECT_EQ(value->choiceId, Authentication_value::other);
    EXPECT_EQ(hexText({value->other_->other_mechanism_name.octs, 3}), "520304");
    const AsnOcts *any = value->other_->other_mechanism_value.value;
    EXPECT_EQ(hexText({any->octs, any->octetLen}), "0403414243");
    const auto *external = asnListValue<Association_external>(aarq->user_information->first);
    EXPECT_EQ(*external->indirect_reference, 3);
    EXPECT_EQ(external->single_ASN1_type->choiceId, MMSpdu::concludeRequestPDU);
    FreeUser_data(&data);
}

TEST(Presentation, AConnectIsReadAndWritten) {
    CP_type cp{};
    EXPECT_EQ(decodeError<CP_type>(BDecCP_type, cpOf(aarqOf("")), cp), 0);
    EXPECT_EQ(cp.mode_selector->mode_value, 1);
    const CP_typeSeq *parameters = cp.normal_mode_parameters;
    EXPECT_EQ(parameters->calling_presentation_selector.octs[3], 1);
    EXPECT_EQ(parameters->called_presentation_selector.octs[3], 2);
    EXPECT_EQ(parameters->user_session_requirements.bitLen, 12U);
    const auto *second =
        asnListValue<Context_listSeq>(parameters->presentation_context_definition_list->last);
    EXPECT_EQ(second->presentation_context_identifier, 3);
    EXPECT_EQ(second->transfer_syntax_name_list->count, 2U);
    EXPECT_EQ(encoded<CP_type>(BEncCP_type, cp), canonical(cpOf(aarqOf(""))));
    FreeCP_type(&cp);
}

TEST(Presentation, AnAcceptIsReadAndWritten) {
    const std::string hex =
        tlv("31", "A003 800101" +
                      tlv("A2", "8304 00000001 A512 3007 800100 8102 5101 3007 800100 8102 5101 8802 0600" +
                                    pdv(bareAare)));
    CPA_PPDU cpa{};
    EXPECT_EQ(decodeError<CPA_PPDU>(BDecCPA_PPDU, hex, cpa), 0);
    EXPECT_EQ(cpa.normal_mode_parameters->presentation_requirements.bitLen, 2U);
    EXPECT_EQ(encoded<CPA_PPDU>(BEncCPA_PPDU, cpa), canonical(hex));
    FreeCPA_PPDU(&cpa);
}

TEST(Presentation, WhatAValueListHoldsIsTheWordOfTheCaller) {
    for (const bool mms : {true, false}) {
        for (const std::string &apdu : {conclude, std::string("6200")}) {
            const std::vector<u8> content = octets(tlv("30", "0602 5101 020103" + tlv("A0", apdu)));
            BerBuf buf;
            berBufRead(&buf, content.data(), static_cast<u32>(content.size()));
            User_data data{};
            DecodeEnv env;
            u32 count = 0;
            i32 error = 0;
            try {
                BDecUser_dataContent(&buf.gen, 0x61000000, static_cast<u32>(content.size()), &data, &count,
                                     &env, mms);
            } catch (const BerError &failure) {
                error = failure.code;
            }
            EXPECT_EQ(error == 0, mms == (apdu == conclude)) << apdu;
            if (error == 0) {
                const auto *list = asnListValue<PDV_list>(data.fully_encoded_data->first);
                EXPECT_EQ(list->presentation_data_values->choiceId,
                          mms ? PDV_listChoice::mms : PDV_listChoice::acse);
            }
            FreeUser_data(&data);
        }
    }
}

TEST(Presentation, OtherEncodingsOfUserDataAreRead) {
    for (const char *hex : {"4003 414243", "610A 3008 020101 8103 414243", "6109 3007 020101 8202 04F0"}) {
        User_data data{};
        EXPECT_EQ(decodeError<User_data>(BDecUser_data, hex, data), 0) << hex;
        EXPECT_EQ(encoded<User_data>(BEncUser_dataContent, data), canonical(hex));
        FreeUser_data(&data);
    }
}

struct Malformed {
    const char *what;
    std::string hex;
};

class MalformedConnect : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedConnect, IsRefused) {
    CP_type cp{};
    EXPECT_LT(decodeError<CP_type>(BDecCP_type, GetParam().hex, cp), 0);
    FreeCP_type(&cp);
}

INSTANTIATE_TEST_SUITE_P(
    Presentation, MalformedConnect,
    testing::Values(
        Malformed{"no_mode", "3102 A200"}, Malformed{"mode_twice", "310A A003 800101 A003 800101"},
        Malformed{"parameters_twice", "3109 A200 A003 800101 A200"},
        Malformed{"another_component", "3107 A003 800101 A100"}, Malformed{"mode_without_value", "3102 A000"},
        Malformed{"mms_where_acse_is_due", cpOf(conclude)},
        Malformed{"aare_without_result", cpOf(tlv("61", contextName))},
        Malformed{"aarq_without_context_name", cpOf(tlv("60", userInformation))},
        Malformed{"title_of_another_form", cpOf(aarqOf("A602 3000"))},
        Malformed{"broken_mms_pdu", cpOf(tlv("60", contextName + "BE09 2807 020103 A002 8B01"))},
        Malformed{"any_of_indefinite_length", cpOf(aarqOf("AC0D A30B 0603 520304 3080 0000 0000"))},
        Malformed{"external_that_is_cut", cpOf(aarqOf("AC04 A202 0605"))},
        Malformed{"no_identifier", tlv("31", "A003800101" + tlv("A2", "6106 3004 A002 6200"))}),
    nameOf);

TEST(Presentation, TheComponentsOfASetComeInAnyOrder) {
    CP_type cp{};
    EXPECT_EQ(decodeError<CP_type>(BDecCP_type, "3180 A200 A080 800101 0000 0000", cp), 0);
    EXPECT_EQ(cp.mode_selector->mode_value, 1);
    EXPECT_NE(cp.normal_mode_parameters, nullptr);
    FreeCP_type(&cp);
}

// Nothing to expect but an end, with all memory given back: the leak checker has the word.
TEST(Presentation, MutatedConnectsAreRefusedOrRead) {
    std::mt19937 random(8823); // NOLINT: the same round every time
    const std::string seeds[] = {cpOf(aarqOf("AC0C A30A 0603 520304 0403 414243")), cpOf(bareAare),
                                 cpOf(aarqOf("AC09 A207 0602 5101 810141"))};
    int accepted = 0;
    constexpr int rounds = 20000;
    for (int i = 0; i < rounds; ++i) {
        std::vector<u8> data = octets(seeds[random() % std::size(seeds)]);
        for (auto n = 1 + random() % 3; n > 0; --n) {
            data[random() % data.size()] = static_cast<u8>(random());
        }
        CP_type cp{};
        accepted += decodeError<CP_type>(BDecCP_type, data, cp) >= 0;
        FreeCP_type(&cp);
    }
    EXPECT_GT(accepted, rounds / 50);
    EXPECT_LT(accepted, rounds - rounds / 50);
}

} // namespace
} // namespace ied::test
