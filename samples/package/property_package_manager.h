// The CAPE-OPEN 1.1 property package manager of the sample: lists the packages and makes them by name. Keeps no
// references to the packages that it made.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"

namespace zelt::sample {

class PackageManagerPart final : public CapePart<ICapeThermoPropertyPackageManager> {
public:
    PackageManagerPart(com::Object& object, CapeErrors& errors)
        : CapePart(object, errors, L"ICapeThermoPropertyPackageManager")
    {}
    STDMETHOD(GetPropertyPackageList)(VARIANT* packageNames) override;
    STDMETHOD(GetPropertyPackage)(BSTR packageName, IDispatch** package) override;
};

class PropertyPackageManager final : public com::Object {
protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    CapeErrors errors{*this, L"ZeltSample.PropertyPackageManager"};
    PackageManagerPart manager{*this, errors};
    UtilitiesPart utilities{*this, errors, {}, {}};
    IdentificationPart identification{*this, errors, L"Sample property package manager",
                                      L"Ideal solutions of a few common compounds"};
};

}  // namespace zelt::sample
