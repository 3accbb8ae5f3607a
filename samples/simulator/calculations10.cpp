#include "samples/simulator/calculations10.h"

#include <algorithm>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/constants.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* kWhole = L"Overall";
constexpr const wchar_t* kMixture = L"Mixture";

void Set(ICapeThermoMaterialObject* material, const wchar_t* property, const std::wstring& phase,
         const wchar_t* calcType, const wchar_t* basis, std::span<const double> values)
{
    CheckCall(material->SetProp(MakeBstr(property).GetBSTR(), MakeBstr(phase).GetBSTR(), _variant_t(),
                                MakeBstr(calcType).GetBSTR(), MakeBstr(basis).GetBSTR(), MakeDoubles(values)),
              material, L"SetProp");
}

std::vector<double> Get(ICapeThermoMaterialObject* material, const wchar_t* property, const std::wstring& phase,
                        const wchar_t* calcType, const wchar_t* basis)
{
    _variant_t values;
    CheckCall(material->GetProp(MakeBstr(property).GetBSTR(), MakeBstr(phase).GetBSTR(), _variant_t(),
                                MakeBstr(calcType).GetBSTR(), MakeBstr(basis).GetBSTR(), &values),
              material, L"GetProp");
    return ReadDoubles(values, L"results");
}

std::vector<std::wstring> PhasesOf(ICapeThermoMaterialObject* material)
{
    _variant_t ids;
    CheckCall(material->get_PhaseIds(&ids), material, L"get_PhaseIds");
    return ReadStrings(ids, L"PhaseIds");
}

std::vector<std::wstring> ColumnsOf(const Slate& slate, std::initializer_list<const wchar_t*> first,
                                    std::initializer_list<const wchar_t*> prefixes)
{
    std::vector<std::wstring> columns(first.begin(), first.end());
    for (const wchar_t* prefix : prefixes) {
        for (const SlateCompound& compound : slate.compounds) columns.push_back(prefix + compound.id);
    }
    return columns;
}

void Flash10(const PackageSession10& session, const wchar_t* type)
{
    CheckCall(
        session.properties->CalcEquilibrium(session.materialDispatch.Get(), MakeBstr(type).GetBSTR(), _variant_t()),
        session.properties.Get(), L"CalcEquilibrium");
}

void Row(const PackageSession10& session, Report& report, const std::wstring& name)
{
    ICapeThermoMaterialObject* material = session.material.Get();
    const Slate& slate = *session.flowsheet->slate;
    std::vector<double> row{Get(material, L"temperature", kWhole, L"", L"").at(0),
                            Get(material, L"pressure", kWhole, L"", L"").at(0)};
    const std::vector<std::wstring> present = PhasesOf(material);
    const auto isPresent = [&](const wchar_t* phase) {
        return std::find(present.begin(), present.end(), phase) != present.end();
    };
    row.push_back(isPresent(L"Vapor") ? Get(material, L"phaseFraction", L"Vapor", kMixture, L"mole").at(0) : 0.0);
    for (const wchar_t* phase : {L"Vapor", L"Liquid"}) {
        const std::vector<double> absent(slate.compounds.size(), kNotANumber);
        const std::vector<double> fractions =
            isPresent(phase) ? Get(material, L"fraction", phase, L"", L"mole") : absent;
        row.insert(row.end(), fractions.begin(), fractions.end());
    }
    report.Row(name, row);
}

// A new equilibrium at a given vapour fraction.
void FlashAtFraction(const PackageSession10& session, double fraction)
{
    ICapeThermoMaterialObject* material = session.material.Get();
    CheckCall(material->RemoveResults(_variant_t()), material, L"RemoveResults");
    Set(material, L"phaseFraction", L"Vapor", kMixture, L"mole", {{fraction}});
    Flash10(session, L"PVF");
}

}  // namespace

PackageSession10::PackageSession10(ComPtr<IDispatch> object, std::shared_ptr<Flowsheet> sheet)
    : ComponentSession(std::move(object), std::move(sheet))
{
    CheckCall(package.As(&properties), nullptr, L"The property package has no ICapeThermoPropertyPackage");
    flowsheet->slate = std::make_shared<const Slate>(ReadSlate(properties.Get()));
    flowsheet->link->package = properties;
}

