// The runtime information model (IEC 61850-7-2, named as IEC 61850-8-1 maps it): one GenNode per
// device, node, functional constraint, object, control block and attribute. Built once at start
// from the SCL file; the shape never changes afterwards.
#pragma once

#include "basicInterface/memoryPool.h"
#include "platform/types.h"

namespace ied {

// Depth kinds of a node.
enum NodeLevel : u8 {
    LevelRoot,
    LevelLD,
    LevelLN,
    LevelFC,
    LevelDO,
    LevelInner,
    LevelLeaf
};

// Greatest depth of a subtree that the walkers convert: no node lies deeper below its logical node.
inline constexpr int maxWalkDepth = 10;

// Functional constraints (IEC 61850-7-2 table 18); 0 is none.
enum FcCode : u8 {
    FcNone,
    FcMX,
    FcST,
    FcCO,
    FcCF,
    FcDC,
    FcSP,
    FcSG,
    FcRP,
    FcLG,
    FcBR,
    FcGO,
    FcGS,
    FcSV,
    FcSE,
    FcMS,
    FcSC,
    FcUS,
    FcEX,
};

// Common data classes of level 4 nodes; 29 to 32 are control blocks.
enum CdcCode : u8 {
    CdcSPS,
    CdcDPS,
    CdcINS,
    CdcACT,
    CdcACD,
    CdcSEC,
    CdcBCR,
    CdcMV,
    CdcCMV,
    CdcSAV,
    CdcWYE,
    CdcDEL,
    CdcSEQ,
    CdcHMV,
    CdcHWYE,
    CdcHDEL,
    CdcSPC,
    CdcDPC,
    CdcINC,
    CdcBSC,
    CdcISC,
    CdcAPC,
    CdcSPG,
    CdcING,
    CdcASG,
    CdcCURVE,
    CdcDPL,
    CdcLPL,
    CdcCSD,
    CdcSGCB,
    CdcRCB,
    CdcLCB,
    CdcGOCB,
    CdcHST,
    CdcORG,
    CdcENS,
    CdcENG,
    CdcENC,
};

// Data types of nodes below level 4.
enum NodeType : u8 {
    TypeInner = 38,
    TypeArrayVec,
    TypeArray,
    TypeBoolean,
    TypeDbpos,
    TypeBits5,
    TypeTrgOps,
    TypeOptFlds,
    TypeQuality,
    TypeInt8,
    TypeInt16,
    TypeInt32,
    TypeInt8U,
    TypeInt16U,
    TypeInt32U,
    TypeFloat32,
    TypeOctet6,
    TypeOctet8,
    TypeOctet64,
    TypeVisString32,
    TypeVisString64,
    TypeVisString65,
    TypeVisString255,
    TypeUnicode255,
    TypeTimestamp,
    TypeEntryTime,
    TypeEnum,
    TypeFailure,
};

// Trigger options of a leaf or control block and reasons of an entry (IEC 61850-8-1 8.1.3: bit 0,
// reserved, is the top bit).
enum TrgOpsBit : u8 {
    TrgDchg = 0x40,
    TrgQchg = 0x20,
    TrgDupd = 0x10,
    TrgPeriod = 0x08,
    TrgGi = 0x04
};

struct GenNode {
    char name[32];
    u8 nodeType; // level 4: CdcCode; below: NodeType; above: TypeInner
    u8 trgOps;   // of a leaf: TrgOpsBit, from dchg to dupd
    u8 fc;       // FcCode
    u8 origType; // of an array of type 40: the element's type, 0 for structures
    void *data;  // level 1: list of data sets; 4: bound record; leaf: place of the value.
                 // Leaves are switched at run time: see nodeData()
    GenNode *child;
    GenNode *sibling;
    GenNode *parent;
    u8 level;           // NodeLevel
    char *value;        // configured value as text, or null
    char *sAddr;        // short address, or null
    void *savedData;    // a leaf's own place while it is turned to a substitution record
    GenNode *lastChild; // tail of the children, so that building is linear
};

// Whether the node is an array, of vectors or of anything else.
inline bool isArray(const GenNode *node) {
    return node->nodeType == TypeArrayVec || node->nodeType == TypeArray;
}

// Whether the arrays of structures of such a data object are spectra.
inline bool isHarmonic(u8 cdc) {
    return cdc == CdcHMV || cdc == CdcHWYE || cdc == CdcHDEL;
}

extern GenNode lds;               // the root
extern MemoryPool model_gen_pool; // holds everything that comes from the SCL file

// `size` zeroed bytes of model_gen_pool; throws PoolFull.
void *gMalloc(u32 size);

// Sets `parent` and appends `child` at the end of the children.
void addAsChild(GenNode *parent, GenNode *child);
// A zeroed node appended to `parent`, with name (if given), fc (if an FC text is given), nodeType
// and level 6.
GenNode *modelFillElem(GenNode *parent, const char *name, const char *fc, u8 nodeType);

// Codes of the texts of an SCL file: 0 for an unknown FC; the process ends for an unknown CDC;
// TypeInner, after a message, for an unknown bType.
u8 getFCType(const char *fc);
u8 getCDCType(const char *cdc);
bool isCDC(const char *cdc);
u8 getNodeType(const char *bType);
// Two-letter text of a functional constraint code, "" for none.
const char *fcText(u8 fc);
// Text of a CDC code, "" for a control block or an unknown one.
const char *cdcText(u8 cdc);

// Builds the whole model from the file `path` in a pool of `poolSize` bytes. Any fault ends the
// process with a message that names the culprit.
void modelInit(const char *path, u32 poolSize);

// Forgets the model with everything that was read for it and gives the pool back, so that modelInit
// can run again: for tests and tools. The server never calls it.
void modelForget();

} // namespace ied
