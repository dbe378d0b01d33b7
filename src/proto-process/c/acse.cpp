#include "DebugInfo/DebugInfo.h"
#include "proto-process/c/octets.h"
#include "proto-process/c/packet.h"

namespace ied {

namespace {

constexpr AsnInt mmsContext = 3;
constexpr AsnInt aeQualifier = 12;
constexpr AsnInt releaseReason = 1;

// The AARE but for its user information: every client is accepted, and nothing that it proposed
// shows in the answer.
AARE_apdu *newAccept() {
    auto *aare = MallocOf<AARE_apdu>();
    aare->protocol_version = newBits(1, {0x80});
    aare->application_context_name = newOcts<AsnOid>({0x28, 0xCA, 0x22, 0x02, 0x03}); // 1.0.9506.2.3
    aare->result_source_diagnostic = MallocOf<Associate_source_diagnostic>();
    aare->responding_AP_title = MallocOf<AP_title>();
    aare->responding_AP_title->form2 = newOcts<AsnOid>({0x29, 0x01, 0x87, 0x67, 0x01}); // 1.1.1.999.1
    aare->responding_AE_qualifier = MallocOf<AE_qualifier>();
    aare->responding_AE_qualifier->form2 = aeQualifier;
    aare->user_information = asnListNewPtr();
    return aare;
}

int processAssociate(const AARQ_apdu *aarq, ACSE_apdu *reply, u8 slot) {
    const MMSpdu *mms = firstUserInformation(aarq->user_information);
    if (mms == nullptr) {
        return 0;
    }
    reply->choiceId = ACSE_apdu::aare;
    reply->aare_ = newAccept();
    Association_external *external =
        asnListPush(reply->aare_->user_information, MallocOf<Association_external>());
    external->indirect_reference = newAsnInt(mmsContext);
    external->single_ASN1_type = MallocOf<MMSpdu>();
    return processApduMms(mms, external->single_ASN1_type, slot);
}

int processRelease(ACSE_apdu *reply) {
    reply->choiceId = ACSE_apdu::rlre;
    reply->rlre_ = MallocOf<RLRE_apdu>();
    reply->rlre_->reason = newAsnInt(releaseReason);
    return 1;
}

} // namespace

MMSpdu *firstUserInformation(const Association_information *information) {
    if (information == nullptr || information->first == nullptr) {
        return nullptr;
    }
    return asnListValue<Association_external>(information->first)->single_ASN1_type;
}

int processApduAcse(const ACSE_apdu *apdu, ACSE_apdu *reply, u8 slot) {
    switch (apdu->choiceId) {
    case ACSE_apdu::aarq:
        return processAssociate(apdu->aarq_, reply, slot);
    case ACSE_apdu::rlrq:
        return processRelease(reply);
    default:
        dbInfo(DbSOC, DbERR, "processApduAcse", "other acse id %d", static_cast<int>(apdu->choiceId));
        return 0;
    }
}

} // namespace ied
