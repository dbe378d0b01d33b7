#include "device/measTables.h"

#include "device/measTableLines.h"
#include "device/region.h"

#include <cstddef>

namespace ied {

namespace {

using namespace measLines;

// Where the largest addition to a source of a table leads, and what is read there.
struct Extent {
    u32 addition;    // to the source by sets and classes
    u32 valueSize;   // octets of a value, its time included
    u32 arrayStride; // of array rows
};

// Longest array that a record can announce.
constexpr u32 maxElements = 0xFFFF;

constexpr bool inRegion(u32 offset, const Extent &extent, bool isArray, u32 align) {
    const u64 length = isArray ? u64{maxElements - 1} * extent.arrayStride + sizeof(f32) : extent.valueSize;
    return offset % align == 0 && u64{offset} + extent.addition + length <= regionSize;
}

// Kind of the rows of an object of that CDC, the octets from its record to component `index`, and
// what encloses the component.
struct Target {
    u16 prototype;
    u16 fcdType;
    u32 component;
};

constexpr Target targetOf(u8 cdc, u32 index) {
    const u32 components = cdc == CdcWYE || cdc == CdcHWYE ? 4 : cdc == CdcMV || cdc == CdcBCR ? 1 : 3;
    if (index >= components) {
        throw "the object has no such component";
    }
    switch (cdc) {
    case CdcMV:
        return {ProtoMV, mapInner, 0};
    case CdcBCR:
        return {ProtoBCR, CdcBCR, 0};
    case CdcWYE:
    case CdcDEL: // the records are of one shape, and so is their counter
        return {ProtoCMV, CdcWYE, static_cast<u32>(offsetof(WYE, phs) + index * sizeof(CMV))};
    case CdcSEQ:
        return {ProtoCMV, CdcSEQ, static_cast<u32>(offsetof(SEQ, c) + index * sizeof(CMV))};
    case CdcHWYE:
    case CdcHDEL:
        return {ProtoArray, cdc, static_cast<u32>(offsetof(HWYE, har) + index * sizeof(Vector *))};
    default:
        throw "no measurement of that CDC";
    }
}

// Calls `row(object, component, source, line, number)` for each component of the table. A line
// with several object names has one source for each and no components.
template <class Lines, class Row> constexpr void forEachComponent(const Lines &lines, Row row) {
    for (const MeasLine &line : lines) {
        for (u32 number = line.first; number <= line.last; number++) {
            u32 index = 0;
            const bool list = line.object.find(' ') != std::string_view::npos;
            forEachName(line.object, [&](std::string_view object) {
                if (list) {
                    row(object, 0U, line.sources[index++], line, number);
                    return;
                }
                for (u32 component = 0; component < 4; component++) {
                    if (line.sources[component].magnitude != 0) {
                        row(object, component, line.sources[component], line, number);
                    }
                }
            });
        }
    }
}

template <const auto &lines> consteval u32 countMeasRows() {
    u32 count = 0;
    forEachComponent(lines, [&count](std::string_view, u32, const Source &source, const MeasLine &, u32) {
        count += source.angle != 0 ? 2 : 1;
    });
    return count;
}

template <const auto &lines> consteval auto makeMeasTable(Extent extent) {
    std::array<MeasRow, countMeasRows<lines>()> out{};
    u32 index = 0;
    forEachComponent(lines, [&](std::string_view object, u32 component, const Source &source,
                                const MeasLine &line, u32 number) {
        const MapPlace place = resolveSAddr(NumberedName<32>(object, number).view());
        const Target target = targetOf(place.nodeType, component);
        u8 *const record = protoData + place.offset;
        const u32 offset = source.magnitude + (number - line.first) * line.step;
        const u8 wiring = source.wiring == Source::ofObject ? line.wiring : source.wiring;
        if (!inRegion(offset, extent, target.prototype == ProtoArray, 4)) {
            throw "source outside the region";
        }
        out[index++] = {target.prototype,
                        source.angle != 0 ? AngMagnitude : AngNone,
                        record + target.component,
                        offset,
                        nullptr,
                        wiring,
                        target.fcdType,
                        target.fcdType == mapInner ? nullptr : record};
        if (source.angle == 0) {
            return;
        }
        if (!inRegion(source.angle, extent, false, 2)) {
            throw "source outside the region";
        }
        out[index] = out[index - 1];
        out[index].angtype = AngAngle;
        out[index].srcOffset = source.angle;
        out[index].wiring = source.angleWiring == Source::ofMagnitude ? wiring : source.angleWiring;
        index++;
    });
    return out;
}

constexpr u32 demandSetStep = 4;    // average, minimum, maximum of a value
constexpr u32 statMinStep = 640;    // from the maxima of a month to its minima
constexpr u32 statMonthStep = 1472; // from this month to the last

constexpr Extent plain{0, 4, 4};
constexpr Extent demandExtent{2 * demandSetStep, 4, demandArrayStride};
constexpr Extent statExtent{statMonthStep + statMinStep, 16, 4};

constinit auto basicMeasTable = makeMeasTable<basicLines>(plain);
constinit auto harmImBalMeasTable = makeMeasTable<harmImBalLines>(plain);
constinit auto pstMeasTable = makeMeasTable<pstLines>(plain);
constinit auto pltMeasTable = makeMeasTable<pltLines>(plain);
constinit auto diCntMeasTable = makeMeasTable<diCntLines>(plain);
constinit auto energyMeasTable = makeMeasTable<energyLines>(plain);
constinit auto demandMeasTable = makeMeasTable<demandLines>(demandExtent);
constinit auto preDemandMeasTable = makeMeasTable<preDemandLines>(plain);
constinit auto rtStatTable = makeMeasTable<rtStatLines>(statExtent);
constinit auto demandStatTable = makeMeasTable<demandStatLines>(statExtent);

struct NamedTable {
    const char *name;
    std::span<MeasRow> rows;
};

// By MeasTableId.
constexpr NamedTable measTables[] = {
    {"basicMeasTable", basicMeasTable},   {"harmImBalMeasTable", harmImBalMeasTable},
    {"pstMeasTable", pstMeasTable},       {"pltMeasTable", pltMeasTable},
    {"diCntMeasTable", diCntMeasTable},   {"energyMeasTable", energyMeasTable},
    {"demandMeasTable", demandMeasTable}, {"preDemandMeasTable", preDemandMeasTable},
    {"rtStatTable", rtStatTable},         {"demandStatTable", demandStatTable},
};
static_assert(std::size(measTables) == measTableNum);

// Octets from one leaf of the tree to another of the same kind.
consteval i32 apart(std::string_view from, std::string_view to) {
    return static_cast<i32>(resolveSAddr(to).offset) - static_cast<i32>(resolveSAddr(from).offset);
}

} // namespace

constexpr MeasSetShift demandSets[3] = {
    {0, 0},
    {apart("DMD.avg.PhV", "DMD.min.PhV"), demandSetStep},
    {apart("DMD.avg.PhV", "DMD.max.PhV"), 2 * demandSetStep},
};

constexpr MeasSetShift rtStatSets[2][2] = {
    {{0, 0}, {apart("MON.rt.now.max.PhV", "MON.rt.now.min.PhV"), statMinStep}},
    {{apart("MON.rt.now.max.PhV", "MON.rt.last.max.PhV"), statMonthStep},
     {apart("MON.rt.now.max.PhV", "MON.rt.last.min.PhV"), statMonthStep + statMinStep}},
};

constexpr MeasSetShift demandStatSets[2] = {
    {0, 0},
    {apart("MON.dmd.now.max.A", "MON.dmd.last.max.A"), statMonthStep},
};

std::span<const MeasRow> measTable(MeasTableId table) {
    return measTables[static_cast<std::size_t>(table)].rows;
}

const char *measTableName(MeasTableId table) {
    return measTables[static_cast<std::size_t>(table)].name;
}

int dataMapInit() {
    for (const NamedTable &table : measTables) {
        for (MeasRow &row : table.rows) {
            row.srcAddr = comdata + row.srcOffset;
        }
    }
    return 1;
}

} // namespace ied
