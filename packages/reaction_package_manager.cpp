#include "packages/reaction_package_manager.h"

#include <cape-open.h>

#include "packages/package_kinds.h"
#include "packages/package_manager.h"

namespace zelt {

namespace {

class CReactionPackageManager final : public PackageManager {
public:
    CReactionPackageManager() : PackageManager(kReactionPackages10), manager(*this) {}

protected:
    IDispatch* ScriptInterface() override { return &manager; }

private:
    struct ManagerPart final : com::DualPart<ICapeReactionsPackageManager> {
        explicit ManagerPart(CReactionPackageManager& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(GetListOfReactionsPackages)(VARIANT* names) override { return owner.List(names); }
        STDMETHOD(ResolveReactionsPackage)(BSTR name, IDispatch** package) override { return owner.Get(name, package); }
        CReactionPackageManager& owner;
    };
    ManagerPart manager;
};

}  // namespace

HRESULT CreateReactionPackageManager(REFIID iid, void** result)
{
    return com::Create<CReactionPackageManager>(iid, result);
}

}  // namespace zelt
