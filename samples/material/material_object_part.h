// ICapeThermoMaterialObject of the simulator's material: the material's state through CAPE-OPEN 1.0. The CAPE-OPEN 1.0
// package in the PackageLink does the calculations.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/material/material_store.h"

namespace zelt::sample {

class MaterialObjectPart final : public CapePart<ICapeThermoMaterialObject> {
public:
    MaterialObjectPart(com::Object& object, CapeErrors& errors, MaterialStore& store, std::shared_ptr<PackageLink> link)
        : CapePart(object, errors, L"ICapeThermoMaterialObject"), store(store), link(std::move(link))
    {}

    STDMETHOD(get_ComponentIds)(VARIANT* compIds) override;
    STDMETHOD(get_PhaseIds)(VARIANT* phaseIds) override;
    STDMETHOD(GetUniversalConstant)(VARIANT props, VARIANT* propVals) override;
    STDMETHOD(GetComponentConstant)(VARIANT props, VARIANT compIds, VARIANT* propVals) override;
    STDMETHOD(CalcProp)(VARIANT props, VARIANT phases, BSTR calcType) override;
    // `phase` is "Overall" or a phase of the slate. Temperature and pressure are always those of the whole material. If a
    // property has one value for each compound, `compIds` selects from them.
    STDMETHOD(GetProp)(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis,
                       VARIANT* results) override;
    // Makes the phase present, unless it is "Overall" or the property is temperature or pressure. Values are set for all
    // compounds at once.
    STDMETHOD(SetProp)(BSTR property, BSTR phase, VARIANT compIds, BSTR calcType, BSTR basis, VARIANT values) override;
    STDMETHOD(CalcEquilibrium)(BSTR flashType, VARIANT props) override;
    STDMETHOD(SetIndependentVar)(VARIANT indVars, VARIANT values) override;
    STDMETHOD(GetIndependentVar)(VARIANT indVars, VARIANT* values) override;
    STDMETHOD(PropCheck)(VARIANT props, VARIANT* valid) override;
    STDMETHOD(AvailableProps)(VARIANT* props) override;
    // Removes these properties from every phase; without a list, removes all phases and every value of a phase or a pair of
    // phases.
    STDMETHOD(RemoveResults)(VARIANT props) override;
    STDMETHOD(CreateMaterialObject)(IDispatch** materialObject) override;
    STDMETHOD(Duplicate)(IDispatch** clone) override;
    STDMETHOD(ValidityCheck)(VARIANT props, VARIANT* relList) override;
    STDMETHOD(GetPropList)(VARIANT* props) override;
    STDMETHOD(GetNumComponents)(long* numComp) override;

private:
    // Throws CapeFailure ("bad order of calls") without a package.
    ICapeThermoPropertyPackage* Package() const;
    Microsoft::WRL::ComPtr<IDispatch> Self() const;
    PropertyBag& BagOf(std::wstring_view property, std::wstring_view phase, bool make);
    HRESULT Make(const wchar_t* operation, const wchar_t* name, MaterialState state, IDispatch** result);

    MaterialStore& store;
    std::shared_ptr<PackageLink> link;
};

}  // namespace zelt::sample
