// Building the tree of GenNode from the SCL records: each logical node's type expanded with the
// instance's values, grouped by functional constraint as IEC 61850-8-1 names it. The records of
// what is unknown or impossible end the process with a message (sclFault).
#pragma once

#include "model-gen/c/genNode.h"
#include "model-gen/c/modelConfig.h"
#include "model-gen/c/modelName.h"
#include "model-gen/c/sclRecords.h"

#include <string>

namespace ied {

// The types that are being expanded, the innermost first: what a circle of references runs into.
struct TypePath {
    const char *id;
    const TypePath *up;
};

// One data object of a logical node while its type is expanded: the DO and what instantiates it.
struct DoBuild {
    GenNode *ln;
    scl::DO *dataObject;
    scl::DOType *type;
    scl::Instances *instances;  // of its DOI, or null
    GenNode *fcNodes[FcEX + 1]; // level 4 nodes by functional constraint, null until needed
};

// Names of the SDOs from the data object inwards, the innermost first.
struct SdoPath {
    scl::SDO *sdo;
    const SdoPath *up;
};

// First type with that id, or null.
scl::LNodeType *modelGetLNodeType(const char *id);
scl::DOType *modelGetDOType(const char *id);
scl::DAType *modelGetDAType(const char *id);

// Child of the logical node for that functional constraint text, made where it is not there.
GenNode *modelGetFCNode(GenNode *ln, const char *fc);
// Node of the data object, or of the SDO that `path` leads to, in that functional constraint.
GenNode *modelGetDONode(DoBuild *build, const char *fc);
GenNode *modelGetSDONode(DoBuild *build, const char *fc, const SdoPath *path);

void modelGetLN0(GenNode *ldNode, scl::LDevice *device);
void modelGetLN(GenNode *ldNode, scl::LDevice *device);
void modelGetLN0Attr(GenNode *lnNode, scl::LDevice *device);
void modelGetLNAttr(GenNode *lnNode, scl::LN *ln);
// The attributes of an SDO's type, nested SDOs included. `instances` are those of the SDO. False if
// there are none.
bool modelGetSDO(DoBuild *build, const SdoPath *path, scl::Instances *instances, const TypePath *types);
// An attribute below `parent`, which `instances` instantiates.
void modelGetDA(GenNode *parent, scl::DA *da, scl::Instances *instances);
// The components of a type; functional constraint and triggers are those of `parent`.
void modelGetBDA(GenNode *parent, scl::DAType *daType, scl::Instances *instances, const TypePath *types);

// Whether the type `id` is being expanded; circleFault ends the process for it and names the circle,
// the element `of` which the reference stands, and its line.
bool isOpen(const TypePath *types, const char *id);
[[noreturn]] void circleFault(const TypePath *types, const char *id, const std::string &of, const char *kind,
                              u32 line);
// Ends the process when `node` lies deeper than the walkers go.
void refuseDepth(const GenNode *node, u32 line);

// Control blocks as fixed attribute lists.
void modelGetSGCB(GenNode *lnNode);
void modelGetGoCB(GenNode *lnNode, const scl::GSEControl *gse);
void modelGetRPListALL(GenNode *lnNode, scl::LN *ln);
void modelGetLCBListAll(GenNode *lnNode, scl::LN *ln);
// Number of instances of a report control block; more than 99 end the process.
int reportInstances(const scl::ReportControl *report, const char *lnName);

// Instances by the names of nodes; the first of a name wins.
scl::LDevice *getLDevice(const char *nodeName);
scl::LN *getLN(scl::LDevice *device, const char *nodeName);
// Record that instantiates the logical node.
scl::LN *getInstanceLN(const GenNode *lnNode);
scl::Instances *getDOI(scl::LN *ln, const char *name);
scl::Instances *getSDI(scl::Instances *owner, const char *name);
scl::DAI *getDAI(scl::Instances *owner, const char *name);

// Text of the ord of an enumeration word, or the text itself where it is a number; null, after a
// message, where there is none.
const char *getEnumValue(const char *typeId, const char *text);
u8 getTrgOps(const scl::DA *da);
void modelGetDAIAddr(const scl::DA *da, GenNode *node, scl::Instances *instances);
void modelGetBDAAddr(const scl::BDA *bda, GenNode *node, scl::Instances *instances);

// The children of a logical node in the order of their codes, SE as a copy of SG.
void reorgnizeLNFCList(GenNode *lnNode);
// The children of a node by name, in the order of octets.
void _modelReorgnize(GenNode *node);

// Deep copy of `source` into `target`, each node by `copier`.
void modelTreeCopy(GenNode *source, GenNode *target, GenNode *parent,
                   void (*copier)(GenNode *source, GenNode *target, void *context), void *context);
void copySGtoSE(GenNode *source, GenNode *target, void *context);

// The configuration lists of one device.
void modelGetDS(scl::LDevice *device);
void modelGetRP(scl::LDevice *device);
void modelGetLCB(scl::LDevice *device);

// Trigger and option bits of a report or log control block.
u8 getTrgTrgOps(const scl::TrgOps *triggers);
u16 getOptFields(const scl::ReportControl *report);

// "LD/LN$FC$DO..." of a node, for messages.
std::string nodePath(const GenNode *node);

// Name of a logical device, of a logical node.
NodeName ldName(const char *ldInst);
NodeName lnName(const scl::LN *ln);

} // namespace ied
