// The record of one packet through all layers, and the pipeline that fills it, answers it and
// writes it: TPKT (RFC 1006), COTP class 0 (ISO 8073), session (ISO 8327), presentation (ISO 8823).
#pragma once

#include "asn1/presentationTypes.h"
#include "basicInterface/shorts.h"

namespace ied {

// ------------------------------------------------------------------------------- TPKT, COTP

inline constexpr u32 tpktOctets = 4; // header of a frame
inline constexpr u32 dtOctets = 3;   // header of a DT

// Why a frame does not decode, in *err.
enum FrameError : i32 {
    ErrIncomplete = 1,   // TPKT: more octets than are at hand, or a length that no frame has
    ErrUnknownTpdu = 12, // COTP: unknown TPDU or CR parameter
    ErrOverflow = 13,    // COTP: fragments beyond the reassembly buffer
    ErrSession = 22,     // session: not one of the fixed shapes
};

struct TpduTpkt {
    u8 version;
    u8 reserved;
    u16 length;     // octets of the frame, this header included
    u16 headerSize; // reply: octets that this layer adds, 4
};

struct TpduCotp {
    u8 li;
    u8 code;
    u16 dstRef;
    u16 srcRef;
    u8 classOption;
    u8 callingCode, callingLen;
    u16 callingTsap;
    u8 callingPresent;
    u8 calledCode, calledLen;
    u16 calledTsap;
    u8 calledPresent;
    u8 sizeParam[3];
    u8 sizePresent;
    u8 crPresent; // request: a CR; reply: a CC is to be encoded
    u8 dtLi, dtCode, dtEot;
    u8 eot;
    u32 reassemblyCapacity;
    u32 reassemblyLen;
    u8 *reassemblyBuf; // reassemblyCapacity octets, owned by the client task
    u8 reassembling;
    u8 dtPresent;
    u16 encodedSize; // reply: octets that this layer adds
};

// Octets consumed, or 0 with *err set. `len` octets are at hand.
u32 dec_tpdu_tpkt(TpduTpkt *pdu, const u8 *data, u32 len, i32 *err);
u32 dec_tpdu_cotp(TpduCotp *rec, const u8 *data, u32 len, i32 *err);
int process_tpdu_tpkt(const TpduTpkt *request, TpduTpkt *reply);
int process_tpdu_cotp(const TpduCotp *request, TpduCotp *reply);
// Write at `end` less the size held in the record; return the octets written.
u32 enc_tpdu_tpkt(const TpduTpkt *pdu, u8 *buf, u32 end);
u32 enc_tpdu_cotp(const TpduCotp *rec, u8 *buf, u32 end);
int rpt_tpdu_tpkt(TpduTpkt *pdu); // returns 1
int rpt_tpdu_cotp(TpduCotp *rec); // returns 3
void init_tpdu_cotp(TpduCotp *rec, bool full);
inline u16 decShort(const u8 *p) {
    return dec_short(p);
}
inline void encShort(u8 *p, u16 v) {
    enc_short(p, v);
}

// ---------------------------------------------------------------------------------- session

struct SessionParam8 {
    u8 code, length, value, present;
};
struct SessionParam16 {
    u8 code, length;
    u16 value;
    u8 present;
};

struct Spdu8327 {
    u8 si, li;                            // CONNECT or ACCEPT
    u8 itemCode, itemLength, itemPresent; // Connect/Accept Item
    SessionParam8 protocolOptions;
    SessionParam8 versionNumber;
    SessionParam16 userRequirements;
    SessionParam16 callingSelector;
    SessionParam16 calledSelector;
    u8 userDataCode, userDataLength, userDataPresent;
    u8 connectPresent;
    u8 giveTokensSi, giveTokensLi, giveTokensPresent;
    u8 dataSi, dataLi, dataPresent;
    u8 finishSi, finishLi, finishDataCode, finishDataLength, finishDataPresent, finishPresent;
    u8 abortLiReceived, abortValue1, abortValue2;
    u8 abortSi, abortLi, abortTransportDisconnect, abortReflect[2], abortReflectLength;
    u8 abortPresent;
    u16 encodedSize;
};

// Octets of the session headers, or 0 with *err ErrSession.
u32 dec_spdu_8327(Spdu8327 *rec, const u8 *data, u32 len, i32 *err);
int process_spdu_8327(const Spdu8327 *request, Spdu8327 *reply);
u32 enc_spdu_8327(const Spdu8327 *rec, u8 *buf, u32 end);
int rpt_spdu_8327(Spdu8327 *rec); // returns 4
void init_spdu_8327(Spdu8327 *rec);

// ----------------------------------------------------------------------------- presentation

struct Ppdu8823 {
    CP_type cp;
    u8 cpPresent;
    CPA_PPDU cpa;
    u8 cpaPresent;
    User_data userData;
    u8 userDataPresent;
};

// What the session layer says of the presentation data.
enum PresentType : int {
    PresentNone,
    PresentConnect,
    PresentFinish,
    PresentData
};

u32 decPpdu8823(Ppdu8823 *ppdu, const u8 *data, u32 len, int type, i32 *err);
int processPpdu8823(const Ppdu8823 *request, Ppdu8823 *reply, int type, u8 slot);
// Encodes so that the octets end at buf + end. Returns their count, or 0 when they do not fit.
u32 encPpdu8823(const Ppdu8823 *ppdu, u8 *buf, u32 end);
void initPpdu8823(Ppdu8823 *ppdu, bool full);
// Makes the layer the carrier of a message of the server's own: user data in the context of MMS, with
// an empty MMS PDU, which is returned.
MMSpdu *newMmsData(Ppdu8823 *ppdu);
int processApduAcse(const ACSE_apdu *apdu, ACSE_apdu *reply, u8 slot);

// -------------------------------------------------------------------------------------- MMS

// Answers an MMS PDU: `responsePdu`, zeroed, is always filled. Returns 1.
int processApduMms(const MMSpdu *requestPdu, MMSpdu *responsePdu, u8 clientId);
// Error class and code of an internal service result of 0 or above.
void generateServiceError(ServiceError *errorOut, i8 value);
// Makes `responsePdu`, which holds nothing, the confirmed-ErrorPDU of an internal service result.
void buildConfirmedError(MMSpdu *responsePdu, AsnInt invokeID, i8 value);
// Negotiates an association for the slot: fills the zeroed response and the client's record. Never
// refuses; returns -1, the internal result for success.
i8 initiateProcess(const Initiate_RequestPDU *request, Initiate_ResponsePDU *response, u8 slot);
void getSupportCBB(u8 *bits);                      // 2 octets
void getSupportServ(u8 *bits);                     // 11 octets
void updateSupportServ(const u8 *bits, u8 *table); // 86 octets of table

// ----------------------------------------------------------------------------------- packet

struct PacketBuf {
    TpduTpkt tpkt;
    u8 tpktPresent;
    TpduCotp cotp;
    u8 cotpPresent;
    Spdu8327 spdu;
    u8 spduPresent;
    Ppdu8823 ppdu;
    u8 ppduPresent;
};

// Decodes one frame of `len` octets at hand. Its octets, or 0 with *err set when it is incomplete
// or broken. A failed decode leaves the record as it was, the fragments collected before included.
u32 dec_packet(PacketBuf *pdu, const u8 *data, u32 len, i32 *err);
// Builds the reply of a decoded request. 1 if there is one.
int packet_process(const PacketBuf *request, PacketBuf *reply, u8 slot, i32 err);
// Writes the packet so that its octets end one octet before the end of `buf`. Returns its length,
// 0 for an empty record or a packet that does not fit `buf` or a field of the session layer.
u32 encPacket(PacketBuf *reply, u8 *buf, u32 size);
// Where a packet of `len` octets begins that encPacket wrote into a buffer of sendBufSize octets.
u8 *encodedPacket(u8 *buf, u32 len);
// Exchanges the confirmed-ResponsePDU of a reply that does not fit for the confirmed-ErrorPDU of
// service error 73, object-access-denied. False when the reply carries none.
bool replaceOversizedReply(PacketBuf *reply);
// Clears and frees. `full` only for a record of undefined content.
void initPdu(PacketBuf *pdu, bool full);
int getPresentType(const Spdu8327 *session);

// The MMS PDU of the first PDV of fully encoded user data, or null. Null is allowed.
MMSpdu *firstMmsPdu(const User_data *userData);
// The ACSE PDU of the first PDV of fully encoded user data, or null. Null is allowed.
ACSE_apdu *firstAcseApdu(const User_data *userData);
// The MMS PDU of the first entry of ACSE user information, or null. Null is allowed.
MMSpdu *firstUserInformation(const Association_information *information);

} // namespace ied
