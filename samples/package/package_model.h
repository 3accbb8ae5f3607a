// What a property package is, apart from the interfaces through which it is reached: its name, its compounds in order,
// the model, and the material that calculations read and write. The interface parts of a package share one.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "samples/component/package_host.h"
#include "samples/package/material_view.h"
#include "samples/thermo/flash.h"
#include "samples/thermo/ideal_solution.h"

namespace zelt::sample {

struct PackageDefinition {
    const wchar_t* name;
    const wchar_t* description;
    std::initializer_list<const wchar_t*> compounds;
};

// The packages that the sample offers.
std::span<const PackageDefinition> AllPackages();
// Compared without regard to case; null when there is none.
const PackageDefinition* FindPackage(std::wstring_view name);

struct PhaseDefinition {
    Phase phase;
    const wchar_t* label;
    const wchar_t* stateOfAggregation;
    const wchar_t* densityDescription;
    const wchar_t* userDescription;
};
std::span<const PhaseDefinition> AllPhases();
// Throws CapeFailure ("invalid argument") for a label that the package does not know.
const PhaseDefinition& PhaseOf(std::wstring_view label);

// The standard's word for "all of the stream, whatever its phases".
inline constexpr std::wstring_view kOverall = L"Overall";

class PackageModel {
public:
    explicit PackageModel(const PackageDefinition& definition);

    const PackageDefinition& Definition() const { return definition; }
    PackageHost& Host() { return host; }
    const PackageHost& Host() const { return host; }
    std::span<const Compound* const> Compounds() const { return compounds; }
    // The package's compounds in the package's order.
    const IdealSolution& Solution() const { return solution; }

    // Ids of compounds to compounds; an empty list is all of them. Throws CapeFailure for an unknown id.
    std::vector<const Compound*> Select(std::span<const std::wstring> ids) const;

    // The phases that may form, of those that a calculation allows: the user's parameter restricts them. Throws
    // CapeFailure when nothing is left.
    AllowedPhases Restrict(AllowedPhases allowed) const;
    // PackageHost::CheckTemplate for this package's compounds.
    void CheckTemplate(Generation generation);

    // Makes a material the active one. Its compounds may be any of the package's, in any order: from here on
    // MaterialSolution follows that order. Throws CapeFailure and keeps the former material when it does not fit.
    void SetMaterial(IDispatch* object);
    void UnsetMaterial();

    bool HasMaterial() const { return static_cast<bool>(material); }

    // The active material and the model in its order. Throw CapeFailure ("bad order of calls") without one.
    const MaterialView& Material() const;
    const IdealSolution& MaterialSolution() const;

private:
    void RequireMaterial() const;

    const PackageDefinition& definition;
    PackageHost host;
    std::vector<const Compound*> compounds;
    IdealSolution solution;
    MaterialView material;
    IdealSolution materialSolution;
};

}  // namespace zelt::sample
