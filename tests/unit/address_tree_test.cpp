// Short addresses: what the tree holds and which texts it refuses.
#include "device/addressBinding.h"
#include "tests/support/deviceModel.h"
#include "tests/support/smallModel.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <vector>

using namespace ied;

namespace {

struct Leaf {
    std::string sAddr;
    u8 cdc;
    u32 begin, end;
};

std::vector<Leaf> leaves() {
    std::vector<Leaf> out;
    forEachLeaf(
        [](const char *sAddr, const MapRow &row, u32 offset, void *context) {
            static_cast<std::vector<Leaf> *>(context)->push_back(
                {sAddr, row.nodeType, offset, offset + recordShape(row.nodeType).size});
        },
        &out);
    return out;
}

// Counted from the description of the instrument's data objects.
const std::map<std::string, int> tops = {{"RT", 70},
                                         {"DMD", 3 * 38 + 15},
                                         {"MON", 4 * 22 + 2 * 4},
                                         {"ENG", 8 + 9 + 4 + 4 + 60},
                                         {"ST", 8 + 32 + 8 + 14},
                                         {"SOE", 9},
                                         {"RD", 6},
                                         {"SET", 42 + 32 + 32 * 8 + 8 * 10 + 2 * 3 + 24 * 22 + 15},
                                         {"CTL", 6 + 8 + 2 + 2 + 24 + 6},
                                         {"MICS", 12}};

TEST(AddressTree, HoldsEveryObjectOfTheInstrument) {
    std::map<std::string, int> byTop;
    std::map<u8, int> byCdc;
    for (const Leaf &leaf : leaves()) {
        byTop[leaf.sAddr.substr(0, leaf.sAddr.find('.'))]++;
        byCdc[leaf.cdc]++;
    }
    EXPECT_EQ(byTop, tops);
    EXPECT_EQ(byCdc[CdcHWYE] + byCdc[CdcHDEL], 15);
    EXPECT_EQ(byCdc[CdcSEQ], 2 + 6 + 8);
    EXPECT_EQ(byCdc[CdcENG], 2);
    EXPECT_EQ(byCdc[CdcASG], 4 + 64);
}

TEST(AddressTree, EveryLeafResolvesToARecordOfItsOwn) {
    u32 end = 0;
    for (const Leaf &leaf : leaves()) {
        EXPECT_GE(leaf.begin, end) << leaf.sAddr << " lies in the record before it";
        end = leaf.end;
        const MapPlace place = resolveSAddr(leaf.sAddr);
        EXPECT_EQ(place.offset, leaf.begin) << leaf.sAddr;
        EXPECT_EQ(getSAddr(leaf.sAddr.c_str(), leaf.cdc), protoData + leaf.begin) << leaf.sAddr;
        EXPECT_EQ(getNodeTypeBySAddr(leaf.sAddr.c_str()), leaf.cdc) << leaf.sAddr;
        EXPECT_LE(std::count(leaf.sAddr.begin(), leaf.sAddr.end(), '.'), 4) << leaf.sAddr;
    }
    EXPECT_LE(end, protoDataSize);
}

TEST(AddressTree, NoTextGivesNoAddressAndNoMessage) {
    const test::LogLines log;
    EXPECT_EQ(getSAddr(nullptr, CdcMV), nullptr);
    EXPECT_EQ(getSAddr("", CdcMV), nullptr);
    EXPECT_EQ(getNodeTypeBySAddr(nullptr), TypeFailure);
    EXPECT_TRUE(test::LogLines::lines().empty());
}

TEST(AddressTree, IsListedOneAddressALine) {
    testing::internal::CaptureStdout();
    sAddrPrint();
    std::istringstream listing(testing::internal::GetCapturedStdout());
    for (const Leaf &leaf : leaves()) {
        std::string line;
        std::getline(listing, line);
        EXPECT_EQ(line, leaf.sAddr);
    }
    EXPECT_EQ(listing.peek(), EOF);
}

struct Refused {
    const char *sAddr;
    u8 cdc;
    const char *message; // of getSAddr
    const char *lookUp;  // of getNodeTypeBySAddr, null where the text itself is good
};

class RefusedDeathTest : public testing::TestWithParam<Refused> {};

TEST_P(RefusedDeathTest, EndsTheProcessWithItsMessage) {
    const Refused &param = GetParam();
    EXPECT_EXIT(getSAddr(param.sAddr, param.cdc), testing::ExitedWithCode(0), param.message) << param.sAddr;
    if (param.lookUp == nullptr) {
        return;
    }
    EXPECT_EXIT(getNodeTypeBySAddr(param.sAddr), testing::ExitedWithCode(0), param.lookUp) << param.sAddr;
}

INSTANTIATE_TEST_SUITE_P(
    AddressTree, RefusedDeathTest,
    testing::Values(
        Refused{"RT", CdcWYE, "saddr: \"RT\" item not find!", "saddr : \"RT\" does not find!"},
        Refused{"SET.sys", CdcING, "saddr: \"SET.sys\" item not find!", "does not find"},
        Refused{"RT.PhV.phsA", CdcWYE, "saddr: \"RT.PhV.phsA\" item not find!", "does not find"},
        Refused{"rt.PhV", CdcWYE, "item not find", "does not find"},
        Refused{"RT.PhV.", CdcWYE, "item not find", "does not find"},
        Refused{".RT.PhV", CdcWYE, "item not find", "does not find"},
        Refused{"R", CdcWYE, "item not find", "does not find"},
        Refused{"RT.PhVPhVPhVPhVPhV", CdcWYE, "\"RT.PhVPhVPhVPhVPhV\" item not find", "does not find"},
        Refused{"RT.PhVPhVPhVPhVPhV1", CdcWYE, "is longer than the SADDR_LEN_MAX!", "is too long!"},
        Refused{"a.b.c.d.e.f.g.h", CdcWYE, "item not find", "does not find"},
        Refused{"a.b.c.d.e.f.g.h.i", CdcWYE, "is depper than the SADDR_DEP_MAX!", "is too deep!"},
        Refused{"SET.setpoint33.MonObj", CdcING, "item not find", "does not find"},
        Refused{"SET.setpoint01.MonObj", CdcING, "item not find", "does not find"},
        Refused{"RT.PhV", CdcDEL, "saddr: \"RT.PhV\" NodeType not Match!", nullptr}));

} // namespace
