// Calls through a component's persistence interfaces, which are not dual, so no type information describes them.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <optional>
#include <string>
#include <string_view>

namespace zelt::replay {

bool IsPersistence(std::string_view member);

// The data in the stream of a Load or a Save.
struct SavedState {
    bool clearsDirty = false;  // Save was asked to clear the dirty flag
    std::optional<std::string_view> recorded;
    std::optional<std::string> saved;  // this time, by Save
};

// Makes the call, with a stream in memory in place of the simulator's. Throws Unplayable for an unknown member, and for a Load
// without recorded data.
HRESULT CallPersistence(std::string_view member, IUnknown* object, SavedState& state);

// The text for the user when the two states differ; nothing when they do not, or when one of them is not known.
std::optional<std::string> Difference(const SavedState& state);

}  // namespace zelt::replay
