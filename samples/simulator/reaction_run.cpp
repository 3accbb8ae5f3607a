#include "samples/simulator/reaction_run.h"

#include <cape-open-thermo-context.h>

#include <bit>
#include <cstdint>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/simulator/constants.h"
#include "samples/simulator/parameters.h"
#include "samples/material/reaction_object.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

// The properties to calculate for each kind of reaction; the last equilibrium property is only for gases.
constexpr const wchar_t* kKineticProperties[] = {L"rateConstant", L"reactionRate", L"reactionRate.Dtemperature"};
constexpr const wchar_t* kEquilibriumProperties[] = {L"chemicalEquilibriumConstant", L"enthalpyOfReaction",
                                                     L"reactionQuotient"};

std::wstring ReactionText(ICapeReactionChemistry* chemistry,
                          HRESULT (STDMETHODCALLTYPE ICapeReactionChemistry::*getter)(BSTR, BSTR*),
                          const std::wstring& id, const wchar_t* what)
{
    _bstr_t text;
    CheckCall((chemistry->*getter)(MakeBstr(id).GetBSTR(), text.GetAddress()), chemistry, what);
    return std::wstring(TextOf(text.GetBSTR()));
}

// The compounds and phases of all reactions in the order of their first appearance. A reaction package does not give the
// compounds' formulae, boiling points and molecular weights.
Slate ReadSlate(ICapeReactionChemistry* chemistry, std::span<const ReactionSession::Reaction> reactions)
{
    Slate slate;
    for (const ReactionSession::Reaction& reaction : reactions) {
        _variant_t ids, charges, numbers;
        long count = 0;
        _bstr_t name = MakeBstr(reaction.id);
        CheckCall(chemistry->GetNumberOfReactionCompounds(name.GetBSTR(), &count), chemistry,
                  L"GetNumberOfReactionCompounds");
        CheckCall(chemistry->GetReactionCompoundIds(name.GetBSTR(), &ids, &charges, &numbers), chemistry,
                  L"GetReactionCompoundIds");
        const std::vector<std::wstring> idList = ReadStrings(ids, L"compIds");
        const std::vector<std::wstring> numberList = ReadStrings(numbers, L"compCASNumber");
        if (idList.size() != static_cast<std::size_t>(count) || numberList.size() != idList.size() ||
            ReadDoubles(charges, L"compCharge").size() != idList.size()) {
            throw CapeFailure(ECapeDataHR, L"The reaction package's lists differ in length");
        }
        for (std::size_t i = 0; i < idList.size(); ++i) {
            if (slate.FindCompound(idList[i])) continue;
            slate.compounds.push_back({idList[i], L"", idList[i], kNotANumber, kNotANumber, numberList[i]});
        }
        if (!slate.FindPhase(reaction.phase)) slate.phases.push_back({reaction.phase, reaction.phase, L""});
    }
    return slate;
}

void SetState(const ReactionSession& session, double temperature)
{
    ICapeThermoMaterial* material = session.material.Get();
    const Slate& slate = *session.flowsheet->slate;
    const std::vector<double> parts(slate.compounds.size(), 1.0 / static_cast<double>(slate.compounds.size()));
    std::vector<std::wstring> labels;
    for (const SlatePhase& phase : slate.phases) labels.push_back(phase.label);
    const std::vector<long> status(labels.size(), CAPE_UNKNOWNPHASESTATUS);
    CheckCall(material->SetPresentPhases(MakeStrings(labels), MakeLongs(status)), material, L"SetPresentPhases");
    const double pressure = kNormalPressure;
    const struct {
        const wchar_t* name;
        const wchar_t* basis;
        std::span<const double> values;
    } state[] = {
        {L"temperature", L"", {&temperature, 1}}, {L"pressure", L"", {&pressure, 1}}, {L"fraction", L"mole", parts}};
    for (const auto& row : state) {
        CheckCall(material->SetOverallProp(MakeBstr(row.name).GetBSTR(), MakeBstr(row.basis).GetBSTR(),
                                           MakeDoubles(row.values)),
                  material, L"SetOverallProp");
        for (const std::wstring& label : labels) {
            CheckCall(material->SetSinglePhaseProp(MakeBstr(row.name).GetBSTR(), MakeBstr(label).GetBSTR(),
                                                   MakeBstr(row.basis).GetBSTR(), MakeDoubles(row.values)),
                      material, L"SetSinglePhaseProp");
        }
    }
}

std::span<const wchar_t* const> PropertiesOf(const ReactionSession::Reaction& reaction)
{
    if (reaction.type == CAPE_KINETIC) return kKineticProperties;
    const std::span<const wchar_t* const> all(kEquilibriumProperties);
    return SameName(reaction.phase, L"Vapor") ? all : all.first(2);
}

