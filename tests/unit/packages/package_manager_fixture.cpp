#include "packages/package_manager_fixture.h"

#include "log/log_location.h"
#include "packages/property_package_manager.h"
#include "packages/reaction_package_manager.h"
#include "packages/thermo_system.h"

namespace zelt::test {
namespace {

template <class I, HRESULT (STDMETHODCALLTYPE I::*method)(VARIANT*)>
HRESULT ListWith(IUnknown* manager, VARIANT* names)
{
    return (static_cast<I*>(manager)->*method)(names);
}
template <class I, HRESULT (STDMETHODCALLTYPE I::*method)(BSTR, IDispatch**)>
HRESULT GetWith(IUnknown* manager, BSTR name, IDispatch** package)
{
    return (static_cast<I*>(manager)->*method)(name, package);
}

}  // namespace

// The end of each manager's name; in ZELT64, it says which packages the manager serves.
#ifdef _WIN64
#define ZELT_WIDTH L" (64-bit packages)"
#else
#define ZELT_WIDTH L""
#endif

const std::array<ManagerUnderTest, 3> kManagers = {{
    {"ThermoSystem", CreateThermoSystem, __uuidof(ICapeThermoSystem),
     ListWith<ICapeThermoSystem, &ICapeThermoSystem::GetPropertyPackages>,
     GetWith<ICapeThermoSystem, &ICapeThermoSystem::ResolvePropertyPackage>,
     PackageKind::PropertyPackage10FromThermoSystem, PackageKind::PropertyPackage10StandAlone,
     PackageKind::PropertyPackage11StandAlone, L"ResolvePropertyPackage", L"ICapeThermoSystem",
     L"Failed to create thermo system: ", L"thermo system failed to initialize: ",
     L"Failed to create stand-alone property package: ", L"NULL pointer is returned for property package",
     L"\r\nRemove from list of exported property packages?", "CAPE-OPEN version 1.0 Physical Property Package",
     L"ZELT Thermo System (CAPE-OPEN 1.0)" ZELT_WIDTH, L"Zeltora: Thermo System"},
    {"PropertyPackageManager", CreatePropertyPackageManager, __uuidof(ICapeThermoPropertyPackageManager),
     ListWith<ICapeThermoPropertyPackageManager, &ICapeThermoPropertyPackageManager::GetPropertyPackageList>,
     GetWith<ICapeThermoPropertyPackageManager, &ICapeThermoPropertyPackageManager::GetPropertyPackage>,
     PackageKind::PropertyPackage11FromManager, PackageKind::PropertyPackage11StandAlone,
     PackageKind::PropertyPackage10StandAlone, L"GetPropertyPackage", L"ICapeThermoPropertyPackageManager",
     L"Failed to create property package manager: ", L"property package manager failed to initialize: ",
     L"Failed to create stand-alone property package: ", L"NULL pointer is returned for property package",
     L"\r\nRemove from list of exported property packages?", "CAPE-OPEN version 1.1 Physical Property Package",
     L"ZELT Property Package Manager (CAPE-OPEN 1.1)" ZELT_WIDTH, L"Zeltora: Property Package Manager"},
    {"ReactionPackageManager", CreateReactionPackageManager, __uuidof(ICapeReactionsPackageManager),
     ListWith<ICapeReactionsPackageManager, &ICapeReactionsPackageManager::GetListOfReactionsPackages>,
     GetWith<ICapeReactionsPackageManager, &ICapeReactionsPackageManager::ResolveReactionsPackage>,
     PackageKind::ReactionPackage10FromManager, PackageKind::ReactionPackage10StandAlone,
     PackageKind::PropertyPackage11FromManager, L"ResolveReactionsPackage", L"ICapeReactionsPackageManager",
     L"Failed to create reaction package manager: ", L"reaction package manager failed to initialize: ",
     L"Failed to create stand-alone reacion package: ", L"NULL pointer is returned for reaction package",
     L"\r\nRemove from list of exported packages?", "CAPE-OPEN version 1.0 Reaction Package",
     L"ZELT Reaction Package Manager (CAPE-OPEN 1.0)" ZELT_WIDTH, L"Zeltora: Reacion Package Manager"},
}};

void PlaceLogsAt(const std::wstring& path)
{
    logPath = path;
    static const LogSurroundings surroundings = {
        [] {
            SYSTEMTIME now;
            GetLocalTime(&now);
            return now;
        },
        [](std::wstring&) { return false; },
        [](const std::wstring& title, std::wstring& chosen) {
            logTitle = title;
            chosen = logPath;
            return !logPath.empty();
        },
    };
    SetLogSurroundings(&surroundings);
}

}  // namespace zelt::test
