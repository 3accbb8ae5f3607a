// A property package that calculates like the sample package "Aromatics" until it is asked for something on the menu of faults.
// A Character, chosen by the package's name in the manager, removes interfaces, or adds faults and odd behaviour to calls in
// which the caller cannot name a fault.
#pragma once

#include <span>

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/faulty/faults.h"
#include "samples/package/property_package.h"

namespace zelt::sample {

struct Character {
    const wchar_t* name;  // of the package in the manager's list
    bool identification = true;
    bool calculation = true;  // property and equilibrium routines, universal constants, material context
    bool errors = true;
    bool keepsMaterial = false;             // never releases a material that it gets
    const wchar_t* reportedName = nullptr;  // the name to report instead of its own; L"" reports a null text
    HRESULT rename = S_OK;                  // the result of put_ComponentName
    // The faults that five calls commit; empty for none.
    const wchar_t* initialize = L"";
    const wchar_t* queryPhases = L"";
    const wchar_t* getName = L"";
    const wchar_t* finalRelease = L"";
    const wchar_t* edit = L"";
};

// The packages that the faulty manager can make. samples/README.md describes them.
std::span<const Character> AllCharacters();

// Commits the fault or error that the first property requests; GetCompoundConstant also does so for the first compound id.
class FaultyCompoundsPart final : public CompoundsPart {
public:
    FaultyCompoundsPart(com::Object& object, CapeErrors& errors, const PackageModel& model)
        : CompoundsPart(object, errors, model)
    {}
    STDMETHOD(GetCompoundConstant)(VARIANT props, VARIANT compIds, VARIANT* propVals) override;
    STDMETHOD(GetTDependentProperty)(VARIANT props, double temperature, VARIANT compIds, VARIANT* propVals) override;
};

// Commits the fault or error that the first property of CalcSinglePhaseProp requests. "callback:NAME" reads the material
// first, then commits NAME.
class FaultyPropertyPart final : public PropertyPart {
public:
    FaultyPropertyPart(com::Object& object, CapeErrors& errors, const PackageModel& model)
        : PropertyPart(object, errors, model), model(model)
    {}
    STDMETHOD(CalcSinglePhaseProp)(VARIANT props, BSTR phaseLabel) override;

private:
    const PackageModel& model;
};

class FaultyIdentificationPart final : public IdentificationPart {
public:
    FaultyIdentificationPart(com::Object& object, CapeErrors& errors, const Character& character)
        : IdentificationPart(object, errors, character.name, L"A package that fails on request"), character(character)
    {}
    STDMETHOD(get_ComponentName)(BSTR* text) override;
    STDMETHOD(put_ComponentName)(BSTR text) override;

private:
    const Character& character;
};

class FaultyUtilitiesPart final : public UtilitiesPart {
public:
    FaultyUtilitiesPart(com::Object& object, CapeErrors& errors, const Character& character,
                        std::function<void()> onTerminate)
        : UtilitiesPart(object, errors, {}, std::move(onTerminate)), character(character)
    {}
    STDMETHOD(Initialize)() override;
    STDMETHOD(Edit)() override;

private:
    const Character& character;
};

class FaultyPackage final : public com::Object {
public:
    explicit FaultyPackage(const Character& character = AllCharacters().front()) : character(character) {}

protected:
    IDispatch* ScriptInterface() override { return &compounds; }
    HRESULT BeforeQueryInterface(REFIID iid, const com::InterfaceEntry* entry) override;
    void FinalRelease() override;

private:
    class ContextPart final : public CapePart<ICapeThermoMaterialContext> {
    public:
        ContextPart(com::Object& object, CapeErrors& errors, PackageModel& model, const Character& character)
            : CapePart(object, errors, L"ICapeThermoMaterialContext"), model(model), character(character)
        {}
        STDMETHOD(SetMaterial)(IDispatch* material) override;
        STDMETHOD(UnsetMaterial)() override;

    private:
        PackageModel& model;
        const Character& character;
    };

    const Character& character;
    PackageModel model{AllPackages().front()};
    CapeErrors errors{*this, L"ZeltSample.FaultyPackage"};
    FaultyCompoundsPart compounds{*this, errors, model};
    PhasesPart phases{*this, errors};
    FaultyPropertyPart properties{*this, errors, model};
    EquilibriumPart equilibrium{*this, errors, model};
    UniversalConstantPart universalConstants{*this, errors};
    ContextPart materialContext{*this, errors, model, character};
    FaultyUtilitiesPart utilities{*this, errors, character, [this] { model.UnsetMaterial(); }};
    FaultyIdentificationPart identification{*this, errors, character};
};

}  // namespace zelt::sample
