#include "samples/simulator/manager_session.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/component_session.h"
#include "samples/simulator/create_class.h"

namespace zelt::sample {
using Microsoft::WRL::ComPtr;

ManagerSession::ManagerSession(const CLSID& clsid, bool inProcess)
    : object(CreateClass(clsid, inProcess, L"Creating the package manager"))
{
    manager = Optional<ICapeThermoPropertyPackageManager>(object.Get());
    if (!manager) system = Optional<ICapeThermoSystem>(object.Get());
    if (!manager && !system) reactions = Optional<ICapeReactionsPackageManager>(object.Get());
    if (!manager && !system && !reactions) {
        throw CapeFailure(E_NOINTERFACE, L"The class gives no packages");
    }
    utilities = Optional<ICapeUtilities>(object.Get());
    if (utilities) CheckCall(utilities->Initialize(), utilities.Get(), L"Initialising the package manager");
}

ManagerSession::~ManagerSession()
{
    if (utilities) utilities->Terminate();
}

PackageKind ManagerSession::Kind() const
{
    if (manager) return PackageKind::kProperty11;
    return system ? PackageKind::kProperty10 : PackageKind::kReaction;
}

std::wstring ManagerSession::Name() const
{
    const ComPtr<ICapeIdentification> identification = Optional<ICapeIdentification>(object.Get());
    if (!identification) return {};
    _bstr_t name;
    CheckCall(identification->get_ComponentName(name.GetAddress()), identification.Get(), L"get_ComponentName");
    return std::wstring(TextOf(name.GetBSTR()));
}

std::vector<std::wstring> ManagerSession::Packages() const
{
    _variant_t names;
    if (manager) {
        CheckCall(manager->GetPropertyPackageList(&names), manager.Get(), L"GetPropertyPackageList");
    } else if (system) {
        CheckCall(system->GetPropertyPackages(&names), system.Get(), L"GetPropertyPackages");
    } else {
        CheckCall(reactions->GetListOfReactionsPackages(&names), reactions.Get(), L"GetListOfReactionsPackages");
    }
    return ReadStrings(names, L"package names");
}

ComPtr<IDispatch> ManagerSession::GetPackage(const std::wstring& name) const
{
    ComPtr<IDispatch> package;
    _bstr_t text = MakeBstr(name);
    if (manager) {
        CheckCall(manager->GetPropertyPackage(text.GetBSTR(), &package), manager.Get(), L"GetPropertyPackage");
    } else if (system) {
        CheckCall(system->ResolvePropertyPackage(text.GetBSTR(), &package), system.Get(), L"ResolvePropertyPackage");
    } else {
        CheckCall(reactions->ResolveReactionsPackage(text.GetBSTR(), &package), reactions.Get(),
                  L"ResolveReactionsPackage");
    }
    if (!package) throw CapeFailure(ECapeUnknownHR, L"The manager returns no package");
    return package;
}

ComPtr<IDispatch> CreateStandAlone(const Options& options)
{
    return CreateClass(ClassOf(options.className), options.inProcess, L"Creating the package");
}

PackageKind KindOf(IDispatch* package)
{
    if (Optional<ICapeThermoCompounds>(package)) return PackageKind::kProperty11;
    if (Optional<ICapeThermoPropertyPackage>(package)) return PackageKind::kProperty10;
    if (Optional<ICapeReactionChemistry>(package)) return PackageKind::kReaction;
    throw CapeFailure(E_NOINTERFACE, L"The class is not a package");
}

}  // namespace zelt::sample
