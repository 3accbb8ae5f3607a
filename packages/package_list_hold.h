// Who may write the stored list of exported packages. A process that keeps the list in memory writes the whole of it
// after each change of its own, so nobody else may change what is stored meanwhile: it holds a PackageListHold. Others
// change the stored list under a PackageListEdit, which is refused while anybody holds it.
// Both are named kernel objects of the user, across sessions and rights: a process that dies gives its own back.
#pragma once

#include "system/owners.h"

namespace zelt {

// Taken before the list is loaded. Never refused: a server has to serve. Waits for an edit that is going on.
class PackageListHold {
public:
    PackageListHold();

private:
    UniqueHandle sign;
};

// Other edits are waited for. Released by the thread that made it.
class PackageListEdit {
public:
    PackageListEdit();
    ~PackageListEdit();
    PackageListEdit(const PackageListEdit&) = delete;
    PackageListEdit& operator=(const PackageListEdit&) = delete;

    // False while a process holds the list, or when that cannot be found out.
    bool Allowed() const { return allowed; }

private:
    UniqueHandle mutex;
    bool owned = false;
    bool allowed = false;
};

}  // namespace zelt
