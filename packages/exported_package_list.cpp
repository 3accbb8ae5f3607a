#include "packages/exported_package_list.h"

#include <algorithm>
#include <cwchar>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "packages/real_names.h"
#include "system/configuration_key.h"

namespace zelt {
namespace {

constexpr wchar_t kCount[] = L"NumPackages";

// Entries are numbered from 1.
std::string ValueName(std::size_t index) { return "Package" + std::to_string(index + 1); }

// Unique in the process, so that an identity from before a reload never names a record that was loaded later.
PackageIdentity NextIdentity()
{
    static PackageIdentity last = 0;
    return ++last;
}

std::unique_ptr<ExportedPackage> ReadPackage(const RegistryKey& key, std::size_t index)
{
    const auto stored = key.ReadNarrow(ValueName(index).c_str(), REG_MULTI_SZ);
    if (!stored) return nullptr;
    auto package = std::make_unique<ExportedPackage>();
    if (!package->Parse(*stored)) return nullptr;
    ReadRealNames(key, index + 1, *package);
    return package;
}

LSTATUS WritePackage(RegistryKey& key, std::size_t index, const ExportedPackage& package)
{
    const LSTATUS result = key.WriteNarrow(ValueName(index).c_str(), REG_MULTI_SZ, package.Format());
    return result == ERROR_SUCCESS ? WriteRealNames(key, index + 1, package) : result;
}

// The highest number of a stored entry. The registry ignores the case of a name's letters.
int HighestNumber(const RegistryKey& key)
{
    constexpr std::wstring_view kPrefix = L"Package";
    int highest = 0;
    for (const std::wstring& name : key.ValueNames()) {
        if (_wcsnicmp(name.c_str(), kPrefix.data(), kPrefix.size()) != 0) continue;
        highest = std::max(highest, _wtoi(name.c_str() + kPrefix.size()));
    }
    return highest;
}

}  // namespace

Outcome ExportedPackageList::Load()
{
    entries.clear();
    leftOut.clear();
    RegistryKey key;
    Outcome opened = OpenConfigurationKey(root, key, edition->packagesKey);
    if (opened) ReadEntries(key);
    Refresh();
    return opened;
}

void ExportedPackageList::RequireLoaded()
{
    // Loading may show a message box, which lets calls in. They use the list in its state at that time.
    if (const auto load = std::exchange(later, nullptr)) load();
}

void ExportedPackageList::ReadEntries(const RegistryKey& key)
{
    // The count is signed; negative means none. HighestNumber keeps an absurd count in bounds.
    const auto stored = static_cast<int>(key.ReadDword(kCount).value_or(0));
    const int count = std::min(stored, HighestNumber(key));
    for (int index = 0; index < count; ++index) {
        try {
            if (auto package = ReadPackage(key, static_cast<std::size_t>(index))) {
                Append(std::move(package));
                continue;
            }
        } catch (const std::bad_alloc&) {
            // An entry too large for the memory left is skipped like a bad one.
        }
        leftOut.push_back(index + 1);
    }
    if (stored > count) leftOut.push_back(count + 1);
}

Outcome ExportedPackageList::Save() const
{
    RegistryKey key;
    Outcome opened = OpenConfigurationKey(root, key, edition->packagesKey);
    if (!opened) return opened;
    LSTATUS error = key.WriteDword(kCount, static_cast<DWORD>(entries.size()));
    std::wstring lost = L"the list of packages";
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const ExportedPackage& package = *entries[index].package;
        const LSTATUS result = WritePackage(key, index, package);
        if (result == ERROR_SUCCESS) continue;
        // If only one package is lost, the message names it.
        lost = error == ERROR_SUCCESS ? L"the package \"" + package.exportedName + L'"' : L"the list of packages";
        error = result;
    }
    if (error == ERROR_SUCCESS) return {};
    return NotStored(lost, error);
}

std::optional<std::size_t> ExportedPackageList::Find(PackageIdentity identity) const
{
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [identity](const Entry& entry) { return entry.identity == identity; });
    if (found == entries.end()) return {};
    return static_cast<std::size_t>(found - entries.begin());
}

PackageIdentity ExportedPackageList::Append(std::unique_ptr<ExportedPackage> package)
{
    entries.push_back({NextIdentity(), std::move(package)});
    return entries.back().identity;
}

void ExportedPackageList::Remove(std::size_t index)
{
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index));
}

ExportedPackageList& ExportedPackages()
{
    static ExportedPackageList list;
    return list;
}

ExportedPackageList& ServedPackages()
{
    ExportedPackages().RequireLoaded();
    return ExportedPackages();
}

}  // namespace zelt
