// What a reaction package is, apart from the interfaces through which it is reached: its reactions with their parameters,
// the material whose state they depend on, and the reaction object that takes the results. The interface parts of a
// package share one. Holds one reference on each of the two objects until they are replaced or Release is called.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "samples/component/package_host.h"
#include "samples/package/material_object_view.h"
#include "samples/package/material_view.h"
#include "samples/reactions/reaction.h"

namespace zelt::sample {

// A reaction of one package, with what its user may change. The parameters' values are in SI units.
class ReactionEntry {
public:
    explicit ReactionEntry(const Reaction& reaction);

    const Reaction& Definition() const { return reaction; }
    const ParameterSet& Parameters() const { return parameters; }

    // The laws as the user has set them. Throw CapeFailure for a reaction of the other kind, or one that is disabled.
    RateLaw Rate() const;
    std::vector<double> Orders() const;                   // one for each compound
    std::vector<double> EquilibriumCoefficients() const;  // of ln K
    // How far from the material's temperature the equilibrium is taken, K.
    double TemperatureApproach() const;

private:
    void Require(bool kinetic) const;

    const Reaction& reaction;
    ParameterSet parameters;
};

class ReactionModel {
public:
    explicit ReactionModel(const ReactionPackageDefinition& definition);

    const ReactionPackageDefinition& Definition() const { return definition; }
    PackageHost& Host() { return host; }
    const PackageHost& Host() const { return host; }
    const std::deque<ReactionEntry>& Reactions() const { return reactions; }
    // Throws CapeFailure ("invalid argument") for an id that the package does not know.
    const ReactionEntry& ReactionOf(std::wstring_view id) const;

    // The pressure for which equilibrium constants of gas reactions are asked for; none: as each is published.
    std::optional<double> StandardPressure() const;

    // Each throws CapeFailure and keeps what was set before when the object is not of its kind; null is refused.
    void SetMaterial(IDispatch* object, Generation generation);
    void UnsetMaterial();
    void SetReactionObject(IDispatch* object);
    // Gives back both objects.
    void Release();

    // Temperature, pressure and the fractions of these compounds in the material; a compound that the material lacks has
    // none. Throws CapeFailure ("bad order of calls") without a material.
    PhaseState StateOf(const Reaction& reaction) const;
    // Throws CapeFailure ("bad order of calls") without a reaction object.
    ICapeReactionProperties* ReactionObject() const;

private:
    const ReactionPackageDefinition& definition;
    PackageHost host;
    std::deque<ReactionEntry> reactions;
    std::optional<MaterialView> material;
    std::optional<MaterialObjectView> olderMaterial;
    Microsoft::WRL::ComPtr<ICapeReactionProperties> reactionObject;
};

}  // namespace zelt::sample
