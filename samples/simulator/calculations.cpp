#include "samples/simulator/calculations.h"

#include <algorithm>
#include <cmath>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/constants.h"
#include "samples/simulator/material_access.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

// A table's head: the column of labels, then one column for each compound.
std::vector<std::wstring> CompoundColumns(const Slate& slate, const wchar_t* label)
{
    std::vector<std::wstring> columns = slate.CompoundIds();
    columns.insert(columns.begin(), label);
    return columns;
}

std::vector<double> EqualParts(const Slate& slate)
{
    return std::vector<double>(slate.compounds.size(), 1.0 / static_cast<double>(slate.compounds.size()));
}

// Makes every phase of the package a candidate, and flashes at the two specifications.
void Flash(const PackageSession& session, std::initializer_list<const wchar_t*> specification1,
           std::initializer_list<const wchar_t*> specification2)
{
    SetPhases(session.material.Get(), Labels(*session.slate));
    CheckCall(session.equilibrium->CalcEquilibrium(MakeStrings(specification1), MakeStrings(specification2),
                                                   MakeBstr(L"Unspecified").GetBSTR()),
              session.equilibrium.Get(), L"CalcEquilibrium");
}

// One row: temperature, pressure, vapour fraction and both compositions.
void EquilibriumRow(const PackageSession& session, Report& report, const std::wstring& name)
{
    ICapeThermoMaterial* material = session.material.Get();
    const std::wstring vapour = LabelOf(*session.slate, L"Vapor"), liquid = LabelOf(*session.slate, L"Liquid");
    std::vector<double> row{GetOverall(material, L"temperature", L""), GetOverall(material, L"pressure", L"")};
    const bool vapourPresent = IsPresent(material, vapour), liquidPresent = IsPresent(material, liquid);
    row.push_back(vapourPresent ? GetSinglePhase(material, L"phaseFraction", vapour, L"mole").at(0) : 0.0);
    for (const auto& [label, present] : {std::pair(vapour, vapourPresent), std::pair(liquid, liquidPresent)}) {
        const std::vector<double> absent(session.slate->compounds.size(), kNotANumber);
        const std::vector<double> fractions = present ? GetSinglePhase(material, L"fraction", label, L"mole") : absent;
        row.insert(row.end(), fractions.begin(), fractions.end());
    }
    report.Row(name, row);
}

std::vector<std::wstring> EquilibriumColumns(const Slate& slate)
{
    std::vector<std::wstring> columns{L"flash", L"T / K", L"P / Pa", L"vapour"};
    for (const wchar_t* prefix : {L"y ", L"x "}) {
        for (const SlateCompound& compound : slate.compounds) columns.push_back(prefix + compound.id);
    }
    return columns;
}

}  // namespace

void ShowLists(const PackageSession& session, Report& report, const Options& options)
{
    const Slate& slate = *session.slate;
    report.Heading("Compounds");
    for (const SlateCompound& compound : slate.compounds) {
        report.Line(compound.id + L": " + compound.name + L", " + compound.formula + L", CAS " + compound.casNumber);
    }

    std::vector<std::wstring> ids = slate.CompoundIds();
    report.Columns(CompoundColumns(slate, L"constant"));
    for (const wchar_t* name : {L"molecularWeight", L"normalBoilingPoint", L"criticalTemperature", L"criticalPressure",
                                L"criticalVolume", L"acentricFactor"}) {
        _variant_t values;
        CheckCall(session.compounds->GetCompoundConstant(MakeStrings({name}), MakeStrings(ids), &values),
                  session.compounds.Get(), L"GetCompoundConstant");
        report.Row(name, ReadDoubles(values, L"propVals"));
    }
    for (const std::wstring& id : options.constants) {
        _variant_t values;
        CheckCall(session.compounds->GetCompoundConstant(MakeStrings({L"molecularWeight"}), MakeStrings({id.c_str()}),
                                                         &values),
                  session.compounds.Get(), L"GetCompoundConstant");
        report.Row(id, ReadDoubles(values, L"propVals"));
    }

    _variant_t functions;
    CheckCall(session.compounds->GetTDependentPropList(&functions), session.compounds.Get(), L"GetTDependentPropList");
    for (const std::wstring& name : ReadStrings(functions, L"props")) {
        _variant_t values;
        CheckCall(session.compounds->GetTDependentProperty(MakeStrings({name.c_str()}), 320, MakeStrings(ids), &values),
                  session.compounds.Get(), L"GetTDependentProperty");
        report.Row(name + L" (320 K)", ReadDoubles(values, L"propVals"));
    }

    report.Heading("Phases");
    for (const SlatePhase& phase : slate.phases) report.Line(phase.label + L": " + phase.stateOfAggregation);

    if (!session.universalConstants) return;
    report.Heading("Universal constants");
    _variant_t names;
    CheckCall(session.universalConstants->GetUniversalConstantList(&names), session.universalConstants.Get(),
              L"GetUniversalConstantList");
    for (const std::wstring& name : ReadStrings(names, L"constantId")) {
        _variant_t value;
        CheckCall(session.universalConstants->GetUniversalConstant(MakeBstr(name).GetBSTR(), &value),
                  session.universalConstants.Get(), L"GetUniversalConstant");
        report.Row(name, {{static_cast<double>(value)}});
    }
}

