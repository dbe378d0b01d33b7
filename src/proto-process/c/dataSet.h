// Data sets (IEC 61850-7-2 clause 13) as MMS named variable lists: the predefined ones of the SCL
// file and the dynamic ones of clients. A device's GenNode holds the list of its data sets.
//
// Clients make and delete data sets while others use them, so every function here that looks at a
// list wants semDataSets held (DataSetsRead or DataSetsWrite below), and what it finds may be used
// as long as it is held. Nodes live for ever. While the server starts a single task runs, and no
// lock is needed.
#pragma once

#include "asn1/mmsDataTypes.h"
#include "basicInterface/nodeTree.h"
#include "platform/platform.h"

namespace ied {

struct PreDefDs;

struct DataSet {
    ObjectName *name; // domain-specific
    AsnList *members; // of ObjectName
    AsnList *nodes;   // of GenNode, in the order of members
    u16 memberNum;
    u16 daiNum; // leaves under all members
    u32 size;   // bytes of one report entry
    u32 isDynamic;
    u8 refCount; // control blocks that hold it
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
// delete. Made by initPreDefDS; null before. Never held across a send, never taken twice.
extern SemId semDataSets;

// Holds the read side.
class DataSetsRead {
  public:
    DataSetsRead();
    ~DataSetsRead();
    DataSetsRead(const DataSetsRead &) = delete;
    DataSetsRead &operator=(const DataSetsRead &) = delete;
};

// Holds the write side.
class DataSetsWrite {
  public:
    DataSetsWrite();
    ~DataSetsWrite();
    DataSetsWrite(const DataSetsWrite &) = delete;
    DataSetsWrite &operator=(const DataSetsWrite &) = delete;
};

// Makes every data set of the SCL file. More than maxDsNum end the process; false, after messages,
// if one cannot be made.
bool initPreDefDS();
bool createPreDefDs(const PreDefDs *entry);
// 1 free, 0 in use, -1 no name for a data set.
int checkDsName(const ObjectName *objectName);
// 1 good, 0 a member does not exist, -1 a member lies above data objects.
int checkDsMember(const AsnList *listOfVariable);
// Makes a dynamic data set; false, with nothing left of it, if a member is unknown or it is too big.
// A null list is an empty one.
bool createDynDs(const ObjectName *objectName, const AsnList *listOfVariable);
// Appends the item name of each data set of the domain; false if it has none. The whole list comes
// every time.
bool getDsList(AsnList *list, const AsnOcts *domainName, const AsnOcts *continueAfter);
// Counts a match, and a deletion if the data set is dynamic and no control block holds it. False if
// the name is not domain-specific or the device unknown.
bool deleteDs(const ObjectName *objectName, u32 *matchedCount, u32 *deletedCount);
bool searchDsByObjName(const ObjectName *objectName, DataSet **dataSetOut);
// By reference "LD/LN$name".
bool searchDsByStr(const char *reference, DataSet **dataSetOut);
// Leaves under a node; a leaf counts as one, an array too.
u16 getDAINum(GenNode *node);
// Bytes that one report entry takes in its pool, or -1 when it exceeds dsSizeLimit().
i64 getDsSize(const DataSet *dataSet);
// Largest size of one report entry: maxDsSize for each 4 octets of a pointer.
u32 dsSizeLimit();
u32 getTotalDSNum();

// Frees a record that is in no list, with its names and lists.
void freeDataSet(DataSet *dataSet);

// Text of a name for a message, "unknown member" where it cannot be printed.
struct NameText {
    explicit NameText(const ObjectName *name);
    char text[100];
};

} // namespace ied
