#include "platform/platform.h"

namespace ied {

// Never destroyed: tasks still read it while the process ends.
PlatformOptions &platformOptions = *new PlatformOptions;

} // namespace ied
