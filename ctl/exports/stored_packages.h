// The stored list of exported packages, for a command that changes it: refused while a process holds the list, withheld from
// others until the command ends, and read back after it was written.
#pragma once

#include <string>

#include "packages/exported_package_list.h"
#include "packages/package_list_hold.h"

namespace zelt::ctl {

class StoredPackages {
public:
    // Loads the list. Throws Refusal.
    StoredPackages();

    ExportedPackageList& List() { return ExportedPackages(); }
    // The first package with that exported name. Throws Refusal.
    std::size_t Find(const std::string& name);
    // Throws InputError when the registry then contains something else.
    void Save();

private:
    PackageListEdit edit;
};

}  // namespace zelt::ctl
