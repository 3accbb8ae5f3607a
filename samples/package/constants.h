// The tables behind ICapeThermoCompounds and ICapeThermoUniversalConstant: the standard's names, each with its value or the
// function that gives it. Values are in SI units, except the molecular weight: the standard's is relative, numerically g/mol.
#pragma once

#include <comutil.h>

#include <span>
#include <string_view>

#include "samples/thermo/compound.h"

namespace zelt::sample {

struct CompoundConstant {
    const wchar_t* name;
    _variant_t (*value)(const Compound& compound);
};
std::span<const CompoundConstant> CompoundConstants();

// A function of temperature (K) or of pressure (Pa).
struct CompoundFunction {
    const wchar_t* name;
    double (*value)(const Compound& compound, double variable);
};
std::span<const CompoundFunction> TemperatureFunctions();
std::span<const CompoundFunction> PressureFunctions();

struct UniversalConstant {
    const wchar_t* name;
    double value;
};
std::span<const UniversalConstant> UniversalConstants();

// The row with this name, compared without regard to case. Throws CapeFailure ("invalid argument") if there is none.
const CompoundConstant& FindConstant(std::wstring_view name);
const CompoundFunction& FindFunction(std::span<const CompoundFunction> table, std::wstring_view name);
const UniversalConstant& FindUniversalConstant(std::wstring_view name);

}  // namespace zelt::sample
