// The mixer with heater: joins two streams, lowers the pressure and heats or cools the mixture, either with a given duty
// or to a given temperature. Takes power from an energy stream and writes the outlet temperature and the duty to an
// information stream. These two streams need not be connected.
//
//   outlet flow of each compound   = the sum over the inlets
//   outlet pressure                = the lowest pressure of the inlets with a flow - pressure drop
//   outlet enthalpy flow           = the sum over the inlets + energy stream + duty of the heater
//
// Kinetic and potential energy are ignored, as usual for such a unit.
#pragma once

#include "samples/units/classes.h"
#include "samples/units/unit_operation.h"

namespace zelt::sample {

class MixerHeaterModel final : public UnitModel {
public:
    static constexpr const wchar_t* kDescription = L"Joins two streams and heats or cools the mixture";

    MixerHeaterModel();

protected:
    std::wstring Objection() const override;
    std::vector<std::wstring> Run() override;

private:
    enum Port : std::size_t { kFirstInlet, kSecondInlet, kOutlet, kEnergy, kInformation };

    // The lowest pressure of the inlets whose pressure is known.
    std::optional<double> InletPressure() const;
    // Flashes the outlet at this enthalpy (J/mol): with the material's own flash, or by searching over temperatures.
    void FlashAtEnthalpy(const UnitStream& outlet, const Mixture& feed, const std::vector<std::wstring>& ids,
                         double pressure, double enthalpy) const;
};

using MixerHeater = UnitOperation<MixerHeaterModel, kMixerHeaterClass, PersistStreamInitPart, ReportPart>;

}  // namespace zelt::sample
