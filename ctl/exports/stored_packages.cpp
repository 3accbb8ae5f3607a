#include "ctl/exports/stored_packages.h"

#include <vector>

#include "ctl/command.h"
#include "ctl/exports/session.h"

namespace zelt::ctl {
namespace {

std::vector<ExportedPackage> CopyOf(const ExportedPackageList& list)
{
    std::vector<ExportedPackage> copy;
    for (std::size_t index = 0; index < list.Count(); ++index) copy.push_back(list.At(index));
    return copy;
}

}  // namespace

StoredPackages::StoredPackages()
{
    if (!edit.Allowed()) {
        throw Refusal(
            "ZELT runs, and would write its own list of packages over this change; close its window and the simulators "
            "that use it, then try again");
    }
    Require(LoadPackages());
}

std::size_t StoredPackages::Find(const std::string& name)
{
    const std::wstring wanted = Wide(name);
    for (std::size_t index = 0; index < List().Count(); ++index) {
        if (SameName(List().At(index).exportedName, wanted)) return index;
    }
    throw Refusal("no package is exported as \"" + name + "\"; zeltctl list shows the names");
}

void StoredPackages::Save()
{
    const std::vector<ExportedPackage> wanted = CopyOf(List());
    Require(SavePackages());
    Require(LoadPackages());
    if (CopyOf(List()) != wanted) throw InputError("the list of packages cannot be written to the registry");
}

}  // namespace zelt::ctl
