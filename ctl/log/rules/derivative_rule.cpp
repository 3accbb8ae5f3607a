#include "ctl/log/rules/derivative_rule.h"

#include <algorithm>
#include <cmath>

#include "ctl/log/call_results.h"
#include "ctl/log/text/log_values.h"
#include "ctl/log/text/lower_case.h"
#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

constexpr std::size_t kMostStates = 32, kMostValues = 100, kMostNumbers = 1000;

// The temperatures or pressures of the three states must not differ by more than kFarthest, relative to the larger one. Those
// of neighbouring states must differ by more than kNearest, so that the few digits of a log cannot distort a slope.
constexpr double kFarthest = 0.02, kNearest = 1e-4;
// Between neighbouring states, slopes and derivatives that are smooth differ by no more than kSmooth, relative to the larger
// one. A wrong derivative differs from the slope by more than kWrong.
constexpr double kSmooth = 0.1, kWrong = 0.25;
// The relative error that a calculated property may have.
constexpr double kInexact = 1e-5;

// Whether a call leaves the package unchanged.
bool ChangesNothing(const LogEvent& call)
{
    constexpr std::string_view kInterfaces[] = {"ICapeThermoPropertyRoutine", "ICapeThermoEquilibriumRoutine",
                                                "ICapeThermoMaterialContext", "ICapeThermoCompounds",
                                                "ICapeThermoPhases",          "ICapeThermoUniversalConstant",
                                                "ICapeIdentification"};
    return IsOneOf(call.Interface(), kInterfaces);
}

bool AreClose(double a, double b, double part)
{
    return std::fabs(a - b) <= part * std::max(std::fabs(a), std::fabs(b));
}

}  // namespace

const DerivativeRule::Values* DerivativeRule::State::Find(std::string_view property, std::string_view basis) const
{
    for (const Values& one : values) {
        if (one.property == property && one.basis == basis) return &one;
    }
    return nullptr;
}

void DerivativeRule::State::Put(const Values& added)
{
    for (Values& one : values) {
        if (one.property != added.property || one.basis != added.basis) continue;
        one = added;
        return;
    }
    if (values.size() < kMostValues) values.push_back(added);
}

bool DerivativeRule::State::IsSame(const State& other) const
{
    return package == other.package && material == other.material && phase == other.phase &&
           composition == other.composition;
}

void DerivativeRule::BeginOutside(const LogEvent& call)
{
    isRedacted |= call.text.starts_with("redacted-");
    if (isRedacted || !call.inward) return;
    if (call.name == "ICapeThermoPropertyRoutine::CalcSinglePhaseProp") {
        depth = call.depth;
        isUnsure = false;
        calculated.reset();
        inner = {};
        package = call.text;
    } else if (!ChangesNothing(call)) {
        states.clear();
    }
}

void DerivativeRule::Begin(const LogEvent& event)
{
    if (depth < 0) {
        if (event.kind == EventKind::Call) BeginOutside(event);
        return;
    }
    if (event.kind == EventKind::Call) {
        isUnsure |= event.inward || !event.Interface().starts_with("ICape");
        // Calls that are nested deeper are not made by the package.
        if (event.depth != depth + 1) return;
        inner = {};
        inner.isOpen = true;
        inner.method = event.Method();
        inner.object = event.text;
        inner.line = event.line;
    } else if (event.kind == EventKind::Error) {
        if (event.depth == depth + 1) isUnsure = true;
        if (event.depth == depth + 2) inner.failed = true;
    } else if (event.kind == EventKind::Argument && inner.isOpen && event.depth == depth + 2) {
        // clang-format off
        constexpr struct { std::string_view name; Part part; } kRows[] = {
            {"property",    Part::Property},
            {"phaseLabel",  Part::Phase},
            {"basis",       Part::Basis},
            {"values",      Part::Numbers},
            {"composition", Part::Numbers},
            {"temperature", Part::Temperature},
            {"pressure",    Part::Pressure},
        };
        // clang-format on
        inner.part = Part::None;
        for (const auto& row : kRows) {
            if (row.name == event.name) inner.part = row.part;
        }
    } else if (event.kind == EventKind::Value && inner.isOpen && event.depth == depth + 3) {
        TakeValue(event.text);
    }
}

void DerivativeRule::TakeValue(std::string_view text)
{
    switch (inner.part) {
        case Part::None: break;
        case Part::Property: inner.property = LowerCase(Unquoted(text)); break;
        case Part::Phase: inner.phase = LowerCase(Unquoted(text)); break;
        case Part::Basis: inner.basis = LowerCase(Unquoted(text)); break;
        case Part::Temperature: inner.temperature = NumberOf(text); break;
        case Part::Pressure: inner.pressure = NumberOf(text); break;
        case Part::Numbers: {
            const auto number = NumberOf(text);
            inner.areNumbers &= number && inner.numbers.size() < kMostNumbers;
            if (inner.areNumbers) inner.numbers.push_back(*number);
            break;
        }
    }
}

void DerivativeRule::EndCall(int ended)
{
    if (depth < 0) return;
    if (ended == depth + 1 && inner.isOpen) Interpret();
    if (ended != depth) return;
    depth = -1;
    if (isUnsure || !calculated || calculated->values.empty()) return;
    const State& latest = Remember();
    for (const Values& values : latest.values) {
        if (values.property.ends_with(".dtemperature")) Judge(latest, Variable::Temperature, values);
        if (values.property.ends_with(".dpressure")) Judge(latest, Variable::Pressure, values);
    }
}

