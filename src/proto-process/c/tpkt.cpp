#include "proto-process/c/packet.h"

namespace ied {

namespace {

constexpr u32 leastFrame = tpktOctets + dtOctets; // with content

} // namespace

u32 dec_tpdu_tpkt(TpduTpkt *pdu, const u8 *data, u32 len, i32 *err) {
    *err = 0;
    const u16 length = len < tpktOctets ? u16{0} : decShort(data + 2);
    const bool sound = length == tpktOctets || length >= leastFrame;
    if (!sound || length > len) {
        *err = ErrIncomplete;
        return 0;
    }
    pdu->version = data[0];
    pdu->reserved = data[1];
    pdu->length = length;
    return tpktOctets;
}

int process_tpdu_tpkt(const TpduTpkt *request, TpduTpkt *reply) {
    reply->version = request->version;
    reply->reserved = request->reserved;
    reply->length = tpktOctets;
    reply->headerSize = tpktOctets;
    return 1;
}

u32 enc_tpdu_tpkt(const TpduTpkt *pdu, u8 *buf, u32 end) {
    u8 *out = buf + end - pdu->headerSize;
    out[0] = 3;
    out[1] = 0;
    encShort(out + 2, pdu->length);
    return pdu->headerSize;
}

int rpt_tpdu_tpkt(TpduTpkt *pdu) {
    *pdu = {3, 0, tpktOctets, tpktOctets};
    return 1;
}

} // namespace ied
