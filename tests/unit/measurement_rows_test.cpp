// Every measurement as the instrument's own model shows it: a value is put at its place in the
// shared region and looked for at the leaf that a client reads.
#include "device/measRefresh.h"
#include "device/measTables.h"
#include "tests/support/instrumentModel.h"
#include "tests/support/measurementRows.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>

using namespace ied;
using namespace ied::test;

namespace {

constexpr u32 wiringAt = 700, inputModeAt = 826; // of the inputs, 8 octets apart

// ------------------------------------------------------------------------------- what is put

// Distinct for every place of a block, and others in each wiring mode.
f32 valueAt(u32 source, u16 mode) {
    return static_cast<f32>(source % 0x100000) / 4 + 0.5F * static_cast<f32>(mode);
}
u32 countAt(u32 source, u16 mode) {
    return source * 4 + mode;
}
u16 angleAt(u32 source, u16 mode) {
    return static_cast<u16>((source - 21360) * 2 + mode);
}
TimeStamp timeOf(u32 place, u16 mode) {
    return {place * 4 + mode, place % 1000, 10};
}

// Makes inputs count pulses, and the others show their state.
void setInputModes(const std::function<bool(u32)> &countsPulses) {
    for (u32 i = 0; i < 8; i++) {
        instrument().device.put<u16>(inputModeAt + 8 * i, countsPulses(i) ? 1 : 0);
    }
}

// One refresh of the instrument and how its sources lie.
struct Refresh {
    MeasTableId table;
    std::function<int()> run;
    u32 timeAt; // 0: a time follows each value
    bool hasMs;
    u32 firstElement; // of arrays
    u32 stride;       // octets from one element to the next
};

const std::vector<Refresh> refreshes = {
    {MeasTableId::basic, [] { return refreshRt50Cycle(RefreshAll); }, 21360, true, 0, 0},
    {MeasTableId::harmImBal, [] { return refreshRtHarm(RefreshAll); }, 21360, true, 0, 4},
    {MeasTableId::pst, [] { return refreshRtPst(RefreshAll); }, 58624, true, 0, 0},
    {MeasTableId::plt, [] { return refreshRtPlt(RefreshAll); }, 58652, true, 0, 0},
    {MeasTableId::diCnt, [] { return refreshRtDiCnt(RefreshAll); }, 16654024, true, 0, 0},
    {MeasTableId::energy, [] { return refreshEnergy(RefreshAll); }, 16639536, true, 0, 0},
    {MeasTableId::demand, [] { return refreshRtDemand(RefreshAll); }, 16647016, false, 2, 96},
    {MeasTableId::preDemand, [] { return refreshPreDemand(RefreshAll); }, 16653884, true, 0, 0},
    {MeasTableId::rtStat, [] { return refreshStatData(0, RefreshAll) & refreshStatData(1, RefreshAll); }, 0,
     true, 0, 0},
    {MeasTableId::demandStat, [] { return refreshStatData(0, RefreshAll) & refreshStatData(1, RefreshAll); },
     0, true, 0, 0},
};

// --------------------------------------------------------------------------- what is expected

// `q` and `t` of an object or, with `parent`, of a component of it.
void expectGood(GenNode *object, const std::string &parent, const TimeStamp &time) {
    const Value q(object, join(parent, "q"));
    ASSERT_EQ(q.data.choiceId, Data::bitString);
    EXPECT_EQ(bits2Int16(q.data.bits), 0);
    const TimeStamp shown = Value(object, join(parent, "t")).time();
    EXPECT_TRUE(shown == time) << shown.sec << "." << shown.ms << " for " << time.sec << "." << time.ms;
}
void expectInvalid(GenNode *object, const std::string &parent) {
    const Value q(object, join(parent, "q"));
    ASSERT_EQ(q.data.choiceId, Data::bitString);
    EXPECT_EQ(bits2Int16(q.data.bits), 0x4000);
}

// A value in the multiple that the ICD asks for.
f32 scaled(f32 value, GenNode *config, const std::string &component) {
    const GenNode *leaf = below(config, join(component, "units.multiplier"));
    const int multiplier = leaf == nullptr || leaf->value == nullptr ? 0 : std::atoi(leaf->value);
    f32 factor = 1;
    for (int i = 0; i < std::abs(multiplier); i++) {
        factor *= 10;
    }
    return multiplier < 0 ? value * factor : value / factor;
}

class MeasurementRows : public testing::TestWithParam<Refresh> {
  protected:
    using Visit = std::function<void(const std::string &sAddr, const MeasComponent &, u32 shift)>;
    void eachComponent(const Visit &visit) const {
        for (const MeasSet &set : table.sets) {
            for (const MeasObject &object : table.objects) {
                for (const MeasComponent &component : object.components) {
                    visit(set.prefix + object.name, component, set.shift);
                }
            }
        }
    }

