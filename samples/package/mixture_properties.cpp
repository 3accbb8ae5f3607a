#include "samples/package/mixture_properties.h"

#include <cmath>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"

namespace zelt::sample {
namespace {

struct Suffix {
    Derivative derivative;
    const wchar_t* text;
};

constexpr Suffix kSuffixes[] = {
    {Derivative::kTemperature, L".Dtemperature"},
    {Derivative::kPressure, L".Dpressure"},
    {Derivative::kMoles, L".Dmoles"},
};

std::vector<double> Pick(const Property& property, Derivative derivative)
{
    switch (derivative) {
        case Derivative::kTemperature: return {property.dT};
        case Derivative::kPressure: return {property.dP};
        default: return {property.value};
    }
}

std::vector<double> Pick(CompoundProperties properties, Derivative derivative)
{
    switch (derivative) {
        case Derivative::kTemperature: return std::move(properties.dT);
        case Derivative::kPressure: return std::move(properties.dP);
        case Derivative::kMoles: return std::move(properties.dn);
        default: return std::move(properties.value);
    }
}

// The function for a row of kProperties, made from a member function of IdealSolution that returns a Property.
template <Property (IdealSolution::*Member)(Phase, double, double, std::span<const double>) const>
std::vector<double> Molar(const PhaseInput& in, Derivative derivative)
{
    return Pick((in.solution.*Member)(in.phase, in.temperature, in.pressure, in.fractions), derivative);
}

std::vector<double> CompressibilityFactor(const PhaseInput& in, Derivative derivative)
{
    const Property volume = in.solution.Volume(in.phase, in.temperature, in.pressure, in.fractions);
    const double scale = in.pressure / (kGasConstant * in.temperature);
    return Pick(Property{volume.value * scale, (volume.dT - volume.value / in.temperature) * scale,
                         (volume.dP + volume.value / in.pressure) * scale},
                derivative);
}

std::vector<double> FugacityCoefficient(const PhaseInput& in, Derivative derivative)
{
    return Pick(in.solution.FugacityCoefficient(in.phase, in.temperature, in.pressure), derivative);
}

std::vector<double> LogFugacityCoefficient(const PhaseInput& in, Derivative derivative)
{
    return Pick(in.solution.LogFugacityCoefficient(in.phase, in.temperature, in.pressure), derivative);
}

std::vector<double> Fugacity(const PhaseInput& in, Derivative derivative)
{
    return Pick(in.solution.Fugacity(in.phase, in.temperature, in.pressure, in.fractions), derivative);
}

// The temperature derivative of the enthalpy. The heat capacity has no derivatives of its own here, because IdealSolution gives
// first derivatives only.
std::vector<double> HeatCapacity(const PhaseInput& in, Derivative derivative)
{
    if (derivative != Derivative::kNone) {
        throw CapeFailure(ECapeLimitedImplHR, L"Derivatives of heatCapacityCp are not calculated");
    }
    return {in.solution.Enthalpy(in.phase, in.temperature, in.pressure, in.fractions).dT};
}

std::vector<double> MolecularWeight(const PhaseInput& in, Derivative derivative)
{
    return {derivative == Derivative::kNone ? in.solution.MolecularWeight(in.fractions) : 0.0};
}

// clang-format off
constexpr SinglePhaseProperty kProperties[] = {
    {L"compressibilityFactor",  L"",     false, CompressibilityFactor},
    {L"density",                L"mole", false, Molar<&IdealSolution::Density>},
    {L"enthalpy",               L"mole", false, Molar<&IdealSolution::Enthalpy>},
    {L"entropy",                L"mole", false, Molar<&IdealSolution::Entropy>},
    {L"fugacity",               L"",     true,  Fugacity},
    {L"fugacityCoefficient",    L"",     true,  FugacityCoefficient},
    {L"heatCapacityCp",         L"mole", false, HeatCapacity},
    {L"logFugacityCoefficient", L"",     true,  LogFugacityCoefficient},
    {L"molecularWeight",        L"",     false, MolecularWeight},
    {L"volume",                 L"mole", false, Molar<&IdealSolution::Volume>},
};
constexpr const wchar_t* kTwoPhaseProperties[] = {L"kvalue", L"logKvalue"};
// clang-format on

struct SplitName {
    std::wstring_view name;
    Derivative derivative;
    bool known;
};

SplitName Split(std::wstring_view name)
{
    const std::size_t dot = name.find(L'.');
    if (dot == std::wstring_view::npos) return {name, Derivative::kNone, true};
    for (const Suffix& suffix : kSuffixes) {
        if (SameName(name.substr(dot), suffix.text)) return {name.substr(0, dot), suffix.derivative, true};
    }
    return {name, Derivative::kNone, false};
}

bool Offers(const SinglePhaseProperty& property, Derivative derivative)
{
    if (property.calculate == HeatCapacity) return derivative == Derivative::kNone;
    return derivative != Derivative::kMoles || property.moles;
}

bool Find(std::wstring_view name, PropertyRequest& request)
{
    const SplitName split = Split(name);
    for (const SinglePhaseProperty& property : kProperties) {
        if (!split.known || !SameName(property.name, split.name) || !Offers(property, split.derivative)) continue;
        request = {&property, split.derivative};
        return true;
    }
    return false;
}

}  // namespace

std::vector<std::wstring> SinglePhasePropertyNames()
{
    std::vector<std::wstring> names;
    for (const SinglePhaseProperty& property : kProperties) {
        names.emplace_back(property.name);
        for (const Suffix& suffix : kSuffixes) {
            if (Offers(property, suffix.derivative)) names.push_back(std::wstring(property.name) + suffix.text);
        }
    }
    return names;
}

bool IsSinglePhaseProperty(std::wstring_view name)
{
    PropertyRequest request{};
    return Find(name, request);
}

PropertyRequest FindSinglePhaseProperty(std::wstring_view name)
{
    PropertyRequest request{};
    if (!Find(name, request)) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The single-phase property " + Quoted(name) + L" is not calculated");
    }
    return request;
}

