// How the simulator reads and writes its own material objects: through the standard's interface, as components do. The
// functions that take a material throw CapeFailure when it refuses.
#pragma once

#include <cape-open.h>

#include <span>
#include <string>
#include <vector>

#include "samples/material/slate.h"

namespace zelt::sample {

// The labels of all phases.
std::vector<std::wstring> Labels(const Slate& slate);
// The label of the first phase with this state of aggregation. Throws CapeFailure if there is none.
std::wstring LabelOf(const Slate& slate, const wchar_t* stateOfAggregation);

void SetOverall(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis,
                std::span<const double> values);
std::vector<double> GetOverallList(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis);
// A property with one value.
double GetOverall(ICapeThermoMaterial* material, const wchar_t* property, const wchar_t* basis);
std::vector<double> GetSinglePhase(ICapeThermoMaterial* material, const wchar_t* property, const std::wstring& label,
                                   const wchar_t* basis);
// Makes these phases the present ones, with unknown status.
void SetPhases(ICapeThermoMaterial* material, std::span<const std::wstring> labels);
bool IsPresent(ICapeThermoMaterial* material, const std::wstring& label);

}  // namespace zelt::sample
