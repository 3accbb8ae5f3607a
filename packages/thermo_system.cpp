#include "packages/thermo_system.h"

#include <cape-open.h>

#include "packages/package_kinds.h"
#include "packages/package_manager.h"

namespace zelt {

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
