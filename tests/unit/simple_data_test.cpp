// One leaf at a time: every type's form in MMS Data, what may be written, configured texts, times.
#include "asn1/mmsCodec.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"
#include "tests/support/smallModel.h"

#include <bit>
#include <cstring>
#include <gtest/gtest.h>
#include <map>

using namespace ied;
using namespace ied::test;
using namespace std::string_literals;

namespace {

struct TypeRow {
    const char *leaf;
    const char *value; // of the model's place
    const char *zero;  // of a leaf without a place
    u32 reuseLength;   // octets, or bits, of the part made for reuse; 0 none
    u32 answer;        // of the type description
    i32 size;
};

const TypeRow typeRows[] = {
    {"boolean", "bool 1", "bool 0", 0, TypeSpecification::boolean, 0},
    {"dbpos", "bits 2:80", "bits 2:00", 2, TypeSpecification::bitString, 2},
    {"bits5", "bits 5:A8", "bits 5:00", 5, TypeSpecification::bitString, -5},
    {"trgOps", "bits 6:64", "bits 6:00", 6, TypeSpecification::bitString, -6},
    {"optFlds", "bits 10:7FC0", "bits 10:0000", 10, TypeSpecification::bitString, -10},
    {"quality", "bits 13:4000", "bits 13:0000", 13, TypeSpecification::bitString, -13},
    {"int8", "int -5", "int 0", 0, TypeSpecification::integer, 8},
    {"int16", "int -300", "int 0", 0, TypeSpecification::integer, 16},
    {"int32", "int -70001", "int 0", 0, TypeSpecification::integer, 32},
    {"int8u", "uint 200", "uint 0", 0, TypeSpecification::unsignedInt, 8},
    {"int16u", "uint 60000", "uint 0", 0, TypeSpecification::unsignedInt, 16},
    {"int32u", "uint 4000000000", "uint 0", 0, TypeSpecification::unsignedInt, 32},
    {"float32", "float 083F800000", "float 0800000000", 5, TypeSpecification::floatingPoint, 0},
    {"octet6", "octets 7369786F6374", "octets 000000000000", 6, TypeSpecification::octetString, 6},
    {"octet8", "octets 0001020304050607", "octets 0000000000000000", 8, TypeSpecification::octetString, 8},
    {"octet64", "octets 6F6374657473", "octets ", 65, TypeSpecification::octetString, -64},
    {"visString32", "visible thirty-two", "visible ", 33, TypeSpecification::visibleString, -32},
    {"visString64", "visible sixty-four", "visible ", 65, TypeSpecification::visibleString, -64},
    {"visString65", "visible sixty-five", "visible ", 66, TypeSpecification::visibleString, -65},
    {"visString255", "visible long", "visible ", 256, TypeSpecification::visibleString, -255},
    {"unicode255", "mms \xC3\xA9t\xC3\xA9", "mms ", 1024, TypeSpecification::mMSString, -255},
    {"timestamp", "utc 000000648000000A", "utc 0000000000000000", 8, TypeSpecification::utcTime, 0},
    {"entryTime", "btime 000004E20001", "btime 000000000000", 6, TypeSpecification::binaryTime, 1},
    {"enumeration", "int -3", "int 0", 0, TypeSpecification::integer, 8},
};

class EveryLeaf : public testing::TestWithParam<TypeRow> {
  protected:
    GenNode *all(const SmallModel &model) { return model.node("Tiny/GGIO1$ST$All$"s + GetParam().leaf); }
    GenNode *none(const SmallModel &model) { return model.node("Tiny/GGIO1$ST$None$"s + GetParam().leaf); }
};

TEST_P(EveryLeaf, ReadsItsPlaceAndWithoutOneItsZero) {
    const SmallModel model;
    HeapData value, zero, byType;
    getSimpleData(&value.data, all(model), true);
    EXPECT_EQ(show(&value.data), GetParam().value);
    getSimpleData(&zero.data, none(model), true);
    EXPECT_EQ(show(&zero.data), GetParam().zero);
    getDataFromType(&byType.data, all(model)->nodeType, all(model)->data);
    EXPECT_EQ(show(&byType.data), GetParam().value);
}

TEST_P(EveryLeaf, ReusesTheSamePartsForEachReading) {
    const SmallModel model;
    MemoryPool pool = {};
    mpAlloc(4096, &pool);
    Data data = {};
    allocSimpleDataInMp(&data, all(model), &pool);
    if (GetParam().reuseLength != 0) {
        EXPECT_EQ(data.choiceId == Data::bitString ? data.bits->bitLen : data.octs->octetLen,
                  GetParam().reuseLength);
    }
    const u32 used = pool.used;
    const auto *parts = data.octs;
    for (int i = 0; i < 2; ++i) {
        getSimpleData(&data, none(model), false);
        EXPECT_EQ(show(&data), GetParam().zero);
        getSimpleData(&data, all(model), false);
        EXPECT_EQ(show(&data), GetParam().value) << "a longer text after a shorter one";
    }
    EXPECT_EQ(pool.used, used);
    if (GetParam().reuseLength != 0) {
        EXPECT_EQ(data.octs, parts);
    }
    mpFree(&pool);
}

TEST_P(EveryLeaf, IsCopiedWhole) {
    const SmallModel model;
    HeapData value, copy;
    getSimpleData(&value.data, all(model), true);
    copySimpleData(&copy.data, &value.data, true);
    EXPECT_EQ(show(&copy.data), GetParam().value);
    getSimpleData(&value.data, none(model), false);
    copySimpleData(&value.data, &copy.data, false);
    EXPECT_EQ(show(&value.data), GetParam().value);
}

TEST_P(EveryLeaf, DescribesItsType) {
    const SmallModel model;
    TypeSpecification type = {};
    getSimpleType(&type, all(model));
    EXPECT_EQ(type.choiceId, GetParam().answer);
    if (type.choiceId == TypeSpecification::floatingPoint) {
        EXPECT_EQ(type.floatingPoint_->format_width, 32);
        EXPECT_EQ(type.floatingPoint_->exponent_width, 8);
    } else if (type.choiceId == TypeSpecification::binaryTime) {
        EXPECT_EQ(type.withDate, 1);
    } else {
        EXPECT_EQ(type.size, GetParam().size);
    }
    FreeTypeSpecification(&type);
}

INSTANTIATE_TEST_SUITE_P(Types, EveryLeaf, testing::ValuesIn(typeRows),
                         [](const auto &row) { return std::string(row.param.leaf); });

TEST(SimpleData, ATypeOutsideTheTableReadsAsFalse) {
    SmallModel model;
    for (const u8 type : {u8{TypeInner}, u8{TypeArrayVec}, u8{TypeArray}, u8{TypeFailure}, u8{0}}) {
        Data data = {};
        const GenNode *leaf = model.leaf(model.node("Tiny/GGIO1$ST$None"), "odd", type, &model.ind);
        getSimpleData(&data, leaf, true);
        EXPECT_EQ(show(&data), "bool 0");
        TypeSpecification description = {};
        getSimpleType(&description, leaf);
        EXPECT_EQ(description.choiceId, TypeSpecification::utcTime);
        EXPECT_FALSE(checkSimpleData(&data, leaf));
    }
}

TEST(SimpleData, CheckIsOfVariableLengthInControls) {
    const SmallModel model;
    TypeSpecification type = {};
    getSimpleType(&type, model.node("Tiny/GGIO1$CO$Ctl$Oper$Check"));
    EXPECT_EQ(type.size, -2);
}

// ---------------------------------------------------------------------------------- writing

// A value of every Data kind, with the kinds' unusual forms among them.
std::map<std::string, Data *> everyKind() {
    return {{"array", heapList(Data::array, {})},
            {"structure", heapList(Data::structure, {heapNumber(Data::boolean, 1)})},
            {"boolean 0", heapNumber(Data::boolean, 0)},
            {"boolean 1", heapNumber(Data::boolean, 1)},
            {"boolean 2", heapNumber(Data::boolean, 2)},
            {"bits 0", heapBits(0, "")},
            {"bits 2", heapBits(2, "\x40")},
            {"bits 5", heapBits(5, "\xF8")},
            {"bits 6", heapBits(6, "\xFC")},
            {"bits 10", heapBits(10, "\x12\x40")},
            {"bits 13", heapBits(13, "\x20\x08")},
            {"bits 99", heapBits(99, std::string(13, '\xAA'))},
            {"integer", heapNumber(Data::integer, static_cast<u32>(-2))},
            {"unsigned", heapNumber(Data::unsignedInt, 3000000000U)},
            {"float", heapData(Data::floatingPoint, "\x08\x40\x48\xF5\xC3")},
            {"float of 0 octets", heapData(Data::floatingPoint, "")},
            {"float of 9 octets", heapData(Data::floatingPoint, std::string(9, '\x11'))},
            {"real", heapNumber(Data::real, 0)},
            {"octets 0", heapData(Data::octetString, "")},
            {"octets 6", heapData(Data::octetString, "abcdef")},
            {"octets 8", heapData(Data::octetString, "abcdefgh")},
            {"octets 64", heapData(Data::octetString, std::string(64, 'o'))},
            {"octets 65", heapData(Data::octetString, std::string(65, 'o'))},
            {"visible 0", heapData(Data::visibleString, "")},
            {"visible 32", heapData(Data::visibleString, std::string(32, 'v'))},
            {"visible 33", heapData(Data::visibleString, std::string(33, 'v'))},
            {"visible 64", heapData(Data::visibleString, std::string(64, 'v'))},
            {"visible 65", heapData(Data::visibleString, std::string(65, 'v'))},
            {"visible 255", heapData(Data::visibleString, std::string(255, 'v'))},
            {"visible 256", heapData(Data::visibleString, std::string(256, 'v'))},
            {"binary time", heapData(Data::binaryTime, "abcdef")},
            {"bcd", heapNumber(Data::bcd, 7)},
            {"mms string", heapData(Data::mMSString, "text")},
            {"utc time", heapData(Data::utcTime, "\0\0\0\1\x80\0\0\x0A"s)},
            {"utc time of 0 octets", heapData(Data::utcTime, "")}};
}

// Values that a type takes: by checkSimpleData, and by setSimpleData alone. Every other is refused.
struct Accepted {
    const char *leaf;
    std::vector<std::string> checked;
    std::vector<std::string> onlySet;
};

const std::vector<std::string> anyBits = {"bits 0",  "bits 2",  "bits 5", "bits 6",
                                          "bits 10", "bits 13", "bits 99"};
const std::vector<std::string> anyFloat = {"float", "float of 0 octets", "float of 9 octets"};
const std::vector<std::string> anyUtc = {"utc time", "utc time of 0 octets"};

const Accepted acceptedRows[] = {
    {"boolean", {"boolean 0", "boolean 1", "boolean 2"}, {}},
    {"dbpos", {"bits 2"}, anyBits},
    {"bits5", {"bits 5"}, anyBits},
    {"trgOps", {"bits 6"}, anyBits},
    {"optFlds", {"bits 10"}, anyBits},
    {"quality", {"bits 13"}, anyBits},
    {"int8", {"integer"}, {}},
    {"int16", {"integer"}, {}},
    {"int32", {"integer"}, {}},
    {"int8u", {"unsigned"}, {}},
    {"int16u", {"unsigned"}, {}},
    {"int32u", {"unsigned"}, {}},
    {"float32", anyFloat, {}},
    {"octet6", {"octets 0", "octets 6"}, {}},
    {"octet8", {"octets 0", "octets 6", "octets 8"}, {}},
    {"octet64", {"octets 0", "octets 6", "octets 8", "octets 64"}, {}},
    {"visString32", {"visible 0", "visible 32"}, {}},
    {"visString64", {"visible 0", "visible 32", "visible 33", "visible 64"}, {}},
    {"visString65", {"visible 0", "visible 32", "visible 33", "visible 64", "visible 65"}, {}},
    {"visString255",
     {"visible 0", "visible 32", "visible 33", "visible 64", "visible 65", "visible 255"},
     {}},
    {"unicode255", {}, {}},
    {"timestamp", anyUtc, {}},
    {"entryTime", {}, {}},
    {"enumeration", {"integer"}, {}},
};

bool contains(const std::vector<std::string> &names, const std::string &name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

TEST(SimpleData, AValueOfEveryKindMeetsALeafOfEveryType) {
    for (const Accepted &row : acceptedRows) {
        for (const auto &[name, data] : everyKind()) {
            const SmallModel model;
            GenNode *leaf = model.node("Tiny/GGIO1$ST$All$"s + row.leaf);
            EXPECT_EQ(checkSimpleData(data, leaf), contains(row.checked, name)) << row.leaf << " " << name;
            HeapData before, after;
            getSimpleData(&before.data, leaf, true);
            const LogLines log;
            i8 error = -1;
            const bool taken =
                (contains(row.checked, name) || contains(row.onlySet, name)) && name != "boolean 2";
            EXPECT_EQ(setSimpleData(data, leaf, &error), taken) << row.leaf << " " << name;
            EXPECT_EQ(error, taken ? -1 : 7);
            EXPECT_EQ(log.count("OTH", "ERR", "setSimpleData", "TYPE_INCONSISTENT1"), taken ? 0 : 1);
            getSimpleData(&after.data, leaf, true);
            if (!taken) {
                EXPECT_EQ(show(&after.data), show(&before.data))
                    << "a refused value leaves the leaf as it was";
            }
            freeHeap(data);
        }
    }
}

TEST(SimpleData, StoresWhatWasWritten) {
    const std::tuple<const char *, const char *, const char *> rows[] = {
        {"dbpos", "bits 2", "bits 2:40"},
        {"bits5", "bits 5", "bits 5:F8"},
        {"optFlds", "bits 10", "bits 10:1240"},
        {"quality", "bits 13", "bits 13:2008"},
        {"quality", "bits 5", "bits 13:F800"},
        {"int8", "integer", "int -2"},
        {"int8u", "unsigned", "uint 0"},
        {"int16u", "unsigned", "uint 24064"},
        {"int32u", "unsigned", "uint 3000000000"},
        {"float32", "float", "float 084048F5C3"},
        {"float32", "float of 0 octets", "float 083F800000"},
        {"octet8", "octets 8", "octets 6162636465666768"},
        {"visString32", "visible 0", "visible "},
        {"timestamp", "utc time", "utc 000000018000000A"},
        {"timestamp", "utc time of 0 octets", "utc 000000648000000A"}};
    for (const auto &[leafName, kind, want] : rows) {
        const SmallModel model;
        GenNode *leaf = model.node("Tiny/GGIO1$ST$All$"s + leafName);
        auto values = everyKind();
        i8 error = -1;
        EXPECT_TRUE(setSimpleData(values.at(kind), leaf, &error)) << leafName;
        HeapData after;
        getSimpleData(&after.data, leaf, true);
        EXPECT_EQ(show(&after.data), want);
        for (const auto &[name, data] : values) {
            freeHeap(data);
        }
    }
}

TEST(SimpleData, NothingIsWrittenToALeafWithoutAPlace) {
    const SmallModel model;
    const Data yes = {.choiceId = Data::boolean, .list = reinterpret_cast<AsnList *>(1)};
    i8 error = -1;
    EXPECT_FALSE(setSimpleData(&yes, model.node("Tiny/GGIO1$ST$None$boolean"), &error));
    EXPECT_EQ(error, 7);
}

TEST(SimpleData, EnumsOfWholeNumberClassesAreHeldIn32Bits) {
    const SmallModel model;
    Data *value = heapNumber(Data::integer, 70000);
    i8 error = -1;
    EXPECT_TRUE(setSimpleData(value, model.node("Tiny/GGIO1$ST$Word$stVal"), &error));
    EXPECT_EQ(model.enum32, 70000);
    EXPECT_TRUE(setSimpleData(value, model.node("Tiny/GGIO1$ST$All$enumeration"), &error));
    EXPECT_EQ(model.every.enumeration, 112);
    freeHeap(value);
}

// --------------------------------------------------------------------------- configured texts

TEST(Configured, NumbersAreReadAsWhereALongHas32Bits) {
    const std::tuple<const char *, const char *, const char *> rows[] = {
        {"boolean", "1", "bool 1"},
        {"dbpos", "2", "bits 2:80"},
        {"quality", "16384", "bits 13:4000"},
        {"int8", "-5", "int -5"},
        {"int8", "300", "int 44"},
        {"int16", " +7x", "int 7"},
        {"int32", "-70001", "int -70001"},
        {"int32u", "4294967295", "uint 4294967295"},
        {"int32u", "4294967296", "uint 4294967295"},
        {"int32", "99999999999999999999", "int -1"},
        {"int32u", "-99999999999", "uint 4294967295"},
        {"int8u", "text", "uint 0"},
        {"int8u", "", "uint 0"},
        {"float32", "3.25", "float 0840500000"},
        {"float32", "1e999", "float 087F800000"},
        {"enumeration", "-3", "int -3"},
        {"octet6", "abc", "octets 616263000000"},
        {"octet8", "abcdefghij", "octets 6162636465666768"},
        {"octet64", "octets", "octets 6F6374657473"},
        {"visString32", "a text", "visible a text"},
        {"unicode255", "\xC3\xA9", "mms \xC3\xA9"}};
    for (const auto &[leafName, text, want] : rows) {
        for (const char *object : {"None", "All"}) { // a place of its own, and one that is there
            const SmallModel model;
            GenNode *leaf = model.node("Tiny/GGIO1$ST$"s + object + "$" + leafName);
            const std::string kept = text;
            EXPECT_TRUE(setNodeConfig(leaf, kept.c_str()));
            HeapData data;
            getSimpleData(&data.data, leaf, true);
            if (object == "None"s || leafName != "octet6"s) { // what follows a short text stays
                EXPECT_EQ(show(&data.data), want) << leafName << " " << text;
            }
            if (leaf->data != kept.c_str() && object == "None"s) {
                Free(leaf->data);
            }
        }
    }
}

TEST(Configured, ATextIsThePlaceUntilAClientWritesTheLeaf) {
    const SmallModel model;
    GenNode *leaf = model.node("Tiny/GGIO1$ST$None$visString64");
    char text[] = "short";
    leaf->value = text;
    EXPECT_TRUE(setNodeConfig(leaf, text));
    EXPECT_EQ(leaf->data, text);
    Data *longer = heapData(Data::visibleString, std::string(64, 'x'));
    i8 error = -1;
    EXPECT_TRUE(setSimpleData(longer, leaf, &error));
    EXPECT_STREQ(text, "short") << "the configuration's own octets";
    HeapData data;
    getSimpleData(&data.data, leaf, true);
    EXPECT_EQ(show(&data.data), "visible " + std::string(64, 'x'));
    Free(leaf->data);
    freeHeap(longer);
}

TEST(Configured, ATextThatIsTooLongIsCutBetweenCharacters) {
    const SmallModel model;
    GenNode *leaf = model.node("Tiny/GGIO1$ST$None$unicode255");
    std::string text;
    for (int i = 0; i < 100; ++i) {
        text += "\xE7\x94\xB5"; // one character of three octets
    }
    for (const std::size_t before : {0U, 1U, 2U}) { // 255 octets end behind a character, or within one
        text.insert(0, before == 0 ? 0 : 1, 'x');
        char place[256] = {};
        leaf->data = place;
        EXPECT_TRUE(setNodeConfig(leaf, text.c_str()));
        EXPECT_EQ(std::string(place), text.substr(0, before == 0 ? 255 : 252 + before)) << before;
    }
}

TEST(Configured, TimesAndStructuresTakeNoText) {
    SmallModel model;
    EXPECT_FALSE(setNodeConfig(model.node("Tiny/GGIO1$ST$None$timestamp"), "1"));
    EXPECT_FALSE(setNodeConfig(model.node("Tiny/GGIO1$ST$None$entryTime"), "1"));
    EXPECT_FALSE(setNodeConfig(model.node("Meas/MHAI1$MX$HPhV$phsAHar"), "1"));
    EXPECT_FALSE(setNodeConfig(model.node("Tiny/GGIO1$ST$None$int8"), nullptr));
}

// ---------------------------------------------------------------------------------- encodings

TEST(Encodings, FloatsKeepEveryBit) {
    externGlbCfgInit();
    for (const u32 bits :
         {0U, 0x80000000U, 0x7FC00001U, 0x7FA00001U, 0xFF800000U, 0x00000001U, 0x3F800000U}) {
        AsnOcts octs = {};
        fp2Octs(&octs, std::bit_cast<f32>(bits), true);
        f32 back = 0;
        octs2Fp(&back, &octs);
        EXPECT_EQ(std::bit_cast<u32>(back), bits);
        Free(octs.octs);
    }
    externGlbCfg.hostLittleEndian = 0;
    AsnOcts octs = {};
    fp2Octs(&octs, 1.0F, true);
    EXPECT_EQ(octs.octs[4], 0x3F) << "as the octets lie";
    Free(octs.octs);
}

TEST(Encodings, UtcTimeCarriesAndStaysInRange) {
    const std::pair<TimeStamp, std::string> encoded[] = {
        {{1, 0, 10}, "utc 000000010000000A"},     {{1, 500, 10}, "utc 000000018000000A"},
        {{1, 250, 0}, "utc 0000000140000000"},    {{1, 1500, 0}, "utc 0000000280000000"},
        {{~0U, 1000, 0}, "utc FFFFFFFFFFBE7700"}, {{1, ~0U, 0}, "utc 004189384B851E00"}};
    for (const auto &[time, want] : encoded) {
        HeapData data;
        getDataFromType(&data.data, TypeTimestamp, &time);
        EXPECT_EQ(show(&data.data), want);
    }
    const std::tuple<std::string, u32, u32> decoded[] = {
        {"\0\0\0\1\x80\0\0\0"s, 1, 500},   {"\0\0\0\1\0\0\0\0"s, 1, 0},
        {"\0\0\0\1\xFF\xFF\xFF\0"s, 2, 0}, {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\0"s, ~0U, 999},
        {"\0\0\0\1\0\x20\xC5\0"s, 1, 1},   {"\0\0\0\1\0\x20\xC4\0"s, 1, 0}};
    for (const auto &[text, sec, ms] : decoded) {
        const AsnOcts octs = octsOver(text);
        TimeStamp time = {};
        octs2Timestamp(&time, &octs);
        EXPECT_EQ(time.sec, sec);
        EXPECT_EQ(time.ms, ms);
    }
    for (u32 ms = 0; ms < 1000; ++ms) {
        const TimeStamp time = {7, ms, 10};
        HeapData data;
        TimeStamp back = {};
        getDataFromType(&data.data, TypeTimestamp, &time);
        octs2Timestamp(&back, data.data.octs);
        EXPECT_EQ(back.sec, 7U);
        EXPECT_EQ(back.ms, ms);
    }
}

TEST(Encodings, EntryTimeCountsFrom1984) {
    constexpr u32 day1984 = 441763200;
    const std::pair<TimeStamp, std::string> encoded[] = {
        {{0, 999, 10}, "btime 000000000000"},
        {{day1984 + 86399, 999, 10}, "btime 000000000000"},
        {{day1984 + 86400, 0, 10}, "btime 000000000001"},
        {{day1984 + 86400 + 1, 250, 10}, "btime 000004E20001"},
        {{day1984 + 86400 * 2 - 1, 999, 10}, "btime 05265BFF0001"},
        {{~0U, ~0U, 10}, "btime 016377FFAE35"}};
    for (const auto &[time, want] : encoded) {
        HeapData data;
        getDataFromType(&data.data, TypeEntryTime, &time);
        EXPECT_EQ(show(&data.data), want);
    }
    TimeStamp time = {};
    const std::string first("\0\0\x04\xE2\0\1", 6), last("\xFF\xFF\xFF\xFF\xFF\xFF", 6),
        shortOne("\0\0\0", 3);
    const AsnOcts firstOcts = octsOver(first), lastOcts = octsOver(last), shortOcts = octsOver(shortOne);
    EXPECT_TRUE(bittime2Timestamp(&firstOcts, &time));
    EXPECT_EQ(time.sec, day1984 + 86400 + 1);
    EXPECT_EQ(time.ms, 250U);
    EXPECT_EQ(time.tq, 10);
    EXPECT_TRUE(bittime2Timestamp(&lastOcts, &time));
    EXPECT_EQ(time.sec, ~0U) << "days that no 32-bit second reaches";
    EXPECT_FALSE(bittime2Timestamp(&shortOcts, &time));
    EXPECT_FALSE(bittime2Timestamp(nullptr, &time));
}

TEST(Encodings, FloatsAreEqualWithinUnitsInTheLastPlace) {
    const auto f = [](u32 bits) { return std::bit_cast<f32>(bits); };
    EXPECT_TRUE(fp32Cmp(f(0x3F800000), f(0x3F80000A), 10));
    EXPECT_FALSE(fp32Cmp(f(0x3F800000), f(0x3F80000B), 10));
    EXPECT_FALSE(fp32Cmp(f(0x00000000), f(0x80000000), 10)) << "the two zeros differ in sign";
}

} // namespace
