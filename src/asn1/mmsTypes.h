// The value records of MMS (ISO 9506-2): requests come out of the decoder as these, services fill
// them for the reply. A pointer that is null, or a string whose data pointer is null, is absent.
// A CHOICE is `choiceId` and a union; its numbers stand in the enumeration beside it. What a
// decoder or builder hangs into a record comes from Malloc and is freed by Free<T>.
// What is kept undecoded is one whole element, with its tag and a definite length; the structure
// below it has been checked, and an encoder writes it as it is.
#pragma once

#include "asn1/berTypes.h"

namespace ied {

struct Data;
struct TypeSpecification;
struct AlternateAccessSelection;
struct VariableSpecification;
struct VariableAccessSpecification;

// Laid out as compactly as the ASN.1 that it mirrors.
// clang-format off

// ------------------------------------------------------------------------------------ names

struct ObjectNameSeq {
    AsnOcts domainId;
    AsnOcts itemId;
};

struct ObjectName {
    enum : u32 { vmdSpecific, domainSpecific, aaSpecific };
    u32 choiceId;
    union {
        AsnOcts *vmd_specific;
        ObjectNameSeq *domain_specific;
        AsnOcts *aa_specific;
    };
};

// ------------------------------------------------------------------------------------- data

// An array of vectors in one record, encoded as an array of structures.
struct DataArrayVec {
    u32 count;
    AsnOcts *mag; // `count` floats of 5 octets, or null
    AsnOcts *ang; // likewise
};

struct Data {
    enum : u32 {
        array, structure, boolean, bitString, integer, unsignedInt, floatingPoint, real, octetString,
        visibleString, binaryTime, bcd, booleanArray, objId, mMSString, utcTime, arrayVec,
    };
    u32 choiceId;
    union {
        AsnList *list;      // array, structure: of Data
        AsnBool bool_;      // boolean
        AsnBits *bits;      // bitString, booleanArray
        AsnInt int_;        // integer, bcd
        UAsnInt uint_;      // unsignedInt
        AsnOcts *octs;      // floatingPoint and every string and time
        AsnReal real_;      // real
        AsnOid *oid;        // objId
        DataArrayVec *vec;  // arrayVec
    };
};

struct AccessResult {
    enum : u32 { failure, success };
    u32 choiceId;
    union {
        AsnInt failure_; // DataAccessError
        Data *success_;
    };
};

// ---------------------------------------------------------------------------- variable access

struct AlternateAccessSelectionChoiceSeq { // indexRange
    UAsnInt lowIndex;
    UAsnInt numberOfElements;
};

// The selection that ends an alternate access, and the one that leads to a nested access.
struct AlternateAccessSelectionChoice {
    enum : u32 { component, index, indexRange, allElements };
    u32 choiceId;
    union {
        AsnOcts *component_;
        UAsnInt index_;
        AlternateAccessSelectionChoiceSeq *indexRange_;
    };
};
using AlternateAccessSelectionSeqChoice = AlternateAccessSelectionChoice; // its tags are 0 to 3

using AlternateAccess = AsnList; // SEQUENCE OF AlternateAccessChoice

struct AlternateAccessSelectionSeq {
    AlternateAccessSelectionSeqChoice *accessSelection;
    AlternateAccess *alternateAccess;
};

struct AlternateAccessSelection {
    enum : u32 { selectAlternateAccess, selectAccess };
    u32 choiceId;
    union {
        AlternateAccessSelectionSeq *selectAlternateAccess_;
        AlternateAccessSelectionChoice *selectAccess_;
    };
};

struct AlternateAccessChoiceSeq {
    AsnOcts componentName;
    AlternateAccessSelection *accesst;
};

struct AlternateAccessChoice {
    enum : u32 { unnamed, named };
    u32 choiceId;
    union {
        AlternateAccessSelection *unnamed_;
        AlternateAccessChoiceSeq *named_;
    };
};

struct Address {
    enum : u32 { numericAddress, symbolicAddress, unconstrainedAddress };
    u32 choiceId;
    union {
        UAsnInt numeric;
        AsnOcts *text;
    };
};

struct VariableSpecificationSeq { // variableDescription
    Address *address;
    TypeSpecification *typeSpecification;
};

struct VariableSpecification {
    enum : u32 { name, address, variableDescription, scatteredAccessDescription, invalidated };
    u32 choiceId;
    union {
        ObjectName *name_;
        Address *address_;
        VariableSpecificationSeq *variableDescription_;
        AsnOcts *scattered; // undecoded
    };
};

struct VariableAccessSpecificationSeqOfSeq {
    VariableSpecification *variableSpecification;
    AlternateAccess *alternateAccess;
};

struct VariableAccessSpecification {
    enum : u32 { listOfVariable, variableListName };
    u32 choiceId;
    union {
        AsnList *listOfVariable_; // of VariableAccessSpecificationSeqOfSeq
        ObjectName *variableListName_;
    };
};

// ------------------------------------------------------------------------- type descriptions

struct TypeSpecificationSeq { // array
    AsnBool *packed;
    UAsnInt numberOfElements;
    TypeSpecification *elementType;
};

struct TypeSpecificationSeq1SeqOfSeq {
    AsnOcts componentName;
    TypeSpecification *componentType;
};

struct TypeSpecificationSeq1 { // structure
    AsnBool *packed;
    AsnList *components; // of TypeSpecificationSeq1SeqOfSeq
};

struct TypeSpecificationSeq2 { // floating-point
    AsnInt format_width;
    AsnInt exponent_width;
};

struct TypeSpecificationSeq3 { // real
    AsnInt base;
    AsnInt exponent;
    AsnInt mantissa;
};

struct TypeSpecification {
    enum : u32 {
        typesName, array, structure, boolean, bitString, integer, unsignedInt, floatingPoint, real,
        octetString, visibleString, generalizedTime, binaryTime, bcd, booleanArray, objId, mMSString,
        utcTime,
    };
    u32 choiceId;
    union {
        ObjectName *typesName_;
        TypeSpecificationSeq *array_;
        TypeSpecificationSeq1 *structure_;
        AsnInt size;             // bit-string, integer, unsigned, the strings, bcd
        AsnBits *booleanArray_;
        TypeSpecificationSeq2 *floatingPoint_;
        TypeSpecificationSeq3 *real_;
        AsnBool withDate;        // binary-time
    };
};

// --------------------------------------------------------------------------- service records

struct Status_Response {
    AsnInt vmdLogicalStatus;
    AsnInt vmdPhysicalStatus;
    AsnBits localDetail;
};

struct GetNameList_RequestChoice { // extendedObjectClass
    u32 choiceId; // 0 objectClass
    AsnInt objectClass;
};

struct GetNameList_RequestChoice1 { // objectScope
    enum : u32 { vmdSpecific, domainSpecific, aaSpecific };
    u32 choiceId;
    AsnOcts *domainSpecific_;
};

struct GetNameList_Request {
    GetNameList_RequestChoice *extendedObjectClass;
    GetNameList_RequestChoice1 *objectScope;
    AsnOcts continueAfter;
};

struct GetNameList_Response {
    AsnList *listOfIdentifier; // of AsnOcts
    AsnBool *moreFollows;      // absent means TRUE
};

struct Identify_Response {
    AsnOcts vendorName;
    AsnOcts modelName;
    AsnOcts revision;
    AsnList *listOfAbstractSyntaxes; // of AsnOid
};

struct Read_Request {
    AsnBool *specificationWithResult;
    VariableAccessSpecification *variableAccessSpecification;
};

struct Read_Response {
    VariableAccessSpecification *variableAccessSpecification;
    AsnList *listOfAccessResult; // of AccessResult
};

struct Write_Request {
    VariableAccessSpecification *variableAccessSpecification;
    AsnList *listOfData; // of Data
};

struct Write_ResponseChoice {
    enum : u32 { failure, success };
    u32 choiceId;
    AsnInt failure_; // DataAccessError
};

using Write_Response = AsnList; // of Write_ResponseChoice

struct GetVariableAccessAttributes_Request {
    enum : u32 { name, address };
    u32 choiceId;
    union {
        ObjectName *name_;
        Address *address_;
    };
};

struct GetVariableAccessAttributes_Response {
    AsnBool mmsDeletable;
    Address *address;
    TypeSpecification *typeSpecification;
};

struct DefineNamedVariableList_Request {
    ObjectName *variableListName;
    AsnList *listOfVariable; // of VariableAccessSpecificationSeqOfSeq
};

struct GetNamedVariableListAttributes_Response {
    AsnBool mmsDeletable;
    AsnList *listOfVariable; // of VariableAccessSpecificationSeqOfSeq
};

struct DeleteNamedVariableList_Request {
    AsnInt *scopeOfDelete;           // absent means 0
    AsnList *listOfVariableListName; // of ObjectName
    AsnOcts domainName;
};

struct DeleteNamedVariableList_Response {
    UAsnInt numberMatched;
    UAsnInt numberDeleted;
};

struct GetDomainAttributes_Response {
    AsnList *listOfCapabilities; // of AsnOcts
    AsnInt state;
    AsnBool mmsDeletable;
    AsnBool sharable;
    AsnList *listOfProgramInvocations; // of AsnOcts
    AsnInt uploadInProgress;
};

struct AP_title {
    u32 choiceId; // 0 ap-title-form2
    AsnOid form2;
};

struct AE_qualifier {
    u32 choiceId; // 0 ae-qualifier-form2
    AsnInt form2;
};

struct ApplicationReference {
    AP_title *ap_title;
    AsnInt *ap_invocation_id;
    AE_qualifier *ae_qualifier;
    AsnInt *ae_invocation_id;
};

struct ReadJournal_RequestChoice { // rangeStartSpecification
    enum : u32 { startingTime, startingEntry };
    u32 choiceId;
    AsnOcts *octs;
};

struct ReadJournal_RequestChoice1 { // rangeStopSpecification
    enum : u32 { endingTime, numberOfEntries };
    u32 choiceId;
    union {
        AsnOcts *endingTime_;
        AsnInt numberOfEntries_;
    };
};

struct ReadJournal_RequestSeq { // entryToStartAfter
    AsnOcts timeSpecification;
    AsnOcts entrySpecification;
};

struct ReadJournal_Request {
    ObjectName *journalName;
    ReadJournal_RequestChoice *rangeStartSpecification;
    ReadJournal_RequestChoice1 *rangeStopSpecification;
    AsnList *listOfVariables; // of AsnOcts
    ReadJournal_RequestSeq *entryToStartAfter;
};

struct EntryContentChoiceSeqSeqOfSeq {
    AsnOcts variableTag;
    Data *valueSpecification;
};

struct EntryContentChoiceSeqSeq { // event
    ObjectName *eventConditionName;
    AsnInt currentState;
};

struct EntryContentChoiceSeq { // data
    EntryContentChoiceSeqSeq *event;
    AsnList *listOfVariables; // of EntryContentChoiceSeqSeqOfSeq
};

struct EntryContentChoice {
    enum : u32 { data, annotation };
    u32 choiceId;
    union {
        EntryContentChoiceSeq *data_;
        AsnOcts *annotation_;
    };
};

struct EntryContent {
    AsnOcts occurenceTime;
    AsnOcts *additionalDetail; // undecoded JOU-Additional-Detail
    EntryContentChoice *choice;
};

struct JournalEntry {
    AsnOcts entryIdentifier;
    ApplicationReference *originatingApplication;
    EntryContent *entryContent;
    u32 rawLen;  // octets of the entry as it is stored,
    u8 *rawData; // encoded content of the fields above; copied as it is into a reply
};

using ReadJournal_ResponseSeqOf = AsnList; // of JournalEntry

struct ReadJournal_Response {
    AsnList *listOfJournalEntry; // ReadJournal_ResponseSeqOf
    AsnBool *moreFollows;        // absent means FALSE
};

struct InitializeJournal_RequestSeq { // limitSpecification
    AsnOcts limitingTime;
    AsnOcts limitingEntry;
};

struct InitializeJournal_Request {
    ObjectName *journalName;
    InitializeJournal_RequestSeq *limitSpecification;
};

struct ReportJournalStatus_Response {
    UAsnInt currentEntries;
    AsnBool mmsDeletable;
};

using FileName = AsnList; // of AsnOcts

struct FileOpen_Request {
    FileName *fileName;
    UAsnInt initialPosition;
};

struct FileAttributes {
    UAsnInt sizeOfFile;
    AsnOcts lastModified;
};

struct FileOpen_Response {
    AsnInt frsmID;
    FileAttributes *fileAttributes;
};

struct FileRead_Response {
    AsnOcts fileData;
    AsnBool *moreFollows; // absent means TRUE
};

struct FileDirectory_Request {
    FileName *fileSpecification;
    FileName *continueAfter;
};

struct DirectoryEntry {
    FileName *filename;
    FileAttributes *fileAttributes;
};

struct FileDirectory_Response {
    AsnList *listOfDirectoryEntry; // of DirectoryEntry
    AsnBool *moreFollows;          // absent means FALSE
};

struct InformationReport {
    VariableAccessSpecification *variableAccessSpecification;
    AsnList *listOfAccessResult; // of AccessResult
};

// ------------------------------------------------------------------------------------- PDUs

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
