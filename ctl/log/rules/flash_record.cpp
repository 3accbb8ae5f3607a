#include "ctl/log/rules/flash_record.h"

#include <algorithm>

#include "ctl/log/call_results.h"
#include "ctl/log/text/log_values.h"
#include "ctl/log/text/lower_case.h"

namespace zelt::ctl {
namespace {

// More than a calculation needs. A forged log may have any number.
constexpr std::size_t kMostFlashed = 8, kMostPhases = 16, kMostFlashValues = 1000;

// The value of CapePhaseStatus for a phase at equilibrium; the others say that nothing is known, or that the values are
// estimates.
constexpr std::string_view kAtEquilibrium = "1";

}  // namespace

const FlashRecord::Phase* FlashRecord::Material::Find(std::string_view label) const
{
    for (const Phase& phase : phases) {
        if (IsSameInLowerCase(phase.label, label)) return &phase;
    }
    return nullptr;
}

const FlashRecord::Material* FlashRecord::Find(std::string_view material) const
{
    for (const Material& one : materials) {
        if (one.name == material) return &one;
    }
    return nullptr;
}

FlashRecord::Material& FlashRecord::MaterialOf(const std::string& name)
{
    for (Material& one : materials) {
        if (one.name == name) return one;
    }
    if (materials.size() == kMostFlashed) {
        surplus = {};
        return surplus;
    }
    materials.emplace_back();
    materials.back().name = name;
    return materials.back();
}

FlashRecord::Phase& FlashRecord::PhaseOf(Material& material, const std::string& label)
{
    for (Phase& phase : material.phases) {
        if (IsSameInLowerCase(phase.label, label)) return phase;
    }
    if (material.phases.size() == kMostPhases) {
        material.isUnsure = true;
        return material.phases.back();
    }
    material.phases.emplace_back();
    material.phases.back().label = label;
    return material.phases.back();
}

FlashRecord::Part FlashRecord::PartOf(std::string_view argument)
{
    // clang-format off
    constexpr struct { std::string_view name; Part part; } kRows[] = {
        {"property",       Part::Property},
        {"phase",          Part::Phase},
        {"phaseLabel",     Part::Phase},
        {"basis",          Part::Basis},
        {"compIds",        Part::Compounds},
        {"values",         Part::Numbers},
        {"results",        Part::Numbers},
        {"composition",    Part::Numbers},
        {"temperature",    Part::Temperature},
        {"pressure",       Part::Pressure},
        {"phaseLabels",    Part::Labels},
        {"phaseStatus",    Part::Statuses},
        {"materialObject", Part::Created},
        {"clone",          Part::Created},
    };
    // clang-format on
    for (const auto& row : kRows) {
        if (row.name == argument) return row.part;
    }
    return Part::None;
}

void FlashRecord::Inner::Clear()
{
    for (std::string* text : {&method, &object, &property, &phase, &basis, &created}) text->clear();
    labels.clear();
    statuses.clear();
    numbers.clear();
    temperature = pressure = {};
    line = 0;
    isOpen = isMaterial = isForeign = ofSome = failed = false;
    areNumbers = true;
    part = Part::None;
}

void FlashRecord::Take(const LogEvent& event)
{
    if (depth < 0) {
        if (!event.inward) return;
        const std::string_view method = event.Method();
        if (method == "CalcEquilibrium") {
            kind = Of::Equilibrium;
        } else if (alsoOfProperties && method == "CalcSinglePhaseProp") {
            kind = Of::Properties;
        } else if (alsoOfUnits && event.name == "ICapeUnit::Calculate") {
            kind = Of::Unit;
        } else {
            return;
        }
        events = 0;
        isTooLong = false;
        depth = event.depth;
        line = event.line;
        failed = false;
        materials.clear();
        inner.Clear();
        return;
    }
    isTooLong |= ++events > kMostEvents;
    if (isTooLong) return;
    if (event.kind == EventKind::Call) {
        if (event.depth != depth + 1) return;
        inner.Clear();
        inner.isOpen = true;
        inner.method = event.Method();
        inner.object = event.text;
        inner.isForeign = !event.Interface().starts_with("ICape");
        inner.isMaterial = !event.inward && (event.Interface() == "ICapeThermoMaterial" ||
                                             event.Interface() == "ICapeThermoMaterialObject");
        inner.line = event.line;
    } else if (event.kind == EventKind::Error) {
        if (event.depth <= depth + 2 && KindOfMessage(event) == MessageKind::Failure) {
            (event.depth == depth + 1 ? failed : inner.failed) = true;
        }
    } else if (inner.isOpen && event.kind == EventKind::Argument && event.depth == depth + 2) {
        inner.part = PartOf(event.name);
    } else if (inner.isOpen && event.kind == EventKind::Value && event.depth == depth + 3 && !event.hasChildren) {
        TakeValue(event.text);
    }
}

void FlashRecord::TakeValue(std::string_view text)
{
    const auto add = [](auto& values, const auto& value) {
        if (values.size() < kMostFlashValues) values.push_back(value);
    };
    switch (inner.part) {
        case Part::None: break;
        case Part::Property: inner.property = LowerCase(Unquoted(text)); break;
        case Part::Phase: inner.phase = Unquoted(text); break;
        case Part::Basis: inner.basis = LowerCase(Unquoted(text)); break;
        case Part::Compounds:
            inner.ofSome = true;
            if (kind == Of::Unit) add(inner.labels, std::string(Unquoted(text)));
            break;
        case Part::Labels: add(inner.labels, std::string(Unquoted(text))); break;
        case Part::Statuses: add(inner.statuses, std::string(text)); break;
        case Part::Created: {
            // The value reads: interface to object "Name" (address 0x…)
            const std::size_t start = text.find('"'), end = text.rfind('"');
            if (start != end) inner.created = text.substr(start + 1, end - start - 1);
            break;
        }
        case Part::Temperature: inner.temperature = NumberOf(text); break;
        case Part::Pressure: inner.pressure = NumberOf(text); break;
        case Part::Numbers: {
            const auto number = NumberOf(text);
            inner.areNumbers &= number && inner.numbers.size() < kMostFlashValues;
            add(inner.numbers, number.value_or(0));
            break;
        }
    }
}

bool FlashRecord::EndCall(int ended)
{
    if (depth < 0) return false;
    if (ended == depth + 1) Interpret();
    if (ended != depth) return false;
    depth = -1;
    return true;
}

void FlashRecord::Interpret()
{
    if (!inner.isOpen) return;
    inner.isOpen = false;
    const std::string_view method = inner.method;
    // The new material may have the name of another one.
    if (!inner.created.empty() && !inner.failed) MaterialOf(inner.created).isUnsure = true;
    // The log does not show what these calls do to a material: another calculation, a copy, and a call through an interface
    // that is not of the standard.
    const bool calculates = method == "CalcEquilibrium" && kind != Of::Unit;
    if (calculates || method == "CopyFromMaterial" || inner.isForeign) {
        MaterialOf(inner.object).isUnsure = true;
    }
    if (kind == Of::Unit && (method == "GetCompoundList" || method == "get_ComponentIds")) {
        MaterialOf(inner.object).compounds = inner.labels;
        return;
    }
    if (!inner.isMaterial) return;
    const bool sets = method.starts_with("Set");
    if (sets && inner.failed) MaterialOf(inner.object).isUnsure = true;
    if (inner.failed) return;
    if (method == "ClearAllProps" || method == "RemoveResults") {
        Material& material = MaterialOf(inner.object);
        material.phases.clear();
        material.declares = false;
    } else if (method == "SetPresentPhases") {
        TakePresentPhases(MaterialOf(inner.object));
    } else if (method == "GetTPFraction" && kind == Of::Properties) {
        TakeState(MaterialOf(inner.object));
    } else if (method == "GetOverallTPFraction") {
        inner.property = "fraction";
        inner.basis = "mole";
        inner.phase = "Overall";
        TakeProperty(MaterialOf(inner.object), false);
    } else if (method == "GetOverallProp" || method == "SetOverallProp") {
        inner.phase = "Overall";
        TakeProperty(MaterialOf(inner.object), sets);
    } else if (method == "SetSinglePhaseProp" || method == "GetProp" || method == "SetProp") {
        TakeProperty(MaterialOf(inner.object), sets);
    }
}

void FlashRecord::TakeProperty(Material& material, bool sets)
{
    const bool isOverall = IsSameInLowerCase(inner.phase, "overall"), isFraction = inner.property == "fraction";
    const bool isKnown = inner.areNumbers && !inner.ofSome;
    if (isOverall) {
        const Composition values = {isKnown ? inner.numbers : std::vector<double>(), inner.basis, inner.line};
        if (isFraction) {
            material.feed = values;
        } else if (inner.property == "totalflow") {
            material.totalFlow = values.fractions.size() == 1 ? std::optional(values.fractions[0]) : std::nullopt;
            material.totalFlowBasis = inner.basis;
        } else if (inner.property == "flow") {
            material.flows = values;
        } else {
            return;
        }
        material.isOutlet |= sets;
        return;
    }
    if (!sets) return;
    Phase& phase = PhaseOf(material, inner.phase);
    phase.isGiven = true;
    const auto one = [&] {
        return isKnown && inner.numbers.size() == 1 ? std::optional(inner.numbers[0]) : std::nullopt;
    };
    if (isFraction) {
        phase.composition = {isKnown ? inner.numbers : std::vector<double>(), inner.basis, inner.line};
    } else if (inner.property == "phasefraction") {
        phase.share = one();
        phase.shareBasis = inner.basis;
    } else if (inner.property == "temperature") {
        phase.temperature = one();
    } else if (inner.property == "pressure") {
        phase.pressure = one();
    } else if (inner.property == "fugacity") {
        phase.fugacity = {isKnown ? inner.numbers : std::vector<double>(), inner.basis, inner.line};
    }
}

void FlashRecord::TakeState(Material& material)
{
    Phase& phase = PhaseOf(material, inner.phase);
    phase.composition = {inner.areNumbers ? inner.numbers : std::vector<double>(), "mole", inner.line};
    phase.temperature = inner.temperature;
    phase.pressure = inner.pressure;
}

void FlashRecord::TakePresentPhases(Material& material)
{
    material.declares = true;
    for (Phase& phase : material.phases) phase.declared = 0;
    for (std::size_t i = 0; i < inner.labels.size(); ++i) {
        Phase& phase = PhaseOf(material, inner.labels[i]);
        phase.declared = inner.line;
        phase.atEquilibrium = i < inner.statuses.size() && inner.statuses[i] == kAtEquilibrium;
    }
}

}  // namespace zelt::ctl