    // Fills every source of the table.
    void fill(u16 mode) {
        DeviceState &device = instrument().device;
        device.put<u16>(wiringAt, mode);
        putTime(GetParam().timeAt, mode);
        eachComponent([&](const std::string &sAddr, const MeasComponent &component, u32 shift) {
            const u32 source = component.source + shift;
            const u8 cdc = instrument().values.at(sAddr)->nodeType;
            if (cdc == CdcBCR) {
                device.put(source, countAt(source, mode));
            } else {
                device.put(source, valueAt(source, mode));
            }
            if (cdc == CdcHWYE || cdc == CdcHDEL) {
                for (u32 i = 0; i < elements; i++) {
                    device.put(source + GetParam().stride * i, valueAt(source + GetParam().stride * i, mode));
                }
            }
            if (component.angle != 0) {
                device.put(component.angle + shift, angleAt(component.angle + shift, mode));
            }
            if (GetParam().timeAt == 0) {
                putTime(source + 4, mode);
            }
        });
    }
    static void putTime(u32 at, u16 mode) {
        const TimeStamp time = timeOf(at, mode);
        if (at != 0) {
            instrument().device.putTime(at, time.sec, time.ms, time.tq);
        }
    }

    void expectRow(const std::string &sAddr, const MeasComponent &component, u32 shift, u16 mode) const {
        if (component.wiring == RowWiring::never) {
            return expectHidden(sAddr, component);
        }
        const u32 source = component.source + shift;
        GenNode *object = instrument().values.at(sAddr);
        const bool shown = isShown(component.wiring, mode);
        std::string stamped = component.name; // what carries q and t
        switch (object->nodeType) {
        case CdcBCR:
            EXPECT_EQ(static_cast<u32>(Value(object, "actVal").data.int_), countAt(source, mode));
            break;
        case CdcHWYE:
        case CdcHDEL:
            expectArray(below(object, component.name), source, mode, shown);
            stamped = "";
            break;
        default: {
            const f32 value = scaled(valueAt(source, mode), instrument().configs.at(sAddr), component.name);
            const char *leaf = object->nodeType == CdcMV ? "mag.f" : "cVal.mag.f";
            EXPECT_EQ(Value(object, join(component.name, leaf)).number(), shown ? value : 0);
        }
        }
        if (component.angle != 0) {
            const u16 hundredths =
                isShown(component.angleWiring, mode) ? angleAt(component.angle + shift, mode) : 0;
            EXPECT_EQ(Value(object, join(component.name, "cVal.ang.f")).number(),
                      static_cast<f32>(hundredths / 100.0));
        }
        if (!shown) {
            return expectInvalid(object, stamped);
        }
        TimeStamp time = timeOf(GetParam().timeAt != 0 ? GetParam().timeAt : source + 4, mode);
        if (!GetParam().hasMs) {
            time.ms = 0;
        }
        expectGood(object, stamped, time);
    }
    // The file leaves out what no wiring shows; its record stays invalid.
    static void expectHidden(const std::string &sAddr, const MeasComponent &component) {
        ASSERT_STREQ(component.name, "neut");
        EXPECT_EQ(childByName(instrument().values.at(sAddr), component.name), nullptr);
        const CMV &neut = record<WYE>(sAddr).phs[PhsNeut];
        EXPECT_EQ(neut.q, qualityInvalid);
        EXPECT_EQ(neut.cVal.mag, 0);
    }
    void expectArray(GenNode *array, u32 source, u16 mode, bool shown) const {
        const std::vector<f32> magnitudes = arrayMagnitudes(array);
        ASSERT_EQ(magnitudes.size(), elements);
        const u32 first = GetParam().firstElement;
        for (u32 i = 0; i < elements; i++) {
            EXPECT_EQ(magnitudes[i],
                      shown && i >= first ? valueAt(source + GetParam().stride * (i - first), mode) : 0)
                << "element " << i;
        }
    }

