// What the instrument holds now, for people and scripts: read back from the region, under the names
// of the data behind the model, in base units.
#pragma once

#include "ied-device/regionAccess.h"

#include <string>
#include <vector>

namespace ied::instrument {

struct Instrument;

// The numbers of all named values for the present wiring, in a fixed order; the vector is reused.
void readState(Region region, std::vector<f64> *values);

// One line of JSON: {"time":..., "wiring":0, "held":false, "updates":{...}, "values":{NAME: number or
// list of 64}, "before":{the same after the update before}}. Only names that begin with one of
// `prefixes`; all without any. A client that reads at the same time holds one of the two values.
std::string stateJson(const Instrument &instrument, const std::vector<std::string> &prefixes);

// Writes that line to the file in one piece, so that a reader never sees a part. False on failure.
bool writeStateFile(const Instrument &instrument, const std::string &path);

} // namespace ied::instrument
