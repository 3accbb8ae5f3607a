// A material object as the package sees it: ICapeThermoMaterial with C++ values instead of VARIANTs. Holds references to the
// material. A read or write throws CapeFailure with the material's own code and description when the material refuses.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <span>
#include <string>
#include <vector>

namespace zelt::sample {

struct PhaseState {
    double temperature;             // K
    double pressure;                // Pa
    std::vector<double> fractions;  // mol/mol, in the material's order of compounds
};

class MaterialView {
public:
    MaterialView() = default;
    // Throws CapeFailure when the object lacks the standard's material interface.
    explicit MaterialView(IDispatch* object);

    explicit operator bool() const { return material != nullptr; }

    // The ids of the material's compounds, in its order; empty when it does not list them.
    std::vector<std::wstring> CompoundIds() const;
    std::vector<std::wstring> PresentPhases() const;
    PhaseState StateOf(const std::wstring& phaseLabel) const;
    std::vector<double> OverallFractions() const;
    double Overall(const wchar_t* property, const wchar_t* basis) const;
    double SinglePhase(const wchar_t* property, const std::wstring& phaseLabel, const wchar_t* basis) const;

    void SetOverall(const wchar_t* property, const wchar_t* basis, std::span<const double> values) const;
    void SetSinglePhase(const wchar_t* property, const std::wstring& phaseLabel, const wchar_t* basis,
                        std::span<const double> values) const;
    void SetTwoPhase(const wchar_t* property, std::span<const std::wstring> phaseLabels, const wchar_t* basis,
                     std::span<const double> values) const;
    // Makes these phases the present ones, all with this status.
    void SetPresentPhases(std::span<const std::wstring> phaseLabels,
                          eCapePhaseStatus status = CAPE_ATEQUILIBRIUM) const;

private:
    Microsoft::WRL::ComPtr<ICapeThermoMaterial> material;
    Microsoft::WRL::ComPtr<ICapeThermoCompounds> compounds;
};

}  // namespace zelt::sample
