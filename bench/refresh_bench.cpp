// One cycle of the refresh task with nothing changed and with everything changed, against a copy of
// the same octets row by row. Time per cycle; the ratios follow from one run.
#include "basicInterface/clock.h"
#include "basicInterface/memory.h"
#include "device/addressBinding.h"
#include "device/dataRefresh.h"
#include "device/externGlbCfg.h"
#include "device/measRefresh.h"
#include "device/region.h"
#include "platform/platform.h"
#include "proto-process/c/monitorTasks.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <sys/mman.h>
#include <vector>

namespace {

using namespace ied;

constexpr u16 elements = 64; // of each harmonic array

// The arrays that a model shows.
void giveArrays(HWYE &record, u32 count) {
    for (u32 i = 0; i < count; i++) {
        record.har[i] = MallocArray<Vector>(elements);
    }
    record.numHar = elements;
}

RefreshState state;
GenNode alarmText;

// A region of its own, all inputs counting pulses. In place of the monitor's answer stands a mutex of
// this task, and every hand-over counts as looked at: a wait for it ends at once.
bool setUp() {
    void *base = ::mmap(nullptr, regionSize, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (base == MAP_FAILED) {
        return false;
    }
    comdata = static_cast<u8 *>(base);
    externGlbCfgInit();
    fdRtc = clockDeviceOpen("/unix");
    semMonitor = semBCreate(semQPriority, semEmpty);
    semRefresh = semMCreate(semQPriority);
    lookedAt = 0x7FFFFFFF;
    dataMapInit();
    for (u32 i = 0; i < region::DIMod.count; i++) {
        storeShared(*regionPlace(comdata, region::DIMod, i), 1);
    }
    for (const char *set :
         {"RT.HPhVArr", "RT.HPPVArr", "RT.HAArr", "RT.IHPhVConArr", "RT.IHPPVConArr", "RT.IHAConArr",
          "DMD.avg.HPhVArr", "DMD.avg.HPPVArr", "DMD.avg.HAArr", "DMD.max.HPhVArr", "DMD.max.HPPVArr",
          "DMD.max.HAArr", "DMD.min.HPhVArr", "DMD.min.HPPVArr", "DMD.min.HAArr"}) {
        const MapPlace place = resolveSAddr(set);
        giveArrays(*reinterpret_cast<HWYE *>(protoData + place.offset), place.nodeType == CdcHWYE ? 4 : 3);
    }
    alarmText.nodeType = TypeVisString255;
    for (DescNodes &nodes : setPointDesc) {
        nodes.dNode = nodes.dUNode = &alarmText;
    }
    refreshStateInit(&state);
    return true;
}

void nothingChanged(benchmark::State &bench) {
    refreshCycle(&state);
    for (auto _ : bench) {
        refreshCycle(&state);
    }
}

// Every counter differs from the remembered one; both hand-overs take place.
void everythingChanged(benchmark::State &bench) {
    for (auto _ : bench) {
        std::memset(&state, 0xFF, sizeof state.lastArmFlag + sizeof state.lastDspFlag);
        state.lastFlagThisMonth++;
        state.lastFlagLastMonth++;
        for (u32 i = 0; i < region::pulseCount.count; i++) {
            storeShared(*regionPlace(comdata, region::pulseCount, i), state.lastFlagThisMonth);
        }
        refreshCycle(&state);
    }
}

// What that cycle reads in wye, copied row by row and element by element.
u8 *copyRow(const MeasRow &row, u32 shift, u32 size, u8 *target) {
    const u8 *source = row.srcAddr + shift;
    if (row.prototype != ProtoArray) {
        std::memcpy(target, source, size);
        return target + size;
    }
    const u32 stride = row.srcOffset > region::demandTime.sec.offset ? demandArrayStride : sizeof(f32);
    for (u32 i = 0; i < elements; i++) {
        std::memcpy(target + i * sizeof(f32), source + i * stride, sizeof(f32));
    }
    return target + elements * sizeof(f32);
}

struct CopiedTable {
    MeasTableId id;
    u32 walks;
    u32 size; // octets of a value
};
constexpr CopiedTable tables[] = {
    {MeasTableId::basic, 1, 4},       {MeasTableId::harmImBal, 1, 4}, {MeasTableId::pst, 1, 4},
    {MeasTableId::plt, 1, 4},         {MeasTableId::diCnt, 1, 4},     {MeasTableId::energy, 1, 4},
    {MeasTableId::demand, 3, 4},      {MeasTableId::preDemand, 1, 4}, {MeasTableId::rtStat, 4, 16},
    {MeasTableId::demandStat, 2, 16},
};

void rowWiseCopy(benchmark::State &bench) {
    std::vector<u8> copy(1 << 20);
    std::size_t octets = 0;
    for (auto _ : bench) {
        u8 *target = copy.data();
        for (const CopiedTable &table : tables) {
            for (u32 walk = 0; walk < table.walks; walk++) {
                for (const MeasRow &row : measTable(table.id)) {
                    if (row.wiring == anyWiring || row.wiring == wye) {
                        target = copyRow(row, 4 * walk, table.size, target);
                    }
                }
            }
        }
        octets = static_cast<std::size_t>(target - copy.data());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    bench.counters["octets"] = static_cast<f64>(octets);
}

[[maybe_unused]] const bool ready = setUp();

BENCHMARK(nothingChanged);
BENCHMARK(everythingChanged);
BENCHMARK(rowWiseCopy);

} // namespace
