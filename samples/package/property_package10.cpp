#include "samples/package/property_package10.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/compound_list.h"
#include "samples/package/constants.h"
#include "samples/package/material_object_view.h"
#include "samples/package/mixture_properties.h"
#include "samples/package/words10.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kPure = L"Pure";

// The flash types of CAPE-OPEN 1.0. The first quantity is read from the whole material, the second from `phase`.
struct FlashType {
    const wchar_t* name;
    FlashKind kind;
    const wchar_t* first;
    const wchar_t* second;
    const wchar_t* phase;
    const wchar_t* basis;
};
constexpr FlashType kFlashTypes[] = {
    {L"TP", FlashKind::kTP, L"temperature", L"pressure", L"Overall", L""},
    {L"PVF", FlashKind::kPVF, L"pressure", L"phaseFraction", L"Vapor", L"mole"},
    {L"TVF", FlashKind::kTVF, L"temperature", L"phaseFraction", L"Vapor", L"mole"},
    {L"PH", FlashKind::kPH, L"pressure", L"enthalpy", L"Overall", L"mole"},
    {L"PS", FlashKind::kPS, L"pressure", L"entropy", L"Overall", L"mole"},
};

const FlashType& FlashTypeOf(std::wstring_view name)
{
    for (const FlashType& type : kFlashTypes) {
        if (SameName(type.name, name)) return type;
    }
    throw CapeFailure(ECapeLimitedImplHR, L"Flashes of type " + Quoted(name) + L" are not calculated");
}

bool IsPure(std::wstring_view calcType)
{
    if (SameName(calcType, kPure)) return true;
    if (calcType.empty() || SameName(calcType, kMixture)) return false;
    throw CapeFailure(ECapeInvalidArgumentHR, L"There is no type of calculation " + Quoted(calcType));
}

// The first value of the property for each compound alone.
std::vector<double> CalculatePure(const PropertyRequest& request, const PhaseInput& input)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < input.solution.Count(); ++i) {
        const IdealSolution alone({&input.solution.At(i)});
        const double whole = 1;
        const PhaseInput pure{alone, input.phase, input.temperature, input.pressure, {&whole, 1}};
        values.push_back(request.property->calculate(pure, request.derivative).at(0));
    }
    return values;
}

std::vector<std::wstring> WriteResults(const MaterialObjectView& material, FlashKind kind, const FlashResult& result)
{
    // At a given phase fraction, both phases are present; at a bubble or dew point, one of them is empty.
    const bool boundary = kind == FlashKind::kPVF || kind == FlashKind::kTVF;
    std::vector<std::wstring> present;
    for (const PhaseDefinition& phase : AllPhases()) {
        const bool vapour = phase.phase == Phase::kVapour;
        const double fraction = vapour ? result.vapourFraction : 1 - result.vapourFraction;
        if (!(fraction > 0) && !boundary) continue;
        present.emplace_back(phase.label);
        material.Set(L"phaseFraction", phase.label, kMixture, L"mole", {{fraction}});
        material.Set(L"fraction", phase.label, L"", L"mole", vapour ? result.vapour : result.liquid);
    }
    if (kind != FlashKind::kTP && kind != FlashKind::kTVF) {
        material.Set(L"temperature", kWhole, kMixture, L"", {{result.temperature}});
    }
    if (kind == FlashKind::kTVF) material.Set(L"pressure", kWhole, kMixture, L"", {{result.pressure}});
    return present;
}

}  // namespace

IdealSolution PropertyPackage10Part::SolutionOf(const MaterialObjectView& material) const
{
    return IdealSolution(model.Select(material.CompoundIds()));
}

void PropertyPackage10Part::Calculate(const MaterialObjectView& material, std::span<const std::wstring> props,
                                      std::span<const std::wstring> phases, bool pure) const
{
    const IdealSolution solution = SolutionOf(material);
    // Looks up all properties first, so that an unknown name fails before any of them is calculated.
    std::vector<PropertyRequest> requests;
    for (const std::wstring& name : props) {
        requests.push_back(FindSinglePhaseProperty(name));
        if (pure && requests.back().derivative == Derivative::kMoles) {
            throw CapeFailure(ECapeInvalidArgumentHR, Quoted(name) + L" is not a property of a pure compound");
        }
    }
    for (const std::wstring& label : phases) {
        const PhaseDefinition& phase = PhaseOf(label);
        const PhaseState state = material.StateOf(phase.label);
        if (state.fractions.size() != solution.Count()) {
            throw CapeFailure(ECapeDataHR, L"The material object's composition does not fit its compounds");
        }
        model.Host().CheckState(state.temperature, state.pressure, state.fractions);
        const PhaseInput input{solution, phase.phase, state.temperature, state.pressure, state.fractions};
        for (std::size_t i = 0; i < props.size(); ++i) {
            const std::vector<double> values = pure ? CalculatePure(requests[i], input)
                                                    : requests[i].property->calculate(input, requests[i].derivative);
            material.Set(props[i].c_str(), phase.label, pure ? kPure : kMixture, requests[i].property->basis, values);
        }
    }
}

