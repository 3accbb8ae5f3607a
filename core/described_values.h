// Log entries for arguments that only type information describes.
#pragma once

#include "com/dual_interface.h"
#include "log/log_document.h"

namespace zelt {

// Logs, before the call, the arguments that go in and do not come back. `words` are the arguments as they lie on the stack.
void WriteDescribedInputs(LogDocument& document, const com::DualMethod& method, const void* words);

// Logs, after a successful call, the arguments that come back.
void WriteDescribedOutputs(LogDocument& document, const com::DualMethod& method, const void* words);

}  // namespace zelt
