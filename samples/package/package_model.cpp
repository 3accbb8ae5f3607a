#include "samples/package/package_model.h"

#include <cmath>
#include <iterator>

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"

namespace zelt::sample {
namespace {

constexpr PackageDefinition kPackages[] = {
    {L"Aromatics", L"Benzene, toluene and o-xylene as an ideal solution", {L"Benzene", L"Toluene", L"o-Xylene"}},
    {L"Alcohols", L"Methanol, ethanol and water as an ideal solution", {L"Methanol", L"Ethanol", L"Water"}},
};

// The name under which a revision of the first package is found. The revision reports the first package's name.
constexpr const wchar_t* kRevisionName = L"Aromatics, revised";
constexpr PackageDefinition kRevision = {kPackages[0].name, kPackages[0].description, kPackages[0].compounds, 1.000001};

constexpr PhaseDefinition kPhases[] = {
    {Phase::kVapour, L"Vapor", L"Vapor", L"Light", L"Ideal gas"},
    {Phase::kLiquid, L"Liquid", L"Liquid", L"Heavy", L"Ideal solution"},
};

constexpr const wchar_t* kPhaseChoice = L"Phases";
constexpr struct {
    const wchar_t* name;
    AllowedPhases allowed;
} kPhaseChoices[] = {
    {L"vapor and liquid", {true, true}},
    {L"vapor only", {true, false}},
    {L"liquid only", {false, true}},
};

ParameterDefinition PhaseChoice()
{
    OptionSpecification choice{kPhaseChoices[0].name, {}, true};
    for (const auto& row : kPhaseChoices) choice.options.emplace_back(row.name);
    return {kPhaseChoice, L"The phases that an equilibrium calculation may form", std::move(choice)};
}

const Compound& CompoundOf(const wchar_t* id)
{
    const Compound* compound = FindCompound(id);
    if (!compound) throw CapeFailure(ECapeImplementationHR, std::wstring(L"No data for compound ") + Quoted(id));
    return *compound;
}

Compound LastCompoundOf(const PackageDefinition& definition)
{
    Compound compound = CompoundOf(*std::prev(definition.compounds.end()));
    // Antoine's equation gives the logarithm of the pressure, so a factor adds its logarithm to the first coefficient.
    compound.antoine[0] += std::log(definition.vapourPressureFactor);
    return compound;
}

std::vector<const Compound*> CompoundsOf(const PackageDefinition& definition, const Compound& last)
{
    std::vector<const Compound*> compounds;
    for (const wchar_t* id : definition.compounds) compounds.push_back(&CompoundOf(id));
    compounds.back() = &last;
    return compounds;
}

}  // namespace

std::span<const PackageDefinition> AllPackages() { return kPackages; }

const PackageDefinition* FindPackage(std::wstring_view name)
{
    for (const PackageDefinition& definition : kPackages) {
        if (SameName(definition.name, name)) return &definition;
    }
    return SameName(kRevisionName, name) ? &kRevision : nullptr;
}

std::span<const PhaseDefinition> AllPhases() { return kPhases; }

const PhaseDefinition& PhaseOf(std::wstring_view label)
{
    for (const PhaseDefinition& definition : kPhases) {
        if (SameName(definition.label, label)) return definition;
    }
    throw CapeFailure(ECapeInvalidArgumentHR, L"There is no phase " + Quoted(label));
}

PackageModel::PackageModel(const PackageDefinition& definition)
    : definition(definition),
      host(definition.name, PhaseChoice()),
      lastCompound(LastCompoundOf(definition)),
      compounds(CompoundsOf(definition, lastCompound)),
      solution(compounds),
      materialSolution(compounds)
{}

std::vector<const Compound*> PackageModel::Select(std::span<const std::wstring> ids) const
{
    if (ids.empty()) return compounds;
    std::vector<const Compound*> selected;
    for (const std::wstring& id : ids) {
        const Compound* found = nullptr;
        for (const Compound* compound : compounds) {
            if (SameName(compound->id, id)) found = compound;
        }
        if (!found) {
            throw CapeFailure(ECapeInvalidArgumentHR,
                              L"Compound " + Quoted(id) + L" is not in property package " + Quoted(definition.name));
        }
        selected.push_back(found);
    }
    return selected;
}

AllowedPhases PackageModel::Restrict(AllowedPhases allowed) const
{
    const std::wstring choice = host.Parameters().Option(kPhaseChoice);
    for (const auto& row : kPhaseChoices) {
        if (!SameName(row.name, choice)) continue;
        allowed.vapour &= row.allowed.vapour;
        allowed.liquid &= row.allowed.liquid;
    }
    if (!allowed.vapour && !allowed.liquid) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"Parameter " + Quoted(kPhaseChoice) + L" leaves no phase");
    }
    return allowed;
}

void PackageModel::CheckTemplate(Generation generation)
{
    host.CheckTemplate(generation, [this](const std::wstring& id) {
        for (const Compound* compound : compounds) {
            if (SameName(compound->id, id)) return true;
        }
        return false;
    });
}

void PackageModel::SetMaterial(IDispatch* object)
{
    MaterialView view(object);
    IdealSolution ordered(Select(view.CompoundIds()));
    material = std::move(view);
    materialSolution = std::move(ordered);
}

void PackageModel::UnsetMaterial() { material = MaterialView(); }

const MaterialView& PackageModel::Material() const
{
    RequireMaterial();
    return material;
}

const IdealSolution& PackageModel::MaterialSolution() const
{
    RequireMaterial();
    return materialSolution;
}

void PackageModel::RequireMaterial() const
{
    if (material) return;
    CapeFailure failure(ECapeBadInvOrderHR, L"No material object is set: call SetMaterial first");
    failure.requestedOperation = L"SetMaterial";
    throw failure;
}

}  // namespace zelt::sample
