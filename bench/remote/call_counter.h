// Counts the calls that leave this process, at the channel that carries them.
#pragma once

namespace zelt::bench {

// Begins to count, for the life of the process.
void CountRemoteCalls();

// Calls since the last question.
long TakeRemoteCalls();

}  // namespace zelt::bench
