// How large the reports of a block can grow.
#include "DebugInfo/DebugInfo.h"
#include "basicInterface/dataParts.h"
#include "device/addressBinding.h"
#include "device/externGlbCfg.h"
#include "proto-process/c/reportEncode.h"

#include <cstring>

namespace ied {

namespace {

// Gives all whole numbers of a value these values.
void setNumbers(Data *data, i32 integer, u32 unsignedInt, int depth = 0) {
    if (data->choiceId == Data::integer) {
        data->int_ = integer;
    } else if (data->choiceId == Data::unsignedInt) {
        data->uint_ = unsignedInt;
    } else if (isList(data) && depth < maxWalkDepth) {
        for (MemberCursor member = firstMember(data); member.value() != nullptr; member.advance()) {
            setNumbers(member.value(), integer, unsignedInt, depth + 1);
        }
    }
}

// Gives the first entry of a block every member with its longest encoding, a number of one or two octets
// taken for one of four. Before it is filled, its strings have their full length already.
void widen(RptEntry *entry, u32 memberNum) {
    std::memset(entry->included, 1, memberNum);
    for (u32 member = 0; member < memberNum; member++) {
        setNumbers(&entry->data[member], INT32_MIN, UINT32_MAX);
    }
}
void empty(RptEntry *entry, u32 memberNum) {
    std::memset(entry->included, 0, memberNum);
    for (u32 member = 0; member < memberNum; member++) {
        setNumbers(&entry->data[member], 0, 0);
    }
}

} // namespace

void nameOversizedBlocks() {
    ReportMaker trial{};
    reportMakerInit(&trial);
    for (u32 i = 0; i < gCBNum.rcbNum; i++) {
        RCB widest = aRCBObj[i];
        widest.OptFlds = optFldsMask(&widest);
        widest.SqNum = UINT16_MAX;
        widest.SqNum8 = UINT8_MAX;
        RptEntry *entry = entryAt(widest.pStat, 0);
        widen(entry, widest.pDataSet->memberNum);
        if (encodeReport(&trial, &widest, entry) == 0) {
            dbInfo(
                DbRPT, DbERR, "rptModelInit",
                "Reports of \"%s\" can exceed sendBufSize %u and would be dropped: raise it or shorten the "
                "data set!",
                widest.rcbRef, externGlbCfg.sendBufSize);
        }
        empty(entry, widest.pDataSet->memberNum);
    }
    reportMakerFree(&trial);
}

} // namespace ied
