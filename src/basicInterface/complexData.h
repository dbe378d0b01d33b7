// Conversion of whole subtrees of the model between their data records and MMS Data: an inner node
// is a structure whose members follow the order of the children.
#pragma once

#include "asn1/mmsDataTypes.h"
#include "basicInterface/nodeTree.h"
#include "platform/platform.h"

namespace ied {

// Read side guards one leaf at a time; null without modelLockEnable. Nothing takes its write side.
extern SemId semModelData;
// Readers of the model beside one for each client.
inline constexpr int extraReaders = 3;

// A new value of the subtree on the heap (freed with FreeData). `accessSel` null: arrays read as
// boolean false.
void getNodeData(Data *data, GenNode *node, const AccessSel *accessSel);
// The full value in `pool`, once, for reuse by copyNodeData.
void allocNodeDataInMp(Data *data, GenNode *node, MemoryPool *pool);
// Overwrites a value made by allocNodeDataInMp; allocates nothing.
void copyNodeData(Data *data, GenNode *node);

// 1 with a child "mag", plus 2 with "ang".
u8 getVectorComp(const GenNode *node);
// Component of an array of vectors between `target` and the array `node`: 0 whole, 1 mag, 2 ang,
// 3 mag.f, 4 ang.f.
u8 getVectorLoc(const GenNode *node, const GenNode *target);
void getArrVecData(Data *data, GenNode *node, const AccessSel *accessSel);
void allocArrVecDataInMp(Data *data, GenNode *node, MemoryPool *pool);
bool copyVecArrNode(GenNode *node, u32 first, Data *data);
void getArrGenData(Data *data, GenNode *node, const AccessSel *accessSel, MemoryPool *pool);
void allocArrGenDataInMp(Data *data, GenNode *node, MemoryPool *pool);
bool copyGenArrNode(GenNode *node, Data *data);
void getSingleArrData(Data *data, GenNode *node, const AccessSel *accessSel, bool alloc, MemoryPool *pool);
void getSingleCellData(Data *data, GenNode *node, const AccessSel *accessSel, bool alloc, MemoryPool *pool);
void fp2OctsAllocInMp(AsnOcts *octs, f32 value, MemoryPool *pool);

// True if `data` may be written; else *error is a DataAccessError (3, 7, 8, 11).
bool checkNodeData(const Data *data, GenNode *node, i8 *error);
// Stores it leaf by leaf; leaves before a failure stay written.
bool writeNodeData(const Data *data, GenNode *node, i8 *error);
// True if a setting's value lies in its range.
bool checkSetRange(const Data *data, GenNode *leaf);

// Overwrites a value of the same shape; allocates nothing.
void copyData(Data *target, const Data *source, const GenNode *node);
// A new value on the heap.
void copyDataNew(Data *target, const Data *source, const GenNode *node);
void copyVecArrData(Data *target, const Data *source, const GenNode *node, bool alloc);
bool copyGenListData(Data *target, const Data *source, bool alloc);

} // namespace ied
