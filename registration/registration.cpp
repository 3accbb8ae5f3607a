#include "registration/registration.h"

#include <objbase.h>
#include <olectl.h>

#include <optional>

#include "com/failure.h"
#include "com/type_info.h"
#include "system/narrow.h"
#include "registration/registrar.h"
#include "registration/registration_check.h"
#include "registration/type_library_registration.h"

namespace zelt {
namespace {

// clang-format off
// The keys that contain what is registered. The machine always has them; those of the user are removed when they become empty.
constexpr const wchar_t* kContainers[] = {L"AppID", L"CLSID", L"Interface", L"TypeLib"};
// clang-format on

// Verifies that everything that the script writes is there now.
void Verify(Scope scope, int script, const std::wstring& modulePath, const std::string& version)
{
    const auto lookUp = [scope](REGSAM view, const std::wstring& key, const std::wstring& value) {
        return LookUpEntry(scope, view, key, value);
    };
    if (!FindRegistrationFaults(kThisEdition, script, modulePath, version, lookUp).empty())
        throw com::Failure(SELFREG_E_CLASS);
}

}  // namespace

HRESULT RegisterServer(Scope scope, const std::string& version)
{
    return com::NoThrow([&] {
        const std::wstring modulePath = com::ModulePath(com::ThisModule());
        // Create it before HKEY_CLASSES_ROOT is redirected: the component itself may be registered elsewhere.
        Registrar registrar(modulePath, Widen(version));
        {
            const ClassesRootOverride root(scope);
            com::Check(registrar.Run(kThisEdition.applicationScript, true));
            for (const EditionClass& own : kThisEdition.classes) com::Check(registrar.Run(own.script, true));
        }
        for (const EditionClass& own : kThisEdition.classes) MirrorKey(scope, ClassPath(own.classId));
        RegisterOwnLibrary(scope, modulePath);
        for (const SharedLibrary& library : SharedLibraries()) {
            RegisterMissingLibrary(scope, library.number, library.fileName);
        }
        Verify(scope, kThisEdition.applicationScript, modulePath, version);
        for (const EditionClass& own : kThisEdition.classes) Verify(scope, own.script, modulePath, version);
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
    for (const EditionClass& own : kThisEdition.classes) run(own.script);
    for (const EditionClass& own : kThisEdition.classes) {
        attempt([&] { RemoveKey(scope, ClassPath(own.classId)); });
    }
    attempt([&] { UnregisterOwnLibrary(scope); });
    run(kThisEdition.applicationScript);
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
