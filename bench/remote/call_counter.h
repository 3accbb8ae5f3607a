// Counts the remote calls that leave and enter this process, in the channel that carries them.
#pragma once

namespace zelt::bench {

// Starts counting, for the life of the process.
void CountRemoteCalls();

// How many calls there were since the function was called last: TakeRemoteCalls returns those that this process made,
// TakeCallsFromOthers those that it received.
long TakeRemoteCalls();
long TakeCallsFromOthers();

}  // namespace zelt::bench
