// The stored list of exported packages, for a command that changes it. The command is refused while a process holds the list. A
// process that wants the list during the command waits for it, but only for a few seconds. After a change, the list is read
// back.
#pragma once

#include <string>
#include <vector>

#include "packages/exported_package_list.h"
#include "packages/package_list_hold.h"

namespace zelt::ctl {

// The edition's list as it is stored, without waiting for other processes. Throws InputError.
ExportedPackageList ReadPackages(const Edition& edition);

// The one of `editions` that exports a package under that name. Throws Refusal unless there is exactly one.
const Edition& EditionThatExports(const std::string& name, const std::vector<const Edition*>& editions);

class StoredPackages {
public:
    // Loads the edition's list. Throws Refusal while a process holds the list, InputError when it cannot be read.
    explicit StoredPackages(const Edition& edition);

    ExportedPackageList& List() { return list; }
    // The first package with that exported name. Throws Refusal when there is none.
    std::size_t Find(const std::string& name);
    // Throws InputError when the list cannot be written, or is different when it is read back.
    void Save();

private:
    PackageListEdit edit;
    ExportedPackageList list;
};

}  // namespace zelt::ctl
