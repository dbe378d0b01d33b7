// The clock device of the instrument, from which every time stamp of the server comes.
#pragma once

namespace ied {

// Descriptor of the clock device, opened once at start; -1 before that.
extern int fdRtc;

} // namespace ied
