#include "packages/property_package_manager.h"

#include <cape-open.h>

#include "packages/package_kinds.h"
#include "packages/package_manager.h"

namespace zelt {

namespace {

class CPropertyPackageManager final : public PackageManager {
public:
    CPropertyPackageManager() : PackageManager(kPropertyPackages11), manager(*this) {}

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
