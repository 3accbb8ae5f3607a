// A registration reads back what it has written, and fails if the registry says something else.
#include <gtest/gtest.h>
#include <windows.h>
#include <olectl.h>

#include "registration/registration.h"
#include "tests/system/registration/processes.h"
#include "tests/windows/patched_import.h"

namespace {

// Has the functions of the system's registrar in their order. Says that it has run each script, and writes nothing.
class IdleRegistrar final : public IUnknown {
public:
    STDMETHOD(QueryInterface)(REFIID, void** object) override
    {
        *object = this;
        return S_OK;
    }
    STDMETHOD_(ULONG, AddRef)() override { return 2; }
    STDMETHOD_(ULONG, Release)() override { return 1; }
    STDMETHOD(AddReplacement)(LPCOLESTR, LPCOLESTR) { return S_OK; }
    STDMETHOD(ClearReplacements)() { return S_OK; }
    STDMETHOD(ResourceRegisterSz)(LPCOLESTR, LPCOLESTR, LPCOLESTR) { return S_OK; }
    STDMETHOD(ResourceUnregisterSz)(LPCOLESTR, LPCOLESTR, LPCOLESTR) { return S_OK; }
    STDMETHOD(FileRegister)(LPCOLESTR) { return S_OK; }
    STDMETHOD(FileUnregister)(LPCOLESTR) { return S_OK; }
    STDMETHOD(StringRegister)(LPCOLESTR) { return S_OK; }
    STDMETHOD(StringUnregister)(LPCOLESTR) { return S_OK; }
    STDMETHOD(ResourceRegister)(LPCOLESTR, UINT, LPCOLESTR) { return S_OK; }
    STDMETHOD(ResourceUnregister)(LPCOLESTR, UINT, LPCOLESTR) { return S_OK; }
};

HRESULT WINAPI CreateIdleRegistrar(REFCLSID, IUnknown*, DWORD, REFIID iid, void** object)
{
    static IdleRegistrar registrar;
    return registrar.QueryInterface(iid, object);
}

class RegistrationCheck : public testing::Test {
protected:
    ~RegistrationCheck() override { RunToEnd(ServerPath(), L"/UnregServer"); }
};

TEST_F(RegistrationCheck, FailsIfTheRegistryStillNamesAnotherProgram)
{
    ASSERT_EQ(0u, RunToEnd(ServerPath(), L"/RegServer"));
    const zelt::test::PatchedImport<decltype(CreateIdleRegistrar)> idle("CoCreateInstance", CreateIdleRegistrar);
    EXPECT_EQ(SELFREG_E_CLASS, zelt::RegisterServer(zelt::Scope::Machine, "1.0.0.0"));
}

}  // namespace
