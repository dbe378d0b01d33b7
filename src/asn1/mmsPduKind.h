// An MMS PDU as the layers below see it: whatever is wrong inside it is one error.
#pragma once

#include "asn1/asnCodec.h"
#include "asn1/mmsTypes.h"

namespace ied::asn {

struct MmsPdu {
    using Value = MMSpdu;
    static constexpr u32 tag = 0;
    static constexpr Form form = Form::constructed;
    static constexpr i32 brokenPdu = -820;
    static bool matches(u32 tag);
    static u32 encode(GenBuf *gen, const MMSpdu *value);
    static void decode(Reader &reader, u32 tag, u32 len, MMSpdu *value);
    static void release(MMSpdu *value);
};
template <> struct KindOf<MMSpdu> { using type = MmsPdu; };

} // namespace ied::asn
