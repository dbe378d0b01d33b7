#include "proto-process/c/reportEncode.h"

#include "DebugInfo/DebugInfo.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "basicInterface/simpleData.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "model-gen/c/modelConfig.h"
#include "proto-process/c/octets.h"

#include <string>

namespace ied {

namespace {

constexpr u16 always0 = 0; // SubSeqNum and MoreSegmentsFollow: a report is never split

Data *appendSuccess(AsnList *list, Data *data) {
    auto *result = asnListPush(list, MallocOf<AccessResult>());
    result->choiceId = AccessResult::success;
    return result->success_ = data;
}
Data *appendSuccess(AsnList *list) {
    return appendSuccess(list, MallocOf<Data>());
}

// One component of a report: present when one of its option bits is set, or always without one.
struct ReportRow {
    u16 option;
    u8 type; // of a value at an address
    const void *(*address)(const RCB *rcb, const RptEntry *entry);
};
using Place = const void *;
constexpr ReportRow headRows[] = {
    {0, TypeVisString65, [](const RCB *rcb, const RptEntry *) -> Place { return rcb->RptID; }},
    {0, TypeOptFlds, [](const RCB *rcb, const RptEntry *) -> Place { return &rcb->OptFlds; }},
    {OptTimeStamp, TypeEntryTime, [](const RCB *, const RptEntry *entry) -> Place { return &entry->time; }},
    {OptDataSet, TypeVisString255, [](const RCB *rcb, const RptEntry *) -> Place { return rcb->DatSet; }},
    {OptBufOvfl, TypeBoolean, [](const RCB *rcb, const RptEntry *) -> Place { return &rcb->bufOvfl; }},
    {OptEntryID, TypeOctet8, [](const RCB *, const RptEntry *entry) -> Place { return entry->entryId; }},
    {OptConfRev, TypeInt32U, [](const RCB *rcb, const RptEntry *) -> Place { return &rcb->ConfRev; }},
    {OptSegmentation, TypeInt16U, [](const RCB *, const RptEntry *) -> Place { return &always0; }},
    {OptSegmentation, TypeBoolean, [](const RCB *, const RptEntry *) -> Place { return &always0; }},
};
constexpr std::size_t sqNumRow = 2; // SqNum, whose type goes by the kind of block, stands before it

// Calls `use(member, index)` for each included member.
template <class Use> void forEachIncluded(u32 memberNum, const u8 *included, Use use) {
    for (u32 i = 0; i < memberNum; i++) {
        if (included[i] == 1) {
            use(i);
        }
    }
}

} // namespace

void fill_list_sucess(AsnList *list, u8 type, const void *address) {
    getDataFromType(appendSuccess(list), type, address);
}

void fill_include_bits(AsnList *list, u32 memberNum, const u8 *included) {
    Data *data = appendSuccess(list);
    data->choiceId = Data::bitString;
    data->bits = MallocOf<AsnBits>();
    data->bits->bitLen = memberNum;
    data->bits->bits = MallocArray<u8>((memberNum + 7) / 8 + 1);
    for (u32 i = 0; i < memberNum; i++) {
        if (included[i] != 0) {
            data->bits->bits[i / 8] |= static_cast<u8>(0x80U >> (i % 8));
        }
    }
}

void fill_ds_ref(AsnList *list, const DataSet *dataSet, const u8 *included) {
    const AsnListElement *element = dataSet->members->first;
    for (u32 i = 0; element != nullptr; element = element->next, i++) {
        if (included[i] != 1) {
            continue;
        }
        const ObjectNameSeq *name = asnListValue<ObjectName>(element)->domain_specific;
        const auto text = [](const AsnOcts &octs) {
            return std::string_view(reinterpret_cast<const char *>(octs.octs), octs.octetLen);
        };
        char reference[300]; // of two MMS identifiers
        std::snprintf(reference, sizeof reference, "%.*s/%.*s", static_cast<int>(text(name->domainId).size()),
                      text(name->domainId).data(), static_cast<int>(text(name->itemId).size()),
                      text(name->itemId).data());
        fill_list_sucess(list, TypeVisString65, reference);
    }
}

void fill_ds_data(AsnList *list, u32 memberNum, Data *data, const u8 *included) {
    forEachIncluded(memberNum, included, [&](u32 i) { appendSuccess(list, &data[i]); });
}

void rpt_rcb_model(InformationReport *report, const RCB *rcb, const RptEntry *entry) {
    report->variableAccessSpecification = MallocOf<VariableAccessSpecification>();
    report->variableAccessSpecification->choiceId = VariableAccessSpecification::variableListName;
    auto *name = report->variableAccessSpecification->variableListName_ = MallocOf<ObjectName>();
    name->choiceId = ObjectName::vmdSpecific;
    name->vmd_specific = MallocOf<AsnOcts>();
    *name->vmd_specific = newOcts<AsnOcts>({'R', 'P', 'T'});

    AsnList *list = report->listOfAccessResult = asnListNewPtr();
    for (std::size_t i = 0; i < std::size(headRows); i++) {
        if (i == sqNumRow && (rcb->OptFlds & OptSeqNum) != 0) {
            if (rcb->buffered != 0) {
                fill_list_sucess(list, TypeInt16U, &rcb->SqNum);
            } else {
                fill_list_sucess(list, TypeInt8U, &rcb->SqNum8);
            }
        }
        const ReportRow &row = headRows[i];
        if (row.option == 0 || (rcb->OptFlds & row.option) != 0) {
            fill_list_sucess(list, row.type, row.address(rcb, entry));
        }
    }
    const DataSet *dataSet = rcb->pDataSet;
    fill_include_bits(list, dataSet->memberNum, entry->included);
    if ((rcb->OptFlds & OptDataRef) != 0) {
        fill_ds_ref(list, dataSet, entry->included);
    }
    fill_ds_data(list, dataSet->memberNum, entry->data, entry->included);
    if ((rcb->OptFlds & OptReason) != 0) {
        forEachIncluded(dataSet->memberNum, entry->included,
                        [&](u32 i) { fill_list_sucess(list, TypeTrgOps, &entry->reasons[i]); });
    }
}

void rpt_apdu_mms(MMSpdu *mms, const RCB *rcb, const RptEntry *entry) {
    mms->choiceId = MMSpdu::unconfirmedPDU;
    mms->unconfirmed_PDU = MallocOf<Unconfirmed_PDU>();
    auto *service = mms->unconfirmed_PDU->service = MallocOf<UnconfirmedService>();
    service->choiceId = UnconfirmedService::informationReport;
    service->informationReport_ = MallocOf<InformationReport>();
    rpt_rcb_model(service->informationReport_, rcb, entry);
}

void rpt_ppdu_8823(Ppdu8823 *ppdu, const RCB *rcb, const RptEntry *entry) {
    rpt_apdu_mms(newMmsData(ppdu), rcb, entry);
}

bool rptPackProc(PacketBuf *pdu, const RCB *rcb, const RptEntry *entry) {
    pdu->ppduPresent = 1;
    rpt_ppdu_8823(&pdu->ppdu, rcb, entry);
    pdu->spduPresent = 1;
    rpt_spdu_8327(&pdu->spdu);
    pdu->cotpPresent = 1;
    rpt_tpdu_cotp(&pdu->cotp);
    pdu->tpktPresent = 1;
    rpt_tpdu_tpkt(&pdu->tpkt);
    return true;
}

void freeReport(PacketBuf *pdu, const RCB *rcb, const RptEntry *entry) {
    const Unconfirmed_PDU *unconfirmed = firstMmsPdu(&pdu->ppdu.userData)->unconfirmed_PDU;
    const AsnList *results = unconfirmed->service->informationReport_->listOfAccessResult;
    for (AsnListElement *element = results->first; element != nullptr; element = element->next) {
        auto *result = asnListValue<AccessResult>(element);
        if (result->success_ >= entry->data && result->success_ < entry->data + rcb->pDataSet->memberNum) {
            result->success_ = nullptr;
        }
    }
    initPdu(pdu, false);
}

void reportMakerInit(ReportMaker *maker) {
    // Octets of a tree for each octet of its encoding, generously; a larger one is finished on the heap.
    constexpr std::size_t treeOctets = 16;
    initPdu(&maker->pdu, true);
    arenaInit(&maker->arena, treeOctets * externGlbCfg.sendBufSize);
    maker->buffer = MallocArray<u8>(externGlbCfg.sendBufSize);
}

void reportMakerFree(ReportMaker *maker) {
    Free(maker->arena.base);
    Free(maker->buffer);
    *maker = {};
}

u32 encodeReport(ReportMaker *maker, const RCB *rcb, const RptEntry *entry) {
    const ArenaScope scope(&maker->arena);
    rptPackProc(&maker->pdu, rcb, entry);
    const u32 length = encPacket(&maker->pdu, maker->buffer, externGlbCfg.sendBufSize);
    if (maker->arena.full) {
        freeReport(&maker->pdu, rcb, entry);
    }
    initPdu(&maker->pdu, true); // a tree that lies in the arena alone needs no walk
    return length;
}

} // namespace ied
