// The exported packages of an edition, in order of insertion, and their place in the registry. The list is the records' only
// owner. Main thread only. A message box lets calls in that may change the list: after one, find a record again by its
// identity, never by an index or a pointer from before.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "system/edition.h"
#include "system/outcome.h"
#include "system/registry.h"
#include "packages/exported_package.h"

namespace zelt {

// Identifies a record for as long as the process lives; no later record reuses it.
using PackageIdentity = std::uint64_t;

class ExportedPackageList {
public:
    explicit ExportedPackageList(const RegistryRoot& root = {}, const Edition& edition = kThisEdition)
        : root(root), edition(&edition)
    {}

    // Replaces the list by the stored one and leaves out bad entries. Refreshes the view. Fails, with an empty list, when the
    // registry cannot be reached.
    Outcome Load();
    // Writes the whole list, or as much of it as the registry accepts. Values of a longer earlier list stay; NumPackages limits
    // what is read.
    Outcome Save() const;

    // Postpones loading: the list stays empty until RequireLoaded, which calls `load` once. Null cancels the postponement.
    void LoadLater(std::function<void()> load) { later = std::move(load); }
    void RequireLoaded();

    // The numbers of the stored entries that the last load left out; if entries are missing at the end, only the first of
    // those.
    const std::vector<int>& LeftOut() const { return leftOut; }

    std::size_t Count() const { return entries.size(); }
    ExportedPackage& At(std::size_t index) { return *entries.at(index).package; }
    const ExportedPackage& At(std::size_t index) const { return *entries.at(index).package; }
    PackageIdentity IdentityAt(std::size_t index) const { return entries.at(index).identity; }
    // The current index of the record with that identity; nothing when it is gone.
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

    // For tests: sets where the list is stored from now on.
    void UseRoot(const RegistryRoot& newRoot) { root = newRoot; }
    const RegistryRoot& Root() const { return root; }

private:
    struct Entry {
        PackageIdentity identity;
        std::unique_ptr<ExportedPackage> package;
    };
    void ReadEntries(const RegistryKey& key);

    RegistryRoot root;
    const Edition* edition;
    std::vector<Entry> entries;
    std::vector<int> leftOut;
    void (*refresh)() = nullptr;
    std::function<void()> later;
};

// The list of the process, loaded or not.
ExportedPackageList& ExportedPackages();
// The same for code that serves the packages; loads the list first if loading was postponed.
ExportedPackageList& ServedPackages();

inline Outcome LoadPackages() { return ExportedPackages().Load(); }
inline Outcome SavePackages() { return ExportedPackages().Save(); }

}  // namespace zelt
