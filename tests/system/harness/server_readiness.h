// Waiting until a ZELT process is ready to serve clients.
#pragma once

#include "tests/system/harness/process.h"

namespace zelt::test {

// Waits until the main thread's message loop runs, which starts after the classes are registered. False if the process ends
// instead.
bool WaitUntilServing(const Process& server);

}  // namespace zelt::test
