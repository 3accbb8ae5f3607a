#include "packages/package_kinds.h"

#include <cape-open.h>

#include <vector>

#include "packages/property_package_manager.h"
#include "packages/reaction_package_manager.h"
#include "packages/thermo_system.h"
#include "reactions/reaction_package_10.h"
#include "thermo/property_package_10.h"
#include "thermo/property_package_11.h"

namespace zelt {
namespace {

// A method of a foreign manager's interface as a function of the manager.
template <auto Method>
struct OfManager;
template <class I, class... P, HRESULT (STDMETHODCALLTYPE I::*Method)(P...)>
struct OfManager<Method> {
    static HRESULT Call(IUnknown* manager, P... values) { return (static_cast<I*>(manager)->*Method)(values...); }
};

template <class Proxy>
ProxyPtr NewProxy()
{
    return new Proxy;
}

}  // namespace

// The misspellings are intended: programs may rely on these exact texts.
const PackageFamily kPropertyPackages11 = {
    .type = L"PP 1.1",
    .logDescription = "CAPE-OPEN version 1.1 Physical Property Package",
    .managerClass = kPropertyPackageManagerClass,
    .name = kThisEdition[OwnClass::PropertyPackageManager].name,
    .description = L"Zeltora: Property Package Manager",
    .scope = L"GetPropertyPackage",
    .interfaceName = L"ICapeThermoPropertyPackageManager",
    .createManagerFailure = L"Failed to create property package manager: ",
    .initializeFailure = L"property package manager failed to initialize: ",
    .standAloneFailure = L"Failed to create stand-alone property package: ",
    .nullResult = L"NULL pointer is returned for property package",
    .removalPrompt = L"\r\nRemove from list of exported property packages?",
    .listedManagerFailure = L"Failed to create property package manager: ",
    .listedInitializeFailure = L"Failed to initialize property package manager: ",
    .listFailure = L"Failed to get a list of property packages from property package manager: ",
    .badList = L"Invalid list of property packages from property package manager: ",
    .foreignInterface = __uuidof(ICapeThermoPropertyPackageManager),
    .listForeignPackages = OfManager<&ICapeThermoPropertyPackageManager::GetPropertyPackageList>::Call,
    .getForeignPackage = OfManager<&ICapeThermoPropertyPackageManager::GetPropertyPackage>::Call,
    .newProxy = NewProxy<CPropertyPackage11>,
};

const PackageFamily kPropertyPackages10 = {
    .type = L"PP 1.0",
    .logDescription = "CAPE-OPEN version 1.0 Physical Property Package",
    .managerClass = kThermoSystemClass,
    .name = kThisEdition[OwnClass::ThermoSystem].name,
    .description = L"Zeltora: Thermo System",
    .scope = L"ResolvePropertyPackage",
    .interfaceName = L"ICapeThermoSystem",
    .createManagerFailure = L"Failed to create thermo system: ",
    .initializeFailure = L"thermo system failed to initialize: ",
    .standAloneFailure = L"Failed to create stand-alone property package: ",
    .nullResult = L"NULL pointer is returned for property package",
    .removalPrompt = L"\r\nRemove from list of exported property packages?",
    .listedManagerFailure = L"Failed to create thermo system: ",
    .listedInitializeFailure = L"Failed to initialize thermo system: ",
    .listFailure = L"Failed to get a list of property packages from thermo system: ",
    .badList = L"Invalid list of property packages from thermo system: ",
    .foreignInterface = __uuidof(ICapeThermoSystem),
    .listForeignPackages = OfManager<&ICapeThermoSystem::GetPropertyPackages>::Call,
    .getForeignPackage = OfManager<&ICapeThermoSystem::ResolvePropertyPackage>::Call,
    .newProxy = NewProxy<CPropertyPackage10>,
};

const PackageFamily kReactionPackages10 = {
    .type = L"RP 1.0",
    .logDescription = "CAPE-OPEN version 1.0 Reaction Package",
    .managerClass = kReactionPackageManagerClass,
    .name = kThisEdition[OwnClass::ReactionPackageManager].name,
    .description = L"Zeltora: Reacion Package Manager",
    .scope = L"ResolveReactionsPackage",
    .interfaceName = L"ICapeReactionsPackageManager",
    .createManagerFailure = L"Failed to create reaction package manager: ",
    .initializeFailure = L"reaction package manager failed to initialize: ",
    .standAloneFailure = L"Failed to create stand-alone reacion package: ",
    .nullResult = L"NULL pointer is returned for reaction package",
    .removalPrompt = L"\r\nRemove from list of exported packages?",
    .listedManagerFailure = L"Failed to create reaction package mananger: ",
    .listedInitializeFailure = L"Failed to initialize reaction package manager: ",
    .listFailure = L"Failed to get a list of reaction packages from reaction package manager: ",
    .badList = L"Invalid list of reaction packages from reaction package manager: ",
    .foreignInterface = __uuidof(ICapeReactionsPackageManager),
    .listForeignPackages = OfManager<&ICapeReactionsPackageManager::GetListOfReactionsPackages>::Call,
    .getForeignPackage = OfManager<&ICapeReactionsPackageManager::ResolveReactionsPackage>::Call,
    .newProxy = NewProxy<CReactionPackage10>,
};

namespace {

// clang-format off
const PackageKindRow kRows[] = {
    {PackageKind::PropertyPackage11FromManager,      L"{CF51E383-0110-4ed8-ACB7-B50CFDE6908E}", L"Property package managers (CAPE-OPEN 1.1)",     kPropertyPackages11},
    {PackageKind::PropertyPackage11StandAlone,       L"{CF51E384-0110-4ed8-ACB7-B50CFDE6908E}", L"Stand-alone property packages (CAPE-OPEN 1.1)", kPropertyPackages11},
    {PackageKind::PropertyPackage10FromThermoSystem, L"{678C09A3-7D66-11D2-A67D-00105A42887F}", L"Thermo systems (CAPE-OPEN 1.0)",                kPropertyPackages10},
    {PackageKind::PropertyPackage10StandAlone,       L"{678C09A4-7D66-11D2-A67D-00105A42887F}", L"Stand-alone property packages (CAPE-OPEN 1.0)", kPropertyPackages10},
    {PackageKind::ReactionPackage10FromManager,      L"{678C09AA-0100-11D2-A67D-00105A42887F}", L"Reaction package managers (CAPE-OPEN 1.0)",     kReactionPackages10},
    {PackageKind::ReactionPackage10StandAlone,       L"{678C09AB-0100-11D2-A67D-00105A42887F}", L"Stand-alone reaction packages (CAPE-OPEN 1.0)", kReactionPackages10},
};
// clang-format on

}  // namespace

std::span<const PackageKindRow> PackageKindRows() { return kRows; }

const PackageKindRow* FindPackageKind(PackageKind kind)
{
    for (const PackageKindRow& row : kRows) {
        if (row.kind == kind) return &row;
    }
    return nullptr;
}

const wchar_t* PackageType(PackageKind kind)
{
    const PackageKindRow* row = FindPackageKind(kind);
    return row ? row->family.type : L"";
}

FoundComponents FindPackageComponents(std::span<const PackageKindRow> kinds, const ClassSources& sources)
{
    std::vector<ComponentSearch> searches;
    for (const PackageKindRow& row : kinds) searches.push_back({row.category, row.family.managerClass});
    return FindComponents(searches, sources);
}

}  // namespace zelt
