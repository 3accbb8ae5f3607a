#include "samples/reactions/reaction_model.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"

namespace zelt::sample {
namespace {

constexpr const wchar_t* kEnabled = L"Enabled";
constexpr const wchar_t* kFactor = L"Pre-exponential factor";
constexpr const wchar_t* kActivation = L"Activation temperature";
constexpr const wchar_t* kOrders = L"Orders";
constexpr const wchar_t* kCoefficients = L"Equilibrium coefficients";
constexpr const wchar_t* kApproach = L"Temperature approach";
constexpr const wchar_t* kStandardPressure = L"Standard pressure";

constexpr struct {
    const wchar_t* name;
    double pressure;  // Pa; 0: as published
} kStandardPressures[] = {{L"as published", 0}, {L"1 bar", 1e5}, {L"1 atm", 101325}};

const Dimensionality kTemperature{0, 0, 0, 0, 1, 0, 0, 0};

ParameterDefinition StandardPressureChoice()
{
    OptionSpecification choice{kStandardPressures[0].name, {}, true};
    for (const auto& row : kStandardPressures) choice.options.emplace_back(row.name);
    return {kStandardPressure, L"The standard state of gases in equilibrium constants", std::move(choice)};
}

std::vector<ParameterDefinition> ParametersOf(const Reaction& reaction)
{
    std::vector<ParameterDefinition> definitions{
        {kEnabled, L"A reaction that is not enabled is not calculated", BooleanSpecification{true}}};
    if (reaction.kinetic) {
        ArraySpecification orders;
        for (const ReactionCompound& compound : reaction.compounds) orders.items.push_back({compound.order, -3, 3, {}});
        definitions.push_back(
            {kFactor, L"Of Arrhenius' equation, in SI units", RealSpecification{reaction.rate.factor, 0, 1e40, {}}});
        definitions.push_back({kActivation, L"Energy of activation over the gas constant",
                               RealSpecification{reaction.rate.activationTemperature, 0, 1e6, kTemperature}});
        definitions.push_back({kOrders, L"Of the rate in each compound", std::move(orders)});
    } else {
        ArraySpecification coefficients;
        for (const double value : reaction.equilibrium.coefficients) {
            coefficients.items.push_back({value, -1e6, 1e6, {}});
        }
        definitions.push_back({kCoefficients, L"ln K = a + b/T + c ln T + d T + e T2", std::move(coefficients)});
        definitions.push_back({kApproach, L"Added to the temperature at which the equilibrium is taken",
                               RealSpecification{0, -200, 200, kTemperature}});
    }
    return definitions;
}

CapeFailure BadOrder(const wchar_t* description, const wchar_t* first)
{
    CapeFailure failure(ECapeBadInvOrderHR, description);
    failure.requestedOperation = first;
    return failure;
}

}  // namespace

ReactionEntry::ReactionEntry(const Reaction& reaction) : reaction(reaction), parameters(ParametersOf(reaction)) {}

void ReactionEntry::Require(bool kinetic) const
{
    if (reaction.kinetic != kinetic) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"Reaction " + Quoted(reaction.id) +
                                                      (kinetic ? L" is an equilibrium: it has no rate"
                                                               : L" is kinetic: it has no equilibrium"));
    }
    if (!parameters.Boolean(kEnabled)) {
        throw CapeFailure(ECapeInvalidOperationHR, L"Reaction " + Quoted(reaction.id) + L" is not enabled");
    }
}

RateLaw ReactionEntry::Rate() const
{
    Require(true);
    return {parameters.Real(kFactor), parameters.Real(kActivation)};
}

std::vector<double> ReactionEntry::Orders() const
{
    Require(true);
    return parameters.Array(kOrders);
}

std::vector<double> ReactionEntry::EquilibriumCoefficients() const
{
    Require(false);
    return parameters.Array(kCoefficients);
}

double ReactionEntry::TemperatureApproach() const
{
    Require(false);
    return parameters.Real(kApproach);
}

ReactionModel::ReactionModel(const ReactionPackageDefinition& definition)
    : definition(definition), host(definition.name, StandardPressureChoice())
{
    for (const Reaction& reaction : definition.reactions) reactions.emplace_back(reaction);
}

const ReactionEntry& ReactionModel::ReactionOf(std::wstring_view id) const
{
    for (const ReactionEntry& entry : reactions) {
        if (SameName(entry.Definition().id, id)) return entry;
    }
    throw CapeFailure(ECapeInvalidArgumentHR, L"There is no reaction " + Quoted(id));
}

std::optional<double> ReactionModel::StandardPressure() const
{
    const std::wstring choice = host.Parameters().Option(kStandardPressure);
    for (const auto& row : kStandardPressures) {
        if (SameName(row.name, choice) && row.pressure > 0) return row.pressure;
    }
    return {};
}

void ReactionModel::SetMaterial(IDispatch* object, Generation generation)
{
    if (generation == Generation::kCapeOpen11) {
        material.emplace(MaterialView(object));
        olderMaterial.reset();
    } else {
        olderMaterial.emplace(MaterialObjectView(object));
        material.reset();
    }
    host.CheckTemplate(generation, [this](const std::wstring& id) {
        for (const ReactionEntry& entry : reactions) {
            for (const ReactionCompound& compound : entry.Definition().compounds) {
                if (SameName(compound.id, id)) return true;
            }
        }
        return false;
    });
}

void ReactionModel::UnsetMaterial()
{
    material.reset();
    olderMaterial.reset();
}

void ReactionModel::SetReactionObject(IDispatch* object)
{
    Microsoft::WRL::ComPtr<ICapeReactionProperties> properties;
    if (!object || FAILED(object->QueryInterface(IID_PPV_ARGS(&properties)))) {
        throw CapeFailure(ECapeInvalidArgumentHR, L"The reaction object does not implement ICapeReactionProperties");
    }
    reactionObject = std::move(properties);
}

void ReactionModel::Release()
{
    UnsetMaterial();
    reactionObject.Reset();
}

PhaseState ReactionModel::StateOf(const Reaction& reaction) const
{
    if (!material && !olderMaterial)
        throw BadOrder(L"No material object is set: call SetMaterial first", L"SetMaterial");
    const std::vector<std::wstring> ids = material ? material->CompoundIds() : olderMaterial->CompoundIds();
    const PhaseState whole = material ? material->StateOf(reaction.phase) : olderMaterial->StateOf(reaction.phase);
    if (whole.fractions.size() != ids.size()) {
        throw CapeFailure(ECapeDataHR, L"The material object's composition does not fit its compounds");
    }
    host.CheckState(whole.temperature, whole.pressure, whole.fractions);
    PhaseState state{whole.temperature, whole.pressure, {}};
    for (const ReactionCompound& compound : reaction.compounds) {
        double fraction = 0;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (SameName(ids[i], compound.id)) fraction = whole.fractions[i];
        }
        state.fractions.push_back(fraction);
    }
    return state;
}

ICapeReactionProperties* ReactionModel::ReactionObject() const
{
    if (!reactionObject) {
        throw BadOrder(L"No reaction object is set: call SetReactionObject first", L"SetReactionObject");
    }
    return reactionObject.Get();
}

}  // namespace zelt::sample
