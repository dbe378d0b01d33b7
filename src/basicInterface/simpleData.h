// Conversion of one leaf between its place in a data record and MMS Data (IEC 61850-8-1, ISO 9506).
// No function here takes a lock.
#pragma once

#include "asn1/mmsDataTypes.h"
#include "basicInterface/nodeTree.h"

namespace ied {

// DataAccessError numbers (ISO 9506-2).
enum DataAccessError : i8 {
    DaeNone = -1,
    DaeTemporarilyUnavailable = 2,
    DaeObjectAccessDenied = 3,
    DaeObjectUndefined = 4,
    DaeInvalidAddress = 5,
    DaeTypeInconsistent = 7,
    DaeObjectAttributeInconsistent = 8,
    DaeObjectNonExistent = 10,
    DaeObjectValueInvalid = 11,
};

// Octets of the place of a leaf that holds a number, or of its fixed octets; 0 for any other.
u8 storedWidth(const GenNode *node);

// Reads the leaf; an unbound one gives the zero of its kind. With `alloc` the parts come from
// Malloc, else they stand there already (allocSimpleDataInMp).
void getSimpleData(Data *data, const GenNode *node, bool alloc);
// Kind and empty parts of full capacity from `pool`.
void allocSimpleDataInMp(Data *data, const GenNode *node, MemoryPool *pool);
// Stores `data`; false with *error 7, after a message, if kind or size do not fit, or if the leaf has
// no place. A leaf that still shows its configured text gets a place of its own first.
bool setSimpleData(const Data *data, GenNode *node, i8 *error);
// Whether `data` may be stored into the leaf.
bool checkSimpleData(const Data *data, const GenNode *node);
// Copies a Data of a simple kind; with `alloc` the parts are new, else those of `target` are
// overwritten, which has the kind of `source` and room for its octets. Any other kind gives false.
void copySimpleData(Data *target, const Data *source, bool alloc);
// Takes a configured text into the leaf; false if its type takes none. Without a place one is made,
// but a text (not octets) becomes the place itself and has to live as long as the node. Start only.
bool setNodeConfig(GenNode *node, const char *text);
// The MMS type description; parts of a FLOAT32 answer come from Malloc.
void getSimpleType(TypeSpecification *typeDescription, const GenNode *node);
// The same for a value that is no node, by its type code and address (null: the zero of its kind).
void getDataFromType(Data *data, u8 type, const void *address);
void copyDataFromType(Data *data, u8 type, const void *address, bool alloc, MemoryPool *pool);

// Encodings on the parts of a Data. With `alloc` a block is made, else the caller's is used.
void fp2Octs(AsnOcts *octs, f32 value, bool alloc);
void octs2Fp(f32 *value, const AsnOcts *octs);
void timestamp2Octs(AsnOcts *octs, const TimeStamp *timeStamp, bool alloc);
void octs2Timestamp(TimeStamp *timeStamp, const AsnOcts *octs);
void timestamp2Bittime(AsnOcts *octs, const TimeStamp *timeStamp, bool alloc);
bool bittime2Timestamp(const AsnOcts *octs, TimeStamp *timeStamp);
void int2Bits8(AsnBits *bits, u8 value, u32 length, bool alloc);
void int2Bits16(AsnBits *bits, u16 value, u32 length, bool alloc);
u8 bits2Int8(const AsnBits *bits);
u16 bits2Int16(const AsnBits *bits);
void str2Octs(AsnOcts *octs, const char *text, bool alloc);
void str2OctsLen(const char *text, u32 capacity, bool alloc, AsnOcts *octs);
bool octs2Str(char *target, const AsnOcts *octs, u32 max);
void octsCopy(AsnOcts *target, const AsnOcts *source);
// Whether two floats of the same sign differ by at most `tolerance` units in the last place.
bool fp32Cmp(f32 a, f32 b, u32 tolerance);

} // namespace ied
