// The exported packages of the process, in the order of their insertion, and their place in the registry. The list is
// the records' only owner. Main thread only. A message box lets calls in that may change the list: after one, find a
// record again by its identity, never by an index or a pointer from before.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "system/outcome.h"
#include "system/registry.h"
#include "packages/exported_package.h"

namespace zelt {

// Names a record as long as the process lives; no later record takes it over.
using PackageIdentity = std::uint64_t;

class ExportedPackageList {
public:
    explicit ExportedPackageList(const RegistryRoot& root = {}) : root(root) {}

    // Replaces the list by the stored one; a stored entry that is bad is left out. Refreshes the view. Fails, with an empty
    // list, when the registry cannot be reached.
    Outcome Load();
    // Writes the whole list, or as much of it as the registry takes. Values of a longer list before it stay; NumPackages
    // bounds what is read.
    Outcome Save() const;

    // Puts loading off: the list stays empty until RequireLoaded, which calls `load` once. Null takes it back.
    void LoadLater(std::function<void()> load) { later = std::move(load); }
    void RequireLoaded();

    // The numbers of the stored entries that the last load left out; of entries that are not there, the first.
    const std::vector<int>& LeftOut() const { return leftOut; }

    std::size_t Count() const { return entries.size(); }
    ExportedPackage& At(std::size_t index) { return *entries.at(index).package; }
    const ExportedPackage& At(std::size_t index) const { return *entries.at(index).package; }
    PackageIdentity IdentityAt(std::size_t index) const { return entries.at(index).identity; }
    // Where the record of that identity stands now; nothing when it is gone.
    std::optional<std::size_t> Find(PackageIdentity identity) const;

    PackageIdentity Append(std::unique_ptr<ExportedPackage> package);
    // Destroys the record. Neither this nor Append saves or refreshes.
    void Remove(std::size_t index);

    // The main window's refresh, while there is one; null otherwise.
    void SetRefresh(void (*callback)()) { refresh = callback; }
    void Refresh() const
    {
        if (refresh) refresh();
    }

    // For tests: where the list is stored from now on.
    void UseRoot(const RegistryRoot& newRoot) { root = newRoot; }

private:
    struct Entry {
        PackageIdentity identity;
        std::unique_ptr<ExportedPackage> package;
    };
    void ReadEntries(const RegistryKey& key);

    RegistryRoot root;
    std::vector<Entry> entries;
    std::vector<int> leftOut;
    void (*refresh)() = nullptr;
    std::function<void()> later;
};

// The list of the process, as it is.
ExportedPackageList& ExportedPackages();
// The same for those who serve it: loaded, if that was put off until now.
ExportedPackageList& ServedPackages();

inline Outcome LoadPackages() { return ExportedPackages().Load(); }
inline Outcome SavePackages() { return ExportedPackages().Save(); }

}  // namespace zelt
