// Map of the shared region as far as this process touches it: a binary format shared with the
// device manager, in host byte order, floats in IEEE 754 single precision. Every field is a typed
// constant whose place is checked against the region's size when it is compiled. What lies between
// the fields is the peer's own.
#pragma once

#include "platform/shared.h"
#include "platform/types.h"

#include <type_traits>

namespace ied {

inline constexpr u32 regionSize = 37549884;

// `count` values of type T, the first at `offset`, each `stride` octets behind the one before.
template <class T> struct RegionField {
    u32 offset;
    u32 count;
    u32 stride;

    // Refuses to compile for a field that leaves the region or is not aligned for its type.
    consteval explicit RegionField(u32 at, u32 number = 1, u32 step = sizeof(T))
        : offset(at), count(number), stride(step) {
        if (number == 0 || at % alignof(T) != 0 || step % alignof(T) != 0 ||
            at + u64{number - 1} * step + sizeof(T) > regionSize) {
            throw "field outside the region";
        }
    }

    // Octets from the region's base of value `index`, which is below count.
    constexpr u32 at(u32 index = 0) const { return offset + index * stride; }
};

// A time stamp takes 12 octets: sec, ms, tq and three unused ones.
struct RegionTime {
    RegionField<u32> sec;
    RegionField<u32> ms;
    RegionField<u8> tq;

    consteval explicit RegionTime(u32 at, u32 number = 1, u32 step = 12)
        : sec(at, number, step), ms(at + 4, number, step), tq(at + 8, number, step) {}
};

// Place of value `index` of a field in the region that begins at `base`.
template <class T> T *regionPlace(u8 *base, const RegionField<T> &field, u32 index = 0) {
    return reinterpret_cast<T *>(base + field.at(index));
}
template <class T> const T *regionPlace(const u8 *base, const RegionField<T> &field, u32 index = 0) {
    return reinterpret_cast<const T *>(base + field.at(index));
}

namespace region {

// ------------------------------------------------------------------------- parameter areas

// The live area is written by the peer; the edit area, of the same layout, by this process.
inline constexpr u32 paramAreaSize = 11808;
inline constexpr u32 liveArea = 0;
inline constexpr u32 editArea = 37275464;
static_assert(editArea + paramAreaSize <= regionSize);

inline constexpr RegionField<u32> armFlag{12, 94}; // change counters of the parameter groups
// Rows of armFlag that are watched.
enum ArmFlag : u8 {
    ArmBase = 1,
    ArmDO = 2,
    ArmRO = 3,
    ArmDI = 4,
    ArmDemand = 5,
    ArmEnergy = 6,
    ArmWave1 = 9,
    ArmWave2 = 10,
    ArmSwell = 13,
    ArmTrans = 14,
    ArmSnap1 = 17,
    ArmSnap24 = 40,
    ArmSetPoint1 = 41,
    ArmSetPoint32 = 72,
    ArmLogic1 = 73,
    ArmLogic8 = 80,
    ArmRatedCurrent = 81,
};

inline constexpr RegionField<u32> commandCounter{388, 77}; // one a command of the device
inline constexpr RegionField<u32> waveChange{596, 2};      // wave groups changed by an edit

// Parameters that steer this process.
inline constexpr RegionField<u16> TVMod{700};       // wiring: 0 wye, 1 delta, 2 counts as 0
inline constexpr RegionField<u16> RtgFreq{736};     // 1: 60 Hz, else 50 Hz
inline constexpr RegionField<u16> RtgVolt{738};     // volts
inline constexpr RegionField<u16> ClcHV{744};       // voltage harmonics: 0 ratio, 1 volts
inline constexpr RegionField<u16> ClcHA{746};       // current harmonics: 0 ratio, 1 amperes
inline constexpr RegionField<u16> DIMod{826, 8, 8}; // 0 status, 1 pulse counter, 2 and 3 synchronisation
inline constexpr RegionField<u16> DOMod{890, 2, 4}; // 0 remote control
inline constexpr RegionField<u16> SPTrgMod{5228, 32, 20};
inline constexpr RegionField<u16> SPMonObj{5230, 32, 20};
inline constexpr RegionField<u16> ratedCurrent{7568}; // 1: 1 A, else 5 A
inline constexpr RegionField<u32> serialNumber{7576};
inline constexpr RegionField<u16> timeSource{11576}; // variant that bounds SET.sys.TmSrc

inline constexpr u32 waveBlockSize = 12;
inline constexpr RegionField<u32> waveBlock{7276, 2, waveBlockSize}; // first word of each
inline constexpr RegionField<u32> outputClose{7396, 6, 28}; // RO1 to RO4, DO1, DO2: commands to close
inline constexpr RegionField<u32> outputOpen{7404, 6, 28};  // and to open

inline constexpr u32 energyBillBytes = 28;
inline constexpr RegionField<u8> energyBill{7932, energyBillBytes};
inline constexpr u32 energyBillHead = 4; // octets of the block before its parameters

// -------------------------------------------------------------------------- measurements

inline constexpr RegionField<u32> dspFlag{11808, 60}; // change counters of the measurement blocks
enum DspFlag : u8 {
    DspRealTime = 1,
    DspPst = 8,
    DspPlt = 9,
    DspEnergy = 14,
    DspDemand = 17,
    DspPreDemand = 18,
    DspPulse = 19,
};

inline constexpr RegionTime realTimeTime{21360};
inline constexpr RegionTime pstTime{58624};
inline constexpr RegionTime pltTime{58652};
inline constexpr RegionTime energyTime{16639536};
inline constexpr RegionTime demandTime{16647016}; // its ms word is not read
inline constexpr RegionTime preDemandTime{16653884};
inline constexpr RegionTime ioTime{16654024};

inline constexpr RegionField<u8> diState{16654038}; // bit i: DI i + 1
inline constexpr RegionField<u32> pulseCount{16654072, 8};
inline constexpr RegionField<u16> outputState{16654118}; // bits 0 to 3 RO1 to RO4, 4 and 5 DO1, DO2

// -------------------------------------------------------------------------------- rings

// A ring is a write counter that only grows and its slots; the slot of count c is c modulo `slots`.
template <class State> struct RegionRing {
    RegionField<u32> counter;
    RegionTime time; // of each slot
    RegionField<State> state;
    u32 slots;

    consteval RegionRing(u32 counterAt, u32 number, u32 slotSize, u32 stateAt)
        : counter(counterAt), time(counterAt + 4, number, slotSize),
          state(counterAt + 4 + stateAt, number, slotSize), slots(number) {}
};

inline constexpr RegionRing<u8> diRing{20243936, 100, 16, 14};
inline constexpr RegionRing<u16> doRing{20245540, 100, 20, 14}; // bits as in outputState
inline constexpr RegionRing<u32> spRing{20247544, 100, 20, 16}; // bit i: setpoint i + 1
inline constexpr RegionRing<u32> lgRing{20249548, 100, 20, 16}; // bit i: logic group i + 1

inline constexpr u32 pqSlots = 1024;
inline constexpr u32 pqSlotSize = 36;
inline constexpr RegionField<u32> pqCounter{20199824};
inline constexpr RegionField<u8> pqType{20199830, pqSlots, pqSlotSize};    // 1 variation, 2 transient
inline constexpr RegionField<u8> pqSubType{20199831, pqSlots, pqSlotSize}; // 1 to 6
inline constexpr RegionTime pqTime{20199832, pqSlots, pqSlotSize};
inline constexpr RegionField<f32> pqMag{20199844, pqSlots, pqSlotSize};      // percent
inline constexpr RegionField<u32> pqDuration{20199848, pqSlots, pqSlotSize}; // 1: ms, 2: microseconds

// ------------------------------------------------------------------------------- status

inline constexpr RegionTime checkTime{37514452};
inline constexpr RegionField<u32> checkWord{37514464}; // self-check; bit 4: the flash is at fault
inline constexpr RegionField<u16> hwVersion{37514468}; // decimal digits aabbcc
inline constexpr RegionField<u16> swVersion{37514470};
inline constexpr RegionField<u16> cfgVersion{37514476}; // its last four digits
inline constexpr RegionTime waveTime{37514484, 2, 16};  // last record of each wave group
inline constexpr RegionField<u32> waveCount{37514496, 2, 16};

// --------------------------------------------------------------------------- file lists

// A list is a count of files ever made and a ring of entries of 60 octets.
struct RegionFileList {
    RegionField<u32> count;
    u32 entries;            // in the ring
    RegionField<char> name; // first character of a NUL-terminated text
    RegionField<u32> cfgSize, cfgTime, datSize, datTime;

