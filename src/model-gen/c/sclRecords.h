// The SCL file (IEC 61850-6) as plain records, one a kind of element. Every text points into the
// document tree and is null where the file does not give it; nothing is converted or resolved here.
// Lists are in document order. All of it lives in model_gen_pool and is read-only after start.
#pragma once

#include "model-gen/c/list.h"
#include "model-gen/c/modelName.h"
#include "platform/types.h"

namespace ied {

namespace scl {

// ------------------------------------------------------------------------------- header and IED

struct Hitem {
    char *version, *revision, *when, *who, *what, *why;
    ListLink link;
};

struct Header {
    char *id, *version, *revision, *toolID, *nameStructure;
    TailedList history; // of Hitem
};

struct AccessPoint {
    char *name, *desc, *router, *clock;
    char *timeout, *serverDesc;                              // Server
    char *none, *password, *weak, *strong, *certificate;     // Authentication
    char *kind, *associationID, *iedName, *ldInst, *lnClass; // Association, the last one
    char *prefix, *lnInst;
};

struct ConfDataSet {
    char *max, *maxAttributes, *modify;
};
struct DynDataSet {
    char *max, *maxAttributes;
};
struct MaxOnly { // ConfReportControl, ConfLogControl, GOOSE, GSSE
    char *max;
};
struct ReportSettings {
    char *cbName, *datSet, *rptID, *optFields, *bufTime, *trgOps, *intgPd;
};
struct LogSettings {
    char *cbName, *datSet, *logEna, *trgOps, *intgPd;
};
struct GSESettings {
    char *cbName, *datSet, *appID, *dataLabel;
};
struct SMVSettings {
    char *cbName, *datSet, *svID, *optFields, *sampRate;
};
struct ConfLNs {
    char *fixPrefix, *fixLnInst;
};

// What the file says the device can do; not what this server announces. A flag is 1 where the
// element is present, a record is null where it is not.
struct Services {
    u8 DynAssociation, SettingGroups, SGEdit, ConfSG, GetDirectory, GetDataObjectDefinition;
    u8 DataObjectDirectory, GetDataSetValue, SetDataSetValue, DataSetDirectory;
    struct ConfDataSet *ConfDataSet;
    struct DynDataSet *DynDataSet;
    u8 ReadWrite, TimerActivatedControl;
    MaxOnly *ConfReportControl;
    u8 GetCBValues;
    MaxOnly *ConfLogControl;
    struct ReportSettings *ReportSettings;
    struct LogSettings *LogSettings;
    struct GSESettings *GSESettings;
    struct SMVSettings *SMVSettings;
    struct ConfLNs *ConfLNs;
    u8 GSEDir;
    MaxOnly *GOOSE;
    MaxOnly *GSSE;
    u8 FileHandling;
};

struct IedResources;

struct Ied {
    char *name, *desc, *type, *manufacturer, *configVersion;
    AccessPoint accessPoint;
    struct Services services;
    IedResources *iedResources;
    TailedList *gooseSubscription;
};

// ------------------------------------------------------------------------------ logical devices

struct FCDA {
    char *ldInst, *prefix, *lnClass, *lnInst, *doName, *daName, *fc;
    ListLink link;
};

struct DataSet {
    char *name, *desc;
    ListLink link;
    TailedList members; // of FCDA
    u32 line;           // of the file
};

struct TrgOps {
    char *dchg, *qchg, *dupd, *period, *gi;
};

struct ReportControl {
    char *name, *desc, *datSet, *intgPd, *rptID, *confRev, *buffered, *bufTime;
    struct TrgOps TrgOps;
    char *seqNum, *timeStamp, *dataSet, *reasonCode, *dataRef; // OptFields
    char *bufOvfl, *entryID, *configRef, *segmentation;
    char *enabledDesc, *max; // RptEnabled
    ListLink link;
    u32 line;
};

struct LogControl {
    char *name, *desc, *datSet, *intgPd, *logName, *logEna, *reasonCode;
    struct TrgOps TrgOps; // gi is not accepted here and stays null
    ListLink link;
    u32 line;
};

struct DAI {
    char *desc, *name, *sAddr, *valKind, *ix;
    char *val; // text of the first child when that is a Val
    ListLink link;
};

// What a DOI or SDI instantiates: its DAI and its SDI records.
struct Instances {
    TailedList dai;
    TailedList sdi;
};

struct SDI {
    char *desc, *name, *ix;
    ListLink link;
    Instances below;
};

struct DOI {
    char *desc, *name, *ix, *accessControl;
    ListLink link;
    Instances below;
};

struct ExtRef {
    char *iedName, *ldInst, *prefix, *lnClass, *lnInst, *doName, *daName, *intAddr;
    ListLink link;
};

struct Inputs {
    char *iedName, *ldInst, *prefix, *lnClass, *lnInst, *doName, *daName, *intAddr;
    ListLink link;
    TailedList extRefs; // of ExtRef
};

struct GSEControl {
    char *name, *desc, *datSet, *confRev, *type, *appID;
    ListLink link;
    u32 line;
};

struct SampledValueControl {
    char *name, *desc, *datSet, *confRev, *smvID, *multicast, *smpRate, *nofASDU;
    char *refreshTime, *sampleSynchronized, *sampleRate, *security, *dataRef; // of the first child
};

struct SettingControl {
    char *desc, *numOfSGs, *actSG;
};

struct LN { // and LN0, whose prefix is null
    char *desc, *lnType, *lnClass, *inst, *prefix;
    ListLink link;
    TailedList dataSets;       // of DataSet
    TailedList reportControls; // of ReportControl
    TailedList logControls;    // of LogControl
    TailedList dois;           // of DOI
    TailedList inputs;         // of Inputs
    NodeName nodeName;         // of its node in the model, once it is built
    u32 line;
};

struct LDevice {
    char *inst, *desc;
    char *iedVersion, *iedName, *protocolVersion; // texts of Private elements
    LN LN0;
    TailedList gse; // of GSEControl
    struct SampledValueControl SampledValueControl;
    struct SettingControl SettingControl;
    TailedList lns; // of LN
    ListLink link;  // in LDeviceHead
    NodeName nodeName;
    u32 line;
};

// -------------------------------------------------------------------------- data type templates

struct DO {
    char *name, *type, *accessControl, *transient, *desc;
    ListLink link;
    u32 line;
};

struct LNodeType {
    char *id, *desc, *iedType, *lnClass;
    ListLink link;
    TailedList dos; // of DO
    u32 line;
};

struct SDO {
    char *name, *desc, *type;
    ListLink link;
    u32 line;
};

struct DAType;

struct DA {
    char *desc, *name, *fc, *dchg, *qchg, *dupd, *sAddr, *bType, *type, *count, *valKind;
    char *val; // text of the first child
    ListLink link;
    u32 line;
    u8 nodeType;        // code of bType, 0 until it is needed
    DAType *structType; // of a Struct, null until it is needed
};

struct DOType {
    char *id, *iedType, *cdc;
    ListLink link;
    TailedList sdos; // of SDO
    TailedList das;  // of DA
    u32 line;
    u8 isBarren; // 1 once it is known that no attribute stands in it, nor in its SDOs
};

struct BDA {
    char *desc, *name, *sAddr, *bType, *type, *count, *valKind;
    ListLink link;
    u32 line;
    u8 nodeType;
    DAType *structType;
};

struct DAType {
    char *id;
    ListLink link;
    TailedList bdas; // of BDA
    u32 line;
};

struct EnumVal {
    char *ord;
    char *text;
    ListLink link;
};

struct EnumType {
    char *id, *desc;
    ListLink link;
    TailedList vals; // of EnumVal
    u32 line;
};

struct Templates {
    TailedList *lNodeTypes, *doTypes, *daTypes, *enumTypes;
};

// -------------------------------------------------------------------------------- communication

struct TimeLimit {
    char *unit, *multiplier, *value;
};

struct GSE { // and SMV, which has no times
    char *desc, *ldInst, *cbName;
    TimeLimit MaxTime;
    TimeLimit MinTime;
    char *mac, *appID, *vlanPriority, *vlanID;
    ListLink link;
};

struct ConnectedAP {
    char *iedName, *apName, *desc;
    ListLink link;
    char *ip, *ipSubnet, *ipGateway, *osiNsap, *osiTsel, *osiSsel, *osiPsel;
    char *osiApTitle, *osiApInvoke, *osiAeQualifier, *osiAeInvoke;
    char *connectionType, *portType, *plug; // PhysConn
    GSE SMV;
    TailedList gse; // of GSE
};

struct SubNetwork {
    char *name, *desc, *type;
    char *text, *bitRate;
    ListLink link;
    TailedList connectedAPs; // of ConnectedAP
};

struct Communication {
    TailedList *subNetworks;
};

// ------------------------------------------------------------------- private sections of the IED

struct OrvConfig_t {
    char *key, *val, *extend;
    ListLink link;
};

struct ConfSection {
    char *name;
    TailedList entries; // of OrvConfig_t
    ListLink link;
};

struct Private {
    TailedList localConf; // of OrvConfig_t
    TailedList iniConf;   // of ConfSection
    u8 localConfRead;     // 1 once the section has been met
    u8 iniConfRead;
};

struct VisualDI {
    char *format, *num;
    ListLink link;
};

struct IedResources {
    TailedList visualDIs; // of VisualDI
    struct {
        char *max, *uniqueAddr;
    } GooseRx;
    struct {
        char *minMaxTime, *maxBoolData;
    } GooseTx;
    struct {
        char *maxDataSetSize;
    } Reports;
};

struct GooseRxEntry {
    char *tdlString, *ref;
    ListLink link;
};

struct GooseSubscription {
    char *iedName, *ldInst, *mAddr, *APPID, *VLAN_ID, *VLAN_PRIORITY, *goCbRef, *datSetRef, *cbName;
    TailedList entries; // of GooseRxEntry
    ListLink link;
};

struct GooseMapInit {
    u16 appid;
    u8 mac[6];
    char *gocbRef;
    u32 apduIndex;
    char *refPath;
    ListLink link;
};

// The root of what was read; each pointer leads to the record or list of the same subject below.
struct Icd {
    struct Header *Header;
    Communication *Comm;
    Ied *IED;
    struct Templates *Templates;
};

} // namespace scl

extern scl::Icd icd;
extern scl::Header Header;
extern scl::Communication Comm;
extern scl::Ied IED;
extern scl::Templates Templates;
extern scl::Private OrvPrivate;
extern scl::IedResources IedResources;
extern TailedList LDeviceHead;           // of scl::LDevice
extern TailedList LNodeTypeHead;         // of scl::LNodeType
extern TailedList DOTypeHead;            // of scl::DOType
extern TailedList DATypeHead;            // of scl::DAType
extern TailedList EnumTypeHead;          // of scl::EnumType
extern TailedList SubNetworkHead;        // of scl::SubNetwork
extern TailedList GooseSubscriptionHead; // of scl::GooseSubscription
extern TailedList GooseMapInitHead;      // of scl::GooseMapInit

// Section of the INI-shaped private store, or null.
scl::ConfSection *getConfSection(const char *name);

} // namespace ied
