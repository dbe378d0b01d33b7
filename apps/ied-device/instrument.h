// The instrument as a whole: what it shares with the server, its physical state, and its registers.
// One task owns the record; nothing in it is shared but the region behind it.
#pragma once

#include "ied-device/demand.h"
#include "ied-device/disturbances.h"
#include "ied-device/energy.h"
#include "ied-device/logicGroups.h"
#include "ied-device/regionAccess.h"
#include "ied-device/setpoints.h"
#include "ied-device/statistics.h"
#include "ied-device/voltageEvents.h"
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

// Events that come by themselves.
struct Chance {
    f64 rate = 0; // a minute
    u64 seed = 0; // moves on with each number
};

struct Instrument {
    SharedObjects shared;
    Grid grid;
    Disturbances disturbances;
    Chance chance;
    f64 seconds = 0;            // the instrument's clock, from the epoch; runs faster with a speed-up
    u32 steps = 0;              // seconds lived
    u64 ticks = 0;              // and ticks
    u64 lateNs = 0;             // host time since the running tick was due
    bool held = false;          // nothing moves
    Method method{};            // the one that the values below are of
    bool methodTouched = false; // changed since, while held; perhaps back again
    Quantities quantities{};
    f64 phaseVolts[3] = {}; // of the running tick
    f64 lineVolts[3] = {};
    Phasor undisturbed[3] = {}; // phase voltages without what a disturbance takes, of the last second
    VoltageEvents voltageEvents;
    SetPoints setPoints;
    LogicGroups logicGroups;
    u32 calledFor = 0;  // bit of each output that something active calls for
    u64 openAt[6] = {}; // tick that ends the pulse of each output, 0 for none
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

// Lives on for one tick of the instrument's clock, which was due `lateNs` of the host's time ago: looks
// at the voltages, the setpoints and the logic. With the last tick of a second it measures, integrates,
// writes what is due and raises the change counters; it returns true then.
bool tickInstrument(Instrument *instrument, u64 lateNs);

// All ticks of one second, the last of them due now.
void stepInstrument(Instrument *instrument);

// Measures and writes the real-time block at once, with nothing integrated: after a change of a
// parameter. If it has changed how to measure, all that sums up or compares values begins anew and is
// written too. While held nothing is written; the next step makes up for it.
void refreshRealTime(Instrument *instrument);

// Voltages of `level`, as a ratio to the rated one, on some phases for so many ticks from now on.
void addVariation(Instrument *instrument, u8 phases, f64 level, u64 length);

// Parameters of the measurement as they stand in the live area.
Method methodOf(Region region);

// Adds to a pulse counter (input 0 to 7) if the input counts pulses. True if it does.
bool countPulses(Instrument *instrument, u32 input, u32 count);
// New state of a digital input (0 to 7). A change has an entry in the ring if the input shows a state;
// if it counts pulses, its closing is one.
void setInput(Instrument *instrument, u32 input, bool closed);
// Closes or opens an output (0 to 3 relays, 4 and 5 digital outputs); a change has an entry in the
// ring. Where a length is set for its pulses it opens again after that. False, with nothing done, for
// a digital output that is in use for something else.
bool operateOutput(Instrument *instrument, u32 output, bool close);
// Opens the outputs whose pulse is over.
void endPulses(Instrument *instrument);

} // namespace ied::instrument
