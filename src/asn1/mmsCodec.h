// Codecs of the MMS types (ISO 9506-2). Encoders and decoders exist for both directions: a client
// reads responses with the same operations.
//
// BDecMMSpduContent turns every error inside an MMS PDU into the code -820; a rejectPDU is such an
// error unless the DecodeEnv says that the caller receives them.
#pragma once

#include "asn1/ber.h"
#include "asn1/mmsTypes.h"

namespace ied {

namespace asn {
struct NestedSelection;    // AlternateAccessSelectionSeqChoice: the tags 0 to 3
struct StoredJournalEntry; // JournalEntry: encoded as it is stored
} // namespace asn

// names, data, type descriptions
ASN_CODEC(ObjectName)
ASN_CODEC(ObjectNameSeq)
ASN_CODEC(Data)
ASN_CODEC(DataArrayVec)
ASN_CODEC(AccessResult)
ASN_CODEC(TypeSpecification)
ASN_CODEC(TypeSpecificationSeq)
ASN_CODEC(TypeSpecificationSeq1)
ASN_CODEC(TypeSpecificationSeq1SeqOfSeq)
ASN_CODEC(TypeSpecificationSeq2)
ASN_CODEC(TypeSpecificationSeq3)

// variable access
ASN_CODEC(Address)
ASN_CODEC(AlternateAccess, asn::Nested<asn::SequenceOf<AlternateAccessChoice>>)
ASN_CODEC(AlternateAccessChoice)
ASN_CODEC(AlternateAccessChoiceSeq)
ASN_CODEC(AlternateAccessSelection)
ASN_CODEC(AlternateAccessSelectionSeq)
ASN_CODEC(AlternateAccessSelectionChoice)
ASN_CODEC(AlternateAccessSelectionChoiceSeq)
ASN_CODEC(AlternateAccessSelectionSeqChoice, asn::NestedSelection)
ASN_CODEC(VariableSpecification)
ASN_CODEC(VariableSpecificationSeq)
ASN_CODEC(VariableAccessSpecification)
ASN_CODEC(VariableAccessSpecificationSeqOfSeq)

// services
ASN_CODEC(Status_Response)
ASN_CODEC(GetNameList_Request)
ASN_CODEC(GetNameList_RequestChoice)
ASN_CODEC(GetNameList_RequestChoice1)
ASN_CODEC(GetNameList_Response)
ASN_CODEC(Identify_Response)
ASN_CODEC(Read_Request)
ASN_CODEC(Read_Response)
ASN_CODEC(Write_Request)
ASN_CODEC(Write_Response, asn::SequenceOf<Write_ResponseChoice>)
ASN_CODEC(Write_ResponseChoice)
ASN_CODEC(GetVariableAccessAttributes_Request)
ASN_CODEC(GetVariableAccessAttributes_Response)
ASN_CODEC(DefineNamedVariableList_Request)
ASN_CODEC(GetNamedVariableListAttributes_Response)
ASN_CODEC(DeleteNamedVariableList_Request)
ASN_CODEC(DeleteNamedVariableList_Response)
ASN_CODEC(GetDomainAttributes_Response)
ASN_CODEC(AP_title)
ASN_CODEC(AE_qualifier)
ASN_CODEC(ApplicationReference)
ASN_CODEC(ReadJournal_Request)
ASN_CODEC(ReadJournal_RequestChoice)
ASN_CODEC(ReadJournal_RequestChoice1)
ASN_CODEC(ReadJournal_RequestSeq)
ASN_CODEC(ReadJournal_Response)
// Encodes each entry as its rawLen octets of rawData in a SEQUENCE; decodes field by field.
ASN_CODEC(ReadJournal_ResponseSeqOf, asn::SequenceOf<asn::StoredJournalEntry>)
// Encodes and decodes field by field; rawData is freed with the rest.
ASN_CODEC(JournalEntry)
ASN_CODEC(EntryContent)
ASN_CODEC(EntryContentChoice)
ASN_CODEC(EntryContentChoiceSeq)
ASN_CODEC(EntryContentChoiceSeqSeq)
ASN_CODEC(EntryContentChoiceSeqSeqOfSeq)
ASN_CODEC(InitializeJournal_Request)
ASN_CODEC(InitializeJournal_RequestSeq)
ASN_CODEC(ReportJournalStatus_Response)
ASN_CODEC(FileName, asn::SequenceOf<asn::Graphic>)
ASN_CODEC(FileAttributes)
ASN_CODEC(FileOpen_Request)
ASN_CODEC(FileOpen_Response)
ASN_CODEC(FileRead_Response)
ASN_CODEC(FileDirectory_Request)
ASN_CODEC(FileDirectory_Response)
ASN_CODEC(DirectoryEntry)
ASN_CODEC(InformationReport)

// PDUs
ASN_CODEC(ConfirmedServiceRequest)
ASN_CODEC(ConfirmedServiceResponse)
ASN_CODEC(Confirmed_RequestPDU)
ASN_CODEC(Confirmed_ResponsePDU)
ASN_CODEC(Confirmed_ErrorPDU)
ASN_CODEC(Cancel_ErrorPDU)
ASN_CODEC(ServiceError)
ASN_CODEC(ServiceErrorChoice)
ASN_CODEC(UnconfirmedService)
ASN_CODEC(Unconfirmed_PDU)
ASN_CODEC(RejectPDU)
ASN_CODEC(RejectPDUChoice)
ASN_CODEC(InitRequestDetail)
ASN_CODEC(Initiate_RequestPDU)
ASN_CODEC(InitResponseDetail)
ASN_CODEC(Initiate_ResponsePDU)
ASN_CODEC(MMSpdu)

} // namespace ied
