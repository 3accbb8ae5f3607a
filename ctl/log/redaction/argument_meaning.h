// What the values of an argument mean to a redaction. Most values are replaced by others of the same form. But some must keep
// their order and others their sum, and counts must not change.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/log_events.h"

namespace zelt::ctl {

enum class ArgumentMeaning {
    Other,
    Count,      // also indices, statuses, dimensions and Booleans: values to which the standard gives a meaning
    Fractions,  // of a mixture
    PhaseFraction,
    TotalFlow,
    Flows,      // of the compounds
    Ordered,    // temperatures, pressures, fugacities, parameters and their bounds
    Compounds,  // their names
    ErrorText,  // what the callee says about its failure
};

class ArgumentMeanings {
public:
    // Call it for each call, argument and value, in order.
    void Begin(const LogEvent& event);
    void EndCall() { --open; }

    // Of the latest argument.
    ArgumentMeaning Meaning() const { return meaning; }
    // Whether HeldValues replaces the values, because they must balance with others of the same calculation: phase fractions,
    // and the flow of a whole material.
    bool AreHeld() const;
    // Whether the values are those of all compounds.
    bool AreAll() const { return open && !calls[open - 1].ofSome; }
    // The name of the group of values among which the order is kept: those of one property, or of one parameter.
    std::string_view Order() const { return order; }
    // The object and the phase of the innermost call.
    std::string_view Object() const { return open ? std::string_view(calls[open - 1].object) : std::string_view(); }
    std::string_view Phase() const { return open ? std::string_view(calls[open - 1].phase) : std::string_view(); }

private:
    enum class Kind { Other, Property, Composition, Parameter, ErrorInterface };
    enum class Property { Fraction, PhaseFraction, Temperature, Pressure, Fugacity, TotalFlow, Flow, Other };
    struct OpenCall {
        std::string object, phase;
        Kind kind;
        Property property;
        bool ofSome;  // the values are only those of the compounds that the call names
    };
    static Kind KindOf(const LogEvent& call);
    ArgumentMeaning MeaningOf(const LogEvent& argument);
    ArgumentMeaning MeaningOfValues();

    std::vector<OpenCall> calls;  // the first `open` of them are open; the memory of the others is reused
    std::size_t open = 0;
    bool isProperty = false, isPhase = false, isCompounds = false;
    ArgumentMeaning meaning = ArgumentMeaning::Other;
    std::string order;
};

}  // namespace zelt::ctl
