#include "samples/field/late_material.h"

#include <comutil.h>

#include <initializer_list>
#include <iterator>
#include <vector>

#include "com/dispatch.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

_variant_t Argument(BSTR text) { return _variant_t(text ? text : L""); }
_variant_t Argument(const VARIANT& value) { return value; }

// Remembers no dispatch identifiers: each call looks up its member by name.
class LatePart final : public com::DualPart<ICapeThermoMaterialObject> {
public:
    LatePart(com::Object& object, IDispatch* material) : DualPart(object), material(material) {}

    STDMETHOD(get_ComponentIds)(VARIANT* compIds) override { return Get(L"ComponentIds", compIds); }
    STDMETHOD(get_PhaseIds)(VARIANT* phaseIds) override { return Get(L"PhaseIds", phaseIds); }
    STDMETHOD(GetUniversalConstant)(VARIANT props, VARIANT* propVals) override
    {
        return Call(L"GetUniversalConstant", propVals, props);
    }
    STDMETHOD(GetComponentConstant)(VARIANT props, VARIANT compIds, VARIANT* propVals) override
    {
        return Call(L"GetComponentConstant", propVals, props, compIds);
    }
    STDMETHOD(CalcProp)(VARIANT props, VARIANT phases, BSTR calcType) override
    {
        return Call(L"CalcProp", nullptr, props, phases, calcType);
    }
    STDMETHOD(GetProp)(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis, VARIANT* results) override
    {
        return Call(L"GetProp", results, property, phase, compIds, calcType, basis);
    }
    STDMETHOD(SetProp)(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis, VARIANT values) override
    {
        return Call(L"SetProp", nullptr, property, phase, compIds, calcType, basis, values);
    }
    STDMETHOD(CalcEquilibrium)(BSTR flashType, VARIANT props) override
    {
        return Call(L"CalcEquilibrium", nullptr, flashType, props);
    }
    STDMETHOD(SetIndependentVar)(VARIANT indVars, VARIANT values) override
    {
        return Call(L"SetIndependentVar", nullptr, indVars, values);
    }
    STDMETHOD(GetIndependentVar)(VARIANT indVars, VARIANT* values) override
    {
        return Call(L"GetIndependentVar", values, indVars);
    }
    STDMETHOD(PropCheck)(VARIANT props, VARIANT* valid) override { return Call(L"PropCheck", valid, props); }
    STDMETHOD(AvailableProps)(VARIANT* props) override { return Call(L"AvailableProps", props); }
    STDMETHOD(RemoveResults)(VARIANT props) override { return Call(L"RemoveResults", nullptr, props); }
    STDMETHOD(CreateMaterialObject)(IDispatch** materialObject) override
    {
        return CallForObject(L"CreateMaterialObject", materialObject);
    }
    STDMETHOD(Duplicate)(IDispatch** clone) override { return CallForObject(L"Duplicate", clone); }
    STDMETHOD(ValidityCheck)(VARIANT props, VARIANT* relList) override
    {
        return Call(L"ValidityCheck", relList, props);
    }
    STDMETHOD(GetPropList)(VARIANT* props) override { return Call(L"GetPropList", props); }
    STDMETHOD(GetNumComponents)(long* numComp) override
    {
        if (!numComp) return E_POINTER;
        _variant_t count;
        HRESULT result = Call(L"GetNumComponents", &count);
        if (SUCCEEDED(result)) result = VariantChangeType(&count, &count, 0, VT_I4);
        if (SUCCEEDED(result)) *numComp = V_I4(&count);
        return result;
    }

private:
    HRESULT Get(const wchar_t* member, VARIANT* result)
    {
        return com::NoThrow([&] { return InvokeByName(member, DISPATCH_PROPERTYGET, {}, result); });
    }

    template <class... Arguments>
    HRESULT Call(const wchar_t* member, VARIANT* result, const Arguments&... arguments)
    {
        return com::NoThrow([&] { return InvokeByName(member, DISPATCH_METHOD, {Argument(arguments)...}, result); });
    }

    HRESULT CallForObject(const wchar_t* member, IDispatch** object)
    {
        if (!object) return E_POINTER;
        *object = nullptr;
        _variant_t made;
        const HRESULT result = Call(member, &made);
        if (SUCCEEDED(result) && V_VT(&made) == VT_DISPATCH) *object = made.Detach().pdispVal;
        return result;
    }

    HRESULT InvokeByName(const wchar_t* member, WORD kind, std::initializer_list<_variant_t> arguments, VARIANT* result)
    {
        wchar_t* name = const_cast<wchar_t*>(member);
        DISPID id = DISPID_UNKNOWN;
        const HRESULT known = material->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
        if (FAILED(known)) return known;
        // IDispatch expects the arguments in reverse order.
        std::vector<_variant_t> reversed(std::rbegin(arguments), std::rend(arguments));
        DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        if (result) VariantInit(result);
        EXCEPINFO exception = {};
        const HRESULT invoked =
            material->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result, &exception, nullptr);
        if (invoked != DISP_E_EXCEPTION) return invoked;
        if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        return FAILED(exception.scode) ? exception.scode : E_FAIL;
    }

    ComPtr<IDispatch> material;
};

class LateMaterial final : public com::Object {
public:
    explicit LateMaterial(IDispatch* material) : late(*this, material) {}

protected:
    IDispatch* ScriptInterface() override { return &late; }

private:
    LatePart late;
};

}  // namespace

ComPtr<IDispatch> ReachByName(IDispatch* material)
{
    ComPtr<IDispatch> result;
    if (material) com::Check(com::Create<LateMaterial>(IID_PPV_ARGS(&result), material));
    return result;
}

}  // namespace zelt::sample
