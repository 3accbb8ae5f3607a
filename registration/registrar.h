// Registry scripts, run by the system's registrar component, and the redirection of HKEY_CLASSES_ROOT that decides whether they
// register for the machine or for the user. Knows nothing of what the scripts contain except their replacements.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <string>

#include <wrl/client.h>

#include "system/edition.h"
#include "system/registry.h"
#include "registration/registry_script.h"
#include "registration/registry_mirror.h"

namespace zelt {

// While it lives, HKEY_CLASSES_ROOT in this process is Software\Classes of the scope. Without it, a write would go to the
// machine's or the user's key, whichever exists already. Throws com::Failure.
class ClassesRootOverride {
public:
    explicit ClassesRootOverride(Scope scope);
    ~ClassesRootOverride();
    ClassesRootOverride(const ClassesRootOverride&) = delete;
    ClassesRootOverride& operator=(const ClassesRootOverride&) = delete;
};

struct IRegistrar;

class Registrar {
public:
    // Creates the component and gives it the replacements of this edition's scripts, and Module_Raw, the bare path. Throws
    // com::Failure.
    Registrar(const std::wstring& modulePath, const std::wstring& version);
    ~Registrar();
    Registrar(const Registrar&) = delete;
    Registrar& operator=(const Registrar&) = delete;

    // Runs the script in resource REGISTRY `script`. HKEY_CLASSES_ROOT is where the caller has redirected it.
    [[nodiscard]] HRESULT Run(int script, bool add);

private:
    void Replace(const wchar_t* key, const std::wstring& value);

    Microsoft::WRL::ComPtr<IRegistrar> registrar;
};

// The replacements that the scripts here use: MODULE is the program's path in double quotes, APPID the edition's application
// identifier, EXEVERSION the program's version. The registrar ignores the case of letters in these names.
ScriptReplacements ReplacementsFor(const Edition& edition, const std::wstring& modulePath, const std::wstring& version);

// The path in double quotes. Without them, a path with blanks would be cut at a blank, or could start another program.
std::wstring Quoted(const std::wstring& path);

}  // namespace zelt
