#include "device/externGlbCfg.h"

#include "basicInterface/memory.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ied {

ExternGlbCfg externGlbCfg;
HostModelOptions hostModelOptions = {0x500000U * sizeof(void *) / 4, false};

namespace {

using enum ConfigGroup;
using enum ConfigKind;

constexpr u32 maxInt = 0x7FFFFFFF;
constexpr u32 maxU32 = 0xFFFFFFFF;
constexpr u32 hourMs = 3'600'000;
constexpr u32 dayMs = 86'400'000;
constexpr u32 maxBuffer = 0x180000; // leaves room on the report task's stack of 0x200000

// Name and place of a field.
#define AT(field) #field, offsetof(ExternGlbCfg, field)

// clang-format off
constexpr ConfigField fields[] = {
    // group, field,                    kind,   count, default, least, greatest, text, meaning
    {System, AT(hostLittleEndian),   U8,     1,   1,          0,       1,          nullptr, "1: floats and times are turned round on their way into an MMS encoding"},
    {System, AT(wordAlign),          U8,     1,   1,          1,       1,          nullptr, "1: each allocation from a pool is rounded up to a word"},
    {System, AT(tickRate),           U32,    1,   100,        1,       1000,       nullptr, "system ticks per second"},
    {System, AT(wdgEnable),          U8,     1,   1,          0,       1,          nullptr, "1: the main and the log task register with the watchdog and feed it"},
    {None,   AT(wdgClientEnable),    U8,     1,   0,          0,       1,          nullptr, "1: client tasks do so too, where wdgEnable is set"},
    {System, AT(wdgMainTimeout),     U32,    1,   600,        1,       maxInt,     nullptr, "the main task's time-out at the watchdog, in its unit"},
    {System, AT(wdgClientTimeout),   U32,    1,   1800,       1,       maxInt,     nullptr, "a client task's time-out at the watchdog"},
    {System, AT(wdgLogTimeout),      U32,    1,   1800,       1,       maxInt,     nullptr, "the log task's time-out at the watchdog"},
    {System, AT(logTaskPriority),    U32,    1,   246,        0,       255,        nullptr, "priority of the log task, 0 the highest"},
    {System, AT(clientTaskPriority), U32,    1,   247,        0,       255,        nullptr, "priority of the client tasks, 0 the highest"},
    {System, AT(logTaskStack),       U32,    1,   0x200000,   0x10000, 0x4000000,  nullptr, "stack of the log task, octets"},
    {System, AT(clientTaskStack),    U32,    1,   0x100000,   0x10000, 0x4000000,  nullptr, "stack of a client task, octets"},
    {Network,AT(acceptTimeout),      U32,    1,   1000,       1,       hourMs,     nullptr, "ms, longest wait of the accept loop"},
    {Network,AT(recvTimeout),        U32,    1,   1000,       1,       hourMs,     nullptr, "ms, longest wait of a client task"},
    {Network,AT(keepIdle),           U32,    1,   5,          1,       32767,      nullptr, "s, TCP_KEEPIDLE"},
    {Network,AT(keepCnt),            U32,    1,   5,          1,       127,        nullptr, "TCP_KEEPCNT"},
    {Network,AT(keepIntvl),          U32,    1,   5,          1,       32767,      nullptr, "s, TCP_KEEPINTVL"},
    {Network,AT(maxClientNum),       U8,     1,   8,          1,       250,        nullptr, "number of client slots"},
    {Network,AT(maxMmsPduSize),      U32,    1,   100000,     64,      maxBuffer,  nullptr, "upper bound of the negotiated MMS PDU size, octets"},
    {Network,AT(maxTpduSize),        U32,    1,   1028,       8,       65535,      nullptr, "longest TPKT frame sent, octets"},
    {Network,AT(sendBufSize),        U32,    1,   103136,     512,     maxBuffer,  nullptr, "size of an encode buffer, octets"},
    {Network,AT(recvBufSize),        U32,    1,   103136,     256,     maxBuffer,  nullptr, "size of a receive, reserve or reassembly buffer, octets"},
    {Network,AT(tcpPort),            U16,    1,   102,        1,       65535,      nullptr, "listening TCP port"},
    {Network,AT(listenBacklog),      U16,    1,   2,          1,       4096,       nullptr, "backlog of listen"},
    {Network,AT(maxSendFail),        U32,    1,   100,        1,       maxInt,     nullptr, "failed sends that end an association"},
    {Network, AT(mmsServiceParam), Services, serviceNum, 0, 0, 255,
     "0,1,2,4,5,6,12,13,37,65,68,72,73,74,77,79,83,84",
     "bit numbers of the services that Initiate announces (ISO 9506-2 ServiceSupportOptions), to the first 255"},
    {Model,  AT(icdPath),            Text,   1,   0,          1,       4095,       "/tffs0/ZRX418.icd", "the SCL file to load, a device path"},
    {Model,  AT(modelLockEnable),    U8,     1,   1,          0,       1,          nullptr, "1: model values are read under a reader-writer lock"},
    {Model,  AT(modelLockTimeout),   U32,    1,   1000,       1,       maxInt,     nullptr, "ticks, time-out of a take of that lock"},
    {Model,  AT(maxDepth),           U8,     1,   8,          3,       32,         nullptr, "items of an object reference that are too many"},
    {Model,  AT(maxItemLen),         U8,     1,   15,         8,       127,        nullptr, "longest item of a reference, characters"},
    {Model,  AT(maxDsNum),           U32,    1,   20,         0,       10000,      nullptr, "data sets, predefined and dynamic together"},
    {Model,  AT(maxDsSize),          U32,    1,   0xfa000,    256,     0x10000000, nullptr, "largest report entry of a data set, octets per 4 octets of a pointer"},
    {Model,  AT(sgFileEnable),       U8,     1,   0,          0,       1,          nullptr, "1: setting groups are kept in .sg files"},
    {Model,  AT(sgEditActive),       U8,     1,   0,          0,       1,          nullptr, "1: the active setting group cannot be edited"},
    {Model,  AT(ctlResultTimeout),   U32,    1,   10000,      1,       dayMs,      nullptr, "ms that a control with enhanced security waits for its result"},
    {Model,  AT(rptBufSpace),        U32,    1,   12,         1,       1024,       nullptr, "report buffer space in MiB per 4 octets of a pointer"},
    {Model,  AT(minRptBufNum),       U8,     1,   5,          1,       255,        nullptr, "least entries of a report buffer"},
    {Model,  AT(maxRptBufNum),       U8,     1,   100,        1,       255,        nullptr, "most entries of a report buffer"},
    {Model,  AT(minIntgPd),          U32,    1,   5000,       0,       dayMs,      nullptr, "ms, smallest non-zero IntgPd of a report control block"},
    {Model,  AT(rptEntryIdSeq),      U8,     1,   1,          0,       1,          nullptr, "1: EntryID is built from the sequence number alone"},
    {Model,  AT(rptOptFldsWritable), U8,     1,   1,          0,       1,          nullptr, "1: clients may write OptFlds"},
    {Model,  AT(rptTrgOpsWritable),  U8,     1,   1,          0,       1,          nullptr, "1: clients may write TrgOps"},
    {Model,  AT(rptBufTmWritable),   U8,     1,   1,          0,       1,          nullptr, "1: clients may write BufTm"},
    {Model,  AT(rptIntgPdWritable),  U8,     1,   1,          0,       1,          nullptr, "1: clients may write IntgPd"},
    {Model,  AT(logEnable),          U8,     1,   0,          0,       1,          nullptr, "1: logDir is prepared for the log service"},
    {Model,  AT(logFileSpace),       U32,    1,   0x6400000,  1024,    maxInt,     nullptr, "octets of all log files together"},
    {Model,  AT(logBufSpace),        U32,    1,   0x100000,   1024,    maxInt,     nullptr, "octets of all log buffers together"},
    {Model,  AT(logSingleSize),      U32,    1,   0,          0,       maxInt,     nullptr, "upper bound of one log data space, octets; 0 is none"},
    {Model,  AT(logFilePerDir),      U8,     1,   0,          0,       1,          nullptr, "1: each log has a directory, 0: a name prefix"},
    {Model,  AT(logFlushPeriod),     U8,     1,   60,         0,       255,        nullptr, "s between flushes of a log buffer"},
    {Model,  AT(logKeepOnStart),     U8,     1,   1,          0,       1,          nullptr, "1: log files are made at full size, 0: they grow"},
    {Model,  AT(logCompress),        U8,     1,   0,          0,       1,          nullptr, "1: stored entries are compressed"},
    {Model,  AT(logIndexBufEnable),  U8,     1,   1,          0,       1,          nullptr, "1: unit mode, 0: file mode"},
    {Model,  AT(logFileNum),         U8,     1,   1,          1,       255,        nullptr, "store files in unit mode"},
    {Model,  AT(logUnitIndexNum),    U32,    1,   600,        1,       100000,     nullptr, "entries of a data space"},
    {Model,  AT(logJournalFlat),     U8,     1,   0,          0,       1,          nullptr, "form of the data in a stored entry"},
    {Model,  AT(minLogIntgPd),       U32,    1,   30000,      0,       dayMs,      nullptr, "ms, smallest non-zero IntgPd of a log control block"},
    {Model,  AT(logTrgOpsWritable),  U8,     1,   1,          0,       1,          nullptr, "1: clients may write TrgOps of a log control block"},
    {Model,  AT(logIntgPdWritable),  U8,     1,   1,          0,       1,          nullptr, "1: clients may write IntgPd of a log control block"},
    {Model,  AT(logLockTimeout),     U32,    1,   1500,       2,       maxInt,     nullptr, "ticks, time-out of the locks of logs"},
    {Model,  AT(logMsgNum),          U32,    1,   100,        1,       100000,     nullptr, "capacity of the queue of the log task"},
    {Model,  AT(logReadYieldNum),    U32,    1,   10,         1,       100000,     nullptr, "entries after which a long ReadJournal answer stops"},
    {Model,  AT(logIndexBufSpace),   U32,    1,   0x300000,   1024,    maxInt,     nullptr, "octets for index buffers"},
    {Files,  AT(fileCheckDisable),   U8,     1,   0,          0,       1,          nullptr, "1: files are not checked to be regular"},
    {Files,  AT(dirMaxDepth),        U8,     1,   8,          0,       98,         nullptr, "deepest path that is made"},
    {Files,  AT(dirMaxItemLen),      U8,     1,   50,         1,       100,        nullptr, "characters of a path item that are too many"},
    {Files,  AT(debugDir),           Text,   1,   0,          0,       80,         "",   "prefix of the paths of the debug log"},
    {Files,  AT(logDir),             Text,   1,   0,          0,       80,         "",   "prefix of the paths of log files"},
    {Files,  AT(sgDir),              Text,   1,   0,          0,       64,         "",   "prefix of the paths of .sg files"},
    {Debug,  AT(dbLevel),            Levels, 16,  3,          0,       5,          nullptr, "highest level shown, of each of the sixteen categories"},
    {Debug,  AT(dbDest),             U8,     1,   0,          0,       3,          nullptr, "destination: 0 none, 1 console, 2 file, 3 both"},
    {Debug,  AT(dbConfFile),         U8,     1,   0,          0,       1,          nullptr, "1: dbDest and dbLevel come from the INI file"},
    {Debug,  AT(dbFileSize),         U32,    1,   0x100000,   512,     maxU32,     nullptr, "octets at which the debug file rotates"},
    {None,   AT(isNeedInitEverySG),  Hook,   1,   0,          0,       0,          nullptr, "asks whether the setting groups are to be initialised"},
    {None,   AT(refreshSGGroup),     Hook,   1,   0,          0,       0,          nullptr, "brings one setting group up to date"},
    {None,   AT(logPauseHook),       Hook,   1,   0,          0,       0,          nullptr, "non-zero pauses the log service"},
    {None,   AT(dbHook),             Hook,   1,   0,          0,       0,          nullptr, "takes the finished lines in place of the destinations"},
};
// clang-format on
#undef AT

constexpr u32 fieldCount = sizeof fields / sizeof fields[0];

// The heap copies behind the text fields, by row: only these are given back, for code may point a
// field at a text of its own.
char *ownedTexts[fieldCount];

// The message of the last refusal.
char refusal[256];

const char *refuse(const char *format, ...) __attribute__((format(printf, 1, 2)));
const char *refuse(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(refusal, sizeof refusal, format, arguments);
    va_end(arguments);
    return refusal;
}

u8 *placeOf(const ConfigField &field) {
    return reinterpret_cast<u8 *>(&externGlbCfg) + field.offset;
}

void putNumber(const ConfigField &field, u32 value) {
    const auto store = [&field](auto narrow) { std::memcpy(placeOf(field), &narrow, sizeof narrow); };
    switch (field.kind) {
    case U8:
        return store(static_cast<u8>(value));
    case U16:
        return store(static_cast<u16>(value));
    default:
        return store(value);
    }
}

void putText(const ConfigField &field, const char *text) {
    char *&owned = ownedTexts[&field - fields];
    Free(owned);
    owned = getSring(text);
    std::memcpy(placeOf(field), &owned, sizeof owned);
}

// The number at the front of `text`, which moves behind it. False: no number, or one that leaves
// 32 bits.
bool readNumber(const char *&text, u32 *value) {
    if (text[0] < '0' || text[0] > '9') {
        return false;
    }
    const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    char *end = nullptr;
    errno = 0;
    const unsigned long long number = std::strtoull(text, &end, hexadecimal ? 16 : 10);
    if (errno != 0 || number > maxU32 || (hexadecimal && end < text + 3)) {
        return false;
    }
    text = end;
    *value = static_cast<u32>(number);
    return true;
}

const char *refuseNumber(const ConfigField &field, const char *value) {
    return refuse("%s: \"%.100s\" is not a number from %u to %u", field.name, value, field.least,
                  field.greatest);
}

const char *setNumber(const ConfigField &field, const char *value) {
    u32 number = 0;
    const char *rest = value;
    if (!readNumber(rest, &number) || *rest != 0 || number < field.least || number > field.greatest) {
        return refuseNumber(field, value);
    }
    putNumber(field, number);
    return nullptr;
}

const char *setList(const ConfigField &field, const char *value) {
    u8 list[sizeof externGlbCfg.mmsServiceParam] = {};
    u32 count = 0;
    const char *rest = value;
    while (*rest != 0) {
        u32 number = 0;
        if (count == field.count) {
            return refuse("%s: more than %u numbers", field.name, field.count);
        }
        if (!readNumber(rest, &number) || number < field.least || number > field.greatest) {
            return refuseNumber(field, value);
        }
        list[count++] = static_cast<u8>(number);
        if (*rest == ',' && rest[1] != 0) {
            rest++;
        } else if (*rest != 0) {
            return refuse("%s: \"%.100s\" is not a list of numbers separated by commas", field.name, value);
        }
    }
    if (field.kind == Levels && count != field.count) {
        return refuse("%s: %u numbers in place of %u", field.name, count, field.count);
    }
    if (field.kind == Services && count < field.count) {
        list[count] = 0xFF;
    }
    std::memcpy(placeOf(field), list, field.count);
    return nullptr;
}

const char *setText(const ConfigField &field, const char *value) {
    const std::size_t length = std::strlen(value);
    if (length < field.least || length > field.greatest) {
        return refuse("%s: a text of %zu characters in place of %u to %u", field.name, length, field.least,
                      field.greatest);
    }
    putText(field, value);
    return nullptr;
}

void initGroup(ConfigGroup group) {
    for (const ConfigField &field : fields) {
        if (field.group != group) {
            continue;
        }
        switch (field.kind) {
        case Levels:
            std::memset(placeOf(field), static_cast<int>(field.init), field.count);
            break;
        case Services:
            setList(field, field.text);
            break;
        case Text:
            putText(field, field.text);
            break;
        default:
            putNumber(field, field.init);
        }
    }
}

} // namespace

