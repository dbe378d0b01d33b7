#include "device/parameterMaps.h"

#include "device/parameterMapLines.h"
#include "device/regionLayout.h"

namespace ied {

namespace {

using namespace paraLines;

// A short address below a prefix: "SET.snap" 24, "var" 16 make "SET.snap24.var16".
struct ParaName {
    static constexpr std::size_t size = 40;
    char text[size] = {};
    std::size_t length = 0;

    constexpr ParaName(std::string_view prefix, u32 group, std::string_view name, u32 number) {
        append(NumberedName<size>(prefix, group).view());
        append(".");
        append(NumberedName<size>(name, number).view());
    }
    constexpr void append(std::string_view part) {
        if (part.size() > size - length) {
            throw "name too long";
        }
        length += part.copy(text + length, part.size());
    }
    constexpr std::string_view view() const { return {text, length}; }
};

// Whether every value within the limits fits a field of the type.
constexpr bool holdsLimits(u16 dataType, i64 least, i64 greatest) {
    const u32 bits = 8 * paraWidth(dataType);
    const bool isSigned = dataType >= ParaI8;
    const i64 top = (i64{1} << (isSigned ? bits - 1 : bits)) - 1;
    return least >= (isSigned ? -top - 1 : 0) && greatest <= top;
}

constexpr void checkRow(const ParaMap &row) {
    if (!takesType(paraRecordKind(row.protoType), row.dataType)) {
        throw "the record takes no field of that type";
    }
    const u32 width = paraWidth(row.dataType);
    if (row.srcOffset == 0 || row.srcOffset % width != 0 || row.srcOffset + width > region::paramAreaSize) {
        throw "field outside the parameter area";
    }
    const bool isRange = row.rangeMin != row.rangeMax;
    if (isRange ? row.rangeMin > row.rangeMax || !holdsLimits(row.dataType, row.rangeMin, row.rangeMax)
                : row.rangeMin < RangeFirst || row.rangeMin > RangeLast) {
        throw "neither limits that the field can hold nor a special check";
    }
}

// Numbers from 1 to `count`; none is one line without a number.
constexpr u32 repeats(u8 count) {
    return count == 0 ? 1 : count;
}

// The limits in group number `group`.
constexpr Limits limitsOf(const ParaBlock &block, const ParaLine &line, u32 group) {
    const bool later = block.laterFrom != 0 && group >= block.laterFrom;
    const bool other = line.laterLimits.least != 0 || line.laterLimits.greatest != 0;
    return later && other ? line.laterLimits : line.limits;
}

template <const ParaBlock &block> consteval u32 countParaRows() {
    u32 count = 0;
    for (const ParaLine &line : block.lines) {
        count += repeats(line.count);
    }
    return repeats(block.groups) * count;
}

// Places of one parameter in the mirror, from the first group of a block on. The groups share one
// table of the address tree, so their records lie evenly.
struct RecordRow {
    u8 cdc;
    u32 offset;
    u32 stride = 0;

    constexpr RecordRow(const ParaBlock &block, std::string_view name, u32 number) {
        const auto find = [&](u32 group) {
            return resolveSAddr(ParaName(block.prefix, group, name, number).view());
        };
        const MapPlace first = find(block.groups == 0 ? 0 : 1);
        cdc = first.nodeType;
        offset = first.offset;
        if (block.groups > 1) {
            stride = find(2).offset - offset;
            if (find(block.groups).offset != offset + (block.groups - 1U) * stride) {
                throw "the records of the groups do not lie evenly";
            }
        }
    }
};

template <const ParaBlock &block> consteval auto makeParaMap() {
    std::array<ParaMap, countParaRows<block>()> out{};
    constexpr u32 groups = repeats(block.groups);
    u32 index = 0;
    for (const ParaLine &line : block.lines) {
        for (u32 i = 0; i < repeats(line.count); i++, index++) {
            const RecordRow records(block, line.name, line.count == 0 ? 0 : i + 1);
            for (u32 group = 0; group < groups; group++) {
                const Limits limits = limitsOf(block, line, group + 1);
                ParaMap &row = out[group * (out.size() / groups) + index];
                row = {records.cdc,
                       line.type,
                       protoData + records.offset + group * records.stride,
                       line.offset + group * block.stride + i * line.step,
                       limits.least,
                       limits.greatest};
                checkRow(row);
            }
        }
    }
    return out;
}

constexpr auto baseParaMap = makeParaMap<basePara>();
constexpr auto dmdParaMap = makeParaMap<dmdPara>();
constexpr auto transParaMap = makeParaMap<transPara>();
constexpr auto swellParaMap = makeParaMap<swellPara>();
constexpr auto energyParaMap = makeParaMap<energyPara>();
constexpr auto DIParaMap = makeParaMap<diPara>();
constexpr auto DOParaMap = makeParaMap<doPara>();
constexpr auto ROParaMap = makeParaMap<roPara>();
constexpr auto SPParaMap = makeParaMap<setPointPara>();
constexpr auto LGParaMap = makeParaMap<logicPara>();
constexpr auto waveParaMap = makeParaMap<wavePara>();
constexpr auto snapParaMap = makeParaMap<snapPara>();
constexpr auto engbillParaMap = makeParaMap<engbillPara>();

static_assert(baseParaMap.size() == 25 && dmdParaMap.size() == 4 && transParaMap.size() == 4 &&
              swellParaMap.size() == 6 && energyParaMap.size() == 3 && DIParaMap.size() == 24 &&
              DOParaMap.size() == 4 && ROParaMap.size() == 4 && SPParaMap.size() == 256 &&
              LGParaMap.size() == 80 && waveParaMap.size() == 6 && snapParaMap.size() == 528 &&
              engbillParaMap.size() == 14);

} // namespace

constinit std::span<const ParaMap> paraMapAddr[ParaGroupNum] = {
    baseParaMap, dmdParaMap, transParaMap, swellParaMap, energyParaMap, DIParaMap,     DOParaMap,
    ROParaMap,   SPParaMap,  LGParaMap,    waveParaMap,  snapParaMap,   engbillParaMap};

const ParaMap *findPara(const void *record) {
    for (const std::span<const ParaMap> map : paraMapAddr) {
        for (const ParaMap &row : map) {
            if (row.modelAddr == record) {
                return &row;
            }
        }
    }
    return nullptr;
}

} // namespace ied
