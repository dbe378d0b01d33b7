// The codecs of the MMS PDUs, from their definitions.
#include "asn1/mmsPduDefinition.h"
#include "asn1/mmsPduKind.h"

namespace ied {

namespace asn {

bool MmsPdu::matches(u32 tagRead) {
    return Record<MMSpdu>::matches(tagRead);
}

u32 MmsPdu::encode(GenBuf *gen, const MMSpdu *value) {
    return Record<MMSpdu>::encode(gen, value);
}

void MmsPdu::decode(Reader &reader, u32 tagRead, u32 len, MMSpdu *value) {
    try {
        Record<MMSpdu>::decode(reader, tagRead, len, value);
    } catch (const BerError &) {
        berFail(brokenPdu);
    }
}

void MmsPdu::release(MMSpdu *value) {
    Record<MMSpdu>::release(value);
}

} // namespace asn

template struct AsnOperations<ConfirmedServiceRequest>;
template struct AsnOperations<ConfirmedServiceResponse>;
template struct AsnOperations<Confirmed_RequestPDU>;
template struct AsnOperations<Confirmed_ResponsePDU>;
template struct AsnOperations<Confirmed_ErrorPDU>;
template struct AsnOperations<Cancel_ErrorPDU>;
template struct AsnOperations<ServiceError>;
template struct AsnOperations<ServiceErrorChoice>;
template struct AsnOperations<UnconfirmedService>;
template struct AsnOperations<Unconfirmed_PDU>;
template struct AsnOperations<RejectPDU>;
template struct AsnOperations<RejectPDUChoice>;
template struct AsnOperations<InitRequestDetail>;
template struct AsnOperations<Initiate_RequestPDU>;
template struct AsnOperations<InitResponseDetail>;
template struct AsnOperations<Initiate_ResponsePDU>;
template struct AsnOperations<MMSpdu>;

} // namespace ied
