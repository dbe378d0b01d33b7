// The measurement tables against counts and sums taken by hand from the description of the region,
// and rows at the places where a slip would show nowhere else.
#include "device/measTables.h"
#include "tests/support/deviceModel.h"

#include <map>

using namespace ied;
using ied::test::record;

namespace {

struct TableTotals {
    MeasTableId table;
    const char *name;
    std::size_t rows;
    u64 sources;                 // sum of the source offsets
    std::map<u16, int> byWiring; // rows of each wiring mode
};

class Totals : public testing::TestWithParam<TableTotals> {};

TEST_P(Totals, RowsSourcesAndWiringAddUp) {
    const std::span<const MeasRow> rows = measTable(GetParam().table);
    EXPECT_STREQ(measTableName(GetParam().table), GetParam().name);
    EXPECT_EQ(rows.size(), GetParam().rows);
    u64 sum = 0;
    std::map<u16, int> byWiring;
    for (const MeasRow &row : rows) {
        sum += row.srcOffset;
        byWiring[row.wiring]++;
    }
    EXPECT_EQ(sum, GetParam().sources);
    EXPECT_EQ(byWiring, GetParam().byWiring);
}

INSTANTIATE_TEST_SUITE_P(
    MeasTables, Totals,
    testing::Values(
        TableTotals{MeasTableId::basic, "basicMeasTable", 47, 1085526, {{0, 22}, {1, 6}, {2, 19}}},
        TableTotals{MeasTableId::harmImBal, "harmImBalMeasTable", 154, 3963898, {{0, 48}, {1, 34}, {2, 72}}},
        TableTotals{MeasTableId::pst, "pstMeasTable", 6, 351864, {{0, 3}, {1, 3}}},
        TableTotals{MeasTableId::plt, "pltMeasTable", 6, 352032, {{0, 3}, {1, 3}}},
        TableTotals{MeasTableId::diCnt, "diCntMeasTable", 8, 133232688, {{2, 8}}},
        TableTotals{MeasTableId::energy, "energyMeasTable", 77, 1281323684, {{2, 77}}},
        TableTotals{MeasTableId::demand, "demandMeasTable", 90, 1498275396, {{0, 32}, {1, 15}, {2, 43}}},
        TableTotals{MeasTableId::preDemand, "preDemandMeasTable", 31, 516272760, {{0, 16}, {2, 15}}},
        TableTotals{MeasTableId::rtStat, "rtStatTable", 38, 1417823872, {{0, 7}, {1, 3}, {2, 26}, {3, 2}}},
        TableTotals{MeasTableId::demandStat, "demandStatTable", 7, 261185496, {{2, 6}, {3, 1}}}),
    [](const auto &param) { return std::string(param.param.name); });

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

TEST(MeasTables, AnAngleMayBeActiveInAnotherWiringThanItsMagnitude) {
    const auto rows = rowsAt(MeasTableId::basic, 21480);
    ASSERT_EQ(rows.size(), 2U); // phase B in wye, phase BC in delta
    EXPECT_EQ(rows[0].modelAddr, at(record<WYE>("RT.PhV").phs[PhsB]));
    EXPECT_EQ(rows[0].wiring, wye);
    EXPECT_EQ(rows[1].modelAddr, at(record<WYE>("RT.PPV").phs[PhsB]));
    EXPECT_EQ(rows[1].wiring, delta);
    for (const MeasRow &row : rows) {
        EXPECT_EQ(row.angtype, AngAngle);
        EXPECT_EQ(row.prototype, ProtoCMV);
        EXPECT_EQ(row.fcdType, CdcWYE);
    }
    EXPECT_EQ(rowsAt(MeasTableId::basic, 21456)[0].wiring, anyWiring);
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

TEST(MeasTables, SetsAndClassesLieWhereTheTreeHasThem) {
    const auto shifted = [](MeasTableId table, i32 shift) { return measTable(table)[0].modelAddr + shift; };
    EXPECT_EQ(shifted(MeasTableId::demand, demandSets[1].target), at(record<WYE>("DMD.min.PhV").phs[PhsA]));
    EXPECT_EQ(shifted(MeasTableId::demand, demandSets[2].target), at(record<WYE>("DMD.max.PhV").phs[PhsA]));
    EXPECT_EQ(demandSets[1].source, 4U);
    EXPECT_EQ(demandSets[2].source, 8U);
    EXPECT_EQ(shifted(MeasTableId::rtStat, rtStatSets[0][1].target),
              at(record<WYE>("MON.rt.now.min.PhV").phs[PhsA]));
    EXPECT_EQ(shifted(MeasTableId::rtStat, rtStatSets[1][1].target),
              at(record<WYE>("MON.rt.last.min.PhV").phs[PhsA]));
    EXPECT_EQ(rtStatSets[1][1].source, 2112U);
    EXPECT_EQ(shifted(MeasTableId::demandStat, demandStatSets[1].target),
              at(record<WYE>("MON.dmd.last.max.A").phs[PhsA]));
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
