// The PDUs of MMS (ISO 9506-2 7), a line a component.
#pragma once

#include "asn1/mmsServiceDefinition.h"

// clang-format off

namespace ied::asn {

inline constexpr u32 lastConfirmedService = SvcAdditionalService;

constexpr u32 sameNumber(u32 number) {
    return number;
}

// Choice numbers of responses: fileOpen, tag 72, sits behind obtainFile, tag 46.
constexpr u32 responseChoice(u32 tag) {
    return tag == 72 ? 47 : tag >= 47 && tag <= 71 ? tag + 1 : tag;
}
constexpr u32 responseTag(u32 choiceId) {
    return choiceId == 47 ? 72 : choiceId >= 48 && choiceId <= 72 ? choiceId - 1 : choiceId;
}

template <>
inline constexpr auto asnDefinition<ConfirmedServiceRequest> = choice(-2500,
    alternative<SvcStatus, &ConfirmedServiceRequest::status>(context(0)),
    alternative<SvcGetNameList, &ConfirmedServiceRequest::getNameList>(context(1)),
    nullAlternative<SvcIdentify>(context(2)),
    alternative<SvcRead, &ConfirmedServiceRequest::read>(context(4)),
    alternative<SvcWrite, &ConfirmedServiceRequest::write>(context(5)),
    alternative<SvcGetVariableAccessAttributes,
        &ConfirmedServiceRequest::getVariableAccessAttributes>(explicitContext(6)),
    alternative<SvcDefineNamedVariableList, &ConfirmedServiceRequest::defineNamedVariableList>(context(11)),
    alternative<SvcGetNamedVariableListAttributes,
        &ConfirmedServiceRequest::getNamedVariableListAttributes>(explicitContext(12)),
    alternative<SvcDeleteNamedVariableList, &ConfirmedServiceRequest::deleteNamedVariableList>(context(13)),
    alternative<SvcGetDomainAttributes, &ConfirmedServiceRequest::getDomainAttributes, Visible>(context(37)),
    alternative<SvcReadJournal, &ConfirmedServiceRequest::readJournal>(context(65)),
    alternative<SvcInitializeJournal, &ConfirmedServiceRequest::initializeJournal>(context(67)),
    alternative<SvcReportJournalStatus, &ConfirmedServiceRequest::reportJournalStatus>(explicitContext(68)),
    alternative<SvcFileOpen, &ConfirmedServiceRequest::fileOpen>(context(72)),
    alternative<SvcFileRead, &ConfirmedServiceRequest::fileRead>(context(73)),
    alternative<SvcFileClose, &ConfirmedServiceRequest::fileClose>(context(74)),
    alternative<SvcFileDirectory, &ConfirmedServiceRequest::fileDirectory>(context(77)),
    Others<&ConfirmedServiceRequest::undecoded, 0, lastConfirmedService, sameNumber, sameNumber>{});

template <>
inline constexpr auto asnDefinition<ConfirmedServiceResponse> = [] {
    using R = ConfirmedServiceResponse;
    return choice(-2520,
        alternative<R::status, &R::status_>(context(0)),
        alternative<R::getNameList, &R::getNameList_>(context(1)),
        alternative<R::identify, &R::identify_>(context(2)),
        alternative<R::read, &R::read_>(context(4)),
        alternative<R::write, &R::write_, SequenceOf<Write_ResponseChoice>>(context(5)),
        alternative<R::getVariableAccessAttributes, &R::getVariableAccessAttributes_>(context(6)),
        nullAlternative<R::defineNamedVariableList>(context(11)),
        alternative<R::getNamedVariableListAttributes, &R::getNamedVariableListAttributes_>(context(12)),
        alternative<R::deleteNamedVariableList, &R::deleteNamedVariableList_>(context(13)),
        alternative<R::getDomainAttributes, &R::getDomainAttributes_>(context(37)),
        alternative<R::readJournal, &R::readJournal_>(context(65)),
        alternative<R::initializeJournal, &R::initializeJournal_>(context(67)),
        alternative<R::reportJournalStatus, &R::reportJournalStatus_>(context(68)),
        alternative<R::fileOpen, &R::fileOpen_>(context(72)),
        alternative<R::fileRead, &R::fileRead_>(context(73)),
        nullAlternative<R::fileClose>(context(74)),
        alternative<R::fileDirectory, &R::fileDirectory_>(context(77)),
        Others<&R::undecoded, 0, lastConfirmedService, responseChoice, responseTag>{});
}();

template <>
inline constexpr auto asnDefinition<Confirmed_RequestPDU> = sequence(-2540,
    component<&Confirmed_RequestPDU::invokeID>(),
    optional<&Confirmed_RequestPDU::listOfModifier, UndecodedConstructed>(universal(16)),
    component<&Confirmed_RequestPDU::service>(),
    optional<&Confirmed_RequestPDU::service_ext, UndecodedConstructed>(context(79)));

template <>
inline constexpr auto asnDefinition<Confirmed_ResponsePDU> = sequence(-2560,
    component<&Confirmed_ResponsePDU::invokeID>(),
    component<&Confirmed_ResponsePDU::service>(),
    optional<&Confirmed_ResponsePDU::service_ext, UndecodedConstructed>(context(79)));

template <>
inline constexpr auto asnDefinition<ServiceErrorChoice> = [] {
    using E = ServiceErrorChoice;
    return choice(-2580,
        alternative<E::vmdState, &E::code>(context(0)),
        alternative<E::applicationReference, &E::code>(context(1)),
        alternative<E::definition, &E::code>(context(2)),
        alternative<E::resource, &E::code>(context(3)),
        alternative<E::service, &E::code>(context(4)),
        alternative<E::servicePreempt, &E::code>(context(5)),
        alternative<E::timeResolution, &E::code>(context(6)),
        alternative<E::access, &E::code>(context(7)),
        alternative<E::initiate, &E::code>(context(8)),
        alternative<E::conclude, &E::code>(context(9)),
        alternative<E::cancel, &E::code>(context(10)),
        alternative<E::file, &E::code>(context(11)),
        alternative<E::others, &E::code>(context(12)));
}();

template <>
inline constexpr auto asnDefinition<ServiceError> = sequence(-2600,
    component<&ServiceError::errorClass>(explicitContext(0)),
    optional<&ServiceError::additionalCode>(context(1)),
    optional<&ServiceError::additionalDescription, Visible>(context(2)),
    optional<&ServiceError::serviceSpecificInformation, UndecodedConstructed>(context(3)));

template <>
inline constexpr auto asnDefinition<Confirmed_ErrorPDU> = sequence(-2620,
    component<&Confirmed_ErrorPDU::invokeID>(context(0)),
    optional<&Confirmed_ErrorPDU::modifierPosition>(context(1)),
    component<&Confirmed_ErrorPDU::serviceError>(context(2)));

template <>
inline constexpr auto asnDefinition<Cancel_ErrorPDU> = sequence(-2640,
    component<&Cancel_ErrorPDU::originalInvokeID>(context(0)),
    component<&Cancel_ErrorPDU::serviceError>(context(1)));

template <>
inline constexpr auto asnDefinition<UnconfirmedService> = choice(-2660,
    alternative<UnconfirmedService::informationReport, &UnconfirmedService::informationReport_>(context(0)),
    Others<&UnconfirmedService::undecoded, UnconfirmedService::unsolicitedStatus,
        UnconfirmedService::eventNotification, sameNumber, sameNumber>{});

template <>
inline constexpr auto asnDefinition<Unconfirmed_PDU> = sequence(-2680,
    component<&Unconfirmed_PDU::service>(),
    optional<&Unconfirmed_PDU::service_ext, UndecodedConstructed>(context(79)));

template <>
inline constexpr auto asnDefinition<RejectPDUChoice> = [] {
    using R = RejectPDUChoice;
    return choice(-2700,
        alternative<R::confirmedRequestPDU, &R::reason>(context(1)),
        alternative<R::confirmedResponsePDU, &R::reason>(context(2)),
        alternative<R::confirmedErrorPDU, &R::reason>(context(3)),
        alternative<R::unconfirmedPDU, &R::reason>(context(4)),
        alternative<R::pduError, &R::reason>(context(5)),
        alternative<R::cancelRequestPDU, &R::reason>(context(6)),
        alternative<R::cancelResponsePDU, &R::reason>(context(7)),
        alternative<R::cancelErrorPDU, &R::reason>(context(8)),
        alternative<R::concludeRequestPDU, &R::reason>(context(9)),
        alternative<R::concludeResponsePDU, &R::reason>(context(10)),
        alternative<R::concludeErrorPDU, &R::reason>(context(11)));
}();

template <>
inline constexpr auto asnDefinition<RejectPDU> = sequence(-2720,
    optional<&RejectPDU::originalInvokeID>(context(0)),
    component<&RejectPDU::rejectReason>());

template <>
inline constexpr auto asnDefinition<InitRequestDetail> = sequence(-2740,
    component<&InitRequestDetail::proposedVersionNumber>(context(0)),
    component<&InitRequestDetail::proposedParameterCBB>(context(1)),
    component<&InitRequestDetail::servicesSupportedCalling>(context(2)));

template <>
inline constexpr auto asnDefinition<Initiate_RequestPDU> = sequence(-2760,
    optional<&Initiate_RequestPDU::localDetailCalling>(context(0)),
    component<&Initiate_RequestPDU::proposedMaxServOutstandingCalling>(context(1)),
    component<&Initiate_RequestPDU::proposedMaxServOutstandingCalled>(context(2)),
    optional<&Initiate_RequestPDU::proposedDataStructureNestingLevel>(context(3)),
    component<&Initiate_RequestPDU::mmsInitRequestDetail>(context(4)));

template <>
inline constexpr auto asnDefinition<InitResponseDetail> = sequence(-2780,
    component<&InitResponseDetail::negociatedVersionNumber>(context(0)),
    component<&InitResponseDetail::negociatedParameterCBB>(context(1)),
    component<&InitResponseDetail::servicesSupportedCalled>(context(2)));

template <>
inline constexpr auto asnDefinition<Initiate_ResponsePDU> = sequence(-2800,
    optional<&Initiate_ResponsePDU::localDetailCalled>(context(0)),
    component<&Initiate_ResponsePDU::negociatedMaxServOutstandingCalling>(context(1)),
    component<&Initiate_ResponsePDU::negociatedMaxServOutstandingCalled>(context(2)),
    optional<&Initiate_ResponsePDU::negociatedDataStructureNestingLevel>(context(3)),
    component<&Initiate_ResponsePDU::mmsInitResponseDetail>(context(4)));

inline bool acceptsRejectPdu(const DecodeEnv &env) {
    return env.acceptRejectPdu;
}

template <>
inline constexpr auto asnDefinition<MMSpdu> = choice(-672,
    alternative<MMSpdu::confirmedRequestPDU, &MMSpdu::confirmed_RequestPDU>(context(0)),
    alternative<MMSpdu::confirmedResponsePDU, &MMSpdu::confirmed_ResponsePDU>(context(1)),
    alternative<MMSpdu::confirmedErrorPDU, &MMSpdu::confirmed_ErrorPDU>(context(2)),
    alternative<MMSpdu::unconfirmedPDU, &MMSpdu::unconfirmed_PDU>(context(3)),
    alternative<MMSpdu::rejectPDU, &MMSpdu::rejectPDU_, void, acceptsRejectPdu>(context(4)),
    alternative<MMSpdu::cancelRequestPDU, &MMSpdu::cancel_RequestPDU>(context(5)),
    alternative<MMSpdu::cancelResponsePDU, &MMSpdu::cancel_ResponsePDU>(context(6)),
    alternative<MMSpdu::cancelErrorPDU, &MMSpdu::cancel_ErrorPDU>(context(7)),
    alternative<MMSpdu::initiateRequestPDU, &MMSpdu::initiate_RequestPDU>(context(8)),
    alternative<MMSpdu::initiateResponsePDU, &MMSpdu::initiate_ResponsePDU>(context(9)),
    alternative<MMSpdu::initiateErrorPDU, &MMSpdu::initiate_ErrorPDU>(context(10)),
    nullAlternative<MMSpdu::concludeRequestPDU>(context(11)),
    nullAlternative<MMSpdu::concludeResponsePDU>(context(12)),
    alternative<MMSpdu::concludeErrorPDU, &MMSpdu::conclude_ErrorPDU>(context(13)));

} // namespace ied::asn
