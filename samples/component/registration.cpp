#include "samples/component/registration.h"

#include <objbase.h>
#include <olectl.h>

#include <string>

#include "com/failure.h"
#include "com/type_info.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kComponentVersion = L"1.0.0.0";

std::wstring Text(REFCLSID clsid)
{
    wchar_t buffer[40];
    StringFromGUID2(clsid, buffer, static_cast<int>(std::size(buffer)));
    return buffer;
}

// Sets one value; creates, opens and closes the key. A null name means the key's default value.
void SetValue(const std::wstring& key, const wchar_t* name, const std::wstring& text)
{
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    const auto size = static_cast<DWORD>(bytes);
    if (RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, text.c_str(), size) != ERROR_SUCCESS) {
        throw com::Failure(SELFREG_E_CLASS);
    }
}

void RegisterClass(const ComponentClass& entry, const std::wstring& module)
{
    const std::wstring clsid = Text(entry.clsid);
    const std::wstring progId = entry.progId, versioned = progId + L".1";
    SetValue(versioned, nullptr, entry.name);
    SetValue(versioned + L"\\CLSID", nullptr, clsid);
    SetValue(progId, nullptr, entry.name);
    SetValue(progId + L"\\CLSID", nullptr, clsid);
    SetValue(progId + L"\\CurVer", nullptr, versioned);

    const std::wstring key = L"CLSID\\" + clsid;
    SetValue(key, nullptr, entry.name);
    SetValue(key + L"\\ProgID", nullptr, versioned);
    SetValue(key + L"\\VersionIndependentProgID", nullptr, progId);
    SetValue(key + L"\\InprocServer32", nullptr, module);
    SetValue(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    for (const wchar_t* category : entry.categories) {
        SetValue(key + L"\\Implemented Categories\\" + category, nullptr, L"");
    }
    const std::wstring description = key + L"\\CapeDescription";
    SetValue(description, L"Name", entry.name);
    SetValue(description, L"Description", entry.description);
    SetValue(description, L"CapeVersion", entry.capeVersion);
    SetValue(description, L"ComponentVersion", kComponentVersion);
    SetValue(description, L"About", L"A sample component of ZELT");
}

bool Remove(const std::wstring& key)
{
    const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

}  // namespace

HRESULT RegisterComponents(std::span<const ComponentClass> classes)
{
    const HRESULT registered = com::NoThrow([&] {
        const std::wstring module = com::ModulePath(com::ThisModule());
        for (const ComponentClass& entry : classes) RegisterClass(entry, module);
        return S_OK;
    });
    if (FAILED(registered)) UnregisterComponents(classes);
    return registered;
}

HRESULT UnregisterComponents(std::span<const ComponentClass> classes)
{
    return com::NoThrow([&] {
        bool removed = true;
        for (const ComponentClass& entry : classes) {
            const std::wstring progId = entry.progId;
            removed &= Remove(L"CLSID\\" + Text(entry.clsid));
            removed &= Remove(progId);
            removed &= Remove(progId + L".1");
        }
        return removed ? S_OK : SELFREG_E_CLASS;
    });
}

}  // namespace zelt::sample
