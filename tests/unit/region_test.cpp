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

const MappedWord mappedCases[] = {
    {"armFlag 81", 336, 4, [] { return number(regionLoad(region::armFlag, 81)); }},
    {"dspFlag 19", 11884, 4, [] { return number(regionLoad(region::dspFlag, 19)); }},
    {"wiring", 700, 2, [] { return number(regionLoad(region::TVMod)); }},
    {"DIMod of DI8", 882, 2, [] { return number(regionLoad(region::DIMod, 7)); }},
    {"DOMod of DO2", 894, 2, [] { return number(regionLoad(region::DOMod, 1)); }},
    {"MonObj of setpoint 32", 5850, 2, [] { return number(regionLoad(region::SPMonObj, 31)); }},
    {"close counter of DO2", 7536, 4, [] { return number(regionLoad(region::outputClose, 5)); }},
    {"open counter of RO2", 7432, 4, [] { return number(regionLoad(region::outputOpen, 1)); }},
    {"wave block 2", 7288, 4, [] { return number(regionLoad(region::waveBlock, 1)); }},
    {"end of the energy bill", 7959, 1, [] { return number(regionLoad(region::energyBill, 27)); }},
    {"DI state", 16654038, 1, [] { return number(regionLoad(region::diState)); }},
    {"pulse counter 8", 16654100, 4, [] { return number(regionLoad(region::pulseCount, 7)); }},
    {"output state", 16654118, 2, [] { return number(regionLoad(region::outputState)); }},
    {"state of DI slot 99", 20245538, 1, [] { return number(regionLoad(region::diRing.state, 99)); }},
    {"state of DO slot 1", 20245578, 2, [] { return number(regionLoad(region::doRing.state, 1)); }},
    {"state of LG slot 99", 20251548, 4, [] { return number(regionLoad(region::lgRing.state, 99)); }},
    {"ms of SP slot 2", 20247592, 4, [] { return number(regionLoad(region::spRing.time, 2).ms); }},
    {"type of PQ slot 1", 20199866, 1, [] { return number(regionLoad(region::pqType, 1)); }},
    {"duration of PQ slot 1023", 20236676, 4, [] { return number(regionLoad(region::pqDuration, 1023)); }},
    {"wave counter 2", 37514512, 4, [] { return number(regionLoad(region::waveCount, 1)); }},
    {"quality of wave time 2", 37514508, 1, [] { return number(regionLoad(region::waveTime, 1).tq); }},
    {"cfg size of file 127 of wave group 2", 37529868, 4,
     [] { return number(regionLoad(region::waveFiles[1].cfgSize, 127)); }},
    {"dat time of file 7 of signal group 3", 37531332, 4,
     [] { return number(regionLoad(region::signalFiles[2].datTime, 7)); }},
    {"name of the last transient file", 37546656, 1,
     [] { return number(static_cast<u8>(regionLoad(region::transFiles.name, 127))); }},
    {"refused counter", 37549864, 4, [] { return number(regionLoad(region::editRefused)); }}};

TEST(Mapped, FieldReadsTheOctetsAtItsPlaceAndNoOthers) {
    for (const MappedWord &word : mappedCases) {
        SCOPED_TRACE(word.name);
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
}

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
