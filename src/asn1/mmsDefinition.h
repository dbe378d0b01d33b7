// The types of MMS (ISO 9506-2), a line a component. Identifier is VisibleString content.
#pragma once

#include "asn1/asnCodec.h"
#include "asn1/mmsCodec.h"

// clang-format off

namespace ied::asn {

// ------------------------------------------------------------------------------------ names

template <>
inline constexpr auto asnDefinition<ObjectNameSeq> = sequence(-1000,
    component<&ObjectNameSeq::domainId, Visible>(),
    component<&ObjectNameSeq::itemId, Visible>());

template <>
inline constexpr auto asnDefinition<ObjectName> = choice(-1020,
    alternative<ObjectName::vmdSpecific, &ObjectName::vmd_specific, Visible>(context(0)),
    alternative<ObjectName::domainSpecific, &ObjectName::domain_specific>(context(1)),
    alternative<ObjectName::aaSpecific, &ObjectName::aa_specific, Visible>(context(2)));

template <>
inline constexpr auto asnDefinition<AP_title> = choice(-1040,
    alternative<0, &AP_title::form2>());

template <>
inline constexpr auto asnDefinition<AE_qualifier> = choice(-1060,
    alternative<0, &AE_qualifier::form2>());

// ------------------------------------------------------------------------------------- data

// An array of vectors without a list: of each, the octets of its floats go out as structures.
struct Vectors {
    using Value = DataArrayVec;
    static constexpr u32 tag = 0x10000000;
    static constexpr Form form = Form::constructed;
    static u32 encode(GenBuf *gen, const DataArrayVec *value);
    [[noreturn]] static void decode(Reader &reader, u32 tag, u32 len, DataArrayVec *value);
    static void release(DataArrayVec *value);
};
template <> struct KindOf<DataArrayVec> {
    using type = Vectors;
};

using DataList = Nested<SequenceOf<Data>>;

template <>
inline constexpr auto asnDefinition<Data> = choice(-538,
    alternative<Data::array, &Data::list, DataList>(context(1)),
    alternative<Data::structure, &Data::list, DataList>(context(2)),
    alternative<Data::boolean, &Data::bool_>(context(3)),
    alternative<Data::bitString, &Data::bits>(context(4)),
    alternative<Data::integer, &Data::int_>(context(5)),
    alternative<Data::unsignedInt, &Data::uint_>(context(6)),
    alternative<Data::floatingPoint, &Data::octs>(context(7)),
    alternative<Data::real, &Data::real_>(context(8)),
    alternative<Data::octetString, &Data::octs>(context(9)),
    alternative<Data::visibleString, &Data::octs, Visible>(context(10)),
    alternative<Data::binaryTime, &Data::octs>(context(12)),
    alternative<Data::bcd, &Data::int_>(context(13)),
    alternative<Data::booleanArray, &Data::bits>(context(14)),
    alternative<Data::objId, &Data::oid>(context(15)),
    alternative<Data::mMSString, &Data::octs, Utf8>(context(16)),
    alternative<Data::utcTime, &Data::octs>(context(17)),
    // Behind the list form of the same tag: it is written and never read.
    alternative<Data::arrayVec, &Data::vec>(context(1)));

template <>
inline constexpr auto asnDefinition<AccessResult> = choice(-1080,
    alternative<AccessResult::failure, &AccessResult::failure_>(context(0)),
    alternative<AccessResult::success, &AccessResult::success_>());

// --------------------------------------------------------------------------- variable access

template <>
inline constexpr auto asnDefinition<Address> = choice(-1100,
    alternative<Address::numericAddress, &Address::numeric>(context(0)),
    alternative<Address::symbolicAddress, &Address::text, Visible>(context(1)),
    alternative<Address::unconstrainedAddress, &Address::text>(context(2)));

template <>
inline constexpr auto asnDefinition<AlternateAccessSelectionChoiceSeq> = sequence(-1120,
    component<&AlternateAccessSelectionChoiceSeq::lowIndex>(context(0)),
    component<&AlternateAccessSelectionChoiceSeq::numberOfElements>(context(1)));

// The same alternatives twice, under the tags 1 to 4 where the access ends and 0 to 3 where it goes on.
constexpr auto accessSelection(i32 code, u32 firstTag) {
    using Selection = AlternateAccessSelectionChoice;
    return choice(code,
        alternative<Selection::component, &Selection::component_, Visible>(context(firstTag)),
        alternative<Selection::index, &Selection::index_>(context(firstTag + 1)),
        alternative<Selection::indexRange, &Selection::indexRange_>(context(firstTag + 2)),
        nullAlternative<Selection::allElements>(context(firstTag + 3)));
}
template <> inline constexpr auto asnDefinition<AlternateAccessSelectionChoice> = accessSelection(-1140, 1);
template <> inline constexpr auto asnDefinition<NestedSelection> = accessSelection(-1160, 0);
template <> struct KindOf<NestedSelection> {
    using type = Record<AlternateAccessSelectionSeqChoice, NestedSelection>;
};

using AccessList = Nested<SequenceOf<AlternateAccessChoice>>;

template <>
inline constexpr auto asnDefinition<AlternateAccessSelectionSeq> = sequence(-1180,
    component<&AlternateAccessSelectionSeq::accessSelection, NestedSelection>(),
    component<&AlternateAccessSelectionSeq::alternateAccess, AccessList>());

template <>
inline constexpr auto asnDefinition<AlternateAccessSelection> = choice(-1200,
    alternative<AlternateAccessSelection::selectAlternateAccess,
        &AlternateAccessSelection::selectAlternateAccess_>(context(0)),
    alternative<AlternateAccessSelection::selectAccess, &AlternateAccessSelection::selectAccess_>());

template <>
inline constexpr auto asnDefinition<AlternateAccessChoiceSeq> = sequence(-1220,
    component<&AlternateAccessChoiceSeq::componentName, Visible>(context(0)),
    component<&AlternateAccessChoiceSeq::accesst>());

template <>
inline constexpr auto asnDefinition<AlternateAccessChoice> = choice(-1240,
    alternative<AlternateAccessChoice::unnamed, &AlternateAccessChoice::unnamed_>(),
    alternative<AlternateAccessChoice::named, &AlternateAccessChoice::named_>(context(5)));

template <>
inline constexpr auto asnDefinition<VariableSpecificationSeq> = sequence(-1260,
    component<&VariableSpecificationSeq::address>(),
    component<&VariableSpecificationSeq::typeSpecification>());

template <>
inline constexpr auto asnDefinition<VariableSpecification> = choice(-1280,
    alternative<VariableSpecification::name, &VariableSpecification::name_>(explicitContext(0)),
    alternative<VariableSpecification::address, &VariableSpecification::address_>(explicitContext(1)),
    alternative<VariableSpecification::variableDescription,
        &VariableSpecification::variableDescription_>(context(2)),
    alternative<VariableSpecification::scatteredAccessDescription, &VariableSpecification::scattered,
        UndecodedConstructed>(context(3)),
    nullAlternative<VariableSpecification::invalidated>(context(4)));

template <>
inline constexpr auto asnDefinition<VariableAccessSpecificationSeqOfSeq> = sequence(-1300,
    component<&VariableAccessSpecificationSeqOfSeq::variableSpecification>(),
    optional<&VariableAccessSpecificationSeqOfSeq::alternateAccess, AccessList>(context(5)));

using VariableList = SequenceOf<VariableAccessSpecificationSeqOfSeq>;

template <>
inline constexpr auto asnDefinition<VariableAccessSpecification> = choice(-1320,
    alternative<VariableAccessSpecification::listOfVariable, &VariableAccessSpecification::listOfVariable_,
        VariableList>(context(0)),
    alternative<VariableAccessSpecification::variableListName,
        &VariableAccessSpecification::variableListName_>(explicitContext(1)));

// ------------------------------------------------------------------------- type descriptions

template <>
inline constexpr auto asnDefinition<TypeSpecificationSeq> = sequence(-1340,
    optional<&TypeSpecificationSeq::packed>(context(0)),
    component<&TypeSpecificationSeq::numberOfElements>(context(1)),
    component<&TypeSpecificationSeq::elementType>(explicitContext(2)));

template <>
inline constexpr auto asnDefinition<TypeSpecificationSeq1SeqOfSeq> = sequence(-1360,
    optional<&TypeSpecificationSeq1SeqOfSeq::componentName, Visible>(context(0)),
    component<&TypeSpecificationSeq1SeqOfSeq::componentType>(explicitContext(1)));

template <>
inline constexpr auto asnDefinition<TypeSpecificationSeq1> = sequence(-1380,
    optional<&TypeSpecificationSeq1::packed>(context(0)),
    component<&TypeSpecificationSeq1::components, SequenceOf<TypeSpecificationSeq1SeqOfSeq>>(context(1)));

template <>
inline constexpr auto asnDefinition<TypeSpecificationSeq2> = sequence(-1400,
    component<&TypeSpecificationSeq2::format_width>(),
    component<&TypeSpecificationSeq2::exponent_width>());

template <>
inline constexpr auto asnDefinition<TypeSpecificationSeq3> = sequence(-1420,
    component<&TypeSpecificationSeq3::base>(context(0)),
    component<&TypeSpecificationSeq3::exponent>(context(1)),
    component<&TypeSpecificationSeq3::mantissa>(context(2)));

template <>
inline constexpr auto asnDefinition<TypeSpecification> = choice(-1440,
    alternative<TypeSpecification::typesName, &TypeSpecification::typesName_>(explicitContext(0)),
    alternative<TypeSpecification::array, &TypeSpecification::array_,
        Nested<Record<TypeSpecificationSeq>>>(context(1)),
    alternative<TypeSpecification::structure, &TypeSpecification::structure_,
        Nested<Record<TypeSpecificationSeq1>>>(context(2)),
    nullAlternative<TypeSpecification::boolean>(context(3)),
    alternative<TypeSpecification::bitString, &TypeSpecification::size>(context(4)),
    alternative<TypeSpecification::integer, &TypeSpecification::size>(context(5)),
    alternative<TypeSpecification::unsignedInt, &TypeSpecification::size>(context(6)),
    alternative<TypeSpecification::floatingPoint, &TypeSpecification::floatingPoint_>(context(7)),
    alternative<TypeSpecification::real, &TypeSpecification::real_>(context(8)),
    alternative<TypeSpecification::octetString, &TypeSpecification::size>(context(9)),
    alternative<TypeSpecification::visibleString, &TypeSpecification::size>(context(10)),
    nullAlternative<TypeSpecification::generalizedTime>(context(11)),
    alternative<TypeSpecification::binaryTime, &TypeSpecification::withDate>(context(12)),
    alternative<TypeSpecification::bcd, &TypeSpecification::size>(context(13)),
    alternative<TypeSpecification::booleanArray, &TypeSpecification::booleanArray_>(context(14)),
    nullAlternative<TypeSpecification::objId>(context(15)),
    alternative<TypeSpecification::mMSString, &TypeSpecification::size>(context(16)),
    nullAlternative<TypeSpecification::utcTime>(context(17)));

} // namespace ied::asn
