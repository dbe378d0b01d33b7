// Data sets (IEC 61850-7-2 clause 13) as MMS named variable lists: the predefined ones of the SCL
// file and the dynamic ones of clients. A device's GenNode holds the list of its data sets.
#pragma once

#include "asn1/mmsTypes.h"
#include "basicInterface/nodeTree.h"
#include "platform/platform.h"

namespace ied {

struct DataSet {
    ObjectName *name;   // domain-specific
    AsnList *members;   // of ObjectName
    AsnList *nodes;     // of GenNode, in the order of members
    u16 memberNum;
    u16 daiNum;         // leaves under all members
    u32 size;           // bytes of one report entry
    u32 isDynamic;
    u8 refCount;
};

// One entry of a report ring, as getDsSize measures it.
struct RptEntry {
    u8 *included; // per member
    u8 *reasons;  // per member
    Data *data;   // one per member
    TimeStamp time;
    u8 entryId[9];
};

// Guards the lists of data sets: read side for look-ups that use a list, write side for create and
// delete. Held while a DataSet found by a search is in use, never across a send.
extern SemId semDataSets;

bool initPreDefDS();
int checkDsName(const ObjectName *objectName);
int checkDsMember(const AsnList *listOfVariable);
bool createDynDs(const ObjectName *objectName, const AsnList *listOfVariable);
bool getDsList(AsnList *list, const AsnOcts *domainName, const AsnOcts *continueAfter);
bool deleteDs(const ObjectName *objectName, u32 *matchedCount, u32 *deletedCount);
bool searchDsByObjName(const ObjectName *objectName, DataSet **dataSetOut);
bool searchDsByStr(const char *reference, DataSet **dataSetOut);
u16 getDAINum(GenNode *node);
i64 getDsSize(const DataSet *dataSet); // bytes, or -1 when it exceeds maxDsSize
u32 getTotalDSNum();

} // namespace ied
