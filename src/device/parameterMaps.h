// The maps of the parameters: for each parameter of a parameter area the record of the mirror that
// holds it, and what it may be.
#pragma once

#include "device/parameterRefresh.h"

namespace ied {

// Octets of a field of that type; 0 for a number that is no type.
constexpr u32 paraWidth(u16 dataType) {
    constexpr u8 widths[] = {1, 2, 4, 1, 2, 4, 4};
    return dataType < std::size(widths) ? widths[dataType] : 0;
}

// Which types of fields the record of a CDC can take its value from.
struct ParaRecordKind {
    u16 protoType;
    u16 dataTypes;     // bit i: ParaType i
    const char *fault; // message for a field of another type
};

inline constexpr u16 unsignedTypes = 1 << ParaU8 | 1 << ParaU16 | 1 << ParaU32;
inline constexpr u16 integerTypes = unsignedTypes | 1 << ParaI8 | 1 << ParaI16 | 1 << ParaI32;
inline constexpr ParaRecordKind paraRecordKinds[] = {
    {CdcSPG, unsignedTypes, "No Such DataType In model_spg class!"},
    {CdcING, integerTypes, "No Such DataType In model_ing class!"},
    {CdcASG, unsignedTypes | 1 << ParaF32, "No Such DataType In model_asg class!"},
    {CdcENG, integerTypes, "No Such DataType In model_eng class!"},
};

// The kind of the records of that CDC; one that takes no type for a CDC that is no parameter.
constexpr ParaRecordKind paraRecordKind(u16 protoType) {
    for (const ParaRecordKind &kind : paraRecordKinds) {
        if (kind.protoType == protoType) {
            return kind;
        }
    }
    return {protoType, 0, "No Such protoType!"};
}

constexpr bool takesType(const ParaRecordKind &kind, u16 dataType) {
    return paraWidth(dataType) != 0 && (kind.dataTypes >> dataType & 1) != 0;
}

// The first row of all maps in their order whose record is `record`, or null.
const ParaMap *findPara(const void *record);

// Whether a value may stand in the parameter of `row`: within its limits, or passing its special check
// (ParaRange), which looks at the values under edit of other parameters. `value` is the whole value of
// the record, not yet cut to the width of its field. A failed check of inputs' functions and an unknown
// check are logged.
bool isParaInRange(const ParaMap &row, f64 value);

// Names in the log each object of FC SG of the model that has a record of the mirror which no map
// holds: no edit can take it. Called once, when the model is bound.
void nameUnmappedSettings();

} // namespace ied
