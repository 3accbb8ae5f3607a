// Registration of an in-process server's classes: plain keys below HKEY_CLASSES_ROOT, written to the registry view
// of the calling process, as regsvr32 of that bit width expects. Writes nothing else; unregistration deletes these keys
// with all their contents.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <span>

namespace zelt::sample {

struct ComponentClass {
    const CLSID& clsid;
    const wchar_t* progId;       // without version; ".1" is appended for the versioned one
    const wchar_t* name;         // CapeDescription's Name, and the name of the class
    const wchar_t* description;  // CapeDescription's Description
    const wchar_t* capeVersion;
    std::initializer_list<const wchar_t*> categories;
};

// Results for DllRegisterServer and DllUnregisterServer: SELFREG_E_CLASS when a key cannot be written or removed.
HRESULT RegisterComponents(std::span<const ComponentClass> classes);
HRESULT UnregisterComponents(std::span<const ComponentClass> classes);

// Component categories.
inline constexpr const wchar_t* kCapeOpenObject = L"{678C09A1-7D66-11D2-A67D-00105A42887F}";
inline constexpr const wchar_t* kPropertyPackageManager11 = L"{CF51E383-0110-4ED8-ACB7-B50CFDE6908E}";
inline constexpr const wchar_t* kPropertyPackage11 = L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}";
inline constexpr const wchar_t* kThermoSystem10 = L"{678C09A3-7D66-11D2-A67D-00105A42887F}";
inline constexpr const wchar_t* kPropertyPackage10 = L"{678C09A4-7D66-11D2-A67D-00105A42887F}";
inline constexpr const wchar_t* kUnitOperation10 = L"{678C09A5-7D66-11D2-A67D-00105A42887F}";
inline constexpr const wchar_t* kReactionPackageManager10 = L"{678C09AA-0100-11D2-A67D-00105A42887F}";
inline constexpr const wchar_t* kReactionPackage10 = L"{678C09AB-0100-11D2-A67D-00105A42887F}";

}  // namespace zelt::sample