PackageSession10::~PackageSession10()
{
    // Releases what is still held, even after a failure.
    if (package) Close(false);
}

void PackageSession10::MakeMaterial(ReadHook hook)
{
    com::Check(com::Create<Material>(IID_PPV_ARGS(&material), flowsheet->slate, std::wstring(L"Feed"), std::move(hook),
                                     flowsheet->link));
    com::Check(material.As(&materialDispatch));
}

void PackageSession10::Close(bool hold)
{
    if (!hold) {
        materialDispatch.Reset();
        material.Reset();
    }
    flowsheet->link->package.Reset();
    properties.Reset();
    Terminate();
    materialDispatch.Reset();
    material.Reset();
    ReleaseHeld();
}

void Show10Lists(const PackageSession10& session, Report& report)
{
    const Slate& slate = *session.flowsheet->slate;
    ICapeThermoPropertyPackage* properties = session.properties.Get();
    report.Heading("Compounds");
    for (const SlateCompound& compound : slate.compounds) {
        report.Line(compound.id + L": " + compound.name + L", " + compound.formula + L", CAS " + compound.casNumber);
    }
    report.Columns(ColumnsOf(slate, {L"constant"}, {L""}));
    for (const wchar_t* name :
         {L"molecularWeight", L"normalBoilingPoint", L"criticalTemperature", L"criticalPressure"}) {
        _variant_t values;
        CheckCall(properties->GetComponentConstant(session.materialDispatch.Get(), MakeStrings({name}), &values),
                  properties, L"GetComponentConstant");
        report.Row(name, ReadDoubles(values, L"propVals"));
    }

    report.Heading("Phases");
    for (const SlatePhase& phase : slate.phases) report.Line(phase.label);

    report.Heading("Universal constants");
    _variant_t values;
    CheckCall(properties->GetUniversalConstant(session.materialDispatch.Get(),
                                               MakeStrings({L"molarGasConstant", L"avogadroConstant"}), &values),
              properties, L"GetUniversalConstant");
    report.Row(L"gas constant, Avogadro's constant", ReadDoubles(values, L"propVals"));

    _variant_t names, valid;
    CheckCall(properties->GetPropList(&names), properties, L"GetPropList");
    CheckCall(properties->PropCheck(session.materialDispatch.Get(), names, &valid), properties, L"PropCheck");
    const std::vector<bool> offered = ReadBooleans(valid, L"valid");
    if (std::find(offered.begin(), offered.end(), false) != offered.end()) {
        throw CapeFailure(ECapeUnknownHR, L"The property package does not calculate what it lists");
    }
    report.Line(std::to_wstring(offered.size()) + L" properties are calculated");
}

