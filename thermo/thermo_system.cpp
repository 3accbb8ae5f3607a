#include "thermo/thermo_system.h"

#include <cape-open.h>

#include "thermo/package_manager.h"
#include "thermo/property_package_10.h"

namespace zelt {

const CLSID kThermoSystemClass = {0x4CCF55DB, 0xE332, 0x42F8, {0xB6, 0x85, 0x18, 0x89, 0x89, 0xF8, 0xE1, 0xEC}};

namespace {

const ManagerRow kRow = {
    .fromManager = PackageKind::PropertyPackage10FromThermoSystem,
    .standAlone = PackageKind::PropertyPackage10StandAlone,
    .name = L"ZELT Thermo System (CAPE-OPEN 1.0)",
    .description = L"Zeltora: Thermo System",
    .scope = L"ResolvePropertyPackage",
    .interfaceName = L"ICapeThermoSystem",
    .createManagerFailure = L"Failed to create thermo system: ",
    .initializeFailure = L"thermo system failed to initialize: ",
    .standAloneFailure = L"Failed to create stand-alone property package: ",
    .nullResult = L"NULL pointer is returned for property package",
    .removalPrompt = L"\r\nRemove from list of exported property packages?",
    .logDescription = "CAPE-OPEN version 1.0 Physical Property Package",
    .foreignInterface = __uuidof(ICapeThermoSystem),
    .getForeignPackage =
        [](IUnknown* manager, BSTR name, IDispatch** package) {
            return static_cast<ICapeThermoSystem*>(manager)->ResolvePropertyPackage(name, package);
        },
    .newProxy = []() -> CapeOpenBase* { return new CPropertyPackage10; },
};

class CThermoSystem final : public PackageManager {
public:
    CThermoSystem() : PackageManager(kRow, __uuidof(ICapeThermoSystem)), manager(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    struct ManagerPart final : com::DualPart<ICapeThermoSystem> {
        explicit ManagerPart(CThermoSystem& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(GetPropertyPackages)(VARIANT* names) override { return owner.List(names); }
        STDMETHOD(ResolvePropertyPackage)(BSTR name, IDispatch** package) override { return owner.Get(name, package); }
        CThermoSystem& owner;
    };
    ManagerPart manager;
};

}  // namespace

HRESULT CreateThermoSystem(REFIID iid, void** result) { return com::Create<CThermoSystem>(iid, result); }

}  // namespace zelt