void DerivativeRule::Interpret()
{
    inner.isOpen = false;
    if (inner.method == "GetTPFraction" && !inner.failed) {
        const bool isKnown = inner.areNumbers && inner.temperature && inner.pressure;
        // The calculation of a phase reads one state; a second makes it unclear which one counts.
        isUnsure |= calculated || !isKnown;
        if (isUnsure) return;
        calculated = State{package, inner.object, inner.phase, *inner.temperature, *inner.pressure, inner.numbers, {}};
    } else if (inner.method == "SetSinglePhaseProp" && !inner.failed) {
        isUnsure |= !calculated || calculated->material != inner.object || calculated->phase != inner.phase ||
                    !inner.areNumbers || calculated->values.size() == kMostValues;
        if (isUnsure) return;
        calculated->values.push_back({inner.property, inner.basis, inner.numbers, inner.line});
    } else if (!inner.method.starts_with("Get") && !inner.method.starts_with("get_")) {
        isUnsure = true;
    }
}

// One state may be calculated in several calls: a property in one, its derivative in the next.
DerivativeRule::State& DerivativeRule::Remember()
{
    for (State& state : states) {
        if (!state.IsSame(*calculated) || state.temperature != calculated->temperature ||
            state.pressure != calculated->pressure) {
            continue;
        }
        for (const Values& values : calculated->values) {
            state.Put(values);
        }
        return state;
    }
    if (states.size() == kMostStates) states.pop_front();
    return states.emplace_back(*calculated);
}

// Looks for three states near the latest that prove the derivative wrong.
void DerivativeRule::Judge(const State& latest, Variable variable, const Values& derivative)
{
    const std::string property = derivative.property.substr(0, derivative.property.rfind('.'));
    const std::string which = latest.package + '\n' + latest.phase + '\n' + derivative.property;
    if (reported.contains(which)) return;
    const auto at = [&](const State& state) {
        return variable == Variable::Temperature ? state.temperature : state.pressure;
    };
    const auto other = [&](const State& state) {
        return variable == Variable::Temperature ? state.pressure : state.temperature;
    };
    std::vector<const State*> fitting;
    for (const State& state : states) {
        if (!state.IsSame(latest) || other(state) != other(latest) || !AreClose(at(state), at(latest), kFarthest))
            continue;
        const Values *value = state.Find(property, derivative.basis),
                     *slope = state.Find(derivative.property, derivative.basis);
        if (value && slope && value->numbers.size() == derivative.numbers.size() &&
            slope->numbers.size() == derivative.numbers.size()) {
            fitting.push_back(&state);
        }
    }
    std::sort(fitting.begin(), fitting.end(), [&](const State* a, const State* b) { return at(*a) < at(*b); });
    for (std::size_t i = 0; i + 2 < fitting.size(); ++i) {
        const State* const three[] = {fitting[i], fitting[i + 1], fitting[i + 2]};
        if (!AreClose(at(*three[0]), at(*three[2]), kFarthest)) continue;
        for (std::size_t place = 0; place < derivative.numbers.size(); ++place) {
            if (!Compare(three, variable, derivative, place)) continue;
            reported.insert(which);
            return;
        }
    }
}

// Reports the derivative if the three states prove it wrong, and returns whether they do.
bool DerivativeRule::Compare(const State* const (&three)[3], Variable variable, const Values& derivative,
                             std::size_t place)
{
    const std::string property = derivative.property.substr(0, derivative.property.rfind('.'));
    double at[3], value[3], slope[3];
    for (int i = 0; i < 3; ++i) {
        at[i] = variable == Variable::Temperature ? three[i]->temperature : three[i]->pressure;
        value[i] = three[i]->Find(property, derivative.basis)->numbers[place];
        slope[i] = three[i]->Find(derivative.property, derivative.basis)->numbers[place];
    }
    if (AreClose(at[0], at[1], kNearest) || AreClose(at[1], at[2], kNearest)) return false;
    const double first = (value[1] - value[0]) / (at[1] - at[0]), second = (value[2] - value[1]) / (at[2] - at[1]);
    // A step or a kink of the property does not make its derivative wrong.
    if (!AreClose(first, second, kSmooth) || !AreClose(slope[0], slope[1], kSmooth) ||
        !AreClose(slope[1], slope[2], kSmooth)) {
        return false;
    }
    for (int i = 0; i < 2; ++i) {
        const double change = value[i + 1] - value[i], expected = (slope[i] + slope[i + 1]) / 2 * (at[i + 1] - at[i]);
        const double inexact = 2 * kInexact * std::max(std::fabs(value[i]), std::fabs(value[i + 1]));
        if (std::fabs(change - expected) <= inexact || AreClose(change, expected, kWrong)) return false;
    }
    const char* const unit = variable == Variable::Temperature ? " K" : " Pa";
    report(derivative.line, "derivative",
           derivative.property + " is " + Digits(slope[1]) + " at " + Digits(at[1]) + unit + ", but " + property +
               " changes by " + Digits((value[2] - value[0]) / (at[2] - at[0])) + " per" + unit + " between " +
               Digits(at[0]) + " and " + Digits(at[2]) + unit);
    return true;
}

}  // namespace zelt::ctl
