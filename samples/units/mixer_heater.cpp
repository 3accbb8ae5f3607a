#include "samples/units/mixer_heater.h"

#include <algorithm>
#include <cmath>

#include "samples/component/text.h"
#include "samples/thermo/compound.h"
#include "samples/thermo/root.h"
#include "samples/units/information.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kMode = L"Mode";
constexpr const wchar_t* kDutyMode = L"Duty";
constexpr const wchar_t* kTemperatureMode = L"Temperature";
constexpr const wchar_t* kDuty = L"Heat duty";
constexpr const wchar_t* kOutletTemperature = L"Outlet temperature";
constexpr const wchar_t* kPressureDrop = L"Pressure drop";
constexpr const wchar_t* kTemperatureLimits = L"Temperature limits";
constexpr const wchar_t* kOwnSearch = L"Search temperature";
constexpr const wchar_t* kIterations = L"Maximum iterations";

std::vector<PortDefinition> MixerHeaterPorts()
{
    return {{L"Inlet 1", L"First stream to mix", CAPE_MATERIAL, CAPE_INLET, true},
            {L"Inlet 2", L"Second stream to mix", CAPE_MATERIAL, CAPE_INLET, true},
            {L"Outlet", L"The heated mixture", CAPE_MATERIAL, CAPE_OUTLET, true},
            {L"Energy", L"Power that is added to the heater's duty", CAPE_ENERGY, CAPE_INLET, false},
            {L"Information", L"Receives the outlet temperature and the heater's duty", CAPE_INFORMATION, CAPE_OUTLET,
             false}};
}

std::vector<ParameterDefinition> MixerHeaterParameters()
{
    const Dimensionality pressure{-1, 1, -2, 0, 0, 0, 0, 0}, temperature{0, 0, 0, 0, 1, 0, 0, 0},
        power{2, 1, -3, 0, 0, 0, 0, 0};
    const RealSpecification lowest{kLowestTemperature, kLowestTemperature, kHighestTemperature, temperature};
    const RealSpecification highest{kHighestTemperature, kLowestTemperature, kHighestTemperature, temperature};
    return {
        {kPressureDrop, L"Below the lowest inlet pressure, Pa", RealSpecification{0, 0, 1e8, pressure}},
        {kMode, L"What is given: the heater's duty or the outlet temperature",
         OptionSpecification{kDutyMode, {kDutyMode, kTemperatureMode}, true}},
        {kDuty, L"Of the heater when it is given, W; negative to cool", RealSpecification{0, -1e9, 1e9, power}},
        {kOutletTemperature, L"When it is given, K",
         RealSpecification{350, kLowestTemperature, kHighestTemperature, temperature}},
        {kTemperatureLimits, L"An outlet outside these two temperatures is a failure, K",
         ArraySpecification{{lowest, highest}}},
        {kOwnSearch, L"Find the outlet temperature from the duty by the unit's own search, not by the material's flash",
         BooleanSpecification{false}},
        {kIterations, L"Of the unit's own search", IntegerSpecification{100, 1, 1000}},
    };
}

}  // namespace

MixerHeaterModel::MixerHeaterModel() : UnitModel(L"Mixer with heater", MixerHeaterPorts(), MixerHeaterParameters()) {}

std::optional<double> MixerHeaterModel::InletPressure() const
{
    const std::optional<double> first = KnownPressure(kFirstInlet), second = KnownPressure(kSecondInlet);
    if (first && second) return std::min(*first, *second);
    return first ? first : second;
}

std::wstring MixerHeaterModel::Objection() const
{
    const std::vector<double> limits = Values().Array(kTemperatureLimits);
    if (!(limits[0] < limits[1])) return L"The lower temperature limit is not below the upper one";
    const double temperature = Values().Real(kOutletTemperature);
    if (SameName(Values().Option(kMode), kTemperatureMode) && (temperature < limits[0] || temperature > limits[1])) {
        return L"The outlet temperature " + Quantity(temperature, L"K") + L" is outside the temperature limits";
    }
    const std::optional<double> pressure = InletPressure();
    const double drop = Values().Real(kPressureDrop);
    if (pressure && drop >= *pressure) {
        return L"The pressure drop " + Quantity(drop, L"Pa") + L" is not below the lowest inlet pressure, " +
               Quantity(*pressure, L"Pa");
    }
    return {};
}

void MixerHeaterModel::FlashAtEnthalpy(const UnitStream& outlet, const Mixture& feed,
                                       const std::vector<std::wstring>& ids, double pressure, double enthalpy) const
{
    if (!Values().Boolean(kOwnSearch) && outlet.OffersFlashAtEnthalpy()) {
        outlet.FlashAtEnthalpy(feed, ids, pressure, enthalpy);
        return;
    }
    const std::vector<double> limits = Values().Array(kTemperatureLimits);
    const auto excess = [&](double temperature) {
        outlet.FlashAtTemperature(feed, ids, pressure, temperature);
        return outlet.Enthalpy() - enthalpy;
    };
    const double temperature = FindRoot(excess, limits[0], limits[1],
                                        "no outlet temperature within the limits and the iterations has this enthalpy",
                                        Values().Integer(kIterations));
    // A pure compound boils at one temperature, where the enthalpy jumps: the search then ends at the jump
    // without reaching the given enthalpy.
    constexpr double kTolerance = 1e-3;  // J/mol; a heat of vaporisation is of the order of 1e4
    if (std::fabs(excess(temperature)) > kTolerance) {
        throw CapeFailure(ECapeSolvingErrorHR, L"The enthalpy jumps at " + Quantity(temperature, L"K") +
                                                   L"; the material's own flash is needed");
    }
}

std::vector<std::wstring> MixerHeaterModel::Run()
{
    const UnitStream outlet = Stream(kOutlet);
    const std::vector<std::wstring> ids = outlet.CompoundIds();
    const Mixture feed = Mix({{Stream(kFirstInlet).State(ids), Stream(kSecondInlet).State(ids)}});
    const double pressure = feed.pressure - Values().Real(kPressureDrop);
    const double power = Connected(kEnergy) ? PowerOf(Connected(kEnergy)) : 0;

    double duty = 0;
    if (SameName(Values().Option(kMode), kTemperatureMode)) {
        outlet.FlashAtTemperature(feed, ids, pressure, Values().Real(kOutletTemperature));
        duty = outlet.Enthalpy() * feed.flow - feed.enthalpyFlow - power;
    } else {
        duty = Values().Real(kDuty);
        FlashAtEnthalpy(outlet, feed, ids, pressure, (feed.enthalpyFlow + power + duty) / feed.flow);
    }
    const double temperature = outlet.Temperature();
    const std::vector<double> limits = Values().Array(kTemperatureLimits);
    if (!(temperature >= limits[0] && temperature <= limits[1])) {
        throw CapeFailure::OutOfBounds(L"outlet temperature", temperature, limits[0], limits[1]);
    }
    if (Connected(kInformation)) {
        Tell(Connected(kInformation), L"temperature", temperature);
        Tell(Connected(kInformation), L"duty", duty);
    }
    return {L"Outlet temperature: " + Quantity(temperature, L"K"),
            L"Outlet pressure: " + Quantity(pressure, L"Pa"),
            L"Outlet flow: " + Quantity(feed.flow, L"mol/s"),
            L"Enthalpy flow of the inlets: " + Quantity(feed.enthalpyFlow, L"W"),
            L"Power of the energy stream: " + Quantity(power, L"W"),
            L"Duty of the heater: " + Quantity(duty, L"W")};
}

}  // namespace zelt::sample
