#include "samples/package/equilibrium_part.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

enum class Quantity { kTemperature, kPressure, kPhaseFraction, kEnthalpy, kEntropy };

struct QuantityName {
    Quantity quantity;
    const wchar_t* name;
    const wchar_t* basis;
};
constexpr QuantityName kQuantities[] = {
    {Quantity::kTemperature, L"temperature", L""},
    {Quantity::kPressure, L"pressure", L""},
    {Quantity::kPhaseFraction, L"phaseFraction", L"mole"},
    {Quantity::kEnthalpy, L"enthalpy", L"mole"},
    {Quantity::kEntropy, L"entropy", L"mole"},
};

struct Specification {
    const QuantityName* quantity;
    std::wstring phaseLabel;  // for a phase fraction; otherwise empty
};

// The pairs that can be solved.
struct Pair {
    FlashKind kind;
    Quantity first;
    Quantity second;
};
constexpr Pair kPairs[] = {
    {FlashKind::kTP, Quantity::kTemperature, Quantity::kPressure},
    {FlashKind::kPVF, Quantity::kPressure, Quantity::kPhaseFraction},
    {FlashKind::kTVF, Quantity::kTemperature, Quantity::kPhaseFraction},
    {FlashKind::kPH, Quantity::kPressure, Quantity::kEnthalpy},
    {FlashKind::kPS, Quantity::kPressure, Quantity::kEntropy},
};

// The two given specifications, in the order of their row in kPairs.
struct Problem {
    FlashKind kind;
    Specification first;
    Specification second;
};

Specification ReadSpecification(const VARIANT& value, const wchar_t* argument)
{
    const std::vector<std::wstring> parts = ReadStrings(value, argument);
    if (parts.size() != 3) {
        throw CapeFailure(ECapeInvalidArgumentHR,
                          std::wstring(argument) + L" must hold a property, a basis and a phase label");
    }
    for (const QuantityName& quantity : kQuantities) {
        if (!SameName(quantity.name, parts[0])) continue;
        if (!parts[1].empty() && !SameName(parts[1], L"mole")) {
            throw CapeFailure(ECapeLimitedImplHR, L"Flashes are on a mole basis, not " + Quoted(parts[1]));
        }
        if (quantity.quantity == Quantity::kPhaseFraction) return {&quantity, PhaseOf(parts[2]).label};
        if (!SameName(parts[2], kOverall)) {
            throw CapeFailure(ECapeLimitedImplHR,
                              Quoted(parts[0]) + L" can be specified for the overall material only");
        }
        return {&quantity, {}};
    }
    throw CapeFailure(ECapeInvalidArgumentHR, L"Flashes with " + Quoted(parts[0]) + L" are not calculated");
}

Problem ReadProblem(const VARIANT& value1, const VARIANT& value2, BSTR solutionType)
{
    const std::wstring_view type = TextOf(solutionType);
    if (!type.empty() && !SameName(type, L"Unspecified") && !SameName(type, L"Normal")) {
        throw CapeFailure(ECapeLimitedImplHR, L"An ideal solution has no " + Quoted(type) + L" solutions");
    }
    const Specification a = ReadSpecification(value1, L"specification1");
    const Specification b = ReadSpecification(value2, L"specification2");
    for (const Pair& pair : kPairs) {
        if (a.quantity->quantity == pair.first && b.quantity->quantity == pair.second) return {pair.kind, a, b};
        if (b.quantity->quantity == pair.first && a.quantity->quantity == pair.second) return {pair.kind, b, a};
    }
    throw CapeFailure(ECapeLimitedImplHR,
                      L"There is no flash at given " + std::wstring(a.quantity->name) + L" and " + b.quantity->name);
}

double ValueOf(const MaterialView& material, const Specification& specification)
{
    const QuantityName& quantity = *specification.quantity;
    return specification.phaseLabel.empty()
               ? material.Overall(quantity.name, quantity.basis)
               : material.SinglePhase(quantity.name, specification.phaseLabel, quantity.basis);
}

