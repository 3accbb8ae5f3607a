// Warns that a ZELT with other rights than this one is running for the same user: each keeps its own list of packages, and
// simulators use the one with their own rights.
#pragma once

namespace zelt {

// Shows a message box on a new thread, because a simulator may be waiting for this process. The box ends with the process.
void WarnOfOtherRights();

}  // namespace zelt
