// The value records of the MMS PDUs (ISO 9506-2). The rules are those of mmsDataTypes.h.
#pragma once

#include "asn1/mmsServiceTypes.h"

namespace ied {

// Laid out as compactly as the ASN.1 that it mirrors.
// clang-format off

// Service numbers: context tags of ConfirmedServiceRequest and bits of ServiceSupportOptions.
enum MmsService : u32 {
    SvcStatus = 0, SvcGetNameList = 1, SvcIdentify = 2, SvcRename = 3, SvcRead = 4, SvcWrite = 5,
    SvcGetVariableAccessAttributes = 6, SvcDefineNamedVariableList = 11,
    SvcGetNamedVariableListAttributes = 12, SvcDeleteNamedVariableList = 13,
    SvcGetDomainAttributes = 37, SvcReadJournal = 65, SvcInitializeJournal = 67,
    SvcReportJournalStatus = 68, SvcFileOpen = 72, SvcFileRead = 73, SvcFileClose = 74,
    SvcFileDirectory = 77, SvcAdditionalService = 78, // the last confirmed one
    SvcInformationReport = 79, SvcConclude = 83, SvcCancel = 84,
};

struct ConfirmedServiceRequest {
    u32 choiceId; // an MmsService, or any other tag of the standard from 0 to 78
    union {
        AsnBool status;
        GetNameList_Request *getNameList;
        Read_Request *read;
        Write_Request *write;
        GetVariableAccessAttributes_Request *getVariableAccessAttributes;
        DefineNamedVariableList_Request *defineNamedVariableList;
        ObjectName *getNamedVariableListAttributes;
        DeleteNamedVariableList_Request *deleteNamedVariableList;
        AsnOcts *getDomainAttributes;
        ReadJournal_Request *readJournal;
        InitializeJournal_Request *initializeJournal;
        ObjectName *reportJournalStatus;
        FileOpen_Request *fileOpen;
        AsnInt fileRead;
        AsnInt fileClose;
        FileDirectory_Request *fileDirectory;
        AsnOcts *undecoded; // request of a service that is not served
    };
};

struct ConfirmedServiceResponse {
    // Equal to the tag from 0 to 46 and from 73 to 77, the tag plus one from 47 to 71; fileOpen is 47.
    enum : u32 {
        status = 0, getNameList = 1, identify = 2, read = 4, write = 5, getVariableAccessAttributes = 6,
        defineNamedVariableList = 11, getNamedVariableListAttributes = 12, deleteNamedVariableList = 13,
        getDomainAttributes = 37, fileOpen = 47, readJournal = 66, initializeJournal = 68,
        reportJournalStatus = 69, fileRead = 73, fileClose = 74, fileDirectory = 77,
    };
    u32 choiceId;
    union {
        Status_Response *status_;
        GetNameList_Response *getNameList_;
        Identify_Response *identify_;
        Read_Response *read_;
        Write_Response *write_;
        GetVariableAccessAttributes_Response *getVariableAccessAttributes_;
        GetNamedVariableListAttributes_Response *getNamedVariableListAttributes_;
        DeleteNamedVariableList_Response *deleteNamedVariableList_;
        GetDomainAttributes_Response *getDomainAttributes_;
        FileOpen_Response *fileOpen_;
        ReadJournal_Response *readJournal_;
        UAsnInt initializeJournal_;
        ReportJournalStatus_Response *reportJournalStatus_;
        FileRead_Response *fileRead_;
        FileDirectory_Response *fileDirectory_;
        AsnOcts *undecoded; // response of a service that is not served
    };
};

struct Confirmed_RequestPDU {
    AsnInt invokeID;
    AsnOcts *listOfModifier; // undecoded
    ConfirmedServiceRequest *service;
    AsnOcts *service_ext; // undecoded
};

struct Confirmed_ResponsePDU {
    AsnInt invokeID;
    ConfirmedServiceResponse *service;
    AsnOcts *service_ext; // undecoded
};

struct ServiceErrorChoice {
    enum : u32 {
        vmdState, applicationReference, definition, resource, service, servicePreempt, timeResolution,
        access, initiate, conclude, cancel, file, others,
    };
    u32 choiceId;
    AsnInt code;
};

struct ServiceError {
    ServiceErrorChoice *errorClass;
    AsnInt *additionalCode;
    AsnOcts additionalDescription;
    AsnOcts *serviceSpecificInformation; // undecoded
};

struct Confirmed_ErrorPDU {
    AsnInt invokeID;
    UAsnInt *modifierPosition;
    ServiceError *serviceError;
};

struct Cancel_ErrorPDU {
    AsnInt originalInvokeID;
    ServiceError *serviceError;
};

struct UnconfirmedService {
    enum : u32 { informationReport, unsolicitedStatus, eventNotification };
    u32 choiceId;
    union {
        InformationReport *informationReport_;
        AsnOcts *undecoded;
    };
};

struct Unconfirmed_PDU {
    UnconfirmedService *service;
    AsnOcts *service_ext; // undecoded
};

struct RejectPDUChoice {
    enum : u32 {
        confirmedRequestPDU, confirmedResponsePDU, confirmedErrorPDU, unconfirmedPDU, pduError,
        cancelRequestPDU, cancelResponsePDU, cancelErrorPDU, concludeRequestPDU, concludeResponsePDU,
        concludeErrorPDU,
    };
    u32 choiceId;
    AsnInt reason;
};

struct RejectPDU {
    AsnInt *originalInvokeID;
    RejectPDUChoice *rejectReason;
};

struct InitRequestDetail {
    AsnInt proposedVersionNumber;
    AsnBits proposedParameterCBB;
    AsnBits servicesSupportedCalling;
};

struct Initiate_RequestPDU {
    AsnInt *localDetailCalling;
    AsnInt proposedMaxServOutstandingCalling;
    AsnInt proposedMaxServOutstandingCalled;
    AsnInt *proposedDataStructureNestingLevel;
    InitRequestDetail *mmsInitRequestDetail;
};

struct InitResponseDetail {
    AsnInt negociatedVersionNumber;
    AsnBits negociatedParameterCBB;
    AsnBits servicesSupportedCalled;
};

struct Initiate_ResponsePDU {
    AsnInt *localDetailCalled;
    AsnInt negociatedMaxServOutstandingCalling;
    AsnInt negociatedMaxServOutstandingCalled;
    AsnInt *negociatedDataStructureNestingLevel;
    InitResponseDetail *mmsInitResponseDetail;
};

struct MMSpdu {
    enum : u32 {
        confirmedRequestPDU, confirmedResponsePDU, confirmedErrorPDU, unconfirmedPDU, rejectPDU,
        cancelRequestPDU, cancelResponsePDU, cancelErrorPDU, initiateRequestPDU, initiateResponsePDU,
        initiateErrorPDU, concludeRequestPDU, concludeResponsePDU, concludeErrorPDU,
    };
    u32 choiceId;
    union {
        Confirmed_RequestPDU *confirmed_RequestPDU;
        Confirmed_ResponsePDU *confirmed_ResponsePDU;
        Confirmed_ErrorPDU *confirmed_ErrorPDU;
        Unconfirmed_PDU *unconfirmed_PDU;
        RejectPDU *rejectPDU_;
        AsnInt cancel_RequestPDU;
        AsnInt cancel_ResponsePDU;
        Cancel_ErrorPDU *cancel_ErrorPDU;
        Initiate_RequestPDU *initiate_RequestPDU;
        Initiate_ResponsePDU *initiate_ResponsePDU;
        ServiceError *initiate_ErrorPDU;
        ServiceError *conclude_ErrorPDU;
    };
};

// clang-format on

} // namespace ied
