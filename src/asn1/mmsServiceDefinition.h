// The services of MMS (ISO 9506-2), a line a component.
#pragma once

#include "asn1/mmsDefinition.h"

// clang-format off

namespace ied::asn {

template <>
inline constexpr auto asnDefinition<Status_Response> = sequence(-1500,
    component<&Status_Response::vmdLogicalStatus>(context(0)),
    component<&Status_Response::vmdPhysicalStatus>(context(1)),
    optional<&Status_Response::localDetail>(context(2)));

template <>
inline constexpr auto asnDefinition<GetNameList_RequestChoice> = choice(-1520,
    alternative<0, &GetNameList_RequestChoice::objectClass>(context(0)));

template <>
inline constexpr auto asnDefinition<GetNameList_RequestChoice1> = choice(-1540,
    nullAlternative<GetNameList_RequestChoice1::vmdSpecific>(context(0)),
    alternative<GetNameList_RequestChoice1::domainSpecific, &GetNameList_RequestChoice1::domainSpecific_,
        Visible>(context(1)),
    nullAlternative<GetNameList_RequestChoice1::aaSpecific>(context(2)));

template <>
inline constexpr auto asnDefinition<GetNameList_Request> = sequence(-1560,
    component<&GetNameList_Request::extendedObjectClass>(explicitContext(0)),
    component<&GetNameList_Request::objectScope>(explicitContext(1)),
    optional<&GetNameList_Request::continueAfter, Visible>(context(2)));

template <>
inline constexpr auto asnDefinition<GetNameList_Response> = sequence(-1580,
    component<&GetNameList_Response::listOfIdentifier, SequenceOf<Visible>>(context(0)),
    optional<&GetNameList_Response::moreFollows>(context(1)));

template <>
inline constexpr auto asnDefinition<Identify_Response> = sequence(-1600,
    component<&Identify_Response::vendorName, Visible>(context(0)),
    component<&Identify_Response::modelName, Visible>(context(1)),
    component<&Identify_Response::revision, Visible>(context(2)),
    optional<&Identify_Response::listOfAbstractSyntaxes, SequenceOf<AsnOid>>(context(3)));

template <>
inline constexpr auto asnDefinition<Read_Request> = sequence(-1620,
    optional<&Read_Request::specificationWithResult>(context(0)),
    component<&Read_Request::variableAccessSpecification>(explicitContext(1)));

template <>
inline constexpr auto asnDefinition<Read_Response> = sequence(-1640,
    optional<&Read_Response::variableAccessSpecification>(explicitContext(0)),
    component<&Read_Response::listOfAccessResult, SequenceOf<AccessResult>>(context(1)));

template <>
inline constexpr auto asnDefinition<Write_Request> = sequence(-1660,
    component<&Write_Request::variableAccessSpecification>(),
    component<&Write_Request::listOfData, SequenceOf<Data>>(context(0)));

template <>
inline constexpr auto asnDefinition<Write_ResponseChoice> = choice(-1680,
    alternative<Write_ResponseChoice::failure, &Write_ResponseChoice::failure_>(context(0)),
    nullAlternative<Write_ResponseChoice::success>(context(1)));

template <>
inline constexpr auto asnDefinition<GetVariableAccessAttributes_Request> = choice(-1700,
    alternative<GetVariableAccessAttributes_Request::name,
        &GetVariableAccessAttributes_Request::name_>(explicitContext(0)),
    alternative<GetVariableAccessAttributes_Request::address,
        &GetVariableAccessAttributes_Request::address_>(explicitContext(1)));

template <>
inline constexpr auto asnDefinition<GetVariableAccessAttributes_Response> = sequence(-1720,
    component<&GetVariableAccessAttributes_Response::mmsDeletable>(context(0)),
    optional<&GetVariableAccessAttributes_Response::address>(explicitContext(1)),
    component<&GetVariableAccessAttributes_Response::typeSpecification>(explicitContext(2)));

template <>
inline constexpr auto asnDefinition<DefineNamedVariableList_Request> = sequence(-1740,
    component<&DefineNamedVariableList_Request::variableListName>(),
    component<&DefineNamedVariableList_Request::listOfVariable, VariableList>(context(0)));

template <>
inline constexpr auto asnDefinition<GetNamedVariableListAttributes_Response> = sequence(-1760,
    component<&GetNamedVariableListAttributes_Response::mmsDeletable>(context(0)),
    component<&GetNamedVariableListAttributes_Response::listOfVariable, VariableList>(context(1)));

template <>
inline constexpr auto asnDefinition<DeleteNamedVariableList_Request> = sequence(-1780,
    optional<&DeleteNamedVariableList_Request::scopeOfDelete>(context(0)),
    optional<&DeleteNamedVariableList_Request::listOfVariableListName, SequenceOf<ObjectName>>(context(1)),
    optional<&DeleteNamedVariableList_Request::domainName, Visible>(context(2)));

template <>
inline constexpr auto asnDefinition<DeleteNamedVariableList_Response> = sequence(-1800,
    component<&DeleteNamedVariableList_Response::numberMatched>(context(0)),
    component<&DeleteNamedVariableList_Response::numberDeleted>(context(1)));

template <>
inline constexpr auto asnDefinition<GetDomainAttributes_Response> = sequence(-1820,
    component<&GetDomainAttributes_Response::listOfCapabilities, SequenceOf<Visible>>(context(0)),
    component<&GetDomainAttributes_Response::state>(context(1)),
    component<&GetDomainAttributes_Response::mmsDeletable>(context(2)),
    component<&GetDomainAttributes_Response::sharable>(context(3)),
    component<&GetDomainAttributes_Response::listOfProgramInvocations, SequenceOf<Visible>>(context(4)),
    component<&GetDomainAttributes_Response::uploadInProgress>(context(5)));

// ---------------------------------------------------------------------------------- journals

template <>
inline constexpr auto asnDefinition<ApplicationReference> = sequence(-1840,
    optional<&ApplicationReference::ap_title>(explicitContext(0)),
    optional<&ApplicationReference::ap_invocation_id>(explicitContext(1)),
    optional<&ApplicationReference::ae_qualifier>(explicitContext(2)),
    optional<&ApplicationReference::ae_invocation_id>(explicitContext(3)));

template <>
inline constexpr auto asnDefinition<ReadJournal_RequestChoice> = choice(-1860,
    alternative<ReadJournal_RequestChoice::startingTime, &ReadJournal_RequestChoice::octs>(context(0)),
    alternative<ReadJournal_RequestChoice::startingEntry, &ReadJournal_RequestChoice::octs>(context(1)));

template <>
inline constexpr auto asnDefinition<ReadJournal_RequestChoice1> = choice(-1880,
    alternative<ReadJournal_RequestChoice1::endingTime,
        &ReadJournal_RequestChoice1::endingTime_>(context(0)),
    alternative<ReadJournal_RequestChoice1::numberOfEntries,
        &ReadJournal_RequestChoice1::numberOfEntries_>(context(1)));

template <>
inline constexpr auto asnDefinition<ReadJournal_RequestSeq> = sequence(-1900,
    component<&ReadJournal_RequestSeq::timeSpecification>(context(0)),
    component<&ReadJournal_RequestSeq::entrySpecification>(context(1)));

template <>
inline constexpr auto asnDefinition<ReadJournal_Request> = sequence(-1920,
    component<&ReadJournal_Request::journalName>(explicitContext(0)),
    optional<&ReadJournal_Request::rangeStartSpecification>(explicitContext(1)),
    optional<&ReadJournal_Request::rangeStopSpecification>(explicitContext(2)),
    optional<&ReadJournal_Request::listOfVariables, SequenceOf<Visible>>(context(4)),
    optional<&ReadJournal_Request::entryToStartAfter>(context(5)));

template <>
inline constexpr auto asnDefinition<EntryContentChoiceSeqSeqOfSeq> = sequence(-1940,
    component<&EntryContentChoiceSeqSeqOfSeq::variableTag, Visible>(context(0)),
    component<&EntryContentChoiceSeqSeqOfSeq::valueSpecification>(explicitContext(1)));

template <>
inline constexpr auto asnDefinition<EntryContentChoiceSeqSeq> = sequence(-1960,
    component<&EntryContentChoiceSeqSeq::eventConditionName>(explicitContext(0)),
    component<&EntryContentChoiceSeqSeq::currentState>(context(1)));

template <>
inline constexpr auto asnDefinition<EntryContentChoiceSeq> = sequence(-1980,
    optional<&EntryContentChoiceSeq::event>(context(0)),
    optional<&EntryContentChoiceSeq::listOfVariables, SequenceOf<EntryContentChoiceSeqSeqOfSeq>>(context(1)));

template <>
inline constexpr auto asnDefinition<EntryContentChoice> = choice(-2000,
    alternative<EntryContentChoice::data, &EntryContentChoice::data_>(context(2)),
    alternative<EntryContentChoice::annotation, &EntryContentChoice::annotation_, Utf8>(context(3)));

template <>
inline constexpr auto asnDefinition<EntryContent> = sequence(-2020,
    component<&EntryContent::occurenceTime>(context(0)),
    optional<&EntryContent::additionalDetail, Undecoded>(context(1)),
    component<&EntryContent::choice>());

template <>
inline constexpr auto asnDefinition<JournalEntry> = sequence(-2040,
    component<&JournalEntry::entryIdentifier>(context(0)),
    component<&JournalEntry::originatingApplication>(explicitContext(1)),
    component<&JournalEntry::entryContent>(context(2)));

// A journal entry by its components, which frees its stored form, too.
struct JournalEntryByField : Record<JournalEntry> {
    static void release(JournalEntry *value);
};
template <> struct KindOf<JournalEntry> {
    using type = JournalEntryByField;
};

// A journal entry that goes out as the octets it is stored as, which are content already.
struct StoredJournalEntry {
    using Value = JournalEntry;
    static constexpr u32 tag = 0x10000000;
    static constexpr Form form = Form::constructed;
    static u32 encode(GenBuf *gen, const JournalEntry *value);
    static void decode(Reader &reader, u32 tag, u32 len, JournalEntry *value);
    static void release(JournalEntry *value);
};

template <>
inline constexpr auto asnDefinition<ReadJournal_Response> = sequence(-2060,
    component<&ReadJournal_Response::listOfJournalEntry, SequenceOf<StoredJournalEntry>>(context(0)),
    optional<&ReadJournal_Response::moreFollows>(context(1)));

template <>
inline constexpr auto asnDefinition<InitializeJournal_RequestSeq> = sequence(-2080,
    component<&InitializeJournal_RequestSeq::limitingTime>(context(0)),
    optional<&InitializeJournal_RequestSeq::limitingEntry>(context(1)));

template <>
inline constexpr auto asnDefinition<InitializeJournal_Request> = sequence(-2100,
    component<&InitializeJournal_Request::journalName>(explicitContext(0)),
    optional<&InitializeJournal_Request::limitSpecification>(context(1)));

template <>
inline constexpr auto asnDefinition<ReportJournalStatus_Response> = sequence(-2120,
    component<&ReportJournalStatus_Response::currentEntries>(context(0)),
    component<&ReportJournalStatus_Response::mmsDeletable>(context(1)));

// ------------------------------------------------------------------------------------- files

using FileNameParts = SequenceOf<Graphic>;

template <>
inline constexpr auto asnDefinition<FileAttributes> = sequence(-2140,
    component<&FileAttributes::sizeOfFile>(context(0)),
    optional<&FileAttributes::lastModified>(context(1)));

template <>
inline constexpr auto asnDefinition<FileOpen_Request> = sequence(-2160,
    component<&FileOpen_Request::fileName, FileNameParts>(context(0)),
    component<&FileOpen_Request::initialPosition>(context(1)));

template <>
inline constexpr auto asnDefinition<FileOpen_Response> = sequence(-2180,
    component<&FileOpen_Response::frsmID>(context(0)),
    component<&FileOpen_Response::fileAttributes>(context(1)));

template <>
inline constexpr auto asnDefinition<FileRead_Response> = sequence(-2200,
    component<&FileRead_Response::fileData>(context(0)),
    optional<&FileRead_Response::moreFollows>(context(1)));

template <>
inline constexpr auto asnDefinition<FileDirectory_Request> = sequence(-2220,
    optional<&FileDirectory_Request::fileSpecification, FileNameParts>(context(0)),
    optional<&FileDirectory_Request::continueAfter, FileNameParts>(context(1)));

template <>
inline constexpr auto asnDefinition<DirectoryEntry> = sequence(-2240,
    component<&DirectoryEntry::filename, FileNameParts>(context(0)),
    component<&DirectoryEntry::fileAttributes>(context(1)));

template <>
inline constexpr auto asnDefinition<FileDirectory_Response> = sequence(-2260,
    component<&FileDirectory_Response::listOfDirectoryEntry, SequenceOf<DirectoryEntry>>(explicitContext(0)),
    optional<&FileDirectory_Response::moreFollows>(context(1)));

// ----------------------------------------------------------------------------------- reports

template <>
inline constexpr auto asnDefinition<InformationReport> = sequence(-2280,
    component<&InformationReport::variableAccessSpecification>(),
    component<&InformationReport::listOfAccessResult, SequenceOf<AccessResult>>(context(0)));

} // namespace ied::asn
