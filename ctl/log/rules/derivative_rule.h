// The rule for derivatives by temperature and by pressure. Three calculations of a phase at three temperatures or pressures,
// all else equal, show how the property changes, and the derivatives at the same states must agree. Nothing is reported if the
// states are too far apart, if an inexact calculation can explain the difference, if the property or its derivatives are not
// smooth, or if somebody may have changed the package between the calculations. Redacted logs are not judged, because their
// values are not those that were calculated.
#pragma once

#include <deque>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/findings.h"
#include "ctl/log/log_events.h"

namespace zelt::ctl {

class DerivativeRule {
public:
    explicit DerivativeRule(const ReportFinding& report) : report(report) {}
    // Call Begin for each event, in order, and EndCall at the end of each call.
    void Begin(const LogEvent& event);
    void EndCall(int depth);

private:
    enum class Part { None, Property, Phase, Basis, Numbers, Temperature, Pressure };
    struct Values {
        std::string property, basis;  // in lower case
        std::vector<double> numbers;
        int line;
    };
    // What is known about a phase in one state.
    struct State {
        std::string package, material, phase;
        double temperature = 0, pressure = 0;
        std::vector<double> composition;
        std::vector<Values> values;

        const Values* Find(std::string_view property, std::string_view basis) const;
        void Put(const Values& values);
        bool IsSame(const State& other) const;
    };
    // A call that the package makes during a calculation.
    struct Inner {
        std::string method, object, property, phase, basis;
        std::vector<double> numbers;
        std::optional<double> temperature, pressure;
        int line = 0;
        bool isOpen = false, areNumbers = true, failed = false;
        Part part = Part::None;
    };
    enum class Variable { Temperature, Pressure };

    void BeginOutside(const LogEvent& call);
    void TakeValue(std::string_view text);
    void Interpret();
    State& Remember();
    void Judge(const State& latest, Variable variable, const Values& derivative);
    bool Compare(const State* const (&states)[3], Variable variable, const Values& derivative, std::size_t place);

    const ReportFinding& report;
    bool isRedacted = false;
    int depth = -1;  // of the open calculation; -1 for none
    bool isUnsure = false;
    std::string package;
    std::optional<State> calculated;
    Inner inner;
    std::deque<State> states;  // the latest ones
    std::set<std::string> reported;
};

}  // namespace zelt::ctl
