// Data records by common data class (IEC 61850-7-3): what the level 4 nodes of the model are bound
// to. Leaves point at the fields. Fields are shared between tasks (platform/shared.h).
#pragma once

#include "platform/types.h"

namespace ied {

inline constexpr u16 qualityGood = 0;
inline constexpr u16 qualityInvalid = 16384;

struct Unit {
    u8 SIUnit;
    i8 multiplier; // power of ten
};

struct RangeConfig {
    f32 hhLim, hLim, lLim, llLim, min, max;
};

struct SPS { // also DPS, ENS
    u8 stVal;
    u16 q;
    TimeStamp t;
    u32 updateCount;
};

struct INS {
    i32 stVal;
    u16 q;
    TimeStamp t;
    u32 updateCount;
};

struct ACT {
    u8 general, phsA, phsB, phsC, neut;
    u16 q;
    TimeStamp t;
};

struct ACD {
    u8 general, dirGeneral, phsA, dirPhsA, phsB, dirPhsB, phsC, dirPhsC, neut, dirNeut;
    u16 q;
    TimeStamp t;
};

struct BCR {
    i32 actVal;
    u16 q;
    TimeStamp t;
    Unit units;
    f32 pulsQty;
    u32 updateCount;
};

struct MV {
    f32 instMag;
    f32 mag;
    u8 range;
    u16 q;
    TimeStamp t;
    Unit units;
    u32 db;
    RangeConfig rangeC;
    u32 updateCount;
};

struct Vector {
    f32 mag;
    f32 ang;
};

struct CMV {
    Vector instCVal;
    Vector cVal;
    u8 range;
    u16 q;
    TimeStamp t;
    Unit units;
    u32 db;
    RangeConfig rangeC;
    u32 updateCount;
};

// Phases of a WYE record (phsA, phsB, phsC, neut, one without attributes, res); the first three of
// a DEL record are phsAB, phsBC, phsCA.
struct WYE {
    CMV phs[6];
    u32 updateCount;
};
enum WyePhase : u8 {
    PhsA,
    PhsB,
    PhsC,
    PhsNeut,
    PhsSpare,
    PhsRes
};

struct SEQ {
    CMV c[3];
    u8 seqT;
    u32 updateCount;
};

// Harmonics of a WYE or DEL circuit; the arrays are in the order of WyePhase.
struct HWYE {
    u16 q;
    TimeStamp t;
    Vector *har[6]; // numHar elements each, or null
    u16 numHar;
    u16 numCyc;
    u16 evalTm;
    Unit units;
    u32 smpRate;
    f32 frequency;
    u8 hvRef;
    u16 rmsCyc;
    u32 updateCount;
};

struct HMV {
    u16 q;
    TimeStamp t;
    Vector *har;
    u16 numHar;
    u16 numCyc;
    u16 evalTm;
    Unit units;
    u32 smpRate;
    f32 frequency;
    u32 updateCount;
};

// One cell of a two-dimensional histogram.
struct HstCell {
    f32 xStart, xEnd, yStart, yEnd;
};

struct HST {
    i32 *hstVal; // numPts elements, or null
    u16 q;
    TimeStamp t;
    u16 numPts;
    HstCell *hstRangeC; // numPts elements, or null
    Unit xUnits;
    Unit yUnits;
    u16 maxPts;
    u32 updateCount;
};

// The three instances of a setting's value, by functional constraint.
enum SettingInstance : u8 {
    SetSP,
    SetSG,
    SetSE
};

struct SPG { // also CURVE (setCharact)
    u8 setVal[3];
    u8 seEdited;
};

struct ENG {
    u8 setVal[3];
    i32 minVal, maxVal, stepSize;
    u8 seEdited;
};

struct ING {
    i32 setVal[3];
    i32 minVal, maxVal, stepSize;
    u8 seEdited;
};

struct ASG {
    f32 setMag[3];
    Unit units;
    f32 minVal, maxVal, stepSize;
    u8 seEdited;
};

struct ORG {
    char setSrcRef[3][256];
};

struct DPL {
    char vendor[256], hwRev[256], swRev[256], serNum[256], model[256], location[256];
    char cdcNs[256], cdcName[256], dataNs[256];
};

struct LPL {
    char vendor[256], swRev[256], d[256], dU[256], configRev[256];
    char ldNs[256], lnNs[256], cdcNs[256], cdcName[256], dataNs[256];
};

} // namespace ied
