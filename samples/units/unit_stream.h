// A stream as a unit sees it: a material object connected to a port, whose properties and equilibrium the material itself
// calculates. Holds references as long as it lives. Every function throws CapeFailure, with the stream's name, when the
// material lacks an interface or a value, or refuses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "samples/package/material_view.h"
#include "samples/units/mixing.h"

namespace zelt::sample {

class UnitStream {
public:
    // The port's name is for failures.
    UnitStream(IDispatch* material, std::wstring_view portName);

    // All of the stream's state, its fractions in the order of `ids`. Each phase's enthalpy is calculated anew: what the
    // material may remember can belong to another state.
    StreamState State(const std::vector<std::wstring>& ids) const;
    std::vector<std::wstring> CompoundIds() const;

    // Makes this stream one of this flow, composition (in the order of `ids`) and pressure, at the temperature or the
    // enthalpy (J/mol) given, at equilibrium. Every phase of the material is a candidate.
    void FlashAtTemperature(const Mixture& content, const std::vector<std::wstring>& ids, double pressure,
                            double temperature) const;
    void FlashAtEnthalpy(const Mixture& content, const std::vector<std::wstring>& ids, double pressure,
                         double enthalpy) const;
    // Whether the material calculates the latter.
    bool OffersFlashAtEnthalpy() const;

    double Temperature() const;
    // J/mol, over all phases present.
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
