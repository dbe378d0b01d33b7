#include "DebugInfo/DebugInfo.h"
#include "basicInterface/memory.h"
#include "device/externGlbCfg.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"

#include <cstring>

namespace ied {

ClientStat *clientStat;
ClientFile *clientFile;
u8 clientNum;
SemId semClientNum;
SemId *semSend;
SemId *semClientStart;

namespace {

constexpr u32 mutexOptions = semQPriority | semDeleteSafe | semInversionSafe;

u8 acseAccess(const ACSE_apdu *apdu, u32 wanted, AccessType access) {
    return apdu != nullptr && apdu->choiceId == wanted ? access : AccessOther;
}

u8 acseStatus(const ACSE_apdu *apdu, u32 wanted, ClientState state) {
    return apdu != nullptr && apdu->choiceId == wanted ? state : CS_NONE;
}

bool isFullyEncoded(const User_data *userData) {
    return userData != nullptr && userData->choiceId == User_data::fullyEncoded;
}

const User_data *dataOf(const PacketBuf *pdu) {
    return pdu->ppdu.userDataPresent != 0 ? &pdu->ppdu.userData : nullptr;
}

const User_data *connectDataOf(const PacketBuf *pdu) {
    const CP_typeSeq *parameters = pdu->ppdu.cpPresent != 0 ? pdu->ppdu.cp.normal_mode_parameters : nullptr;
    return parameters != nullptr ? parameters->user_data : nullptr;
}

const User_data *acceptDataOf(const PacketBuf *pdu) {
    const CPA_PPDUSeq *parameters =
        pdu->ppdu.cpaPresent != 0 ? pdu->ppdu.cpa.normal_mode_parameters : nullptr;
    return parameters != nullptr ? parameters->user_data : nullptr;
}

} // namespace

void clientStatInit() {
    const u32 count = externGlbCfg.maxClientNum;
    if (clientStat == nullptr) {
        clientStat = MallocArray<ClientStat>(count);
        clientFile = MallocArray<ClientFile>(count);
    }
    std::memset(clientStat, 0, sizeof(ClientStat) * count);
    std::memset(clientFile, 0, sizeof(ClientFile) * count);
}

void clientSemInit() {
    semClientNum = semMCreate(mutexOptions);
    if (semClientNum == nullptr) {
        dbInfo(DbOTH, DbPAN, "clientSemInit", "Create semClientNum failed!");
    }
    semSend = MallocArray<SemId>(externGlbCfg.maxClientNum);
    semClientStart = MallocArray<SemId>(externGlbCfg.maxClientNum);
    for (u32 slot = 0; slot < externGlbCfg.maxClientNum; ++slot) {
        semSend[slot] = semMCreate(mutexOptions);
        if (semSend[slot] == nullptr) {
            dbInfo(DbOTH, DbPAN, "clientSemInit", "Create semSend failed!");
        }
        semClientStart[slot] = semBCreate(semQFifo, semEmpty);
        if (semClientStart[slot] == nullptr) {
            dbInfo(DbOTH, DbPAN, "clientSemInit", "Create semClientStart failed!");
        }
    }
}

bool isClientValid(u8 slot) {
    return slot < externGlbCfg.maxClientNum && loadShared(clientStat[slot].status) == CS_DATA &&
           loadShared(clientStat[slot].sendFail) < externGlbCfg.maxSendFail;
}

u8 getAccessType(const PacketBuf *pdu) {
    if (pdu->cotp.crPresent != 0) {
        return AccessCotp;
    }
    if (pdu->spdu.abortPresent != 0) {
        return AccessAbort;
    }
    if (pdu->cotp.dtPresent == 0 || pdu->spduPresent == 0 || pdu->ppduPresent == 0) {
        return AccessOther;
    }
    if (pdu->spdu.connectPresent != 0 && isFullyEncoded(connectDataOf(pdu))) {
        return acseAccess(firstAcseApdu(connectDataOf(pdu)), ACSE_apdu::aarq, AccessInitiate);
    }
    if (pdu->spdu.dataPresent != 0 && isFullyEncoded(dataOf(pdu))) {
        const MMSpdu *mms = firstMmsPdu(dataOf(pdu));
        if (mms == nullptr) {
            return AccessOther;
        }
        return mms->choiceId == MMSpdu::concludeRequestPDU ? AccessConclude : AccessMms;
    }
    if (pdu->spdu.finishPresent != 0 && isFullyEncoded(dataOf(pdu))) {
        return acseAccess(firstAcseApdu(dataOf(pdu)), ACSE_apdu::rlrq, AccessRelease);
    }
    return AccessOther;
}

u8 getClientStatus(const PacketBuf *pdu) {
    if (pdu->cotp.crPresent != 0) {
        return CS_COTP;
    }
    if (pdu->spdu.abortPresent != 0) {
        return CS_ABORTED;
    }
    if (pdu->cotp.dtPresent == 0 || pdu->spduPresent == 0 || pdu->ppduPresent == 0) {
        return CS_NONE;
    }
    if (pdu->spdu.connectPresent != 0 && isFullyEncoded(acceptDataOf(pdu))) {
        return acseStatus(firstAcseApdu(acceptDataOf(pdu)), ACSE_apdu::aare, CS_ASSOCIATED);
    }
    if (pdu->spdu.dataPresent != 0 && isFullyEncoded(dataOf(pdu))) {
        const MMSpdu *mms = firstMmsPdu(dataOf(pdu));
        if (mms == nullptr) {
            return CS_NONE;
        }
        return mms->choiceId == MMSpdu::concludeResponsePDU ? CS_CONCLUDED : CS_DATA;
    }
    if (pdu->spdu.finishPresent != 0 && isFullyEncoded(dataOf(pdu))) {
        return acseStatus(firstAcseApdu(dataOf(pdu)), ACSE_apdu::rlre, CS_RELEASED);
    }
    return CS_NONE;
}

} // namespace ied
