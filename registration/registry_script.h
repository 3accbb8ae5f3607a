// The registry scripts in this module's resources, with which the program registers itself. The registrar runs their text; a
// registration is checked against the entries that they have to leave in the registry. Writes nothing.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelt {

// What stands between two per cent signs in a script, and the text that replaces it.
using ScriptReplacements = std::map<std::wstring, std::wstring, std::less<>>;

struct ScriptEntry {
    std::wstring key;                   // relative to the classes
    std::optional<std::wstring> value;  // its name, empty for the default one; none when only the key has to be there
    std::wstring text;
};

// The text of resource REGISTRY `script`. Throws com::Failure.
std::wstring ScriptText(int script);

// What `text` writes, in order. Knows what the scripts here use: keys, ForceRemove, NoRemove, val and strings; throws
// com::Failure for anything else. Leaves out keys that are never removed and hold no text: they belong to everybody.
std::vector<ScriptEntry> ReadScript(std::wstring_view text, const ScriptReplacements& replacements);

}  // namespace zelt
