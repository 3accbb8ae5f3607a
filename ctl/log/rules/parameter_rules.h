// The rule for values outside a parameter's bounds, if the log shows both. Parameters are distinguished by their names. The
// parameters of reactions often share names, so nothing more is reported once the simulator has asked for these parameters, and
// nothing for a name that has different bounds.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ctl/log/call_summary.h"
#include "ctl/log/findings.h"

namespace zelt::ctl {

class ParameterRules {
public:
    explicit ParameterRules(const ReportFinding& report) : report(report) {}
    void Begin(const LogEvent& call);
    void End(const CallSummary& call);

private:
    struct Number {
        double value;
        int line;
    };
    struct Parameter {
        std::optional<Number> lower, upper;
        std::optional<Number> put;  // the value that the simulator has set, until it resets the parameter
        bool ofWhole = false;       // bounds and values are whole numbers
        bool isAmbiguous = false, isReported = false;
    };

    void SetBound(Parameter& parameter, const CallSummary& call, std::optional<Number>& bound);
    // "above its upper bound 1 (line 5)"; empty when the value is inside, or when that is not known.
    static std::string Outside(const Parameter& parameter, double value);

    const ReportFinding& report;
    std::map<std::string, Parameter, std::less<>> parameters;
    bool mayBeSeveral = false;  // several parameters may have one name
};

}  // namespace zelt::ctl
