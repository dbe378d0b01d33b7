// Control blocks as nodes: fixed lists of attributes (IEC 61850-8-1 clauses 16 to 18).
#include "model-gen/c/modelBuild.h"
#include "model-gen/c/modelIndex.h"
#include "model-gen/c/sclFault.h"

#include <span>

namespace ied {

namespace {

struct Leaf {
    const char *name;
    u8 nodeType;
};

constexpr Leaf sgcbLeaves[] = {
    {"NumOfSG", TypeInt8U},   {"ActSG", TypeInt8U},      {"EditSG", TypeInt8U},
    {"CnfEdit", TypeBoolean}, {"LActTm", TypeTimestamp},
};

constexpr Leaf gocbLeaves[] = {
    {"GoEna", TypeBoolean},  {"GoID", TypeVisString65}, {"DatSet", TypeVisString65},
    {"ConfRev", TypeInt32U}, {"NdsCom", TypeBoolean},
};

constexpr Leaf dstAddressLeaves[] = {
    {"Addr", TypeOctet6},
    {"PRIORITY", TypeInt8U},
    {"VID", TypeInt16U},
    {"APPID", TypeInt16U},
};

constexpr Leaf brcbLeaves[] = {
    {"RptID", TypeVisString65},     {"RptEna", TypeBoolean},
    {"DatSet", TypeVisString65},    {"ConfRev", TypeInt32U},
    {"OptFlds", TypeOptFlds},       {"BufTm", TypeInt32U},
    {"SqNum", TypeInt16U},          {"TrgOps", TypeTrgOps},
    {"IntgPd", TypeInt32U},         {"GI", TypeBoolean},
    {"PurgeBuf", TypeBoolean},      {"EntryID", TypeOctet8},
    {"TimeOfEntry", TypeEntryTime},
};

constexpr Leaf urcbLeaves[] = {
    {"RptID", TypeVisString65}, {"RptEna", TypeBoolean},  {"Resv", TypeBoolean}, {"DatSet", TypeVisString65},
    {"ConfRev", TypeInt32U},    {"OptFlds", TypeOptFlds}, {"BufTm", TypeInt32U}, {"SqNum", TypeInt16U},
    {"TrgOps", TypeTrgOps},     {"IntgPd", TypeInt32U},   {"GI", TypeBoolean},
};

constexpr Leaf lcbLeaves[] = {
    {"LogEna", TypeBoolean},      {"LogRef", TypeVisString65},  {"DatSet", TypeVisString65},
    {"OldEntrTm", TypeEntryTime}, {"NewEntrTm", TypeEntryTime}, {"OldEntr", TypeOctet8},
    {"NewEntr", TypeOctet8},      {"TrgOps", TypeTrgOps},       {"IntgPd", TypeInt32U},
};

void addLeaves(GenNode *parent, const char *fc, std::span<const Leaf> leaves) {
    for (const Leaf &leaf : leaves) {
        modelFillElem(parent, leaf.name, fc, leaf.nodeType);
    }
}

GenNode *addBlock(GenNode *lnNode, const char *fc, const char *name, u8 cdc, std::span<const Leaf> leaves) {
    GenNode *block = makeChild(modelGetFCNode(lnNode, fc), name, fc, cdc, LevelDO);
    addLeaves(block, fc, leaves);
    return block;
}

constexpr int maxInstances = 99; // what two digits can number

} // namespace

void modelGetSGCB(GenNode *lnNode) {
    addBlock(lnNode, "SP", "SGCB", CdcSGCB, sgcbLeaves);
}

void modelGetGoCB(GenNode *lnNode, const scl::GSEControl *gse) {
    GenNode *block = addBlock(lnNode, "GO", joinName({gse->name}).text, CdcGOCB, gocbLeaves);
    GenNode *address = modelFillElem(block, "DstAddress", "GO", TypeInner);
    address->level = LevelInner;
    addLeaves(address, "GO", dstAddressLeaves);
}

int reportInstances(const scl::ReportControl *report, const char *ln) {
    const int count = report->max != nullptr ? decimalI32(report->max) : 1;
    if (count > maxInstances) {
        sclFault(report->line,
                 "ReportControl \"%.60s\" of %s has RptEnabled max=\"%.20s\": at most %d instances",
                 report->name != nullptr ? report->name : "", ln, report->max, maxInstances);
    }
    return count;
}

void modelGetRPListALL(GenNode *lnNode, scl::LN *ln) {
    for (const scl::ReportControl &report : records<&scl::ReportControl::link>(ln->reportControls)) {
        const int count = reportInstances(&report, nodePath(lnNode).c_str());
        const bool buffered = isTrue(report.buffered);
        for (int i = 1; i <= count; ++i) {
            const NodeName name = blockName(report.name, i, count);
            if (buffered) {
                addBlock(lnNode, "BR", name.text, CdcRCB, brcbLeaves);
            } else {
                addBlock(lnNode, "RP", name.text, CdcRCB, urcbLeaves);
            }
        }
    }
}

void modelGetLCBListAll(GenNode *lnNode, scl::LN *ln) {
    for (const scl::LogControl &log : records<&scl::LogControl::link>(ln->logControls)) {
        addBlock(lnNode, "LG", joinName({log.name}).text, CdcLCB, lcbLeaves);
    }
}

} // namespace ied
