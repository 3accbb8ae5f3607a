// When a ZELT process that a test started serves clients.
#pragma once

#include "tests/system/harness/process.h"

namespace zelt::test {

// Waits until the main thread's message loop runs, before which the classes are registered. False if the process ends instead.
bool WaitUntilServing(const Process& server);

}  // namespace zelt::test
