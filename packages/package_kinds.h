// The six kinds of packages, one row each: packages of three families, in each family either inside a manager component or
// stand-alone.
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

// The row of a kind; null for a number that is no kind.
const PackageKindRow* FindPackageKind(PackageKind kind);

// "PP 1.1", "PP 1.0" or "RP 1.0": which of this program's managers serves packages of the kind.
const wchar_t* PackageType(PackageKind kind);

// Whether a component of this kind is a manager, so that its packages are exported and not the component itself.
constexpr bool IsManager(PackageKind kind) { return static_cast<unsigned>(kind) % 2 == 0; }

constexpr bool IsReactionPackage(PackageKind kind) { return kind >= PackageKind::ReactionPackage10FromManager; }

// The installed components, one list per kind, except this program's own: their packages are exported already.
FoundComponents FindPackageComponents(std::span<const PackageKindRow> kinds,
                                      const ClassSources& sources = InstalledClasses());

}  // namespace zelt
