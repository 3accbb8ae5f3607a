#include "tests/system/registration/registry_snapshot.h"

#include <algorithm>
#include <iterator>

#include "core/narrow.h"
#include "shell/key_tree.h"
#include "shell/registry_views.h"

namespace {

std::string ValueText(const zelt::RegistryValue& value)
{
    if (value.type == REG_SZ) {
        return zelt::Narrow({reinterpret_cast<const wchar_t*>(value.data.data()), value.data.size() / sizeof(wchar_t)},
                            CP_UTF8);
    }
    std::string text = std::to_string(value.type) + ':';
    for (const BYTE byte : value.data) text += std::to_string(byte) + ' ';
    return text;
}

void AddLines(RegistrySnapshot& lines, const std::string& path, const zelt::KeyTree& tree)
{
    lines.insert(path);
    for (const auto& [name, value] : tree.values) {
        lines.insert(path + " : " + zelt::Narrow(name, CP_UTF8) + " = " + ValueText(value));
    }
    for (const auto& [name, subtree] : tree.subkeys) {
        // The 64-bit view shows the 32-bit one once more, below this name.
        if (name != L"Wow6432Node") AddLines(lines, path + '\\' + zelt::Narrow(name, CP_UTF8), subtree);
    }
}

}  // namespace

RegistrySnapshot TakeRegistrySnapshot()
{
    RegistrySnapshot lines;
    for (const REGSAM view : zelt::RegistryViews()) {
        const char* name = view == KEY_WOW64_64KEY ? "machine 64" : view == KEY_WOW64_32KEY ? "machine 32" : "machine";
        if (const auto tree = zelt::ReadKeyTree({HKEY_LOCAL_MACHINE, view}, L"Software\\Classes")) {
            AddLines(lines, name, *tree);
        }
        const char* user = view == KEY_WOW64_64KEY ? "user 64" : view == KEY_WOW64_32KEY ? "user 32" : "user";
        if (const auto tree = zelt::ReadKeyTree({HKEY_CURRENT_USER, view}, L"Software")) AddLines(lines, user, *tree);
    }
    return lines;
}

RegistrySnapshot Minus(const RegistrySnapshot& a, const RegistrySnapshot& b)
{
    RegistrySnapshot difference;
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::inserter(difference, difference.end()));
    return difference;
}

RegistrySnapshot Without(const RegistrySnapshot& lines, const std::set<std::string>& parts)
{
    RegistrySnapshot rest;
    for (const std::string& line : lines) {
        const bool excluded = std::any_of(
            parts.begin(), parts.end(), [&](const std::string& part) { return line.find(part) != std::string::npos; });
        if (!excluded) rest.insert(line);
    }
    return rest;
}

RegistrySnapshot Only(const RegistrySnapshot& lines, const std::string& part)
{
    RegistrySnapshot chosen;
    for (const std::string& line : lines) {
        if (line.find(part) != std::string::npos) chosen.insert(line);
    }
    return chosen;
}
