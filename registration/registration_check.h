// Finds where the registry differs from what a registration has to consist of. Registration verifies its own result with this
// code, and a check of the installation reports what it finds. FindRegistrationFaults gets each value from the function that
// its caller passes. Nothing here writes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "registration/registry_script.h"
#include "registration/registry_mirror.h"
#include "system/edition.h"

namespace zelt {

struct FoundEntry {
    bool keyExists = false;
    std::optional<std::wstring> text;  // none when there is no such value, or when its type is not REG_SZ
};

// Looks up a value of a key below the classes.
using EntryLookup = std::function<FoundEntry(REGSAM view, const std::wstring& key, const std::wstring& value)>;

FoundEntry LookUpEntry(Scope scope, REGSAM view, const std::wstring& key, const std::wstring& value);

struct RegistrationFault {
    REGSAM view;
    ScriptEntry expected;
    FoundEntry found;
};

// Where the registry differs from what a script of the edition writes. Looks at classes in every view, and at all other keys,
// which the views share, in the view of this process. `modulePath` is the edition's program, `version` its version. Throws
// com::Failure.
std::vector<RegistrationFault> FindRegistrationFaults(const Edition& edition, int script,
                                                      const std::wstring& modulePath, const std::string& version,
                                                      const EntryLookup& lookUp);

// The key of a class, relative to the classes.
std::wstring ClassPath(REFCLSID classId);

// The file that a command line in the registry starts: the text in double quotes, or the whole text.
std::wstring ProgramOf(const std::wstring& commandLine);

// Whether any class of the edition is registered for the scope, in any view.
bool IsRegistered(const Edition& edition, Scope scope);

}  // namespace zelt
