// A stream as a unit sees it: a material object that is connected to a port and calculates its own properties and
// equilibrium. Holds references while it exists. Every function but OffersFlashAtEnthalpy throws CapeFailure, with the
// stream's name, when the material lacks an interface or a value, or refuses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "samples/package/material_view.h"
#include "samples/units/mixing.h"

namespace zelt::sample {

class UnitStream {
public:
    // The port's name is for error messages.
    UnitStream(IDispatch* material, std::wstring_view portName);

    // The stream's complete state, with fractions in the order of `ids`. Calculates the phases' enthalpies again,
    // because the values in the material may belong to an earlier state; without flow, the enthalpy is 0.
    StreamState State(const std::vector<std::wstring>& ids) const;
    std::vector<std::wstring> CompoundIds() const;

    // Gives the stream this flow, composition (in the order of `ids`) and pressure, at equilibrium at the given
    // temperature or enthalpy (J/mol). Every phase of the material is a candidate.
    void FlashAtTemperature(const Mixture& content, const std::vector<std::wstring>& ids, double pressure,
                            double temperature) const;
    void FlashAtEnthalpy(const Mixture& content, const std::vector<std::wstring>& ids, double pressure,
                         double enthalpy) const;
    // Whether the material can calculate flashes at given pressure and enthalpy; false if the call fails.
    bool OffersFlashAtEnthalpy() const;

    double Temperature() const;
    // In J/mol, over all present phases, calculated again.
    double Enthalpy() const;

private:
    double EnthalpyOfPhases() const;
    void SetContent(const Mixture& content, const std::vector<std::wstring>& ids, double pressure) const;
    void Flash(std::initializer_list<const wchar_t*> specification1,
               std::initializer_list<const wchar_t*> specification2) const;

    std::wstring name;
    MaterialView material;
    Microsoft::WRL::ComPtr<ICapeThermoPhases> phases;
    Microsoft::WRL::ComPtr<ICapeThermoPropertyRoutine> properties;
    Microsoft::WRL::ComPtr<ICapeThermoEquilibriumRoutine> equilibrium;
};

}  // namespace zelt::sample
