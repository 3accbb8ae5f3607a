// Writes a dump file when the process is about to end because of a fault that no guard takes: one in ZELT itself, or in a
// package on a thread of its own. Only if the user wants it (option WriteDumps); otherwise, the system reports the fault in its
// own way.
#pragma once

#include "system/outcome.h"

namespace zelt {

// From now on, such a fault or an abort leads to a dump in %LOCALAPPDATA%\ZELT\Dumps and a box that names the file; then the
// process ends with the fault's code. What is needed for that is loaded and allocated now, because nothing can be relied on
// later. Call it once.
[[nodiscard]] Outcome WriteDumpsOfFaults();

}  // namespace zelt
