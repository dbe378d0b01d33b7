// The attributes of each common data class (IEC 61850-7-3): path below the data object, functional
// constraint and field of the record that holds the value.
#pragma once

#include "model-gen/c/genNode.h"

namespace ied {

inline constexpr u32 aDONum = 38; // codes of CDCs and control blocks

struct AttrRow {
    char path[24];
    u8 fc;
    bool isArray; // the field is a pointer to the elements
    u16 offset;   // octets from the start of the record; of a SubsObj for FcSV
    u16 size;     // octets of the field
};

struct AttrTable {
    const AttrRow *rows; // null for a CDC without a record
    u32 count;
};

// Table of each CDC, by its code.
extern const AttrTable aDOTable[aDONum];

// Row with that path and functional constraint, or null.
const AttrRow *attrRow(u8 nodeType, const char *daPath, u8 fc);

} // namespace ied
