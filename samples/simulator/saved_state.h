// The bytes that a component saves and loads: through IPersistStreamInit if it has that interface, otherwise through
// IPersistStream.
#pragma once

#include <objidl.h>

#include <cstddef>
#include <string>
#include <vector>

#include "samples/simulator/report.h"

namespace zelt::sample {

// `present` is false for a component that has neither interface.
struct SavedState {
    bool present = false;
    std::vector<std::byte> bytes;
};

// `what` names the component in the texts of failures, for example "the unit operation". Both throw CapeFailure. SaveState
// also prints IsDirty before and after saving.
void LoadState(IDispatch* object, const SavedState& state, const std::wstring& what);
SavedState SaveState(IDispatch* object, const std::wstring& what, Report& report);

}  // namespace zelt::sample
