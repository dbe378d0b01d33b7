// The codecs of presentation and ACSE, from their definitions.
#include "asn1/presentationDefinition.h"

namespace ied {

template struct AsnOperations<Mode_selector>;
template struct AsnOperations<CP_type>;
template struct AsnOperations<CP_typeSeq>;
template struct AsnOperations<Context_listSeq>;
template struct AsnOperations<Context_list, asn::SequenceOf<Context_listSeq>>;
template struct AsnOperations<Default_context_name>;
template struct AsnOperations<CPA_PPDU>;
template struct AsnOperations<CPA_PPDUSeq>;
template struct AsnOperations<Result_listSeq>;
template struct AsnOperations<Result_list, asn::SequenceOf<Result_listSeq>>;
template struct AsnOperations<User_data>;
template struct AsnOperations<PDV_list>;
template struct AsnOperations<Fully_encoded_data, asn::SequenceOf<PDV_list>>;
template struct AsnOperations<PDV_listChoice>;
template struct AsnOperations<ACSE_apdu>;
template struct AsnOperations<AARQ_apdu>;
template struct AsnOperations<AARE_apdu>;
template struct AsnOperations<RLRQ_apdu>;
template struct AsnOperations<ABRT_apdu>;
template struct AsnOperations<Associate_source_diagnostic>;
template struct AsnOperations<Authentication_value>;
template struct AsnOperations<Authentication_valueSeq>;
template struct AsnOperations<Association_external>;
template struct AsnOperations<Association_information, asn::SequenceOf<Association_external>>;

} // namespace ied
