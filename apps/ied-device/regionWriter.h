// Brings what was measured into the blocks of the shared region. Every writer stores the block's
// time and values; the caller raises the change counter.
#pragma once

#include "ied-device/demand.h"
#include "ied-device/energy.h"
#include "ied-device/regionAccess.h"
#include "ied-device/statistics.h"

namespace ied::instrument {

void writeRealTime(Region region, const Quantities &quantities, const TimeStamp &time);
// Short-term or long-term severity of the three phases.
void writeShortTerm(Region region, const f64 *phases, const TimeStamp &time);
void writeLongTerm(Region region, const f64 *phases, const TimeStamp &time);
void writeEnergy(Region region, const Energies &energies, const TimeStamp &time);
void writeDemand(Region region, const DemandPeriod &window, const TimeStamp &time);
// `means` by quantity.
void writePredicted(Region region, const f64 *means, const TimeStamp &time);
// Extremes of this month, or of the last one, as the wiring shows them.
void writeExtremes(Region region, const MonthExtremes &month, bool isLast, bool delta);

// What a restarted instrument finds of its former self.
Energies readEnergies(Region region);
MonthExtremes readExtremes(Region region, bool isLast, bool delta);

} // namespace ied::instrument
