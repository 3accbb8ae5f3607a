// The registry scripts in this module's resources, by which the program registers: their text, which the registrar runs,
// and what it has to leave in the registry, entry by entry, which is how a registration is checked. Writes nothing.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelt {

// What stands between two per cent signs, and its text.
using ScriptReplacements = std::map<std::wstring, std::wstring, std::less<>>;

struct ScriptEntry {
    std::wstring key;                   // relative to the classes
    std::optional<std::wstring> value;  // its name, empty for the default one; none when only the key has to be there
    std::wstring text;
};

// Of resource REGISTRY `script`. Throws com::Failure.
std::wstring ScriptText(int script);

// What `text` writes, in its order. Knows what scripts here use: keys, ForceRemove, NoRemove, val and strings. Keys that
// are never removed, and hold no text, belong to everybody and are left out. Throws com::Failure for anything else.
std::vector<ScriptEntry> ReadScript(std::wstring_view text, const ScriptReplacements& replacements);

}  // namespace zelt
