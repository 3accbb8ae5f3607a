// The CAPE-OPEN 1.0 thermo system of the sample: lists the packages and makes them by name. Keeps no references to the
// packages that it made.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"

namespace zelt::sample {

class ThermoSystemPart final : public CapePart<ICapeThermoSystem> {
public:
    ThermoSystemPart(com::Object& object, CapeErrors& errors) : CapePart(object, errors, L"ICapeThermoSystem") {}
    STDMETHOD(GetPropertyPackages)(VARIANT* propPackageList) override;
    STDMETHOD(ResolvePropertyPackage)(BSTR propertyPackage, IDispatch** propPackObject) override;
};

class ThermoSystem final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &system; }

private:
    CapeErrors errors{*this, L"ZeltSample.ThermoSystem"};
    ThermoSystemPart system{*this, errors};
    UtilitiesPart utilities{*this, errors, {}, {}};
    IdentificationPart identification{*this, errors, L"Sample thermo system",
                                      L"Ideal solutions of a few common compounds"};
};

}  // namespace zelt::sample
