// Data sets, report and log control blocks of the SCL file as three flat lists, every reference
// composed as the services use it ("LD/LN$FC$name"). Read-only after start.
#pragma once

#include "model-gen/c/genNode.h"
#include "model-gen/c/list.h"

namespace ied {

// Options of a report control block, left-aligned as its attribute OptFlds (IEC 61850-8-1 8.1.3).
enum OptFldsBit : u16 {
    OptSeqNum = 0x4000,
    OptTimeStamp = 0x2000,
    OptReason = 0x1000,
    OptDataSet = 0x0800,
    OptDataRef = 0x0400,
    OptBufOvfl = 0x0200,
    OptEntryID = 0x0100,
    OptConfRev = 0x0080,
    OptSegmentation = 0x0040,
};

struct PreDefDsMember {
    char *name; // LD/LN$FC$DO[$DA...]
    ListLink link;
};

struct PreDefDs {
    char *ldName;       // IED name joined with LDevice inst
    char *itemName;     // LN$name
    TailedList members; // of PreDefDsMember
    ListLink link;
    unsigned long line; // line of the DataSet element in the file
};

struct ReportCfg {
    char *name;   // LD/LN$BR|RP$name[nn]
    char *rtpID;  // null if absent or empty
    char *dsName; // LD/LN$name, null if absent or empty
    u8 trgOps;    // TrgOpsBit
    u16 optFlds;  // OptFldsBit
    u32 bufTm;    // milliseconds
    u32 intgPd;   // milliseconds
    u8 buffered;
    u32 bufferSize;
    u32 confRev;
    ListLink link;
    unsigned long line;
};

struct LCBCfg {
    char *name;   // LD/LN$LG$name
    char *datSet; // LD/LN$name; ends in "$" without a datSet
    u32 intgPd;
    char *logName;
    u8 logEna;
    u8 reasonCode;
    u8 trgOps; // TrgOpsBit
    u8 period;
    ListLink link;
    unsigned long line;
};

extern TailedList PreDefDsHead;
extern TailedList ReportCfgHead;
extern TailedList LCBHead;

// The level 1 node named IED name + inst, or null.
GenNode *searchLogicDevice(const char *inst);
// Copies a whole device behind the source, lists included; null (and a message) if the source is
// missing or the target exists. Valid only before the model is bound.
GenNode *copyLogicDevice(const char *sourceInst, const char *targetInst);
void removeLogicDevice(const char *inst);

// Hooks of the device layer for the texts of a copied node: each returns the source's pointer.
char *nodeValueCopy(GenNode *node, void *context);
char *nodeSaddrCopy(GenNode *node, void *context);

} // namespace ied
