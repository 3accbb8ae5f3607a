#include "thermo/reaction_package_manager.h"

#include <cape-open.h>

#include "thermo/package_manager.h"
#include "unit/reaction_package_10.h"

namespace zelt {

const CLSID kReactionPackageManagerClass = {
    0x2034CAB3, 0xFBC2, 0x4C81, {0x94, 0x49, 0xCD, 0x13, 0xC7, 0x3C, 0xE6, 0x74}};

namespace {

const ManagerRow kRow = {
    .fromManager = PackageKind::ReactionPackage10FromManager,
    .standAlone = PackageKind::ReactionPackage10StandAlone,
    .name = L"ZELT Reaction Package Manager (CAPE-OPEN 1.0)",
    .description = L"Zeltora: Reacion Package Manager",
    .scope = L"ResolveReactionsPackage",
    .interfaceName = L"ICapeReactionsPackageManager",
    .createManagerFailure = L"Failed to create reaction package manager: ",
    .initializeFailure = L"reaction package manager failed to initialize: ",
    .standAloneFailure = L"Failed to create stand-alone reacion package: ",
    .nullResult = L"NULL pointer is returned for reaction package",
    .removalPrompt = L"\r\nRemove from list of exported packages?",
    .logDescription = "CAPE-OPEN version 1.0 Reaction Package",
    .foreignInterface = __uuidof(ICapeReactionsPackageManager),
    .getForeignPackage =
        [](IUnknown* manager, BSTR name, IDispatch** package) {
            return static_cast<ICapeReactionsPackageManager*>(manager)->ResolveReactionsPackage(name, package);
        },
    .newProxy = []() -> CapeOpenBase* { return new CReactionPackage10; },
};

class CReactionPackageManager final : public PackageManager {
public:
    CReactionPackageManager() : PackageManager(kRow, __uuidof(ICapeReactionsPackageManager)), manager(*this) {}

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
