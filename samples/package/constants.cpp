#include "samples/package/constants.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

// clang-format off
const CompoundConstant kConstants[] = {
    {L"acentricFactor",                          [](const Compound& c) { return _variant_t(c.acentricFactor); }},
    {L"casRegistryNumber",                       [](const Compound& c) { return MakeText(c.casNumber); }},
    {L"chemicalFormula",                         [](const Compound& c) { return MakeText(c.formula); }},
    {L"criticalPressure",                        [](const Compound& c) { return _variant_t(c.criticalPressure); }},
    {L"criticalTemperature",                     [](const Compound& c) { return _variant_t(c.criticalTemperature); }},
    {L"criticalVolume",                          [](const Compound& c) { return _variant_t(c.criticalVolume); }},
    {L"criticalCompressibilityFactor",           [](const Compound& c) {
         return _variant_t(c.criticalPressure * c.criticalVolume / (kGasConstant * c.criticalTemperature)); }},
    {L"heatOfVaporizationAtNormalBoilingPoint",  [](const Compound& c) {
         return _variant_t(HeatOfVaporisation(c, c.normalBoilingPoint).value); }},
    {L"iupacName",                               [](const Compound& c) { return MakeText(c.iupacName); }},
    {L"liquidDensityAt25C",                      [](const Compound& c) {
         return _variant_t(1 / LiquidVolume(c, 298.15).value); }},
    {L"molecularWeight",                         [](const Compound& c) { return _variant_t(c.molecularWeight); }},
    {L"normalBoilingPoint",                      [](const Compound& c) { return _variant_t(c.normalBoilingPoint); }},
    {L"SMILESformula",                           [](const Compound& c) { return MakeText(c.smiles); }},
};

const CompoundFunction kTemperatureFunctions[] = {
    {L"heatOfVaporization",   [](const Compound& c, double t) { return HeatOfVaporisation(c, t).value; }},
    {L"idealGasEnthalpy",     IdealGasEnthalpy},
    {L"idealGasEntropy",      IdealGasEntropy},
    {L"idealGasHeatCapacity", IdealGasHeatCapacity},
    {L"vaporPressure",        VapourPressure},
    {L"volumeOfLiquid",       [](const Compound& c, double t) { return LiquidVolume(c, t).value; }},
};

const CompoundFunction kPressureFunctions[] = {
    {L"boilingPointTemperature", SaturationTemperature},
};

constexpr UniversalConstant kUniversalConstants[] = {
    {L"avogadroConstant",             6.02214076e23},     // 1/mol
    {L"boltzmannConstant",            1.380649e-23},      // J/K
    {L"idealGasStateReferencePressure", kReferencePressure},
    {L"molarGasConstant",             kGasConstant},      // J/(mol K)
    {L"speedOfLightInVacuum",         299792458.0},       // m/s
    {L"standardAccelerationOfGravity", 9.80665},          // m/s2
};
// clang-format on

template <class Row>
const Row& FindRow(std::span<const Row> table, std::wstring_view name, const wchar_t* kind)
{
    for (const Row& row : table) {
        if (SameName(row.name, name)) return row;
    }
    throw CapeFailure(ECapeInvalidArgumentHR, L"There is no " + std::wstring(kind) + L" " + Quoted(name));
}

}  // namespace

std::span<const CompoundConstant> CompoundConstants() { return kConstants; }
std::span<const CompoundFunction> TemperatureFunctions() { return kTemperatureFunctions; }
std::span<const CompoundFunction> PressureFunctions() { return kPressureFunctions; }
std::span<const UniversalConstant> UniversalConstants() { return kUniversalConstants; }

const CompoundConstant& FindConstant(std::wstring_view name)
{
    return FindRow(CompoundConstants(), name, L"compound constant");
}

const CompoundFunction& FindFunction(std::span<const CompoundFunction> table, std::wstring_view name)
{
    return FindRow(table, name, L"compound property");
}

const UniversalConstant& FindUniversalConstant(std::wstring_view name)
{
    return FindRow(UniversalConstants(), name, L"universal constant");
}

}  // namespace zelt::sample
