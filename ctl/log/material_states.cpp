#include "ctl/log/material_states.h"

#include <algorithm>

namespace zelt::ctl {
namespace {

// A log may have any number of materials, and a forged one any number of properties.
constexpr std::size_t kMostMaterials = 200, kMostProperties = 200;

}  // namespace

std::string PropertyName(const CallText& call)
{
    const auto text = [&](const char* argument) {
        const ArgumentText* found = call.Find(argument);
        std::string value = found && found->values ? found->Text() : std::string();
        // Two phases are a list of two quoted texts.
        std::erase(value, '"');
        return value == "<NULL>" ? std::string() : value;
    };
    std::string name = text("property");
    for (const char* phase : {"phaseLabel", "phaseLabels", "phase"}) {
        if (const std::string label = text(phase); !label.empty()) name += " of " + label;
    }
    if (const std::string basis = text("basis"); !basis.empty()) name += " (" + basis + ')';
    if (const std::string calculation = text("calcType"); !calculation.empty()) name += ", " + calculation;
    if (const std::string compounds = text("compIds"); !compounds.empty()) name += ", compounds " + compounds;
    return name;
}

bool MaterialStates::IsMaterial(std::string_view interfaceName)
{
    return interfaceName == "ICapeThermoMaterial" || interfaceName == "ICapeThermoMaterialObject";
}

void MaterialStates::Set(const CallText& call, const std::string& name, const ArgumentText* values)
{
    if (!values) return;
    if (materials.size() == kMostMaterials && materials.find(call.object) == materials.end()) return;
    Properties& properties = materials[call.object];
    if (properties.size() == kMostProperties && properties.find(name) == properties.end()) return;
    properties[name] = {name, values->Text(), call.line};
}

void MaterialStates::Take(const CallText& call)
{
    if (call.inward || !IsMaterial(call.Interface())) return;
    latest = call.object;
    if (call.result.failed) return;
    const std::string_view method = call.Method();
    if (method == "ClearAllProps" || method == "RemoveResults" || method == "CopyFromMaterial") {
        materials.erase(call.object);
    } else if (method == "GetTPFraction" || method == "GetOverallTPFraction") {
        const ArgumentText* label = call.Find("phaseLabel");
        const std::string phase = label ? " of " + std::string(Unquoted(label->Text())) : "";
        Set(call, "temperature" + phase, call.Find("temperature"));
        Set(call, "pressure" + phase, call.Find("pressure"));
        Set(call, "fraction" + phase + " (mole)", call.Find("composition"));
    } else if (method == "GetPresentPhases" || method == "SetPresentPhases") {
        Set(call, "phases", call.Find("phaseLabels"));
    } else if (method.ends_with("Prop") && (method.starts_with("Get") || method.starts_with("Set"))) {
        const ArgumentText* values = call.Find("values");
        Set(call, PropertyName(call), values ? values : call.Find("results"));
    }
}

std::vector<KnownProperty> MaterialStates::StateOf(std::string_view material) const
{
    std::vector<KnownProperty> state;
    const auto found = materials.find(material);
    if (found == materials.end()) return state;
    for (const auto& [name, property] : found->second) state.push_back(property);
    std::stable_sort(state.begin(), state.end(),
                     [](const KnownProperty& a, const KnownProperty& b) { return a.line < b.line; });
    return state;
}

}  // namespace zelt::ctl
