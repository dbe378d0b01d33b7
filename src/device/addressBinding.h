// Binding of the model to the mirror of device data: short addresses ("RT.PhV") give data objects
// their records, attribute names give leaves their fields. Runs once, in the main task, before any
// other task exists; the pointers stay afterwards, but for the d and dU texts of setpoint alarms.
#pragma once

#include "model-gen/c/genNode.h"

namespace ied {

inline constexpr u32 SADDR_DEP_MAX = 8;  // items of a short address
inline constexpr u32 SADDR_LEN_MAX = 15; // characters of an item

// Numbers of the model's control blocks and records.
struct CBNum {
    u16 rcbNum;  // report control blocks
    u16 brcbNum; // those that are buffered
    u16 lcbNum;  // log control blocks
    u16 gseNum;  // logical devices with a GSE list
    u16 sgcbNum; // logical devices with a SettingControl
    u16 subsNum; // substitution records
};
extern CBNum gCBNum;

// Description nodes of one object, found by its short address.
struct DescNodes {
    char key[16];
    GenNode *dNode;
    GenNode *dUNode;
};
inline constexpr u32 setPointNum = 32;
// "ST.SP1" to "ST.SP32", then an empty row.
extern DescNodes setPointDesc[setPointNum + 1];

// Record of the short address, whose object has the CDC `nodeType`. Null for a null or empty text;
// any fault of the text or type ends the process with a message that carries it.
void *getSAddr(const char *sAddr, u8 nodeType);
// CDC of the leaf row named, or TypeFailure. A fault of the text ends the process likewise.
u8 getNodeTypeBySAddr(const char *sAddr);
// Prints every short address, one a line, on the standard output.
void sAddrPrint();

// Field of a record: octets from its start, or -1 when the CDC has no table or no row with that
// path and functional constraint. Rows of FcSV count from the start of a SubsObj.
int getDAOfs(u8 nodeType, const char *daPath, u8 fc);
// Path of a leaf below its data object, "phsA.cVal.mag.f", into `out` (maxPathText octets).
void getDAStr(const GenNode *leaf, char *out);

// Notes the d and dU nodes of a bound object of FC DC in the row of `list` (ended by an empty key)
// that carries its short address. With `prefix` only addresses that begin with its first four
// characters are looked at. True if a row was filled.
bool searchTargetDescNode(const GenNode *doNode, const char *prefix, DescNodes *list);
// Gives the record and short address of a bound object to the objects of the same name under the
// other functional constraints of its node.
void updateOtherFCD(GenNode *doNode);

// Binds data objects by the short addresses of their leaves; counts substitution records.
void sAddrInit();
// Binds objects and leaves, makes arrays, stores configured values. True on success.
bool modelDataInit();
// Counts the control blocks of the SCL file.
void cbNumInit();

// Brings the whole model up in its fixed order. False, after a message, when a step failed.
bool modelCfgInit(const char *icdPath);

} // namespace ied
