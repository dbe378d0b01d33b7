// Whole subtrees: reading, reuse, copies, the checks of a write, setting ranges.
#include "asn1/mmsCodec.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/externGlbCfg.h"
#include "tests/support/smallModel.h"

#include <atomic>
#include <bit>
#include <gtest/gtest.h>
#include <thread>

using namespace ied;
using namespace ied::test;

namespace {

constexpr AccessSel wholeArrays = {
    .kind = AccessSel::allElements, .arrayNode = nullptr, .index = 0, .firstIndex = 0, .count = 0};

std::string read(GenNode *node, const AccessSel *sel = &wholeArrays) {
    HeapData data;
    getNodeData(&data.data, node, sel);
    return show(&data.data);
}

constexpr const char *indication = "struct(bool 1, bits 13:4000, utc 000000648000000A)";
constexpr const char *harmonicObject =
    "struct(vectors 5 mag(083F800000, 0840000000, 0840400000, 0840800000, 0840A00000) "
    "ang(0841200000, 0841A00000, 0841F00000, 0842200000, 0842480000), "
    "vectors 5 mag(083FC00000, 0840200000, 0840600000, 0840900000, 0840B00000) ang(-), bits 13:0000)";

TEST(ComplexData, AStructureHasItsMembersInTheOrderOfTheChildren) {
    const SmallModel model;
    EXPECT_EQ(read(model.node("Tiny/GGIO1$ST$Ind1")), indication);
    EXPECT_EQ(read(model.node("Tiny/GGIO1$ST$Ind1$stVal")), "bool 1");
    EXPECT_EQ(read(model.node("Tiny/GGIO1$ST$Deep")),
              "struct(struct(struct(bool 1, struct(int -5))), uint 60000)");
    EXPECT_EQ(read(model.node("Meas/MHAI1$MX$HPhV")), harmonicObject);
}

TEST(ComplexData, ArraysNeedASelectionAndMayBeEmpty) {
    const SmallModel model;
    EXPECT_EQ(read(model.node("Meas/MSTA1$ST$Hst"), nullptr), "struct(bool 0, bits 13:0000)");
    EXPECT_EQ(read(model.node("Meas/MHAI1$MX$HPhV"), nullptr), "struct(bool 0, bool 0, bits 13:0000)");
    EXPECT_EQ(read(model.node("Meas/MHAI1$MX$HA")),
              "struct(vectors 2 mag(0800000000, 0800000000) ang(-), array())")
        << "an array without memory, and one without a place";
    GenNode *counts = model.node("Meas/MSTA1$ST$Hst$hstVal");
    counts->origType = TypeVisString64;
    EXPECT_EQ(read(counts), "array(array(), array(), array())") << "elements of a type that no array has";
    model.node("Meas/MSTA1$ST$Hst")->data = nullptr;
    EXPECT_EQ(read(counts), "array()");
    model.node("Meas/MHAI1$MX$HPhV")->data = nullptr;
    EXPECT_EQ(read(model.node("Meas/MHAI1$MX$HPhV$phsBHar")), "vectors 0 mag() ang(-)");
}

TEST(ComplexData, ArrayElementsHaveTheWidthOfTheirType) {
    const SmallModel model;
    GenNode *array = model.node("Meas/MSTA1$ST$Hst$hstVal");
    // Read by their own width, the elements are those octets of the words -1, 0 and 100000.
    const std::pair<u8, const char *> rows[] = {
        {TypeBoolean, "array(bool 255, bool 255, bool 255)"},
        {TypeInt8, "array(int -1, int -1, int -1)"},
        {TypeInt8U, "array(uint 255, uint 255, uint 255)"},
        {TypeInt16, "array(int -1, int -1, int 0)"},
        {TypeInt16U, "array(uint 65535, uint 65535, uint 0)"},
        {TypeEnum, "array(int -1, int -1, int -1)"},
        {TypeInt32U, "array(uint 4294967295, uint 0, uint 100000)"},
        {TypeFloat32, "array(float 08FFFFFFFF, float 0800000000, float 08000186A0)"}};
    for (const auto &[type, want] : rows) {
        array->origType = type;
        EXPECT_EQ(read(array), want);
    }
}

TEST(ComplexData, AValueInAPoolIsRefreshedInPlace) {
    for (const char *reference : {"Meas/MHAI1$MX$HPhV", "Meas/MSTA1$ST$Hst", "Meas/MSTA1$CF$Hst",
                                  "Tiny/GGIO1$ST$All", "Tiny/GGIO1$ST$Deep"}) {
        SmallModel model;
        GenNode *node = model.node(reference);
        MemoryPool pool = {};
        mpAlloc(100000, &pool);
        Data data = {};
        allocNodeDataInMp(&data, node, &pool);
        const u32 used = pool.used;
        const std::string before = read(node);
        copyNodeData(&data, node);
        EXPECT_EQ(show(&data), before);
        model.phaseA[4].ang = -1;
        model.phaseB[0].mag = -2;
        model.counts[1] = 77;
        model.cells[2].yEnd = 99;
        model.every.int8 = 5;
        copyNodeData(&data, node);
        EXPECT_EQ(show(&data), read(node));
        EXPECT_NE(show(&data), before) << reference;
        EXPECT_EQ(pool.used, used);
        mpFree(&pool);
    }
}

TEST(ComplexData, CopiesStandOnTheirOwn) {
    const SmallModel model;
    for (const char *reference : {"Meas/MHAI1", "Meas/MHAI1$MX$HPhV", "Meas/MSTA1", "Tiny/GGIO1$ST$All"}) {
        GenNode *node = model.node(reference);
        HeapData source, copy;
        getNodeData(&source.data, node, &wholeArrays);
        copyDataNew(&copy.data, &source.data, node);
        EXPECT_EQ(show(&copy.data), show(&source.data));
        if (reference == std::string("Meas/MHAI1")) { // keeps elements of an array that a Read shows empty
            continue;
        }
        // Into memory that was made for the node, as a report keeps it.
        MemoryPool pool = {};
        mpAlloc(100000, &pool);
        Data kept = {};
        allocNodeDataInMp(&kept, node, &pool);
        const u32 used = pool.used;
        copyData(&kept, &source.data, node);
        EXPECT_EQ(show(&kept), show(&source.data));
        EXPECT_EQ(pool.used, used);
        mpFree(&pool);
    }
}

TEST(ComplexData, AStuckLockIsWaitedForAndReported) {
    const SmallModel model;
    const LogLines log;
    externGlbCfg.modelLockTimeout = 1;
    semModelData = semRWCreate(semQPriority, 2);
    semWTake(semModelData, WAIT_FOREVER);
    std::atomic<bool> done = false;
    std::thread reader([&] {
        EXPECT_EQ(read(model.node("Tiny/GGIO1$ST$Ind1$stVal")), "bool 1");
        done = true;
    });
    while (log.count("MOD", "ERR", "getNodeData", "Fail to take semModelData R!") == 0) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(done);
    semGive(semModelData);
    reader.join();
    semDelete(semModelData);
    semModelData = nullptr;
}

TEST(ComplexData, ReadersAndTheRefreshShareEveryPlace) {
    SmallModel model;
    std::atomic<bool> stop = false;
    std::thread refresh([&] {
        Data *text = heapData(Data::visibleString, std::string(60, 't'));
        for (u32 i = 0; !stop; ++i) {
            storeShared(model.ind.q, static_cast<u16>(i));
            storeShared(model.ind.t, {i, i % 1000, 10});
            storeShared(model.phaseA[i % 5].mag, static_cast<f32>(i));
            storeShared(model.counts[i % 3], static_cast<i32>(i));
            publish(model.node("Tiny/GGIO1$ST$Ind1$stVal")->data, i % 2 == 0 ? &model.ind.stVal : nullptr);
            i8 error = -1;
            setSimpleData(text, model.node("Tiny/GGIO1$ST$All$visString64"), &error);
        }
        freeHeap(text);
    });
    MemoryPool pool = {};
    mpAlloc(100000, &pool);
    Data kept = {};
    allocNodeDataInMp(&kept, model.node("Meas/MHAI1$MX$HPhV"), &pool);
    for (int i = 0; i < 300; ++i) {
        for (const char *reference : {"Tiny/GGIO1$ST", "Meas/MHAI1", "Meas/MSTA1"}) {
            EXPECT_FALSE(read(model.node(reference)).empty());
        }
        copyNodeData(&kept, model.node("Meas/MHAI1$MX$HPhV"));
    }
    stop = true;
    refresh.join();
    mpFree(&pool);
}

// ---------------------------------------------------------------------------------- writing

Data *boolean(u32 value) {
    return heapNumber(Data::boolean, value);
}
Data *integer(i32 value) {
    return heapNumber(Data::integer, static_cast<u32>(value));
}
Data *structure(const std::vector<Data *> &members) {
    return heapList(Data::structure, members);
}
Data *number(f32 value) {
    const auto bits = std::bit_cast<u32>(value);
    std::string octets = "\x08";
    for (int shift = 24; shift >= 0; shift -= 8) {
        octets += static_cast<char>(bits >> shift);
    }
    return heapData(Data::floatingPoint, octets);
}

struct WriteCase {
    const char *reference;
    Data *value;
    i8 checkError; // -1 passes
    const char *checkText;
    i8 writeError;
    const char *writeText;
};

TEST(ComplexData, AWriteMustHaveTheShapeOfTheNode) {
    constexpr const char *deep = "Tiny/GGIO1$ST$Deep";
    const auto inner = [] { return structure({structure({boolean(0), structure({integer(1)})})}); };
    const auto u16Value = [] { return heapNumber(Data::unsignedInt, 9); };
    const WriteCase cases[] = {
        {deep, structure({inner(), u16Value()}), -1, "", -1, ""},
        {deep, structure({inner(), u16Value(), boolean(1), inner()}), -1, "", -1, ""},
        {deep, structure({inner()}), 8, "Data struct inconsistent 1", 8, "data struct inconsistent 1"},
        {deep, structure({}), 8, "Data struct inconsistent 2", 8, "data struct inconsistent 2"},
        {deep, boolean(1), 8, "Data struct inconsistent 2", 8, "data struct inconsistent 2"},
        {deep, heapList(Data::array, {inner(), u16Value()}), 8, "Data struct inconsistent 2", 8,
         "data struct inconsistent 2"},
        {deep, structure({structure({structure({boolean(0)})}), u16Value()}), 8, "data struct inconsistent 1",
         8, "data struct inconsistent 1"},
        {deep, structure({structure({structure({boolean(0), integer(1)})}), u16Value()}), 8,
         "Data struct inconsistent 2", 8, "data struct inconsistent 2"},
        {deep, structure({inner(), integer(9)}), 7, "simple data check error", 7, ""},
        {deep, structure({inner(), inner()}), 7, "simple data check error", 7, ""},
        {"Meas/MHAI1$MX$HPhV$phsAHar", structure({}), 3, "array cannot write", 7, ""},
        {"Meas/MSTA1$ST$Hst$hstVal", heapList(Data::array, {}), 3, "array cannot write", 7, ""},
        {"Tiny/LLN0$SP$Int", structure({integer(12)}), 11, "simple set data range check error", -1, ""},
        {"Tiny/LLN0$SP$Loose$setVal", boolean(1), 11, "simple set data range check error", -1, ""}};
    for (const WriteCase &row : cases) {
        const SmallModel model;
        const LogLines log;
        i8 error = -1;
        EXPECT_EQ(checkNodeData(row.value, model.node(row.reference), &error), row.checkError == -1)
            << row.reference;
        EXPECT_EQ(error, row.checkError);
        EXPECT_EQ(log.count("OTH", "ERR", "checkNodeData", row.checkText), row.checkError == -1 ? 0 : 1)
            << row.checkText;
        error = -1;
        EXPECT_EQ(writeNodeData(row.value, model.node(row.reference), &error), row.writeError == -1);
        EXPECT_EQ(error, row.writeError);
        EXPECT_EQ(log.count("OTH", "ERR", "writeNodeData", row.writeText), *row.writeText == 0 ? 0 : 1);
        freeHeap(row.value);
    }
}

TEST(ComplexData, AWriteStoresLeafByLeafUpToTheFirstFailure) {
    const SmallModel model;
    const LogLines log;
    Data *value = structure({structure({structure({boolean(0), structure({integer(44)})})}), boolean(1)});
    i8 error = -1;
    EXPECT_FALSE(writeNodeData(value, model.node("Tiny/GGIO1$ST$Deep"), &error));
    EXPECT_EQ(error, 7);
    EXPECT_EQ(model.every.boolean, 0);
    EXPECT_EQ(model.every.int8, 44);
    EXPECT_EQ(log.count("OTH", "INF", "writeNodeData", "2set node:Deep, type:1"), 1);
    EXPECT_EQ(log.count("OTH", "INF", "writeNodeData", "2set node:d, type:1"), 1);
    freeHeap(value);
}

// ------------------------------------------------------------------------------ setting ranges

bool isInRange(Data *value, GenNode *leaf) {
    const bool passed = checkSetRange(value, leaf);
    freeHeap(value);
    return passed;
}

TEST(SettingRange, WholeNumbersKeepRangeAndStep) {
    SmallModel model;
    GenNode *leaf = model.node("Tiny/LLN0$SP$Int$setVal");
    const auto passes = [&](i32 value) { return isInRange(integer(value), leaf); };
    for (const auto &[value, want] :
         {std::pair{4, true}, {0, true}, {10, true}, {5, false}, {12, false}, {-2, false}}) {
        EXPECT_EQ(passes(value), want) << value;
    }
    {
        const LogLines log;
        EXPECT_FALSE(passes(13));
        EXPECT_EQ(log.count("SET", "ERR", "checkSetRange", "Value 13 out of range!"), 1);
        EXPECT_EQ(log.count("SET", "ERR", "checkSetRange", "Value 13 step size invalid!"), 1);
        EXPECT_EQ(log.count("SET", "ERR", "checkSetRange", "Check \"Tiny/LLN0$SP$Int$setVal\" failed!"), 1);
        EXPECT_EQ(log.lines().size(), 3U);
    }
    model.integerSetting = {{0, 0, 0}, INT32_MIN, INT32_MAX, INT32_MIN, 0};
    EXPECT_TRUE(passes(INT32_MIN));
    EXPECT_FALSE(passes(INT32_MAX)) << "the step counts as an unsigned number";
    model.integerSetting.minVal = model.integerSetting.maxVal = 3;
    EXPECT_TRUE(passes(99));
    leaf = model.node("Tiny/LLN0$SP$Enm$setVal");
    EXPECT_TRUE(passes(5));
    EXPECT_FALSE(passes(6));
}

TEST(SettingRange, FloatsKeepRangeAndStep) {
    SmallModel model;
    GenNode *leaf = model.node("Tiny/LLN0$SP$Flt$setMag$f");
    const auto passes = [&](f32 value) { return isInRange(number(value), leaf); };
    const f32 nan = std::bit_cast<f32>(0x7FC00000);
    const f32 infinity = std::bit_cast<f32>(0x7F800000);
    for (const auto &[value, want] : {std::pair{1.5F, true},
                                      {1.6F, false},
                                      {100.0F, true},
                                      {100.5F, false},
                                      {-0.5F, false},
                                      {nan, false},
                                      {infinity, false},
                                      {-3.0e38F, false}}) {
        EXPECT_EQ(passes(value), want) << value;
    }
    {
        const LogLines log;
        EXPECT_FALSE(passes(101.25F));
        EXPECT_EQ(log.count("SET", "ERR", "checkSetRange", "Value 101.250000 out of range!"), 1);
        EXPECT_EQ(log.count("SET", "ERR", "checkSetRange", "Value 101.250000 step size invalid!"), 1);
    }
    model.floatSetting.stepSize = 0.0005F;
    EXPECT_TRUE(passes(1.6F)) << "a step below a thousandth is none";
    model.floatSetting.maxVal = 3.0e38F;
    model.floatSetting.minVal = -3.0e38F;
    model.floatSetting.stepSize = 0.5F;
    passes(3.0e38F); // no conversion leaves its range
    model.floatSetting.maxVal = model.floatSetting.minVal = 0;
    EXPECT_TRUE(passes(infinity));
}

TEST(SettingRange, CurvesHaveFiveCharacteristics) {
    const SmallModel model;
    GenNode *leaf = model.node("Tiny/LLN0$SP$Crv$setCharact");
    for (i32 value = 7; value < 17; ++value) {
        const LogLines log;
        EXPECT_EQ(isInRange(integer(value), leaf),
                  value == 9 || value == 10 || value == 12 || value == 13 || value == 14);
        EXPECT_EQ(log.count("OTH", "INF", "checkSetRange", "Over range"), 1);
    }
}

TEST(SettingRange, ASettingWithoutARecordIsRefused) {
    const SmallModel model;
    const LogLines log;
    EXPECT_FALSE(isInRange(boolean(1), model.node("Tiny/LLN0$SP$Loose$setVal")));
    EXPECT_EQ(log.count("OTH", "ERR", "checkSetRange", "Get FCD node failed"), 1);
    EXPECT_EQ(log.count("SET", "ERR", "checkSetRange", "Check \"Tiny/LLN0$SP$Loose$setVal\" failed!"), 1);
}

} // namespace
