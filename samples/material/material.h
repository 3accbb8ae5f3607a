// The simulator's material object: the state of a stream, as components of both versions of the standard see it. Shares
// its slate with the simulator, and its slate and link with the materials that it makes.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/material/material_lists.h"
#include "samples/material/material_object_part.h"
#include "samples/material/material_routines.h"
#include "samples/material/material_store.h"

namespace zelt::sample {

class MaterialPart : public CapePart<ICapeThermoMaterial> {
public:
    MaterialPart(com::Object& object, CapeErrors& errors, MaterialStore& store, std::shared_ptr<PackageLink> link)
        : CapePart(object, errors, L"ICapeThermoMaterial"), store(store), link(std::move(link))
    {}

    STDMETHOD(ClearAllProps)() override;
    STDMETHOD(CopyFromMaterial)(IDispatch** source) override;
    STDMETHOD(CreateMaterial)(IDispatch** materialObject) override;
    STDMETHOD(GetOverallProp)(BSTR property, BSTR basis, VARIANT* results) override;
    STDMETHOD(GetOverallTPFraction)(double* temperature, double* pressure, VARIANT* composition) override;
    STDMETHOD(GetPresentPhases)(VARIANT* phaseLabels, VARIANT* phaseStatus) override;
    STDMETHOD(GetSinglePhaseProp)(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT* results) override;
    STDMETHOD(GetTPFraction)(BSTR phaseLabel, double* temperature, double* pressure, VARIANT* composition) override;
    STDMETHOD(GetTwoPhaseProp)(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT* results) override;
    STDMETHOD(SetOverallProp)(BSTR property, BSTR basis, VARIANT values) override;
    STDMETHOD(SetPresentPhases)(VARIANT phaseLabels, VARIANT phaseStatus) override;
    STDMETHOD(SetSinglePhaseProp)(BSTR property, BSTR phaseLabel, BSTR basis, VARIANT values) override;
    STDMETHOD(SetTwoPhaseProp)(BSTR property, VARIANT phaseLabels, BSTR basis, VARIANT values) override;

private:
    MaterialStore& store;
    std::shared_ptr<PackageLink> link;  // passed on to the materials made here
};

class Material final : public com::Object {
public:
    // `link` may be null: then the calculations of CAPE-OPEN 1.0 fail, and those of 1.1 are not offered.
    explicit Material(const std::shared_ptr<const Slate>& slate, std::wstring name = L"Feed", ReadHook hook = {},
                      const std::shared_ptr<PackageLink>& link = {}, MaterialState state = {})
        : store(slate, std::move(hook)),
          compounds(*this, errors, slate),
          phases(*this, errors, slate),
          material(*this, errors, store, link),
          materialObject(*this, errors, store, link),
          properties(*this, errors, link),
          equilibrium(*this, errors, link),
          identification(*this, errors, std::move(name), L"Material object of the sample simulator")
    {
        store.state = std::move(state);
        calculates = link && link->context;
    }

protected:
    IDispatch* ScriptInterface() override { return &material; }
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry*) override
    {
        const bool routine =
            iid == __uuidof(ICapeThermoPropertyRoutine) || iid == __uuidof(ICapeThermoEquilibriumRoutine);
        return routine && !calculates ? E_NOINTERFACE : S_OK;
    }

private:
    MaterialStore store;
    CapeErrors errors{*this, L"SampleSimulator.Material"};
    MaterialCompoundsPart compounds;
    MaterialPhasesPart phases;
    MaterialConstantsPart constants{*this, errors};
    MaterialPart material;
    MaterialObjectPart materialObject;
    MaterialPropertyPart properties;
    MaterialEquilibriumPart equilibrium;
    IdentificationPart identification;
    bool calculates = false;  // set when the material is made: an object's interfaces must not change
};

}  // namespace zelt::sample
