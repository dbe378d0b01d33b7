// The measurement tables as they are written: one line an object, with the offsets of its sources
// in the shared region. measTables.cpp makes rows of them when it is compiled.
#pragma once

#include "device/measTables.h"

#include <string_view>

namespace ied::measLines {

// Source of one component: a magnitude, an angle or both, active in the object's wiring mode unless
// the component says otherwise.
struct Source {
    u32 magnitude = 0;
    u32 angle = 0;
    u8 wiring = ofObject;
    u8 angleWiring = ofMagnitude;

    static constexpr u8 ofObject = 0xFF;
    static constexpr u8 ofMagnitude = 0xFF;
};

// One object with the sources of its components in the order phsA, phsB, phsC, neut (a DEL or HDEL:
// phsAB, phsBC, phsCA; a SEQ: c1, c2, c3). An MV or BCR has one. With numbers, the object's name is
// followed by each number from `first` to `last`, its source moving on by `step`.
struct MeasLine {
    std::string_view object;
    u8 wiring;
    Source sources[4];
    u8 first = 0, last = 0;
    u32 step = 0;
};

// ------------------------------------------------------------------------------ the sources

inline constexpr MeasLine basicLines[] = {
    {"RT.PhV", wye, {{21396, 21424}, {21452, 21480}, {21508, 21536}, {21600, 0, anyWiring}}},
    {"RT.AvgPhV", wye, {{21564}}},
    {"RT.PPV",
     anyWiring,
     {{21400, 21424, anyWiring, delta}, {21456, 21480, anyWiring, delta}, {21512, 21536, anyWiring, delta}}},
    {"RT.AvgPPV", anyWiring, {{21568}}},
    {"RT.A", anyWiring, {{21404, 21426}, {21460, 21482}, {21516, 21538}, {21604}}},
    {"RT.AvgA", anyWiring, {{21572}}},
    {"RT.TotW", anyWiring, {{21576}}},
    {"RT.TotVAr", anyWiring, {{21580}}},
    {"RT.TotVA", anyWiring, {{21584}}},
    {"RT.TotPF", anyWiring, {{21588}}},
    {"RT.W", wye, {{21408}, {21464}, {21520}}},
    {"RT.VAr", wye, {{21412}, {21468}, {21524}}},
    {"RT.VA", wye, {{21416}, {21472}, {21528}}},
    {"RT.PF", wye, {{21420}, {21476}, {21532}}},
    {"RT.Hz", anyWiring, {{58616}}},
    {"RT.HzDev", anyWiring, {{58620}}},
    {"RT.PhVDev", wye, {{21660}, {21664}, {21668}}},
    {"RT.PPVDev", delta, {{21660}, {21664}, {21668}}},
};

inline constexpr MeasLine harmImBalLines[] = {
    {"RT.HPhVArr", wye, {{21724}, {22388}, {23052}, {23716}}},
    {"RT.HPPVArr", delta, {{21724}, {22388}, {23052}}},
    {"RT.HAArr", anyWiring, {{24380}, {25044}, {25708}, {26372}}},
    {"RT.ThdPhV", wye, {{21980}, {22644}, {23308}, {23972, 0, anyWiring}}},
    {"RT.ThdPPV", delta, {{21980}, {22644}, {23308}}},
    {"RT.ThdA", anyWiring, {{24636}, {25300}, {25964}, {26628}}},
    {"RT.ThdOddPhV", wye, {{21984}, {22648}, {23312}, {23976, 0, anyWiring}}},
    {"RT.ThdOddPPV", delta, {{21984}, {22648}, {23312}}},
    {"RT.ThdOddA", anyWiring, {{24640}, {25304}, {25968}, {26632}}},
    {"RT.ThdEvnPhV", wye, {{21988}, {22652}, {23316}, {23980, 0, anyWiring}}},
    {"RT.ThdEvnPPV", delta, {{21988}, {22652}, {23316}}},
    {"RT.ThdEvnA", anyWiring, {{24644}, {25308}, {25972}, {26636}}},
    {"RT.HKf", anyWiring, {{30124}, {30128}, {30132}, {30136}}},
    {"RT.IHPhVConArr", wye, {{21992}, {22656}, {23320}, {23984}}},
    {"RT.IHPPVConArr", delta, {{21992}, {22656}, {23320}}},
    {"RT.IHAConArr", anyWiring, {{24648}, {25312}, {25976}, {26640}}},
    {"RT.IThdPhV", wye, {{22248}, {22912}, {23576}, {24240, 0, anyWiring}}},
    {"RT.IThdPPV", delta, {{22248}, {22912}, {23576}}},
    {"RT.IThdA", anyWiring, {{24904}, {25568}, {26232}, {26896}}},
    {"RT.IThdOddPhV", wye, {{22252}, {22916}, {23580}, {24244, 0, anyWiring}}},
    {"RT.IThdOddPPV", delta, {{22252}, {22916}, {23580}}},
    {"RT.IThdOddA", anyWiring, {{24908}, {25572}, {26236}, {26900}}},
    {"RT.IThdEvnPhV", wye, {{22256}, {22920}, {23584}, {24248, 0, anyWiring}}},
    {"RT.IThdEvnPPV", delta, {{22256}, {22920}, {23584}}},
    {"RT.IThdEvnA", anyWiring, {{24912}, {25576}, {26240}, {26904}}},
    {"RT.IDPhVCon", wye, {{21992}, {22656}, {23320}, {23984, 0, anyWiring}}},
    {"RT.IDPPVCon", delta, {{21992}, {22656}, {23320}}},
    {"RT.IDACon", anyWiring, {{24648}, {25312}, {25976}, {26640}}},
    {"RT.DPhV", wye, {{30172, 22262}, {30200, 22926}, {30228, 23590}, {30292, 24254, anyWiring}}},
    {"RT.AvgDPhV", wye, {{30256}}},
    {"RT.DPPV", delta, {{30172, 22262}, {30200, 22926}, {30228, 23590}}},
    {"RT.AvgDPPV", delta, {{30256}}},
    {"RT.DA", anyWiring, {{30180, 24918}, {30208, 25582}, {30236, 26246}, {30296, 26910}}},
    {"RT.AvgDA", anyWiring, {{30264}}},
    {"RT.TotDW", anyWiring, {{30268}}},
    {"RT.TotDVAr", anyWiring, {{30272}}},
    {"RT.TotDVA", anyWiring, {{30276}}},
    {"RT.TotDPF", anyWiring, {{30280}}},
    {"RT.DW", wye, {{30184}, {30212}, {30240}}},
    {"RT.DVAr", wye, {{30188}, {30216}, {30244}}},
    {"RT.DVA", wye, {{30192}, {30220}, {30248}}},
    {"RT.DPF", wye, {{30196}, {30224}, {30252}}},
    {"RT.ImbZrV", anyWiring, {{30328}}},
    {"RT.ImbNgV", anyWiring, {{30324}}},
    {"RT.ImbZrA", anyWiring, {{30336}}},
    {"RT.ImbNgA", anyWiring, {{30332}}},
    {"RT.seqV", anyWiring, {{30304}, {30308}, {30300}}},
    {"RT.seqA", anyWiring, {{30316}, {30320}, {30312}}},
};

inline constexpr MeasLine pstLines[] = {
    {"RT.PhVPst", wye, {{58640}, {58644}, {58648}}},
    {"RT.PPVPst", delta, {{58640}, {58644}, {58648}}},
};

inline constexpr MeasLine pltLines[] = {
    {"RT.PhVPlt", wye, {{58668}, {58672}, {58676}}},
    {"RT.PPVPlt", delta, {{58668}, {58672}, {58676}}},
};

inline constexpr MeasLine diCntLines[] = {
    {"ENG.PlsCnt", anyWiring, {{16654072}}, 1, 8, 4},
};

inline constexpr MeasLine energyLines[] = {
    {"ENG.DmdWh", anyWiring, {{16639556}}},
    {"ENG.SupWh", anyWiring, {{16639564}}},
    {"ENG.TotWh", anyWiring, {{16639572}}},
    {"ENG.SumWh", anyWiring, {{16639580}}},
    {"ENG.DmdVArh", anyWiring, {{16639588}}},
    {"ENG.SupVArh", anyWiring, {{16639596}}},
    {"ENG.TotVArh", anyWiring, {{16639604}}},
    {"ENG.SumVArh", anyWiring, {{16639612}}},
    {"ENG.TotVAh", anyWiring, {{16639620}}},
    {"ENG.DmdWhD", anyWiring, {{16639628}}},
    {"ENG.SupWhD", anyWiring, {{16639636}}},
    {"ENG.DmdVArhD", anyWiring, {{16639660}}},
    {"ENG.SupVArhD", anyWiring, {{16639668}}},
    {"ENG.DmdWhHt", anyWiring, {{16639700}}},
    {"ENG.SupWhHt", anyWiring, {{16639708}}},
    {"ENG.DmdVArhHt", anyWiring, {{16639732}}},
    {"ENG.SupVArhHt", anyWiring, {{16639740}}},
    {"ENG.DmdWhH ENG.DmdVArhH", anyWiring, {{16639772}, {16639804}}, 2, 31, 72},
};

inline constexpr MeasLine demandLines[] = {
    {"DMD.avg.PhV", wye, {{16647032}, {16647044}, {16647056}, {16647176, 0, anyWiring}}},
    {"DMD.avg.AvgPhV", wye, {{16647068}}},
    {"DMD.avg.PPV", anyWiring, {{16647080}, {16647092}, {16647104}}},
    {"DMD.avg.AvgPPV", anyWiring, {{16647116}}},
    {"DMD.avg.A", anyWiring, {{16647128}, {16647140}, {16647152}, {16647188}}},
    {"DMD.avg.AvgA", anyWiring, {{16647164}}},
    {"DMD.avg.TotW", anyWiring, {{16647236}}},
    {"DMD.avg.TotVAr", anyWiring, {{16647284}}},
    {"DMD.avg.TotVA", anyWiring, {{16647332}}},
    {"DMD.avg.TotPF", anyWiring, {{16647380}}},
    {"DMD.avg.W", wye, {{16647200}, {16647212}, {16647224}}},
    {"DMD.avg.VAr", wye, {{16647248}, {16647260}, {16647272}}},
    {"DMD.avg.VA", wye, {{16647296}, {16647308}, {16647320}}},
    {"DMD.avg.PF", wye, {{16647344}, {16647356}, {16647368}}},
    {"DMD.avg.Hz", anyWiring, {{16647392}}},
    {"DMD.avg.HzDev", anyWiring, {{16647440}}},
    {"DMD.avg.PhVDev", wye, {{16647404}, {16647416}, {16647428}}},
    {"DMD.avg.PPVDev", delta, {{16647404}, {16647416}, {16647428}}},
    {"DMD.avg.ImbZrV", anyWiring, {{16647464}}},
    {"DMD.avg.ImbNgV", anyWiring, {{16647452}}},
    {"DMD.avg.ImbZrA", anyWiring, {{16647488}}},
    {"DMD.avg.ImbNgA", anyWiring, {{16647476}}},
    {"DMD.avg.HKf", anyWiring, {{16647500}, {16647512}, {16647524}, {16647536}}},
    {"DMD.avg.ThdPhV", wye, {{16647548}, {16647560}, {16647572}, {16647584, 0, anyWiring}}},
    {"DMD.avg.ThdPPV", delta, {{16647548}, {16647560}, {16647572}}},
    {"DMD.avg.ThdA", anyWiring, {{16647596}, {16647608}, {16647620}, {16647632}}},
    {"DMD.avg.ThdOddPhV", wye, {{16647644}, {16647656}, {16647668}, {16647680, 0, anyWiring}}},
    {"DMD.avg.ThdOddPPV", delta, {{16647644}, {16647656}, {16647668}}},
    {"DMD.avg.ThdOddA", anyWiring, {{16647692}, {16647704}, {16647716}, {16647728}}},
    {"DMD.avg.ThdEvnPhV", wye, {{16647740}, {16647752}, {16647764}, {16647776, 0, anyWiring}}},
    {"DMD.avg.ThdEvnPPV", delta, {{16647740}, {16647752}, {16647764}}},
    {"DMD.avg.ThdEvnA", anyWiring, {{16647788}, {16647800}, {16647812}, {16647824}}},
    {"DMD.avg.HPhVArr", wye, {{16647836}, {16647848}, {16647860}, {16647872}}},
    {"DMD.avg.HPPVArr", delta, {{16647836}, {16647848}, {16647860}}},
    {"DMD.avg.HAArr", anyWiring, {{16647884}, {16647896}, {16647908}, {16647920}}},
};

inline constexpr MeasLine preDemandLines[] = {
    {"DMD.pre.PhV", wye, {{16653900}, {16653904}, {16653908}, {16653948, 0, anyWiring}}},
    {"DMD.pre.AvgPhV", wye, {{16653912}}},
    {"DMD.pre.PPV", anyWiring, {{16653916}, {16653920}, {16653924}}},
    {"DMD.pre.AvgPPV", anyWiring, {{16653928}}},
    {"DMD.pre.A", anyWiring, {{16653932}, {16653936}, {16653940}, {16653952}}},
    {"DMD.pre.AvgA", anyWiring, {{16653944}}},
    {"DMD.pre.TotW", anyWiring, {{16653968}}},
    {"DMD.pre.TotVAr", anyWiring, {{16653984}}},
    {"DMD.pre.TotVA", anyWiring, {{16654000}}},
    {"DMD.pre.TotPF", anyWiring, {{16654016}}},
    {"DMD.pre.W", wye, {{16653956}, {16653960}, {16653964}}},
    {"DMD.pre.VAr", wye, {{16653972}, {16653976}, {16653980}}},
    {"DMD.pre.VA", wye, {{16653988}, {16653992}, {16653996}}},
    {"DMD.pre.PF", wye, {{16654004}, {16654008}, {16654012}}},
    {"DMD.pre.Hz", anyWiring, {{16654020}}},
};

inline constexpr MeasLine rtStatLines[] = {
    {"MON.rt.now.max.PhV", wye, {{37310888}, {37310904}, {37310920}, {37311080, 0, anyWiring}}},
    {"MON.rt.now.max.AvgPhV", wye, {{37310936}}},
    {"MON.rt.now.max.PPV", anyWiring, {{37310952}, {37310968}, {37310984}}},
    {"MON.rt.now.max.AvgPPV", anyWiring, {{37311000}}},
    {"MON.rt.now.max.A", anyWiring, {{37311016}, {37311032}, {37311048}, {37311096}}},
    {"MON.rt.now.max.AvgA", anyWiring, {{37311064}}},
    {"MON.rt.now.max.TotW", anyWiring, {{37311112}}},
    {"MON.rt.now.max.TotVAr", anyWiring, {{37311128}}},
    {"MON.rt.now.max.TotVA", anyWiring, {{37311144}}},
    {"MON.rt.now.max.TotPF", anyWiring, {{37311160}}},
    {"MON.rt.now.max.Hz", anyWiring, {{37311176}}},
    {"MON.rt.now.max.HKf", anyWiring, {{37311288}, {37311304}, {37311320}, {37311336}}},
    {"MON.rt.now.max.ThdPhV", wye, {{37311192}, {37311208}, {37311224}, {37311224, 0, never}}},
    {"MON.rt.now.max.ThdPPV", delta, {{37311192}, {37311208}, {37311224}}},
    {"MON.rt.now.max.ThdA", anyWiring, {{37311240}, {37311256}, {37311272}, {37311272, 0, never}}},
    {"MON.rt.now.max.ImbZrV", anyWiring, {{37311368}}},
    {"MON.rt.now.max.ImbNgV", anyWiring, {{37311352}}},
    {"MON.rt.now.max.ImbZrA", anyWiring, {{37311400}}},
    {"MON.rt.now.max.ImbNgA", anyWiring, {{37311384}}},
};

inline constexpr MeasLine demandStatLines[] = {
    {"MON.dmd.now.max.A", anyWiring, {{37312216}, {37312232}, {37312248}, {37312248, 0, never}}},
    {"MON.dmd.now.max.TotW", anyWiring, {{37312168}}},
    {"MON.dmd.now.max.TotVAr", anyWiring, {{37312184}}},
    {"MON.dmd.now.max.TotVA", anyWiring, {{37312200}}},
};

} // namespace ied::measLines
