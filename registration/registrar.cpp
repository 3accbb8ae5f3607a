#include "registration/registrar.h"

#include <objbase.h>

#include "com/failure.h"

namespace zelt {

// The interface of the system's registrar, which the headers of this toolchain do not declare. Every slot must be there, though
// only AddReplacement, StringRegister and StringUnregister are called.
struct IRegistrar : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE AddReplacement(LPCOLESTR key, LPCOLESTR item) = 0;
    virtual HRESULT STDMETHODCALLTYPE ClearReplacements() = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegisterSz(LPCOLESTR file, LPCOLESTR id, LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregisterSz(LPCOLESTR file, LPCOLESTR id, LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileRegister(LPCOLESTR file) = 0;
    virtual HRESULT STDMETHODCALLTYPE FileUnregister(LPCOLESTR file) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringRegister(LPCOLESTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringUnregister(LPCOLESTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceRegister(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResourceUnregister(LPCOLESTR file, UINT id, LPCOLESTR type) = 0;
};

namespace {

constexpr CLSID kRegistrarClass = {0x44EC053A, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};
constexpr IID kRegistrarInterface = {0x44EC053B, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};

// Replacements stand between apostrophes in the scripts; an apostrophe inside a path is written twice.
std::wstring Escaped(const std::wstring& text)
{
    std::wstring escaped;
    for (const wchar_t c : text) escaped.append(c == L'\'' ? 2 : 1, c);
    return escaped;
}

}  // namespace

ClassesRootOverride::ClassesRootOverride(Scope scope)
{
    RegistryKey classes;
    // Opened in the view of the process, because any other view would be lost in the redirection.
    CheckWin32(classes.Create(ClassesHive(scope, 0), L"Software\\Classes", KEY_READ | KEY_WRITE));
    CheckWin32(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.Get()));
}

ClassesRootOverride::~ClassesRootOverride() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

Registrar::Registrar(const std::wstring& modulePath, const std::wstring& version)
{
    com::Check(CoCreateInstance(kRegistrarClass, nullptr, CLSCTX_INPROC_SERVER, kRegistrarInterface, &registrar));
    Replace(L"Module_Raw", modulePath);
    for (const auto& [key, value] : ReplacementsFor(kThisEdition, modulePath, version)) Replace(key.c_str(), value);
}

Registrar::~Registrar() = default;

void Registrar::Replace(const wchar_t* key, const std::wstring& value)
{
    com::Check(registrar->AddReplacement(key, Escaped(value).c_str()));
}

HRESULT Registrar::Run(int script, bool add)
{
    return com::NoThrow([&] {
        const std::wstring text = ScriptText(script);
        return add ? registrar->StringRegister(text.c_str()) : registrar->StringUnregister(text.c_str());
    });
}

ScriptReplacements ReplacementsFor(const Edition& edition, const std::wstring& modulePath, const std::wstring& version)
{
    return {{L"MODULE", Quoted(modulePath)}, {L"APPID", edition.applicationId}, {L"EXEVERSION", version}};
}

std::wstring Quoted(const std::wstring& path) { return L'"' + path + L'"'; }

}  // namespace zelt
