// The value records of ISO 8823 presentation and ISO 8650 ACSE, as far as a responder of MMS
// associations sends and receives them. The rules are those of mmsDataTypes.h.
#pragma once

#include "asn1/mmsTypes.h"

namespace ied {

struct Mode_selector {
    AsnInt mode_value;
};

// What a PDV list carries. The octets do not tell an MMS PDU from an ACSE PDU: the decoder's
// caller does.
struct PDV_listChoice {
    enum : u32 {
        mms,
        octetAligned,
        arbitrary,
        acse
    };
    u32 choiceId;
    union {
        MMSpdu *mmsPdu;
        AsnOcts *octets;
        AsnBits *bits;
        struct ACSE_apdu *acseApdu;
    };
};

struct PDV_list {
    AsnOid transfer_syntax_name; // optional
    AsnInt presentation_context_identifier;
    PDV_listChoice *presentation_data_values;
};

using Fully_encoded_data = AsnList; // of PDV_list

struct User_data {
    enum : u32 {
        simplyEncoded,
        fullyEncoded
    };
    u32 choiceId;
    union {
        AsnOcts *simply_encoded_data;
        Fully_encoded_data *fully_encoded_data;
    };
};

struct Context_listSeq {
    AsnInt presentation_context_identifier;
    AsnOid abstract_syntax_name;
    AsnList *transfer_syntax_name_list; // of AsnOid
};

using Context_list = AsnList; // of Context_listSeq

struct Default_context_name {
    AsnOid abstract_syntax_name;
    AsnOid transfer_syntax_name;
};

struct CP_typeSeq {
    AsnBits protocol_version;
    AsnOcts calling_presentation_selector;
    AsnOcts called_presentation_selector;
    Context_list *presentation_context_definition_list;
    Default_context_name *default_context_name;
    AsnBits presentation_requirements;
    AsnBits user_session_requirements;
    User_data *user_data;
};

struct CP_type {
    Mode_selector *mode_selector;
    CP_typeSeq *normal_mode_parameters;
};

struct Result_listSeq {
    AsnInt result;
    AsnOid transfer_syntax_name; // optional
    AsnInt *provider_reason;
};

using Result_list = AsnList; // of Result_listSeq

struct CPA_PPDUSeq {
    AsnBits protocol_version;
    AsnOcts responding_presentation_selector;
    Result_list *presentation_context_definition_result_list;
    AsnBits presentation_requirements;
    AsnBits user_session_requirements;
    User_data *user_data;
};

struct CPA_PPDU {
    Mode_selector *mode_selector;
    CPA_PPDUSeq *normal_mode_parameters;
};

struct Association_external {
    AsnOid direct_reference; // optional
    AsnInt *indirect_reference;
    MMSpdu *single_ASN1_type;
};

using Association_information = AsnList; // of Association_external

struct Authentication_valueSeq { // other
    AsnOid other_mechanism_name;
    AsnAny other_mechanism_value;
};

struct Authentication_value {
    enum : u32 {
        charstring,
        bitstring,
        external,
        other
    };
    u32 choiceId;
    union {
        AsnOcts *charstring_;
        AsnBits *bitstring_;
        AsnOcts *external_; // undecoded
        Authentication_valueSeq *other_;
    };
};

struct AARQ_apdu {
    AsnBits protocol_version;
    AsnOid application_context_name;
    AP_title *called_AP_title;
    AE_qualifier *called_AE_qualifier;
    AsnInt *called_AP_invocation_identifier;
    AsnInt *called_AE_invocation_identifier;
    AP_title *calling_AP_title;
    AE_qualifier *calling_AE_qualifier;
    AsnInt *calling_AP_invocation_identifier;
    AsnInt *calling_AE_invocation_identifier;
    AsnBits sender_acse_requirements;
    AsnOid mechanism_name;
    Authentication_value *calling_authentication_value;
    AsnOcts *application_context_name_list; // undecoded
    AsnOcts implementation_information;
    Association_information *user_information;
};

struct Associate_source_diagnostic {
    enum : u32 {
        acseServiceUser,
        acseServiceProvider
    };
    u32 choiceId;
    AsnInt value;
};

struct AARE_apdu {
    AsnBits protocol_version;
    AsnOid application_context_name;
    AsnInt result;
    Associate_source_diagnostic *result_source_diagnostic;
    AP_title *responding_AP_title;
    AE_qualifier *responding_AE_qualifier;
    AsnInt *responding_AP_invocation_identifier;
    AsnInt *responding_AE_invocation_identifier;
    AsnBits responder_acse_requirements;
    AsnOid mechanism_name;
    Authentication_value *responding_authentication_value;
    AsnOcts *application_context_name_list; // undecoded
    AsnOcts implementation_information;
    Association_information *user_information;
};

struct RLRQ_apdu {
    AsnInt *reason;
    Association_information *user_information;
};
using RLRE_apdu = RLRQ_apdu;

struct ABRT_apdu {
    AsnInt abort_source;
    AsnInt *abort_diagnostic;
    Association_information *user_information;
};

struct ACSE_apdu {
    enum : u32 {
        aarq,
        aare,
        rlrq,
        rlre,
        abrt
    };
    u32 choiceId;
    union {
        AARQ_apdu *aarq_;
        AARE_apdu *aare_;
        RLRQ_apdu *rlrq_;
        RLRE_apdu *rlre_;
        ABRT_apdu *abrt_;
    };
};

} // namespace ied
