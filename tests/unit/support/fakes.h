// Scripted CAPE-OPEN objects for tests of the proxies: they record some arguments bit by bit, return what a test wants, run
// the test's code during a call, and refuse interfaces on request. com::Object counts references.
#pragma once

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

#include "com/dispatch.h"
#include "com/text.h"

namespace zelt::test {

using Microsoft::WRL::ComPtr;

// Only gives a name.
struct FixedIdentification final : com::DualPart<ICapeIdentification> {
    FixedIdentification(com::Object& object, const wchar_t* name) : DualPart(object), name(name) {}
    STDMETHOD(get_ComponentName)(BSTR* out) override { return com::NewText(name, out); }
    STDMETHOD(put_ComponentName)(BSTR) override { return E_NOTIMPL; }
    STDMETHOD(get_ComponentDescription)(BSTR* out) override { return com::NewText(L"", out); }
    STDMETHOD(put_ComponentDescription)(BSTR) override { return E_NOTIMPL; }
    const wchar_t* const name;
};

class FakeObject : public com::Object {
public:
    std::wstring name = L"Fake";
    HRESULT nameResult = S_OK;
    std::function<void()> duringNaming;
    std::wstring errorDescription;
    std::wstring errorName;
    std::vector<IID> refused;
    std::vector<IID> asked;  // every query in order, except those for IUnknown and IDispatch

    void Refuse(const IID& iid) { refused.push_back(iid); }
    long CountAsked(const IID& iid) const { return std::count(asked.begin(), asked.end(), iid); }

protected:
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry*) override
    {
        asked.push_back(iid);
        return std::count(refused.begin(), refused.end(), iid) ? E_NOINTERFACE : S_OK;
    }

private:
    static HRESULT Copy(const std::wstring& text, BSTR* out)
    {
        *out = SysAllocString(text.c_str());
        return S_OK;
    }
    struct Identification final : com::DualPart<ICapeIdentification> {
        explicit Identification(FakeObject& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(get_ComponentName)(BSTR* out) override
        {
            return FAILED(fake.nameResult) ? fake.nameResult : Copy(fake.name, out);
        }
        STDMETHOD(put_ComponentName)(BSTR text) override
        {
            if (FAILED(fake.nameResult)) return fake.nameResult;
            if (fake.duringNaming) fake.duringNaming();
            fake.name = text ? text : L"";
            return S_OK;
        }
        STDMETHOD(get_ComponentDescription)(BSTR* out) override { return Copy(L"described", out); }
        STDMETHOD(put_ComponentDescription)(BSTR) override { return S_OK; }
        FakeObject& fake;
    } identification{*this};
    struct Root final : com::DualPart<ECapeRoot> {
        explicit Root(FakeObject& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(get_name)(BSTR* out) override { return fake.errorName.empty() ? E_FAIL : Copy(fake.errorName, out); }
        FakeObject& fake;
    } root{*this};
    struct User final : com::DualPart<ECapeUser> {
        explicit User(FakeObject& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(get_code)(long* out) override
        {
            *out = 7;
            return S_OK;
        }
        STDMETHOD(get_description)(BSTR* out) override { return Copy(fake.errorDescription, out); }
        STDMETHOD(get_scope)(BSTR* out) override { return Copy(L"scope", out); }
        STDMETHOD(get_interfaceName)(BSTR* out) override { return Copy(L"interface", out); }
        STDMETHOD(get_operation)(BSTR* out) override { return Copy(L"operation", out); }
        STDMETHOD(get_moreInfo)(BSTR* out) override { return Copy(L"more", out); }
        FakeObject& fake;
    } user{*this};
};

// A package with a material context, a property routine, constants and utilities.
class FakePackage final : public FakeObject {
public:
    HRESULT result = S_OK;
    std::function<void()> duringCall;  // runs inside each call below, before it returns
    std::vector<std::string> calls;

    IDispatch* material = nullptr;  // as it arrived; `kept` holds it if `keepsMaterial`
    bool keepsMaterial = false;
    ComPtr<IDispatch> kept;
    VARIANT lastVariant{};  // bit copies: never cleared here
    BSTR lastString = nullptr;
    void* lastPointer = nullptr;
    double lastDouble = 0;
    double constant = 8.31446;

    static inline long alive = 0;
    FakePackage() { ++alive; }
    ~FakePackage() override { --alive; }