STDMETHODIMP PropertyPackage10Part::GetPhaseList(VARIANT* phases)
{
    return Call(L"GetPhaseList", [&] {
        std::vector<std::wstring> labels;
        for (const PhaseDefinition& phase : AllPhases()) labels.emplace_back(phase.label);
        Return(phases, MakeStrings(labels));
    });
}

STDMETHODIMP PropertyPackage10Part::GetComponentList(VARIANT* compIds, VARIANT* formulae, VARIANT* name,
                                                     VARIANT* boilTemps, VARIANT* molwt, VARIANT* casno)
{
    return Call(L"GetComponentList",
                [&] { ReplaceCompoundList(model.Compounds(), compIds, formulae, name, boilTemps, molwt, casno); });
}

STDMETHODIMP PropertyPackage10Part::GetUniversalConstant(IDispatch*, VARIANT props, VARIANT* propVals)
{
    return Call(L"GetUniversalConstant", [&] {
        std::vector<_variant_t> values;
        for (const std::wstring& id : ReadStrings(props, L"props")) {
            values.emplace_back(FindUniversalConstant(id).value);
        }
        Return(propVals, MakeVariants(values));
    });
}

STDMETHODIMP PropertyPackage10Part::GetComponentConstant(IDispatch* materialObject, VARIANT props, VARIANT* propVals)
{
    return Call(L"GetComponentConstant", [&] {
        std::vector<std::wstring> ids;
        if (materialObject) ids = MaterialObjectView(materialObject).CompoundIds();
        const std::vector<const Compound*> compounds = model.Select(ids);
        std::vector<_variant_t> values;
        for (const std::wstring& property : ReadStrings(props, L"props")) {
            const CompoundConstant& constant = FindConstant(property);
            for (const Compound* compound : compounds) values.push_back(constant.value(*compound));
        }
        Return(propVals, MakeVariants(values));
    });
}

STDMETHODIMP PropertyPackage10Part::CalcProp(IDispatch* materialObject, VARIANT props, VARIANT phases, BSTR calcType)
{
    return Call(L"CalcProp", [&] {
        const MaterialObjectView material(materialObject);
        Calculate(material, ReadStrings(props, L"props"), ReadStrings(phases, L"phases"), IsPure(TextOf(calcType)));
        model.Host().Tell(2, L"properties calculated");
    });
}

STDMETHODIMP PropertyPackage10Part::CalcEquilibrium(IDispatch* materialObject, BSTR flashType, VARIANT props)
{
    return Call(L"CalcEquilibrium", [&] {
        model.CheckTemplate(Generation::kCapeOpen10);
        const MaterialObjectView material(materialObject);
        const FlashType& type = FlashTypeOf(TextOf(flashType));
        const std::vector<std::wstring> names = ReadStrings(props, L"props");
        const AllowedPhases allowed = model.Restrict({});
        if ((type.kind == FlashKind::kPVF || type.kind == FlashKind::kTVF) && !(allowed.vapour && allowed.liquid)) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"A flash at given phase fraction needs both phases");
        }
        const double first = material.Single(type.first, kWhole, L"");
        const double second = material.Single(type.second, type.phase, type.basis);
        const std::vector<double> feed = material.Fractions(kWhole);
        const FlashResult result = Solve(SolutionOf(material), type.kind, first, second, feed, allowed);
        model.Host().CheckState(result.temperature, result.pressure, feed);
        const std::vector<std::wstring> present = WriteResults(material, type.kind, result);
        if (!names.empty()) Calculate(material, names, present, false);
        model.Host().Tell(2, L"flash calculated");
    });
}

STDMETHODIMP PropertyPackage10Part::PropCheck(IDispatch*, VARIANT props, VARIANT* valid)
{
    return Call(L"PropCheck", [&] {
        std::vector<bool> offered;
        for (const std::wstring& name : ReadStrings(props, L"props")) offered.push_back(IsSinglePhaseProperty(name));
        Return(valid, MakeBooleans(offered));
    });
}

STDMETHODIMP PropertyPackage10Part::ValidityCheck(IDispatch* materialObject, VARIANT props, VARIANT* valid)
{
    return Call(L"ValidityCheck", [&] {
        const PhaseState state = MaterialObjectView(materialObject).StateOf(kWhole);
        bool inside = true;
        try {
            model.Host().CheckState(state.temperature, state.pressure, state.fractions);
        } catch (const CapeFailure& failure) {
            // A state outside the limits is a valid answer; an invalid parameter is an error.
            if (failure.code != static_cast<HRESULT>(ECapeOutOfBoundsHR)) throw;
            inside = false;
        }
        std::vector<bool> verdicts;
        for (const std::wstring& name : ReadStrings(props, L"props")) {
            verdicts.push_back(inside && IsSinglePhaseProperty(name));
        }
        Return(valid, MakeBooleans(verdicts));
    });
}

STDMETHODIMP PropertyPackage10Part::GetPropList(VARIANT* props)
{
    return Call(L"GetPropList", [&] { Return(props, MakeStrings(SinglePhasePropertyNames())); });
}

}  // namespace zelt::sample
