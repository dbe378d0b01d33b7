// Where the instrument keeps its values in the shared region: one row a value, with its place in
// each block that has it.
#pragma once

#include "ied-device/quantities.h"

#include <span>

namespace ied::instrument {

// A value and its places; an offset of 0 means that a block does not have it. The names are those
// of the data behind the model ("PhV.phsA"), by wiring; null where the value has no meaning.
struct QuantityRow {
    u16 quantity;
    const char *wyeName;
    const char *deltaName;
    u32 realTime;  // f32
    u32 demand;    // f32: mean, lowest, highest one after another
    u32 predicted; // f32
    u32 extreme;   // f32 and its time; the highest of this month
    u32 maxDemand; // likewise
};
std::span<const QuantityRow> quantityRows();

// Whether the wiring gives a value at all.
bool isGiven(int quantity, bool delta);
// Whether a value is one of the phases in wye and one of the lines in delta, at the same place.
bool isTwofold(int quantity);

// Distances between the copies of a value in a block.
inline constexpr u32 demandLowest = 4;
inline constexpr u32 demandHighest = 8;
inline constexpr u32 extremeLowest = 640; // lowest of a month
inline constexpr u32 extremeLastMonth = 1472;

// Places of a channel of a spectrum: `orders` f32 one after another in the real-time block; from
// order 2 on, 96 octets apart, in the demand block, where mean, lowest and highest follow each other.
struct SpectrumRow {
    const char *wyeName; // "HPhVArr.phsAHar"
    const char *deltaName;
    u32 realTime;
    u32 demand;
    const char *interWyeName; // "IHPhVConArr.phsAHar"
    const char *interDeltaName;
    u32 inter;
};
inline constexpr u32 demandSpectrumStride = 96;
inline constexpr int demandFirstOrder = 2;
const SpectrumRow &spectrumRow(int channel);

// Place of an angle, u16 in hundredths of a degree, in the real-time block.
struct AngleRow {
    int channel;
    const char *wyeName;
    const char *deltaName;
    u32 realTime;
};
std::span<const AngleRow> angleRows();

// Short-term and long-term flicker severity of each phase.
struct FlickerRow {
    const char *wyeName;
    const char *deltaName;
    u32 place;
};
std::span<const FlickerRow> shortTermRows();
std::span<const FlickerRow> longTermRows();

} // namespace ied::instrument
