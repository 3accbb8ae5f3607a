#include "ctl/log/rules/parameter_rules.h"

#include <cmath>

#include "ctl/log/text/log_values.h"

namespace zelt::ctl {
namespace {

// A forged log may have any number of parameters.
constexpr std::size_t kMostParameters = 10'000;

// The value of an argument that is one finite number; null otherwise.
const ArgumentSummary* OneNumber(const CallSummary& call, std::string_view argument)
{
    const ArgumentSummary* found = call.Find(argument);
    if (!found || found->count != 1 || !found->numbers || found->notANumber) return nullptr;
    // A damaged log may have a fraction although the type is an integer type.
    return found->areWhole && std::floor(found->least) != found->least ? nullptr : found;
}

// Whether a call of this method uses the values of parameters.
bool IsCalculation(std::string_view method) { return method.starts_with("Calc"); }

}  // namespace

void ParameterRules::SetBound(Parameter& parameter, const CallSummary& call, std::optional<Number>& bound)
{
    const bool ofWhole = call.Interface() == "ICapeIntegerParameterSpec";
    const ArgumentSummary* number = OneNumber(call, ofWhole                             ? "pVal"
                                                    : call.Method() == "get_LowerBound" ? "lBound"
                                                                                        : "uBound");
    const bool isKnown = parameter.lower || parameter.upper;
    // A bound that changes belongs to two parameters with one name, or was different when the value was set.
    if (!number || (bound && bound->value != number->least) || (isKnown && parameter.ofWhole != ofWhole)) {
        parameter.isAmbiguous |= bound || isKnown;
        return;
    }
    parameter.ofWhole = ofWhole;
    if (!bound) bound = {number->least, call.line};
}

// Rounding to six digits does not change the order of two numbers, so a value that the log shows outside is outside.
std::string ParameterRules::Outside(const Parameter& parameter, double value)
{
    if (parameter.isAmbiguous || !parameter.lower || !parameter.upper) return {};
    // Bounds that leave no choice, such as 0 and 0, mean that the parameter has no bounds.
    if (parameter.lower->value >= parameter.upper->value) return {};
    const bool isBelow = value < parameter.lower->value;
    if (!isBelow && value <= parameter.upper->value) return {};
    const Number& bound = isBelow ? *parameter.lower : *parameter.upper;
    return (isBelow ? "below its lower bound " : "above its upper bound ") + Digits(bound.value) + " (line " +
           std::to_string(bound.line) + ')';
}

void ParameterRules::Begin(const LogEvent& call)
{
    if (!call.inward || mayBeSeveral || !IsCalculation(call.Method())) return;
    for (auto& [name, parameter] : parameters) {
        if (!parameter.put || parameter.isReported) continue;
        const std::string outside = Outside(parameter, parameter.put->value);
        if (outside.empty()) continue;
        parameter.isReported = true;
        report(parameter.put->line, "bounds",
               Quoted(name) + " is set to " + Digits(parameter.put->value) + ", " + outside + ", and still is when " +
                   std::string(call.name) + " is called in line " + std::to_string(call.line));
    }
}

void ParameterRules::End(const CallSummary& call)
{
    if (!call.inward || mayBeSeveral) return;
    const std::string_view interfaceName = call.Interface(), method = call.Method();
    if (method == "GetReactionParameters") {
        mayBeSeveral = true;
        parameters.clear();
        return;
    }
    const bool isParameter = interfaceName == "ICapeParameter";
    const bool isSpecification =
        interfaceName == "ICapeRealParameterSpec" || interfaceName == "ICapeIntegerParameterSpec";
    if (!isParameter && !isSpecification) return;
    if (parameters.size() == kMostParameters && !parameters.contains(call.object)) return;
    Parameter& parameter = parameters[call.object];
    if (call.result.failed) {
        // It is not known whether the failed call changed the value.
        if (isParameter && (method == "put_value" || method == "Reset")) parameter.put = {};
        return;
    }
    if (isSpecification && (method == "get_LowerBound" || method == "get_UpperBound")) {
        SetBound(parameter, call, method == "get_LowerBound" ? parameter.lower : parameter.upper);
        return;
    }
    const ArgumentSummary* value = OneNumber(call, "value");
    const bool fits = value && (parameter.ofWhole || !value->areWhole) && (!parameter.ofWhole || value->areWhole);
    if (method == "Validate" && call.First("isOK") == "VARIANT_TRUE") {
        const std::optional<double> judged = isParameter && parameter.put ? std::optional(parameter.put->value)
                                             : isSpecification && fits    ? std::optional(value->least)
                                                                          : std::nullopt;
        const std::string outside = judged ? Outside(parameter, *judged) : std::string();
        if (!outside.empty()) {
            report(call.line, "bounds",
                   Quoted(call.object) + " calls " + Digits(*judged) + " valid, which is " + outside);
        }
    } else if (isParameter && method == "Reset") {
        parameter.put = {};
    } else if (isParameter && method == "put_value") {
        parameter.put = fits ? std::optional<Number>({value->least, call.line}) : std::nullopt;
        parameter.isReported = false;
    } else if (isParameter && method == "get_value" && fits) {
        const std::string outside = Outside(parameter, value->least);
        const bool isPut = parameter.put && parameter.put->value == value->least;
        if (!outside.empty() && !isPut && !parameter.isReported) {
            parameter.isReported = true;
            report(call.line, "bounds",
                   Quoted(call.object) + " has the value " + Digits(value->least) + ", " + outside);
        }
    }
}

}  // namespace zelt::ctl
