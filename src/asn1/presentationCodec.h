// Codecs of ISO 8823 presentation and ISO 8650 ACSE, both directions.
#pragma once

#include "asn1/mmsCodec.h"
#include "asn1/presentationTypes.h"

namespace ied {

ASN_CODEC(Mode_selector)
ASN_CODEC(CP_type)
ASN_CODEC(CP_typeSeq)
ASN_CODEC(Context_listSeq)
ASN_CODEC(Context_list, asn::SequenceOf<Context_listSeq>)
ASN_CODEC(Default_context_name)
ASN_CODEC(CPA_PPDU)
ASN_CODEC(CPA_PPDUSeq)
ASN_CODEC(Result_listSeq)
ASN_CODEC(Result_list, asn::SequenceOf<Result_listSeq>)
ASN_CODEC(User_data)
ASN_CODEC(PDV_list)
ASN_CODEC(Fully_encoded_data, asn::SequenceOf<PDV_list>)
ASN_CODEC(PDV_listChoice)
ASN_CODEC(ACSE_apdu)
ASN_CODEC(AARQ_apdu)
ASN_CODEC(AARE_apdu)
ASN_CODEC(RLRQ_apdu)
ASN_CODEC(RLRE_apdu)
ASN_CODEC(ABRT_apdu)
ASN_CODEC(Associate_source_diagnostic)
ASN_CODEC(Authentication_value)
ASN_CODEC(Authentication_valueSeq)
ASN_CODEC(Association_external)
ASN_CODEC(Association_information, asn::SequenceOf<Association_external>)

// The same with the word on what the PDV lists hold: MMS PDUs (session data) or ACSE PDUs (the
// contents of a CP and of a FINISH). The form without the word takes what `env` says.
inline void BDecUser_dataContent(GenBuf *gen, u32 tag, u32 len, User_data *value, u32 *bytesDecoded,
                                 DecodeEnv *env, bool mms) {
    env->mms = mms;
    BDecUser_dataContent(gen, tag, len, value, bytesDecoded, env);
}

} // namespace ied
