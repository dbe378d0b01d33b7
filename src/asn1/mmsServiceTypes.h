// The value records of the MMS services (ISO 9506-2) that are served: requests come out of the decoder
// as these, services fill them for the reply. The rules are those of mmsDataTypes.h.
#pragma once

#include "asn1/mmsDataTypes.h"

namespace ied {

// Laid out as compactly as the ASN.1 that it mirrors.
// clang-format off

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

// clang-format on

} // namespace ied
