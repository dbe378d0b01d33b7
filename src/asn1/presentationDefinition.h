// The types of ISO 8823 presentation and ISO 8650 ACSE, a line a component.
#pragma once

#include "asn1/mmsPduKind.h"
#include "asn1/mmsServiceDefinition.h"
#include "asn1/presentationCodec.h"

// clang-format off

namespace ied::asn {

// -------------------------------------------------------------------------------------- ACSE

template <>
inline constexpr auto asnDefinition<Association_external> = sequence(-3000,
    optional<&Association_external::direct_reference>(),
    optional<&Association_external::indirect_reference>(),
    component<&Association_external::single_ASN1_type>(explicitContext(0)));

// An EXTERNAL keeps its own tag in the list of user information.
struct External : Record<Association_external> {
    static constexpr u32 tag = 0x08000000;
};
template <> struct KindOf<Association_external> {
    using type = External;
};

using UserInformation = SequenceOf<Association_external>;

template <>
inline constexpr auto asnDefinition<Authentication_valueSeq> = sequence(-3020,
    component<&Authentication_valueSeq::other_mechanism_name>(),
    component<&Authentication_valueSeq::other_mechanism_value>());

template <>
inline constexpr auto asnDefinition<Authentication_value> = choice(-3040,
    alternative<Authentication_value::charstring, &Authentication_value::charstring_>(context(0)),
    alternative<Authentication_value::bitstring, &Authentication_value::bitstring_>(context(1)),
    alternative<Authentication_value::external, &Authentication_value::external_, UndecodedConstructed>(context(2)),
    alternative<Authentication_value::other, &Authentication_value::other_>(context(3)));

template <>
inline constexpr auto asnDefinition<AARQ_apdu> = sequence(-3060,
    optional<&AARQ_apdu::protocol_version>(context(0)),
    component<&AARQ_apdu::application_context_name>(explicitContext(1)),
    optional<&AARQ_apdu::called_AP_title>(explicitContext(2)),
    optional<&AARQ_apdu::called_AE_qualifier>(explicitContext(3)),
    optional<&AARQ_apdu::called_AP_invocation_identifier>(explicitContext(4)),
    optional<&AARQ_apdu::called_AE_invocation_identifier>(explicitContext(5)),
    optional<&AARQ_apdu::calling_AP_title>(explicitContext(6)),
    optional<&AARQ_apdu::calling_AE_qualifier>(explicitContext(7)),
    optional<&AARQ_apdu::calling_AP_invocation_identifier>(explicitContext(8)),
    optional<&AARQ_apdu::calling_AE_invocation_identifier>(explicitContext(9)),
    optional<&AARQ_apdu::sender_acse_requirements>(context(10)),
    optional<&AARQ_apdu::mechanism_name>(context(11)),
    optional<&AARQ_apdu::calling_authentication_value>(explicitContext(12)),
    optional<&AARQ_apdu::application_context_name_list, UndecodedConstructed>(context(13)),
    optional<&AARQ_apdu::implementation_information>(context(29)),
    optional<&AARQ_apdu::user_information, UserInformation>(context(30)));

template <>
inline constexpr auto asnDefinition<Associate_source_diagnostic> = choice(-3080,
    alternative<Associate_source_diagnostic::acseServiceUser,
        &Associate_source_diagnostic::value>(explicitContext(1)),
    alternative<Associate_source_diagnostic::acseServiceProvider,
        &Associate_source_diagnostic::value>(explicitContext(2)));

template <>
inline constexpr auto asnDefinition<AARE_apdu> = sequence(-3100,
    optional<&AARE_apdu::protocol_version>(context(0)),
    component<&AARE_apdu::application_context_name>(explicitContext(1)),
    component<&AARE_apdu::result>(explicitContext(2)),
    component<&AARE_apdu::result_source_diagnostic>(explicitContext(3)),
    optional<&AARE_apdu::responding_AP_title>(explicitContext(4)),
    optional<&AARE_apdu::responding_AE_qualifier>(explicitContext(5)),
    optional<&AARE_apdu::responding_AP_invocation_identifier>(explicitContext(6)),
    optional<&AARE_apdu::responding_AE_invocation_identifier>(explicitContext(7)),
    optional<&AARE_apdu::responder_acse_requirements>(context(8)),
    optional<&AARE_apdu::mechanism_name>(context(9)),
    optional<&AARE_apdu::responding_authentication_value>(explicitContext(10)),
    optional<&AARE_apdu::application_context_name_list, UndecodedConstructed>(context(11)),
    optional<&AARE_apdu::implementation_information>(context(29)),
    optional<&AARE_apdu::user_information, UserInformation>(context(30)));

template <>
inline constexpr auto asnDefinition<RLRQ_apdu> = sequence(-3120,
    optional<&RLRQ_apdu::reason>(context(0)),
    optional<&RLRQ_apdu::user_information, UserInformation>(context(30)));

template <>
inline constexpr auto asnDefinition<ABRT_apdu> = sequence(-3140,
    component<&ABRT_apdu::abort_source>(context(0)),
    optional<&ABRT_apdu::abort_diagnostic>(context(1)),
    optional<&ABRT_apdu::user_information, UserInformation>(context(30)));

template <>
inline constexpr auto asnDefinition<ACSE_apdu> = choice(-3160,
    alternative<ACSE_apdu::aarq, &ACSE_apdu::aarq_>(application(0)),
    alternative<ACSE_apdu::aare, &ACSE_apdu::aare_>(application(1)),
    alternative<ACSE_apdu::rlrq, &ACSE_apdu::rlrq_>(application(2)),
    alternative<ACSE_apdu::rlre, &ACSE_apdu::rlre_>(application(3)),
    alternative<ACSE_apdu::abrt, &ACSE_apdu::abrt_>(application(4)));

// ------------------------------------------------------------------------------ presentation

inline bool holdsMms(const DecodeEnv &env) {
    return env.mms;
}
inline bool holdsAcse(const DecodeEnv &env) {
    return !env.mms;
}

template <>
inline constexpr auto asnDefinition<PDV_listChoice> = choice(-3200,
    alternative<PDV_listChoice::mms, &PDV_listChoice::mmsPdu, void, holdsMms>(explicitContext(0)),
    alternative<PDV_listChoice::acse, &PDV_listChoice::acseApdu, void, holdsAcse>(explicitContext(0)),
    alternative<PDV_listChoice::octetAligned, &PDV_listChoice::octets>(context(1)),
    alternative<PDV_listChoice::arbitrary, &PDV_listChoice::bits>(context(2)));

template <>
inline constexpr auto asnDefinition<PDV_list> = sequence(-3220,
    optional<&PDV_list::transfer_syntax_name>(),
    component<&PDV_list::presentation_context_identifier>(),
    component<&PDV_list::presentation_data_values>());

template <>
inline constexpr auto asnDefinition<User_data> = choice(-3240,
    alternative<User_data::simplyEncoded, &User_data::simply_encoded_data>(application(0)),
    alternative<User_data::fullyEncoded, &User_data::fully_encoded_data,
        SequenceOf<PDV_list>>(application(1)));

template <>
inline constexpr auto asnDefinition<Mode_selector> = set(-3260,
    component<&Mode_selector::mode_value>(context(0)));

template <>
inline constexpr auto asnDefinition<Context_listSeq> = sequence(-3280,
    component<&Context_listSeq::presentation_context_identifier>(),
    component<&Context_listSeq::abstract_syntax_name>(),
    component<&Context_listSeq::transfer_syntax_name_list, SequenceOf<AsnOid>>());

template <>
inline constexpr auto asnDefinition<Default_context_name> = sequence(-3300,
    component<&Default_context_name::abstract_syntax_name>(context(0)),
    component<&Default_context_name::transfer_syntax_name>(context(1)));

template <>
inline constexpr auto asnDefinition<CP_typeSeq> = sequence(-3320,
    optional<&CP_typeSeq::protocol_version>(context(0)),
    optional<&CP_typeSeq::calling_presentation_selector>(context(1)),
    optional<&CP_typeSeq::called_presentation_selector>(context(2)),
    optional<&CP_typeSeq::presentation_context_definition_list, SequenceOf<Context_listSeq>>(context(4)),
    optional<&CP_typeSeq::default_context_name>(context(6)),
    optional<&CP_typeSeq::presentation_requirements>(context(8)),
    optional<&CP_typeSeq::user_session_requirements>(context(9)),
    optional<&CP_typeSeq::user_data>());

template <>
inline constexpr auto asnDefinition<CP_type> = set(-3340,
    component<&CP_type::mode_selector>(context(0)),
    optional<&CP_type::normal_mode_parameters>(context(2)));

template <>
inline constexpr auto asnDefinition<Result_listSeq> = sequence(-3360,
    component<&Result_listSeq::result>(context(0)),
    optional<&Result_listSeq::transfer_syntax_name>(context(1)),
    optional<&Result_listSeq::provider_reason>(context(2)));

template <>
inline constexpr auto asnDefinition<CPA_PPDUSeq> = sequence(-3380,
    optional<&CPA_PPDUSeq::protocol_version>(context(0)),
    optional<&CPA_PPDUSeq::responding_presentation_selector>(context(3)),
    optional<&CPA_PPDUSeq::presentation_context_definition_result_list,
        SequenceOf<Result_listSeq>>(context(5)),
    optional<&CPA_PPDUSeq::presentation_requirements>(context(8)),
    optional<&CPA_PPDUSeq::user_session_requirements>(context(9)),
    optional<&CPA_PPDUSeq::user_data>());

template <>
inline constexpr auto asnDefinition<CPA_PPDU> = set(-3400,
    component<&CPA_PPDU::mode_selector>(context(0)),
    optional<&CPA_PPDU::normal_mode_parameters>(context(2)));

} // namespace ied::asn
