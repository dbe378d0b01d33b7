// The instrument as a whole: what it shares with the server, its physical state, and its registers.
// One task owns the record; nothing in it is shared but the region behind it.
#pragma once

#include "ied-device/demand.h"
#include "ied-device/energy.h"
#include "ied-device/regionAccess.h"
#include "ied-device/statistics.h"
#include "platform/platform.h"

#include <vector>

namespace ied::instrument {

inline constexpr int shortTerms = 12; // of a long-term flicker severity

// The objects that both sides share.
struct SharedObjects {
    Region region{};
    SemId mutex = nullptr;     // guards copies between the parameter areas
    MsgQId commands = nullptr; // manageMsg from the server
    MsgQId watchdog = nullptr; // WdgMessage from the server's tasks
};

// Opens all four, or makes them. Null, or the name of the one that failed.
const char *openSharedObjects(SharedObjects *shared);

struct Flicker {
    f64 severity[3] = {};            // sum over the seconds of the running ten minutes
    f64 history[3][shortTerms] = {}; // short-term severities, a ring
    u32 finished = 0;
    u32 samples = 0;
};

struct Instrument {
    SharedObjects shared;
    Grid grid;
    f64 seconds = 0;            // the instrument's clock, from the epoch; runs faster with a speed-up
    u32 steps = 0;              // seconds lived
    bool held = false;          // nothing moves
    Method method{};            // the one that the values below are of
    bool methodTouched = false; // changed since, while held; perhaps back again
    Quantities quantities{};
    Energies energies{};
    DemandWindow demand;
    Flicker flicker;
    MonthExtremes thisMonth{};
    MonthExtremes lastMonth{};
    int month = 0;
    bool extremesMoved = false;
    std::vector<f64> state;       // what the region held after the last real-time update
    std::vector<f64> stateBefore; // and after the one before
};

// Fills everything that the server reads, then sets the ready word. A region that a former
// instrument has filled keeps its parameters, registers, rings and counters.
void startInstrument(Instrument *instrument);

// Lives on for one second of the instrument's clock: measures, integrates, writes what is due and
// raises the change counters.
void stepInstrument(Instrument *instrument);

// Measures and writes the real-time block at once, with nothing integrated: after a change of a
// parameter. If it has changed how to measure, all that sums up or compares values begins anew and is
// written too. While held nothing is written; the next step makes up for it.
void refreshRealTime(Instrument *instrument);

// Parameters of the measurement as they stand in the live area.
Method methodOf(Region region);

// Adds to a pulse counter (input 0 to 7) if the input counts pulses. True if it does.
bool countPulses(Instrument *instrument, u32 input, u32 count);
// New state of a digital input, with its entry in the ring.
void setInput(Instrument *instrument, u32 input, bool closed);
// New state of an output (0 to 3 relays, 4 and 5 digital outputs), with its entry in the ring.
void setOutput(Instrument *instrument, u32 output, bool closed);

} // namespace ied::instrument
