#include "packages/property_package_manager.h"

#include <cape-open.h>

#include "packages/package_kinds.h"
#include "packages/package_manager.h"

namespace zelt {

const CLSID kPropertyPackageManagerClass = {
    0x6377AC63, 0x7A36, 0x46DC, {0x88, 0x97, 0xF2, 0x77, 0x01, 0x2C, 0xDA, 0x9D}};

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
