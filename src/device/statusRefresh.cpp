#include "device/statusRefresh.h"

#include "basicInterface/clock.h"
#include "device/region.h"

namespace ied {

namespace {

template <std::size_t N> std::array<SPS *, N> numbered(MirrorPath<SPS> first) {
    std::array<SPS *, N> out{};
    for (std::size_t i = 0; i < N; i++) {
        out[i] = mirrorRow<SPS>(first) + i;
    }
    return out;
}

} // namespace

const std::array<SPS *, 8> DISTAddrList = numbered<8>("ST.DI1");
const std::array<CtlObj *, 6> DOSTAddrList = {
    &mirror<CtlObj>("CTL.RO1"), &mirror<CtlObj>("CTL.RO2"), &mirror<CtlObj>("CTL.RO3"),
    &mirror<CtlObj>("CTL.RO4"), &mirror<CtlObj>("CTL.DO1"), &mirror<CtlObj>("CTL.DO2"),
};
const std::array<SPS *, 32> SPSTAddrList = numbered<32>("ST.SP1");
const std::array<SPS *, 8> LGSTAddrList = numbered<8>("ST.logic1");
const std::array<SPS *, 18> CHKSTAddrList = {
    &mirror<SPS>("ST.dspFlt"),
    &mirror<SPS>("ST.adFlt"),
    &mirror<SPS>("ST.batFlt"),
    &mirror<SPS>("ST.pwrFlt"),
    &mirror<SPS>("ST.flashFlt"),
    &mirror<SPS>("ST.framFlt"),
    &mirror<SPS>("ST.sysParaFlt"),
    &mirror<SPS>("ST.spParaFlt"),
    &mirror<SPS>("ST.snapParaFlt"),
    &mirror<SPS>("ST.wavParaFlt"),
    &mirror<SPS>("ST.pqParaFlt"),
    &mirror<SPS>("ST.engParaFlt"),
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    &mirror<SPS>("ST.secParaFlt"),
    &mirror<SPS>("ST.commParaFlt"),
};

void stDataInit() {
    TimeStamp now;
    getTimeStamp(&now);
    for (u32 i = 0; i < DISTAddrList.size(); i++) {
        storeState(*DISTAddrList[i], 0, regionLoad(region::DIMod, i) != 0 ? qualityInvalid : qualityGood,
                   now);
    }
    for (u32 i = 0; i < DOSTAddrList.size(); i++) {
        const bool local = i >= relayNum && regionLoad(region::DOMod, i - relayNum) != 0;
        storeState(*DOSTAddrList[i], 0, local ? qualityInvalid : qualityGood, now);
    }
    for (SPS *record : SPSTAddrList) {
        storeState(*record, 0, qualityGood, now);
    }
    for (SPS *record : LGSTAddrList) {
        storeState(*record, 0, qualityGood, now);
    }
    const u32 word = regionLoad(region::checkWord);
    const TimeStamp wordTime = regionLoad(region::checkTime);
    for (u32 i = 0; i < CHKSTAddrList.size(); i++) {
        if (CHKSTAddrList[i] != nullptr && i != checkBattery) {
            storeState(*CHKSTAddrList[i], static_cast<u8>(word >> i & 1), qualityGood, wordTime);
        }
    }
}

void RDDataInit() {
    TimeStamp now;
    getTimeStamp(&now);
    for (SPS *record : {&mirror<SPS>("RD.RcdStr1"), &mirror<SPS>("RD.RcdMade1"), &mirror<SPS>("RD.RcdStr2"),
                        &mirror<SPS>("RD.RcdMade2")}) {
        storeStamp(*record, qualityGood, now);
    }
    for (u32 group = 0; group < 2; group++) {
        storeState(mirrorOf<INS>("RD.FltNum1", "RD.FltNum2", group),
                   static_cast<i32>(regionLoad(region::waveStart, group)), qualityGood, now);
    }
}

} // namespace ied
