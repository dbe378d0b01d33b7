// The map of the shared region: what the device manager writes at an octet is what a field reads.
#include "tests/support/deviceModel.h"

using namespace ied;
using ied::test::DeviceState;

namespace {

// Reads a field of any type as a number.
using ReadField = f64 (*)();
struct MappedWord {
    const char *name;
    u32 offset;
    u32 width; // octets
    ReadField read;
};
template <class T> f64 number(T value) {
    return static_cast<f64>(value);
}

class Mapped : public testing::TestWithParam<MappedWord> {};

TEST_P(Mapped, FieldReadsTheOctetsAtItsPlaceAndNoOthers) {
    const MappedWord &word = GetParam();
    DeviceState device;
    EXPECT_EQ(word.read(), 0) << word.name;
    if (word.width == 1) {
        device.put<u8>(word.offset, 0xA5);
    } else if (word.width == 2) {
        device.put<u16>(word.offset, 0xA55A);
    } else {
        device.put<u32>(word.offset, 0xA55AC33C);
    }
    EXPECT_EQ(word.read(), word.width == 1 ? 0xA5 : word.width == 2 ? 0xA55A : 0xA55AC33C) << word.name;
}

INSTANTIATE_TEST_SUITE_P(
    Region, Mapped,
    testing::Values(
        MappedWord{"armFlag 81", 336, 4, [] { return number(regionLoad(region::armFlag, 81)); }},
        MappedWord{"dspFlag 19", 11884, 4, [] { return number(regionLoad(region::dspFlag, 19)); }},
        MappedWord{"wiring", 700, 2, [] { return number(regionLoad(region::TVMod)); }},
        MappedWord{"DIMod of DI8", 882, 2, [] { return number(regionLoad(region::DIMod, 7)); }},
        MappedWord{"DOMod of DO2", 894, 2, [] { return number(regionLoad(region::DOMod, 1)); }},
        MappedWord{"MonObj of setpoint 32", 5850, 2, [] { return number(regionLoad(region::SPMonObj, 31)); }},
        MappedWord{"close counter of DO2", 7536, 4,
                   [] { return number(regionLoad(region::outputClose, 5)); }},
        MappedWord{"open counter of RO2", 7432, 4, [] { return number(regionLoad(region::outputOpen, 1)); }},
        MappedWord{"wave block 2", 7288, 4, [] { return number(regionLoad(region::waveBlock, 1)); }},
        MappedWord{"end of the energy bill", 7959, 1,
                   [] { return number(regionLoad(region::energyBill, 27)); }},
        MappedWord{"DI state", 16654038, 1, [] { return number(regionLoad(region::diState)); }},
        MappedWord{"pulse counter 8", 16654100, 4, [] { return number(regionLoad(region::pulseCount, 7)); }},
        MappedWord{"output state", 16654118, 2, [] { return number(regionLoad(region::outputState)); }},
        MappedWord{"state of DI slot 99", 20245538, 1,
                   [] { return number(regionLoad(region::diRing.state, 99)); }},
        MappedWord{"state of DO slot 1", 20245578, 2,
                   [] { return number(regionLoad(region::doRing.state, 1)); }},
        MappedWord{"state of LG slot 99", 20251548, 4,
                   [] { return number(regionLoad(region::lgRing.state, 99)); }},
        MappedWord{"ms of SP slot 2", 20247592, 4,
                   [] { return number(regionLoad(region::spRing.time, 2).ms); }},
        MappedWord{"type of PQ slot 1", 20199866, 1, [] { return number(regionLoad(region::pqType, 1)); }},
        MappedWord{"duration of PQ slot 1023", 20236676, 4,
                   [] { return number(regionLoad(region::pqDuration, 1023)); }},
        MappedWord{"wave counter 2", 37514512, 4, [] { return number(regionLoad(region::waveCount, 1)); }},
        MappedWord{"quality of wave time 2", 37514508, 1,
                   [] { return number(regionLoad(region::waveTime, 1).tq); }},
        MappedWord{"cfg size of file 127 of wave group 2", 37529868, 4,
                   [] { return number(regionLoad(region::waveFiles[1].cfgSize, 127)); }},
        MappedWord{"dat time of file 7 of signal group 3", 37531332, 4,
                   [] { return number(regionLoad(region::signalFiles[2].datTime, 7)); }},
        MappedWord{"name of the last transient file", 37546656, 1,
                   [] { return number(static_cast<u8>(regionLoad(region::transFiles.name, 127))); }},
        MappedWord{"refused counter", 37549864, 4, [] { return number(regionLoad(region::editRefused)); }}));

TEST(Region, AWriteTouchesItsOwnOctetsOnly) {
    DeviceState device;
    device.put<u32>(16, 0xFFFFFFFF);
    device.put<u32>(24, 0xFFFFFFFF);
    storeShared(*regionPlace(comdata, region::armFlag, 2), 7);
    EXPECT_EQ(device.get<u32>(20), 7U);
    EXPECT_EQ(device.get<u32>(16), 0xFFFFFFFF);
    EXPECT_EQ(device.get<u32>(24), 0xFFFFFFFF);
}

TEST(Region, WiringModeTwoCountsAsWye) {
    DeviceState device;
    const u16 expected[] = {0, 1, 0, 3};
    for (u16 mode = 0; mode < 4; mode++) {
        device.put<u16>(700, mode);
        EXPECT_EQ(regionWiring(), expected[mode]) << mode;
    }
}

} // namespace