    static constexpr u32 entrySize = 60;
    static constexpr u32 nameSize = 32;
    consteval RegionFileList(u32 countAt, u32 entriesAt, u32 number)
        : count(countAt), entries(number), name(entriesAt + 12, number, entrySize),
          cfgSize(entriesAt + 44, number, entrySize), cfgTime(entriesAt + 48, number, entrySize),
          datSize(entriesAt + 52, number, entrySize), datTime(entriesAt + 56, number, entrySize) {}
};

inline constexpr RegionFileList waveFiles[2] = {{37514516, 37514524, 128}, {37514520, 37522204, 128}};
inline constexpr RegionFileList signalFiles[3] = {
    {37529884, 37529896, 8}, {37529888, 37530376, 8}, {37529892, 37530856, 8}};
inline constexpr RegionFileList rmsFiles{37531336, 37531340, 128};
inline constexpr RegionFileList transFiles{37539020, 37539024, 128};

// ---------------------------------------------------------------------------- handshake

inline constexpr RegionField<u32> pqStart{37549692};       // PQ log counter at start
inline constexpr RegionField<u32> waveStart{37549792, 2};  // wave records of each group at start
inline constexpr RegionField<u32> statThisMonth{37549832}; // change counters of the statistics
inline constexpr RegionField<u32> statLastMonth{37549836};
inline constexpr RegionField<u32> ready{37549840};
inline constexpr u32 readyValue = 43605;                 // the peer has filled the region
inline constexpr RegionField<u32> editDone{37549860};    // a parameter commit was taken
inline constexpr RegionField<u32> editRefused{37549864}; // or refused

} // namespace region

inline constexpr u32 armFlagNum = region::armFlag.count;
inline constexpr u32 dspFlagNum = region::dspFlag.count;
inline constexpr u32 energyBillSize = region::energyBillBytes;

} // namespace ied