    HRESULT Enter(const char* call)
    {
        calls.push_back(call);
        if (duringCall) duringCall();
        return result;
    }

private:
    struct Context final : com::DualPart<ICapeThermoMaterialContext> {
        explicit Context(FakePackage& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(SetMaterial)(IDispatch* material) override
        {
            fake.material = material;
            if (fake.keepsMaterial) fake.kept = material;
            return fake.Enter("SetMaterial");
        }
        STDMETHOD(UnsetMaterial)() override
        {
            fake.kept.Reset();
            return fake.Enter("UnsetMaterial");
        }
        FakePackage& fake;
    } context{*this};
    struct Routine final : com::DualPart<ICapeThermoPropertyRoutine> {
        explicit Routine(FakePackage& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(CalcAndGetLnPhi)(BSTR, double temperature, double, VARIANT moleNumbers, int, VARIANT* lnPhi, VARIANT*,
                                   VARIANT*, VARIANT*) override
        {
            fake.lastDouble = temperature;
            fake.lastVariant = moleNumbers;
            fake.lastPointer = lnPhi;
            return fake.Enter("CalcAndGetLnPhi");
        }
        STDMETHOD(CalcSinglePhaseProp)(VARIANT props, BSTR phaseLabel) override
        {
            fake.lastVariant = props;
            fake.lastString = phaseLabel;
            return fake.Enter("CalcSinglePhaseProp");
        }
        STDMETHOD(CalcTwoPhaseProp)(VARIANT, VARIANT) override { return fake.Enter("CalcTwoPhaseProp"); }
        STDMETHOD(CheckSinglePhasePropSpec)(BSTR, BSTR, VARIANT_BOOL* valid) override
        {
            *valid = VARIANT_TRUE;
            return fake.Enter("CheckSinglePhasePropSpec");
        }
        STDMETHOD(CheckTwoPhasePropSpec)(BSTR, VARIANT, VARIANT_BOOL* valid) override
        {
            *valid = 1;
            return fake.Enter("CheckTwoPhasePropSpec");
        }
        STDMETHOD(GetSinglePhasePropList)(VARIANT*) override { return fake.Enter("GetSinglePhasePropList"); }
        STDMETHOD(GetTwoPhasePropList)(VARIANT*) override { return fake.Enter("GetTwoPhasePropList"); }
        FakePackage& fake;
    } routine{*this};
    struct Constants final : com::DualPart<ICapeThermoUniversalConstant> {
        explicit Constants(FakePackage& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(GetUniversalConstant)(BSTR constantId, VARIANT* value) override
        {
            fake.lastString = constantId;
            fake.lastPointer = value;
            if (value) {
                value->vt = VT_R8;
                value->dblVal = fake.constant;
            }
            return fake.Enter("GetUniversalConstant");
        }
        STDMETHOD(GetUniversalConstantList)(VARIANT*) override { return fake.Enter("GetUniversalConstantList"); }
        FakePackage& fake;
    } constants{*this};
    struct Utilities final : com::DualPart<ICapeUtilities> {
        explicit Utilities(FakePackage& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(get_parameters)(IDispatch** parameters) override
        {
            *parameters = nullptr;
            return fake.Enter("get_parameters");
        }
        STDMETHOD(put_simulationContext)(IDispatch*) override { return fake.Enter("put_simulationContext"); }
        STDMETHOD(Initialize)() override { return fake.Enter("Initialize"); }
        STDMETHOD(Terminate)() override { return fake.Enter("Terminate"); }
        STDMETHOD(Edit)() override { return fake.Enter("Edit"); }
        FakePackage& fake;
    } utilities{*this};
};

class FakeMaterial final : public FakeObject {
public:
    HRESULT result = S_OK;
    IDispatch* created = nullptr;      // what CreateMaterial returns, with a reference if it succeeds
    IDispatch** source = nullptr;      // CopyFromMaterial's argument
    IDispatch* sourceValue = nullptr;  // what it pointed to
    std::function<void()> duringCopy;
    BSTR lastString = nullptr;

    static inline long alive = 0;
    FakeMaterial() { ++alive; }
    ~FakeMaterial() override { --alive; }

protected:
    IDispatch* ScriptInterface() override { return &material; }

private:
    struct Material final : com::DualPart<ICapeThermoMaterial> {
        explicit Material(FakeMaterial& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(ClearAllProps)() override { return fake.result; }
        STDMETHOD(CopyFromMaterial)(IDispatch** source) override
        {
            fake.source = source;
            fake.sourceValue = source ? *source : nullptr;
            if (source) *source = nullptr;  // a callee that clears the slot
            if (fake.duringCopy) fake.duringCopy();
            return fake.result;
        }
        STDMETHOD(CreateMaterial)(IDispatch** created) override
        {
            *created = fake.created;
            if (fake.created && SUCCEEDED(fake.result)) fake.created->AddRef();
            return fake.result;
        }
        STDMETHOD(GetOverallProp)(BSTR, BSTR, VARIANT*) override { return fake.result; }
        STDMETHOD(GetOverallTPFraction)(double* temperature, double* pressure, VARIANT*) override
        {
            *temperature = 300;
            *pressure = 1e5;
            return fake.result;
        }
        STDMETHOD(GetPresentPhases)(VARIANT*, VARIANT*) override { return fake.result; }
        STDMETHOD(GetSinglePhaseProp)(BSTR, BSTR phaseLabel, BSTR, VARIANT*) override
        {
            fake.lastString = phaseLabel;
            return fake.result;
        }
        STDMETHOD(GetTPFraction)(BSTR, double*, double*, VARIANT*) override { return fake.result; }
        STDMETHOD(GetTwoPhaseProp)(BSTR, VARIANT, BSTR, VARIANT*) override { return fake.result; }
        STDMETHOD(SetOverallProp)(BSTR, BSTR, VARIANT) override { return fake.result; }
        STDMETHOD(SetPresentPhases)(VARIANT, VARIANT) override { return fake.result; }
        STDMETHOD(SetSinglePhaseProp)(BSTR, BSTR phaseLabel, BSTR, VARIANT) override
        {
            fake.lastString = phaseLabel;
            return fake.result;
        }
        STDMETHOD(SetTwoPhaseProp)(BSTR, VARIANT, BSTR, VARIANT) override { return fake.result; }
        FakeMaterial& fake;
    } material{*this};
    struct Phases final : com::DualPart<ICapeThermoPhases> {
        explicit Phases(FakeMaterial& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(GetNumPhases)(long* num) override
        {
            *num = 2;
            return fake.result;
        }
        STDMETHOD(GetPhaseInfo)(BSTR, BSTR, VARIANT*) override { return fake.result; }
        STDMETHOD(GetPhaseList)(VARIANT*, VARIANT*, VARIANT*) override { return fake.result; }
        FakeMaterial& fake;
    } phases{*this};
};

// A fake that starts with one reference, owned by the result.
template <class T>
ComPtr<T> MakeFake()
{
    return ComPtr<T>(new T);
}

}  // namespace zelt::test
