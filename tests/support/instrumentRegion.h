// A simulated instrument whose region is plain memory and whose clock is held.
#pragma once

#include "ied-device/console.h"
#include "ied-device/instrument.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/mman.h>

namespace ied::instrument::test {

class InstrumentRegion : public testing::Test {
  protected:
    void SetUp() override {
        void *memory = mmap(nullptr, regionSize, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        ASSERT_NE(memory, MAP_FAILED);
        area.base = static_cast<u8 *>(memory);
        mutex = semMCreate(semQPriority);
        heldClockStart(now(), false);
        start();
    }
    void TearDown() override {
        heldClockStop();
        semDelete(mutex);
        munmap(area.base, regionSize);
    }

    virtual u32 now() const { return 1710500000; } // 2024-03-15

    void start() {
        unit = std::make_unique<Instrument>();
        unit->shared.region = area;
        unit->shared.mutex = mutex;
        startInstrument(unit.get());
    }
    void step(int times) {
        for (int i = 0; i < times; i++) {
            stepInstrument(unit.get());
        }
    }
    std::string line(const std::string &text) { return executeLine(unit.get(), text).text; }
    f64 real(u32 offset) const { return loadAt<f32>(area, offset); }
    u32 flag(u32 index) const { return load(area, region::dspFlag, index); }
    u32 arm(u32 index) const { return load(area, region::armFlag, index); }
    void editCopiesLive() { std::copy_n(area.base, region::paramAreaSize, area.base + region::editArea); }

    Region area{};
    SemId mutex = nullptr;
    std::unique_ptr<Instrument> unit;
};

} // namespace ied::instrument::test
