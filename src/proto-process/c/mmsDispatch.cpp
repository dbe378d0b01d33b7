#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "platform/shared.h"
#include "proto-process/c/client.h"
#include "proto-process/c/octets.h"
#include "proto-process/c/services.h"

#include <array>

namespace ied {

namespace {

constexpr i8 cancelNotPossible = 102;

// Error class of an internal service result less its last digit; every class but these is others.
constexpr auto classTable = [] {
    std::array<u8, 111> table{};
    table.fill(ServiceErrorChoice::others);
    table[20] = ServiceErrorChoice::definition;
    table[70] = ServiceErrorChoice::access;
    table[80] = ServiceErrorChoice::initiate;
    table[90] = ServiceErrorChoice::conclude;
    table[100] = ServiceErrorChoice::cancel;
    table[110] = ServiceErrorChoice::file;
    return table;
}();

void buildReject(MMSpdu *responsePdu, u32 choice, AsnInt reason) {
    auto *reject = MallocOf<RejectPDU>();
    reject->rejectReason = MallocOf<RejectPDUChoice>();
    *reject->rejectReason = {choice, reason};
    responsePdu->choiceId = MMSpdu::rejectPDU;
    responsePdu->rejectPDU_ = reject;
}

void rejectRequest(MMSpdu *responsePdu, AsnInt invokeID, AsnInt reason) {
    buildReject(responsePdu, RejectPDUChoice::confirmedRequestPDU, reason);
    responsePdu->rejectPDU_->originalInvokeID = newAsnInt(invokeID);
}

void processConfirmedRequest(const Confirmed_RequestPDU *request, MMSpdu *responsePdu, u8 clientId) {
    auto *response = MallocOf<Confirmed_ResponsePDU>();
    response->invokeID = request->invokeID;
    response->service = MallocOf<ConfirmedServiceResponse>();
    const i8 result = confirmedServiceProc(request->service, response->service, clientId);
    if (result == serviceSuccess) {
        responsePdu->choiceId = MMSpdu::confirmedResponsePDU;
        responsePdu->confirmed_ResponsePDU = response;
        return;
    }
    FreeConfirmed_ResponsePDU(response);
    Free(response);
    if (result >= 0) {
        buildConfirmedError(responsePdu, request->invokeID, result);
    } else {
        rejectRequest(responsePdu, request->invokeID, result - serviceReject);
    }
}

void processInitiate(const Initiate_RequestPDU *request, MMSpdu *responsePdu, u8 clientId) {
    auto *response = MallocOf<Initiate_ResponsePDU>();
    const i8 result = initiateProcess(request, response, clientId);
    if (result < 0) {
        responsePdu->choiceId = MMSpdu::initiateResponsePDU;
        responsePdu->initiate_ResponsePDU = response;
        return;
    }
    FreeInitiate_ResponsePDU(response);
    Free(response);
    responsePdu->choiceId = MMSpdu::initiateErrorPDU;
    responsePdu->initiate_ErrorPDU = MallocOf<ServiceError>();
    generateServiceError(responsePdu->initiate_ErrorPDU, result);
}

void processCancel(AsnInt invokeID, MMSpdu *responsePdu, u8 clientId) {
    if (loadShared(clientStat[clientId].status) == CS_DATA) {
        buildConfirmedError(responsePdu, invokeID, cancelNotPossible);
    } else {
        buildReject(responsePdu, RejectPDUChoice::cancelRequestPDU, 0);
    }
}

} // namespace

void generateServiceError(ServiceError *errorOut, i8 value) {
    const i8 code = static_cast<i8>(value % 10);
    const auto index = static_cast<u32>(value - code);
    errorOut->errorClass = MallocOf<ServiceErrorChoice>();
    *errorOut->errorClass = {index < classTable.size() ? classTable[index] : u8{ServiceErrorChoice::others},
                             code};
}

void buildConfirmedError(MMSpdu *responsePdu, AsnInt invokeID, i8 value) {
    auto *error = MallocOf<Confirmed_ErrorPDU>();
    error->invokeID = invokeID;
    error->serviceError = MallocOf<ServiceError>();
    generateServiceError(error->serviceError, value);
    responsePdu->choiceId = MMSpdu::confirmedErrorPDU;
    responsePdu->confirmed_ErrorPDU = error;
}

int processApduMms(const MMSpdu *requestPdu, MMSpdu *responsePdu, u8 clientId) {
    switch (requestPdu->choiceId) {
    case MMSpdu::confirmedRequestPDU:
        processConfirmedRequest(requestPdu->confirmed_RequestPDU, responsePdu, clientId);
        break;
    case MMSpdu::confirmedResponsePDU:
        buildReject(responsePdu, RejectPDUChoice::confirmedResponsePDU, 0);
        break;
    case MMSpdu::confirmedErrorPDU:
        buildReject(responsePdu, RejectPDUChoice::confirmedErrorPDU, 0);
        break;
    case MMSpdu::unconfirmedPDU:
        buildReject(responsePdu, RejectPDUChoice::unconfirmedPDU, 0);
        break;
    case MMSpdu::cancelRequestPDU:
        processCancel(requestPdu->cancel_RequestPDU, responsePdu, clientId);
        break;
    case MMSpdu::cancelResponsePDU:
        buildReject(responsePdu, RejectPDUChoice::cancelResponsePDU, 0);
        break;
    case MMSpdu::cancelErrorPDU:
        buildReject(responsePdu, RejectPDUChoice::cancelErrorPDU, 0);
        break;
    case MMSpdu::initiateRequestPDU:
        processInitiate(requestPdu->initiate_RequestPDU, responsePdu, clientId);
        break;
    case MMSpdu::concludeRequestPDU:
        responsePdu->choiceId = MMSpdu::concludeResponsePDU;
        break;
    case MMSpdu::concludeResponsePDU:
        buildReject(responsePdu, RejectPDUChoice::concludeResponsePDU, 0);
        break;
    case MMSpdu::concludeErrorPDU:
        buildReject(responsePdu, RejectPDUChoice::concludeErrorPDU, 0);
        break;
    default:
        buildReject(responsePdu, RejectPDUChoice::pduError, 1);
    }
    return 1;
}

} // namespace ied