AllowedPhases ReadAllowed(const MaterialView& material)
{
    AllowedPhases allowed{false, false};
    for (const std::wstring& label : material.PresentPhases()) {
        (PhaseOf(label).phase == Phase::kVapour ? allowed.vapour : allowed.liquid) = true;
    }
    if (!allowed.vapour && !allowed.liquid) {
        CapeFailure failure(ECapeBadInvOrderHR, L"The material object has no phases to consider");
        failure.requestedOperation = L"SetPresentPhases";
        throw failure;
    }
    return allowed;
}

FlashResult SolveProblem(const PackageModel& model, const Problem& problem, const MaterialView& material)
{
    const AllowedPhases allowed = model.Restrict(ReadAllowed(material));
    const double first = ValueOf(material, problem.first);
    double second = ValueOf(material, problem.second);
    const std::vector<double> feed = material.OverallFractions();
    if (problem.kind == FlashKind::kPVF || problem.kind == FlashKind::kTVF) {
        if (!allowed.vapour || !allowed.liquid) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"A flash at given phase fraction needs both phases");
        }
        if (PhaseOf(problem.second.phaseLabel).phase == Phase::kLiquid) second = 1 - second;
    }
    FlashResult result = Solve(model.MaterialSolution(), problem.kind, first, second, feed, allowed);
    model.Host().CheckState(result.temperature, result.pressure, feed);
    return result;
}

void WriteBack(const MaterialView& material, const Problem& problem, const FlashResult& result)
{
    // At a given phase fraction, both phases are present; at a bubble or dew point, one of them is empty.
    const bool boundary = problem.kind == FlashKind::kPVF || problem.kind == FlashKind::kTVF;
    std::vector<std::wstring> labels;
    for (const PhaseDefinition& phase : AllPhases()) {
        const double fraction = phase.phase == Phase::kVapour ? result.vapourFraction : 1 - result.vapourFraction;
        if (fraction > 0 || boundary) labels.emplace_back(phase.label);
    }
    material.SetPresentPhases(labels);
    for (const std::wstring& label : labels) {
        const bool vapour = PhaseOf(label).phase == Phase::kVapour;
        const double fraction = vapour ? result.vapourFraction : 1 - result.vapourFraction;
        material.SetSinglePhase(L"temperature", label, L"", {{result.temperature}});
        material.SetSinglePhase(L"pressure", label, L"", {{result.pressure}});
        material.SetSinglePhase(L"phaseFraction", label, L"mole", {{fraction}});
        material.SetSinglePhase(L"fraction", label, L"mole", vapour ? result.vapour : result.liquid);
    }
    if (problem.kind != FlashKind::kTP && problem.kind != FlashKind::kTVF) {
        material.SetOverall(L"temperature", L"", {{result.temperature}});
    }
    if (problem.kind == FlashKind::kTVF) material.SetOverall(L"pressure", L"", {{result.pressure}});
}

}  // namespace

STDMETHODIMP EquilibriumPart::CalcEquilibrium(VARIANT specification1, VARIANT specification2, BSTR solutionType)
{
    return Call(L"CalcEquilibrium", [&] {
        const MaterialView& material = model.Material();
        const Problem problem = ReadProblem(specification1, specification2, solutionType);
        WriteBack(material, problem, SolveProblem(model, problem, material));
        model.Host().Tell(2, L"flash calculated");
    });
}

STDMETHODIMP EquilibriumPart::CheckEquilibriumSpec(VARIANT specification1, VARIANT specification2, BSTR solutionType,
                                                   VARIANT_BOOL* isSupported)
{
    if (!isSupported) return E_POINTER;
    return Call(L"CheckEquilibriumSpec", [&] {
        try {
            ReadProblem(specification1, specification2, solutionType);
            *isSupported = VARIANT_TRUE;
        } catch (const CapeFailure&) {
            // An unreadable specification is not supported; that is an answer, not an error.
            *isSupported = VARIANT_FALSE;
        }
    });
}

}  // namespace zelt::sample