void Show10Equilibria(const PackageSession10& session, Report& report)
{
    const Slate& slate = *session.flowsheet->slate;
    ICapeThermoMaterialObject* material = session.material.Get();
    report.Heading("Equilibria of an equimolar feed");
    report.Columns(ColumnsOf(slate, {L"flash", L"T / K", L"P / Pa", L"vapour"}, {L"y ", L"x "}));
    Set(material, L"fraction", kWhole, L"", L"mole",
        std::vector<double>(slate.compounds.size(), 1.0 / static_cast<double>(slate.compounds.size())));
    Set(material, L"pressure", kWhole, L"", L"", {{kNormalPressure}});

    const auto [lowest, highest] = std::minmax_element(
        slate.compounds.begin(), slate.compounds.end(),
        [](const SlateCompound& a, const SlateCompound& b) { return a.boilingPoint < b.boilingPoint; });
    constexpr int kSteps = 4;
    for (int step = 0; step <= kSteps; ++step) {
        const double temperature =
            lowest->boilingPoint + (highest->boilingPoint - lowest->boilingPoint) * step / kSteps;
        Set(material, L"temperature", kWhole, L"", L"", {{temperature}});
        CheckCall(material->RemoveResults(_variant_t()), material, L"RemoveResults");
        Flash10(session, L"TP");
        Row(session, report, L"TP");
    }
    for (const auto& [name, fraction] :
         {std::pair(L"bubble point", 0.0), std::pair(L"half vapour", 0.5), std::pair(L"dew point", 1.0)}) {
        FlashAtFraction(session, fraction);
        Row(session, report, name);
    }

    // Sums the enthalpy over both phases at half vapour; a flash through the material at that enthalpy should give the
    // same state.
    FlashAtFraction(session, 0.5);
    double enthalpy = 0;
    const _variant_t phases = MakeStrings({L"Vapor", L"Liquid"});
    CheckCall(material->CalcProp(MakeStrings({L"enthalpy"}), phases, MakeBstr(kMixture).GetBSTR()), material,
              L"CalcProp");
    for (const wchar_t* phase : {L"Vapor", L"Liquid"}) {
        enthalpy += 0.5 * Get(material, L"enthalpy", phase, kMixture, L"mole").at(0);
    }
    Set(material, L"enthalpy", kWhole, kMixture, L"mole", {{enthalpy}});
    CheckCall(material->RemoveResults(_variant_t()), material, L"RemoveResults");
    CheckCall(material->CalcEquilibrium(MakeBstr(L"PH").GetBSTR(), MakeStrings({L"entropy"})), material,
              L"CalcEquilibrium");
    Row(session, report, L"PH");
}

void Show10Properties(const PackageSession10& session, Report& report)
{
    const Slate& slate = *session.flowsheet->slate;
    ICapeThermoMaterialObject* material = session.material.Get();
    ICapeThermoPropertyPackage* properties = session.properties.Get();
    report.Heading("Properties of the phases at the last equilibrium");
    const _variant_t names = MakeStrings({L"enthalpy", L"volume", L"fugacityCoefficient", L"fugacity"});
    for (const std::wstring& phase : PhasesOf(material)) {
        report.Text("Phase", phase);
        report.Columns(ColumnsOf(slate, {L"property"}, {L""}));
        const _variant_t phases = MakeStrings(std::span(&phase, 1));
        for (const wchar_t* calcType : {kMixture, L"Pure"}) {
            CheckCall(properties->CalcProp(session.materialDispatch.Get(), names, phases, MakeBstr(calcType).GetBSTR()),
                      properties, L"CalcProp");
            for (const auto& [name, basis] : {std::pair(L"enthalpy", L"mole"), std::pair(L"volume", L"mole"),
                                              std::pair(L"fugacityCoefficient", L""), std::pair(L"fugacity", L"")}) {
                report.Row(std::wstring(name) + L", " + calcType, Get(material, name, phase, calcType, basis));
            }
        }
        report.Row(L"entropy, Mixture", Get(material, L"entropy", phase, kMixture, L"mole"));
    }

    ComPtr<IDispatch> clone;
    CheckCall(material->Duplicate(&clone), material, L"Duplicate");
    const ComPtr<ICapeThermoMaterialObject> copy = Optional<ICapeThermoMaterialObject>(clone.Get());
    if (!copy) throw CapeFailure(ECapeUnknownHR, L"The duplicate is no material object");
    CheckCall(properties->CalcProp(clone.Get(), MakeStrings({L"density"}), MakeStrings({L"Liquid"}),
                                   MakeBstr(kMixture).GetBSTR()),
              properties, L"CalcProp");
    report.Row(L"density of the liquid in a duplicate", Get(copy.Get(), L"density", L"Liquid", kMixture, L"mole"));
}

void Show10Failure(const PackageSession10& session, Report& report)
{
    report.Heading("A call that must fail");
    const HRESULT code = session.properties->CalcProp(session.materialDispatch.Get(), MakeStrings({L"colour"}),
                                                      MakeStrings({L"Liquid"}), MakeBstr(kMixture).GetBSTR());
    if (SUCCEEDED(code)) throw CapeFailure(ECapeUnknownHR, L"The property package calculates the property \"colour\"");
    report.Line(DescribeFailure(session.package.Get(), code));
}

}  // namespace zelt::sample
