#include "shell/add_package/package_kinds.h"

#include "shell/small_images.h"
#include "thermo/property_package_manager.h"
#include "thermo/reaction_package_manager.h"
#include "thermo/thermo_system.h"

namespace zelt {

std::span<const PackageKindRow> PackageKindRows()
{
    // clang-format off
    static const PackageKindRow rows[] = {
        {PackageKind::PropertyPackage11FromManager,      L"{CF51E383-0110-4ed8-ACB7-B50CFDE6908E}", kPropertyPackageManagerClass, L"Property package managers (CAPE-OPEN 1.1)",          kImagePropertyManager},
        {PackageKind::PropertyPackage11StandAlone,       L"{CF51E384-0110-4ed8-ACB7-B50CFDE6908E}", kPropertyPackageManagerClass, L"Stand-alone property packages (CAPE-OPEN 1.1)",      kImagePropertyPackage},
        {PackageKind::PropertyPackage10FromThermoSystem, L"{678C09A3-7D66-11D2-A67D-00105A42887F}", kThermoSystemClass,           L"Thermo systems (CAPE-OPEN 1.0)",                     kImagePropertyManager},
        {PackageKind::PropertyPackage10StandAlone,       L"{678C09A4-7D66-11D2-A67D-00105A42887F}", kThermoSystemClass,           L"Stand-alone property packages (CAPE-OPEN 1.0)",      kImagePropertyPackage},
        {PackageKind::ReactionPackage10FromManager,      L"{678C09AA-0100-11D2-A67D-00105A42887F}", kReactionPackageManagerClass, L"Reaction package managers (CAPE-OPEN 1.0)",          kImageReactionManager},
        {PackageKind::ReactionPackage10StandAlone,       L"{678C09AB-0100-11D2-A67D-00105A42887F}", kReactionPackageManagerClass, L"Stand-alone reaction packages (CAPE-OPEN 1.0)",      kImageReactionPackage},
    };
    // clang-format on
    return rows;
}

FoundComponents FindPackageComponents(std::span<const PackageKindRow> kinds, const ClassSources& sources)
{
    std::vector<ComponentSearch> searches;
    for (const PackageKindRow& row : kinds) searches.push_back({row.category, row.ownClass});
    return FindComponents(searches, sources);
}

}  // namespace zelt