const ConfigField *configFields(u32 *count) {
    *count = fieldCount;
    return fields;
}

void libSysCfgInit() {
    initGroup(System);
}

void libNetCfgInit() {
    initGroup(Network);
}

void libModelCfgInit() {
    initGroup(Model);
}

void libFileCfgInit() {
    initGroup(Files);
}

void libDebugCfgInit() {
    initGroup(Debug);
}

void externGlbCfgInit() {
    std::memset(static_cast<void *>(&externGlbCfg), 0, sizeof externGlbCfg);
    libSysCfgInit();
    libNetCfgInit();
    libModelCfgInit();
    libFileCfgInit();
    libDebugCfgInit();
}

const char *setConfigField(const char *name, const char *value) {
    const ConfigField *end = fields + fieldCount;
    const ConfigField *field =
        std::find_if(fields, end, [name](const ConfigField &f) { return std::strcmp(f.name, name) == 0; });
    if (field == end) {
        return refuse("%.100s: there is no such field", name);
    }
    switch (field->kind) {
    case Hook:
        return refuse("%s: a hook cannot be set from outside", field->name);
    case Levels:
    case Services:
        return setList(*field, value);
    case Text:
        return setText(*field, value);
    default:
        return setNumber(*field, value);
    }
}

const char *checkConfig() {
    const ExternGlbCfg &c = externGlbCfg;
    // What a task's stack has to hold beside its two buffers and the two work areas of the journals.
    constexpr u32 stackReserve = 0x20000;
    const u64 areas = u64{2} * c.maxMmsPduSize + stackReserve;
    if (areas + c.sendBufSize + c.recvBufSize > c.clientTaskStack) {
        return refuse(
            "clientTaskStack: %u octets do not hold sendBufSize, recvBufSize and twice maxMmsPduSize (%llu)",
            c.clientTaskStack, static_cast<unsigned long long>(areas + c.sendBufSize + c.recvBufSize));
    }
    if (areas > c.logTaskStack) {
        return refuse("logTaskStack: %u octets do not hold twice maxMmsPduSize (%llu)", c.logTaskStack,
                      static_cast<unsigned long long>(areas));
    }
    if (c.minRptBufNum > c.maxRptBufNum) {
        return refuse("minRptBufNum: %u is above maxRptBufNum, %u", c.minRptBufNum, c.maxRptBufNum);
    }
    return nullptr;
}

} // namespace ied
