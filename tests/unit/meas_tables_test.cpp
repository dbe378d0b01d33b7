// The measurement tables against counts and sums taken by hand from the description of the region,
// and rows at the places where a slip would show nowhere else.
#include "device/measTables.h"
#include "tests/support/deviceModel.h"

#include <map>

using namespace ied;
using ied::test::record;

namespace {

// The only rows of a table whose source is at that octet, in order.
std::vector<MeasRow> rowsAt(MeasTableId table, u32 offset) {
    std::vector<MeasRow> out;
    for (const MeasRow &row : measTable(table)) {
        if (row.srcOffset == offset) {
            out.push_back(row);
        }
    }
    return out;
}

template <class T> u8 *at(T &field) {
    return reinterpret_cast<u8 *>(&field);
}

TEST(MeasTables, TargetsAndEnclosingRecordsFollowFromTheObject) {
    const MeasRow seq = rowsAt(MeasTableId::harmImBal, 30300)[0];
    EXPECT_EQ(seq.modelAddr, at(record<SEQ>("RT.seqV").c[2]));
    EXPECT_EQ(seq.fcdAddr, at(record<SEQ>("RT.seqV")));
    EXPECT_EQ(seq.fcdType, CdcSEQ);

    const MeasRow array = rowsAt(MeasTableId::harmImBal, 26372)[0];
    EXPECT_EQ(array.modelAddr, at(record<HWYE>("RT.HAArr").har[PhsNeut]));
    EXPECT_EQ(array.fcdAddr, at(record<HWYE>("RT.HAArr")));
    EXPECT_EQ(array.fcdType, CdcHWYE);
    EXPECT_EQ(rowsAt(MeasTableId::harmImBal, 23320)[1].fcdType, CdcHDEL);

    const MeasRow value = rowsAt(MeasTableId::preDemand, 16654020)[0];
    EXPECT_EQ(value.modelAddr, at(record<MV>("DMD.pre.Hz")));
    EXPECT_EQ(value.fcdAddr, nullptr);
    EXPECT_EQ(value.fcdType, mapInner);

    const MeasRow count = rowsAt(MeasTableId::energy, 16639804 + 72 * 29)[0];
    EXPECT_EQ(count.modelAddr, at(record<BCR>("ENG.DmdVArhH31")));
    EXPECT_EQ(count.fcdType, CdcBCR);
}

TEST(MeasTables, RelocationPointsEveryRowIntoTheRegion) {
    test::DeviceState device;
    EXPECT_EQ(dataMapInit(), 1);
    EXPECT_EQ(dataMapInit(), 1) << "a second time as the first";
    for (const MeasTableId table : {MeasTableId::basic, MeasTableId::demandStat}) {
        for (const MeasRow &row : measTable(table)) {
            EXPECT_EQ(row.srcAddr, comdata + row.srcOffset);
        }
    }
}

} // namespace
