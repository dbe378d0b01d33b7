// Report control blocks over the small model: made without an SCL file, filled by changes of its
// values, written as a client's task does.
#pragma once

#include "basicInterface/clock.h"
#include "basicInterface/complexData.h"
#include "basicInterface/memory.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/client.h"
#include "proto-process/c/reportModel.h"
#include "proto-process/c/services.h"
#include "tests/support/hex.h"
#include "tests/support/smallModel.h"

#include <deque>

namespace ied::test {

// What the ReportControl of an SCL file says. The kind goes by the functional constraint in the name.
struct Block {
    std::string name;
    std::string dataSet;
    u8 trgOps = changeTriggers | TrgPeriod | TrgGi;
    u16 optFlds = 0;
    u32 bufTm = 0;
    u32 intgPd = 0;
    u32 confRev = 1;
    std::string rptID = "";
};

// One at a time. The clock stands at 1,600,000,000 s; ticks are of 10 ms.
class ReportModel : public SmallModel {
  public:
    ReportModel() {
        heldClockStart(1'600'000'000, true);
        initListHead(&ReportCfgHead);
        ReportCfgHead.last = &ReportCfgHead;
        gCBNum = {};
    }
    ~ReportModel() {
        forget();
        heldClockStop();
    }

    // The record of a block, in the list of them; it has no node yet.
    ReportCfg *configure(Block block) {
        Block &kept = blocks.emplace_back(std::move(block));
        ReportCfg &cfg = configured.emplace_back();
        cfg.name = kept.name.data();
        cfg.rtpID = kept.rptID.empty() ? nullptr : kept.rptID.data();
        cfg.dsName = kept.dataSet.empty() ? nullptr : kept.dataSet.data();
        cfg.trgOps = kept.trgOps;
        cfg.optFlds = kept.optFlds;
        cfg.bufTm = kept.bufTm;
        cfg.intgPd = kept.intgPd;
        cfg.buffered = kept.name.find("$BR$") != std::string::npos ? 1 : 0;
        cfg.confRev = kept.confRev;
        listAddTail(&cfg.link, &ReportCfgHead);
        gCBNum.rcbNum++;
        gCBNum.brcbNum = static_cast<u16>(gCBNum.brcbNum + cfg.buffered);
        return &cfg;
    }
    // The node of a block with the attributes of its kind (IEC 61850-8-1 17.1).
    GenNode *blockNode(const std::string &reference) {
        const std::size_t name = reference.rfind('$');
        const std::size_t fc = reference.rfind('$', name - 1);
        GenNode *ln = node(reference.substr(0, fc));
        const std::string fcName = reference.substr(fc + 1, name - fc - 1);
        GenNode *constraint = childByName(ln, fcName.c_str());
        if (constraint == nullptr) {
            constraint = add(ln, fcName.c_str(), LevelFC, TypeInner);
        }
        GenNode *made = add(constraint, reference.substr(name + 1).c_str(), LevelDO, TypeInner);
        const u8 types[] = {TypeVisString65, TypeBoolean, TypeBoolean, TypeVisString65, TypeInt32U,
                            TypeOptFlds,     TypeInt32U,  TypeInt32U,  TypeTrgOps,      TypeInt32U,
                            TypeBoolean,     TypeBoolean, TypeOctet8,  TypeEntryTime};
        const u8 *type = types;
        for (const std::string &attribute : parts("RptID RptEna Resv DatSet ConfRev OptFlds BufTm SqNum "
                                                  "TrgOps IntgPd GI PurgeBuf EntryID TimeOfEntry",
                                                  ' ')) {
            leaf(made, attribute.c_str(), *type++);
        }
        return made;
    }
    void block(const Block &what) {
        configure(what);
        blockNode(what.name);
    }
    bool start() { return rptModelInit(); }

    // A write of a client that passed the checks of the service: the error, or -1.
    int write(const RCB &rcb, const char *attribute, Data *data, u8 client = 0) {
        i8 error = DaeNone;
        const bool written =
            setRCBValues(data, node(std::string(rcb.rcbRef) + "$" + attribute), &error, client);
        freeHeap(data);
        return written == (error == DaeNone) ? error : -100;
    }
    int number(const RCB &rcb, const char *attribute, u32 value, u8 client = 0) {
        return write(rcb, attribute, heapNumber(Data::unsignedInt, value), client);
    }
    int flag(const RCB &rcb, const char *attribute, bool value, u8 client = 0) {
        return write(rcb, attribute, heapNumber(Data::boolean, value ? 1 : 0), client);
    }
    int position(const RCB &rcb, const std::string &hex, u8 client = 0) {
        const std::vector<u8> id = octets(hex);
        return write(rcb, "EntryID", heapData(Data::octetString, {id.begin(), id.end()}), client);
    }
    // The value of an attribute as a Read gives it.
    std::string read(const RCB &rcb, const char *attribute) const {
        HeapData value;
        getNodeData(&value.data, node(std::string(rcb.rcbRef) + "$" + attribute), nullptr);
        return show(&value.data);
    }

  private:
    static void forget() {
        for (u32 i = 0; i < gCBNum.rcbNum && aRCBStat != nullptr; ++i) {
            RCBStat &stat = aRCBStat[i];
            if (stat.sem != nullptr) {
                semDelete(stat.sem);
                dsMonitorFree(&stat.monitor);
                mpFree(&stat.pool);
                Free(stat.touched);
            }
        }
        Free(aRCBObj);
        Free(aRCBStat);
        aRCBObj = nullptr;
        aRCBStat = nullptr;
        initListHead(&ReportCfgHead);
        ReportCfgHead.last = &ReportCfgHead;
        gCBNum = {};
    }

    std::deque<Block> blocks;
    std::deque<ReportCfg> configured;
};

} // namespace ied::test
