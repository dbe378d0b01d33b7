// Takes every record off the server's two queues and prints it, instead of an instrument.
#pragma once

namespace ied::instrument {

// Prints {"spy":"ready"}, then one line of JSON a record, each flushed at once. Writes nothing to the
// region. Ends with the process; returns 1, after a message, when the shared objects cannot be had.
int spy();

} // namespace ied::instrument
