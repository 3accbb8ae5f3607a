#include "samples/reactions/reaction_properties.h"

#include <cmath>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"

namespace zelt::sample {
namespace {

// A compound's partial pressure (Pa) or concentration (mol/m3) in an ideal gas.
double ConcentrationOf(const ReactionInput& in, std::size_t index)
{
    const double partialPressure = in.state.fractions[index] * in.state.pressure;
    return in.reaction.Definition().basis == ConcentrationBasis::kPartialPressure
               ? partialPressure
               : partialPressure / (kGasConstant * in.state.temperature);
}

WithSlope Rate(const ReactionInput& in)
{
    WithSlope rate = RateConstant(in.reaction.Rate(), in.state.temperature);
    const std::vector<double> orders = in.reaction.Orders();
    double product = 1, sum = 0;
    for (std::size_t i = 0; i < orders.size(); ++i) {
        if (orders[i] == 0) continue;
        product *= std::pow(ConcentrationOf(in, i), orders[i]);
        sum += orders[i];
    }
    rate.value *= product;
    rate.dT *= product;
    // A concentration falls as the gas expands; a partial pressure does not.
    if (in.reaction.Definition().basis == ConcentrationBasis::kMolarity)
        rate.dT -= rate.value * sum / in.state.temperature;
    return rate;
}

double EquilibriumTemperature(const ReactionInput& in)
{
    return in.state.temperature + in.reaction.TemperatureApproach();
}

double StandardPressureOf(const ReactionInput& in)
{
    return in.standardPressure.value_or(in.reaction.Definition().equilibrium.standardPressure);
}

WithSlope EquilibriumConstant(const ReactionInput& in)
{
    const Reaction& reaction = in.reaction.Definition();
    WithSlope logarithm = LogEquilibriumConstant(in.reaction.EquilibriumCoefficients(), EquilibriumTemperature(in));
    const double published = reaction.equilibrium.standardPressure;
    // Another standard pressure multiplies each activity by published / chosen, and K by this ratio to the power of the
    // mole change.
    if (published > 0) logarithm.value += reaction.MoleChange() * std::log(published / StandardPressureOf(in));
    const double value = std::exp(logarithm.value);
    return {value, value * logarithm.dT};
}

double Quotient(const ReactionInput& in)
{
    const Reaction& reaction = in.reaction.Definition();
    // Called only for its checks: a kinetic or disabled reaction fails here as in EquilibriumConstant.
    in.reaction.EquilibriumCoefficients();
    if (reaction.basis != ConcentrationBasis::kPartialPressure) {
        throw CapeFailure(ECapeLimitedImplHR,
                          L"The activities of reaction " + Quoted(reaction.id) + L" are not modelled");
    }
    double quotient = 1;
    for (std::size_t i = 0; i < reaction.compounds.size(); ++i) {
        quotient *= std::pow(ConcentrationOf(in, i) / StandardPressureOf(in), reaction.compounds[i].coefficient);
    }
    return quotient;
}

// clang-format off
constexpr ReactionProperty kProperties[] = {
    {L"reactionRate",                             [](const ReactionInput& in) { return Rate(in).value; }},
    {L"reactionRate.Dtemperature",                [](const ReactionInput& in) { return Rate(in).dT; }},
    {L"rateConstant",                             [](const ReactionInput& in) {
         return RateConstant(in.reaction.Rate(), in.state.temperature).value; }},
    {L"chemicalEquilibriumConstant",              [](const ReactionInput& in) { return EquilibriumConstant(in).value; }},
    {L"chemicalEquilibriumConstant.Dtemperature", [](const ReactionInput& in) { return EquilibriumConstant(in).dT; }},
    {L"reactionQuotient",                         Quotient},
    {L"enthalpyOfReaction",                       [](const ReactionInput& in) {
         return EnthalpyOfReaction(in.reaction.EquilibriumCoefficients(), EquilibriumTemperature(in)); }},
};
// clang-format on

}  // namespace

std::vector<std::wstring> ReactionPropertyNames()
{
    std::vector<std::wstring> names;
    for (const ReactionProperty& property : kProperties) names.emplace_back(property.name);
    return names;
}

const ReactionProperty& FindReactionProperty(std::wstring_view name)
{
    for (const ReactionProperty& property : kProperties) {
        if (SameName(property.name, name)) return property;
    }
    throw CapeFailure(ECapeInvalidArgumentHR, L"The reaction property " + Quoted(name) + L" is not calculated");
}

}  // namespace zelt::sample
