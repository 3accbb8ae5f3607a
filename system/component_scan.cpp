#include "system/component_scan.h"

#include <objbase.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>

#include "system/registry_view.h"
#include "system/guid_text.h"

namespace zelt {
namespace {

constexpr wchar_t kClasses[] = L"CLSID";

// Longer keys cannot be class identifiers.
constexpr std::size_t kLongestName = 127;

std::wstring TextOfKey(const RegistryRoot& root, const std::wstring& path)
{
    RegistryKey key;
    if (key.Open(root, path) != ERROR_SUCCESS) return {};
    return key.ReadString(L"").value_or(std::wstring());
}

bool Exists(const RegistryRoot& root, const std::wstring& path)
{
    return RegistryKey().Open(root, path) == ERROR_SUCCESS;
}

ComponentInfo Describe(const RegistryRoot& root, const std::wstring& path, const std::wstring& identity,
                       REFCLSID classId)
{
    ComponentInfo info = {classId, {}, {}};
    RegistryKey key;
    if (key.Open(root, path + L"\\CapeDescription") == ERROR_SUCCESS) {
        info.name = key.ReadString(L"Name").value_or(std::wstring());
        info.displayName = info.name;
        if (const auto description = key.ReadString(L"Description")) {
            info.displayName = info.name.empty() ? *description : info.name + L" (" + *description + L')';
        }
    }
    if (info.displayName.empty()) info.displayName = TextOfKey(root, path + L"\\ProgID");
    if (info.displayName.empty()) info.displayName = TextOfKey(root, path + L"\\VersionIndependentProgID");
    if (info.displayName.empty()) info.displayName = identity;
    if (info.name.empty()) info.name = info.displayName;
    return info;
}

// A class of the other width serves this process only from a program of its own, and an entry in the own view takes precedence.
bool UsableFromOtherView(const ClassSources& sources, const std::wstring& path)
{
    return Exists(sources.other, path + L"\\LocalServer32") && !Exists(sources.own, path);
}

using Results = std::vector<std::vector<ComponentInfo>>;

void Examine(const RegistryRoot& root, const std::wstring& identity, std::span<const ComponentSearch> searches,
             Results& results)
{
    const std::wstring path = std::wstring(kClasses) + L'\\' + identity;
    // Keys below one that may not be opened could still be opened directly.
    RegistryKey key, categories;
    if (key.Open(root, path) != ERROR_SUCCESS) return;
    if (categories.Open({key.Get(), root.view}, L"Implemented Categories") != ERROR_SUCCESS) return;
    CLSID classId;
    if (FAILED(CLSIDFromString(identity.c_str(), &classId))) return;
    std::optional<ComponentInfo> info;
    for (const std::wstring& category : categories.SubkeyNames()) {
        for (std::size_t index = 0; index < searches.size(); ++index) {
            if (_wcsicmp(category.c_str(), searches[index].category) != 0) continue;
            if (classId == searches[index].leftOut) continue;
            if (!info) info = Describe(root, path, identity, classId);
            results[index].push_back(*info);
        }
    }
}

Outcome NotSearched(const wchar_t* text) { return Outcome::Failed(text, L"Error:", MB_OK | MB_ICONERROR | MB_TOPMOST); }

Outcome Search(std::span<const ComponentSearch> searches, const ClassSources& sources, Results& results)
{
    RegistryKey classes;
    if (classes.Open(sources.own, kClasses) != ERROR_SUCCESS) {
        return NotSearched(L"Failed to open HKEY_CLASSES_ROOT\\CLSID");
    }
    for (const std::wstring& identity : classes.SubkeyNames()) {
        if (identity.size() <= kLongestName) Examine(sources.own, identity, searches, results);
    }
    if (!sources.other.key || classes.Open(sources.other, kClasses) != ERROR_SUCCESS) return {};
    for (const std::wstring& identity : classes.SubkeyNames()) {
        if (identity.size() > kLongestName) continue;
        if (UsableFromOtherView(sources, std::wstring(kClasses) + L'\\' + identity)) {
            Examine(sources.other, identity, searches, results);
        }
    }
    return {};
}

}  // namespace

ClassSources InstalledClasses()
{
    ClassSources sources = {{HKEY_CLASSES_ROOT, OwnView()}, {nullptr, 0}};
    for (const REGSAM view : RegistryViews()) {
        if (view != OwnView()) sources.other = {HKEY_CLASSES_ROOT, view};
    }
    return sources;
}

std::optional<ComponentInfo> DescribeComponent(REFCLSID classId, const ClassSources& sources)
{
    const std::wstring identity = GuidText(classId);
    const std::wstring path = std::wstring(kClasses) + L'\\' + identity;
    if (Exists(sources.own, path)) return Describe(sources.own, path, identity, classId);
    if (sources.other.key && UsableFromOtherView(sources, path)) {
        return Describe(sources.other, path, identity, classId);
    }
    return {};
}

FoundComponents FindComponents(std::span<const ComponentSearch> searches, const ClassSources& sources)
{
    FoundComponents found = {Results(searches.size()), {}};
    try {
        found.outcome = Search(searches, sources, found.lists);
    } catch (const std::bad_alloc&) {
        found.outcome = NotSearched(L"Out of memory");
    }
    return found;
}

}  // namespace zelt
