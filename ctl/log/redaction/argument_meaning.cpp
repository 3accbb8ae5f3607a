#include "ctl/log/redaction/argument_meaning.h"

#include <algorithm>
#include <iterator>

#include "ctl/log/call_results.h"
#include "ctl/log/text/lower_case.h"
#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

constexpr std::string_view kTemperature = "temperature", kPressure = "pressure", kFugacity = "fugacity";

bool IsCount(const LogEvent& argument)
{
    constexpr std::string_view kNames[] = {"phaseStatus", "itemsCount", "num",           "numComp", "compNo", "nComps",
                                           "nReacs",      "code",       "numDimensions", "Size",    "dim"};
    // An item may also be given by its name.
    if (argument.name == "id") return argument.text == "VT_I4" || argument.text == "VT_I2";
    return argument.text == "VT_BOOL" || IsOneOf(argument.name, kNames);
}

}  // namespace

ArgumentMeanings::Kind ArgumentMeanings::KindOf(const LogEvent& call)
{
    const std::string_view interfaceName = call.Interface(), method = call.Method();
    if (interfaceName.starts_with("ECape")) return Kind::ErrorInterface;
    if (interfaceName == "ICapeParameter" || interfaceName == "ICapeRealParameterSpec" ||
        interfaceName == "ICapeIntegerParameterSpec") {
        return Kind::Parameter;
    }
    if (method == "GetTPFraction" || method == "GetOverallTPFraction") return Kind::Composition;
    return method.ends_with("Prop") ? Kind::Property : Kind::Other;
}

ArgumentMeaning ArgumentMeanings::MeaningOfValues()
{
    switch (calls[open - 1].property) {
        case Property::Fraction: return ArgumentMeaning::Fractions;
        case Property::PhaseFraction: return ArgumentMeaning::PhaseFraction;
        case Property::Temperature: order = kTemperature; return ArgumentMeaning::Ordered;
        case Property::Pressure: order = kPressure; return ArgumentMeaning::Ordered;
        case Property::Fugacity: order = kFugacity; return ArgumentMeaning::Ordered;
        case Property::TotalFlow: return ArgumentMeaning::TotalFlow;
        case Property::Flow: return ArgumentMeaning::Flows;
        case Property::Other: break;
    }
    return ArgumentMeaning::Other;
}

ArgumentMeaning ArgumentMeanings::MeaningOf(const LogEvent& argument)
{
    constexpr std::string_view kCompounds[] = {"compIds", "compId", "compID", "baseReactantId"};
    constexpr std::string_view kLimited[] = {"value", "DefaultValue", "lBound", "uBound", "pVal"};
    const std::string_view name = argument.name;
    switch (calls[open - 1].kind) {
        case Kind::Property:
            if (name == "values" || name == "results") return MeaningOfValues();
            return name == "compIds" || name == "compID" ? ArgumentMeaning::Compounds : ArgumentMeaning::Other;
        case Kind::Composition:
            if (name == "composition") return ArgumentMeaning::Fractions;
            break;
        case Kind::Parameter:
            if (argument.text == "VT_BOOL") return ArgumentMeaning::Count;
            if (!IsOneOf(name, kLimited)) break;
            order = "of parameter " + calls[open - 1].object;
            return ArgumentMeaning::Ordered;
        case Kind::ErrorInterface: return IsCount(argument) ? ArgumentMeaning::Count : ArgumentMeaning::ErrorText;
        case Kind::Other: break;
    }
    if (IsCount(argument)) return ArgumentMeaning::Count;
    if (name == kTemperature || name == kPressure) {
        order = name;
        return ArgumentMeaning::Ordered;
    }
    return IsOneOf(name, kCompounds) ? ArgumentMeaning::Compounds : ArgumentMeaning::Other;
}

bool ArgumentMeanings::AreHeld() const
{
    if (meaning != ArgumentMeaning::TotalFlow) return meaning == ArgumentMeaning::PhaseFraction;
    return Phase().empty() || LowerCase(Phase()) == "overall";
}

void ArgumentMeanings::Begin(const LogEvent& event)
{
    if (event.kind == EventKind::Call) {
        if (open++ == calls.size()) calls.emplace_back();
        OpenCall& call = calls[open - 1];
        call.object = event.text;
        call.phase.clear();
        call.kind = KindOf(event);
        call.property = Property::Other;
        call.ofSome = false;
        isProperty = isPhase = isCompounds = false;
        meaning = ArgumentMeaning::Other;
        return;
    }
    if (!open) return;
    OpenCall& call = calls[open - 1];
    if (event.kind == EventKind::Argument) {
        isProperty = call.kind == Kind::Property && event.name == "property";
        isPhase = event.name == "phase" || event.name == "phaseLabel";
        isCompounds = event.name == "compIds";
        meaning = MeaningOf(event);
    } else if (event.kind == EventKind::Value && isProperty) {
        // In the order of Property.
        constexpr std::string_view kNames[] = {"fraction", "phasefraction", kTemperature, kPressure,
                                               kFugacity,  "totalflow",     "flow"};
        const std::string name = LowerCase(Unquoted(event.text));
        const auto found = std::find(std::begin(kNames), std::end(kNames), name) - std::begin(kNames);
        call.property = static_cast<Property>(found);
    } else if (event.kind == EventKind::Value && isPhase) {
        call.phase = Unquoted(event.text);
    } else if (event.kind == EventKind::Value && isCompounds) {
        call.ofSome = true;
    }
}

}  // namespace zelt::ctl
