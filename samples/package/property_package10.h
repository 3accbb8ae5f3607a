// A CAPE-OPEN 1.0 property package: ICapeThermoPropertyPackage around one PackageModel. It keeps no material: callers
// pass one to each calculation.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/component/persistence.h"
#include "samples/package/classes.h"
#include "samples/package/package_model.h"

namespace zelt::sample {

class MaterialObjectView;

class PropertyPackage10Part final : public CapePart<ICapeThermoPropertyPackage> {
public:
    PropertyPackage10Part(com::Object& object, CapeErrors& errors, PackageModel& model)
        : CapePart(object, errors, L"ICapeThermoPropertyPackage"), model(model)
    {}

    STDMETHOD(GetPhaseList)(VARIANT* phases) override;
    STDMETHOD(GetComponentList)(VARIANT* compIds, VARIANT* formulae, VARIANT* name, VARIANT* boilTemps, VARIANT* molwt,
                                VARIANT* casno) override;
    STDMETHOD(GetUniversalConstant)(IDispatch* materialObject, VARIANT props, VARIANT* propVals) override;
    // For the material's compounds, or for the package's if there is no material.
    STDMETHOD(GetComponentConstant)(IDispatch* materialObject, VARIANT props, VARIANT* propVals) override;
    // Calculation type "Mixture" or empty, or "Pure" for the properties of each compound alone.
    STDMETHOD(CalcProp)(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType) override;
    // Flash types TP, PVF, TVF, PH and PS. Sets the composition and phase fraction of each phase that is present at
    // equilibrium, and the temperature or pressure if it was not given. Then calculates `props` for those phases.
    STDMETHOD(CalcEquilibrium)(IDispatch* materialObject, BSTR flashType, VARIANT props) override;
    STDMETHOD(PropCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override;
    // Whether each property is offered and the user's limits allow calculations at the material's state.
    STDMETHOD(ValidityCheck)(IDispatch* materialObject, VARIANT props, VARIANT* valid) override;
    STDMETHOD(GetPropList)(VARIANT* props) override;

private:
    // The ideal solution of the material's compounds, in the material's order.
    IdealSolution SolutionOf(const MaterialObjectView& material) const;
    void Calculate(const MaterialObjectView& material, std::span<const std::wstring> props,
                   std::span<const std::wstring> phases, bool pure) const;

    PackageModel& model;
};

class PropertyPackage10 final : public com::Object {
public:
    explicit PropertyPackage10(const PackageDefinition& definition = AllPackages().front()) : model(definition) {}

protected:
    IDispatch* ScriptInterface() override { return &package; }

private:
    PackageModel model;
    CapeErrors errors{*this, L"ZeltSample.PropertyPackage10"};
    PropertyPackage10Part package{*this, errors, model};
    UtilitiesPart utilities{*this, errors, {}, {}, &model.Host()};
    PersistStreamPart persistence{*this, errors, model.Host().Parameters(), kPropertyPackage10Class};
    IdentificationPart identification{*this, errors, model.Definition().name, model.Definition().description};
};

}  // namespace zelt::sample
