// Substitution (IEC 61850-7-2 clause 15): the record that a client's value lives in while it stands
// in for the live one.
#pragma once

#include "model-gen/c/genNode.h"

namespace ied {

// What a live value is, as the first switch finds it.
enum SubsKind : u8 {
    SubsUnknown,
    SubsByte,
    SubsWord,
    SubsFloat,
    SubsNone
};

// One for each component that has a leaf "subEna", in tree order.
struct SubsObj {
    u8 subEna;
    u8 subVal8;   // subVal of SPS, DPS, SPC, DPC, ENC
    i32 subVal32; // subVal of INS, INC, ENS
    f32 subMag;   // subMag.f and subCVal.mag.f
    f32 subAng;   // subCVal.ang.f
    u16 subQ;     // as written
    u16 subQOut;  // as shown: with source substituted
    char subID[256];
    TimeStamp subT;        // last change, shown as t
    GenNode *pVal, *pVal2; // live leaves; null where there is none
    GenNode *pAng, *pAng2;
    GenNode *pQ, *pT;
    u8 svKind;   // SubsKind
    u8 clientId; // slot that switched it on, clientNone for none
};

extern SubsObj *aSubsObj; // gCBNum.subsNum records; null for none

// Takes back every substitution of the client of `slot`.
void releaseClientSV(u8 slot);

} // namespace ied
