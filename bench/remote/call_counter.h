// Counts the calls that leave this process and those that come in, at the channel that carries them.
#pragma once

namespace zelt::bench {

// Begins to count, for the life of the process.
void CountRemoteCalls();

// Calls since the last question.
long TakeRemoteCalls();
long TakeCallsFromOthers();

}  // namespace zelt::bench