    static constexpr u32 elements = 64; // of an array, as the ICD says
    const MeasTable &table = measurementTable(measTableName(GetParam().table));
};

TEST_P(MeasurementRows, ShowTheValuesOfTheirOwnPlacesInEachWiring) {
    EXPECT_EQ(measTable(GetParam().table).size(), rowCount(table));
    setInputModes([](u32) { return true; });
    for (const u16 mode : {u16{0}, u16{1}, u16{2}}) {
        fill(mode);
        ASSERT_EQ(GetParam().run(), 1);
        eachComponent([&](const std::string &sAddr, const MeasComponent &component, u32 shift) {
            SCOPED_TRACE(sAddr + " " + component.name + " in mode " + std::to_string(mode));
            expectRow(sAddr, component, shift, mode);
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Instrument, MeasurementRows, testing::ValuesIn(refreshes),
                         [](const auto &param) { return std::string(measTableName(param.param.table)); });

// ------------------------------------------------------------------------- the whole model

u32 pulseCount(u32 input) {
    return static_cast<u32>(
        Value(instrument().values.at("ENG.PlsCnt" + std::to_string(input + 1)), "actVal").data.int_);
}

TEST(MeasurementModel, APulseCounterGoesWithTheModeOfItsOwnInput) {
    DeviceState &device = instrument().device;
    u32 expected[8];
    for (u32 i = 0; i < 8; i++) {
        expected[i] = pulseCount(i);
    }
    for (u32 pulse = 0; pulse < 8; pulse++) {
        setInputModes([&](u32 i) { return i == pulse; });
        for (u32 i = 0; i < 8; i++) {
            device.put<u32>(measurementTable("diCntMeasTable").objects[i].components[0].source,
                            1000 * pulse + i + 1);
        }
        expected[pulse] = 1000 * pulse + pulse + 1;
        refreshRtDiCnt(RefreshAll);
        for (u32 i = 0; i < 8; i++) {
            EXPECT_EQ(pulseCount(i), expected[i]) << "counter " << i << " while input " << pulse << " counts";
        }
    }
}

// What carries a quality in an object that is not measured.
std::vector<std::string> unfedComponents(const std::string &sAddr) {
    return sAddr.ends_with("HHz") ? std::vector<std::string>{""} : std::vector<std::string>{"c1", "c2", "c3"};
}

TEST(MeasurementModel, WhatIsNotMeasuredStaysInvalid) {
    for (const u16 mode : {u16{0}, u16{1}}) {
        instrument().device.put<u16>(wiringAt, mode);
        for (const Refresh &refresh : refreshes) {
            EXPECT_EQ(refresh.run(), 1);
        }
        for (const std::string &sAddr : unfedObjects()) {
            for (const std::string &component : unfedComponents(sAddr)) {
                SCOPED_TRACE(sAddr + " " + component);
                GenNode *object = instrument().values.at(sAddr);
                expectInvalid(object, component);
                const char *leaf = component.empty() ? "mag.f" : "cVal.mag.f";
                EXPECT_EQ(Value(object, join(component, leaf)).number(), 0);
            }
        }
    }
}

// Paths of everything below `node` that has a quality, and of every angle.
void collectPaths(const GenNode *node, const std::string &path, std::set<std::string> &paths) {
    for (const GenNode *child = node->child; child != nullptr; child = child->sibling) {
        if (std::strcmp(child->name, "q") == 0) {
            paths.insert(path);
        }
        if (std::strcmp(child->name, "ang") == 0) {
            paths.insert(path + ".ang");
        }
        if (hasChild(child)) {
            collectPaths(child, path + "." + child->name, paths);
        }
    }
}

std::set<std::string> measuredPaths() {
    std::set<std::string> paths;
    for (const MeasTable &table : measurementTables()) {
        for (const MeasSet &set : table.sets) {
            for (const MeasObject &object : table.objects) {
                for (const MeasComponent &component : object.components) {
                    const std::string sAddr = set.prefix + object.name;
                    const bool isWhole = *component.name == '\0' || sAddr.ends_with("Arr");
                    if (component.wiring != RowWiring::never) {
                        paths.insert(isWhole ? sAddr : sAddr + "." + component.name);
                    }
                    if (component.angle != 0) {
                        paths.insert(sAddr + "." + component.name + ".cVal.ang");
                    }
                }
            }
        }
    }
    return paths;
}

TEST(MeasurementModel, ServesWhatTheInstrumentMeasuresAndNothingElse) {
    std::set<std::string> served, known = measuredPaths();
    for (const auto &[sAddr, object] : instrument().values) {
        collectPaths(object, sAddr, served);
    }
    for (const std::string &sAddr : unfedObjects()) {
        for (const std::string &component : unfedComponents(sAddr)) {
            known.insert(component.empty() ? sAddr : join(sAddr, component));
        }
    }
    std::vector<std::string> different;
    std::ranges::set_symmetric_difference(served, known, std::back_inserter(different));
    EXPECT_EQ(different, std::vector<std::string>{});
}

} // namespace