std::vector<std::wstring> TwoPhasePropertyNames()
{
    std::vector<std::wstring> names;
    for (const wchar_t* name : kTwoPhaseProperties) {
        names.emplace_back(name);
        for (const Suffix& suffix : kSuffixes) {
            if (suffix.derivative != Derivative::kMoles) names.push_back(std::wstring(name) + suffix.text);
        }
    }
    return names;
}

bool IsTwoPhaseProperty(std::wstring_view name)
{
    const SplitName split = Split(name);
    if (!split.known || split.derivative == Derivative::kMoles) return false;
    return SameName(split.name, kTwoPhaseProperties[0]) || SameName(split.name, kTwoPhaseProperties[1]);
}

std::vector<double> CalculateTwoPhaseProperty(std::wstring_view name, const IdealSolution& solution, double temperature,
                                              double pressure, bool vapourFirst)
{
    if (!IsTwoPhaseProperty(name)) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The two-phase property " + Quoted(name) + L" is not calculated");
    }
    const SplitName split = Split(name);
    CompoundProperties k = solution.LogFugacityCoefficient(Phase::kLiquid, temperature, pressure);
    const bool logarithm = SameName(split.name, kTwoPhaseProperties[1]);
    for (std::size_t i = 0; i < k.value.size(); ++i) {
        // In the other order, the K-value is the reciprocal and its logarithm the negative.
        const double sign = vapourFirst ? 1 : -1;
        const double value = logarithm ? sign * k.value[i] : std::exp(sign * k.value[i]);
        const double chain = logarithm ? sign : sign * value;
        k.value[i] = value;
        k.dT[i] *= chain;
        k.dP[i] *= chain;
    }
    return Pick(std::move(k), split.derivative);
}

}  // namespace zelt::sample
