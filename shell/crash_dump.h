// Writes a dump file when the process is about to end because of a fault that no guard catches: a fault in ZELT itself, or on a
// thread that a package has started. Does so only if the user wants it (option WriteDumps); otherwise, the system reports the
// fault.
#pragma once

#include "system/outcome.h"

namespace zelt {

// From now on, such a fault or an abort leads to a dump in %LOCALAPPDATA%\ZELT\Dumps and a box that names the file; then the
// process ends with the fault's code. Loads and allocates now what this needs, because after a fault nothing can be relied on.
// Call it once.
[[nodiscard]] Outcome WriteDumpsOfFaults();

}  // namespace zelt
