// Counts the remote calls that leave and enter this process, in the channel that carries them.
#pragma once

namespace zelt::bench {

// Starts counting, for the life of the process.
void CountRemoteCalls();

// The calls since the last request: TakeRemoteCalls those that this process made, TakeCallsFromOthers those that it received.
long TakeRemoteCalls();
long TakeCallsFromOthers();

}  // namespace zelt::bench
