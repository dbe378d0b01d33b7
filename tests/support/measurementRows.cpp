#include "tests/support/measurementRows.h"

#include <cstdlib>

namespace ied::test {

namespace {

using enum RowWiring;

constexpr const char *whole = "";
constexpr const char *A = "phsA", *B = "phsB", *C = "phsC", *N = "neut";
constexpr const char *AB = "phsAB", *BC = "phsBC", *CA = "phsCA";
constexpr const char *c1 = "c1", *c2 = "c2", *c3 = "c3";
constexpr const char *AHar = "phsAHar", *BHar = "phsBHar", *CHar = "phsCHar", *NHar = "neutHar";
constexpr const char *ABHar = "phsABHar", *BCHar = "phsBCHar", *CAHar = "phsCAHar";

const std::vector<MeasObject> basicObjects = {
    {"PhV", {{A, wye, 21396, 21424}, {B, wye, 21452, 21480}, {C, wye, 21508, 21536}, {N, any, 21600}}},
    {"AvgPhV", {{whole, wye, 21564}}},
    {"PPV", {{AB, any, 21400, 21424, delta}, {BC, any, 21456, 21480, delta}, {CA, any, 21512, 21536, delta}}},
    {"AvgPPV", {{whole, any, 21568}}},
    {"A", {{A, any, 21404, 21426}, {B, any, 21460, 21482}, {C, any, 21516, 21538}, {N, any, 21604}}},
    {"AvgA", {{whole, any, 21572}}},
    {"TotW", {{whole, any, 21576}}},
    {"TotVAr", {{whole, any, 21580}}},
    {"TotVA", {{whole, any, 21584}}},
    {"TotPF", {{whole, any, 21588}}},
    {"W", {{A, wye, 21408}, {B, wye, 21464}, {C, wye, 21520}}},
    {"VAr", {{A, wye, 21412}, {B, wye, 21468}, {C, wye, 21524}}},
    {"VA", {{A, wye, 21416}, {B, wye, 21472}, {C, wye, 21528}}},
    {"PF", {{A, wye, 21420}, {B, wye, 21476}, {C, wye, 21532}}},
    {"Hz", {{whole, any, 58616}}},
    {"HzDev", {{whole, any, 58620}}},
    {"PhVDev", {{A, wye, 21660}, {B, wye, 21664}, {C, wye, 21668}}},
    {"PPVDev", {{AB, delta, 21660}, {BC, delta, 21664}, {CA, delta, 21668}}},
};

const std::vector<MeasObject> harmonicObjects = {
    {"HPhVArr", {{AHar, wye, 21724}, {BHar, wye, 22388}, {CHar, wye, 23052}, {NHar, wye, 23716}}},
    {"HPPVArr", {{ABHar, delta, 21724}, {BCHar, delta, 22388}, {CAHar, delta, 23052}}},
    {"HAArr", {{AHar, any, 24380}, {BHar, any, 25044}, {CHar, any, 25708}, {NHar, any, 26372}}},
    {"ThdPhV", {{A, wye, 21980}, {B, wye, 22644}, {C, wye, 23308}, {N, any, 23972}}},
    {"ThdPPV", {{AB, delta, 21980}, {BC, delta, 22644}, {CA, delta, 23308}}},
    {"ThdA", {{A, any, 24636}, {B, any, 25300}, {C, any, 25964}, {N, any, 26628}}},
    {"ThdOddPhV", {{A, wye, 21984}, {B, wye, 22648}, {C, wye, 23312}, {N, any, 23976}}},
    {"ThdOddPPV", {{AB, delta, 21984}, {BC, delta, 22648}, {CA, delta, 23312}}},
    {"ThdOddA", {{A, any, 24640}, {B, any, 25304}, {C, any, 25968}, {N, any, 26632}}},
    {"ThdEvnPhV", {{A, wye, 21988}, {B, wye, 22652}, {C, wye, 23316}, {N, any, 23980}}},
    {"ThdEvnPPV", {{AB, delta, 21988}, {BC, delta, 22652}, {CA, delta, 23316}}},
    {"ThdEvnA", {{A, any, 24644}, {B, any, 25308}, {C, any, 25972}, {N, any, 26636}}},
    {"HKf", {{A, any, 30124}, {B, any, 30128}, {C, any, 30132}, {N, any, 30136}}},
    {"IHPhVConArr", {{AHar, wye, 21992}, {BHar, wye, 22656}, {CHar, wye, 23320}, {NHar, wye, 23984}}},
    {"IHPPVConArr", {{ABHar, delta, 21992}, {BCHar, delta, 22656}, {CAHar, delta, 23320}}},
    {"IHAConArr", {{AHar, any, 24648}, {BHar, any, 25312}, {CHar, any, 25976}, {NHar, any, 26640}}},
    {"IThdPhV", {{A, wye, 22248}, {B, wye, 22912}, {C, wye, 23576}, {N, any, 24240}}},
    {"IThdPPV", {{AB, delta, 22248}, {BC, delta, 22912}, {CA, delta, 23576}}},
    {"IThdA", {{A, any, 24904}, {B, any, 25568}, {C, any, 26232}, {N, any, 26896}}},
    {"IThdOddPhV", {{A, wye, 22252}, {B, wye, 22916}, {C, wye, 23580}, {N, any, 24244}}},
    {"IThdOddPPV", {{AB, delta, 22252}, {BC, delta, 22916}, {CA, delta, 23580}}},
    {"IThdOddA", {{A, any, 24908}, {B, any, 25572}, {C, any, 26236}, {N, any, 26900}}},
    {"IThdEvnPhV", {{A, wye, 22256}, {B, wye, 22920}, {C, wye, 23584}, {N, any, 24248}}},
    {"IThdEvnPPV", {{AB, delta, 22256}, {BC, delta, 22920}, {CA, delta, 23584}}},
    {"IThdEvnA", {{A, any, 24912}, {B, any, 25576}, {C, any, 26240}, {N, any, 26904}}},
    {"IDPhVCon", {{A, wye, 21992}, {B, wye, 22656}, {C, wye, 23320}, {N, any, 23984}}},
    {"IDPPVCon", {{AB, delta, 21992}, {BC, delta, 22656}, {CA, delta, 23320}}},
    {"IDACon", {{A, any, 24648}, {B, any, 25312}, {C, any, 25976}, {N, any, 26640}}},
    {"DPhV",
     {{A, wye, 30172, 22262}, {B, wye, 30200, 22926}, {C, wye, 30228, 23590}, {N, any, 30292, 24254}}},
    {"AvgDPhV", {{whole, wye, 30256}}},
    {"DPPV", {{AB, delta, 30172, 22262}, {BC, delta, 30200, 22926}, {CA, delta, 30228, 23590}}},
    {"AvgDPPV", {{whole, delta, 30256}}},
    {"DA", {{A, any, 30180, 24918}, {B, any, 30208, 25582}, {C, any, 30236, 26246}, {N, any, 30296, 26910}}},
    {"AvgDA", {{whole, any, 30264}}},
    {"TotDW", {{whole, any, 30268}}},
    {"TotDVAr", {{whole, any, 30272}}},
    {"TotDVA", {{whole, any, 30276}}},
    {"TotDPF", {{whole, any, 30280}}},
    {"DW", {{A, wye, 30184}, {B, wye, 30212}, {C, wye, 30240}}},
    {"DVAr", {{A, wye, 30188}, {B, wye, 30216}, {C, wye, 30244}}},
    {"DVA", {{A, wye, 30192}, {B, wye, 30220}, {C, wye, 30248}}},
    {"DPF", {{A, wye, 30196}, {B, wye, 30224}, {C, wye, 30252}}},
    {"ImbZrV", {{whole, any, 30328}}},
    {"ImbNgV", {{whole, any, 30324}}},
    {"ImbZrA", {{whole, any, 30336}}},
    {"ImbNgA", {{whole, any, 30332}}},
    {"seqV", {{c1, any, 30304}, {c2, any, 30308}, {c3, any, 30300}}},
    {"seqA", {{c1, any, 30316}, {c2, any, 30320}, {c3, any, 30312}}},
};

const std::vector<MeasObject> pstObjects = {
    {"PhVPst", {{A, wye, 58640}, {B, wye, 58644}, {C, wye, 58648}}},
    {"PPVPst", {{AB, delta, 58640}, {BC, delta, 58644}, {CA, delta, 58648}}},
};

const std::vector<MeasObject> pltObjects = {
    {"PhVPlt", {{A, wye, 58668}, {B, wye, 58672}, {C, wye, 58676}}},
    {"PPVPlt", {{AB, delta, 58668}, {BC, delta, 58672}, {CA, delta, 58676}}},
};

const std::vector<MeasObject> demandObjects = {
    {"PhV", {{A, wye, 16647032}, {B, wye, 16647044}, {C, wye, 16647056}, {N, any, 16647176}}},
    {"AvgPhV", {{whole, wye, 16647068}}},
    {"PPV", {{AB, any, 16647080}, {BC, any, 16647092}, {CA, any, 16647104}}},
    {"AvgPPV", {{whole, any, 16647116}}},
    {"A", {{A, any, 16647128}, {B, any, 16647140}, {C, any, 16647152}, {N, any, 16647188}}},
    {"AvgA", {{whole, any, 16647164}}},
    {"TotW", {{whole, any, 16647236}}},
    {"TotVAr", {{whole, any, 16647284}}},
    {"TotVA", {{whole, any, 16647332}}},
    {"TotPF", {{whole, any, 16647380}}},
    {"W", {{A, wye, 16647200}, {B, wye, 16647212}, {C, wye, 16647224}}},
    {"VAr", {{A, wye, 16647248}, {B, wye, 16647260}, {C, wye, 16647272}}},
    {"VA", {{A, wye, 16647296}, {B, wye, 16647308}, {C, wye, 16647320}}},
    {"PF", {{A, wye, 16647344}, {B, wye, 16647356}, {C, wye, 16647368}}},
    {"Hz", {{whole, any, 16647392}}},
    {"HzDev", {{whole, any, 16647440}}},
    {"PhVDev", {{A, wye, 16647404}, {B, wye, 16647416}, {C, wye, 16647428}}},
    {"PPVDev", {{AB, delta, 16647404}, {BC, delta, 16647416}, {CA, delta, 16647428}}},
    {"ImbZrV", {{whole, any, 16647464}}},
    {"ImbNgV", {{whole, any, 16647452}}},
    {"ImbZrA", {{whole, any, 16647488}}},
    {"ImbNgA", {{whole, any, 16647476}}},
    {"HKf", {{A, any, 16647500}, {B, any, 16647512}, {C, any, 16647524}, {N, any, 16647536}}},
    {"ThdPhV", {{A, wye, 16647548}, {B, wye, 16647560}, {C, wye, 16647572}, {N, any, 16647584}}},
    {"ThdPPV", {{AB, delta, 16647548}, {BC, delta, 16647560}, {CA, delta, 16647572}}},
    {"ThdA", {{A, any, 16647596}, {B, any, 16647608}, {C, any, 16647620}, {N, any, 16647632}}},
    {"ThdOddPhV", {{A, wye, 16647644}, {B, wye, 16647656}, {C, wye, 16647668}, {N, any, 16647680}}},
    {"ThdOddPPV", {{AB, delta, 16647644}, {BC, delta, 16647656}, {CA, delta, 16647668}}},
    {"ThdOddA", {{A, any, 16647692}, {B, any, 16647704}, {C, any, 16647716}, {N, any, 16647728}}},
    {"ThdEvnPhV", {{A, wye, 16647740}, {B, wye, 16647752}, {C, wye, 16647764}, {N, any, 16647776}}},
    {"ThdEvnPPV", {{AB, delta, 16647740}, {BC, delta, 16647752}, {CA, delta, 16647764}}},
    {"ThdEvnA", {{A, any, 16647788}, {B, any, 16647800}, {C, any, 16647812}, {N, any, 16647824}}},
    {"HPhVArr", {{AHar, wye, 16647836}, {BHar, wye, 16647848}, {CHar, wye, 16647860}, {NHar, wye, 16647872}}},
    {"HPPVArr", {{ABHar, delta, 16647836}, {BCHar, delta, 16647848}, {CAHar, delta, 16647860}}},
    {"HAArr", {{AHar, any, 16647884}, {BHar, any, 16647896}, {CHar, any, 16647908}, {NHar, any, 16647920}}},
};

const std::vector<MeasObject> preDemandObjects = {
    {"PhV", {{A, wye, 16653900}, {B, wye, 16653904}, {C, wye, 16653908}, {N, any, 16653948}}},
    {"AvgPhV", {{whole, wye, 16653912}}},
    {"PPV", {{AB, any, 16653916}, {BC, any, 16653920}, {CA, any, 16653924}}},
    {"AvgPPV", {{whole, any, 16653928}}},
    {"A", {{A, any, 16653932}, {B, any, 16653936}, {C, any, 16653940}, {N, any, 16653952}}},
    {"AvgA", {{whole, any, 16653944}}},
    {"TotW", {{whole, any, 16653968}}},
    {"TotVAr", {{whole, any, 16653984}}},
    {"TotVA", {{whole, any, 16654000}}},
    {"TotPF", {{whole, any, 16654016}}},
    {"W", {{A, wye, 16653956}, {B, wye, 16653960}, {C, wye, 16653964}}},
    {"VAr", {{A, wye, 16653972}, {B, wye, 16653976}, {C, wye, 16653980}}},
    {"VA", {{A, wye, 16653988}, {B, wye, 16653992}, {C, wye, 16653996}}},
    {"PF", {{A, wye, 16654004}, {B, wye, 16654008}, {C, wye, 16654012}}},
    {"Hz", {{whole, any, 16654020}}},
};

// A value is followed by the time at which it occurred.
const std::vector<MeasObject> rtStatObjects = {
    {"PhV", {{A, wye, 37310888}, {B, wye, 37310904}, {C, wye, 37310920}, {N, any, 37311080}}},
    {"AvgPhV", {{whole, wye, 37310936}}},
    {"PPV", {{AB, any, 37310952}, {BC, any, 37310968}, {CA, any, 37310984}}},
    {"AvgPPV", {{whole, any, 37311000}}},
    {"A", {{A, any, 37311016}, {B, any, 37311032}, {C, any, 37311048}, {N, any, 37311096}}},
    {"AvgA", {{whole, any, 37311064}}},
    {"TotW", {{whole, any, 37311112}}},
    {"TotVAr", {{whole, any, 37311128}}},
    {"TotVA", {{whole, any, 37311144}}},
    {"TotPF", {{whole, any, 37311160}}},
    {"Hz", {{whole, any, 37311176}}},
    {"HKf", {{A, any, 37311288}, {B, any, 37311304}, {C, any, 37311320}, {N, any, 37311336}}},
    {"ThdPhV", {{A, wye, 37311192}, {B, wye, 37311208}, {C, wye, 37311224}, {N, never, 37311224}}},
    {"ThdPPV", {{AB, delta, 37311192}, {BC, delta, 37311208}, {CA, delta, 37311224}}},
    {"ThdA", {{A, any, 37311240}, {B, any, 37311256}, {C, any, 37311272}, {N, never, 37311272}}},
    {"ImbZrV", {{whole, any, 37311368}}},
    {"ImbNgV", {{whole, any, 37311352}}},
    {"ImbZrA", {{whole, any, 37311400}}},
    {"ImbNgA", {{whole, any, 37311384}}},
};

const std::vector<MeasObject> demandStatObjects = {
    {"A", {{A, any, 37312216}, {B, any, 37312232}, {C, any, 37312248}, {N, never, 37312248}}},
    {"TotW", {{whole, any, 37312168}}},
    {"TotVAr", {{whole, any, 37312184}}},
    {"TotVA", {{whole, any, 37312200}}},
};

const std::vector<MeasObject> energyTotals = {
    {"DmdWh", {{whole, any, 16639556}}},     {"SupWh", {{whole, any, 16639564}}},
    {"TotWh", {{whole, any, 16639572}}},     {"SumWh", {{whole, any, 16639580}}},
    {"DmdVArh", {{whole, any, 16639588}}},   {"SupVArh", {{whole, any, 16639596}}},
    {"TotVArh", {{whole, any, 16639604}}},   {"SumVArh", {{whole, any, 16639612}}},
    {"TotVAh", {{whole, any, 16639620}}},    {"DmdWhD", {{whole, any, 16639628}}},
    {"SupWhD", {{whole, any, 16639636}}},    {"DmdVArhD", {{whole, any, 16639660}}},
    {"SupVArhD", {{whole, any, 16639668}}},  {"DmdWhHt", {{whole, any, 16639700}}},
    {"SupWhHt", {{whole, any, 16639708}}},   {"DmdVArhHt", {{whole, any, 16639732}}},
    {"SupVArhHt", {{whole, any, 16639740}}},
};

std::vector<MeasObject> pulseObjects() {
    std::vector<MeasObject> objects;
    for (u32 n = 1; n <= 8; n++) {
        objects.push_back({"PlsCnt" + std::to_string(n), {{whole, any, 16654072 + 4 * (n - 1)}}});
    }
    return objects;
}

std::vector<MeasObject> energyObjects() {
    std::vector<MeasObject> objects = energyTotals;
    for (u32 n = 2; n <= 31; n++) {
        objects.push_back({"DmdWhH" + std::to_string(n), {{whole, any, 16639772 + 72 * (n - 2)}}});
        objects.push_back({"DmdVArhH" + std::to_string(n), {{whole, any, 16639804 + 72 * (n - 2)}}});
    }
    return objects;
}

const std::vector<MeasSet> demandSets = {{"DMD.avg.", 0}, {"DMD.min.", 4}, {"DMD.max.", 8}};
const std::vector<MeasSet> rtStatSets = {{"MON.rt.now.max.", 0},
                                         {"MON.rt.now.min.", 640},
                                         {"MON.rt.last.max.", 1472},
                                         {"MON.rt.last.min.", 1472 + 640}};
const std::vector<MeasSet> demandStatSets = {{"MON.dmd.now.max.", 0}, {"MON.dmd.last.max.", 1472}};

} // namespace

const std::vector<MeasTable> &measurementTables() {
    static const std::vector<MeasTable> tables = {
        {"basicMeasTable", {{"RT.", 0}}, basicObjects},
        {"harmImBalMeasTable", {{"RT.", 0}}, harmonicObjects},
        {"pstMeasTable", {{"RT.", 0}}, pstObjects},
        {"pltMeasTable", {{"RT.", 0}}, pltObjects},
        {"diCntMeasTable", {{"ENG.", 0}}, pulseObjects()},
        {"energyMeasTable", {{"ENG.", 0}}, energyObjects()},
        {"demandMeasTable", demandSets, demandObjects},
        {"preDemandMeasTable", {{"DMD.pre.", 0}}, preDemandObjects},
        {"rtStatTable", rtStatSets, rtStatObjects},
        {"demandStatTable", demandStatSets, demandStatObjects},
    };
    return tables;
}

const MeasTable &measurementTable(const std::string &name) {
    for (const MeasTable &table : measurementTables()) {
        if (table.name == name) {
            return table;
        }
    }
    std::abort();
}

u32 rowCount(const MeasTable &table) {
    u32 rows = 0;
    for (const MeasObject &object : table.objects) {
        for (const MeasComponent &component : object.components) {
            rows += component.angle == 0 ? 1 : 2;
        }
    }
    return rows;
}

std::vector<std::string> unfedObjects() {
    std::vector<std::string> names;
    for (const auto *sets : {&demandSets, &rtStatSets}) {
        for (const MeasSet &set : *sets) {
            for (const char *object : {"SeqV", "SeqA", "HHz"}) {
                names.push_back(set.prefix + object);
            }
        }
    }
    return names;
}

} // namespace ied::test
