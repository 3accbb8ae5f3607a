#include "thermo/property_package_manager.h"

#include <cape-open.h>

#include "thermo/package_manager.h"
#include "thermo/property_package_11.h"

namespace zelt {

const CLSID kPropertyPackageManagerClass = {
    0x6377AC63, 0x7A36, 0x46DC, {0x88, 0x97, 0xF2, 0x77, 0x01, 0x2C, 0xDA, 0x9D}};

namespace {

const ManagerRow kRow = {
    .fromManager = PackageKind::PropertyPackage11FromManager,
    .standAlone = PackageKind::PropertyPackage11StandAlone,
    .name = L"ZELT Property Package Manager (CAPE-OPEN 1.1)",
    .description = L"Zeltora: Property Package Manager",
    .scope = L"GetPropertyPackage",
    .interfaceName = L"ICapeThermoPropertyPackageManager",
    .createManagerFailure = L"Failed to create property package manager: ",
    .initializeFailure = L"property package manager failed to initialize: ",
    .standAloneFailure = L"Failed to create stand-alone property package: ",
    .nullResult = L"NULL pointer is returned for property package",
    .removalPrompt = L"\r\nRemove from list of exported property packages?",
    .logDescription = "CAPE-OPEN version 1.1 Physical Property Package",
    .foreignInterface = __uuidof(ICapeThermoPropertyPackageManager),
    .getForeignPackage =
        [](IUnknown* manager, BSTR name, IDispatch** package) {
            return static_cast<ICapeThermoPropertyPackageManager*>(manager)->GetPropertyPackage(name, package);
        },
    .newProxy = []() -> CapeOpenBase* { return new CPropertyPackage11; },
};

class CPropertyPackageManager final : public PackageManager {
public:
    CPropertyPackageManager() : PackageManager(kRow, __uuidof(ICapeThermoPropertyPackageManager)), manager(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    struct ManagerPart final : com::DualPart<ICapeThermoPropertyPackageManager> {
        explicit ManagerPart(CPropertyPackageManager& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(GetPropertyPackageList)(VARIANT* names) override { return owner.List(names); }
        STDMETHOD(GetPropertyPackage)(BSTR name, IDispatch** package) override { return owner.Get(name, package); }
        CPropertyPackageManager& owner;
    };
    ManagerPart manager;
};

}  // namespace

HRESULT CreatePropertyPackageManager(REFIID iid, void** result)
{
    return com::Create<CPropertyPackageManager>(iid, result);
}

}  // namespace zelt
