#include "system/component_scan.h"

#include <objbase.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <utility>

#include "system/class_obstacle.h"
#include "system/registry_view.h"
#include "system/guid_text.h"

namespace zelt {
namespace {

constexpr wchar_t kClasses[] = L"CLSID";

// Keys with longer names cannot be class identifiers.
constexpr std::size_t kLongestName = 127;

std::wstring TextOfKey(const RegistryRoot& root, const std::wstring& path)
{
    RegistryKey key;
    if (key.Open(root, path) != ERROR_SUCCESS) return {};
    return key.ReadString(L"").value_or(std::wstring());
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

// Where a class is registered.
struct Places {
    const RegistryRoot* own = nullptr;
    const RegistryRoot* other = nullptr;
};

Places PlacesOf(const ClassSources& sources, const std::wstring& path)
{
    Places places;
    for (const RegistryRoot* root : {&sources.own, &sources.ownOfUser}) {
        if (!places.own && root->key && KeyExists(*root, path)) places.own = root;
    }
    for (const RegistryRoot* root : {&sources.other, &sources.otherOfUser}) {
        if (!places.other && root->key && KeyExists(*root, path)) places.other = root;
    }
    return places;
}

// Examines one class that is registered in `root`, a member of `sources`.
void Examine(const ClassSources& sources, const RegistryRoot& root, const std::wstring& identity,
             std::span<const ComponentSearch> searches, FoundComponents& found)
{
    const std::wstring path = std::wstring(kClasses) + L'\\' + identity;
    // The class's own key is opened first, so that a class whose key cannot be read is skipped. The key below it could still be
    // opened by its full path.
    RegistryKey key, categories;
    if (key.Open(root, path) != ERROR_SUCCESS) return;
    if (categories.Open({key.Get(), root.view}, L"Implemented Categories") != ERROR_SUCCESS) return;
    CLSID classId;
    if (FAILED(CLSIDFromString(identity.c_str(), &classId))) return;
    std::optional<ComponentInfo> info;
    Places places;
    for (const std::wstring& category : categories.SubkeyNames()) {
        for (std::size_t index = 0; index < searches.size(); ++index) {
            if (_wcsicmp(category.c_str(), searches[index].category) != 0) continue;
            if (classId == searches[index].leftOut || IsOwnClass(classId)) continue;
            if (!info) {
                places = PlacesOf(sources, path);
                info = Describe(root, path, identity, classId);
                info->obstacle = ObstacleOf(sources.width, places.own, places.other, path);
            }
            // Each class is listed once, from the first of its places.
            if ((places.own ? places.own : places.other) != &root) continue;
            const bool isUnreachable = !places.own && !info->obstacle.empty();
            (isUnreachable ? found.ofOtherWidth : found.lists)[index].push_back(*info);
        }
    }
}

Outcome NotSearched(const wchar_t* text) { return Outcome::Failed(text, L"Error:", MB_OK | MB_ICONERROR | MB_TOPMOST); }

Outcome Search(std::span<const ComponentSearch> searches, const ClassSources& sources, FoundComponents& found)
{
    for (const RegistryRoot* root : {&sources.own, &sources.ownOfUser, &sources.other, &sources.otherOfUser}) {
        RegistryKey classes;
        if (root->key && classes.Open(*root, kClasses) == ERROR_SUCCESS) {
            for (const std::wstring& identity : classes.SubkeyNames()) {
                if (identity.size() <= kLongestName) Examine(sources, *root, identity, searches, found);
            }
        } else if (root == &sources.own) {
            return NotSearched(L"Failed to open HKEY_CLASSES_ROOT\\CLSID");
        }
    }
    return {};
}

}  // namespace

ClassSources InstalledClasses(int width)
{
    // Stays open as long as the process runs.
    static const RegistryKey ofUser = [] {
        RegistryKey key;
        static_cast<void>(key.Open({}, L"Software\\Classes"));
        return key;
    }();
    const REGSAM own = ViewOf(width);
    ClassSources sources = {{HKEY_CLASSES_ROOT, own}, {nullptr, 0}, {ofUser.Get(), own}, {nullptr, 0}, width};
    for (const REGSAM view : RegistryViews()) {
        if (view == own) continue;
        sources.other = {HKEY_CLASSES_ROOT, view};
        sources.otherOfUser = {ofUser.Get(), view};
    }
    return sources;
}

std::optional<ComponentInfo> DescribeComponent(REFCLSID classId, const ClassSources& sources)
{
    const std::wstring identity = GuidText(classId);
    const std::wstring path = std::wstring(kClasses) + L'\\' + identity;
    const Places places = PlacesOf(sources, path);
    if (!places.own && !places.other) return {};
    std::wstring obstacle = ObstacleOf(sources.width, places.own, places.other, path);
    if (!places.own && !obstacle.empty()) return {};
    ComponentInfo info = Describe(places.own ? *places.own : *places.other, path, identity, classId);
    info.obstacle = std::move(obstacle);
    return info;
}

FoundComponents FindComponents(std::span<const ComponentSearch> searches, const ClassSources& sources)
{
    using Lists = std::vector<std::vector<ComponentInfo>>;
    FoundComponents found = {Lists(searches.size()), {}, Lists(searches.size())};
    try {
        found.outcome = Search(searches, sources, found);
    } catch (const std::bad_alloc&) {
        found.outcome = NotSearched(L"Out of memory");
    }
    return found;
}

}  // namespace zelt
