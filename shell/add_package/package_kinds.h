// What tells the six kinds of packages apart where one is chosen: a row each.
#pragma once

#include <span>
#include <vector>

#include "core/component_scan.h"
#include "shell/exported_package.h"

namespace zelt {

struct PackageKindRow {
    PackageKind kind;
    const wchar_t* category;  // the components of this kind are registered under it
    const CLSID& ownClass;    // exporting this program's own packages once more would never end
    const wchar_t* heading;
    int image;
};

// In the order of PackageKind.
std::span<const PackageKindRow> PackageKindRows();

// The installed components of each kind, a list each, but for this program's own.
FoundComponents FindPackageComponents(std::span<const PackageKindRow> kinds,
                                      const ClassSources& sources = InstalledClasses());

// The component is a manager, and its packages are what can be exported.
constexpr bool IsManager(PackageKind kind) { return static_cast<unsigned>(kind) % 2 == 0; }

}  // namespace zelt
