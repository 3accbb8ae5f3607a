// A package manager that its packages depend on: it takes a licence when it is initialised and gives it back when it is
// terminated, and GetNumCompounds of its packages fails while no licence is taken. Its Edit shows nothing; a package's
// description says how often Edit was called, and how many licences are taken.
#pragma once

#include "com/object.h"
#include "samples/component/component.h"
#include "samples/package/property_package.h"

namespace zelt::sample {

class LicensedManagerPart final : public CapePart<ICapeThermoPropertyPackageManager> {
public:
    LicensedManagerPart(com::Object& object, CapeErrors& errors)
        : CapePart(object, errors, L"ICapeThermoPropertyPackageManager")
    {}
    STDMETHOD(GetPropertyPackageList)(VARIANT* packageNames) override;
    STDMETHOD(GetPropertyPackage)(BSTR packageName, IDispatch** package) override;
};

class LicensedManager final : public com::Object {
public:
    LicensedManager();

protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    class EditedUtilities final : public UtilitiesPart {
    public:
        using UtilitiesPart::UtilitiesPart;
        STDMETHOD(Edit)() override;
    };

    CapeErrors errors{*this, L"ZeltSample.LicensedManager"};
    LicensedManagerPart manager{*this, errors};
    EditedUtilities utilities;
    IdentificationPart identification{*this, errors, L"Licensed package manager", L"Its packages need it"};
};

}  // namespace zelt::sample
