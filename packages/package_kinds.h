// The six kinds of packages, a row each: packages of three families, each of them inside a manager component or a component of
// its own.
#pragma once

#include <span>

#include "packages/exported_package.h"
#include "packages/package_family.h"
#include "system/component_scan.h"

namespace zelt {

extern const PackageFamily kPropertyPackages11;
extern const PackageFamily kPropertyPackages10;
extern const PackageFamily kReactionPackages10;

struct PackageKindRow {
    PackageKind kind;
    const wchar_t* category;  // the components of this kind are registered under it
    const wchar_t* heading;   // over the components of this kind
    const PackageFamily& family;
};

// In the order of PackageKind.
std::span<const PackageKindRow> PackageKindRows();

// The row of a kind; null for a number that is none.
const PackageKindRow* FindPackageKind(PackageKind kind);

// "PP 1.1", "PP 1.0" or "RP 1.0": which of this program's managers serves packages of the kind.
const wchar_t* PackageType(PackageKind kind);

// The component is a manager, and its packages are what can be exported.
constexpr bool IsManager(PackageKind kind) { return static_cast<unsigned>(kind) % 2 == 0; }

constexpr bool IsReactionPackage(PackageKind kind) { return kind >= PackageKind::ReactionPackage10FromManager; }

// The installed components of each kind, a list each, but for this program's own: exporting its packages once more would never
// end.
FoundComponents FindPackageComponents(std::span<const PackageKindRow> kinds,
                                      const ClassSources& sources = InstalledClasses());

}  // namespace zelt
