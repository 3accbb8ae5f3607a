#include "packages/thermo_system.h"

#include <cape-open.h>

#include "packages/package_kinds.h"
#include "packages/package_manager.h"

namespace zelt {

const CLSID kThermoSystemClass = {0x4CCF55DB, 0xE332, 0x42F8, {0xB6, 0x85, 0x18, 0x89, 0x89, 0xF8, 0xE1, 0xEC}};

namespace {

class CThermoSystem final : public PackageManager {
public:
    CThermoSystem() : PackageManager(kPropertyPackages10), manager(*this) {}

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
