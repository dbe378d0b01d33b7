// The operations of the primitive types.
#include "asn1/asnCodec.h"

namespace ied {

template struct AsnOperations<AsnBool, asn::Boolean>;
template struct AsnOperations<AsnInt, asn::Integer>;
template struct AsnOperations<UAsnInt, asn::Unsigned>;
template struct AsnOperations<AsnNull, asn::Null>;
template struct AsnOperations<AsnReal, asn::Real>;
template struct AsnOperations<AsnBits, asn::BitString>;
template struct AsnOperations<AsnOcts, asn::OctetString>;
template struct AsnOperations<AsnOid, asn::ObjectIdentifier>;
template struct AsnOperations<AsnOcts, asn::Visible>;
template struct AsnOperations<AsnOcts, asn::Utf8>;
template struct AsnOperations<AsnOcts, asn::Graphic>;
template struct AsnOperations<AsnAny, asn::Any>;

} // namespace ied
