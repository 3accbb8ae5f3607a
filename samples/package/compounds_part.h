// ICapeThermoCompounds and ICapeThermoUniversalConstant of a property package: its compounds, in the package's order, and
// universal constants.
#pragma once

#include "samples/component/cape_errors.h"
#include "samples/package/package_model.h"

namespace zelt::sample {

class CompoundsPart : public CapePart<ICapeThermoCompounds> {
public:
    CompoundsPart(com::Object& object, CapeErrors& errors, const PackageModel& model)
        : CapePart(object, errors, L"ICapeThermoCompounds"), model(model)
    {}

    // Values in the order of the standard: all compounds for the first property, then for the next. An omitted list of
    // compounds means the package's whole list.
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
    const PackageModel& model;
};

class UniversalConstantPart final : public CapePart<ICapeThermoUniversalConstant> {
public:
    UniversalConstantPart(com::Object& object, CapeErrors& errors)
        : CapePart(object, errors, L"ICapeThermoUniversalConstant")
    {}
    STDMETHOD(GetUniversalConstant)(BSTR constantId, VARIANT* constantValue) override;
    STDMETHOD(GetUniversalConstantList)(VARIANT* constantIds) override;
};

}  // namespace zelt::sample
