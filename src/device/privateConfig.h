// The private settings of the SCL file that this server takes ("ORV_LocalConf").
#pragma once

#include "model-gen/c/list.h"
#include "platform/types.h"

namespace ied {

// Forms of the magnitude of a voltage event: a ratio to the rated voltage, or volts.
enum VvaFormat : u8 {
    VvaRatio,
    VvaVolts
};
extern u32 localConfig; // VvaFormat, or another number that the file gives

// Kinds of private sections.
enum PrivateType : u8 {
    PrivateIedResources,
    PrivateLocalConf,
    PrivateIniConf
};

// One setting: where its value goes and how its text is read.
struct LocalConfRow {
    const char *key; // empty in the last row
    void *target;
    u8 type; // 0 u32 from a decimal number, 1 f32, 2 text of at most 30 characters
};
extern const LocalConfRow localConfTable[];

// Value text of the first entry (scl::OrvConfig_t) whose key is exactly `key`; null without one.
const char *searchKey(const ListHead *privateSection, const char *key);

// Takes the settings of a table from a section. A key that is not there is logged and keeps its
// default. 0, or -1 after a message for an unknown row type.
int localConfLoad(const LocalConfRow *table, const ListHead *privateSection);
// Takes the settings of one kind of section. 0, or -1 for an unknown kind or row type.
int privateConfigProcess(u8 privateType);
// Takes the local configuration. 0, or -1 after a message.
int localConfInit();

} // namespace ied
