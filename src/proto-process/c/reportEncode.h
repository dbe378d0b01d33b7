// Messages that the server sends of its own accord: the report of a control block as an MMS
// InformationReport (ISO 9506-2, IEC 61850-8-1 17.2) with the layers around it.
#pragma once

#include "basicInterface/memory.h"
#include "proto-process/c/packet.h"
#include "proto-process/c/reportModel.h"

namespace ied {

// Builds the report of an entry with all layers into the empty `pdu`. It borrows the values of the
// entry and owns all else: free it with freeReport. The lock of the block is held from before the call
// until then. Returns true.
bool rptPackProc(PacketBuf *pdu, const RCB *rcb, const RptEntry *entry);
void freeReport(PacketBuf *pdu, const RCB *rcb, const RptEntry *entry);
// The presentation layer, the MMS PDU and the report in it.
void rpt_ppdu_8823(Ppdu8823 *ppdu, const RCB *rcb, const RptEntry *entry);
void rpt_apdu_mms(MMSpdu *mms, const RCB *rcb, const RptEntry *entry);
void rpt_rcb_model(InformationReport *report, const RCB *rcb, const RptEntry *entry);

// Parts of a report. Each appends to a list of access results, all of them successes.
void fill_list_sucess(AsnList *list, u8 type, const void *address);
void fill_include_bits(AsnList *list, u32 memberNum, const u8 *included);
void fill_ds_ref(AsnList *list, const DataSet *dataSet, const u8 *included);
// The values themselves, not copies of them.
void fill_ds_data(AsnList *list, u32 memberNum, Data *data, const u8 *included);

// What a task makes reports with.
struct ReportMaker {
    PacketBuf pdu;
    Arena arena; // of the pdu's tree
    u8 *buffer;  // sendBufSize octets, where the report is encoded as sendPacket takes it
};
void reportMakerInit(ReportMaker *maker);
void reportMakerFree(ReportMaker *maker);
// Octets of the report encoded into maker->buffer; 0 when it is larger than that. The lock of the
// block is held.
u32 encodeReport(ReportMaker *maker, const RCB *rcb, const RptEntry *entry);

} // namespace ied
