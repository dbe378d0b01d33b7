// The codecs of names, data, variable access, type descriptions and services, from their definitions,
// and the three encodings that no definition gives.
#include "asn1/mmsServiceDefinition.h"

namespace ied {

namespace asn {

namespace {

constexpr Tag structure = context(2);
constexpr Tag floatingPoint = context(7);

u32 encodeVectorPart(GenBuf *gen, const AsnOcts *part) {
    const u32 octets = encodeElement<OctetString>(gen, floatingPoint, part);
    return putHeader(gen, tagOf(structure.identifier, Form::constructed), octets);
}

void releaseParts(AsnOcts *&parts, u32 count) {
    for (u32 i = 0; parts && i < count; ++i) {
        OctetString::release(&parts[i]);
    }
    Free(parts);
    parts = nullptr;
}

} // namespace

u32 Vectors::encode(GenBuf *gen, const DataArrayVec *value) {
    u32 octets = 0;
    for (u32 i = value->count; i-- > 0;) {
        u32 vector = value->ang ? encodeVectorPart(gen, &value->ang[i]) : 0;
        vector += value->mag ? encodeVectorPart(gen, &value->mag[i]) : 0;
        octets += putHeader(gen, tagOf(structure.identifier, Form::constructed), vector);
    }
    return octets;
}

void Vectors::decode(Reader &, u32, u32, DataArrayVec *) {
    berFail(asnDefinition<Data>.code);
}

void Vectors::release(DataArrayVec *value) {
    releaseParts(value->mag, value->count);
    releaseParts(value->ang, value->count);
    value->count = 0;
}

void JournalEntryByField::release(JournalEntry *value) {
    Record<JournalEntry>::release(value);
    Free(value->rawData);
    value->rawData = nullptr;
    value->rawLen = 0;
}

u32 StoredJournalEntry::encode(GenBuf *gen, const JournalEntry *value) {
    return putOctets(gen, value->rawData, value->rawLen);
}

void StoredJournalEntry::decode(Reader &reader, u32 tagRead, u32 len, JournalEntry *value) {
    JournalEntryByField::decode(reader, tagRead, len, value);
}

void StoredJournalEntry::release(JournalEntry *value) {
    JournalEntryByField::release(value);
}

} // namespace asn

template struct AsnOperations<ObjectName>;
template struct AsnOperations<ObjectNameSeq>;
template struct AsnOperations<Data>;
template struct AsnOperations<DataArrayVec>;
template struct AsnOperations<AccessResult>;
template struct AsnOperations<TypeSpecification>;
template struct AsnOperations<TypeSpecificationSeq>;
template struct AsnOperations<TypeSpecificationSeq1>;
template struct AsnOperations<TypeSpecificationSeq1SeqOfSeq>;
template struct AsnOperations<TypeSpecificationSeq2>;
template struct AsnOperations<TypeSpecificationSeq3>;

template struct AsnOperations<Address>;
template struct AsnOperations<AlternateAccess, asn::Nested<asn::SequenceOf<AlternateAccessChoice>>>;
template struct AsnOperations<AlternateAccessChoice>;
template struct AsnOperations<AlternateAccessChoiceSeq>;
template struct AsnOperations<AlternateAccessSelection>;
template struct AsnOperations<AlternateAccessSelectionSeq>;
template struct AsnOperations<AlternateAccessSelectionChoice>;
template struct AsnOperations<AlternateAccessSelectionChoiceSeq>;
template struct AsnOperations<AlternateAccessSelectionSeqChoice, asn::NestedSelection>;
template struct AsnOperations<VariableSpecification>;
template struct AsnOperations<VariableSpecificationSeq>;
template struct AsnOperations<VariableAccessSpecification>;
template struct AsnOperations<VariableAccessSpecificationSeqOfSeq>;

template struct AsnOperations<Status_Response>;
template struct AsnOperations<GetNameList_Request>;
template struct AsnOperations<GetNameList_RequestChoice>;
template struct AsnOperations<GetNameList_RequestChoice1>;
template struct AsnOperations<GetNameList_Response>;
template struct AsnOperations<Identify_Response>;
template struct AsnOperations<Read_Request>;
template struct AsnOperations<Read_Response>;
template struct AsnOperations<Write_Request>;
template struct AsnOperations<Write_Response, asn::SequenceOf<Write_ResponseChoice>>;
template struct AsnOperations<Write_ResponseChoice>;
template struct AsnOperations<GetVariableAccessAttributes_Request>;
template struct AsnOperations<GetVariableAccessAttributes_Response>;
template struct AsnOperations<DefineNamedVariableList_Request>;
template struct AsnOperations<GetNamedVariableListAttributes_Response>;
template struct AsnOperations<DeleteNamedVariableList_Request>;
template struct AsnOperations<DeleteNamedVariableList_Response>;
template struct AsnOperations<GetDomainAttributes_Response>;
template struct AsnOperations<AP_title>;
template struct AsnOperations<AE_qualifier>;
template struct AsnOperations<ApplicationReference>;
template struct AsnOperations<ReadJournal_Request>;
template struct AsnOperations<ReadJournal_RequestChoice>;
template struct AsnOperations<ReadJournal_RequestChoice1>;
template struct AsnOperations<ReadJournal_RequestSeq>;
template struct AsnOperations<ReadJournal_Response>;
template struct AsnOperations<ReadJournal_ResponseSeqOf, asn::SequenceOf<asn::StoredJournalEntry>>;
template struct AsnOperations<JournalEntry>;
template struct AsnOperations<EntryContent>;
template struct AsnOperations<EntryContentChoice>;
template struct AsnOperations<EntryContentChoiceSeq>;
template struct AsnOperations<EntryContentChoiceSeqSeq>;
template struct AsnOperations<EntryContentChoiceSeqSeqOfSeq>;
template struct AsnOperations<InitializeJournal_Request>;
template struct AsnOperations<InitializeJournal_RequestSeq>;
template struct AsnOperations<ReportJournalStatus_Response>;
template struct AsnOperations<FileName, asn::SequenceOf<asn::Graphic>>;
template struct AsnOperations<FileAttributes>;
template struct AsnOperations<FileOpen_Request>;
template struct AsnOperations<FileOpen_Response>;
template struct AsnOperations<FileRead_Response>;
template struct AsnOperations<FileDirectory_Request>;
template struct AsnOperations<FileDirectory_Response>;
template struct AsnOperations<DirectoryEntry>;
template struct AsnOperations<InformationReport>;

} // namespace ied
