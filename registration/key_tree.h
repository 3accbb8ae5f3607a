// A registry key with everything below it, in memory: read from one view, compared with another or written to it. A plain value;
// two trees are equal when their names, types and bytes are equal.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "system/registry.h"

namespace zelt {

struct KeyTree {
    std::map<std::wstring, RegistryValue> values;
    std::map<std::wstring, KeyTree> subkeys;
    bool operator==(const KeyTree&) const = default;
};

// Nothing when the key cannot be opened. Leaves out what cannot be read below it.
std::optional<KeyTree> ReadKeyTree(const RegistryRoot& root, const std::wstring& path);

// Adds the tree to the key at `path`, which is created when missing. Returns a Windows error code.
[[nodiscard]] LSTATUS WriteKeyTree(const RegistryRoot& root, const std::wstring& path, const KeyTree& tree);

}  // namespace zelt
