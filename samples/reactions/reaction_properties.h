// The properties that CalcReactionProp offers, by name, each with one value for each reaction. They are pure functions of
// the reaction, its parameters, the state of the phase and the standard pressure.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "samples/package/material_view.h"
#include "samples/reactions/reaction_model.h"

namespace zelt::sample {

struct ReactionInput {
    const ReactionEntry& reaction;
    const PhaseState& state;                 // fractions in the order of the reaction's compounds
    std::optional<double> standardPressure;  // Pa; none: as published
};

struct ReactionProperty {
    const wchar_t* name;
    double (*calculate)(const ReactionInput& input);
};

// reactionRate, mol/(m3 s), of the base reactant's consumption, for an ideal gas; rateConstant, in SI units;
// chemicalEquilibriumConstant; reactionQuotient, of partial pressures; enthalpyOfReaction, J/mol. reactionRate and
// chemicalEquilibriumConstant also with ".Dtemperature", at constant pressure and composition.
std::vector<std::wstring> ReactionPropertyNames();
// Throws CapeFailure ("invalid argument") for a name that is not offered.
const ReactionProperty& FindReactionProperty(std::wstring_view name);

}  // namespace zelt::sample
