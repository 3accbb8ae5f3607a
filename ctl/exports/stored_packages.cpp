#include "ctl/exports/stored_packages.h"

#include <optional>
#include <vector>

#include "ctl/command.h"
#include "ctl/exports/session.h"
#include "ctl/exports/width_choice.h"

namespace zelt::ctl {
namespace {

std::vector<ExportedPackage> CopyOf(const ExportedPackageList& list)
{
    std::vector<ExportedPackage> copy;
    for (std::size_t index = 0; index < list.Count(); ++index) copy.push_back(list.At(index));
    return copy;
}

std::optional<std::size_t> IndexOf(const ExportedPackageList& list, const std::string& name)
{
    const std::wstring wanted = Wide(name);
    for (std::size_t index = 0; index < list.Count(); ++index) {
        if (SameName(list.At(index).exportedName, wanted)) return index;
    }
    return {};
}

Refusal NotExported(const std::string& name)
{
    return Refusal("no package is exported as \"" + name + "\"; zeltctl list shows the names");
}

}  // namespace

ExportedPackageList ReadPackages(const Edition& edition)
{
    ExportedPackageList list(ExportedPackages().Root(), edition);
    // Load would create a missing key.
    RegistryKey key;
    if (key.Open(ExportedPackages().Root(), edition.packagesKey) != ERROR_FILE_NOT_FOUND) Require(list.Load());
    return list;
}

const Edition& EditionThatExports(const std::string& name, const std::vector<const Edition*>& editions)
{
    const Edition* found = nullptr;
    for (const Edition* edition : editions) {
        if (!IndexOf(ReadPackages(*edition), name)) continue;
        if (found) throw Refusal("ZELT and ZELT64 both export \"" + name + "\"; " + kSayWidth);
        found = edition;
    }
    if (!found) throw NotExported(name);
    return *found;
}

StoredPackages::StoredPackages(const Edition& edition) : edit(edition), list(ExportedPackages().Root(), edition)
{
    if (!edit.Allowed()) {
        throw Refusal(
            Utf8(edition.name) +
            " is running, and would overwrite this change with its own list of packages; close its window and the "
            "simulators that use it, then try again");
    }
    Require(list.Load());
}

std::size_t StoredPackages::Find(const std::string& name)
{
    if (const auto index = IndexOf(list, name)) return *index;
    throw NotExported(name);
}

void StoredPackages::Save()
{
    const std::vector<ExportedPackage> wanted = CopyOf(List());
    Require(list.Save());
    Require(list.Load());
    if (CopyOf(List()) != wanted) throw InputError("the list of packages cannot be written to the registry");
}

}  // namespace zelt::ctl
