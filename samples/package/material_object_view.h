// A CAPE-OPEN 1.0 material object as a package sees it: ICapeThermoMaterialObject with C++ values instead of VARIANTs.
// Holds one reference. Every function throws CapeFailure with the material's own code and description when the material
// refuses.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <span>
#include <string>
#include <vector>

#include "samples/package/material_view.h"

namespace zelt::sample {

class MaterialObjectView {
public:
    // Throws CapeFailure when the object lacks the standard's material interface.
    explicit MaterialObjectView(IDispatch* object);

    std::vector<std::wstring> CompoundIds() const;
    // The phases currently present in the material.
    std::vector<std::wstring> PhaseIds() const;

    // Temperature and pressure are those of the whole material: CAPE-OPEN 1.0 has none for single phases.
    PhaseState StateOf(const std::wstring& phase) const;
    // One value of a mixture, such as the phase fraction of a phase.
    double Single(const wchar_t* property, const std::wstring& phase, const wchar_t* basis) const;
    std::vector<double> Fractions(const std::wstring& phase) const;

    void Set(const wchar_t* property, const std::wstring& phase, const wchar_t* calcType, const wchar_t* basis,
             std::span<const double> values) const;

private:
    std::vector<double> Get(const wchar_t* property, const std::wstring& phase, const wchar_t* calcType,
                            const wchar_t* basis) const;

    Microsoft::WRL::ComPtr<ICapeThermoMaterialObject> material;
};

}  // namespace zelt::sample
