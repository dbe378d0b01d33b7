// Every parameter on its way between the areas of the region and its record: nothing but what a row
// names may change, and a row lets pass what lies within its limits.
#include "device/addressBinding.h"
#include "device/parameterMaps.h"
#include "tests/support/deviceModel.h"
#include "tests/support/parameterRows.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

using namespace ied;
using namespace ied::test;

namespace {

// ------------------------------------------------------------------------------------ places

using Octets = std::vector<u8>;

Octets mirrorOctets() {
    return {protoData, protoData + protoDataSize};
}
Octets areaOctets(u32 area) {
    return {comdata + area, comdata + area + region::paramAreaSize};
}

// Places at which two pictures differ.
std::vector<std::size_t> differences(const Octets &a, const Octets &b) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < a.size(); i++) {
        if (a[i] != b[i]) {
            places.push_back(i);
        }
    }
    return places;
}
const std::vector<std::size_t> nowhere;

template <class T> void overwrite(Octets &picture, std::size_t at, T value) {
    std::memcpy(picture.data() + at, &value, sizeof value);
}

// Of the record's value in the mirror, by functional constraint.
std::size_t valuePlace(const ParameterRow &row, SettingInstance instance) {
    u8 *const start = static_cast<u8 *>(getSAddr(row.sAddr.c_str(), static_cast<u8>(row.cdc)));
    if (start == nullptr) {
        ADD_FAILURE() << "no record " << row.sAddr;
        return 0;
    }
    const std::size_t width = row.cdc == CdcING || row.cdc == CdcASG ? 4 : 1;
    return static_cast<std::size_t>(start - protoData) + width * instance; // values stand first in a record
}

// A data object bound to the record, as a setting group control block lists it.
GenNode nodeOf(const ParameterRow &row) {
    GenNode node{};
    std::snprintf(node.name, sizeof node.name, "%s", row.sAddr.substr(row.sAddr.rfind('.') + 1).c_str());
    node.level = LevelDO;
    node.fc = FcSG;
    node.nodeType = static_cast<u8>(row.cdc);
    node.data = getSAddr(row.sAddr.c_str(), static_cast<u8>(row.cdc));
    return node;
}

// ------------------------------------------------------------------------------------ values

// A device counts from nought what these count from one.
u32 firstCount(const ParameterRow &row) {
    return row.cdc == CdcENG ? 1 : 0;
}

// What stands in a field; others in every field and, with another `salt`, in every area.
u32 fieldValue(const ParameterRow &row, u32 salt) {
    if (row.type == ParaF32) {
        const f32 value = 0.25F * static_cast<f32>(row.source) - 1400 + static_cast<f32>(salt);
        u32 octets;
        std::memcpy(&octets, &value, sizeof octets);
        return octets;
    }
    const u32 value = row.source * 61 + salt; // fills 16 bits; odd, so that no two fields meet
    return row.type == ParaU32 ? value * 0x10001 : value;
}

// Octets `value` of a field at `at`, in its width.
void overwriteField(Octets &area, const ParameterRow &row, u32 value) {
    switch (row.type) {
    case ParaU8:
        return overwrite(area, row.source, static_cast<u8>(value));
    case ParaU16:
    case ParaI16:
        return overwrite(area, row.source, static_cast<u16>(value));
    default:
        return overwrite(area, row.source, value);
    }
}

void fillArea(u32 area, u8 background, u32 salt) {
    Octets octets(region::paramAreaSize, background);
    for (const ParameterMap &map : parameterMaps()) {
        for (const ParameterRow &row : map.parameters) {
            overwriteField(octets, row, fieldValue(row, salt));
        }
    }
    std::copy(octets.begin(), octets.end(), comdata + area);
}

// What the record shows of that field.
void overwriteValue(Octets &mirror, const ParameterRow &row, SettingInstance instance, u32 field) {
    const std::size_t at = valuePlace(row, instance);
    const u32 whole = row.type == ParaU8    ? field & 0xFF
                      : row.type == ParaU16 ? field & 0xFFFF
                      : row.type == ParaI16 ? static_cast<u32>(i32{static_cast<i16>(field)})
                                            : field;
    if (row.cdc == CdcSPG || row.cdc == CdcENG) {
        overwrite(mirror, at, static_cast<u8>(whole + firstCount(row)));
    } else if (row.cdc == CdcASG && row.type != ParaF32) {
        overwrite(mirror, at, static_cast<f32>(whole));
    } else {
        overwrite(mirror, at, whole);
    }
}

// The field that takes a value under edit.
u32 committedField(const ParameterRow &row, f64 value) {
    if (row.type == ParaF32) {
        const f32 single = static_cast<f32>(value);
        u32 octets;
        std::memcpy(&octets, &single, sizeof octets);
        return octets;
    }
    return static_cast<u32>(static_cast<i64>(value)) - firstCount(row);
}

// ------------------------------------------------------------------------- the server's own rows

std::string describe(std::size_t group, const std::string &sAddr, u16 cdc, u16 type, u32 source, i32 least,
                     i32 greatest) {
    std::ostringstream text;
    text << group << ' ' << sAddr << " CDC " << cdc << " type " << type << " at " << source << ": " << least
         << " to " << greatest;
    return text.str();
}

