// The one record that holds every tunable of the server. Written before the first task starts and
// read-only afterwards, but for the debug settings that an INI file may replace at start.
// externGlbCfg.cpp has one row a field: name, width, default, sound range, meaning.
#pragma once

#include "platform/types.h"

namespace ied {

struct SGCB;

// Numbers that a table of MMS services has room for: one more than is announced.
inline constexpr u32 serviceNum = 86;

struct ExternGlbCfg {
    // system (libSysCfgInit)
    u8 hostLittleEndian;
    u8 wordAlign;
    u32 tickRate;
    u8 wdgEnable;
    u8 wdgClientEnable;
    u32 wdgMainTimeout;
    u32 wdgClientTimeout;
    u32 wdgLogTimeout;
    u32 logTaskPriority;
    u32 clientTaskPriority;
    u32 logTaskStack;
    u32 clientTaskStack;
    // network (libNetCfgInit)
    u32 acceptTimeout;
    u32 recvTimeout;
    u32 keepIdle;
    u32 keepCnt;
    u32 keepIntvl;
    u8 maxClientNum;
    u32 maxMmsPduSize;
    u32 maxTpduSize;
    u32 sendBufSize;
    u32 recvBufSize;
    u16 tcpPort;
    u16 listenBacklog;
    u32 maxSendFail;
    u8 mmsServiceParam[serviceNum];
    // model and services (libModelCfgInit)
    const char *icdPath;
    u8 modelLockEnable;
    u32 modelLockTimeout;
    u8 maxDepth;
    u8 maxItemLen;
    u32 maxDsNum;
    u32 maxDsSize;
    u8 sgFileEnable;
    u8 sgEditActive;
    u32 ctlResultTimeout;
    u32 rptBufSpace;
    u8 minRptBufNum;
    u8 maxRptBufNum;
    u32 minIntgPd;
    u8 rptEntryIdSeq;
    u8 rptOptFldsWritable;
    u8 rptTrgOpsWritable;
    u8 rptBufTmWritable;
    u8 rptIntgPdWritable;
    u8 logEnable;
    u32 logFileSpace;
    u32 logBufSpace;
    u32 logSingleSize;
    u8 logFilePerDir;
    u8 logFlushPeriod;
    u8 logKeepOnStart;
    u8 logCompress;
    u8 logIndexBufEnable;
    u8 logFileNum;
    u32 logUnitIndexNum;
    u8 logJournalFlat;
    u32 minLogIntgPd;
    u8 logTrgOpsWritable;
    u8 logIntgPdWritable;
    u32 logLockTimeout;
    u32 logMsgNum;
    u32 logReadYieldNum;
    u32 logIndexBufSpace;
    // files (libFileCfgInit)
    u8 fileCheckDisable;
    u8 dirMaxDepth;
    u8 dirMaxItemLen;
    const char *debugDir;
    const char *logDir;
    const char *sgDir;
    // debug log (libDebugCfgInit)
    u8 dbLevel[16];
    u8 dbDest;
    u8 dbConfFile;
    u32 dbFileSize;
    // hooks, assigned by nobody in this process
    int (*isNeedInitEverySG)(SGCB *sgcb);
    int (*refreshSGGroup)(SGCB *sgcb, u8 group);
    int (*logPauseHook)();
    void (*dbHook)(const char *line);
};

extern ExternGlbCfg externGlbCfg;

// Least and greatest size of the model's pool, in bytes.
inline constexpr u32 modelPoolLeast = 0x10000;
inline constexpr u32 modelPoolMost = 0x7FFFFFFF;

// Bytes of the model's pool and whether the icd path is one of the host: the two things that the
// host's command line says and the record does not hold.
struct HostModelOptions {
    u32 modelPool;  // bytes; default 0x500000 for each 4 octets of a pointer
    bool icdOnHost; // icdPath is a path of the host, not below the device root
};
extern HostModelOptions hostModelOptions;

// Each writes the defaults of its group.
void libSysCfgInit();
void libNetCfgInit();
void libModelCfgInit();
void libFileCfgInit();
void libDebugCfgInit();

// Zeroes the record, then runs the five initialisers in their order.
void externGlbCfgInit();

// The initialiser that writes a field.
enum class ConfigGroup : u8 {
    System,
    Network,
    Model,
    Files,
    Debug,
    None, // no initialiser: zero at start
};

enum class ConfigKind : u8 {
    U8,
    U16,
    U32,
    Levels,   // u8 list in which every number is given
    Services, // u8 list that ends at 0xFF, zeros behind it
    Text,     // string pointer, a private heap copy
    Hook,     // function pointer, set by code alone
};

// One field of the record.
struct ConfigField {
    ConfigGroup group;
    const char *name;
    u16 offset; // of the field in the record
    ConfigKind kind;
    u16 count; // numbers of a list, 1 otherwise
    u32 init;  // default of a number, and of each number of Levels
    u32 least; // sound range: of a number, of each number of a list, of a text's length
    u32 greatest;
    const char *text; // default of a text, or of Services as setConfigField takes it
    const char *meaning;
};

// The fields in the order of the record; `*count` of them.
const ConfigField *configFields(u32 *count);

// Sets the field `name` from text (decimal or 0x hexadecimal numbers, lists separated by commas,
// texts as they are). Returns null, or a message that names the field and says what is wrong; the
// field is then as it was. The message stands until the next call.
const char *setConfigField(const char *name, const char *value);

// Looks at fields that have to suit each other, once all are set. Returns null, or a message that
// names the field at fault; it stands until the next call.
const char *checkConfig();

} // namespace ied
