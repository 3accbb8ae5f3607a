#include "shell/registration.h"

#include <objbase.h>
#include <olectl.h>

#include <optional>

#include "com/failure.h"
#include "com/type_info.h"
#include "core/narrow.h"
#include "res/resource.h"
#include "shell/library_facts.h"
#include "shell/registrar.h"
#include "shell/served_classes.h"
#include "shell/type_library_registration.h"

namespace zelt {
namespace {

struct SharedLibrary {
    int number;
    const wchar_t* fileName;
};

// clang-format off
constexpr SharedLibrary kSharedLibraries[] = {
    {kStandardLibrary,      L"cape-open-1.1.tlb"},
    {kThermoContextLibrary, L"cape-open-thermo-context-1.0.tlb"},
};

// Keys that the machine always has. Those of the user may come and go with what they hold.
constexpr const wchar_t* kContainers[] = {L"AppID", L"CLSID", L"Interface", L"TypeLib"};
// clang-format on

std::wstring ClassPath(const ServedClass& served) { return L"CLSID\\" + GuidText(served.entry.clsid); }

// Reads back what activation needs: the class in every view, and the names and the application, which the views share.
void VerifyClass(Scope scope, const ServedClass& served, const std::wstring& modulePath)
{
    const std::wstring path = ClassPath(served), classText = GuidText(served.entry.clsid);
    const std::wstring versioned = std::wstring(served.progId) + L".1";
    bool complete = DefaultValue(scope, OwnView(), versioned + L"\\CLSID") == classText &&
                    DefaultValue(scope, OwnView(), std::wstring(served.progId) + L"\\CLSID") == classText &&
                    KeyExists(scope, OwnView(), std::wstring(L"AppID\\") + kApplicationId);
    for (const REGSAM view : RegistryViews()) {
        complete = complete && DefaultValue(scope, view, path + L"\\LocalServer32") == Quoted(modulePath) &&
                   DefaultValue(scope, view, path + L"\\ProgID") == versioned &&
                   KeyExists(scope, view, path + L"\\Implemented Categories") &&
                   KeyExists(scope, view, path + L"\\CapeDescription");
    }
    if (!complete || !SameInEveryView(scope, path)) throw com::Failure(SELFREG_E_CLASS);
}

}  // namespace

HRESULT RegisterServer(Scope scope, const std::string& version)
{
    return com::NoThrow([&] {
        const std::wstring modulePath = com::ModulePath(com::ThisModule());
        // Made before HKEY_CLASSES_ROOT is redirected: the component itself may be registered elsewhere.
        Registrar registrar(modulePath, Widen(version));
        {
            const ClassesRootOverride root(scope);
            com::Check(registrar.Run(kScriptApplication, true));
            for (const ServedClass& served : ServedClasses()) com::Check(registrar.Run(served.script, true));
        }
        for (const ServedClass& served : ServedClasses()) MirrorKey(scope, ClassPath(served));
        RegisterOwnLibrary(scope, modulePath);
        for (const SharedLibrary& library : kSharedLibraries) {
            RegisterMissingLibrary(scope, library.number, library.fileName);
        }
        for (const ServedClass& served : ServedClasses()) VerifyClass(scope, served, modulePath);
        return S_OK;
    });
}

HRESULT UnregisterServer(Scope scope, const std::string& version)
{
    HRESULT first = S_OK;
    const auto attempt = [&first](auto&& body) {
        const HRESULT result = com::NoThrow([&]() -> HRESULT {
            body();
            return S_OK;
        });
        if (SUCCEEDED(first)) first = result;
    };
    std::optional<Registrar> registrar;
    attempt([&] { registrar.emplace(com::ModulePath(com::ThisModule()), Widen(version)); });
    const auto run = [&](int script) {
        if (!registrar) return;
        attempt([&] {
            const ClassesRootOverride root(scope);
            com::Check(registrar->Run(script, false));
        });
    };
    for (const ServedClass& served : ServedClasses()) run(served.script);
    for (const ServedClass& served : ServedClasses()) attempt([&] { RemoveKey(scope, ClassPath(served)); });
    attempt([&] { UnregisterOwnLibrary(scope); });
    run(kScriptApplication);
    if (scope == Scope::User) {
        for (const wchar_t* container : kContainers) attempt([&] { RemoveEmptyKey(scope, container); });
    }
    return first;
}

bool PerUserRegistrationPreferred(const RegistryRoot& root)
{
    constexpr std::size_t kLongest = 20;
    RegistryKey key;
    if (key.Open(root, L"Software\\BRIX", KEY_READ) != ERROR_SUCCESS) return false;
    const auto value = key.ReadNarrow("CurrentUser", REG_SZ);
    return value && value->size() <= kLongest && value->substr(0, value->find('\0')) == "1";
}

}  // namespace zelt
