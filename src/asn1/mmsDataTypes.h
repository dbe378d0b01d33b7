// The value records of MMS (ISO 9506-2) that the services share: names, data, access to variables and
// type descriptions.
//
// The rules of all value records: a pointer that is null, or a string whose data pointer is null, is
// absent. A CHOICE is `choiceId` and a union; its numbers stand in the enumeration beside it. What a
// decoder or builder hangs into a record comes from Malloc and is freed by Free<T>. What is kept
// undecoded is one whole element, with its tag and a definite length; the structure below it has been
// checked, and an encoder writes it as it is.
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

// clang-format on

} // namespace ied