// Calculates and reads back one reaction's properties.
std::vector<double> CalculateReactions(const ReactionSession& session, const ReactionSession::Reaction& reaction)
{
    std::vector<std::wstring> names;
    for (const wchar_t* name : PropertiesOf(reaction)) names.emplace_back(name);
    _bstr_t phase = MakeBstr(reaction.phase), basis = MakeBstr(L"mole");
    const _variant_t ids = MakeStrings({reaction.id.c_str()});
    CheckCall(session.routine->CalcReactionProp(MakeStrings(names), phase.GetBSTR(), ids, basis.GetBSTR()),
              session.routine.Get(), L"CalcReactionProp");
    std::vector<double> results;
    for (const std::wstring& name : names) {
        _variant_t values;
        CheckCall(session.reactionObject->GetReactionProp(MakeBstr(name).GetBSTR(), phase.GetBSTR(), ids,
                                                          basis.GetBSTR(), &values),
                  session.reactionObject.Get(), L"GetReactionProp");
        results.push_back(ReadDoubles(values, L"propVals").at(0));
    }
    return results;
}

// Uses the interface for electrolytes if the package has it: then its reactions are ionic.
void SetReactionObject(const ReactionSession& session)
{
    ComPtr<IDispatch> dispatch;
    com::Check(session.reactionObject.As(&dispatch));
    IDispatch* pointer = dispatch.Get();
    if (const auto electrolytes = Optional<ICapeElectrolyteReactionContext>(session.package.Get())) {
        CheckCall(electrolytes->SetReactionObject(&pointer), electrolytes.Get(), L"SetReactionObject");
        return;
    }
    const auto kinetic = Optional<ICapeKineticReactionContext>(session.package.Get());
    if (!kinetic) throw CapeFailure(E_NOINTERFACE, L"The reaction package takes no reaction object");
    CheckCall(kinetic->SetReactionObject(&pointer), kinetic.Get(), L"SetReactionObject");
}

bool SameBits(const std::vector<double>& a, const std::vector<double>& b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::bit_cast<std::uint64_t>(a[i]) != std::bit_cast<std::uint64_t>(b[i])) return false;
    }
    return true;
}

}  // namespace

ReactionSession::ReactionSession(ComPtr<IDispatch> object, std::shared_ptr<Flowsheet> sheet)
    : ComponentSession(std::move(object), std::move(sheet))
{
    CheckCall(package.As(&chemistry), nullptr, L"The reaction package has no ICapeReactionChemistry");
    CheckCall(package.As(&routine), nullptr, L"The reaction package has no ICapeReactionsRoutine");
    materialContext = Optional<ICapeThermoMaterialContext>(package.Get());

    long count = 0;
    _variant_t ids;
    CheckCall(chemistry->GetNumberOfReactions(&count), chemistry.Get(), L"GetNumberOfReactions");
    CheckCall(chemistry->GetReactionsIds(&ids), chemistry.Get(), L"GetReactionsIds");
    for (const std::wstring& id : ReadStrings(ids, L"reactionIDS")) {
        Reaction reaction{
            id, ReactionText(chemistry.Get(), &ICapeReactionChemistry::GetReactionPhase, id, L"GetReactionPhase"),
            CAPE_EQUILIBRIUM};
        CheckCall(chemistry->GetReactionType(MakeBstr(id).GetBSTR(), &reaction.type), chemistry.Get(),
                  L"GetReactionType");
        reactions.push_back(std::move(reaction));
    }
    if (reactions.size() != static_cast<std::size_t>(count)) {
        throw CapeFailure(ECapeDataHR, L"The reaction package miscounts its reactions");
    }
    flowsheet->slate = std::make_shared<const Slate>(ReadSlate(chemistry.Get(), reactions));
}

ReactionSession::~ReactionSession()
{
    // Releases what is still held, even after a failure.
    if (package) Close(false);
}

void ReactionSession::SetObjects(ReadHook hook)
{
    com::Check(com::Create<Material>(IID_PPV_ARGS(&material), flowsheet->slate, std::wstring(L"Reactor content"),
                                     std::move(hook)));
    com::Check(material.As(&materialDispatch));
    com::Check(com::Create<ReactionObject>(IID_PPV_ARGS(&reactionObject)));
    if (!materialContext) throw CapeFailure(E_NOINTERFACE, L"The reaction package has no ICapeThermoMaterialContext");
    CheckCall(materialContext->SetMaterial(materialDispatch.Get()), materialContext.Get(), L"SetMaterial");
    SetReactionObject(*this);
}

void ReactionSession::Close(bool hold)
{
    if (materialContext && material && !hold) materialContext->UnsetMaterial();
    materialContext.Reset();
    routine.Reset();
    chemistry.Reset();
    Terminate();
    reactionObject.Reset();
    materialDispatch.Reset();
    material.Reset();
    ReleaseHeld();
}

