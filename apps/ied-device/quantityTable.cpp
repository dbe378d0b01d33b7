#include "ied-device/quantityTable.h"

#include <array>
#include <string_view>

namespace ied::instrument {

namespace {

// clang-format off
constexpr QuantityRow rows[] = {
    {QPhV, "PhV.phsA", nullptr, 21396, 16647032, 16653900, 37310888, 0},
    {QPhV + 1, "PhV.phsB", nullptr, 21452, 16647044, 16653904, 37310904, 0},
    {QPhV + 2, "PhV.phsC", nullptr, 21508, 16647056, 16653908, 37310920, 0},
    {QPhV + 3, "PhV.neut", "PhV.neut", 21600, 16647176, 16653948, 37311080, 0},
    {QAvgPhV, "AvgPhV", nullptr, 21564, 16647068, 16653912, 37310936, 0},
    {QPPV, "PPV.phsAB", "PPV.phsAB", 21400, 16647080, 16653916, 37310952, 0},
    {QPPV + 1, "PPV.phsBC", "PPV.phsBC", 21456, 16647092, 16653920, 37310968, 0},
    {QPPV + 2, "PPV.phsCA", "PPV.phsCA", 21512, 16647104, 16653924, 37310984, 0},
    {QAvgPPV, "AvgPPV", "AvgPPV", 21568, 16647116, 16653928, 37311000, 0},
    {QA, "A.phsA", "A.phsA", 21404, 16647128, 16653932, 37311016, 37312216},
    {QA + 1, "A.phsB", "A.phsB", 21460, 16647140, 16653936, 37311032, 37312232},
    {QA + 2, "A.phsC", "A.phsC", 21516, 16647152, 16653940, 37311048, 37312248},
    {QA + 3, "A.neut", "A.neut", 21604, 16647188, 16653952, 37311096, 0},
    {QAvgA, "AvgA", "AvgA", 21572, 16647164, 16653944, 37311064, 0},
    {QW, "W.phsA", nullptr, 21408, 16647200, 16653956, 0, 0},
    {QW + 1, "W.phsB", nullptr, 21464, 16647212, 16653960, 0, 0},
    {QW + 2, "W.phsC", nullptr, 21520, 16647224, 16653964, 0, 0},
    {QVAr, "VAr.phsA", nullptr, 21412, 16647248, 16653972, 0, 0},
    {QVAr + 1, "VAr.phsB", nullptr, 21468, 16647260, 16653976, 0, 0},
    {QVAr + 2, "VAr.phsC", nullptr, 21524, 16647272, 16653980, 0, 0},
    {QVA, "VA.phsA", nullptr, 21416, 16647296, 16653988, 0, 0},
    {QVA + 1, "VA.phsB", nullptr, 21472, 16647308, 16653992, 0, 0},
    {QVA + 2, "VA.phsC", nullptr, 21528, 16647320, 16653996, 0, 0},
    {QPF, "PF.phsA", nullptr, 21420, 16647344, 16654004, 0, 0},
    {QPF + 1, "PF.phsB", nullptr, 21476, 16647356, 16654008, 0, 0},
    {QPF + 2, "PF.phsC", nullptr, 21532, 16647368, 16654012, 0, 0},
    {QTotW, "TotW", "TotW", 21576, 16647236, 16653968, 37311112, 37312168},
    {QTotVAr, "TotVAr", "TotVAr", 21580, 16647284, 16653984, 37311128, 37312184},
    {QTotVA, "TotVA", "TotVA", 21584, 16647332, 16654000, 37311144, 37312200},
    {QTotPF, "TotPF", "TotPF", 21588, 16647380, 16654016, 37311160, 0},
    {QHz, "Hz", "Hz", 58616, 16647392, 16654020, 37311176, 0},
    {QHzDev, "HzDev", "HzDev", 58620, 16647440, 0, 0, 0},
    {QVDev, "PhVDev.phsA", "PPVDev.phsAB", 21660, 16647404, 0, 0, 0},
    {QVDev + 1, "PhVDev.phsB", "PPVDev.phsBC", 21664, 16647416, 0, 0, 0},
    {QVDev + 2, "PhVDev.phsC", "PPVDev.phsCA", 21668, 16647428, 0, 0, 0},
    {QThdV, "ThdPhV.phsA", "ThdPPV.phsAB", 21980, 16647548, 0, 37311192, 0},
    {QThdV + 1, "ThdPhV.phsB", "ThdPPV.phsBC", 22644, 16647560, 0, 37311208, 0},
    {QThdV + 2, "ThdPhV.phsC", "ThdPPV.phsCA", 23308, 16647572, 0, 37311224, 0},
    {QThdV + 3, "ThdPhV.neut", "ThdPhV.neut", 23972, 16647584, 0, 0, 0},
    {QThdA, "ThdA.phsA", "ThdA.phsA", 24636, 16647596, 0, 37311240, 0},
    {QThdA + 1, "ThdA.phsB", "ThdA.phsB", 25300, 16647608, 0, 37311256, 0},
    {QThdA + 2, "ThdA.phsC", "ThdA.phsC", 25964, 16647620, 0, 37311272, 0},
    {QThdA + 3, "ThdA.neut", "ThdA.neut", 26628, 16647632, 0, 0, 0},
    {QIThdV, "IThdPhV.phsA", "IThdPPV.phsAB", 22248, 0, 0, 0, 0},
    {QIThdV + 1, "IThdPhV.phsB", "IThdPPV.phsBC", 22912, 0, 0, 0, 0},
    {QIThdV + 2, "IThdPhV.phsC", "IThdPPV.phsCA", 23576, 0, 0, 0, 0},
    {QIThdV + 3, "IThdPhV.neut", "IThdPhV.neut", 24240, 0, 0, 0, 0},
    {QIThdA, "IThdA.phsA", "IThdA.phsA", 24904, 0, 0, 0, 0},
    {QIThdA + 1, "IThdA.phsB", "IThdA.phsB", 25568, 0, 0, 0, 0},
    {QIThdA + 2, "IThdA.phsC", "IThdA.phsC", 26232, 0, 0, 0, 0},
    {QIThdA + 3, "IThdA.neut", "IThdA.neut", 26896, 0, 0, 0, 0},
    {QThdOddV, "ThdOddPhV.phsA", "ThdOddPPV.phsAB", 21984, 16647644, 0, 0, 0},
    {QThdOddV + 1, "ThdOddPhV.phsB", "ThdOddPPV.phsBC", 22648, 16647656, 0, 0, 0},
    {QThdOddV + 2, "ThdOddPhV.phsC", "ThdOddPPV.phsCA", 23312, 16647668, 0, 0, 0},
    {QThdOddV + 3, "ThdOddPhV.neut", "ThdOddPhV.neut", 23976, 16647680, 0, 0, 0},
    {QThdOddA, "ThdOddA.phsA", "ThdOddA.phsA", 24640, 16647692, 0, 0, 0},
    {QThdOddA + 1, "ThdOddA.phsB", "ThdOddA.phsB", 25304, 16647704, 0, 0, 0},
    {QThdOddA + 2, "ThdOddA.phsC", "ThdOddA.phsC", 25968, 16647716, 0, 0, 0},
    {QThdOddA + 3, "ThdOddA.neut", "ThdOddA.neut", 26632, 16647728, 0, 0, 0},
    {QIThdOddV, "IThdOddPhV.phsA", "IThdOddPPV.phsAB", 22252, 0, 0, 0, 0},
    {QIThdOddV + 1, "IThdOddPhV.phsB", "IThdOddPPV.phsBC", 22916, 0, 0, 0, 0},
    {QIThdOddV + 2, "IThdOddPhV.phsC", "IThdOddPPV.phsCA", 23580, 0, 0, 0, 0},
    {QIThdOddV + 3, "IThdOddPhV.neut", "IThdOddPhV.neut", 24244, 0, 0, 0, 0},
    {QIThdOddA, "IThdOddA.phsA", "IThdOddA.phsA", 24908, 0, 0, 0, 0},
    {QIThdOddA + 1, "IThdOddA.phsB", "IThdOddA.phsB", 25572, 0, 0, 0, 0},
    {QIThdOddA + 2, "IThdOddA.phsC", "IThdOddA.phsC", 26236, 0, 0, 0, 0},
    {QIThdOddA + 3, "IThdOddA.neut", "IThdOddA.neut", 26900, 0, 0, 0, 0},
    {QThdEvnV, "ThdEvnPhV.phsA", "ThdEvnPPV.phsAB", 21988, 16647740, 0, 0, 0},
    {QThdEvnV + 1, "ThdEvnPhV.phsB", "ThdEvnPPV.phsBC", 22652, 16647752, 0, 0, 0},
    {QThdEvnV + 2, "ThdEvnPhV.phsC", "ThdEvnPPV.phsCA", 23316, 16647764, 0, 0, 0},
    {QThdEvnV + 3, "ThdEvnPhV.neut", "ThdEvnPhV.neut", 23980, 16647776, 0, 0, 0},
    {QThdEvnA, "ThdEvnA.phsA", "ThdEvnA.phsA", 24644, 16647788, 0, 0, 0},
    {QThdEvnA + 1, "ThdEvnA.phsB", "ThdEvnA.phsB", 25308, 16647800, 0, 0, 0},
    {QThdEvnA + 2, "ThdEvnA.phsC", "ThdEvnA.phsC", 25972, 16647812, 0, 0, 0},
    {QThdEvnA + 3, "ThdEvnA.neut", "ThdEvnA.neut", 26636, 16647824, 0, 0, 0},
    {QIThdEvnV, "IThdEvnPhV.phsA", "IThdEvnPPV.phsAB", 22256, 0, 0, 0, 0},
    {QIThdEvnV + 1, "IThdEvnPhV.phsB", "IThdEvnPPV.phsBC", 22920, 0, 0, 0, 0},
    {QIThdEvnV + 2, "IThdEvnPhV.phsC", "IThdEvnPPV.phsCA", 23584, 0, 0, 0, 0},
    {QIThdEvnV + 3, "IThdEvnPhV.neut", "IThdEvnPhV.neut", 24248, 0, 0, 0, 0},
    {QIThdEvnA, "IThdEvnA.phsA", "IThdEvnA.phsA", 24912, 0, 0, 0, 0},
    {QIThdEvnA + 1, "IThdEvnA.phsB", "IThdEvnA.phsB", 25576, 0, 0, 0, 0},
    {QIThdEvnA + 2, "IThdEvnA.phsC", "IThdEvnA.phsC", 26240, 0, 0, 0, 0},
    {QIThdEvnA + 3, "IThdEvnA.neut", "IThdEvnA.neut", 26904, 0, 0, 0, 0},
    {QKf, "HKf.phsA", "HKf.phsA", 30124, 16647500, 0, 37311288, 0},
    {QKf + 1, "HKf.phsB", "HKf.phsB", 30128, 16647512, 0, 37311304, 0},
    {QKf + 2, "HKf.phsC", "HKf.phsC", 30132, 16647524, 0, 37311320, 0},
    {QKf + 3, "HKf.neut", "HKf.neut", 30136, 16647536, 0, 37311336, 0},
    {QDV, "DPhV.phsA", "DPPV.phsAB", 30172, 0, 0, 0, 0},
    {QDV + 1, "DPhV.phsB", "DPPV.phsBC", 30200, 0, 0, 0, 0},
    {QDV + 2, "DPhV.phsC", "DPPV.phsCA", 30228, 0, 0, 0, 0},
    {QDV + 3, "DPhV.neut", "DPhV.neut", 30292, 0, 0, 0, 0},
    {QAvgDV, "AvgDPhV", "AvgDPPV", 30256, 0, 0, 0, 0},
    {QDA, "DA.phsA", "DA.phsA", 30180, 0, 0, 0, 0},
    {QDA + 1, "DA.phsB", "DA.phsB", 30208, 0, 0, 0, 0},
    {QDA + 2, "DA.phsC", "DA.phsC", 30236, 0, 0, 0, 0},
    {QDA + 3, "DA.neut", "DA.neut", 30296, 0, 0, 0, 0},
    {QAvgDA, "AvgDA", "AvgDA", 30264, 0, 0, 0, 0},
    {QDW, "DW.phsA", nullptr, 30184, 0, 0, 0, 0},
    {QDW + 1, "DW.phsB", nullptr, 30212, 0, 0, 0, 0},
    {QDW + 2, "DW.phsC", nullptr, 30240, 0, 0, 0, 0},
    {QDVAr, "DVAr.phsA", nullptr, 30188, 0, 0, 0, 0},
    {QDVAr + 1, "DVAr.phsB", nullptr, 30216, 0, 0, 0, 0},
    {QDVAr + 2, "DVAr.phsC", nullptr, 30244, 0, 0, 0, 0},
    {QDVA, "DVA.phsA", nullptr, 30192, 0, 0, 0, 0},
    {QDVA + 1, "DVA.phsB", nullptr, 30220, 0, 0, 0, 0},
    {QDVA + 2, "DVA.phsC", nullptr, 30248, 0, 0, 0, 0},
    {QDPF, "DPF.phsA", nullptr, 30196, 0, 0, 0, 0},
    {QDPF + 1, "DPF.phsB", nullptr, 30224, 0, 0, 0, 0},
    {QDPF + 2, "DPF.phsC", nullptr, 30252, 0, 0, 0, 0},
    {QTotDW, "TotDW", "TotDW", 30268, 0, 0, 0, 0},
    {QTotDVAr, "TotDVAr", "TotDVAr", 30272, 0, 0, 0, 0},
    {QTotDVA, "TotDVA", "TotDVA", 30276, 0, 0, 0, 0},
    {QTotDPF, "TotDPF", "TotDPF", 30280, 0, 0, 0, 0},
    {QImbNgV, "ImbNgV", "ImbNgV", 30324, 16647452, 0, 37311352, 0},
    {QImbZrV, "ImbZrV", "ImbZrV", 30328, 16647464, 0, 37311368, 0},
    {QImbNgA, "ImbNgA", "ImbNgA", 30332, 16647476, 0, 37311384, 0},
    {QImbZrA, "ImbZrA", "ImbZrA", 30336, 16647488, 0, 37311400, 0},
    {QSeqV, "seqV.c1", "seqV.c1", 30304, 0, 0, 0, 0},
    {QSeqV + 1, "seqV.c2", "seqV.c2", 30308, 0, 0, 0, 0},
    {QSeqV + 2, "seqV.c3", "seqV.c3", 30300, 0, 0, 0, 0},
    {QSeqA, "seqA.c1", "seqA.c1", 30316, 0, 0, 0, 0},
    {QSeqA + 1, "seqA.c2", "seqA.c2", 30320, 0, 0, 0, 0},
    {QSeqA + 2, "seqA.c3", "seqA.c3", 30312, 0, 0, 0, 0},
};

constexpr SpectrumRow spectra[channels] = {
    {"HPhVArr.phsAHar", "HPPVArr.phsABHar", 21724, 16647836, "IHPhVConArr.phsAHar", "IHPPVConArr.phsABHar", 21992},
    {"HPhVArr.phsBHar", "HPPVArr.phsBCHar", 22388, 16647848, "IHPhVConArr.phsBHar", "IHPPVConArr.phsBCHar", 22656},
    {"HPhVArr.phsCHar", "HPPVArr.phsCAHar", 23052, 16647860, "IHPhVConArr.phsCHar", "IHPPVConArr.phsCAHar", 23320},
    {"HPhVArr.neutHar", nullptr, 23716, 16647872, "IHPhVConArr.neutHar", nullptr, 23984},
    {"HAArr.phsAHar", "HAArr.phsAHar", 24380, 16647884, "IHAConArr.phsAHar", "IHAConArr.phsAHar", 24648},
    {"HAArr.phsBHar", "HAArr.phsBHar", 25044, 16647896, "IHAConArr.phsBHar", "IHAConArr.phsBHar", 25312},
    {"HAArr.phsCHar", "HAArr.phsCHar", 25708, 16647908, "IHAConArr.phsCHar", "IHAConArr.phsCHar", 25976},
    {"HAArr.neutHar", "HAArr.neutHar", 26372, 16647920, "IHAConArr.neutHar", "IHAConArr.neutHar", 26640},
};

constexpr AngleRow angles[] = {
    {0, "PhV.phsA", "PPV.phsAB", 21424}, {1, "PhV.phsB", "PPV.phsBC", 21480}, {2, "PhV.phsC", "PPV.phsCA", 21536},
    {4, "A.phsA", "A.phsA", 21426}, {5, "A.phsB", "A.phsB", 21482}, {6, "A.phsC", "A.phsC", 21538},
    {0, "DPhV.phsA", "DPPV.phsAB", 22262}, {1, "DPhV.phsB", "DPPV.phsBC", 22926}, {2, "DPhV.phsC", "DPPV.phsCA", 23590},
    {3, "DPhV.neut", "DPhV.neut", 24254},
    {4, "DA.phsA", "DA.phsA", 24918}, {5, "DA.phsB", "DA.phsB", 25582}, {6, "DA.phsC", "DA.phsC", 26246},
    {7, "DA.neut", "DA.neut", 26910},
};

constexpr FlickerRow shortTerm[] = {
    {"PhVPst.phsA", "PPVPst.phsAB", 58640}, {"PhVPst.phsB", "PPVPst.phsBC", 58644}, {"PhVPst.phsC", "PPVPst.phsCA", 58648},
};
constexpr FlickerRow longTerm[] = {
    {"PhVPlt.phsA", "PPVPlt.phsAB", 58668}, {"PhVPlt.phsB", "PPVPlt.phsBC", 58672}, {"PhVPlt.phsC", "PPVPlt.phsCA", 58676},
};
// clang-format on

struct Wirings {
    bool wye;
    bool delta;
    bool same; // the names of both
};

constexpr std::array<Wirings, QuantityCount> wirings = [] {
    std::array<Wirings, QuantityCount> out{};
    for (const QuantityRow &row : rows) {
        const bool both = row.wyeName != nullptr && row.deltaName != nullptr;
        out[row.quantity] = {row.wyeName != nullptr, row.deltaName != nullptr,
                             both && std::string_view(row.wyeName) == row.deltaName};
    }
    return out;
}();

const Wirings &wiringsOf(int quantity) {
    return wirings[static_cast<std::size_t>(quantity)];
}

} // namespace

std::span<const QuantityRow> quantityRows() {
    return rows;
}

bool isGiven(int quantity, bool delta) {
    const Wirings &given = wiringsOf(quantity);
    return delta ? given.delta : given.wye;
}

bool isTwofold(int quantity) {
    const Wirings &given = wiringsOf(quantity);
    return given.wye && given.delta && !given.same;
}

const SpectrumRow &spectrumRow(int channel) {
    return spectra[channel];
}

std::span<const AngleRow> angleRows() {
    return angles;
}

std::span<const FlickerRow> shortTermRows() {
    return shortTerm;
}
std::span<const FlickerRow> longTermRows() {
    return longTerm;
}

} // namespace ied::instrument
