// Counts the remote calls that leave and enter this process, in the channel that carries them.
#pragma once

namespace zelt::bench {

// Starts counting, for the life of the process.
void CountRemoteCalls();

// The number of calls that this process made (TakeRemoteCalls) or received (TakeCallsFromOthers) since the same function was
// last called.
long TakeRemoteCalls();
long TakeCallsFromOthers();

}  // namespace zelt::bench
