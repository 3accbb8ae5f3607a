// The simulator's material object: the state of a stream, as CAPE-OPEN 1.1 components see it. Values are kept as they
// are set, bit for bit. What is stored on a mole basis can be read on a mass basis too; nothing else is converted.
// Shares the slate with its simulator and with the materials that are made from it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/simulator/material_lists.h"
#include "samples/simulator/slate.h"

namespace zelt::sample {

// A property and its basis, in lower case.
struct PropertyKey {
    std::wstring property;
    std::wstring basis;
    auto operator<=>(const PropertyKey&) const = default;
};
using PropertyBag = std::map<PropertyKey, std::vector<double>>;

struct PresentPhase {
    std::wstring label;  // as the slate spells it
    long status;
    PropertyBag properties;
};

struct MaterialState {
    PropertyBag overall;
    std::vector<PresentPhase> phases;
    std::map<std::pair<std::wstring, std::wstring>, PropertyBag> twoPhase;  // by both labels
};

// Called when a component reads the state; a test blocks in it. May be empty.
using ReadHook = std::function<void(const wchar_t* method)>;

class MaterialPart final : public CapePart<ICapeThermoMaterial> {
public:
    MaterialPart(com::Object& object, CapeErrors& errors, std::shared_ptr<const Slate> slate, ReadHook hook)
        : CapePart(object, errors, L"ICapeThermoMaterial"), slate(std::move(slate)), hook(std::move(hook))
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
    const std::wstring& LabelOf(std::wstring_view text) const;
    PresentPhase& PhaseOf(std::wstring_view label);
    std::pair<std::wstring, std::wstring> LabelPair(const VARIANT& labels) const;
    std::vector<double> Find(const PropertyBag& bag, std::wstring_view property, std::wstring_view basis) const;
    void Store(PropertyBag& bag, std::wstring_view property, std::wstring_view basis, const VARIANT& values) const;
    void OnRead(const wchar_t* method) const;

    std::shared_ptr<const Slate> slate;
    ReadHook hook;
    MaterialState state;
};

class Material final : public com::Object {
public:
    explicit Material(std::shared_ptr<const Slate> slate, std::wstring name = L"Feed", ReadHook hook = {})
        : compounds(*this, errors, slate),
          phases(*this, errors, slate),
          material(*this, errors, slate, std::move(hook)),
          identification(*this, errors, std::move(name), L"Material object of the sample simulator")
    {}

protected:
    IDispatch* ScriptInterface() override { return &material; }

private:
    CapeErrors errors{*this, L"SampleSimulator.Material"};
    MaterialCompoundsPart compounds;
    MaterialPhasesPart phases;
    MaterialConstantsPart constants{*this, errors};
    MaterialPart material;
    IdentificationPart identification;
};

}  // namespace zelt::sample
