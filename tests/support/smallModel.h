// A small information model made by hand, one leaf of every type and every array form among it, and
// the lines that the debug log would write. Names follow IEC 61850-7-4.
#pragma once

#include "basicInterface/cdcRecord.h"
#include "basicInterface/nodeTree.h"
#include "proto-process/c/dataSet.h"

#include <memory>
#include <string>
#include <vector>

namespace ied::test {

// A place of every stored form; texts have room for their end.
struct EveryType {
    u8 boolean = 1;
    u8 dbpos = 2;
    u8 bits5 = 0xA8;
    u8 trgOps = 0x64;
    u16 optFlds = 0x7FC0;
    u16 quality = 0x4000;
    i8 int8 = -5;
    i16 int16 = -300;
    i32 int32 = -70001;
    u8 int8u = 200;
    u16 int16u = 60000;
    u32 int32u = 4000000000U;
    f32 float32 = 1.0F;
    char octet6[7] = {'s', 'i', 'x', 'o', 'c', 't', 0};
    char octet8[9] = {0, 1, 2, 3, 4, 5, 6, 7, 0};
    char octet64[65] = "octets";
    char visString32[33] = "thirty-two";
    char visString64[65] = "sixty-four";
    char visString65[66] = "sixty-five";
    char visString255[256] = "long";
    char unicode255[1024] = "\xC3\xA9t\xC3\xA9";
    TimeStamp timestamp = {100, 500, 10};
    TimeStamp entryTime = {441763200 + 86400 + 1, 250, 10};
    i8 enumeration = -3;
};

struct SmallModel {
    SmallModel();
    ~SmallModel();
    SmallModel(const SmallModel &) = delete;
    SmallModel &operator=(const SmallModel &) = delete;

    // The node of a reference; the test ends if there is none.
    GenNode *node(const std::string &reference) const;
    GenNode *add(GenNode *parent, const char *name, u8 level, u8 type, void *data = nullptr);
    GenNode *leaf(GenNode *parent, const char *name, u8 type, void *data = nullptr);
    // Makes the data set "LD/item" of those members; freed with the model.
    DataSet *dataSet(const std::string &reference, const std::vector<std::string> &members);

    EveryType every;
    i32 enum32 = -3;
    SPS ind = {1, 0x4000, {100, 500, 10}, 0};
    MV power = {};
    HWYE harmonics = {};
    HWYE unboundArrays = {}; // numHar without any array
    HST histogram = {};
    ING integerSetting = {{4, 0, 0}, 0, 10, 2, 0};
    ENG enumSetting = {{1, 0, 0}, 0, 5, 1, 0};
    ASG floatSetting = {{1.5F, 0, 0}, {}, 0, 100, 0.5F, 0};
    SPG curve = {{9, 0, 0}, 0};
    Vector phaseA[5] = {{1, 10}, {2, 20}, {3, 30}, {4, 40}, {5, 50}};
    Vector phaseB[5] = {{1.5F, 0}, {2.5F, 0}, {3.5F, 0}, {4.5F, 0}, {5.5F, 0}};
    i32 counts[3] = {-1, 0, 100000};
    HstCell cells[3] = {{0, 1, 10, 11}, {1, 2, 20, 21}, {2, 3, 30, 31}};

  private:
    void buildMeasurements(GenNode *ld);
    void buildHistogram(GenNode *ln);
    void buildLoose(GenNode *ld);
    void buildSettings(GenNode *ld);
    std::vector<std::unique_ptr<GenNode>> nodes;
};

// The leaves of SmallModel's "Tiny/GGIO1$ST$All": of TypeBoolean and the types behind it, one each.
extern const std::vector<const char *> typedLeaves;

// A domain-specific name over octets of its own, zero octets and all.
struct Name {
    Name(std::string domainText, std::string itemText);
    Name(const Name &) = delete;
    Name &operator=(const Name &) = delete;
    operator const ObjectName *() const { return &name; }

    std::string domain, item;
    ObjectNameSeq parts;
    ObjectName name;
};

// A listOfVariable of names by reference "LD/item"; a text without "/" is a variable that has no name.
struct VariableList {
    explicit VariableList(const std::vector<std::string> &references);
    ~VariableList();
    VariableList(const VariableList &) = delete;
    VariableList &operator=(const VariableList &) = delete;
    VariableAccessSpecification variableAccess;
    AsnList *list;
};

// A string over the octets of `text`, which has to outlive it.
AsnOcts octsOver(const std::string &text);

// A Data as text: "bool 1", "int -5", "uint 7", "bits 2:80", "float 083F800000", "octets 00FF",
// "visible text", "mms text", "btime ...", "utc ...", "struct(a, b)", "array(a, b)",
// "vectors 2 mag(.., ..) ang(-)"; "nothing" for what has no parts.
std::string show(const Data *data);

// A value from the heap, freed with what hangs from it.
struct HeapData {
    Data data{};
    HeapData() = default;
    ~HeapData();
    HeapData(const HeapData &) = delete;
    HeapData &operator=(const HeapData &) = delete;
};

// Builders of values on the heap, as a decoder makes them.
Data *heapData(u32 kind, const std::string &octets); // floats, strings and times
Data *heapBits(u32 bitLen, const std::string &octets);
Data *heapNumber(u32 kind, u32 value); // boolean, integer, unsigned
Data *heapList(u32 kind, const std::vector<Data *> &members);
void freeHeap(Data *data);

// Catches the lines of the debug log, every level, while it lives. One at a time.
struct LogLines {
    LogLines();
    ~LogLines();
    // "[category][level] ... text": how many lines have that category, level, function and text.
    static int count(const std::string &category, const std::string &level, const std::string &function,
                     const std::string &text);
    static std::vector<std::string> lines();
};

} // namespace ied::test
