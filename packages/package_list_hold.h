// Who may write the stored list of exported packages. A process that keeps the list in memory writes all of it after each
// change that it makes, so nobody else may change what is stored. Such a process has a PackageListHold. Others change the
// stored list under a PackageListEdit, which is refused while anybody holds the list. Both are named kernel objects of the
// user. All sessions share them, with and without administrator's rights. When a process dies, the system releases its objects.
#pragma once

#include "system/edition.h"
#include "system/owners.h"

namespace zelt {

// The rights that a process of the user runs with. COM starts a server with the rights of the simulator, so servers with both
// can run at the same time.
enum class Rights { Plain, Administrator };

Rights RightsOfThisProcess();

// Taken before the list is loaded. Never refused: a server has to serve. Waits a few seconds for an edit in progress.
class PackageListHold {
public:
    // The list of this edition, for a process with these rights.
    explicit PackageListHold(Rights rights = RightsOfThisProcess());

    // Whether a process of the user with other rights holds the list, too. Whichever writes it last wins.
    bool IsShared() const;

private:
    Rights rights;
    UniqueHandle sign;
    UniqueHandle signOfRights;
};

// Waits a few seconds for another edit. The thread that makes it must also destroy it.
class PackageListEdit {
public:
    explicit PackageListEdit(const Edition& edition = kThisEdition);
    ~PackageListEdit();
    PackageListEdit(const PackageListEdit&) = delete;
    PackageListEdit& operator=(const PackageListEdit&) = delete;

    // False if, when this was made, a process held the list, or an edit did not end in time, or the system could not tell.
    bool Allowed() const { return allowed; }

private:
    UniqueHandle mutex;
    bool owned = false;
    bool allowed = false;
};

}  // namespace zelt