void ShowEquilibria(const PackageSession& session, Report& report)
{
    const Slate& slate = *session.slate;
    ICapeThermoMaterial* material = session.material.Get();
    report.Heading("Equilibria of an equimolar feed");
    report.Columns(EquilibriumColumns(slate));
    SetOverall(material, L"fraction", L"mole", EqualParts(slate));
    SetOverall(material, L"pressure", L"", {{kNormalPressure}});

    const auto [lowest, highest] = std::minmax_element(
        slate.compounds.begin(), slate.compounds.end(),
        [](const SlateCompound& a, const SlateCompound& b) { return a.boilingPoint < b.boilingPoint; });
    constexpr int kSteps = 4;
    for (int step = 0; step <= kSteps; ++step) {
        const double temperature =
            lowest->boilingPoint + (highest->boilingPoint - lowest->boilingPoint) * step / kSteps;
        SetOverall(material, L"temperature", L"", {{temperature}});
        Flash(session, {L"temperature", L"", L"Overall"}, {L"pressure", L"", L"Overall"});
        EquilibriumRow(session, report, L"temperature, pressure");
    }

    const std::wstring vapour = LabelOf(slate, L"Vapor");
    for (const auto& [name, fraction] :
         {std::pair(L"bubble point", 0.0), std::pair(L"half vapour", 0.5), std::pair(L"dew point", 1.0)}) {
        SetPhases(material, Labels(slate));
        CheckCall(material->SetSinglePhaseProp(MakeBstr(L"phaseFraction").GetBSTR(), MakeBstr(vapour).GetBSTR(),
                                               MakeBstr(L"mole").GetBSTR(), MakeDoubles({{fraction}})),
                  material, L"SetSinglePhaseProp");
        Flash(session, {L"pressure", L"", L"Overall"}, {L"phaseFraction", L"mole", vapour.c_str()});
        EquilibriumRow(session, report, name);
    }

    // Sums the enthalpy over both phases at half vapour; a flash at that enthalpy should give the same state.
    CheckCall(material->SetSinglePhaseProp(MakeBstr(L"phaseFraction").GetBSTR(), MakeBstr(vapour).GetBSTR(),
                                           MakeBstr(L"mole").GetBSTR(), MakeDoubles({{0.5}})),
              material, L"SetSinglePhaseProp");
    Flash(session, {L"pressure", L"", L"Overall"}, {L"phaseFraction", L"mole", vapour.c_str()});
    double enthalpy = 0;
    for (const std::wstring& label : Labels(slate)) {
        CheckCall(session.properties->CalcSinglePhaseProp(MakeStrings({L"enthalpy"}), MakeBstr(label).GetBSTR()),
                  session.properties.Get(), L"CalcSinglePhaseProp");
        enthalpy += 0.5 * GetSinglePhase(material, L"enthalpy", label, L"mole").at(0);
    }
    SetOverall(material, L"enthalpy", L"mole", {{enthalpy}});
    Flash(session, {L"pressure", L"", L"Overall"}, {L"enthalpy", L"mole", L"Overall"});
    EquilibriumRow(session, report, L"pressure, enthalpy");
}