TEST(ParameterMaps, HoldTheInstrumentsParametersAndNoOthers) {
    std::map<u32, std::string> names; // of records by their place
    forEachLeaf([](const char *sAddr, const MapRow &, u32 offset,
                   void *context) { (*static_cast<std::map<u32, std::string> *>(context))[offset] = sAddr; },
                &names);
    std::set<std::string> served, known;
    ASSERT_EQ(parameterMaps().size(), std::size(paraMapAddr));
    for (std::size_t group = 0; group < std::size(paraMapAddr); group++) {
        const ParameterMap &map = parameterMaps()[group];
        for (const ParaMap &row : paraMapAddr[group]) {
            served.insert(describe(group, names[static_cast<u32>(row.modelAddr - protoData)], row.protoType,
                                   row.dataType, row.srcOffset, row.rangeMin, row.rangeMax));
        }
        for (const ParameterRow &row : map.parameters) {
            known.insert(describe(group, row.sAddr, row.cdc, row.type, row.source, row.limits.least,
                                  row.limits.greatest));
        }
    }
    std::vector<std::string> different;
    std::ranges::set_symmetric_difference(served, known, std::back_inserter(different));
    EXPECT_EQ(different, std::vector<std::string>{});
}

// ------------------------------------------------------------------------------- three directions

class ParameterRows : public testing::TestWithParam<std::size_t> {
  protected:
    static constexpr u32 liveSalt = 3, editSalt = 20000;
    ParameterRows() {
        fillArea(region::liveArea, 0xA5, liveSalt);
        fillArea(region::editArea, 0xC3, editSalt);
        std::memset(protoData, 0x3C, protoDataSize);
    }
    // Whether the edit of the one parameter is confirmed.
    static bool commits(const ParameterRow &row, f64 value) {
        edit(row.sAddr, value);
        GenNode node = nodeOf(row);
        const NodeList list({&node});
        return dealParamProcess(ParaSEToEdit, list.list, ParaAll) == 1;
    }
    // The rest of the edit area stays, whatever becomes of the parameter's own field.
    static void expectCommitted(const ParameterRow &row, f64 value) {
        Octets expected(region::paramAreaSize);
        std::copy_n(comdata + region::editArea, expected.size(), expected.begin());
        overwriteField(expected, row, committedField(row, value));
        EXPECT_TRUE(commits(row, value)) << value;
        EXPECT_EQ(differences(areaOctets(region::editArea), expected), nowhere) << value;
    }
    static void expectRefused(const ParameterRow &row, f64 value) {
        const Octets before = areaOctets(region::editArea);
        EXPECT_FALSE(commits(row, value)) << value;
        for (const std::size_t at : differences(areaOctets(region::editArea), before)) {
            EXPECT_TRUE(at >= row.source && at < row.source + paraWidth(row.type)) << value << " at " << at;
        }
    }
    DeviceState device;
    const ParameterMap &map = parameterMaps()[GetParam()];
};

TEST_P(ParameterRows, ShowTheLiveAreaInFcSG) {
    Octets expected = mirrorOctets();
    for (const ParameterRow &row : map.parameters) {
        overwriteValue(expected, row, SetSG, fieldValue(row, liveSalt));
    }
    const Octets live = areaOctets(region::liveArea), edited = areaOctets(region::editArea);
    ASSERT_EQ(dealParamProcess(ParaLiveToSG, nullptr, static_cast<u8>(GetParam())), 1);
    EXPECT_EQ(differences(mirrorOctets(), expected), nowhere);
    EXPECT_EQ(differences(areaOctets(region::liveArea), live), nowhere);
    EXPECT_EQ(differences(areaOctets(region::editArea), edited), nowhere);
}

TEST_P(ParameterRows, TakeAnEditFromTheEditArea) {
    Octets expected = mirrorOctets();
    for (const ParameterRow &row : map.parameters) {
        overwriteValue(expected, row, SetSE, fieldValue(row, editSalt));
    }
    std::vector<GenNode> nodes;
    for (const ParameterRow &row : map.parameters) {
        nodes.push_back(nodeOf(row));
    }
    std::vector<GenNode *> listed;
    for (GenNode &node : nodes) {
        listed.push_back(&node);
    }
    const NodeList list(listed);
    const Octets live = areaOctets(region::liveArea), edited = areaOctets(region::editArea);
    ASSERT_EQ(dealParamProcess(ParaEditToSE, list.list, ParaAll), 1);
    EXPECT_EQ(differences(mirrorOctets(), expected), nowhere);
    EXPECT_EQ(differences(areaOctets(region::liveArea), live), nowhere);
    EXPECT_EQ(differences(areaOctets(region::editArea), edited), nowhere);
}

TEST_P(ParameterRows, CommitWhatTheirLimitsLetPass) {
    device.put<u16>(region::ratedCurrent.offset, 0);
    device.put<u16>(region::timeSource.offset, 0);
    const Octets live = areaOctets(region::liveArea);
    for (const ParameterRow &row : map.parameters) {
        SCOPED_TRACE(row.sAddr);
        const std::vector<ParameterEdge> edges = parameterEdges(row);
        ASSERT_FALSE(edges.empty());
        for (const ParameterEdge &edge : edges) {
            std::memset(protoData, 0x3C, protoDataSize);
            for (const auto &[sAddr, value] : edge.others) {
                edit(sAddr, value);
            }
            for (const auto &[source, value] : edge.words) {
                device.put(region::editArea + source, value);
            }
            for (const f64 value : edge.passing) {
                expectCommitted(row, value);
            }
            for (const f64 value : edge.refused) {
                expectRefused(row, value);
            }
        }
    }
    EXPECT_EQ(differences(areaOctets(region::liveArea), live), nowhere);
}

INSTANTIATE_TEST_SUITE_P(Instrument, ParameterRows, testing::Range(std::size_t{0}, parameterMaps().size()),
                         [](const auto &param) { return parameterMaps()[param.param].name; });

} // namespace