void ShowReactions(const ReactionSession& session, Report& report)
{
    ICapeReactionChemistry* chemistry = session.chemistry.Get();
    for (const ReactionSession::Reaction& reaction : session.reactions) {
        report.Heading("Reaction");
        _bstr_t id = MakeBstr(reaction.id);
        eCapeReactionRateBasis rateBasis = CAPE_HOMOGENEOUS;
        CheckCall(chemistry->GetReactionRateBasis(id.GetBSTR(), &rateBasis), chemistry, L"GetReactionRateBasis");
        report.Line(reaction.id + (reaction.type == CAPE_KINETIC ? L": kinetic" : L": equilibrium") +
                    (rateBasis == CAPE_HOMOGENEOUS ? L", homogeneous, phase " : L", heterogeneous, phase ") +
                    reaction.phase + L", basis " +
                    ReactionText(chemistry, &ICapeReactionChemistry::GetReactionConcBasis, reaction.id,
                                 L"GetReactionConcBasis") +
                    L", base reactant " +
                    ReactionText(chemistry, &ICapeReactionChemistry::GetBaseReactant, reaction.id, L"GetBaseReactant"));

        _variant_t ids, charges, numbers, coefficients, phaseIds;
        CheckCall(chemistry->GetReactionCompoundIds(id.GetBSTR(), &ids, &charges, &numbers), chemistry,
                  L"GetReactionCompoundIds");
        CheckCall(chemistry->GetStoichiometricCoefficients(id.GetBSTR(), &coefficients), chemistry,
                  L"GetStoichiometricCoefficients");
        std::vector<std::wstring> columns = ReadStrings(ids, L"compIds");
        columns.insert(columns.begin(), L"compound");
        report.Columns(columns);
        report.Row(L"coefficient", ReadDoubles(coefficients, L"coeffs"));
        report.Row(L"charge", ReadDoubles(charges, L"compCharge"));
        long count = 0;
        CheckCall(chemistry->GetPhaseCompounds(id.GetBSTR(), &count, &phaseIds), chemistry, L"GetPhaseCompounds");
        if (ReadStrings(phaseIds, L"compIds").size() != static_cast<std::size_t>(count)) {
            throw CapeFailure(ECapeDataHR, L"The reaction package miscounts the compounds of a phase");
        }
        report.Line(std::to_wstring(count) + L" compounds in the phase");

        ComPtr<IDispatch> parameters;
        CheckCall(chemistry->GetReactionParameters(id.GetBSTR(), &parameters), chemistry, L"GetReactionParameters");
        if (parameters) WalkParameters(parameters.Get(), report);
    }
}

void ShowReactionProperties(const ReactionSession& session, Report& report)
{
    report.Heading("Properties of the reactions in an equimolar mixture");
    constexpr double kGasTemperatures[] = {300, 450, 600, 750, 900}, kLiquidTemperatures[] = {283.15, 298.15, 313.15};
    for (const ReactionSession::Reaction& reaction : session.reactions) {
        std::vector<std::wstring> columns{reaction.id};
        for (const wchar_t* name : PropertiesOf(reaction)) columns.emplace_back(name);
        report.Columns(columns);
        const bool gas = SameName(reaction.phase, L"Vapor");
        for (const double temperature : gas ? std::span<const double>(kGasTemperatures) : kLiquidTemperatures) {
            SetState(session, temperature);
            report.Row(reaction.id + L", " + NumberText(temperature) + L" K", CalculateReactions(session, reaction));
        }
    }

    const auto context = Optional<ICapeThermoContext>(session.package.Get());
    if (!context) return;
    std::vector<std::vector<double>> before;
    for (const ReactionSession::Reaction& reaction : session.reactions)
        before.push_back(CalculateReactions(session, reaction));
    CheckCall(context->SetMaterial(session.materialDispatch.Get()), context.Get(), L"SetMaterial");
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (!SameBits(before[i], CalculateReactions(session, session.reactions[i]))) {
            throw CapeFailure(ECapeUnknownHR, L"The older way of handing over the material gives other results");
        }
    }
    report.Line(L"The same through the material interface of CAPE-OPEN 1.0.");
}

void ShowReactionFailure(const ReactionSession& session, Report& report)
{
    report.Heading("A call that must fail");
    const HRESULT code =
        session.routine->CalcReactionProp(MakeStrings({L"colour"}), MakeBstr(session.reactions.front().phase).GetBSTR(),
                                          _variant_t(), MakeBstr(L"mole").GetBSTR());
    if (SUCCEEDED(code)) throw CapeFailure(ECapeUnknownHR, L"The reaction package calculates the property \"colour\"");
    report.Line(DescribeFailure(session.package.Get(), code));
}

}  // namespace zelt::sample
