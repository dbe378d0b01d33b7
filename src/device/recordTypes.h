// Which record holds the values of which common data class.
#pragma once

#include "basicInterface/cdcRecord.h"
#include "model-gen/c/genNode.h"
#include "proto-process/c/controlModel.h"

#include <type_traits>

namespace ied {

template <class Record, u8... cdcs> struct RecordType {
    using type = Record;
    static constexpr bool holds(u8 cdc) { return ((cdc == cdcs) || ...); }
};

template <class... Types> struct RecordTypeList {
    // Calls `use(type)` for the record type of a CDC; nothing for a CDC without a record.
    template <class Use> static constexpr void find(u8 cdc, Use use) {
        (void)((Types::holds(cdc) ? (use(Types{}), true) : false) || ...);
    }
};

using RecordTypes =
    RecordTypeList<RecordType<SPS, CdcSPS, CdcDPS, CdcENS>, RecordType<INS, CdcINS>, RecordType<ACT, CdcACT>,
                   RecordType<ACD, CdcACD>, RecordType<BCR, CdcBCR>, RecordType<MV, CdcMV>,
                   RecordType<CMV, CdcCMV>, RecordType<WYE, CdcWYE, CdcDEL>, RecordType<SEQ, CdcSEQ>,
                   RecordType<HMV, CdcHMV>, RecordType<HWYE, CdcHWYE, CdcHDEL>,
                   RecordType<CtlObj, CdcSPC, CdcDPC, CdcINC, CdcENC>, RecordType<SPG, CdcSPG, CdcCURVE>,
                   RecordType<ING, CdcING>, RecordType<ASG, CdcASG>, RecordType<ENG, CdcENG>,
                   RecordType<ORG, CdcORG>, RecordType<DPL, CdcDPL>, RecordType<LPL, CdcLPL>,
                   RecordType<HST, CdcHST>>;

struct RecordShape {
    u32 size; // 0 for a CDC without a record
    u32 align;
};

constexpr RecordShape recordShape(u8 cdc) {
    RecordShape shape{0, 1};
    RecordTypes::find(cdc, [&shape](auto type) {
        using Record = typename decltype(type)::type;
        shape = {sizeof(Record), alignof(Record)};
    });
    return shape;
}

// Whether the record of a CDC is a T.
template <class T> constexpr bool isRecordOf(u8 cdc) {
    bool same = false;
    RecordTypes::find(cdc, [&same](auto type) { same = std::is_same_v<typename decltype(type)::type, T>; });
    return same;
}

} // namespace ied
