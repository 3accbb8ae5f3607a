#include "samples/material/material_store.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

PropertyKey KeyOf(std::wstring_view property, std::wstring_view basis)
{
    PropertyKey key{Lower(property), Lower(basis)};
    // These have no basis, even if a caller gives one.
    if (key.property == L"temperature" || key.property == L"pressure") key.basis.clear();
    return key;
}

// How to convert a value from mole basis to mass basis.
enum class MassConversion { kNone, kPerMole, kMolePer, kFraction };

MassConversion ConversionOf(std::wstring_view property)
{
    const std::wstring_view name = property.substr(0, property.find(L'.'));
    if (name == L"enthalpy" || name == L"entropy" || name == L"volume" || name == L"heatcapacitycp") {
        return MassConversion::kPerMole;
    }
    if (name == L"density") return MassConversion::kMolePer;
    if (property == L"fraction") return MassConversion::kFraction;
    return MassConversion::kNone;
}

}  // namespace

const std::wstring& MaterialStore::LabelOf(std::wstring_view text) const
{
    const SlatePhase* phase = slate->FindPhase(std::wstring(text));
    if (!phase) throw CapeFailure(ECapeInvalidArgumentHR, L"The material object has no phase " + Quoted(text));
    return phase->label;
}

PresentPhase& MaterialStore::PhaseOf(std::wstring_view text)
{
    const std::wstring& label = LabelOf(text);
    for (PresentPhase& phase : state.phases) {
        if (phase.label == label) return phase;
    }
    CapeFailure failure(ECapeBadInvOrderHR, L"Phase " + Quoted(label) + L" is not present in the material object");
    failure.requestedOperation = L"SetPresentPhases";
    throw failure;
}

std::pair<std::wstring, std::wstring> MaterialStore::LabelPair(const VARIANT& labels) const
{
    const std::vector<std::wstring> names = ReadStrings(labels, L"phaseLabels");
    if (names.size() != 2) throw CapeFailure(ECapeInvalidArgumentHR, L"Two phase labels are needed");
    return {LabelOf(names[0]), LabelOf(names[1])};
}

void MaterialStore::OnRead(const wchar_t* method) const
{
    if (hook) hook(method);
}

std::vector<double> MaterialStore::Find(const PropertyBag& bag, std::wstring_view property,
                                        std::wstring_view basis) const
{
    const PropertyKey key = KeyOf(property, basis);
    if (const auto found = bag.find(key); found != bag.end()) return found->second;

    const auto onMole = bag.find({key.property, L"mole"});
    const auto fractions = bag.find({L"fraction", L"mole"});
    const MassConversion conversion = ConversionOf(key.property);
    if (key.basis != L"mass" || conversion == MassConversion::kNone || onMole == bag.end() || fractions == bag.end() ||
        fractions->second.size() != slate->compounds.size()) {
        throw CapeFailure(ECapeThrmPropertyNotAvailableHR,
                          L"The material object has no " + Quoted(property) + L" on basis " + Quoted(basis));
    }
    double weight = 0;  // kg/mol
    for (std::size_t i = 0; i < slate->compounds.size(); ++i) {
        weight += fractions->second[i] * slate->compounds[i].molecularWeight / 1000;
    }
    std::vector<double> values = onMole->second;
    for (std::size_t i = 0; i < values.size(); ++i) {
        switch (conversion) {
            case MassConversion::kFraction: values[i] *= slate->compounds[i].molecularWeight / 1000 / weight; break;
            case MassConversion::kMolePer: values[i] *= weight; break;
            default: values[i] /= weight; break;
        }
    }
    return values;
}

void MaterialStore::Store(PropertyBag& bag, std::wstring_view property, std::wstring_view basis,
                          const VARIANT& values) const
{
    const PropertyKey key = KeyOf(property, basis);
    std::vector<double> numbers = ReadDoubles(values, L"values");
    if (key.property.empty()) throw CapeFailure(ECapeInvalidArgumentHR, L"The property has no name");
    const bool scalar = key.property == L"temperature" || key.property == L"pressure" ||
                        key.property == L"phasefraction" || key.property == L"totalflow";
    const bool perCompound = key.property == L"fraction" || key.property == L"flow";
    if ((scalar && numbers.size() != 1) || (perCompound && numbers.size() != slate->compounds.size())) {
        throw CapeFailure(ECapeInvalidArgumentHR,
                          std::to_wstring(numbers.size()) + L" values are not what " + Quoted(property) + L" has");
    }
    bag[key] = std::move(numbers);
}

}  // namespace zelt::sample
