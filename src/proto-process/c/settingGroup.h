// Setting group control blocks (IEC 61850-7-2 clause 16).
#pragma once

#include "asn1/berTypes.h"
#include "platform/types.h"

#include <cstddef>

namespace ied {

// The block. Its first twelve bytes are the header of the .sg file as they stand.
struct SGCB {
    u8 NumOfSG;
    u8 pad1[3];       // 0
    u32 setNodeNum;   // setting nodes of the device
    u8 ActSG;         // 1 to NumOfSG
    u8 EditSG;        // group open for editing, 0 none
    u8 CnfEdit;       // stays 0
    u8 pad2;          // 0
    TimeStamp LActTm; // last activation
    const char *name; // LDevice inst, the name of the file
    AsnList setNodes; // of GenNode: the objects of FC SG with a short address, in tree order
    u32 recordSize;   // bytes of one group in the file
    u8 *recordBuf;    // one group's records
    u8 sgcbIndex;     // index of the record and of its mutex
    u8 editClient;    // slot that edits, clientNone for none
};
inline constexpr u32 sgFileHeaderSize = 12;
static_assert(offsetof(SGCB, setNodeNum) == 4 && offsetof(SGCB, ActSG) == 8 &&
              offsetof(SGCB, LActTm) == sgFileHeaderSize);

extern SGCB *aSGCB; // gCBNum.sgcbNum records; null for none

// Makes the blocks of the SCL file and binds their nodes. True on success.
bool sgcbModelInit();
// Writes the path of a block's file, "<sgDir><name>.sg", into `path` (100 bytes). False if an argument
// is null.
bool genSgFileName(const SGCB *sg, char *path);
// Ends every edit of the client of `slot`.
void releaseClientSGCB(u8 slot);

} // namespace ied
