// The targets of the measured calls: a package and a material that return at once, so that the benchmarks measure
// only the path to them. Their results are fixed.
#pragma once

#include <cape-open.h>

#include "com/dispatch.h"

namespace zelt::bench {

// ICapeThermoCompounds with two usable methods: GetCompoundConstant returns an empty VARIANT, and GetNumCompounds a number.
struct PlainCompounds final : com::DualPart<ICapeThermoCompounds> {
    using DualPart::DualPart;
    STDMETHOD(GetCompoundConstant)(VARIANT, VARIANT, VARIANT* values) override
    {
        VariantInit(values);
        return S_OK;
    }
    STDMETHOD(GetCompoundList)(VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override
    {
        return E_NOTIMPL;
    }
    STDMETHOD(GetConstPropList)(VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetNumCompounds)(long* number) override
    {
        *number = 10;
        return S_OK;
    }
    STDMETHOD(GetPDependentProperty)(VARIANT, double, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetPDependentPropList)(VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetTDependentProperty)(VARIANT, double, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetTDependentPropList)(VARIANT*) override { return E_NOTIMPL; }
};

// ICapeThermoMaterial with only one usable method: SetSinglePhaseProp, which takes an array.
struct PlainMaterialPart final : com::DualPart<ICapeThermoMaterial> {
    using DualPart::DualPart;
    STDMETHOD(ClearAllProps)() override { return E_NOTIMPL; }
    STDMETHOD(CopyFromMaterial)(IDispatch**) override { return E_NOTIMPL; }
    STDMETHOD(CreateMaterial)(IDispatch**) override { return E_NOTIMPL; }
    STDMETHOD(GetOverallProp)(BSTR, BSTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetOverallTPFraction)(double*, double*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetPresentPhases)(VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetSinglePhaseProp)(BSTR, BSTR, BSTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetTPFraction)(BSTR, double*, double*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(GetTwoPhaseProp)(BSTR, VARIANT, BSTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHOD(SetOverallProp)(BSTR, BSTR, VARIANT) override { return E_NOTIMPL; }
    STDMETHOD(SetPresentPhases)(VARIANT, VARIANT) override { return E_NOTIMPL; }
    STDMETHOD(SetSinglePhaseProp)(BSTR, BSTR, BSTR, VARIANT) override { return S_OK; }
    STDMETHOD(SetTwoPhaseProp)(BSTR, VARIANT, BSTR, VARIANT) override { return E_NOTIMPL; }
};

class PlainPackage final : public com::Object {
public:
    PlainCompounds compounds{*this};
};

class PlainMaterial final : public com::Object {
public:
    PlainMaterialPart material{*this};
};

}  // namespace zelt::bench
