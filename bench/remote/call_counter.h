// Counts the calls that leave and enter this process, at the channel that carries them.
#pragma once

namespace zelt::bench {

// Starts counting, for the life of the process.
void CountRemoteCalls();

// Calls since the last request.
long TakeRemoteCalls();
long TakeCallsFromOthers();

}  // namespace zelt::bench
