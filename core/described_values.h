// Log entries for arguments that only type information describes.
#pragma once

#include "com/dual_interface.h"
#include "log/log_document.h"

namespace zelt {

// The arguments that go in and do not come back, before the call. `words` are the arguments as they lie on the stack.
void WriteDescribedInputs(LogDocument& document, const com::DualMethod& method, const void* words);

// Those that come back, after a success.
void WriteDescribedOutputs(LogDocument& document, const com::DualMethod& method, const void* words);

}  // namespace zelt