void ShowProperties(const PackageSession& session, Report& report, const Options& options)
{
    const Slate& slate = *session.slate;
    ICapeThermoMaterial* material = session.material.Get();
    ICapeThermoPropertyRoutine* properties = session.properties.Get();

    report.Heading("Properties of the phases at the last equilibrium");
    const std::vector<std::wstring> labels = Labels(slate);
    for (const std::wstring& label : labels) {
        if (!IsPresent(material, label)) continue;
        report.Text("Phase", label);
        report.Columns(CompoundColumns(slate, L"property"));
        for (const auto& [name, basis] :
             {std::pair(L"enthalpy", L"mole"), std::pair(L"entropy", L"mole"), std::pair(L"volume", L"mole"),
              std::pair(L"density", L"mole"), std::pair(L"enthalpy.Dtemperature", L"mole"),
              std::pair(L"fugacityCoefficient", L""), std::pair(L"fugacity", L""),
              std::pair(L"logFugacityCoefficient.Dtemperature", L"")}) {
            VARIANT_BOOL offered = VARIANT_FALSE;
            CheckCall(
                properties->CheckSinglePhasePropSpec(MakeBstr(name).GetBSTR(), MakeBstr(label).GetBSTR(), &offered),
                properties, L"CheckSinglePhasePropSpec");
            if (!offered) continue;
            CheckCall(properties->CalcSinglePhaseProp(MakeStrings({name}), MakeBstr(label).GetBSTR()), properties,
                      L"CalcSinglePhaseProp");
            report.Row(name, GetSinglePhase(material, name, label, basis));
        }
        report.Row(L"density, kg/m3", GetSinglePhase(material, L"density", label, L"mass"));

        _variant_t logPhi, byT, byP, byN;
        constexpr int kAll =
            CAPE_LOG_FUGACITY_COEFFICIENTS | CAPE_T_DERIVATIVE | CAPE_P_DERIVATIVE | CAPE_MOLE_NUMBERS_DERIVATIVES;
        CheckCall(properties->CalcAndGetLnPhi(MakeBstr(label).GetBSTR(), 350, 2e5, MakeDoubles(EqualParts(slate)), kAll,
                                              &logPhi, &byT, &byP, &byN),
                  properties, L"CalcAndGetLnPhi");
        report.Row(L"ln phi (350 K, 2 bar)", ReadDoubles(logPhi, L"lnPhi"));
        report.Row(L"d ln phi / dT", ReadDoubles(byT, L"lnPhiDT"));
        report.Row(L"d ln phi / dP", ReadDoubles(byP, L"lnPhiDP"));
        report.Row(L"d ln phi / dn", ReadDoubles(byN, L"lnPhiDn"));
    }

    const std::vector<std::wstring> pair{LabelOf(slate, L"Vapor"), LabelOf(slate, L"Liquid")};
    if (IsPresent(material, pair[0]) && IsPresent(material, pair[1])) {
        CheckCall(properties->CalcTwoPhaseProp(MakeStrings({L"kvalue"}), MakeStrings(pair)), properties,
                  L"CalcTwoPhaseProp");
        _variant_t values;
        CheckCall(material->GetTwoPhaseProp(MakeBstr(L"kvalue").GetBSTR(), MakeStrings(pair), MakeBstr(L"").GetBSTR(),
                                            &values),
                  material, L"GetTwoPhaseProp");
        report.Row(L"K-values", ReadDoubles(values, L"results"));
    }

    for (const std::wstring& name : options.calculate) {
        CheckCall(properties->CalcSinglePhaseProp(MakeStrings({name.c_str()}), MakeBstr(pair[1]).GetBSTR()), properties,
                  L"CalcSinglePhaseProp");
        report.Line(name + L": calculated");
    }
}

void ShowFailure(const PackageSession& session, Report& report)
{
    report.Heading("A call that must fail");
    const HRESULT code =
        session.properties->CalcSinglePhaseProp(MakeStrings({L"colour"}), MakeBstr(L"Liquid").GetBSTR());
    if (SUCCEEDED(code)) throw CapeFailure(ECapeUnknownHR, L"The property package calculates the property \"colour\"");
    report.Line(DescribeFailure(session.properties.Get(), code));

    ComPtr<ECapeUser> user;
    if (FAILED(session.package.As(&user))) return;
    _bstr_t scope, interfaceName;
    long number = 0;
    if (FAILED(user->get_code(&number)) || FAILED(user->get_scope(scope.GetAddress())) ||
        FAILED(user->get_interfaceName(interfaceName.GetAddress()))) {
        return;
    }
    report.Line(std::wstring(TextOf(interfaceName.GetBSTR())) + L"::" + std::wstring(TextOf(scope.GetBSTR())) +
                (number == code ? L", with the code that the call returned" : L", with another code"));
}

}  // namespace zelt::sample
