// What the simulator's material lists without a property package: the compounds and phases of its slate, and universal
// constants. Properties that depend on temperature or pressure come from the property package, not from the material.
#pragma once

#include <memory>
#include <string_view>

#include "samples/component/cape_errors.h"
#include "samples/material/slate.h"

namespace zelt::sample {

// One value for each property and compound: all compounds for the first property, then for the next. If `compIds`
// names no compound, all are meant. Both throw CapeFailure ("invalid argument") for an unknown name.
_variant_t CompoundConstantValues(const Slate& slate, const VARIANT& props, const VARIANT& compIds);
_variant_t UniversalConstantValue(std::wstring_view name);

class MaterialCompoundsPart final : public CapePart<ICapeThermoCompounds> {
public:
    MaterialCompoundsPart(com::Object& object, CapeErrors& errors, std::shared_ptr<const Slate> slate)
        : CapePart(object, errors, L"ICapeThermoCompounds"), slate(std::move(slate))
    {}
    STDMETHOD(GetCompoundConstant)(VARIANT props, VARIANT compIds, VARIANT* propVals) override;
    STDMETHOD(GetCompoundList)(VARIANT* compIds, VARIANT* formulae, VARIANT* names, VARIANT* boilTemps, VARIANT* molwts,
                               VARIANT* casnos) override;
    STDMETHOD(GetConstPropList)(VARIANT* props) override;
    STDMETHOD(GetNumCompounds)(long* num) override;
    STDMETHOD(GetPDependentProperty)(VARIANT props, double pressure, VARIANT compIds, VARIANT* propVals) override;
    STDMETHOD(GetPDependentPropList)(VARIANT* props) override;
    STDMETHOD(GetTDependentProperty)(VARIANT props, double temperature, VARIANT compIds, VARIANT* propVals) override;
    STDMETHOD(GetTDependentPropList)(VARIANT* props) override;

private:
    std::shared_ptr<const Slate> slate;
};

class MaterialPhasesPart final : public CapePart<ICapeThermoPhases> {
public:
    MaterialPhasesPart(com::Object& object, CapeErrors& errors, std::shared_ptr<const Slate> slate)
        : CapePart(object, errors, L"ICapeThermoPhases"), slate(std::move(slate))
    {}
    STDMETHOD(GetNumPhases)(long* num) override;
    STDMETHOD(GetPhaseInfo)(BSTR phaseLabel, BSTR phaseAttribute, VARIANT* value) override;
    STDMETHOD(GetPhaseList)(VARIANT* phaseLabels, VARIANT* stateOfAggregation, VARIANT* keyCompoundId) override;

private:
    std::shared_ptr<const Slate> slate;
};

class MaterialConstantsPart final : public CapePart<ICapeThermoUniversalConstant> {
public:
    MaterialConstantsPart(com::Object& object, CapeErrors& errors)
        : CapePart(object, errors, L"ICapeThermoUniversalConstant")
    {}
    STDMETHOD(GetUniversalConstant)(BSTR constantId, VARIANT* constantValue) override;
    STDMETHOD(GetUniversalConstantList)(VARIANT* constantIds) override;
};

}  // namespace zelt::sample
