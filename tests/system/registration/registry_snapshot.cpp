#include "tests/system/registration/registry_snapshot.h"

#include <algorithm>
#include <iterator>

#include "system/narrow.h"
#include "registration/key_tree.h"
#include "registration/registry_mirror.h"
#include "tests/system/harness/under_wine.h"

namespace {

// Below this name, the 64-bit view shows the 32-bit view again.
constexpr wchar_t kOtherView[] = L"Wow6432Node";

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
        if (name != kOtherView) AddLines(lines, path + '\\' + zelt::Narrow(name, CP_UTF8), subtree);
    }
}

// Under Wine, no other program writes to the registry, so a snapshot contains every key. On Windows, other programs do, so a
// snapshot contains only COM's keys, and the keys whose names begin with one of ours.
bool IsCompared(const std::wstring& name)
{
    if (zelt::test::UnderWine()) return true;
    constexpr const wchar_t* kOfCom[] = {L"CLSID", L"Interface", L"TypeLib", L"AppID"};
    constexpr const wchar_t* kOwn[] = {L"ZELT", L"PRAVIK", L".zlg", L"BRIX"};
    return std::find(std::begin(kOfCom), std::end(kOfCom), name) != std::end(kOfCom) ||
           std::any_of(std::begin(kOwn), std::end(kOwn), [&](const wchar_t* own) { return name.starts_with(own); });
}

void AddKey(RegistrySnapshot& lines, const std::string& mark, const zelt::RegistryRoot& root, const wchar_t* path)
{
    zelt::RegistryKey key;
    if (key.Open(root, path) != ERROR_SUCCESS) return;
    if (zelt::test::UnderWine()) AddLines(lines, mark, {key.Values(), {}});
    for (const std::wstring& name : key.SubkeyNames()) {
        if (name == kOtherView || !IsCompared(name)) continue;
        const auto tree = zelt::ReadKeyTree({key.Get(), root.view}, name);
        if (tree) AddLines(lines, mark + '\\' + zelt::Narrow(name, CP_UTF8), *tree);
    }
}

}  // namespace

RegistrySnapshot TakeRegistrySnapshot()
{
    RegistrySnapshot lines;
    for (const REGSAM view : zelt::RegistryViews()) {
        const char* name = view == KEY_WOW64_64KEY ? "machine 64" : view == KEY_WOW64_32KEY ? "machine 32" : "machine";
        AddKey(lines, name, {HKEY_LOCAL_MACHINE, view}, L"Software\\Classes");
        const char* user = view == KEY_WOW64_64KEY ? "user 64" : view == KEY_WOW64_32KEY ? "user 32" : "user";
        AddKey(lines, user, {HKEY_CURRENT_USER, view}, L"Software");
        if (!zelt::test::UnderWine()) AddKey(lines, user, {HKEY_CURRENT_USER, view}, L"Software\\Classes");
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
