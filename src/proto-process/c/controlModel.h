// Controllable objects (IEC 61850-7-2 clause 20): the record behind SPC, DPC, INC and ENC objects
// with their status, requests and configuration, and the command in hand.
#pragma once

#include "platform/types.h"

namespace ied {

// Control classes, values of CtlObj.ctlClass.
enum CtlClass : u8 {
    CtlSPC,
    CtlDPC,
    CtlINC,
    CtlBSC,
    CtlISC,
    CtlAPC,
    CtlENC
};

// Values of the attribute ctlModel (IEC 61850-7-2 20.1).
enum CtlModelValue : u8 {
    CtlStatusOnly,
    CtlDirectNormal,
    CtlSboNormal,
    CtlDirectEnhanced,
    CtlSboEnhanced,
};

struct CtlOrigin {
    i8 orCat;
    char orIdent[65]; // NUL-terminated octets
};

// The last accepted command of one kind.
struct CtlCommand {
    u8 ctlVal8;   // by class: SPC, DPC, BSC, ISC, ENC
    i32 ctlVal32; // INC
    f32 ctlValF;  // APC
    CtlOrigin origin;
    u8 ctlNum;
    TimeStamp T;
    u8 Test;
    u8 Check; // not in Cancel
};

// The command in hand and what is to be reported of it.
struct CtlRptData {
    u8 rptKind; // 0 LastApplError, 1 positive CommandTermination, 2 both
    u8 ctlVal8;
    i32 ctlVal32;
    f32 ctlValF;
    u8 Check;
    u8 Test;
    TimeStamp T;
    char ctlRef[256]; // LD/LN$CO$DO$Oper
    i8 orCat;
    char orIdent[65];
    u8 ctlNum;
    i8 Error;          // of LastApplError
    i8 AddCause;       // of LastApplError
    char operRef[256]; // copy of ctlRef for the CommandTermination
    u8 rptPending;     // 1: a result waits for sendCtlResult
};

struct CtlObj {
    u8 ctlClass;  // CtlClass
    u8 selClient; // slot that holds the selection or awaits a result, clientNone for none
    u32 selTick;  // tick of the selection
    u32 operTick; // tick of a running command with enhanced security, 0 none
    CtlOrigin origin;
    u8 ctlNum;
    u8 stSeld;   // 1 selected
    u8 stVal;    // of SPC, DPC, ENC
    i32 stVal32; // of INC
    struct {
        i8 posVal;
        u8 transInd;
    } valWTr; // of BSC, ISC
    u16 q;
    TimeStamp t;
    char SBO[256]; // reference that a read of SBO gives back
    CtlCommand SBOw;
    CtlCommand Oper;
    CtlCommand Cancel;
    u8 persistent;
    u8 ctlModel;    // CtlModelValue
    u32 sboTimeout; // milliseconds
    u8 sboClass;
    CtlRptData ctlRptData;
};

// Finds every control object of the model. True on success.
bool getAllCtlObjinModel();
// Watches selections and running commands, once a round of the monitor task. True if a result
// became ready.
bool monCtlObj();
// Sends the results that are ready, once a round of the report task.
void sendCtlResult();

} // namespace ied
